// Numeric fields that are clamped rather than refused, the SMS validity
// period, the level check of an analog input and the national prefix put in
// front of phone numbers.

#include <string>

#include <gtest/gtest.h>

#include "editing/level_check.h"
#include "editing/numeric_clamps.h"
#include "editing/phone_rules.h"

namespace rm8 {
namespace {

// ---------------------------------------------------------------------------
// Impulse length: 0.1 to 25.5 seconds, one decimal, rounded half up

struct ImpulseCase {
    const char* name;
    const char* text;
    const char* expected;
};

class ImpulseLength : public testing::TestWithParam<ImpulseCase> {};

TEST_P(ImpulseLength, IsRoundedToATenthAndLimited)
{
    const auto& c = GetParam();
    EXPECT_EQ(clampImpulseLength(c.text), c.expected) << "typed: '" << c.text << "'";
}

INSTANTIATE_TEST_SUITE_P(
    Impulse, ImpulseLength,
    testing::Values(ImpulseCase{"HalfTenthRoundsUp", "0.15", "0.2"}, ImpulseCase{"TooLong", "30", "25.5"},
                    ImpulseCase{"ZeroIsShortest", "0", "0.1"}, ImpulseCase{"StartupValueStays", "2", "2"},
                    ImpulseCase{"UpperEdgeStays", "25.5", "25.5"}, ImpulseCase{"LowerEdgeStays", "0.1", "0.1"},
                    ImpulseCase{"HundredthsBelowHalfCut", "25.54", "25.5"},
                    ImpulseCase{"RoundedAboveUpperIsLimited", "25.56", "25.5"},
                    ImpulseCase{"RoundedToZeroIsLimited", "0.04", "0.1"}, ImpulseCase{"OneAndAQuarter", "1.25", "1.3"},
                    ImpulseCase{"BelowHalfRoundsDown", "1.24", "1.2"}, ImpulseCase{"OneDecimalStays", "3.7", "3.7"},
                    ImpulseCase{"TrailingZeroDropped", "12.0", "12"}, ImpulseCase{"NotANumberIsShortest", "abc", "0.1"},
                    ImpulseCase{"EmptyIsShortest", "", "0.1"}, ImpulseCase{"NegativeIsShortest", "-5", "0.1"},
                    ImpulseCase{"LeadingNumberCounts", "3s", "3"}),
    [](const testing::TestParamInfo<ImpulseCase>& row) { return std::string(row.param.name); });

struct ClampCase {
    const char* name;
    const char* text;
    double lo;
    double hi;
    int decimals;
    const char* expected;
};

class ClampFieldText : public testing::TestWithParam<ClampCase> {};

TEST_P(ClampFieldText, RoundsHalfUpThenLimits)
{
    const auto& c = GetParam();
    EXPECT_EQ(clampFieldText(c.text, c.lo, c.hi, c.decimals), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Clamp, ClampFieldText,
                         testing::Values(ClampCase{"HalfRoundsUpToWhole", "2.5", 0, 10, 0, "3"},
                                         ClampCase{"MinuteHalfRoundsUp", "7.5", 0, 59, 0, "8"},
                                         ClampCase{"TenthHalfRoundsUp", "0.15", 0.1, 25.5, 1, "0.2"},
                                         ClampCase{"TwoDecimals", "0.125", 0, 1, 2, "0.13"},
                                         ClampCase{"AboveUpper", "500", 0, 465, 0, "465"},
                                         ClampCase{"BelowLower", "3", 5, 59, 0, "5"},
                                         ClampCase{"NoLeadingBlankInResult", " 7", 0, 10, 0, "7"}),
                         [](const testing::TestParamInfo<ClampCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// Power-saving schedule: hours 0..465, minutes carried into hours, and never
// a period shorter than five minutes

struct ScheduleCase {
    const char* name;
    ScheduleFields before;
    ScheduleFields after;
};

class HoursLeft : public testing::TestWithParam<ScheduleCase> {};

TEST_P(HoursLeft, LimitsTheHoursAndKeepsFiveMinutesAtLeast)
{
    const auto& c = GetParam();
    const ScheduleFields result = clampScheduleHours(c.before);
    EXPECT_EQ(result.hours, c.after.hours);
    EXPECT_EQ(result.minutes, c.after.minutes);
}

INSTANTIATE_TEST_SUITE_P(
    Hours, HoursLeft,
    testing::Values(ScheduleCase{"TooManyHours", {"500", "0"}, {"465", "0"}},
                    ScheduleCase{"StartupStays", {"1", "0"}, {"1", "0"}},
                    ScheduleCase{"UpperEdgeStays", {"465", "59"}, {"465", "59"}},
                    ScheduleCase{"ZeroHoursThreeMinutes", {"0", "3"}, {"0", "5"}},
                    ScheduleCase{"ZeroHoursZeroMinutes", {"0", "0"}, {"0", "5"}},
                    ScheduleCase{"ZeroHoursMinutesAboveAnHour", {"0", "120"}, {"0", "59"}},
                    ScheduleCase{"ZeroHoursMinutesInRangeStay", {"0", "10"}, {"0", "10"}},
                    ScheduleCase{"HoursRoundedUp", {"12.6", "30"}, {"13", "30"}},
                    ScheduleCase{"HoursRoundedDown", {"12.4", "30"}, {"12", "30"}},
                    ScheduleCase{"HoursRoundedToZeroKeepFloor", {"0.4", "2"}, {"0", "5"}},
                    ScheduleCase{"NegativeHoursAreZero", {"-3", "10"}, {"0", "10"}},
                    ScheduleCase{"NotANumberIsZeroHours", {"abc", "2"}, {"0", "5"}},
                    ScheduleCase{"MinutesNotCarriedWhenHoursLeft", {"2", "125"}, {"2", "125"}}),
    [](const testing::TestParamInfo<ScheduleCase>& row) { return std::string(row.param.name); });

class MinutesLeft : public testing::TestWithParam<ScheduleCase> {};

TEST_P(MinutesLeft, CarriesWholeHoursAndKeepsFiveMinutesAtLeast)
{
    const auto& c = GetParam();
    const ScheduleFields result = clampScheduleMinutes(c.before);
    EXPECT_EQ(result.hours, c.after.hours);
    EXPECT_EQ(result.minutes, c.after.minutes);
}

INSTANTIATE_TEST_SUITE_P(
    Minutes, MinutesLeft,
    testing::Values(ScheduleCase{"CarryTwoHours", {"2", "125"}, {"4", "5"}},
                    ScheduleCase{"ZeroHoursThreeMinutes", {"0", "3"}, {"0", "5"}},
                    ScheduleCase{"StartupStays", {"1", "0"}, {"1", "0"}},
                    ScheduleCase{"FiftyNineStays", {"1", "59"}, {"1", "59"}},
                    ScheduleCase{"ExactlyAnHour", {"0", "60"}, {"1", "0"}},
                    ScheduleCase{"HourAndAQuarter", {"0", "75"}, {"1", "15"}},
                    ScheduleCase{"SixtyHours", {"0", "3600"}, {"60", "0"}},
                    ScheduleCase{"CarryPastUpperHours", {"460", "600"}, {"465", "0"}},
                    ScheduleCase{"MinutesLimitedBeforeCarry", {"0", "100000"}, {"465", "2"}},
                    ScheduleCase{"MinutesAtTheirLimit", {"0", "27962"}, {"465", "2"}},
                    ScheduleCase{"NegativeMinutesAreZero", {"3", "-10"}, {"3", "0"}},
                    ScheduleCase{"NegativeMinutesWithZeroHours", {"0", "-10"}, {"0", "5"}},
                    ScheduleCase{"MinutesRoundedUp", {"1", "7.5"}, {"1", "8"}},
                    ScheduleCase{"RoundedUpToAnHourCarries", {"5", "59.6"}, {"6", "0"}},
                    ScheduleCase{"CarriedHoursClampedToWhole", {"2.4", "120"}, {"4", "0"}}),
    [](const testing::TestParamInfo<ScheduleCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// SMS validity period: whole days 1..30

struct ValidityCase {
    const char* name;
    const char* text;
    bool accepted;
};

class SmsValidity : public testing::TestWithParam<ValidityCase> {};

TEST_P(SmsValidity, AcceptsOnlyWholeDaysOneToThirty)
{
    const auto& c = GetParam();
    EXPECT_EQ(smsValidityAccepted(c.text), c.accepted) << "typed: '" << c.text << "'";
}

INSTANTIATE_TEST_SUITE_P(Days, SmsValidity,
                         testing::Values(ValidityCase{"Zero", "0", false}, ValidityCase{"ThirtyOne", "31", false},
                                         ValidityCase{"Empty", "", false}, ValidityCase{"Letter", "a", false},
                                         ValidityCase{"One", "1", true}, ValidityCase{"Thirty", "30", true},
                                         ValidityCase{"Fifteen", "15", true}, ValidityCase{"LeadingZero", "05", true},
                                         ValidityCase{"DigitsThenLetter", "5a", false},
                                         ValidityCase{"Decimal", "1.5", false}, ValidityCase{"Negative", "-5", false},
                                         ValidityCase{"Plus", "+5", false}, ValidityCase{"Blank", " 5", false},
                                         ValidityCase{"Hundred", "100", false}),
                         [](const testing::TestParamInfo<ValidityCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// Level check: both bands inside the measuring range, band 1 below band 2

struct LevelCase {
    const char* name;
    const char* cl1;
    const char* hcl1;
    const char* cl2;
    const char* hcl2;
    double min;
    double max;
    bool consistent;
};

class LevelSet : public testing::TestWithParam<LevelCase> {};

TEST_P(LevelSet, IsJudgedAsAWhole)
{
    const auto& c = GetParam();
    const MeasuringRange range{c.min, c.max, 1, ""};
    EXPECT_EQ(levelsConsistent(c.cl1, c.hcl1, c.cl2, c.hcl2, range), c.consistent)
        << "CL1 " << c.cl1 << " HCL1 " << c.hcl1 << " CL2 " << c.cl2 << " HCL2 " << c.hcl2 << " in " << c.min << ".."
        << c.max;
}

INSTANTIATE_TEST_SUITE_P(
    Levels, LevelSet,
    testing::Values(LevelCase{"BandsTouch", "2", "0.5", "3", "0.5", 0, 10, true},
                    LevelCase{"Level2BelowLevel1", "5", "0", "4", "0", 0, 10, false},
                    LevelCase{"EqualLevelsNoHysteresis", "5", "0", "5", "0", 0, 10, true},
                    LevelCase{"BandsOverlap", "2", "0.6", "3", "0.5", 0, 10, false},
                    LevelCase{"Band1BelowMin", "0.2", "0.5", "5", "0", 0, 10, false},
                    LevelCase{"Band1EdgeOnMin", "1", "1", "5", "0", 0, 10, true},
                    LevelCase{"Band1AboveMax", "9.5", "1", "10", "0", 0, 10, false},
                    LevelCase{"Band2BelowMin", "0", "0", "0.5", "1", 0, 10, false},
                    LevelCase{"Band2AboveMax", "5", "0", "9.5", "1", 0, 10, false},
                    LevelCase{"Band2EdgeOnMax", "5", "0", "9", "1", 0, 10, true},
                    LevelCase{"LevelsOnTheEnds", "0", "0", "10", "0", 0, 10, true},
                    LevelCase{"Level1BelowMin", "-1", "0", "5", "0", 0, 10, false},
                    LevelCase{"Level2AboveMax", "5", "0", "11", "0", 0, 10, false},
                    LevelCase{"StartupTexts", " 0", "0", " 100", "0", 0, 100, true},
                    LevelCase{"CommaBandsTouch", "2,5", "0,5", "3,5", "0,5", 0, 10, true},
                    LevelCase{"CommaBandsOverlap", "2,6", "0,5", "3,5", "0,5", 0, 10, false},
                    LevelCase{"CommaHysteresisBelowMin", "0,4", "0,5", "5", "0", 0, 10, false},
                    LevelCase{"NegativeRangeBandInside", "0", "5", "50", "5", -20, 80, true},
                    LevelCase{"NegativeRangeBandBelow", "-15", "6", "50", "5", -20, 80, false},
                    LevelCase{"BatteryRange", "11", "0.5", "14", "0.5", 0, 27, true}),
    [](const testing::TestParamInfo<LevelCase>& row) { return std::string(row.param.name); });

TEST(LevelCheckMessage, IsTheWindowsText)
{
    EXPECT_EQ(kLevelCheckMessage, "Hodnoty CL1, HCL1, CL2, HCL2 jsou chybně zadány.");
}

// ---------------------------------------------------------------------------
// National prefix (UTO) in front of phone numbers

struct PhoneCase {
    const char* name;
    const char* number;
    bool utoEnabled;
    const char* uto;
    const char* expected;
};

class UtoNormalisation : public testing::TestWithParam<PhoneCase> {};

TEST_P(UtoNormalisation, PutsTheNationalPrefixInFront)
{
    const auto& c = GetParam();
    EXPECT_EQ(normalisePhoneNumber(c.number, c.utoEnabled, c.uto), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, UtoNormalisation,
    testing::Values(PhoneCase{"NationalLosesZero", "0601234567", true, "+420", "+420601234567"},
                    PhoneCase{"DoubleZeroBecomesPlus", "00420601234567", true, "+420", "+420601234567"},
                    PhoneCase{"InternationalStays", "+420601234567", true, "+420", "+420601234567"},
                    PhoneCase{"OtherCountryStays", "+421905123456", true, "+420", "+421905123456"},
                    PhoneCase{"WithoutZeroGetsPrefix", "601234567", true, "+420", "+420601234567"},
                    PhoneCase{"OnlyOneZeroRemoved", "00", true, "+420", "+"},
                    PhoneCase{"SingleZero", "0", true, "+420", "+420"},
                    PhoneCase{"OtherUto", "0905123456", true, "+421", "+421905123456"},
                    PhoneCase{"BeginsWithUtoWithoutPlus", "420601234567", true, "420", "420601234567"},
                    PhoneCase{"EmptyStaysEmpty", "", true, "+420", ""},
                    PhoneCase{"BoxClearNationalStays", "0601234567", false, "+420", "0601234567"},
                    PhoneCase{"BoxClearDoubleZeroStays", "00420601234567", false, "+420", "00420601234567"},
                    PhoneCase{"BoxClearShortStays", "601234567", false, "+420", "601234567"}),
    [](const testing::TestParamInfo<PhoneCase>& row) { return std::string(row.param.name); });

TEST(PhoneTableMessages, AreTheWindowsTexts)
{
    EXPECT_EQ(kPrijemNeedsNumber, "Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Příjem' nezaškrtnuté.");
    EXPECT_EQ(kUdalostNeedsNumber,
              "Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Události' nezaškrtnuté.");
}

} // namespace
} // namespace rm8
