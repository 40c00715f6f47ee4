#include "editing/row_model.h"

#include <algorithm>

#include "settings/conversions.h"

namespace rm8 {
namespace {

using S = StationSettings;

constexpr std::uint8_t kModemStateBit = 0x01;       // output 1
constexpr std::uint8_t kPowerSavingStateBit = 0x02; // output 2

// The output whose special function a bit of the mask switches on.
struct SpecialFunction {
    std::size_t row;
    OutputFunction function;
    std::uint8_t bit;
};
constexpr SpecialFunction kSpecialFunctions[] = {
    {0, OutputFunction::ModemState, kModemStateBit},
    {1, OutputFunction::PowerSavingState, kPowerSavingStateBit},
};

constexpr std::uint8_t kSendCl1Up = 0x01;
constexpr std::uint8_t kSendCl1Dn = 0x02;
constexpr std::uint8_t kSendCl2Up = 0x04;
constexpr std::uint8_t kSendCl2Dn = 0x08;

void setBit(std::uint8_t& byte, std::uint8_t bit, bool on)
{
    byte = static_cast<std::uint8_t>(on ? (byte | bit) : (byte & ~bit));
}

} // namespace

bool outputFunctionAvailable(std::size_t row, OutputFunction function)
{
    if (function == OutputFunction::Standard)
        return true;
    for (const auto& special : kSpecialFunctions)
        if (special.row == row && special.function == function)
            return true;
    return false;
}

InputRow inputRow(const S& s, std::size_t i)
{
    return {s.tabINPNazev[i],   s.tabINPZap[i],        s.tabINPVyp[i],        s.tabINPLH[i],
            s.tabINPHL[i],      s.tabINPZpr[i],        s.tabINPLHEvent[i],    s.tabINPHLEvent[i],
            s.tabINPNeg[i],     s.eeMaskDInLHAlarm[i], s.eeMaskDInHLAlarm[i]};
}

void storeInputRow(S& s, std::size_t i, const InputRow& v)
{
    s.tabINPNazev[i] = v.nazev;
    s.tabINPZap[i] = v.zap;
    s.tabINPVyp[i] = v.vyp;
    s.tabINPLH[i] = v.lh;
    s.tabINPHL[i] = v.hl;
    s.tabINPZpr[i] = v.zpr;
    s.tabINPLHEvent[i] = v.lhEvent;
    s.tabINPHLEvent[i] = v.hlEvent;
    s.tabINPNeg[i] = v.neg;
    s.eeMaskDInLHAlarm[i] = v.lhAlarm;
    s.eeMaskDInHLAlarm[i] = v.hlAlarm;
}

OutputRow outputRow(const S& s, std::size_t i)
{
    OutputRow v{s.tabOUTNazev[i], s.tabOUTZap[i], s.tabOUTVyp[i], s.tabOUTimpuls[i], s.tabOUTimpulsLEN[i],
                s.tabOUTZpr[i],   s.tabOUTNeg[i], OutputFunction::Standard};
    for (const auto& special : kSpecialFunctions)
        if (special.row == i && (s.eeMaskDOutFnc & special.bit) != 0)
            v.function = special.function;
    return v;
}

void storeOutputRow(S& s, std::size_t i, const OutputRow& v)
{
    s.tabOUTNazev[i] = v.nazev;
    s.tabOUTZap[i] = v.zap;
    s.tabOUTVyp[i] = v.vyp;
    s.tabOUTimpuls[i] = v.impuls;
    s.tabOUTimpulsLEN[i] = v.impulsLen;
    s.tabOUTZpr[i] = v.zpr;
    s.tabOUTNeg[i] = v.neg;
    for (const auto& special : kSpecialFunctions)
        if (special.row == i)
            setBit(s.eeMaskDOutFnc, special.bit, v.function == special.function);
}

AnalogRow analogRow(const S& s, std::size_t i)
{
    const std::uint8_t options = s.analogOptions[i];
    AnalogRow v;
    v.nazev = s.tabAINNazev[i];
    v.stateL = s.tabAINStateL[i];
    v.stateM = s.tabAINStateM[i];
    v.stateH = s.tabAINStateH[i];
    v.cl1 = s.tabAINCL1Level[i];
    v.hcl1 = s.tabAINHCL1Level[i];
    v.cl2 = s.tabAINCL2Level[i];
    v.hcl2 = s.tabAINHCL2Level[i];
    v.cl1Up = s.tabAINCL1Up[i];
    v.cl1Dn = s.tabAINCL1Dn[i];
    v.cl2Up = s.tabAINCL2Up[i];
    v.cl2Dn = s.tabAINCL2Dn[i];
    v.cl1UpEvent = s.tabAINCL1UpEvent[i];
    v.cl1DnEvent = s.tabAINCL1DnEvent[i];
    v.cl2UpEvent = s.tabAINCL2UpEvent[i];
    v.cl2DnEvent = s.tabAINCL2DnEvent[i];
    v.zpr = s.tabAINZpr[i];
    v.prc = s.tabAINPrc[i];
    v.neg = s.tabAINNeg[i];
    v.sendCl1Up = (options & kSendCl1Up) != 0;
    v.sendCl1Dn = (options & kSendCl1Dn) != 0;
    v.sendCl2Up = (options & kSendCl2Up) != 0;
    v.sendCl2Dn = (options & kSendCl2Dn) != 0;
    v.range = s.ranges[i];
    return v;
}

void storeAnalogRow(S& s, std::size_t i, const AnalogRow& v)
{
    s.tabAINNazev[i] = v.nazev;
    s.tabAINStateL[i] = v.stateL;
    s.tabAINStateM[i] = v.stateM;
    s.tabAINStateH[i] = v.stateH;
    s.tabAINCL1Level[i] = v.cl1;
    s.tabAINHCL1Level[i] = v.hcl1;
    s.tabAINCL2Level[i] = v.cl2;
    s.tabAINHCL2Level[i] = v.hcl2;
    s.tabAINCL1Up[i] = v.cl1Up;
    s.tabAINCL1Dn[i] = v.cl1Dn;
    s.tabAINCL2Up[i] = v.cl2Up;
    s.tabAINCL2Dn[i] = v.cl2Dn;
    s.tabAINCL1UpEvent[i] = v.cl1UpEvent;
    s.tabAINCL1DnEvent[i] = v.cl1DnEvent;
    s.tabAINCL2UpEvent[i] = v.cl2UpEvent;
    s.tabAINCL2DnEvent[i] = v.cl2DnEvent;
    s.tabAINZpr[i] = v.zpr;
    s.tabAINPrc[i] = v.prc;
    s.tabAINNeg[i] = v.neg;
    std::uint8_t& options = s.analogOptions[i];
    setBit(options, kSendCl1Up, v.sendCl1Up);
    setBit(options, kSendCl1Dn, v.sendCl1Dn);
    setBit(options, kSendCl2Up, v.sendCl2Up);
    setBit(options, kSendCl2Dn, v.sendCl2Dn);
}

PhoneRow phoneRow(const S& s, std::size_t i)
{
    return {s.tabTC[i], s.tabTCPrijem[i], s.tabTCUdalost[i]};
}

void storePhoneRow(S& s, std::size_t i, const PhoneRow& v)
{
    s.tabTC[i] = v.number;
    s.tabTCPrijem[i] = v.prijem;
    s.tabTCUdalost[i] = v.udalost;
}

namespace {

// The start-up texts carry a blank in front (" 0", " 100").
bool isNumber(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    if (text.empty())
        return false;
    for (char c : text)
        if ((c < '0' || c > '9') && c != ',' && c != '.')
            return false;
    return true;
}

// v -> lower + upper - v, written with the decimal separator the
// technician used.
std::string mirrored(const std::string& text, const MeasuringRange& range)
{
    std::string result = decimalText(range.lower + range.upper - textValue(text));
    if (text.find(',') != std::string::npos)
        std::replace(result.begin(), result.end(), '.', ',');
    return result;
}

} // namespace

void invertAnalogLevels(AnalogRow& row)
{
    // A text that is not a number cannot be mirrored; the levels are then
    // left for the technician to correct, the bands swapped or not at all.
    for (const std::string* text : {&row.cl1, &row.hcl1, &row.cl2, &row.hcl2})
        if (!isNumber(*text))
            return;
    std::string cl1 = mirrored(row.cl2, row.range);
    std::string cl2 = mirrored(row.cl1, row.range);
    row.cl1 = std::move(cl1);
    row.cl2 = std::move(cl2);
    std::swap(row.hcl1, row.hcl2);
}

} // namespace rm8
