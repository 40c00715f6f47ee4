#include "workbench/settings_step.h"

#include <utility>

#include "fields/field_captions.h"
#include "fields/settings_diff.h"

namespace rm8 {

std::string fieldStepName(std::string_view field, FieldRow row)
{
    std::string caption(fieldCaption(field));
    if (caption.empty())
        caption = field;
    const std::string rowPart = tableRowLabel(field, row);
    return rowPart.empty() ? caption : rowPart + " " + caption;
}

std::string changeStepName(const StationSettings& before, const StationSettings& after)
{
    const auto differences = diffSettings(before, after);
    if (differences.empty())
        return {};
    const FieldDifference& first = differences.front();
    return fieldStepName(first.field, first.row);
}

std::optional<SettingsStep> settingsStep(std::string name, const StationSettings& before, const StationSettings& after)
{
    if (before == after)
        return std::nullopt;
    return SettingsStep { std::move(name), before, after };
}

} // namespace rm8
