#pragma once
// What happens when the technician leaves a field: the one operation that the
// main window, the row dialogs and the tests share.
//
// The caller gives the settings as they stand (the typed text already in
// them), the field, its row and the typed text. The answer says whether the
// text is accepted as typed, replaced (a clamp, the UTO prefix) or refused
// with the message to show; which page holds the field; and what else
// changes with it, each change with the message that goes with it.
//
// Dialog fields (INPNazev, OUTimpulsLEN, TC, AINCL1Level, ...) are answered
// against the record's row of the dialog: the caller keeps the dialog's
// values in a copy of the record (see row_model.h) and names the row.
//
// Accepting a non-empty battery text rtBattLow also switches on the battery
// row's falling-level-1 event, tabAINCL1DnEvent(kBatteryRow), since that event is the
// one that sends this text.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "fields/field_catalogue.h"
#include "fields/table_rows.h"
#include "flow/interaction.h"
#include "settings/station_settings.h"

namespace rm8 {

enum class LeaveVerdict { Accept, Replace, Refuse };

struct Notice {
    MessageIcon icon;
    std::string text;

    friend bool operator==(const Notice&, const Notice&) = default;
};

// Another field set as a consequence, with the message shown for it, if any.
struct FieldChange {
    std::string field;
    FieldRow row;
    std::variant<std::string, bool> value;
    std::optional<Notice> notice;

    friend bool operator==(const FieldChange&, const FieldChange&) = default;
};

struct LeaveOutcome {
    LeaveVerdict verdict = LeaveVerdict::Accept;
    std::string text;              // the field's text afterwards
    std::optional<Notice> refusal; // with Refuse: the stop message
    std::optional<Page> page;      // the main window's page of the field
    std::vector<FieldChange> changes;
};

// settings: the current values, with the typed text in place.
LeaveOutcome leaveField(const StationSettings& settings, std::string_view field, FieldRow row,
                        std::string_view typed);

// A click on tabTCPrijem(row) or tabTCUdalost(row), and the end of the phone
// dialog: the permission boxes that the row's number does not allow.
std::vector<FieldChange> phoneTableRule(const StationSettings& settings, std::size_t row);

// The battery text lives in two fields that are kept equal: typing into one
// gives this change for the other; nothing for any other field or row.
std::optional<FieldChange> batteryMirror(std::string_view field, FieldRow row, std::string_view text);

// Writes a change into the record.
void applyChange(StationSettings& settings, const FieldChange& change);

// The dialog field's counterpart in the record ("INPNazev" is tabINPNazev);
// the name itself for a field of the main window.
std::string_view recordFieldOf(std::string_view field);

} // namespace rm8
