#pragma once
// One row of a table as its dialog edits it: the row's fields of the main
// window plus the options that only the dialog shows. A dialog works on such
// a copy and hands it back only when confirmed, so Storno leaves the record
// exactly as it was.
//
// Two station bytes are shared by several rows and are owned bit by bit:
// - the output function mask (one byte for all outputs): bit 0 set makes
//   output 1 show the modem's state, bit 1 set makes output 2 show the
//   power-saving state. Every other output is a standard output, and the
//   other six bits are carried as they were;
// - each analog input's option byte: bits 0 to 3 are its four "odeslat
//   ihned" boxes, in the order CL1 up, CL1 down, CL2 up, CL2 down; bits 4 to
//   7 are carried as they were.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "settings/measuring_range.h"
#include "settings/station_settings.h"

namespace rm8 {

struct InputRow {
    std::string nazev, zap, vyp, lh, hl;
    bool zpr = false, lhEvent = false, hlEvent = false, neg = false;
    bool lhAlarm = false, hlAlarm = false; // the two "odeslat ihned" boxes

    friend bool operator==(const InputRow&, const InputRow&) = default;
};

// The three option buttons eeMaskDOutFnc1..3.
enum class OutputFunction { Standard = 1, ModemState = 2, PowerSavingState = 3 };

struct OutputRow {
    std::string nazev, zap, vyp, impuls, impulsLen;
    bool zpr = false, neg = false;
    OutputFunction function = OutputFunction::Standard;

    friend bool operator==(const OutputRow&, const OutputRow&) = default;
};

// Which output functions a row can have: every output is a standard one,
// output 1 can show the modem's state, output 2 the power-saving state.
bool outputFunctionAvailable(std::size_t row, OutputFunction function);

struct AnalogRow {
    std::string nazev, stateL, stateM, stateH;
    std::string cl1, hcl1, cl2, hcl2; // levels and hystereses as typed
    std::string cl1Up, cl1Dn, cl2Up, cl2Dn;
    bool cl1UpEvent = false, cl1DnEvent = false, cl2UpEvent = false, cl2DnEvent = false;
    bool zpr = false, prc = false, neg = false;
    // The "odeslat ihned" boxes eeCL1Up, eeCL1Down, eeCL2Up, eeCL2Down.
    bool sendCl1Up = false, sendCl1Dn = false, sendCl2Up = false, sendCl2Dn = false;
    MeasuringRange range; // shown, never edited

    friend bool operator==(const AnalogRow&, const AnalogRow&) = default;
};

struct PhoneRow {
    std::string number;
    bool prijem = false, udalost = false;

    friend bool operator==(const PhoneRow&, const PhoneRow&) = default;
};

// row 0..7
InputRow inputRow(const StationSettings& settings, std::size_t row);
void storeInputRow(StationSettings& settings, std::size_t row, const InputRow& value);

OutputRow outputRow(const StationSettings& settings, std::size_t row);
void storeOutputRow(StationSettings& settings, std::size_t row, const OutputRow& value);

AnalogRow analogRow(const StationSettings& settings, std::size_t row);
void storeAnalogRow(StationSettings& settings, std::size_t row, const AnalogRow& value);

PhoneRow phoneRow(const StationSettings& settings, std::size_t row);
void storePhoneRow(StationSettings& settings, std::size_t row, const PhoneRow& value);

// The levels of an analog input, read with a comma or a point as the
// decimal separator.
struct AnalogLevels {
    double cl1 = 0, hcl1 = 0, cl2 = 0, hcl2 = 0;
};

// Reworks the levels for an input whose sense was inverted: every value v of
// the range becomes lower + upper - v, so the upper level becomes the lower
// one and the bands keep their widths. Doing it twice restores the levels.
// Texts that are no number stay as they are.
void invertAnalogLevels(AnalogRow& row);

} // namespace rm8
