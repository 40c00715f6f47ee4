// rm8sim: a virtual station in programming mode on a pseudo-terminal, for
// tests, benchmarks and demonstrations without a station.

#include <atomic>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "common/atomic_file.h"
#include "link/station_tables.h"
#include "settings/eeprom_image.h"
#include "settings/settings_file.h"
#include "sim/pty_station.h"

namespace {

std::atomic<bool> stopRequested{false};

void onSignal(int)
{
    stopRequested = true;
}

constexpr const char* kUsage = R"(Použití: rm8sim [VOLBY]
Virtuální stanice v programovacím módu na pseudoterminálu. Na prvním řádku
výstupu vypíše cestu k zařízení; ukončí se signálem (Ctrl-C).

  --type RM8|RMA8|RMADC2|RMADC3|0xSIGNATURA   typ zařízení (výchozí RM8)
  --version MAJOR.MINOR                        verze procesoru (výchozí 1.0)
  --size-code N                                kód velikosti paměti 0..9 (výchozí 6 = 8128 byte)
  --modem N                                    kód modemu (výchozí 4 = TC35 Siemens)
  --eeprom SOUBOR.eep                          obsah EEPROM načtený ze souboru a při ukončení
                                               do něj uložený (bez volby samé 0xFF)
  --link CESTA                                 symbolický odkaz na zařízení
)";

bool parseProfile(const std::map<std::string, std::string>& options, rm8::sim::StationProfile& profile,
                  std::string& error)
{
    try {
        if (auto it = options.find("--type"); it != options.end()) {
            bool found = false;
            for (const auto& row : rm8::link::kDeviceTypes)
                if (!row.product.empty() && row.product == it->second) {
                    profile.signature = row.signature;
                    found = true;
                }
            if (!found)
                profile.signature = static_cast<std::uint32_t>(std::stoul(it->second, nullptr, 0));
        }
        if (auto it = options.find("--version"); it != options.end()) {
            const auto dot = it->second.find('.');
            profile.versionMajor = static_cast<std::uint8_t>(std::stoul(it->second.substr(0, dot)));
            profile.versionMinor =
                static_cast<std::uint8_t>(dot == std::string::npos ? 0 : std::stoul(it->second.substr(dot + 1)));
        }
        if (auto it = options.find("--size-code"); it != options.end())
            profile.memorySizeCode = static_cast<std::uint8_t>(std::stoul(it->second));
        if (auto it = options.find("--modem"); it != options.end())
            profile.modemCode = static_cast<std::uint8_t>(std::stoul(it->second));
    } catch (const std::exception&) {
        error = "chybná hodnota volby";
        return false;
    }
    if (profile.memorySizeCode > 9) {
        error = "kód velikosti paměti musí být 0 až 9";
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    std::map<std::string, std::string> options;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--help") {
            std::cout << kUsage;
            return 0;
        }
        if (i + 1 >= argc || word.rfind("--", 0) != 0) {
            std::cerr << "rm8sim: neznámá nebo neúplná volba '" << word << "' (viz rm8sim --help)\n";
            return 2;
        }
        options[word] = argv[++i];
    }
    rm8::sim::StationProfile profile;
    std::string error;
    if (!parseProfile(options, profile, error)) {
        std::cerr << "rm8sim: " << error << '\n';
        return 2;
    }

    std::vector<std::uint8_t> eeprom;
    const auto eepromFile = options.count("--eeprom") ? options["--eeprom"] : std::string();
    if (!eepromFile.empty() && std::filesystem::exists(eepromFile)) {
        rm8::EepromImage image(0xFF);
        auto read = rm8::readImageFile(eepromFile, image);
        if (!read) {
            std::cerr << "rm8sim: Soubor '" << eepromFile << "': " << read.error().describe() << '\n';
            return 2;
        }
        const std::size_t size = rm8::sim::memoryBytes(profile.memorySizeCode) + 64;
        eeprom.assign(image.bytes().begin(), image.bytes().begin() + static_cast<long>(size));
    }

    try {
        rm8::sim::PtyStation station{rm8::sim::StationSimulator(profile, eeprom)};
        if (options.count("--link")) {
            std::error_code ignored;
            std::filesystem::remove(options["--link"], ignored);
            std::filesystem::create_symlink(station.path(), options["--link"]);
        }
        std::cout << station.path() << std::endl;
        std::signal(SIGINT, onSignal);
        std::signal(SIGTERM, onSignal);
        station.serve(stopRequested);

        if (!eepromFile.empty()) {
            const auto bytes = station.eeprom();
            auto written = rm8::writeFileAtomically(
                eepromFile, std::span(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
            if (!written) {
                std::cerr << "rm8sim: Soubor '" << eepromFile << "' nelze zapsat: " << written.error() << '\n';
                return 1;
            }
        }
        if (options.count("--link")) {
            std::error_code ignored;
            std::filesystem::remove(options["--link"], ignored);
        }
    } catch (const std::exception& e) {
        std::cerr << "rm8sim: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
