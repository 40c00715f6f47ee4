#include "editing/field_clamps.h"

#include <array>

#include "editing/numeric_clamps.h"
#include "fields/field_catalogue.h"

namespace rm8 {
namespace {

enum class ClampKind { ImpulseLength, ScheduleHours, ScheduleMinutes };

struct FieldClamp {
    std::string_view field;
    ClampKind kind;
    std::string_view partner; // the other field of a schedule pair
};

// In the order a check leaves them: an hour field before its minutes, so
// that the minutes are judged with the hours they will stand beside.
constexpr std::array kClamps {
    FieldClamp { "tabOUTimpulsLEN", ClampKind::ImpulseLength, "" },
    FieldClamp { "eePSOnH", ClampKind::ScheduleHours, "eePSOnM" },
    FieldClamp { "eePSOnM", ClampKind::ScheduleMinutes, "eePSOnH" },
    FieldClamp { "eePSOffH", ClampKind::ScheduleHours, "eePSOffM" },
    FieldClamp { "eePSOffM", ClampKind::ScheduleMinutes, "eePSOffH" },
};

const FieldClamp* findClamp(std::string_view field)
{
    for (const auto& clamp : kClamps)
        if (clamp.field == field)
            return &clamp;
    return nullptr;
}

std::string textOf(const StationSettings& s, std::string_view field, FieldRow row = std::nullopt)
{
    const FieldInfo* info = findField(field);
    return info == nullptr ? std::string() : std::string(info->textIn(s, row.value_or(0)));
}

ClampedText clampSchedule(const StationSettings& s, const FieldClamp& clamp, std::string_view typed)
{
    const bool hours = clamp.kind == ClampKind::ScheduleHours;
    ScheduleFields fields { textOf(s, hours ? clamp.field : clamp.partner),
        textOf(s, hours ? clamp.partner : clamp.field) };
    (hours ? fields.hours : fields.minutes) = std::string(typed);
    fields = hours ? clampScheduleHours(fields) : clampScheduleMinutes(fields);
    ClampedText out { hours ? fields.hours : fields.minutes, {} };
    const std::string& partner = hours ? fields.minutes : fields.hours;
    if (partner != textOf(s, clamp.partner))
        out.changes.push_back({ std::string(clamp.partner), std::nullopt, partner, std::nullopt });
    return out;
}

// Every row of every clamped field, in the table's order.
template <typename Visit> void forEachClampedCell(Visit visit)
{
    for (const auto& clamp : kClamps) {
        const FieldInfo* info = findField(clamp.field);
        for (std::size_t at = 0; at < (info->perRow() ? kRows : 1); ++at)
            visit(clamp.field, rowOfField(*info, at));
    }
}

} // namespace

std::optional<ClampedText> clampOnLeave(
    const StationSettings& settings, std::string_view recordField, std::string_view typed)
{
    const FieldClamp* clamp = findClamp(recordField);
    if (clamp == nullptr)
        return std::nullopt;
    if (clamp->kind == ClampKind::ImpulseLength)
        return ClampedText { clampImpulseLength(typed), {} };
    return clampSchedule(settings, *clamp, typed);
}

std::vector<ClampChange> clampChanges(const StationSettings& settings)
{
    StationSettings after = settings;
    forEachClampedCell([&after](std::string_view field, FieldRow row) {
        auto left = clampOnLeave(after, field, textOf(after, field, row));
        applyChange(after, { std::string(field), row, std::move(left->text), std::nullopt });
        for (const auto& change : left->changes)
            applyChange(after, change);
    });
    std::vector<ClampChange> changes;
    forEachClampedCell([&](std::string_view field, FieldRow row) {
        std::string from = textOf(settings, field, row);
        std::string to = textOf(after, field, row);
        if (from != to)
            changes.push_back({ std::string(field), row, std::move(from), std::move(to) });
    });
    return changes;
}

} // namespace rm8
