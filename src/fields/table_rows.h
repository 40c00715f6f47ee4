#pragma once
// The rows of the window's four tables of eight: how a field names one of
// them, and how a technician reads them ("IN3", "OUT1", "AIN7" and "BAT",
// since the eighth analog input measures the battery, "T8"). Messages and
// dialog captions quote these labels; settings files and rm8ctl count rows
// from 1, as the labels do.

#include <cstddef>
#include <optional>
#include <string>

#include "fields/field_catalogue.h"

namespace rm8 {

enum class RowTable { Inputs, Outputs, Analog, Phones };

// A field's row: 0..7 for a column of a table, none for a single field.
using FieldRow = std::optional<std::size_t>;

// The row of a field given its catalogue entry and a table row 0..7: none
// when the field is a single one.
FieldRow rowOfField(const FieldInfo& info, std::size_t row);

// The row as settings files, messages and labels count it: 1..8.
std::size_t rowNumber(std::size_t row);

std::string rowLabel(RowTable table, std::size_t row); // row 0..7

// The table whose rows a page's fields belong to; none for a page of single
// fields.
std::optional<RowTable> rowTableOf(Page page);

} // namespace rm8
