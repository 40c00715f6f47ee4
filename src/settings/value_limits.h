#pragma once
// The ranges of the station's numeric settings. The fields clamp a typed
// value into them when they are left, and the encoder clamps once more when
// it writes the image, so that a hand-edited settings file cannot overflow
// the bytes that hold the value.

namespace rm8::limits {

// An output's impulse length in seconds, held in tenths in one byte.
inline constexpr double kImpulseLengthMin = 0.1;
inline constexpr double kImpulseLengthMax = 25.5;
inline constexpr int kImpulseLengthDecimals = 1;

// A power-saving interval, held in tenths of a second in three bytes.
inline constexpr int kIntervalHoursMax = 465;
inline constexpr int kIntervalMinutesMax = 59; // beside the whole hours
// Minutes typed before the whole hours in them are carried over: the most
// whose tenths of a second still fit the three bytes.
inline constexpr int kTypedMinutesMax = 27962;

} // namespace rm8::limits
