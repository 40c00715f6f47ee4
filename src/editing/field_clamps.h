#pragma once
// The fields that leaving clamps instead of refusing: an output's impulse
// length, and the hour and minute fields of the two power-saving intervals,
// which are clamped as pairs. One table, which the leave operation and the
// whole-configuration check both consult.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/field_leave.h"
#include "fields/table_rows.h"
#include "settings/station_settings.h"

namespace rm8 {

struct ClampedText {
    std::string text; // the left field's text afterwards
    std::vector<FieldChange> changes; // the other field of a pair, when it changed
};

// What leaving a field of the record makes of the typed text; none for a
// field that is not clamped. settings: the current values.
std::optional<ClampedText> clampOnLeave(
    const StationSettings& settings, std::string_view recordField, std::string_view typed);

struct ClampChange {
    std::string field;
    FieldRow row;
    std::string from;
    std::string to;
};

// What leaving every clamped field in turn, in the table's order, would
// change, in the same order.
std::vector<ClampChange> clampChanges(const StationSettings& settings);

} // namespace rm8
