// rm8ctl: the station configuration tool on the command line.

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "ctl/arguments.h"
#include "ctl/check_command.h"
#include "ctl/station_commands.h"
#include "ctl/file_commands.h"
#include "ctl/ports_command.h"
#include "ctl/report_command.h"
#include "platform/console.h"

namespace {

constexpr const char* kUsage = R"(Použití: rm8ctl PŘÍKAZ [VOLBY] SOUBORY

Příkazy pro soubory nastavení:
  decode SOUBOR.eep [--out SOUBOR.json]
        vypíše nastavení ze souboru jako JSON (nebo je zapíše do --out)
  encode NASTAVENI.json --out SOUBOR.eep [--base OBRAZ.eep] [--yes] [--force]
        zakóduje nastavení do obrazu EEPROM (bez --base samé nuly) a uloží
        soubor nastavení; existující soubor přepíše jen s --yes
  info SOUBOR.eep
        značka formátu, kontrolní bajt, ukazatele, konec dat a velikost nastavení
  diff A B
        vypíše rozdílná pole dvou konfigurací (.eep nebo .json)
  check SOUBOR [--json] [--eeprom-size N]
        vypíše každé porušení pravidel stanice (pole, řádek, zpráva); s --eeprom-size
        i kontrolu velikosti nastavení; úpravy číselných polí vypíše zvlášť
  report SOUBOR [--out SOUBOR.txt]
        vypíše tiskovou sestavu nastavení jako text (buňky tabulek oddělené tabulátorem)

Příkazy pro stanici (PORT je "COM n", nebo cesta k zařízení):
  identify --port PORT
        produkt, verze, velikost paměti, modem a stav spojení
  read --port PORT --out SOUBOR [--json | --raw] [--yes]
        načte EEPROM stanice a uloží soubor nastavení (--json nastavení, --raw všechny bajty)
  write --port PORT SOUBOR.eep|NASTAVENI.json [--no-verify] [--backup ZALOHA.eep [--yes]] [--force]
        zapíše nastavení do stanice a každý zapsaný blok přečte zpět (--no-verify
        kontrolu vynechá); s --backup nejprve načte celou EEPROM stanice a uloží ji
        do ZALOHA.eep (všechny bajty, jako read --raw), teprve pak zapisuje
  ports
        vypíše sériové porty systému a co jsou zač (USB převodník, název ze správce zařízení)
  --search-timeout S   jak dlouho hledat stanici (výchozí 30 s), pak jako Storno
  --com "COM n=ZAŘÍZENÍ[,COM m=ZAŘÍZENÍ]"
                       tabulka portů; bez ní je COM n zařízení /dev/ttyS(n-1),
                       ve Windows port COMn (i nad COM 9, např. --port "COM 12")
  --trace SOUBOR       zapíše každý odeslaný a přijatý rámec s časem (pro podporu)
  Ctrl-C působí jako Storno. Na terminálu ukazuje přenos počet bloků a zbývající čas.

encode odmítne nastavení, která porušují pravidla stanice, pokud není dána volba --force.

Návratový kód: 0 úspěch, 1 rozdíl nebo odmítnutí, 2 chybné použití nebo vstup,
3 práce hotova, ale stanice neodpověděla na ukončení programovacího módu.
)";

using Command = int (*)(const rm8::ctl::Arguments&, std::ostream&, std::ostream&);

struct CommandEntry {
    const char* name;
    Command run;
};

constexpr CommandEntry kCommands[] = {
    {"decode", rm8::ctl::decodeCommand},
    {"encode", rm8::ctl::encodeCommand},
    {"info", rm8::ctl::infoCommand},
    {"diff", rm8::ctl::diffCommand},
    {"check", rm8::ctl::checkCommand},
    {"report", rm8::ctl::reportCommand},
    {"identify", rm8::ctl::identifyCommand},
    {"read", rm8::ctl::readCommand},
    {"write", rm8::ctl::writeCommand},
    {"ports", rm8::ctl::portsCommand},
};

} // namespace

int main(int argc, char** argv)
{
    rm8::platform::useUtf8Console();
    std::vector<std::string> words(argv + 1, argv + argc);
    std::replace(words.begin(), words.end(), std::string("-h"), std::string("--help"));
    const rm8::ctl::OptionSet options{{"--out", "--base", "--eeprom-size", "--port", "--search-timeout", "--com", "--trace", "--backup"},
                                       {"--yes", "--help", "--force", "--json", "--raw", "--verify", "--no-verify", "--version"}};
    auto arguments = rm8::ctl::parseArguments(words, options);
    if (!arguments) {
        std::cerr << "rm8ctl: " << arguments.error() << " (viz rm8ctl --help)\n";
        return rm8::ctl::kBadInput;
    }
    if (arguments->has("--help") || arguments->command == "help") {
        std::cout << kUsage;
        return rm8::ctl::kSuccess;
    }
    if (arguments->has("--version")) {
        std::cout << "rm8ctl " RM8_VERSION "\n";
        return rm8::ctl::kSuccess;
    }
    for (const auto& command : kCommands)
        if (arguments->command == command.name)
            return command.run(*arguments, std::cout, std::cerr);
    if (arguments->command.empty())
        std::cerr << "rm8ctl: chybí příkaz (viz rm8ctl --help)\n";
    else
        std::cerr << "rm8ctl: neznámý příkaz '" << arguments->command << "' (viz rm8ctl --help)\n";
    return rm8::ctl::kBadInput;
}
