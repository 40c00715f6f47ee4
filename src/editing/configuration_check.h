#pragma once
// The whole configuration checked at once: every field's rules as if each
// field had been left in turn, the level check of every analog input, the
// output cross-check, the phone table rule and, given the station's memory,
// the size check. Every violation is returned with the exact message the
// window would show; what the clamps would change is listed apart, since a
// clamp never refuses anything.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "editing/field_rules.h"
#include "fields/table_rows.h"
#include "settings/station_settings.h"

namespace rm8 {

struct Violation {
    std::string field;
    FieldRow row;
    RuleKind rule;
    std::string message;
};

struct Adjustment {
    std::string field;
    FieldRow row;
    std::string from;
    std::string to;
};

struct CheckReport {
    std::vector<Violation> violations;
    std::vector<Adjustment> adjustments;

    bool clean() const { return violations.empty(); }
};

// eepromSize: the settings area of the station's memory in bytes, when known.
CheckReport checkConfiguration(const StationSettings& settings, std::optional<std::size_t> eepromSize = {});

// The size check alone, as the write flow makes it.
std::optional<Violation> sizeCheck(const StationSettings& settings, std::size_t eepromSize);

} // namespace rm8
