// Golden settings files made by an independent generator (tests/data,
// make_golden.py): decoding must give the stored settings, and encoding the
// generator's input over the file must give the file back byte for byte.

#include <gtest/gtest.h>

#include "fields/settings_json.h"
#include "settings/image_decoder.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "settings/settings_file.h"
#include "settings/used_size.h"
#include "support/test_data.h"

namespace rm8 {
namespace {

std::vector<std::string> goldenCases()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(test::dataDir()))
        if (entry.path().extension() == ".eep")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

EepromImage loaded(const std::string& name)
{
    EepromImage image;
    auto read = readImageFile(test::dataDir() / (name + ".eep"), image);
    EXPECT_TRUE(read) << name;
    return image;
}

class GoldenImage : public testing::TestWithParam<std::string> {};

TEST_P(GoldenImage, DecodesToTheStoredSettings)
{
    const EepromImage image = loaded(GetParam());
    EXPECT_TRUE(imageHeaderValid(image));
    StationSettings settings;
    auto result = decodeImage(image, settings);
    ASSERT_TRUE(result) << result.error().describe();
    const nlohmann::json expected = test::readJson(test::dataDir() / (GetParam() + ".json"));
    const nlohmann::json actual = nlohmann::json::parse(settingsToJsonText(settings));
    for (const auto& [key, value] : expected.items())
        EXPECT_EQ(actual.at(key), value) << key;
    EXPECT_EQ(actual.size(), expected.size());
}

TEST_P(GoldenImage, EncodingTheGeneratorInputGivesTheFileBack)
{
    const auto input = test::dataDir() / (GetParam() + ".input.json");
    if (!std::filesystem::exists(input))
        GTEST_SKIP() << "a decode-only case";
    auto settings = settingsFromJson(test::readJson(input));
    ASSERT_TRUE(settings) << settings.error();
    EepromImage image = loaded(GetParam());
    const EepromImage original = image;
    ASSERT_TRUE(encodeImage(*settings, image));
    EXPECT_EQ(image, original);
    const auto bytes = test::readBytes(test::dataDir() / (GetParam() + ".eep"));
    EXPECT_EQ(settingsFileLength(usedSize(*settings)), bytes.size());
}

TEST_P(GoldenImage, DecodeThenEncodeChangesNoUntouchedByte)
{
    EepromImage image = loaded(GetParam());
    const EepromImage original = image;
    StationSettings settings;
    ASSERT_TRUE(decodeImage(image, settings));
    auto encoded = encodeImage(settings, image);
    ASSERT_TRUE(encoded);
    const auto differs = [&](unsigned a) { return image.byte(a) != original.byte(a); };
    for (unsigned a : {6u, 7u, 44u, 45u})
        EXPECT_FALSE(differs(a)) << a;
    for (unsigned a = 49; a < 128; ++a)
        EXPECT_FALSE(differs(a)) << a;
    for (unsigned a = 191; a < 240; ++a)
        EXPECT_FALSE(differs(a)) << a;
    for (unsigned a = 257; a < 272; ++a)
        EXPECT_FALSE(differs(a)) << a;
    for (unsigned a = encoded->end; a < EepromImage::kSize; ++a)
        ASSERT_FALSE(differs(a)) << a;
}

INSTANTIATE_TEST_SUITE_P(TestData, GoldenImage, testing::ValuesIn(goldenCases()),
                         [](const auto& row) { return row.param; });

TEST(GoldenImages, AllCasesArePresent)
{
    const auto names = goldenCases();
    for (const char* name : {"empty", "full", "all_bytes", "long_texts", "header_checksum_13"})
        EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
}

TEST(GoldenImages, EmptyConfigurationFileIs429Bytes)
{
    EXPECT_EQ(std::filesystem::file_size(test::dataDir() / "empty.eep"), 429u);
    EXPECT_EQ(loaded("header_checksum_13").byte(48), 12);
}

// Any single changed byte of the header must make the header fail.
TEST(GoldenImages, EveryCorruptedHeaderByteIsCaught)
{
    const EepromImage original = loaded("full");
    for (unsigned a = 0; a <= 48; ++a) {
        EepromImage image = original;
        image.putByte(a, image.byte(a) ^ 0xFF);
        EXPECT_FALSE(imageHeaderValid(image)) << "address " << a;
    }
}

// Every truncated prefix of a good file loads; the shorter ones fail the
// header and none of them crashes the decoder.
TEST(GoldenImages, EveryTruncatedPrefixLoadsSafely)
{
    test::ScratchDir dir;
    const auto bytes = test::readBytes(test::dataDir() / "full.eep");
    for (std::size_t length = 0; length <= bytes.size(); length += (length < 64 ? 1 : 37)) {
        test::writeBytes(dir / "cut.eep", std::vector<char>(bytes.begin(), bytes.begin() + static_cast<long>(length)));
        EepromImage image;
        ASSERT_TRUE(readImageFile(dir / "cut.eep", image));
        EXPECT_EQ(imageHeaderValid(image), length >= 49) << "length " << length;
        StationSettings settings;
        (void)decodeImage(image, settings);
    }
}

} // namespace
} // namespace rm8
