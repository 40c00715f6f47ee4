#pragma once
// The fields in which two configurations differ, one entry per field and row.

#include <string>
#include <string_view>
#include <vector>

#include "fields/table_rows.h"
#include "settings/station_settings.h"

namespace rm8 {

struct FieldDifference {
    std::string_view field;
    FieldRow row;
    std::string left;  // the values as they appear in the JSON form
    std::string right;
};

std::vector<FieldDifference> diffSettings(const StationSettings& left, const StationSettings& right);

} // namespace rm8
