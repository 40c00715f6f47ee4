// The image, its encoder and decoder: golden files made by an independent
// generator (tests/data/make_golden.py), encoder cases as a data table, and
// sweeps over truncated and corrupted images.

#include "fields/settings_json.h"
#include "settings/image_decoder.h"
#include "settings/loaded_settings.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "settings/image_layout.h"
#include "settings/image_survey.h"
#include "settings/settings_file.h"
#include "settings/table_file.h"
#include "settings/used_size.h"

namespace rm8 {
namespace {

EepromImage withPrefix(const std::vector<char>& bytes, std::size_t length, std::uint8_t fill)
{
    EepromImage image(fill);
    std::copy_n(bytes.begin(), length, image.bytes().begin());
    return image;
}

TEST(EepromImage, WordsAreLittleEndianAndEveryAccessIsChecked)
{
    EepromImage image(0xAA);
    image.putWord(65534, 9602);
    EXPECT_EQ(image.bytes()[65534] + 256 * image.bytes()[65535], 9602);
    EXPECT_EQ(image.word(65534), 9602);
    EXPECT_THROW(image.byte(65536), ImageRangeError);
    EXPECT_THROW(image.word(65535), ImageRangeError);
    EXPECT_THROW(image.putByte(65536, 1), ImageRangeError);
    EXPECT_THROW(image.putByte(10, 256), ImageOverflowError);
    EXPECT_THROW(image.putByte(10, -1), ImageOverflowError);
    EXPECT_THROW(image.putWord(10, 65536), ImageOverflowError);
    EXPECT_THROW(image.putWord(65535, 0), ImageRangeError);
    image.putWord(65534, 0xAAAA);
    EXPECT_EQ(image, EepromImage(0xAA)) << "a refused store changes no byte";
}

TEST(GoldenImages, DecodeAndEncodeGiveTheStoredFilesBack)
{
    const nlohmann::json manifest = test::readJson(test::dataDir() / "manifest.json");
    for (const auto& c : manifest) {
        const std::string name = c["name"];
        SCOPED_TRACE(name);
        const auto bytes = test::readBytes(test::dataDir() / (name + ".eep"));
        ASSERT_EQ(bytes.size(), c["file_size"]);
        const EepromImage image = withPrefix(bytes, bytes.size(), 0);
        const ImageInspection look = inspectImage(image);
        EXPECT_TRUE(look.headerValid);
        EXPECT_EQ(look.computedCheckByte, c["check_byte"]);
        EXPECT_EQ(look.encodedEnd, c["encoded_end"].get<std::uint32_t>());
        // A byte of the header one up fails it (a check byte 13 too); with the
        // check byte made to match again only the layout mark still catches it.
        for (unsigned a = 0; a <= 48; ++a) {
            EepromImage corrupt = image;
            corrupt.putByte(a, (image.byte(a) + 1) % 256);
            EXPECT_FALSE(imageHeaderValid(corrupt)) << a;
            corrupt.putByte(48, headerCheckByte(corrupt));
            EXPECT_EQ(imageHeaderValid(corrupt), a < 46 || a == 48) << a;
        }
        StationSettings decoded;
        const auto result = decodeLoadedImage(image, decoded);
        ASSERT_TRUE(result) << result.error().describe();
        const auto json = test::readBytes(test::dataDir() / (name + ".json"));
        EXPECT_TRUE(settingsToJsonText(decoded) == std::string(json.begin(), json.end())) << "differs from "
                                                                                         << name << ".json";
        EXPECT_EQ(usedSize(decoded), c["loaded_used_size"]);
        if (!c["has_input"])
            continue;
        const auto input = settingsFromJson(test::readJson(test::dataDir() / (name + ".input.json")));
        ASSERT_TRUE(input) << input.error();
        EepromImage encoded = image;
        const auto summary = encodeImage(*input, encoded);
        ASSERT_TRUE(summary) << summary.error().describe();
        EXPECT_EQ(summary->end, c["encoded_end"]);
        EXPECT_EQ(encoded, image) << "every byte, the untouched ones and those past the end too";
        EXPECT_EQ(settingsFileLength(usedSize(*input)), bytes.size());
    }
}

// A cut file over an image without a byte 0: the header holds once the check
// byte is in, decoding fails at the image's end until the last text is
// complete, and the end of the encoded settings is found once its mark is in.
TEST(GoldenImages, EveryTruncatedPrefixDecodesOrStopsAtTheImagesEnd)
{
    const auto bytes = test::readBytes(test::dataDir() / "full.eep");
    const std::size_t complete = 1810; // where the end mark starts
    for (std::size_t length = 0; length <= bytes.size(); length += length < 64 || length + 40 >= complete ? 1 : 37) {
        const EepromImage image = withPrefix(bytes, length, 0xFE);
        EXPECT_EQ(imageHeaderValid(image), length >= 49) << length;
        StationSettings settings;
        const auto result = decodeImage(image, settings);
        EXPECT_EQ(result.hasValue(), length >= complete) << length;
        EXPECT_EQ(inspectImage(image).encodedEnd.has_value(), length >= complete + 2) << length;
        EXPECT_TRUE(
            result || (result.error().fault == CodecFault::AddressOutOfRange && result.error().address == 65536))
            << result.error().describe();
    }
}

void expectEncoding(const StationSettings& settings, const nlohmann::json& expected)
{
    const EepromImage before(0x5A);
    EepromImage image = before;
    const auto result = encodeImage(settings, image);
    if (expected.contains("message")) {
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().describe(), expected["message"]);
        EXPECT_EQ(image, before) << "a failed encoding leaves the image alone";
        return;
    }
    ASSERT_TRUE(result) << result.error().describe();
    for (const auto& [address, value] : expected["bytes"].items())
        EXPECT_EQ(image.byte(std::stoul(address)), value) << "address " << address;
}

// In a case's settings "x*9000" stands for 9000 x's and "hex:C5" for the
// byte C5, which JSON cannot carry alone.
nlohmann::json expanded(nlohmann::json value)
{
    if (value.is_structured())
        for (auto& item : value)
            item = expanded(item);
    const std::string text = value.is_string() ? value.get<std::string>() : "";
    if (text.starts_with("hex:"))
        return test::unhex(text.substr(4));
    return text.size() > 2 && text[1] == '*' ? nlohmann::json(std::string(std::stoul(text.substr(2)), text[0])) : value;
}

TEST(Encoder, CasesOfTheTable)
{
    for (const auto& c : test::readJson(test::dataDir() / "settings/encoder_cases.json")) {
        SCOPED_TRACE(c["name"].get<std::string>());
        const auto settings = settingsFromJson(expanded(c["settings"]));
        ASSERT_TRUE(settings) << settings.error();
        expectEncoding(*settings, c);
    }
}

// A phone's length field is read as far as it is hexadecimal, in either
// case: a file written by another tool may use lower-case digits.
TEST(Decoder, PhoneLengthFieldIsReadAsFarAsItIsHexadecimal)
{
    StationSettings settings;
    settings.tabTC[0] = "+420602123456789";
    settings.tabTC[1] = "+420603654321";
    EepromImage image;
    ASSERT_TRUE(encodeImage(settings, image));
    const std::uint16_t phone = image.word(layout::kPhonesPointer);
    ASSERT_EQ(image.byte(phone), '0');
    ASSERT_EQ(image.byte(phone + 1), 'F');
    for (const char* field : { "0F", "0f", "F ", "Fx", "f\x01" }) {
        image.putByte(phone, field[0]);
        image.putByte(phone + 1, field[1]);
        StationSettings decoded;
        ASSERT_TRUE(decodeImage(image, decoded)) << field;
        EXPECT_EQ(decoded.tabTC[0], "+420602123456789") << field;
        EXPECT_EQ(decoded.tabTC[1], "+420603654321") << field;
    }
}

// A text or phone number that runs off the image stops the decoder where it
// stands, naming the field; the text read so far stays.
TEST(Decoder, TextOrPhoneRunningOffTheImageNamesTheField)
{
    for (const auto& [pointer, field] : { std::pair { 20u, "tabAINNazev" }, std::pair { 40u, "tabTC" } }) {
        EepromImage image(0x41); // no byte 0 past the encoded settings
        ASSERT_TRUE(encodeImage(StationSettings(), image));
        image.putWord(pointer, 65530);
        StationSettings settings;
        const auto result = decodeImage(image, settings);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().describe(),
            "pole " + std::string(field) + " (řádek 1): adresa 65536 leží mimo paměť EEPROM (0 až 65535)");
        EXPECT_EQ(settings.tabAINNazev[0], pointer == 20 ? "AAAAAA" : "");
    }
}

} // namespace
} // namespace rm8
