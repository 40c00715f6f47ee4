// Timing of the whole-configuration check with its listing, which the window
// runs after every edit: it must stay well under the 5 ms that typing can
// spare. Inputs: the full golden file, the one with every text at its length
// limit, and the seeded configuration with a violation of each kind (so that
// every message is composed). Figures only, judged by reading them.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "editing/check_listing.h"
#include "fields/settings_json.h"
#include "settings/image_decoder.h"
#include "settings/settings_file.h"

namespace {

const std::filesystem::path kData = RM8_TEST_DATA_DIR;

// The largest memory a station reports, so that the size check runs too.
constexpr std::size_t kEepromSize = 65472;

rm8::StationSettings fromImageFile(const std::string& name)
{
    rm8::EepromImage image;
    rm8::StationSettings settings;
    if (!readImageFile(kData / name, image) || !decodeImage(image, settings)) {
        std::cerr << "check_bench: cannot decode " << name << '\n';
        std::exit(1);
    }
    return settings;
}

rm8::StationSettings fromJsonFile(const std::string& name)
{
    std::ifstream in(kData / name);
    const std::string text { std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>() };
    auto settings = rm8::parseSettingsJson(text);
    if (!settings) {
        std::cerr << "check_bench: " << name << ": " << settings.error() << '\n';
        std::exit(1);
    }
    return *settings;
}

void checkAndList(benchmark::State& state, const rm8::StationSettings& settings)
{
    std::size_t entries = 0;
    for (auto _ : state) {
        const auto listing = rm8::listCheckReport(rm8::checkConfiguration(settings, kEepromSize));
        entries = listing.size();
        benchmark::DoNotOptimize(listing.data());
    }
    state.counters["entries"] = static_cast<double>(entries);
}

void BM_CheckFull(benchmark::State& state)
{
    static const auto settings = fromImageFile("full.eep");
    checkAndList(state, settings);
}

void BM_CheckLongTexts(benchmark::State& state)
{
    static const auto settings = fromImageFile("long_texts.eep");
    checkAndList(state, settings);
}

void BM_CheckSeeded(benchmark::State& state)
{
    static const auto settings = fromJsonFile("check/seeded.json");
    checkAndList(state, settings);
}

} // namespace

BENCHMARK(BM_CheckFull)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CheckLongTexts)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CheckSeeded)->Unit(benchmark::kMicrosecond);
