#pragma once
// Everything the tool edits for one station. Texts are UTF-8; the image holds
// them in Windows-1250. Names are those of the main window's fields, so that
// the record, the window, the JSON form and the report speak one language.

#include <array>
#include <cstdint>
#include <string>

#include "settings/measuring_range.h"

namespace rm8 {

inline constexpr std::size_t kRows = 8;

// The eighth analog input measures the station's own battery.
inline constexpr std::size_t kBatteryRow = 7;

// A column of the main window's tables: row 0 is item 1.
template <class T>
using Row8 = std::array<T, kRows>;

struct StationSettings {
    // Constructs the start-up state: initial texts and analog defaults.
    StationSettings();

    // General
    std::string tabJmenoStanice;
    std::string tabPIN;
    bool opPINAuth = false;
    bool tabPrepnoutNepovolPristup = false;
    bool tabOdpovidatT0 = false;
    bool opEnablePS1 = false; // the option pair: false selects opEnablePS0
    bool opSuperPS = false;
    bool opPSOutOff = false;
    std::string eePSOnH = "1";
    std::string eePSOnM = "0";
    std::string eePSOffH = "1";
    std::string eePSOffM = "0";

    // SMS and reports
    std::string tabTCcentra;
    std::string tabDobaPlatnostiSMS = "3";
    bool opNotAuthorized = false;
    std::string rtNotAuthorized;
    bool opPowerReport = false;
    std::string rtPowerUp;
    std::string rtPowerDown;
    bool opSwitchReport = false;
    std::string rtSwitchOn;
    std::string rtSwitchOff;
    bool opBatt = false;
    // Not carried by the image: the station sends the battery row's
    // falling-CL1 text, tabAINCL1Dn[kBatteryRow], and the two stay equal.
    std::string rtBattLow;

    // Digital inputs
    Row8<std::string> tabINPNazev;
    Row8<std::string> tabINPZap;
    Row8<std::string> tabINPVyp;
    Row8<std::string> tabINPLH;
    Row8<std::string> tabINPHL;
    Row8<bool> tabINPZpr{};
    Row8<bool> tabINPLHEvent{};
    Row8<bool> tabINPHLEvent{};
    Row8<bool> tabINPNeg{};
    Row8<bool> eeMaskDInLHAlarm{};
    Row8<bool> eeMaskDInHLAlarm{};

    // Outputs
    Row8<std::string> tabOUTNazev;
    Row8<std::string> tabOUTZap;
    Row8<std::string> tabOUTVyp;
    Row8<std::string> tabOUTimpuls;
    Row8<std::string> tabOUTimpulsLEN;
    Row8<bool> tabOUTZpr{};
    Row8<bool> tabOUTNeg{};
    std::uint8_t eeMaskDOutFnc = 0;

    // Analog inputs
    Row8<std::string> tabAINNazev;
    Row8<std::string> tabAINStateL;
    Row8<std::string> tabAINStateM;
    Row8<std::string> tabAINStateH;
    Row8<std::string> tabAINCL1Level;
    Row8<std::string> tabAINCL2Level;
    Row8<std::string> tabAINHCL1Level;
    Row8<std::string> tabAINHCL2Level;
    Row8<std::string> tabAINCL1Up;
    Row8<std::string> tabAINCL1Dn;
    Row8<std::string> tabAINCL2Up;
    Row8<std::string> tabAINCL2Dn;
    Row8<bool> tabAINCL1UpEvent{};
    Row8<bool> tabAINCL1DnEvent{};
    Row8<bool> tabAINCL2UpEvent{};
    Row8<bool> tabAINCL2DnEvent{};
    Row8<bool> tabAINZpr{};
    Row8<bool> tabAINPrc{};
    Row8<bool> tabAINNeg{};
    Row8<std::uint8_t> analogOptions{};
    std::array<MeasuringRange, kRows> ranges = defaultMeasuringRanges(); // not stored

    // Phone numbers
    Row8<std::string> tabTC;
    Row8<bool> tabTCPrijem{};
    Row8<bool> tabTCUdalost{};
    std::string tabUTO = "+420"; // not carried by the image
    bool tabUTOEnable = false;   // not carried by the image

    friend bool operator==(const StationSettings&, const StationSettings&) = default;
};

} // namespace rm8
