#include "fields/field_captions.h"

#include <array>
#include <utility>

#include "fields/table_rows.h"

namespace rm8 {
namespace {

using namespace std::string_view_literals;

// As the window writes them, with a column heading's line break as a blank
// and without a label's closing colon or its row of dots. Where two frames
// share a label ("Text hlášení při zapnutí:"), the frame is named after it.
// Dialog options that have no field in the window are named as the row
// dialog names them.
constexpr std::array kCaptions = {
    std::pair { "tabJmenoStanice"sv, "Název stanice"sv },
    std::pair { "tabPIN"sv, "PIN SIM karty"sv },
    std::pair { "tabTCcentra"sv, "Telefonní číslo servisního centra"sv },
    std::pair { "opEnablePS1"sv, "Povolit šetřící režim"sv },
    std::pair { "eePSOnH"sv, "Doba zapnutého modemu (hod.)"sv },
    std::pair { "eePSOnM"sv, "Doba zapnutého modemu (min.)"sv },
    std::pair { "eePSOffH"sv, "Doba vypnutého modemu (hod.)"sv },
    std::pair { "eePSOffM"sv, "Doba vypnutého modemu (min.)"sv },
    std::pair { "opSuperPS"sv, "Super šetřící režim"sv },
    std::pair { "opPSOutOff"sv, "Při vypnutém modemu vypnout výstupy"sv },
    std::pair { "opSwitchReport"sv, "posílat hlášení o zapnutí/vypnutí (Zapnutí/Vypnutí zařízení)"sv },
    std::pair { "rtSwitchOn"sv, "Text hlášení při zapnutí (Zapnutí/Vypnutí zařízení)"sv },
    std::pair { "rtSwitchOff"sv, "Text hlášení při vypnutí (Zapnutí/Vypnutí zařízení)"sv },
    std::pair { "opPowerReport"sv, "posílat hlášení o zapnutí/vypnutí (Zapnutí/Vypnutí síťového napájení)"sv },
    std::pair { "rtPowerUp"sv, "Text hlášení při zapnutí (Zapnutí/Vypnutí síťového napájení)"sv },
    std::pair { "rtPowerDown"sv, "Text hlášení při vypnutí (Zapnutí/Vypnutí síťového napájení)"sv },
    std::pair { "opBatt"sv, "při poklesu napětí pod CL1 vypnout zařízení"sv },
    std::pair { "rtBattLow"sv, "Text hlášení při poklesu napětí"sv },
    std::pair { "tabDobaPlatnostiSMS"sv, "Doba platnosti SMS zprávy"sv },
    std::pair { "opPINAuth"sv, "Autorizace pomocí zadání PINu v příkazové zprávě"sv },
    std::pair { "tabOdpovidatT0"sv, "Hlášení o stavu posílat i na telefonní číslo T1"sv },
    std::pair { "tabPrepnoutNepovolPristup"sv, "Hlášení o nepovoleném přístupu posílat i na tel. číslo T1"sv },
    std::pair { "opNotAuthorized"sv, "Posílat hlášení, že není povolen přístup"sv },
    std::pair { "rtNotAuthorized"sv, "Text hlášení o nepovolení přístupu"sv },
    std::pair { "tabINPNazev"sv, "Název"sv },
    std::pair { "tabINPZap"sv, "Zapnuto (1)"sv },
    std::pair { "tabINPVyp"sv, "Vypnuto (0)"sv },
    std::pair { "tabINPLH"sv, "Přechod Neaktivní->Aktivní"sv },
    std::pair { "tabINPHL"sv, "Přechod Aktivní->Neaktivní"sv },
    std::pair { "tabINPLHEvent"sv, "Zpráva 0->1"sv },
    std::pair { "tabINPHLEvent"sv, "Zpráva 1->0"sv },
    std::pair { "tabINPNeg"sv, "Negace"sv },
    std::pair { "tabINPZpr"sv, "Ve zprávě o stavu"sv },
    std::pair { "eeMaskDInLHAlarm"sv, "odeslat ihned 0->1"sv },
    std::pair { "eeMaskDInHLAlarm"sv, "odeslat ihned 1->0"sv },
    std::pair { "tabOUTNazev"sv, "Název"sv },
    std::pair { "tabOUTZap"sv, "Zapnuto"sv },
    std::pair { "tabOUTVyp"sv, "Vypnuto"sv },
    std::pair { "tabOUTZpr"sv, "Ve zprávě o stavu"sv },
    std::pair { "tabOUTimpuls"sv, "Impuls"sv },
    std::pair { "tabOUTimpulsLEN"sv, "Délka impulsu [s]"sv },
    std::pair { "tabOUTNeg"sv, "Negace"sv },
    std::pair { "eeMaskDOutFnc"sv, "Funkce výstupů"sv },
    std::pair { "tabAINNazev"sv, "Název"sv },
    std::pair { "tabAINStateL"sv, "LOW"sv },
    std::pair { "tabAINStateM"sv, "MEDIUM"sv },
    std::pair { "tabAINStateH"sv, "HIGH"sv },
    std::pair { "tabAINCL1Level"sv, "CL1"sv },
    std::pair { "tabAINHCL1Level"sv, "HCL1"sv },
    std::pair { "tabAINCL2Level"sv, "CL2"sv },
    std::pair { "tabAINHCL2Level"sv, "HCL2"sv },
    std::pair { "tabAINPrc"sv, "Hodnota ve zprávě"sv },
    std::pair { "tabAINNeg"sv, "Negace"sv },
    std::pair { "tabAINZpr"sv, "Stav ve zprávě"sv },
    std::pair { "tabAINCL1Up"sv, "Přechod nahoru přes CL1"sv },
    std::pair { "tabAINCL1Dn"sv, "Přechod dolu přes CL1"sv },
    std::pair { "tabAINCL2Up"sv, "Přechod nahoru přes CL2"sv },
    std::pair { "tabAINCL2Dn"sv, "Přechod dolu přes CL2"sv },
    std::pair { "tabAINCL1UpEvent"sv, "Hlásit přechod nahoru přes CL1"sv },
    std::pair { "tabAINCL1DnEvent"sv, "Hlásit přechod dolu přes CL1"sv },
    std::pair { "tabAINCL2UpEvent"sv, "Hlásit přechod nahoru přes CL2"sv },
    std::pair { "tabAINCL2DnEvent"sv, "Hlásit přechod dolu přes CL2"sv },
    std::pair { "analogOptions"sv, "odeslat ihned"sv },
    std::pair { "tabTC"sv, "Telefonní číslo"sv },
    std::pair { "tabTCPrijem"sv, "Příjem"sv },
    std::pair { "tabTCUdalost"sv, "Události"sv },
    std::pair { "tabUTOEnable"sv, "Automaticky vkládat před tel. číslo UTO"sv },
    std::pair { "tabUTO"sv, "UTO"sv },
    std::pair { "lblInfoPamUsage"sv, "Velikost nastavení"sv },
};

constexpr std::array<std::string_view, 7> kPageCaptions { "Všeobecné", "SMS zprávy", "Dig. vstupy", "Dig. výstupy",
    "Analog. vstupy 1-4", "Analog. vstupy 5-8", "Tel. čísla" };

// A row given for a single field, or beyond the table, names no row.
FieldRow tableRowOf(const FieldInfo* info, FieldRow row)
{
    return info != nullptr && info->perRow() && row && *row < kRows ? row : std::nullopt;
}

} // namespace

std::string_view fieldCaption(std::string_view field)
{
    for (const auto& [name, caption] : kCaptions)
        if (name == field)
            return caption;
    return {};
}

std::string_view pageCaption(Page page)
{
    const auto index = static_cast<std::size_t>(page);
    return index < kPageCaptions.size() ? kPageCaptions[index] : std::string_view {};
}

std::optional<Page> fieldPage(std::string_view field, FieldRow row)
{
    const FieldInfo* info = findField(field);
    if (info == nullptr)
        return std::nullopt;
    const FieldRow tableRow = tableRowOf(info, row);
    return tableRow ? info->pageOfRow(*tableRow) : info->page;
}

std::string tableRowLabel(std::string_view field, FieldRow row)
{
    const FieldInfo* info = findField(field);
    const FieldRow tableRow = tableRowOf(info, row);
    if (!tableRow)
        return {};
    const auto table = rowTableOf(info->page);
    return table ? rowLabel(*table, *tableRow) : std::string {};
}

std::string fieldLabel(std::string_view field, FieldRow row)
{
    std::string_view caption = fieldCaption(field);
    if (caption.empty())
        caption = field; // a name the table lacks is still better than nothing
    const std::string rowPart = tableRowLabel(field, row);
    return rowPart.empty() ? std::string(caption) : rowPart + ": " + std::string(caption);
}

} // namespace rm8
