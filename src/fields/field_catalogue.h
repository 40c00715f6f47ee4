#pragma once
// Every setting of a station, described once: its name (the main window's
// field name), its shape, where it lives in the record, its page and its
// length limit. The JSON form, the comparison of two configurations and the
// window's fields are all driven by this one table; start-up values come from
// the record alone.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "settings/station_settings.h"

namespace rm8 {

enum class FieldShape {
    Text,       // a single text field
    CheckBox,   // 0 or 1
    OptionPair, // true or false: which of two option buttons is selected
    TextRow,    // a text per row of eight
    CheckRow,   // a check box per row of eight
    FlagRow,    // a true/false option per row of eight (dialog options)
    Byte,       // a whole byte
    ByteRow,    // a whole byte per row of eight
};

// The main window's tab pages, in order.
enum class Page { General = 0, Sms = 1, DigitalInputs = 2, Outputs = 3, Analog1To4 = 4, Analog5To8 = 5, Phones = 6 };

using FieldMember = std::variant<std::string StationSettings::*, bool StationSettings::*,
                                 Row8<std::string> StationSettings::*, Row8<bool> StationSettings::*,
                                 std::uint8_t StationSettings::*, Row8<std::uint8_t> StationSettings::*>;

struct FieldInfo {
    std::string_view name;
    FieldShape shape;
    Page page;             // for analog rows 5..8 the page is Analog5To8
    int maxLength;         // characters a text field accepts; 0 for no limit or no text
    FieldMember member;

    bool perRow() const
    {
        return shape == FieldShape::TextRow || shape == FieldShape::CheckRow || shape == FieldShape::FlagRow
               || shape == FieldShape::ByteRow;
    }
    Page pageOfRow(std::size_t row) const; // row 0..7
    // The field's text in a record, of row 0..7 for a table column; empty
    // for a field that is no text. A fresh record gives the start-up texts.
    std::string_view textIn(const StationSettings& settings, std::size_t row = 0) const;
};

std::span<const FieldInfo> fieldCatalogue();
const FieldInfo* findField(std::string_view name);

} // namespace rm8
