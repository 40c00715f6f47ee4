#pragma once
// The scale of one analog input: the values that level byte 0 and level
// byte 255 stand for, the decimals shown, and the unit.

#include <array>
#include <cstdint>
#include <string>

namespace rm8 {

struct MeasuringRange {
    double lower = 0;
    double upper = 100;
    std::int16_t decimals = 1;
    std::string unit;

    friend bool operator==(const MeasuringRange&, const MeasuringRange&) = default;
};

// Inputs 1 to 5 measure percent, 6 and 7 temperature, 8 the battery voltage.
inline std::array<MeasuringRange, 8> defaultMeasuringRanges()
{
    std::array<MeasuringRange, 8> ranges;
    for (int i = 0; i < 8; ++i) {
        if (i < 5)
            ranges[static_cast<std::size_t>(i)] = {0, 100, 1, "%"};
        else if (i < 7)
            ranges[static_cast<std::size_t>(i)] = {0, 100, 1, "°C"};
        else
            ranges[static_cast<std::size_t>(i)] = {0, 27, 1, "V"};
    }
    return ranges;
}

} // namespace rm8
