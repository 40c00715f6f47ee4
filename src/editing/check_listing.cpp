#include "editing/check_listing.h"

#include "fields/field_captions.h"

namespace rm8 {
namespace {

enum class Case { Nominative, Accusative };

// Czech counts: one takes the singular; two, three and four the plural of
// the case itself; every other number the genitive plural: zero, five and
// up, and also 21 to 24, 102 and so on ("22 chyb", read "dvaadvacet chyb",
// the usual rule of Czech program texts; "dvacet dva chyby" is the other,
// spoken, reading). After "obsahuje" the noun stands in the accusative, whose
// singular ("chybu") differs from the nominative ("chyba"); its plurals do
// not.
std::string errors(std::size_t count, Case grammaticalCase)
{
    const char* noun = "chyb";
    if (count == 1)
        noun = grammaticalCase == Case::Nominative ? "chyba" : "chybu";
    else if (count >= 2 && count <= 4)
        noun = "chyby";
    return std::to_string(count) + " " + noun;
}

} // namespace

std::vector<CheckEntry> listCheckReport(const CheckReport& report)
{
    std::vector<CheckEntry> entries;
    entries.reserve(report.violations.size() + report.adjustments.size());
    for (const auto& violation : report.violations)
        entries.push_back({ fieldPage(violation.field, violation.row), violation.field, violation.row,
            fieldLabel(violation.field, violation.row), violation.message, false });
    for (const auto& change : report.adjustments)
        entries.push_back({ fieldPage(change.field, change.row), change.field, change.row,
            fieldLabel(change.field, change.row), "\"" + change.from + "\" -> \"" + change.to + "\"", true });
    return entries;
}

std::string checkPanelTitle(std::size_t violations)
{
    return "Kontrola nastavení: " + (violations == 0 ? std::string("bez chyb") : errors(violations, Case::Nominative));
}

std::string writeQuestion(std::size_t violations)
{
    return "Nastavení obsahuje " + errors(violations, Case::Accusative)
        + " (viz Kontrola nastavení). Přesto uložit do EEPROM?";
}

} // namespace rm8
