#pragma once
// The words under which the window shows each field: the text of its label
// or check box, or the heading of its table column, and the captions of the
// tab pages. Lists that point a technician at a field (the check panel, the
// comparison table) name it with these, so that it can be found by eye.

#include <optional>
#include <string>
#include <string_view>

#include "fields/field_catalogue.h"
#include "fields/table_rows.h"

namespace rm8 {

// The caption of a catalogue field, or of the memory-size display that the
// size check names; empty for a name the window does not show.
std::string_view fieldCaption(std::string_view field);

// The caption of a tab page ("Dig. vstupy").
std::string_view pageCaption(Page page);

// The page that holds a field of a row; none for a name that lives on no
// page, such as the memory-size display.
std::optional<Page> fieldPage(std::string_view field, FieldRow row);

// The row's label before the caption for a field of a table ("IN3: Název"),
// the caption alone for a single field.
std::string fieldLabel(std::string_view field, FieldRow row);

// The label of the row of the table that holds a field ("IN3", "BAT");
// empty for a single field.
std::string tableRowLabel(std::string_view field, FieldRow row);

} // namespace rm8
