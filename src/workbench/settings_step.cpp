#include "workbench/settings_step.h"

#include <utility>

#include "fields/field_captions.h"
#include "fields/settings_diff.h"

namespace rm8 {

std::string fieldStepName(std::string_view field, std::optional<std::size_t> row)
{
    std::string caption(fieldCaption(field));
    if (caption.empty())
        caption = field;
    // The captions count rows from 1, as the row labels do.
    const std::string rowPart = row ? tableRowLabel(field, static_cast<int>(*row) + 1) : std::string();
    return rowPart.empty() ? caption : rowPart + " " + caption;
}

std::string changeStepName(const StationSettings& before, const StationSettings& after)
{
    const auto differences = diffSettings(before, after);
    if (differences.empty())
        return {};
    const FieldDifference& first = differences.front();
    // The differences count rows from 1, 0 for a single field.
    return fieldStepName(
        first.field, first.row > 0 ? std::optional(static_cast<std::size_t>(first.row - 1)) : std::nullopt);
}

std::optional<SettingsStep> settingsStep(std::string name, const StationSettings& before, const StationSettings& after)
{
    if (before == after)
        return std::nullopt;
    return SettingsStep { std::move(name), before, after };
}

} // namespace rm8
