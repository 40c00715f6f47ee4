#pragma once
// The small conversions between the texts of the settings fields and the
// bytes of the image: rounding, clamping of decimal texts, analog scaling and
// the phone number's address form.

#include <cstdint>
#include <string>
#include <string_view>

#include "settings/measuring_range.h"

namespace rm8 {

// Rounds half away from zero's lower neighbour: 2.5 -> 3, 0.125 (2) -> 0.13.
double roundHalfUp(double x, int decimals);

// The shortest decimal text of a number: a point, no leading blank, at most
// 15 significant digits (so 0.1 + 0.2 reads 0.3).
std::string decimalText(double value);

// A number as the start-up writes it into a field: a blank in front of a
// number that is not negative (" 0", " 100", "-5").
std::string startupNumberText(double value);

// The value of a text's leading number: blanks skipped, a comma taken as the
// decimal point, anything after the number ignored; 0 when there is none.
double textValue(std::string_view text);

// Limits the number in a text to [lo, hi]; a text that is not a number counts
// as its leading number. The decimals scale the intermediate text only: the
// value is not cut to them.
std::string clampText(std::string_view text, double lo, double hi, int decimals);

// Every "," becomes ".".
std::string decimalPoint(std::string_view text);

std::uint8_t levelToByte(const MeasuringRange& range, std::string_view text);
double byteToLevel(const MeasuringRange& range, std::uint8_t byte);
std::uint8_t hysteresisToByte(const MeasuringRange& range, std::string_view text);
double byteToHysteresis(const MeasuringRange& range, std::uint8_t byte);

// "+420123456789" <-> "0C91241032547698"; "12345" <-> "05812143F5".
std::string phoneToAddressForm(std::string_view phone);
std::string addressFormToPhone(std::string_view addressForm);

} // namespace rm8
