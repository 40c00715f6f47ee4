#include "report/report_content.h"

#include "common/file_names.h"
#include "fields/table_rows.h"

namespace rm8::report {
namespace {

std::string bit(bool checked)
{
    return checked ? "1" : "0";
}

const char* choose(bool checked, const char* yes, const char* no)
{
    return checked ? yes : no;
}

Section general(const StationSettings& s)
{
    Section section { "Všeobecné", {} };
    section.items.emplace_back(LabelledLine { "Název stanice", s.tabJmenoStanice });
    section.items.emplace_back(LabelledLine { "PIN", s.tabPIN });
    section.items.emplace_back(LabelledLine { "Tel. servisního centra", s.tabTCcentra });
    if (!s.opEnablePS1)
        section.items.emplace_back(Sentence { "Šetřící režim nepovolen." });
    else
        section.items.emplace_back(Sentence { "Šetřící režim povolen. Modem je vypnut po dobu " + s.eePSOffH + ":"
            + s.eePSOffM + " a zapnut po dobu " + s.eePSOnH + ":" + s.eePSOnM + "." });
    section.items.emplace_back(Sentence {
        choose(s.opPSOutOff, "Při vypnutém modemu vypínat i výstupy.", "Při vypnutém modemu nevypínat výstupy.") });
    return section;
}

Section sms(const StationSettings& s)
{
    Section section { "SMS zprávy", {} };
    const auto add = [&](std::string text) { section.items.emplace_back(Sentence { std::move(text) }); };
    add("Doba platnosti SMS zpráv je " + s.tabDobaPlatnostiSMS + " dnů.");
    add(std::string("Při poklesu napětí baterií ") + choose(s.opBatt, "vypínat", "nevypínat")
        + " zařízení a odesílat text: '" + s.rtBattLow + "'");
    add(std::string("V příkazové zprávě ") + choose(s.opPINAuth, "požadovat", "nepožadovat")
        + " autorizaci zadáním PINu.");
    add(std::string("Hlášení o stavu ") + choose(s.tabOdpovidatT0, "posílat", "neposílat")
        + " i na telefonní číslo T1.");
    add(std::string("Hlášení o nepovoleném přístupu ") + choose(s.tabPrepnoutNepovolPristup, "posílat", "neposílat")
        + " i na telefonní číslo T1.");
    add(std::string(choose(s.opSwitchReport, "Posílat", "Neposílat")) + " hlášení o zap./vyp. zařízení. Text zap.: '"
        + s.rtSwitchOn + "' Text vyp.: '" + s.rtSwitchOff + "'");
    add(std::string(choose(s.opPowerReport, "Posílat", "Neposílat"))
        + " hlášení o zap./vyp. síťového napájení. Text zap.: '" + s.rtPowerUp + "' Text vyp.: '" + s.rtPowerDown
        + "'");
    return section;
}

Section inputs(const StationSettings& s)
{
    Table table { { { "Název", 2 }, { "Stav 0", 1 }, { "Stav 1", 1 }, { "0->1", 3 }, { "1->0", 3 }, { "Negace", 1 },
                      { "Uvádět ve zprávě", 1 } },
        {} };
    for (std::size_t row = 0; row < kRows; ++row)
        table.rows.push_back({ rowLabel(RowTable::Inputs, row), s.tabINPNazev[row], s.tabINPVyp[row], s.tabINPZap[row],
            bit(s.tabINPLHEvent[row]), s.tabINPLH[row], bit(s.eeMaskDInLHAlarm[row]), bit(s.tabINPHLEvent[row]),
            s.tabINPHL[row], bit(s.eeMaskDInHLAlarm[row]), bit(s.tabINPNeg[row]), bit(s.tabINPZpr[row]) });
    return { "Logické vstupy", { std::move(table) } };
}

Section outputs(const StationSettings& s)
{
    Table table { { { "Název", 2 }, { "Stav 0", 1 }, { "Stav 1", 1 }, { "Negace", 1 }, { "Impuls", 2 },
                      { "Uvádět ve zprávě", 1 } },
        {} };
    for (std::size_t row = 0; row < kRows; ++row)
        table.rows.push_back({ rowLabel(RowTable::Outputs, row), s.tabOUTNazev[row], s.tabOUTVyp[row], s.tabOUTZap[row],
            bit(s.tabOUTNeg[row]), s.tabOUTimpuls[row], s.tabOUTimpulsLEN[row], bit(s.tabOUTZpr[row]) });
    return { "Logické výstupy", { std::move(table) } };
}

Section phones(const StationSettings& s)
{
    Table table { { { "Telefonní číslo", 2 }, { "Příjem příkazů", 1 }, { "Odesílání zpráv", 1 } }, {} };
    for (std::size_t row = 0; row < kRows; ++row)
        table.rows.push_back(
            { rowLabel(RowTable::Phones, row), s.tabTC[row], bit(s.tabTCPrijem[row]), bit(s.tabTCUdalost[row]) });
    return { "Telefonní čísla", { std::move(table) } };
}

} // namespace

std::size_t Table::columns() const
{
    std::size_t count = 0;
    for (const auto& heading : headings)
        count += heading.span;
    return count;
}

std::string firstCharacters(std::string_view text, std::size_t count)
{
    std::size_t end = 0;
    for (std::size_t seen = 0; end < text.size(); ++seen) {
        if (seen == count)
            break;
        ++end;
        // Continuation bytes belong to the character before them.
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            ++end;
    }
    return std::string(text.substr(0, end));
}

std::string headerText(std::string_view stationName)
{
    return firstCharacters(kHeaderTitle, kHeaderTitleLimit) + " stanice: " + std::string(stationName);
}

std::string pageNumberText(int page)
{
    return std::to_string(page) + ". stránka";
}

std::string progressText(int page, int copy, int copies)
{
    return "Tisk " + std::to_string(page) + ". stránky\n" + std::to_string(copy) + ". kopie z "
        + std::to_string(copies);
}

Report buildReport(const StationSettings& settings)
{
    return { headerText(settings.tabJmenoStanice), portableFileStem(settings.tabJmenoStanice, "nastaveni"),
        { general(settings), sms(settings), inputs(settings), outputs(settings), phones(settings) } };
}

} // namespace rm8::report
