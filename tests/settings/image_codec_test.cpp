#include <array>
#include <random>

#include <gtest/gtest.h>

#include "settings/image_decoder.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "settings/used_size.h"

namespace rm8 {
namespace {

EepromImage randomImage(unsigned seed)
{
    EepromImage image;
    std::mt19937 random(seed);
    for (auto& b : image.bytes())
        b = static_cast<std::uint8_t>(random());
    return image;
}

EepromImage encoded(const StationSettings& settings, EepromImage base = EepromImage())
{
    auto result = encodeImage(settings, base);
    EXPECT_TRUE(result) << (result ? "" : result.error().describe());
    return base;
}

StationSettings decoded(const EepromImage& image)
{
    StationSettings settings;
    auto result = decodeImage(image, settings);
    EXPECT_TRUE(result) << (result ? "" : result.error().describe());
    return settings;
}

TEST(EmptyConfiguration, EndsAt428AndUses430Bytes)
{
    const StationSettings settings;
    EepromImage image;
    auto result = encodeImage(settings, image);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->end, 428u);
    EXPECT_EQ(usedSize(settings), 430u);

    // Seventeen groups of eight empty texts, then reserved, phones, general.
    for (unsigned group = 0; group < 13; ++group) {
        const unsigned pointer = group < 3 ? group * 2 : group * 2 + 2;
        EXPECT_EQ(image.word(pointer), 272 + 8 * group) << "pointer at " << pointer;
    }
    EXPECT_EQ(image.word(28), 272 + 8 * 13);
    EXPECT_EQ(image.word(34), 272 + 8 * 16);
    EXPECT_EQ(image.word(36), 408);
    EXPECT_EQ(image.word(40), 410);
    EXPECT_EQ(image.word(38), 418);
    EXPECT_EQ(image.word(426), 0xFFFF);
    EXPECT_EQ(image.word(42), 64);
    EXPECT_EQ(image.word(46), 9602);
    for (unsigned a = 272; a < 426; ++a)
        ASSERT_EQ(image.byte(a), 0) << "address " << a;
    EXPECT_TRUE(imageHeaderValid(image));
}

TEST(HeaderCheckByte, ThirteenIsStoredAsTwelve)
{
    // Word 6 is never written by the encoder, so it can steer the sum.
    const StationSettings settings;
    EepromImage image = encoded(settings);
    const unsigned raw = (static_cast<unsigned>(headerCheckByte(image)) + 256 - image.byte(6)) % 256;
    image.putByte(6, (13 + 256 - raw) % 256);
    image = encoded(settings, image);
    EXPECT_EQ(image.byte(48), 12);
    EXPECT_TRUE(imageHeaderValid(image));
    image.putByte(48, 13);
    EXPECT_FALSE(imageHeaderValid(image));
}

TEST(HeaderCheckByte, LayoutMarkIsRequired)
{
    EepromImage image = encoded(StationSettings());
    image.putWord(46, 9603);
    image.putByte(48, headerCheckByte(image));
    EXPECT_FALSE(imageHeaderValid(image));
}

struct FlagCase {
    const char* name;
    void (*apply)(StationSettings&);
    std::uint8_t flags1;
    std::uint8_t flags2;
};

class GeneralFlags : public testing::TestWithParam<FlagCase> {};

TEST_P(GeneralFlags, AreWrittenOnlyWithTheirTexts)
{
    StationSettings settings;
    GetParam().apply(settings);
    const EepromImage image = encoded(settings);
    EXPECT_EQ(image.byte(128), GetParam().flags1);
    EXPECT_EQ(image.byte(129), GetParam().flags2);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GeneralFlags,
    testing::Values(
        FlagCase{"NotAuthorizedWithoutText", [](StationSettings& s) { s.opNotAuthorized = true; }, 0, 0},
        FlagCase{"NotAuthorizedWithText",
                 [](StationSettings& s) {
                     s.opNotAuthorized = true;
                     s.rtNotAuthorized = "x";
                 },
                 1, 0},
        FlagCase{"TextWithoutBox", [](StationSettings& s) { s.rtNotAuthorized = "x"; }, 0, 0},
        FlagCase{"SwitchReportWithOffTextOnly",
                 [](StationSettings& s) {
                     s.opSwitchReport = true;
                     s.rtSwitchOff = "off";
                 },
                 8, 0},
        FlagCase{"PowerReportWithoutTexts", [](StationSettings& s) { s.opPowerReport = true; }, 0, 0},
        FlagCase{"PowerReportWithUpText",
                 [](StationSettings& s) {
                     s.opPowerReport = true;
                     s.rtPowerUp = "up";
                 },
                 16, 0},
        FlagCase{"BoxesAlone",
                 [](StationSettings& s) {
                     s.tabPrepnoutNepovolPristup = true;
                     s.tabOdpovidatT0 = true;
                     s.opBatt = true;
                 },
                 2 + 4 + 32, 0},
        FlagCase{"PowerSaving",
                 [](StationSettings& s) {
                     s.opEnablePS1 = true;
                     s.opSuperPS = true;
                     s.opPSOutOff = true;
                     s.opPINAuth = true;
                 },
                 0, 2 + 4 + 8 + 128}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(FixedArea, NumbersAreConvertedAndLimited)
{
    StationSettings settings;
    settings.tabDobaPlatnostiSMS = "7";
    settings.tabOUTimpulsLEN = {"0", "30", "2", "0.5", "25.5", "1,5", "abc", " 3"};
    settings.eePSOnH = "500";
    settings.eePSOnM = "59";
    settings.eePSOffH = "0";
    settings.eePSOffM = "99";
    const EepromImage image = encoded(settings);
    EXPECT_EQ(image.byte(130), 173);
    const std::array<int, 8> impulses{1, 255, 20, 5, 255, 15, 1, 30};
    for (unsigned i = 0; i < 8; ++i)
        EXPECT_EQ(image.byte(183 + i), impulses[i]) << "output " << i + 1;
    const unsigned on = image.byte(251) + 256u * image.byte(252) + 65536u * image.byte(253);
    EXPECT_EQ(on, (465u * 60 + 59) * 600);
    const unsigned off = image.byte(254) + 256u * image.byte(255) + 65536u * image.byte(256);
    EXPECT_EQ(off, 59u * 600);
}

TEST(FixedArea, BitBytesBelongToRowsAndSpareBytesAreZero)
{
    StationSettings settings;
    settings.tabTCPrijem[0] = true;
    settings.tabTCUdalost[7] = true;
    settings.tabINPNeg = {true, false, true, false, false, false, false, true};
    settings.tabAINNeg[2] = true;
    settings.eeMaskDInHLAlarm[1] = true;
    settings.eeMaskDOutFnc = 3;
    settings.analogOptions[7] = 200;
    const EepromImage image = encoded(settings, EepromImage(0x5A));
    EXPECT_EQ(image.byte(131), 1);
    EXPECT_EQ(image.byte(132), 128);
    EXPECT_EQ(image.byte(139), 1 + 4 + 128);
    EXPECT_EQ(image.byte(182), 4);
    EXPECT_EQ(image.byte(241), 2);
    EXPECT_EQ(image.byte(242), 3);
    EXPECT_EQ(image.byte(250), 200);
    for (unsigned spare : {134u, 136u, 138u, 140u, 143u})
        EXPECT_EQ(image.byte(spare), 0) << "address " << spare;
}

TEST(Decoder, ReadsFixedAreaValues)
{
    EepromImage image = encoded(StationSettings());
    image.putByte(130, 0);
    image.putByte(183, 5);
    image.putByte(150, 128);
    image.putByte(166, 0);
    // 16775400 tenths: 465 hours 59 minutes.
    image.putByte(251, 16775400 % 256);
    image.putByte(252, (16775400 / 256) % 256);
    image.putByte(253, 16775400 / 65536);
    const StationSettings s = decoded(image);
    EXPECT_EQ(s.tabDobaPlatnostiSMS, "-166");
    EXPECT_EQ(s.tabOUTimpulsLEN[0], "0.5");
    EXPECT_EQ(s.tabAINCL1Level[0], "50.2");
    EXPECT_EQ(s.tabAINHCL1Level[0], "0");
    EXPECT_EQ(s.eePSOnH, "465");
    EXPECT_EQ(s.eePSOnM, "59");
}

TEST(AnalogSlots, InvertedInputExchangesLevelTextsOnReadBack)
{
    StationSettings settings;
    settings.tabAINNeg[2] = true;
    settings.tabAINCL1Dn[2] = "pod1";
    settings.tabAINCL1Up[2] = "nad1";
    settings.tabAINCL2Dn[2] = "pod2";
    settings.tabAINCL2Up[2] = "nad2";
    settings.tabAINCL1Dn[3] = "beze změny";
    settings.tabAINCL1Level[2] = "20";
    settings.tabAINCL2Level[2] = "80";
    const StationSettings back = decoded(encoded(settings));
    EXPECT_EQ(back.tabAINCL1Dn[2], "pod2");
    EXPECT_EQ(back.tabAINCL1Up[2], "nad2");
    EXPECT_EQ(back.tabAINCL2Dn[2], "pod1");
    EXPECT_EQ(back.tabAINCL2Up[2], "nad1");
    EXPECT_EQ(back.tabAINCL1Dn[3], "beze změny") << "a not inverted input keeps its columns";
    EXPECT_EQ(back.tabAINCL1Level[2], "20") << "levels keep their places";
    EXPECT_EQ(back.tabAINCL2Level[2], "80");
}

TEST(Phones, EmptyEntryIsOneZeroByte)
{
    StationSettings settings;
    settings.tabTC[1] = "12345";
    settings.tabTC[2] = "+420123456789";
    const EepromImage image = encoded(settings);
    const unsigned p = image.word(40);
    EXPECT_EQ(image.byte(p), 0);
    const std::string second = "05812143F5";
    for (unsigned k = 0; k < second.size(); ++k)
        EXPECT_EQ(image.byte(p + 1 + k), static_cast<unsigned char>(second[k]));
    EXPECT_EQ(image.byte(p + 1 + static_cast<unsigned>(second.size())), 0);
    const StationSettings back = decoded(image);
    EXPECT_EQ(back.tabTC, settings.tabTC);
}

TEST(Texts, ArePlainWindows1250WithAZeroAfterEach)
{
    StationSettings settings;
    settings.tabJmenoStanice = "Čerpadlo";
    const EepromImage image = encoded(settings);
    const unsigned p = image.word(38);
    const std::array<std::uint8_t, 9> expected{0xC8, 'e', 'r', 'p', 'a', 'd', 'l', 'o', 0};
    for (unsigned k = 0; k < expected.size(); ++k)
        EXPECT_EQ(image.byte(p + k), expected[k]);
    EXPECT_EQ(usedSize(settings), 430u + 8) << "counted in characters, not UTF-8 bytes";
}

// The bytes of the station's layout that the tool never writes.
std::vector<unsigned> untouchedAddresses()
{
    std::vector<unsigned> addresses{6, 7, 44, 45};
    for (unsigned a = 49; a <= 127; ++a)
        addresses.push_back(a);
    for (unsigned a = 191; a <= 239; ++a)
        addresses.push_back(a);
    for (unsigned a = 257; a <= 271; ++a)
        addresses.push_back(a);
    return addresses;
}

TEST(RoundTrip, DecodeThenEncodeKeepsEveryUntouchedByte)
{
    StationSettings settings;
    settings.tabJmenoStanice = "Stanice";
    settings.tabINPNazev[4] = "DVERE";
    const EepromImage original = encoded(settings, randomImage(7));
    EepromImage image = original;
    auto result = encodeImage(decoded(image), image);
    ASSERT_TRUE(result);
    for (unsigned a : untouchedAddresses())
        ASSERT_EQ(image.byte(a), original.byte(a)) << "address " << a;
    for (unsigned a = result->end; a < EepromImage::kSize; ++a)
        ASSERT_EQ(image.byte(a), original.byte(a)) << "address " << a;
    EXPECT_EQ(image, original);
}

struct FaultCase {
    const char* name;
    void (*apply)(StationSettings&);
    CodecFault fault;
    const char* field;
    int row;
};

class EncoderFaults : public testing::TestWithParam<FaultCase> {};

TEST_P(EncoderFaults, StopWithAnErrorAndLeaveTheImageAlone)
{
    StationSettings settings;
    GetParam().apply(settings);
    const EepromImage before = randomImage(11);
    EepromImage image = before;
    auto result = encodeImage(settings, image);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().fault, GetParam().fault);
    EXPECT_EQ(result.error().field, GetParam().field);
    EXPECT_EQ(result.error().row, GetParam().row);
    EXPECT_FALSE(result.error().describe().empty());
    EXPECT_EQ(image, before);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EncoderFaults,
    testing::Values(
        FaultCase{"CharacterOutsideWindows1250", [](StationSettings& s) { s.tabINPNazev[3] = "Ωmega"; },
                  CodecFault::TextConversion, "tabINPNazev", 4},
        FaultCase{"NulInsideText", [](StationSettings& s) { s.rtPowerUp = std::string("a\0b", 3); },
                  CodecFault::TextConversion, "rtPowerUp", 0},
        FaultCase{"BrokenUtf8", [](StationSettings& s) { s.tabTC[0] = "\xC5"; }, CodecFault::TextConversion, "tabTC", 1},
        FaultCase{"ValidityOver89Days", [](StationSettings& s) { s.tabDobaPlatnostiSMS = "90"; },
                  CodecFault::ValueOverflow, "tabDobaPlatnostiSMS", 0},
        FaultCase{"HeapPastTheImage",
                  [](StationSettings& s) {
                      for (auto& text : s.tabAINNazev)
                          text.assign(9000, 'x');
                  },
                  CodecFault::AddressOutOfRange, "tabAINNazev", 8},
        // The texts end exactly at the last address: the next pointer would
        // be 65536, which is an address fault like any other.
        FaultCase{"PointerJustPastTheImage",
                  [](StationSettings& s) {
                      for (std::size_t i = 0; i < 7; ++i)
                          s.tabINPNazev[i].assign(8000, 'a');
                      s.tabINPNazev[7].assign(9256, 'a');
                  },
                  CodecFault::AddressOutOfRange, "tabINPZap", 0},
        // Two hexadecimal characters count at most 255 digits; more would
        // shift every phone entry after it.
        FaultCase{"PhoneOf256Digits", [](StationSettings& s) { s.tabTC[1].assign(256, '7'); },
                  CodecFault::ValueOverflow, "tabTC", 2}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(EncoderFaults, PhoneOf255DigitsStillFits)
{
    StationSettings settings;
    settings.tabTC[0] = "+" + std::string(255, '1');
    EXPECT_EQ(decoded(encoded(settings)).tabTC[0], settings.tabTC[0]);
}

TEST(EncoderFaults, ValidityAtTheByteLimitStillFits)
{
    StationSettings settings;
    settings.tabDobaPlatnostiSMS = "89";
    EXPECT_EQ(encoded(settings).byte(130), 255);
    settings.tabDobaPlatnostiSMS = "-166";
    EXPECT_EQ(encoded(settings).byte(130), 0);
}

TEST(DecoderFaults, TextRunningOffTheImageStopsWithTheFieldsSoFar)
{
    EepromImage image = encoded(StationSettings());
    image.putByte(128, 32);          // opBatt, decoded before the texts
    image.putWord(20, 65530);        // analog names point at the very end
    for (unsigned a = 65530; a < 65536; ++a)
        image.putByte(a, 'A');
    StationSettings settings;
    settings.tabUTO = "+421";
    settings.tabAINStateL[0] = "stays";
    auto result = decodeImage(image, settings);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().fault, CodecFault::AddressOutOfRange);
    EXPECT_EQ(result.error().address, 65536u);
    EXPECT_EQ(result.error().field, "tabAINNazev");
    EXPECT_EQ(result.error().row, 1);
    EXPECT_TRUE(settings.opBatt);
    EXPECT_EQ(settings.tabAINNazev[0], "AAAAAA") << "the text collected so far stays";
    EXPECT_EQ(settings.tabAINStateL[0], "stays") << "later groups are not reached";
    EXPECT_EQ(settings.tabUTO, "+421") << "fields outside the image keep their values";
}

TEST(DecoderFaults, PhoneDigitCountPastTheEnd)
{
    EepromImage image = encoded(StationSettings());
    image.putWord(40, 65534);
    image.putByte(65534, 'F');
    image.putByte(65535, 'F');
    StationSettings settings;
    auto result = decodeImage(image, settings);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().field, "tabTC");
    EXPECT_EQ(result.error().row, 1);
}

} // namespace
} // namespace rm8
