#include "fields/table_rows.h"

#include <array>
#include <string_view>

namespace rm8 {
namespace {

struct TableRows {
    RowTable table;
    std::string_view prefix; // before the row's number
};

constexpr std::array kTableRows {
    TableRows { RowTable::Inputs, "IN" },
    TableRows { RowTable::Outputs, "OUT" },
    TableRows { RowTable::Analog, "AIN" },
    TableRows { RowTable::Phones, "T" },
};

// Rows that carry a name instead of a number.
struct NamedRow {
    RowTable table;
    std::size_t row;
    std::string_view label;
};

constexpr std::array kNamedRows { NamedRow { RowTable::Analog, kBatteryRow, "BAT" } };

struct PageTable {
    Page page;
    RowTable table;
};

constexpr std::array kPageTables {
    PageTable { Page::DigitalInputs, RowTable::Inputs },
    PageTable { Page::Outputs, RowTable::Outputs },
    PageTable { Page::Analog1To4, RowTable::Analog },
    PageTable { Page::Analog5To8, RowTable::Analog },
    PageTable { Page::Phones, RowTable::Phones },
};

} // namespace

FieldRow rowOfField(const FieldInfo& info, std::size_t row)
{
    return info.perRow() ? FieldRow(row) : std::nullopt;
}

std::size_t rowNumber(std::size_t row)
{
    return row + 1;
}

std::string rowLabel(RowTable table, std::size_t row)
{
    for (const auto& named : kNamedRows)
        if (named.table == table && named.row == row)
            return std::string(named.label);
    for (const auto& rows : kTableRows)
        if (rows.table == table)
            return std::string(rows.prefix) + std::to_string(rowNumber(row));
    return std::to_string(rowNumber(row));
}

std::optional<RowTable> rowTableOf(Page page)
{
    for (const auto& entry : kPageTables)
        if (entry.page == page)
            return entry.table;
    return std::nullopt;
}

} // namespace rm8
