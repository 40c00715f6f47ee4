// The code page against tables made from an independent converter
// (tests/data/settings/make_text_tables.py).

#include <map>

#include "settings/table_file.h"
#include "settings/windows1250.h"

namespace rm8::cp1250 {
namespace {

TEST(Windows1250, EveryByteMapsAsTheReferenceTableSaysAndNothingElseHasAByte)
{
    std::map<char32_t, std::uint8_t> byteOf;
    std::string all;
    for (const auto& row : test::readTable("settings/windows1250.tsv")) {
        const auto byte = static_cast<std::uint8_t>(std::stoul(row[0], nullptr, 16));
        const auto character = static_cast<char32_t>(std::stoul(row[1], nullptr, 16));
        byteOf[character] = byte;
        all.push_back(static_cast<char>(byte));
        EXPECT_EQ(toUnicode(byte), character) << row[0];
    }
    ASSERT_EQ(byteOf.size(), 256u);
    // Past the last code point too, and values that share their low 16 bits
    // with a mapped character.
    for (char32_t c = 0; c <= 0x110100; ++c) {
        const auto found = byteOf.find(c);
        ASSERT_EQ(fromUnicode(c), found == byteOf.end() ? std::nullopt : std::optional(found->second))
            << std::hex << static_cast<unsigned>(c);
    }
    EXPECT_EQ(fromUnicode(0xFFFFFFFF), std::nullopt);
    const auto encoded = fromUtf8(toUtf8(all));
    ASSERT_TRUE(encoded);
    EXPECT_EQ(*encoded, all);
}

// The text is followed in memory by bytes that would complete a cut
// character: they are not part of it and must not be read.
TEST(Windows1250, Utf8TextsEncodeOrFailWhereTheTableSays)
{
    for (const auto& row : test::readTable("settings/utf8.tsv")) {
        SCOPED_TRACE(row[0]);
        const std::string text = test::unhex(row[1]);
        const std::string memory = text + "\x99\xBF\xBF\xBF";
        const std::string_view utf8(memory.data(), text.size());
        EXPECT_EQ(characterCount(utf8), std::stoul(row[5]));
        const auto encoded = fromUtf8(utf8);
        if (row[2] == "ok") {
            ASSERT_TRUE(encoded) << encoded.error().characterIndex;
            EXPECT_EQ(*encoded, test::unhex(row[3]));
            EXPECT_EQ(toUtf8(*encoded), text);
            continue;
        }
        ASSERT_FALSE(encoded);
        EXPECT_EQ(encoded.error().invalidUtf8, row[2] == "bad");
        EXPECT_EQ(encoded.error().characterIndex, std::stoul(row[3]));
        EXPECT_EQ(encoded.error().character, std::stoul(row[4], nullptr, 16));
    }
}

} // namespace
} // namespace rm8::cp1250
