#pragma once
// Numeric fields are never refused: on leaving, their text is replaced by the
// value rounded to the field's decimals and limited to its range.

#include <string>
#include <string_view>

namespace rm8 {

// Rounds the text's number to the decimals (half up), then limits it.
std::string clampFieldText(std::string_view text, double lo, double hi, int decimals);

// An output's impulse length: 0.1 to 25.5 seconds, one decimal.
std::string clampImpulseLength(std::string_view text);

// One power-saving interval as its two fields.
struct ScheduleFields {
    std::string hours;
    std::string minutes;

    friend bool operator==(const ScheduleFields&, const ScheduleFields&) = default;
};

// After the hour field was left: 0 to 465 whole hours; with 0 hours the
// minutes are kept to 5..59, so that no period is shorter than 5 minutes.
ScheduleFields clampScheduleHours(ScheduleFields fields);

// After the minute field was left: 0 to 27962 minutes, whole hours carried
// into the hour field, then the same five-minute floor.
ScheduleFields clampScheduleMinutes(ScheduleFields fields);

// The SMS validity period: whole days, 1 to 30.
bool smsValidityAccepted(std::string_view text);

} // namespace rm8
