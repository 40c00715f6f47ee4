#pragma once
// The station's memory map, declared as tables. The encoder, the decoder, the
// inspection and their tests walk these tables instead of repeating addresses.

#include <array>
#include <cstdint>
#include <string_view>

#include "settings/station_settings.h"

namespace rm8::layout {

using S = StationSettings;
using TextRow = Row8<std::string> S::*;
using BoolRow = Row8<bool> S::*;
using Text = std::string S::*;
using Flag = bool S::*;

inline constexpr std::uint16_t kConstantWordAddress = 42;
inline constexpr std::uint16_t kConstantWordValue = 64;
inline constexpr std::uint16_t kLayoutMarkAddress = 46;
inline constexpr std::uint16_t kLayoutMark = 9602; // 0x2582
inline constexpr std::uint16_t kCheckByteAddress = 48;
inline constexpr std::uint16_t kHeaderLength = 48; // bytes 0..47 are summed
inline constexpr std::uint16_t kFlags1Address = 128;
inline constexpr std::uint16_t kFlags2Address = 129;
inline constexpr std::uint16_t kSmsValidityAddress = 130;
inline constexpr int kSmsValidityOffset = 166;
inline constexpr std::uint16_t kImpulseLengthBase = 183;
inline constexpr std::uint16_t kAlarmLowToHighAddress = 240;
inline constexpr std::uint16_t kAlarmHighToLowAddress = 241;
inline constexpr std::uint16_t kOutputFunctionAddress = 242;
inline constexpr std::uint16_t kAnalogOptionsBase = 243;
inline constexpr std::uint16_t kHeapStart = 272;
// Bytes 64..127 are the station's own: read with the rest, never written.
inline constexpr std::uint16_t kStationBytesStart = 64;
inline constexpr std::uint16_t kStationBytesEnd = 128;
inline constexpr std::uint16_t kEndMark = 0xFFFF; // the word after the last text
inline constexpr std::uint16_t kEndMarkLength = 2;

inline constexpr std::uint16_t kReservedTextsPointer = 36; // two texts, always empty
inline constexpr std::size_t kReservedTextCount = 2;
inline constexpr std::uint16_t kGeneralTextsPointer = 38;
inline constexpr std::uint16_t kPhonesPointer = 40;

// A group of eight texts, one per row, found through the pointer word.
struct TextGroup {
    std::uint16_t pointer;
    TextRow field;
    std::string_view name;
};

// Heap groups in the order the encoder lays them out and the decoder reads them.
inline constexpr std::array<TextGroup, 13> kRowTextGroups{{
    {0, &S::tabINPNazev, "tabINPNazev"},
    {2, &S::tabINPZap, "tabINPZap"},
    {4, &S::tabINPVyp, "tabINPVyp"},
    {8, &S::tabINPLH, "tabINPLH"},
    {10, &S::tabINPHL, "tabINPHL"},
    {12, &S::tabOUTNazev, "tabOUTNazev"},
    {14, &S::tabOUTZap, "tabOUTZap"},
    {16, &S::tabOUTVyp, "tabOUTVyp"},
    {18, &S::tabOUTimpuls, "tabOUTimpuls"},
    {20, &S::tabAINNazev, "tabAINNazev"},
    {22, &S::tabAINStateL, "tabAINStateL"},
    {24, &S::tabAINStateM, "tabAINStateM"},
    {26, &S::tabAINStateH, "tabAINStateH"},
}};

// The four analog event slots. The encoder always writes the not-inverted
// column; the decoder picks the column by the inverted flag it has just read.
// A write followed by a read therefore exchanges the level-1 and level-2
// texts of an inverted input. That asymmetry is the station's and is kept.
struct AnalogSlot {
    std::uint16_t pointer;
    TextRow notInverted;
    TextRow inverted;
    std::string_view notInvertedName;
    std::string_view invertedName;
};

inline constexpr std::array<AnalogSlot, 4> kAnalogSlots{{
    {28, &S::tabAINCL1Dn, &S::tabAINCL2Dn, "tabAINCL1Dn", "tabAINCL2Dn"},
    {30, &S::tabAINCL1Up, &S::tabAINCL2Up, "tabAINCL1Up", "tabAINCL2Up"},
    {32, &S::tabAINCL2Dn, &S::tabAINCL1Dn, "tabAINCL2Dn", "tabAINCL1Dn"},
    {34, &S::tabAINCL2Up, &S::tabAINCL1Up, "tabAINCL2Up", "tabAINCL1Up"},
}};

// The general text block, in stored order.
struct NamedText {
    Text field;
    std::string_view name;
};

inline constexpr std::array<NamedText, 8> kGeneralTexts{{
    {&S::tabJmenoStanice, "tabJmenoStanice"},
    {&S::tabPIN, "tabPIN"},
    {&S::tabTCcentra, "tabTCcentra"},
    {&S::rtNotAuthorized, "rtNotAuthorized"},
    {&S::rtPowerUp, "rtPowerUp"},
    {&S::rtPowerDown, "rtPowerDown"},
    {&S::rtSwitchOn, "rtSwitchOn"},
    {&S::rtSwitchOff, "rtSwitchOff"},
}};

// A byte whose bit i belongs to row i + 1. A null field is a byte that the
// encoder writes 0 and the decoder ignores.
struct BitByte {
    std::uint16_t address;
    BoolRow field;
};

// In the encoder's order of emission.
inline constexpr std::array<BitByte, 20> kBitBytes{{
    {131, &S::tabTCPrijem},
    {132, &S::tabTCUdalost},
    {133, &S::tabINPZpr},
    {134, nullptr},
    {135, &S::tabINPLHEvent},
    {136, nullptr},
    {137, &S::tabINPHLEvent},
    {138, nullptr},
    {139, &S::tabINPNeg},
    {140, nullptr},
    {141, &S::tabOUTZpr},
    {142, &S::tabOUTNeg},
    {143, nullptr},
    {144, &S::tabAINZpr},
    {145, &S::tabAINPrc},
    {182, &S::tabAINNeg},
    {146, &S::tabAINCL1DnEvent},
    {147, &S::tabAINCL1UpEvent},
    {148, &S::tabAINCL2DnEvent},
    {149, &S::tabAINCL2UpEvent},
}};

inline constexpr std::array<BitByte, 2> kAlarmBytes{{
    {kAlarmLowToHighAddress, &S::eeMaskDInLHAlarm},
    {kAlarmHighToLowAddress, &S::eeMaskDInHLAlarm},
}};

// A flag bit of the general flag bytes. When texts are named, the bit is set
// only if the box is ticked and at least one of the texts is not empty.
struct FlagBit {
    std::uint16_t address;
    int bit;
    Flag field;
    std::array<Text, 2> texts;
};

inline constexpr std::array<FlagBit, 10> kFlagBits{{
    {kFlags1Address, 0, &S::opNotAuthorized, {&S::rtNotAuthorized, nullptr}},
    {kFlags1Address, 1, &S::tabPrepnoutNepovolPristup, {nullptr, nullptr}},
    {kFlags1Address, 2, &S::tabOdpovidatT0, {nullptr, nullptr}},
    {kFlags1Address, 3, &S::opSwitchReport, {&S::rtSwitchOn, &S::rtSwitchOff}},
    {kFlags1Address, 4, &S::opPowerReport, {&S::rtPowerUp, &S::rtPowerDown}},
    {kFlags1Address, 5, &S::opBatt, {nullptr, nullptr}},
    {kFlags2Address, 1, &S::opEnablePS1, {nullptr, nullptr}},
    {kFlags2Address, 2, &S::opSuperPS, {nullptr, nullptr}},
    {kFlags2Address, 3, &S::opPSOutOff, {nullptr, nullptr}},
    {kFlags2Address, 7, &S::opPINAuth, {nullptr, nullptr}},
}};

// One byte per analog input, scaled by the input's measuring range.
enum class AnalogScale { Level, Hysteresis };

struct AnalogByteRun {
    std::uint16_t base; // input i (0..7) at base + i
    TextRow field;
    AnalogScale scale;
    std::string_view name;
};

inline constexpr std::array<AnalogByteRun, 4> kAnalogByteRuns{{
    {150, &S::tabAINCL1Level, AnalogScale::Level, "tabAINCL1Level"},
    {158, &S::tabAINCL2Level, AnalogScale::Level, "tabAINCL2Level"},
    {166, &S::tabAINHCL1Level, AnalogScale::Hysteresis, "tabAINHCL1Level"},
    {174, &S::tabAINHCL2Level, AnalogScale::Hysteresis, "tabAINHCL2Level"},
}};

// A power-saving interval: 24 bits of tenths of a second.
struct Interval {
    std::uint16_t address;
    Text hours;
    Text minutes;
    std::string_view hoursName;
    std::string_view minutesName;
};

inline constexpr std::array<Interval, 2> kIntervals{{
    {251, &S::eePSOnH, &S::eePSOnM, "eePSOnH", "eePSOnM"},
    {254, &S::eePSOffH, &S::eePSOffM, "eePSOffH", "eePSOffM"},
}};

} // namespace rm8::layout
