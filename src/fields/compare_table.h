#pragma once
// What differs between the window's settings and another configuration (a
// settings file, or what a station holds), one row per field and table row,
// as a technician reads it: the page, the table row's label, the field's
// caption and the two values as the window would show them.

#include <string>
#include <vector>

#include "fields/field_catalogue.h"
#include "fields/table_rows.h"
#include "settings/station_settings.h"

namespace rm8 {

struct CompareRow {
    Page page;
    std::string field;
    FieldRow row;
    std::string rowLabel; // "IN3", "BAT"; empty for a single field
    std::string caption; // the field's label or column heading
    std::string windowValue; // a text as it stands, a check box "ano" or "ne", a byte as a number
    std::string otherValue;
};

// Ordered by page, then by table row (single fields first), then in the
// catalogue's order of fields.
std::vector<CompareRow> compareTable(const StationSettings& window, const StationSettings& other);

} // namespace rm8
