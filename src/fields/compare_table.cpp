#include "fields/compare_table.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <utility>
#include <variant>

#include "fields/field_captions.h"
#include "fields/settings_diff.h"

namespace rm8 {
namespace {

using S = StationSettings;

std::string yesNo(bool value)
{
    return value ? "ano" : "ne";
}

// The value of row 0..7 (ignored for a single field) in the words of the
// window rather than of the settings file.
std::string shownValue(const FieldInfo& info, const S& s, std::size_t row)
{
    struct Visitor {
        const S& s;
        std::size_t row;
        std::string operator()(std::string S::*m) const { return s.*m; }
        std::string operator()(Row8<std::string> S::*m) const { return (s.*m)[row]; }
        std::string operator()(bool S::*m) const { return yesNo(s.*m); }
        std::string operator()(Row8<bool> S::*m) const { return yesNo((s.*m)[row]); }
        std::string operator()(std::uint8_t S::*m) const { return std::to_string(s.*m); }
        std::string operator()(Row8<std::uint8_t> S::*m) const { return std::to_string((s.*m)[row]); }
    };
    return std::visit(Visitor { s, row }, info.member);
}

} // namespace

std::vector<CompareRow> compareTable(const StationSettings& window, const StationSettings& other)
{
    const auto catalogue = fieldCatalogue();
    std::vector<std::pair<std::size_t, CompareRow>> rows; // with the field's catalogue position
    for (const auto& difference : diffSettings(window, other)) {
        const FieldInfo* info = findField(difference.field);
        if (info == nullptr)
            continue;
        const std::size_t index = static_cast<std::size_t>(info - catalogue.data());
        const std::size_t row = difference.row.value_or(0);
        rows.push_back({ index,
            { difference.row ? info->pageOfRow(row) : info->page, std::string(info->name), difference.row,
                tableRowLabel(info->name, difference.row), std::string(fieldCaption(info->name)),
                shownValue(*info, window, row), shownValue(*info, other, row) } });
    }
    std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) {
        return std::tuple(a.second.page, a.second.row, a.first) < std::tuple(b.second.page, b.second.row, b.first);
    });
    std::vector<CompareRow> table;
    table.reserve(rows.size());
    for (auto& [index, row] : rows)
        table.push_back(std::move(row));
    return table;
}

} // namespace rm8
