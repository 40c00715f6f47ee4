#include "editing/numeric_clamps.h"

#include <algorithm>
#include <cmath>

#include "editing/character_sets.h"
#include "settings/conversions.h"
#include "settings/value_limits.h"

namespace rm8 {
namespace {

constexpr double kShortestPeriod = 5; // minutes, when the hours are 0

ScheduleFields withMinimumPeriod(ScheduleFields fields)
{
    if (textValue(fields.hours) == 0)
        fields.minutes = clampFieldText(fields.minutes, kShortestPeriod, limits::kIntervalMinutesMax, 0);
    return fields;
}

} // namespace

std::string clampFieldText(std::string_view text, double lo, double hi, int decimals)
{
    const double value = roundHalfUp(textValue(text), decimals);
    return decimalText(std::clamp(value, lo, hi));
}

std::string clampImpulseLength(std::string_view text)
{
    return clampFieldText(text, limits::kImpulseLengthMin, limits::kImpulseLengthMax, limits::kImpulseLengthDecimals);
}

ScheduleFields clampScheduleHours(ScheduleFields fields)
{
    fields.hours = clampFieldText(fields.hours, 0, limits::kIntervalHoursMax, 0);
    return withMinimumPeriod(std::move(fields));
}

ScheduleFields clampScheduleMinutes(ScheduleFields fields)
{
    double minutes = textValue(clampFieldText(fields.minutes, 0, limits::kTypedMinutesMax, 0));
    if (minutes >= 60) {
        const double carried = std::floor(minutes / 60);
        fields.hours = clampFieldText(decimalText(textValue(fields.hours) + carried), 0, limits::kIntervalHoursMax, 0);
        minutes -= carried * 60;
    }
    fields.minutes = decimalText(minutes);
    return withMinimumPeriod(std::move(fields));
}

bool smsValidityAccepted(std::string_view text)
{
    if (text.empty() || !sets::inSet(text, sets::kDigits))
        return false;
    const double days = textValue(text);
    return days >= 1 && days <= 30;
}

} // namespace rm8
