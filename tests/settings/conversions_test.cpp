#include <gtest/gtest.h>

#include "settings/conversions.h"

namespace rm8 {
namespace {

struct RoundCase {
    const char* name;
    double x;
    int decimals;
    double expected;
};

class RoundHalfUp : public testing::TestWithParam<RoundCase> {};

TEST_P(RoundHalfUp, RoundsAsTheStationToolDoes)
{
    const auto& c = GetParam();
    EXPECT_DOUBLE_EQ(roundHalfUp(c.x, c.decimals), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, RoundHalfUp,
                         testing::Values(RoundCase{"TwoAndAHalf", 2.5, 0, 3}, RoundCase{"EighthToHundredths", 0.125, 2, 0.13},
                                         RoundCase{"BelowHalf", 2.49, 0, 2}, RoundCase{"LevelStep", 128 * 100.0 / 255, 1, 50.2},
                                         RoundCase{"Zero", 0, 1, 0}, RoundCase{"ExactTenth", 25.5, 1, 25.5},
                                         RoundCase{"NegativeIsCut", -2.7, 0, -2}),
                         [](const auto& row) { return std::string(row.param.name); });

struct ClampCase {
    const char* name;
    const char* text;
    double lo, hi;
    int decimals;
    const char* expected;
};

class ClampText : public testing::TestWithParam<ClampCase> {};

TEST_P(ClampText, LimitsTheNumberOfAText)
{
    const auto& c = GetParam();
    EXPECT_EQ(clampText(c.text, c.lo, c.hi, c.decimals), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ClampText,
    testing::Values(ClampCase{"NotANumberIsZero", "abc", 0, 10, 0, "0"}, ClampCase{"AboveIsUpper", "12", 0, 10, 0, "10"},
                    ClampCase{"LeadingNumberCounts", "5x", 0, 10, 0, "5"}, ClampCase{"BelowIsLower", "-3", 0, 10, 0, "0"},
                    ClampCase{"CommaIsDecimalPoint", "1,5", 0, 10, 1, "1.5"},
                    ClampCase{"StartupBlankDropped", " 100", 0, 100, 1, "100"},
                    ClampCase{"DecimalsDoNotCut", "0.15", 0.1, 25.5, 1, "0.15"},
                    ClampCase{"ImpulseZeroIsShortest", "0", 0.1, 25.5, 1, "0.1"},
                    ClampCase{"ImpulseTooLong", "30", 0.1, 25.5, 1, "25.5"},
                    ClampCase{"HoursLimited", "500", 0, 465, 0, "465"},
                    ClampCase{"EmptyIsLower", "", 5, 59, 0, "5"},
                    ClampCase{"HugeNumberIsUpper", "9999999999999999999999999999999999999999999999999999999999999999"
                                                   "9999999999999999999999999999999999999999999999999999999999999999"
                                                   "9999999999999999999999999999999999999999999999999999999999999999"
                                                   "9999999999999999999999999999999999999999999999999999999999999999"
                                                   "99999999999999999999",
                              0, 465, 0, "465"},
                    ClampCase{"HugeExponentIsUpper", "1e999", 0, 10, 1, "10"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(DecimalText, IsTheShortestFormWithAPoint)
{
    EXPECT_EQ(decimalText(50.2), "50.2");
    EXPECT_EQ(decimalText(0.1 + 0.2), "0.3");
    EXPECT_EQ(decimalText(100), "100");
    EXPECT_EQ(decimalText(-0.0), "0");
    EXPECT_EQ(decimalText(-166), "-166");
    EXPECT_EQ(decimalText(5 / 10.0), "0.5");
}

TEST(StartupNumberText, PutsABlankBeforeNonNegativeNumbers)
{
    EXPECT_EQ(startupNumberText(0), " 0");
    EXPECT_EQ(startupNumberText(100), " 100");
    EXPECT_EQ(startupNumberText(27), " 27");
    EXPECT_EQ(startupNumberText(-5), "-5");
}

TEST(TextValue, ReadsTheLeadingNumber)
{
    EXPECT_DOUBLE_EQ(textValue("  12.5x"), 12.5);
    EXPECT_DOUBLE_EQ(textValue("1,5"), 1.5);
    EXPECT_DOUBLE_EQ(textValue(".5"), 0.5);
    EXPECT_DOUBLE_EQ(textValue("+3"), 3);
    EXPECT_DOUBLE_EQ(textValue("-"), 0);
    EXPECT_DOUBLE_EQ(textValue(""), 0);
    EXPECT_DOUBLE_EQ(textValue("2e"), 2) << "an exponent without digits is not part of the number";
}

TEST(DecimalPoint, ReplacesEveryComma)
{
    EXPECT_EQ(decimalPoint("1,5"), "1.5");
    EXPECT_EQ(decimalPoint("a,b,c"), "a.b.c");
    EXPECT_EQ(decimalPoint("1.5"), "1.5");
}

const MeasuringRange kPercent{0, 100, 1, "%"};
const MeasuringRange kBattery{0, 27, 1, "V"};

TEST(AnalogScaling, KnownLevels)
{
    EXPECT_DOUBLE_EQ(byteToLevel(kPercent, 128), 50.2);
    EXPECT_EQ(levelToByte(kPercent, "50"), 128) << "127.5 rounds half up";
    EXPECT_DOUBLE_EQ(byteToLevel(kPercent, 0), 0);
    EXPECT_DOUBLE_EQ(byteToLevel(kPercent, 255), 100);
    EXPECT_DOUBLE_EQ(byteToLevel(kBattery, 255), 27);
    EXPECT_EQ(levelToByte(kPercent, "150"), 255) << "limited to the range first";
    EXPECT_EQ(levelToByte(kPercent, "-1"), 0);
    EXPECT_EQ(levelToByte(kPercent, " 100"), 255);
}

TEST(AnalogScaling, HysteresisIsAtMostHalfTheRange)
{
    EXPECT_DOUBLE_EQ(byteToHysteresis(kPercent, 0), 0);
    EXPECT_DOUBLE_EQ(byteToHysteresis(kPercent, 255), 50);
    EXPECT_EQ(hysteresisToByte(kPercent, "60"), 128);
    EXPECT_EQ(hysteresisToByte(kPercent, "50"), 128);
    EXPECT_DOUBLE_EQ(byteToHysteresis(kBattery, 128), 13.5);
}

// Every level byte shown in a field must store back as the same byte, or a
// read followed by a write would drift the station's levels.
TEST(AnalogScaling, EveryLevelByteSurvivesTextAndBack)
{
    for (const auto& range : {kPercent, kBattery}) {
        for (int b = 0; b <= 255; ++b) {
            const auto byte = static_cast<std::uint8_t>(b);
            EXPECT_EQ(levelToByte(range, decimalText(byteToLevel(range, byte))), byte) << "byte " << b;
            if (b <= 127) {
                EXPECT_EQ(hysteresisToByte(range, decimalText(byteToHysteresis(range, byte))), byte) << "byte " << b;
            }
        }
    }
}

struct PhoneCase {
    const char* name;
    const char* phone;
    const char* addressForm;
};

class PhoneForm : public testing::TestWithParam<PhoneCase> {};

TEST_P(PhoneForm, ConvertsBothWays)
{
    const auto& c = GetParam();
    EXPECT_EQ(phoneToAddressForm(c.phone), c.addressForm);
    EXPECT_EQ(addressFormToPhone(c.addressForm), c.phone);
}

INSTANTIATE_TEST_SUITE_P(Cases, PhoneForm,
                         testing::Values(PhoneCase{"International", "+420123456789", "0C91241032547698"},
                                         PhoneCase{"OddNational", "12345", "05812143F5"},
                                         PhoneCase{"Empty", "", ""}, PhoneCase{"OneDigit", "7", "0181F7"},
                                         PhoneCase{"SixteenDigits", "1234567890123456", "10812143658709214365"},
                                         PhoneCase{"PlusInTheMiddle", "12+4", "0481214+"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PhoneForm, FinalPadIsDroppedOnlyWhenItIsAnF)
{
    EXPECT_EQ(addressFormToPhone("0381214365"), "123456");
    EXPECT_EQ(addressFormToPhone("038121F3"), "123");
}

} // namespace
} // namespace rm8
