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

namespace {

// Which member of a row stands for which column of the record.
template <class Row, class T> struct Column {
    T Row::*row;
    Row8<T> S::*record;
};

template <class Row, class T, std::size_t N>
void copyIn(Row& value, const S& s, std::size_t i, const std::array<Column<Row, T>, N>& columns)
{
    for (const auto& column : columns)
        value.*column.row = (s.*column.record)[i];
}

template <class Row, class T, std::size_t N>
void copyOut(const Row& value, S& s, std::size_t i, const std::array<Column<Row, T>, N>& columns)
{
    for (const auto& column : columns)
        (s.*column.record)[i] = value.*column.row;
}

using IT = Column<InputRow, std::string>;
using IB = Column<InputRow, bool>;
const std::array kInputTexts{IT{&InputRow::nazev, &S::tabINPNazev}, IT{&InputRow::zap, &S::tabINPZap},
                             IT{&InputRow::vyp, &S::tabINPVyp}, IT{&InputRow::lh, &S::tabINPLH},
                             IT{&InputRow::hl, &S::tabINPHL}};
const std::array kInputChecks{IB{&InputRow::zpr, &S::tabINPZpr},        IB{&InputRow::lhEvent, &S::tabINPLHEvent},
                              IB{&InputRow::hlEvent, &S::tabINPHLEvent}, IB{&InputRow::neg, &S::tabINPNeg},
                              IB{&InputRow::lhAlarm, &S::eeMaskDInLHAlarm}, IB{&InputRow::hlAlarm, &S::eeMaskDInHLAlarm}};

using OT = Column<OutputRow, std::string>;
using OB = Column<OutputRow, bool>;
const std::array kOutputTexts{OT{&OutputRow::nazev, &S::tabOUTNazev}, OT{&OutputRow::zap, &S::tabOUTZap},
                              OT{&OutputRow::vyp, &S::tabOUTVyp}, OT{&OutputRow::impuls, &S::tabOUTimpuls},
                              OT{&OutputRow::impulsLen, &S::tabOUTimpulsLEN}};
const std::array kOutputChecks{OB{&OutputRow::zpr, &S::tabOUTZpr}, OB{&OutputRow::neg, &S::tabOUTNeg}};

using AT = Column<AnalogRow, std::string>;
using AB = Column<AnalogRow, bool>;
const std::array kAnalogTexts{
    AT{&AnalogRow::nazev, &S::tabAINNazev}, AT{&AnalogRow::stateL, &S::tabAINStateL},
    AT{&AnalogRow::stateM, &S::tabAINStateM}, AT{&AnalogRow::stateH, &S::tabAINStateH},
    AT{&AnalogRow::cl1, &S::tabAINCL1Level}, AT{&AnalogRow::hcl1, &S::tabAINHCL1Level},
    AT{&AnalogRow::cl2, &S::tabAINCL2Level}, AT{&AnalogRow::hcl2, &S::tabAINHCL2Level},
    AT{&AnalogRow::cl1Up, &S::tabAINCL1Up},   AT{&AnalogRow::cl1Dn, &S::tabAINCL1Dn},
    AT{&AnalogRow::cl2Up, &S::tabAINCL2Up},   AT{&AnalogRow::cl2Dn, &S::tabAINCL2Dn}};
const std::array kAnalogChecks{
    AB{&AnalogRow::cl1UpEvent, &S::tabAINCL1UpEvent}, AB{&AnalogRow::cl1DnEvent, &S::tabAINCL1DnEvent},
    AB{&AnalogRow::cl2UpEvent, &S::tabAINCL2UpEvent}, AB{&AnalogRow::cl2DnEvent, &S::tabAINCL2DnEvent},
    AB{&AnalogRow::zpr, &S::tabAINZpr},               AB{&AnalogRow::prc, &S::tabAINPrc},
    AB{&AnalogRow::neg, &S::tabAINNeg}};

// The analog option byte's bits and the boxes they stand for.
struct OptionBit {
    bool AnalogRow::*box;
    std::uint8_t bit;
};
constexpr std::array kAnalogSendBits{OptionBit{&AnalogRow::sendCl1Up, kSendCl1Up},
                                     OptionBit{&AnalogRow::sendCl1Dn, kSendCl1Dn},
                                     OptionBit{&AnalogRow::sendCl2Up, kSendCl2Up},
                                     OptionBit{&AnalogRow::sendCl2Dn, kSendCl2Dn}};

} // namespace

InputRow inputRow(const S& s, std::size_t i)
{
    InputRow v;
    copyIn(v, s, i, kInputTexts);
    copyIn(v, s, i, kInputChecks);
    return v;
}

void storeInputRow(S& s, std::size_t i, const InputRow& v)
{
    copyOut(v, s, i, kInputTexts);
    copyOut(v, s, i, kInputChecks);
}

OutputRow outputRow(const S& s, std::size_t i)
{
    OutputRow v;
    copyIn(v, s, i, kOutputTexts);
    copyIn(v, s, i, kOutputChecks);
    for (const auto& special : kSpecialFunctions)
        if (special.row == i && (s.eeMaskDOutFnc & special.bit) != 0)
            v.function = special.function;
    return v;
}

void storeOutputRow(S& s, std::size_t i, const OutputRow& v)
{
    copyOut(v, s, i, kOutputTexts);
    copyOut(v, s, i, kOutputChecks);
    for (const auto& special : kSpecialFunctions)
        if (special.row == i)
            setBit(s.eeMaskDOutFnc, special.bit, v.function == special.function);
}

AnalogRow analogRow(const S& s, std::size_t i)
{
    AnalogRow v;
    copyIn(v, s, i, kAnalogTexts);
    copyIn(v, s, i, kAnalogChecks);
    for (const auto& option : kAnalogSendBits)
        v.*option.box = (s.analogOptions[i] & option.bit) != 0;
    v.range = s.ranges[i];
    return v;
}

void storeAnalogRow(S& s, std::size_t i, const AnalogRow& v)
{
    copyOut(v, s, i, kAnalogTexts);
    copyOut(v, s, i, kAnalogChecks);
    for (const auto& option : kAnalogSendBits)
        setBit(s.analogOptions[i], option.bit, v.*option.box);
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
