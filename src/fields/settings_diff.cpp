#include "fields/settings_diff.h"

#include "fields/field_catalogue.h"
#include "fields/settings_json.h"

namespace rm8 {
namespace {

std::string shown(const nlohmann::ordered_json& value)
{
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace

std::vector<FieldDifference> diffSettings(const StationSettings& left, const StationSettings& right)
{
    // Compared in the JSON form, so that a difference reads as the value a
    // technician would write in a settings file.
    const auto a = settingsToJson(left);
    const auto b = settingsToJson(right);
    std::vector<FieldDifference> differences;
    for (const auto& field : fieldCatalogue()) {
        const auto& va = a.at(std::string(field.name));
        const auto& vb = b.at(std::string(field.name));
        if (!field.perRow()) {
            if (va != vb)
                differences.push_back({field.name, std::nullopt, shown(va), shown(vb)});
            continue;
        }
        for (std::size_t i = 0; i < kRows; ++i)
            if (va[i] != vb[i])
                differences.push_back({field.name, i, shown(va[i]), shown(vb[i])});
    }
    return differences;
}

} // namespace rm8
