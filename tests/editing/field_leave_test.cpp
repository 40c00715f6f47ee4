// What leaving a field does beyond judging its own text (the texts
// themselves are judged in field_tables_test): the consequences for other
// fields, the page to show, and the row model that the dialogs edit.

#include <gtest/gtest.h>

#include "editing/field_leave.h"
#include "editing/phone_rules.h"
#include "editing/row_model.h"

namespace rm8 {
namespace {

const Notice kPrijemNotice{MessageIcon::Exclamation, std::string(kPrijemNeedsNumber)};
const Notice kUdalostNotice{MessageIcon::Exclamation, std::string(kUdalostNeedsNumber)};

struct EffectCase {
    const char* what;
    std::string field;
    std::size_t row;
    std::string typed;
    void (*prepare)(StationSettings&);
    std::string text; // the field's text afterwards
    std::vector<FieldChange> changes;
};

TEST(LeaveField, SetsWhatFollowsFromTheText)
{
    const EffectCase cases[] = {
        {"an emptied number clears both permissions, each with its message", "tabTC", 2, "",
         [](StationSettings& s) { s.tabTCPrijem[2] = s.tabTCUdalost[2] = true; }, "",
         {{"tabTCPrijem", 2, false, kPrijemNotice}, {"tabTCUdalost", 2, false, kUdalostNotice}}},
        {"a number keeps its permissions and takes the UTO prefix", "tabTC", 0, "0601234567",
         [](StationSettings& s) { s.tabUTOEnable = s.tabTCPrijem[0] = true; }, "+420601234567", {}},
        {"the dialog's number waits for the dialog's boxes", "TC", 2, "",
         [](StationSettings& s) { s.tabTCPrijem[2] = true; }, "", {}},
        {"a battery text switches on the battery event", "rtBattLow", 0, "Baterie",
         [](StationSettings& s) { s.tabAINCL1Dn[7] = "Baterie"; }, "Baterie",
         {{"tabAINCL1DnEvent", 7, true, std::nullopt}}},
        {"a battery text not yet mirrored is mirrored", "rtBattLow", 0, "Bat",
         [](StationSettings& s) { s.tabAINCL1DnEvent[7] = true; }, "Bat",
         {{"tabAINCL1Dn", 7, std::string("Bat"), std::nullopt}}},
        {"an empty battery text leaves the event alone", "rtBattLow", 0, "", [](StationSettings&) {}, "", {}},
        {"minutes carry whole hours into their partner", "eePSOffM", 0, "125",
         [](StationSettings& s) { s.eePSOffH = "2"; }, "5", {{"eePSOffH", std::nullopt, std::string("4"), std::nullopt}}},
        {"a refused text changes nothing else", "tabTC", 1, "06abc",
         [](StationSettings& s) { s.tabTCPrijem[1] = true; }, "06abc", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        StationSettings s;
        c.prepare(s);
        const LeaveOutcome outcome = leaveField(s, c.field, c.row, c.typed);
        EXPECT_EQ(outcome.text, c.text);
        EXPECT_EQ(outcome.changes, c.changes);
    }
}

TEST(LeaveField, NamesThePageOfMainWindowFieldsOnly)
{
    const StationSettings s;
    EXPECT_EQ(leaveField(s, "tabAINNazev", 5, "x").page, Page::Analog5To8);
    EXPECT_EQ(leaveField(s, "tabAINNazev", 3, "x").page, Page::Analog1To4);
    EXPECT_EQ(leaveField(s, "tabPIN", std::nullopt, "12a4").page, Page::General);
    EXPECT_EQ(leaveField(s, "AINNazev", 5, "x").page, std::nullopt);
}

TEST(LeaveField, MirrorsTheBatteryTextBothWays)
{
    EXPECT_EQ(batteryMirror("rtBattLow", std::nullopt, "Ba"), (FieldChange{"tabAINCL1Dn", 7, std::string("Ba"), std::nullopt}));
    EXPECT_EQ(batteryMirror("tabAINCL1Dn", 7, "B"), (FieldChange{"rtBattLow", std::nullopt, std::string("B"), std::nullopt}));
    EXPECT_EQ(batteryMirror("tabAINCL1Dn", 6, "B"), std::nullopt);
    EXPECT_EQ(batteryMirror("tabAINCL1Up", 7, "B"), std::nullopt);
}

TEST(RowModel, OwnsOnlyItsBitsOfTheSharedBytes)
{
    StationSettings s;
    s.eeMaskDOutFnc = 0xF0;
    s.analogOptions[3] = 0xA5;
    OutputRow first = outputRow(s, 0);
    first.function = OutputFunction::ModemState;
    storeOutputRow(s, 0, first);
    OutputRow second = outputRow(s, 1);
    second.function = OutputFunction::PowerSavingState;
    storeOutputRow(s, 1, second);
    EXPECT_EQ(s.eeMaskDOutFnc, 0xF3);
    EXPECT_EQ(outputRow(s, 2).function, OutputFunction::Standard);
    first.function = OutputFunction::Standard;
    storeOutputRow(s, 0, first);
    EXPECT_EQ(s.eeMaskDOutFnc, 0xF2);
    EXPECT_FALSE(outputFunctionAvailable(2, OutputFunction::ModemState));
    EXPECT_FALSE(outputFunctionAvailable(0, OutputFunction::PowerSavingState));

    AnalogRow analog = analogRow(s, 3);
    EXPECT_TRUE(analog.sendCl1Up && analog.sendCl2Up && !analog.sendCl1Dn && !analog.sendCl2Dn);
    analog.sendCl1Up = false;
    analog.sendCl2Dn = true;
    storeAnalogRow(s, 3, analog);
    EXPECT_EQ(s.analogOptions[3], 0xAC);
    EXPECT_EQ(analogRow(s, 3), analog);
}

TEST(RowModel, CopiesEveryValueOfARowAndNoOther)
{
    StationSettings s;
    InputRow input{"N", "Z", "V", "LH", "HL", true, true, false, true, false, true};
    storeInputRow(s, 4, input);
    EXPECT_EQ(inputRow(s, 4), input);
    EXPECT_EQ(inputRow(s, 3), InputRow{});
    PhoneRow phone{"+420", true, false};
    storePhoneRow(s, 6, phone);
    EXPECT_EQ(phoneRow(s, 6), phone);
    OutputRow output{"O", "Z", "V", "I", "2.5", true, true, OutputFunction::Standard};
    storeOutputRow(s, 7, output);
    EXPECT_EQ(outputRow(s, 7), output);
}

TEST(RowModel, InvertingTheLevelsTwiceRestoresThem)
{
    AnalogRow row;
    row.range = {0, 10, 1, "V"};
    row.cl1 = "2";
    row.hcl1 = "0.5";
    row.cl2 = "3,5";
    row.hcl2 = "1";
    const AnalogRow before = row;
    invertAnalogLevels(row);
    EXPECT_EQ(std::tie(row.cl1, row.hcl1, row.cl2, row.hcl2), std::tie("6,5", "1", "8", "0.5"));
    invertAnalogLevels(row);
    EXPECT_EQ(row, before);
    row.cl2 = "x";
    invertAnalogLevels(row);
    EXPECT_EQ(row.cl1, "2");
}

} // namespace
} // namespace rm8
