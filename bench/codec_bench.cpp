// Timing of the settings codec and the settings file on the largest inputs
// the tool meets: every text at its 100-character limit (about 15 KB encoded)
// and a settings file of the full 65,536 bytes. Figures only; the budget of
// one millisecond for a load and for a save is judged by reading them.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "settings/eeprom_image.h"
#include "settings/image_decoder.h"
#include "settings/image_encoder.h"
#include "settings/settings_file.h"
#include "settings/station_settings.h"
#include "settings/used_size.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kTextLimit = 100;
constexpr std::size_t kPhoneDigits = 50;

// Czech letters take the Windows-1250 upper half, so the conversion cannot
// take the ASCII shortcut; one character each, however many UTF-8 bytes.
constexpr std::array<std::string_view, 24> kAlphabet{
    "ě", "š", "č", "ř", "ž", "ý", "á", "í", "é", " ", "S", "t", "a", "n", "i", "c", "e", " ",
    "Ů", "Ť", "0", "7", "-", "Ř"};

// A text of exactly `length` characters; `seed` varies it between fields.
std::string longText(std::size_t seed, std::size_t length = kTextLimit)
{
    std::string text;
    for (std::size_t i = 0; i < length; ++i)
        text += kAlphabet[(seed * 7 + i) % kAlphabet.size()];
    return text;
}

std::string digits(std::size_t seed, std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += static_cast<char>('0' + (seed + i * 3) % 10);
    return text;
}

rm8::StationSettings longTextSettings()
{
    rm8::StationSettings s;
    std::size_t seed = 0;
    for (std::string* text : {&s.tabJmenoStanice, &s.rtNotAuthorized, &s.rtPowerUp, &s.rtPowerDown,
                              &s.rtSwitchOn, &s.rtSwitchOff, &s.rtBattLow})
        *text = longText(seed++);
    s.tabTCcentra = digits(seed++, kTextLimit);
    s.tabPIN = digits(seed++, 8);
    for (rm8::Row8<std::string>* row :
         {&s.tabINPNazev, &s.tabINPZap, &s.tabINPVyp, &s.tabINPLH, &s.tabINPHL, &s.tabOUTNazev, &s.tabOUTZap,
          &s.tabOUTVyp, &s.tabOUTimpuls, &s.tabAINNazev, &s.tabAINStateL, &s.tabAINStateM, &s.tabAINStateH,
          &s.tabAINCL1Up, &s.tabAINCL1Dn, &s.tabAINCL2Up, &s.tabAINCL2Dn})
        for (std::string& text : *row)
            text = longText(seed++);
    // Half international: "+" and 49 digits keeps the 50-character limit and
    // gives the odd digit count its padding.
    for (std::size_t i = 0; i < rm8::kRows; ++i) {
        const bool international = i % 2 == 1;
        s.tabTC[i] = digits(seed++, international ? kPhoneDigits - 1 : kPhoneDigits);
        if (international)
            s.tabTC[i].insert(0, 1, '+');
    }
    s.opNotAuthorized = s.opPowerReport = s.opSwitchReport = true;
    s.tabINPZpr.fill(true);
    s.tabAINNeg[2] = true;
    return s;
}

// One scratch directory for the run, so that parallel runs do not collide.
class Scratch {
public:
    Scratch()
    {
        std::error_code error;
        fs::path base = fs::temp_directory_path(error);
        if (error)
            base = "/tmp";
        std::string pattern = (base / "rm8-bench-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            std::perror("mkdtemp");
            std::exit(EXIT_FAILURE);
        }
        directory_ = pattern;
    }
    ~Scratch()
    {
        std::error_code ignored;
        fs::remove_all(directory_, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    fs::path file(std::string_view name) const { return directory_ / name; }

private:
    fs::path directory_;
};

struct Inputs {
    rm8::StationSettings settings = longTextSettings();
    rm8::EepromImage fullImage{0};
    Scratch scratch;
    fs::path fullFile = scratch.file("full.eep");
    fs::path savedFile = scratch.file("saved.eep");
    bool ready = false;

    Inputs()
    {
        // The bytes past the end mark stay as the pattern: a file of the
        // maximum length is read whole, whatever it holds after the settings.
        auto pattern = fullImage.bytes();
        for (std::size_t i = 0; i < pattern.size(); ++i)
            pattern[i] = static_cast<std::uint8_t>((i * 31 + 17) % 251 + 1);
        if (!rm8::encodeImage(settings, fullImage))
            return;
        // Taken again: the encoder replaces the image's storage.
        const auto bytes = std::as_const(fullImage).bytes();
        std::ofstream out(fullFile, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        out.close();
        ready = static_cast<bool>(out) && fs::file_size(fullFile) == rm8::EepromImage::kSize;
    }
};

const Inputs& inputs()
{
    static const Inputs instance;
    return instance;
}

bool usable(benchmark::State& state)
{
    if (inputs().ready)
        return true;
    state.SkipWithError("the long-text settings could not be encoded or the file written");
    return false;
}

void BM_LoadAndDecode(benchmark::State& state)
{
    if (!usable(state))
        return;
    rm8::EepromImage image(0);
    for (auto _ : state) {
        rm8::StationSettings settings;
        const auto read = rm8::readImageFile(inputs().fullFile, image);
        const auto decoded = rm8::decodeImage(image, settings);
        if (!read || !decoded) {
            state.SkipWithError("the full file did not load and decode");
            break;
        }
        benchmark::DoNotOptimize(settings);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_LoadAndDecode)->Unit(benchmark::kMicrosecond);

void BM_EncodeAndSave(benchmark::State& state)
{
    if (!usable(state))
        return;
    const rm8::StationSettings& settings = inputs().settings;
    rm8::EepromImage image = inputs().fullImage;
    for (auto _ : state) {
        const auto encoded = rm8::encodeImage(settings, image);
        const auto saved = encoded ? rm8::writeImageFile(inputs().savedFile, image, rm8::usedSize(settings))
                                   : rm8::Expected<void, rm8::FileError>{};
        if (!encoded || !saved) {
            state.SkipWithError("the long-text settings did not encode and save");
            break;
        }
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_EncodeAndSave)->Unit(benchmark::kMicrosecond);

void BM_DecodeOnly(benchmark::State& state)
{
    if (!usable(state))
        return;
    const rm8::EepromImage& image = inputs().fullImage;
    for (auto _ : state) {
        rm8::StationSettings settings;
        if (!rm8::decodeImage(image, settings)) {
            state.SkipWithError("the full image did not decode");
            break;
        }
        benchmark::DoNotOptimize(settings);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_DecodeOnly)->Unit(benchmark::kMicrosecond);

void BM_EncodeOnly(benchmark::State& state)
{
    if (!usable(state))
        return;
    const rm8::StationSettings& settings = inputs().settings;
    rm8::EepromImage image = inputs().fullImage;
    for (auto _ : state) {
        const auto encoded = rm8::encodeImage(settings, image);
        if (!encoded) {
            state.SkipWithError("the long-text settings did not encode");
            break;
        }
        benchmark::DoNotOptimize(image.bytes().data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_EncodeOnly)->Unit(benchmark::kMicrosecond);

void BM_UsedSize(benchmark::State& state)
{
    const rm8::StationSettings& settings = inputs().settings;
    for (auto _ : state) {
        std::size_t used = rm8::usedSize(settings);
        benchmark::DoNotOptimize(used);
    }
}
BENCHMARK(BM_UsedSize)->Unit(benchmark::kMicrosecond);

} // namespace
