// rm8sim: a virtual station in programming mode on a pseudo-terminal, for
// tests, benchmarks and demonstrations without a station. It can also play a
// slow 9,600-baud cable and the faults met in the field.

#include <atomic>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "common/atomic_file.h"
#include "link/frame_log.h"
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
  --log SOUBOR                                 záznam všech rámců s časem (hexadecimálně)

Emulace linky:
  --line-rate BAUD                             odpovědi zpožděné jako na lince BAUD 8N1
                                               (10 bitů na bajt, dotaz i odpověď)
  --write-time MS                              doba zápisu bloku do EEPROM (výchozí 5 ms;
                                               jen s --line-rate)

Poruchy:
  --silent-attention N                         neodpovídá na prvních N výzev
  --drop-every N                               každou N-tou odpověď nepošle
  --bad-checksum-every N                       každá N-tá odpověď má chybný kontrolní součet
  --late-every N                               každá N-tá odpověď přijde pozdě
  --late-by MS                                 o kolik pozdě (výchozí 1500 ms)
  --corrupt-writes                             uloží jiné bajty, než dostala (první bajt bloku
                                               negovaný), a odpoví, jako by bylo vše v pořádku
  --hangup-after N                             po N požadavcích na blok zavěsí (zavře
                                               pseudoterminál), uloží EEPROM a skončí
  --silent-leave                               neodpovídá na žádost o ukončení programovacího
                                               módu a zůstane v něm
)";

// Options that take no value.
const std::set<std::string> kFlags = {"--corrupt-writes", "--silent-leave"};
const std::set<std::string> kValued = {"--type",      "--version",       "--size-code",    "--modem",
                                       "--eeprom",    "--link",          "--log",          "--line-rate",
                                       "--write-time", "--silent-attention", "--drop-every", "--bad-checksum-every",
                                       "--late-every", "--late-by",       "--hangup-after"};

struct Options {
    std::map<std::string, std::string> values;
    std::set<std::string> flags;

    bool has(const std::string& name) const { return values.count(name) != 0 || flags.count(name) != 0; }
};

// A whole number within limits, or an error naming the option.
bool number(const Options& options, const std::string& name, unsigned long max, unsigned& out, std::string& error)
{
    const auto it = options.values.find(name);
    if (it == options.values.end())
        return true;
    const std::string& text = it->second;
    unsigned long value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || value > max) {
        error = "volba " + name + " chce celé číslo 0 až " + std::to_string(max) + ", ne '" + text + "'";
        return false;
    }
    out = static_cast<unsigned>(value);
    return true;
}

bool parseProfile(const Options& options, rm8::sim::StationProfile& profile, std::string& error)
{
    try {
        if (auto it = options.values.find("--type"); it != options.values.end()) {
            bool found = false;
            for (const auto& row : rm8::link::kDeviceTypes)
                if (!row.product.empty() && row.product == it->second) {
                    profile.signature = row.signature;
                    found = true;
                }
            if (!found)
                profile.signature = static_cast<std::uint32_t>(std::stoul(it->second, nullptr, 0));
        }
        if (auto it = options.values.find("--version"); it != options.values.end()) {
            const auto dot = it->second.find('.');
            profile.versionMajor = static_cast<std::uint8_t>(std::stoul(it->second.substr(0, dot)));
            profile.versionMinor =
                static_cast<std::uint8_t>(dot == std::string::npos ? 0 : std::stoul(it->second.substr(dot + 1)));
        }
    } catch (const std::exception&) {
        error = "chybná hodnota volby";
        return false;
    }
    unsigned sizeCode = profile.memorySizeCode;
    unsigned modem = profile.modemCode;
    if (!number(options, "--size-code", 9, sizeCode, error) || !number(options, "--modem", 255, modem, error))
        return false;
    profile.memorySizeCode = static_cast<std::uint8_t>(sizeCode);
    profile.modemCode = static_cast<std::uint8_t>(modem);
    return true;
}

bool parseBehaviour(const Options& options, rm8::sim::StationBehaviour& behaviour, std::string& error)
{
    using std::chrono::milliseconds;
    constexpr unsigned long kMaxCount = 1'000'000'000;
    auto& line = behaviour.line;
    auto& faults = behaviour.faults;
    unsigned writeMs = 5;
    unsigned lateMs = 1500;
    if (!number(options, "--line-rate", 4'000'000, line.baud, error) || !number(options, "--write-time", 60'000, writeMs, error)
        || !number(options, "--silent-attention", kMaxCount, faults.silentAttentions, error)
        || !number(options, "--drop-every", kMaxCount, faults.dropEvery, error)
        || !number(options, "--bad-checksum-every", kMaxCount, faults.badChecksumEvery, error)
        || !number(options, "--late-every", kMaxCount, faults.lateEvery, error)
        || !number(options, "--late-by", 60'000, lateMs, error)
        || !number(options, "--hangup-after", kMaxCount, faults.hangUpAfterBlocks, error))
        return false;
    if (options.has("--line-rate") && line.baud == 0) {
        error = "volba --line-rate chce rychlost linky větší než 0";
        return false;
    }
    if (options.has("--write-time") && line.baud == 0) {
        error = "volba --write-time platí jen s --line-rate";
        return false;
    }
    line.writeTime = milliseconds(writeMs);
    faults.lateBy = milliseconds(lateMs);
    faults.corruptWrites = options.has("--corrupt-writes");
    faults.silentLeave = options.has("--silent-leave");
    // rm8sim may run for days; nobody inspects its requests but the log.
    behaviour.keepRequests = false;
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--help" || word == "-h") {
            std::cout << kUsage;
            return 0;
        }
        if (kFlags.count(word) != 0) {
            options.flags.insert(word);
            continue;
        }
        if (kValued.count(word) == 0 || i + 1 >= argc) {
            std::cerr << "rm8sim: neznámá nebo neúplná volba '" << word << "' (viz rm8sim --help)\n";
            return 2;
        }
        options.values[word] = argv[++i];
    }
    rm8::sim::StationProfile profile;
    rm8::sim::StationBehaviour behaviour;
    std::string error;
    if (!parseProfile(options, profile, error) || !parseBehaviour(options, behaviour, error)) {
        std::cerr << "rm8sim: " << error << '\n';
        return 2;
    }

    std::vector<std::uint8_t> eeprom;
    const auto eepromFile = options.values.count("--eeprom") ? options.values["--eeprom"] : std::string();
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

    std::unique_ptr<rm8::link::FrameLog> log;
    if (auto it = options.values.find("--log"); it != options.values.end()) {
        auto opened = rm8::link::FrameLog::toFile(it->second);
        if (!opened) {
            std::cerr << "rm8sim: záznam nelze založit: " << opened.error() << '\n';
            return 2;
        }
        log = std::move(*opened);
    }

    try {
        rm8::sim::PtyStation station{rm8::sim::StationSimulator(profile, eeprom, behaviour)};
        station.setLog(log.get());
        const std::string linkPath = options.values.count("--link") ? options.values["--link"] : std::string();
        if (!linkPath.empty()) {
            std::error_code ignored;
            std::filesystem::remove(linkPath, ignored);
            std::filesystem::create_symlink(station.path(), linkPath);
        }
        // Before the path is shown: whoever reads it may stop the station at once.
        std::signal(SIGINT, onSignal);
        std::signal(SIGTERM, onSignal);
        std::cout << station.path() << std::endl;
        station.serve(stopRequested);
        if (station.hungUp())
            std::cerr << "rm8sim: linka zavěšena po " << station.blockRequests() << " požadavcích na blok\n";

        if (!eepromFile.empty()) {
            const auto bytes = station.eeprom();
            auto written = rm8::writeFileAtomically(
                eepromFile, std::span(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
            if (!written) {
                std::cerr << "rm8sim: Soubor '" << eepromFile << "' nelze zapsat: " << written.error() << '\n';
                return 1;
            }
        }
        if (!linkPath.empty()) {
            std::error_code ignored;
            std::filesystem::remove(linkPath, ignored);
        }
    } catch (const std::exception& e) {
        std::cerr << "rm8sim: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
