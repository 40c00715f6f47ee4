#include "editing/output_cross_check.h"

#include <array>
#include <string_view>

#include "editing/text_compare.h"
#include "fields/table_rows.h"

namespace rm8 {
namespace {

using S = StationSettings;

struct ColumnInfo {
    OutputColumn column;
    Row8<std::string> S::*texts;
    std::string_view field;
    std::string_view before; // the message around the row label
    std::string_view after;
};

constexpr std::string_view kTail = " EEPROM nelze naprogramovat dokud toto nebude odstraněno.";

const std::array<ColumnInfo, 4> kColumns{{
    {OutputColumn::Name, &S::tabOUTNazev, "tabOUTNazev", "Název výstupu '",
     "' není správně zadán. Jména výstupů se nesmějí shodovat a ani být předponou jiného názvu výstupu."},
    {OutputColumn::On, &S::tabOUTZap, "tabOUTZap", "Název 'Zapnuto' výstupu '",
     "' není správně zadán. Povel pro zapnutí se musí lišit od povelu pro vypnutí i impuls a nesmí být předponou "
     "názvu některého výstupu."},
    {OutputColumn::Off, &S::tabOUTVyp, "tabOUTVyp", "Název 'Vypnuto' výstupu '",
     "' není správně zadán. Povel pro vypnutí se musí lišit od povelu pro impuls i zapnutí a nesmí být předponou "
     "názvu některého výstupu."},
    {OutputColumn::Impulse, &S::tabOUTimpuls, "tabOUTimpuls", "Název 'impuls' výstupu '",
     "' není správně zadán. Povel pro impuls se musí lišit od povelu pro vypnutí i zapnutí a nesmí být předponou "
     "názvu některého výstupu."},
}};

// The entries a cell is tested against, each followed by ";" as the keyword
// test expects.
std::string entriesFor(const S& s, std::size_t row, OutputColumn column)
{
    std::string list;
    const auto add = [&](const std::string& entry) {
        list += entry;
        list += ';';
    };
    if (column == OutputColumn::Name) {
        for (std::size_t r = 0; r < kRows; ++r) {
            add(s.tabOUTZap[r]);
            add(s.tabOUTVyp[r]);
            add(s.tabOUTimpuls[r]);
        }
        for (std::size_t r = 0; r < kRows; ++r)
            if (r != row)
                add(s.tabOUTNazev[r]);
        return list;
    }
    for (const auto& other : kColumns)
        if (other.column != OutputColumn::Name && other.column != column)
            add((s.*other.texts)[row]);
    for (std::size_t r = 0; r < kRows; ++r)
        add(s.tabOUTNazev[r]);
    return list;
}

} // namespace

std::vector<OutputConflict> outputCrossCheck(const StationSettings& settings)
{
    std::vector<OutputConflict> conflicts;
    for (std::size_t row = 0; row < kRows; ++row) {
        for (const auto& column : kColumns) {
            const std::string& text = (settings.*column.texts)[row];
            if (passesKeywordTest(text, entriesFor(settings, row, column.column)))
                continue;
            std::string message(column.before);
            message += rowLabel(RowTable::Outputs, row);
            message += column.after;
            message += kTail;
            conflicts.push_back({row, column.column, std::string(column.field), std::move(message)});
        }
    }
    return conflicts;
}

} // namespace rm8
