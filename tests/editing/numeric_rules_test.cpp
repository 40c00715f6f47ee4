// Clamps, the level check and the UTO prefix: the rules that change or judge
// numbers rather than refuse characters.

#include <gtest/gtest.h>

#include "editing/level_check.h"
#include "editing/numeric_clamps.h"
#include "editing/phone_rules.h"

namespace rm8 {
namespace {

struct ImpulseCase {
    const char* name;
    const char* text;
    const char* clamped;
};

class ImpulseLength : public testing::TestWithParam<ImpulseCase> {};

TEST_P(ImpulseLength, IsRoundedToATenthAndLimited)
{
    EXPECT_EQ(clampImpulseLength(GetParam().text), GetParam().clamped);
}

INSTANTIATE_TEST_SUITE_P(Cases, ImpulseLength,
                         testing::Values(ImpulseCase{"TooLong", "30", "25.5"}, ImpulseCase{"Zero", "0", "0.1"},
                                         ImpulseCase{"RoundsHalfUp", "0.15", "0.2"},
                                         ImpulseCase{"RoundsDown", "2.34", "2.3"}, ImpulseCase{"Comma", "1,5", "1.5"},
                                         ImpulseCase{"NotANumber", "abc", "0.1"}, ImpulseCase{"Kept", "2", "2"}),
                         [](const auto& row) { return std::string(row.param.name); });

struct ScheduleCase {
    const char* name;
    bool minutesLeft; // otherwise the hour field was left
    ScheduleFields before;
    ScheduleFields after;
};

class Schedule : public testing::TestWithParam<ScheduleCase> {};

TEST_P(Schedule, KeepsAValidPeriod)
{
    const auto& c = GetParam();
    EXPECT_EQ(c.minutesLeft ? clampScheduleMinutes(c.before) : clampScheduleHours(c.before), c.after);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Schedule,
    testing::Values(ScheduleCase{"MinutesCarryIntoHours", true, {"2", "125"}, {"4", "5"}},
                    ScheduleCase{"FiveMinutesAtLeast", true, {"0", "3"}, {"0", "5"}},
                    ScheduleCase{"ZeroHoursLiftTheMinutes", false, {"0", "0"}, {"0", "5"}},
                    ScheduleCase{"HoursLimited", false, {"500", "10"}, {"465", "10"}},
                    ScheduleCase{"CarryStopsAt465Hours", true, {"465", "120"}, {"465", "0"}},
                    ScheduleCase{"MinutesLimitedBeforeTheCarry", true, {"0", "99999"}, {"465", "2"}},
                    ScheduleCase{"NegativeMinutes", true, {"1", "-5"}, {"1", "0"}},
                    ScheduleCase{"WholeHoursOnly", false, {"1.5", "0"}, {"2", "0"}},
                    ScheduleCase{"ExactHour", true, {"1", "60"}, {"2", "0"}}),
    [](const auto& row) { return std::string(row.param.name); });

struct LevelCase {
    const char* name;
    const char* cl1;
    const char* hcl1;
    const char* cl2;
    const char* hcl2;
    bool consistent;
};

class Levels : public testing::TestWithParam<LevelCase> {};

TEST_P(Levels, MustFitTheRangeWithoutOverlap)
{
    const MeasuringRange range{0, 10, 1, "V"};
    const auto& c = GetParam();
    EXPECT_EQ(levelsConsistent(c.cl1, c.hcl1, c.cl2, c.hcl2, range), c.consistent);
}

INSTANTIATE_TEST_SUITE_P(Cases, Levels,
                         testing::Values(LevelCase{"TouchingBands", "2", "0.5", "3", "0.5", true},
                                         LevelCase{"Level2BelowLevel1", "5", "0", "4", "0", false},
                                         LevelCase{"OverlappingBands", "2", "0.6", "3", "0.5", false},
                                         LevelCase{"BandBelowTheRange", "0.5", "1", "5", "0", false},
                                         LevelCase{"BandAboveTheRange", "1", "0", "9.5", "1", false},
                                         LevelCase{"EdgesOnTheEnds", "1", "1", "9", "1", true},
                                         LevelCase{"CommaDecimals", "2", "0,5", "3", "0,5", true},
                                         LevelCase{"EqualLevelsWithoutBands", "5", "0", "5", "0", true}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SmsValidity, WholeDaysFromOneToThirty)
{
    for (const char* good : {"1", "30", "7", "07"})
        EXPECT_TRUE(smsValidityAccepted(good)) << good;
    for (const char* bad : {"", "0", "31", "-1", "1.5", " 3", "abc"})
        EXPECT_FALSE(smsValidityAccepted(bad)) << bad;
}

struct PhoneCase {
    const char* name;
    bool uto;
    const char* number;
    const char* normalised;
};

class UtoPrefix : public testing::TestWithParam<PhoneCase> {};

TEST_P(UtoPrefix, IsPutInFrontOfNationalNumbers)
{
    EXPECT_EQ(normalisePhoneNumber(GetParam().number, GetParam().uto, "+420"), GetParam().normalised);
}

INSTANTIATE_TEST_SUITE_P(Cases, UtoPrefix,
                         testing::Values(PhoneCase{"LeadingZeroReplaced", true, "0601234567", "+420601234567"},
                                         PhoneCase{"DoubleZeroBecomesPlus", true, "00420601234567", "+420601234567"},
                                         PhoneCase{"InternationalKept", true, "+420601234567", "+420601234567"},
                                         PhoneCase{"NoLeadingZero", true, "601234567", "+420601234567"},
                                         PhoneCase{"BoxClearKeepsAsTyped", false, "0601234567", "0601234567"},
                                         PhoneCase{"EmptyStaysEmpty", true, "", ""}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(UtoPrefix, NumberThatAlreadyBeginsWithTheUtoIsLeftAlone)
{
    EXPECT_EQ(normalisePhoneNumber("420601", true, "420"), "420601");
}

} // namespace
} // namespace rm8
