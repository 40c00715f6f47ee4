#pragma once
// The fields in which two configurations differ, one entry per field and row.

#include <string>
#include <string_view>
#include <vector>

#include "settings/station_settings.h"

namespace rm8 {

struct FieldDifference {
    std::string_view field;
    int row = 0; // 1..8 for a field of a table, 0 for a single field
    std::string left;  // the values as they appear in the JSON form
    std::string right;
};

std::vector<FieldDifference> diffSettings(const StationSettings& left, const StationSettings& right);

} // namespace rm8
