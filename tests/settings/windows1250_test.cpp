#include "settings/windows1250.h"

#include <gtest/gtest.h>
#include <iconv.h>

#include <array>
#include <initializer_list>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace {

using rm8::cp1250::characterCount;
using rm8::cp1250::fromUnicode;
using rm8::cp1250::fromUtf8;
using rm8::cp1250::toUnicode;
using rm8::cp1250::toUtf8;

// The bytes Windows-1250 leaves without a character.
constexpr std::array<std::uint8_t, 5> kUndefinedBytes = {0x81, 0x83, 0x88, 0x90, 0x98};

bool isUndefined(unsigned byte)
{
    for (const std::uint8_t undefined : kUndefinedBytes)
        if (undefined == byte)
            return true;
    return false;
}

std::string hex(std::string_view bytes)
{
    std::string out;
    for (const char c : bytes) {
        char buffer[4];
        std::snprintf(buffer, sizeof buffer, "%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
        if (!out.empty())
            out += ' ';
        out += buffer;
    }
    return out;
}

std::string codePoint(char32_t c)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "U+%04X", static_cast<unsigned>(c));
    return buffer;
}

std::string byteString(unsigned byte)
{
    return std::string(1, static_cast<char>(byte));
}

// The system's own converter serves as an independent reference for the
// code page, so the table in the code is not checked against itself.
class Iconv {
public:
    Iconv(std::initializer_list<const char*> targets, std::initializer_list<const char*> sources)
    {
        for (const char* to : targets)
            for (const char* from : sources)
                if (!ok())
                    cd_ = iconv_open(to, from);
    }
    ~Iconv()
    {
        if (ok())
            iconv_close(cd_);
    }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    bool ok() const { return cd_ != failed(); }

    // Nothing when iconv rejects the input or could only approximate it.
    std::optional<std::string> convert(std::string_view in)
    {
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);
        std::string input(in);
        char* inPtr = input.data();
        std::size_t inLeft = input.size();
        std::string output(input.size() * 4 + 16, '\0');
        char* outPtr = output.data();
        std::size_t outLeft = output.size();
        const std::size_t result = iconv(cd_, &inPtr, &inLeft, &outPtr, &outLeft);
        if (result != 0 || inLeft != 0)
            return std::nullopt;
        output.resize(output.size() - outLeft);
        return output;
    }

private:
    static iconv_t failed() { return reinterpret_cast<iconv_t>(static_cast<std::intptr_t>(-1)); }

    iconv_t cd_ = failed();
};

Iconv& iconvDecoder()
{
    static Iconv converter({"UTF-8"}, {"CP1250", "WINDOWS-1250"});
    return converter;
}

Iconv& iconvEncoder()
{
    static Iconv converter({"CP1250", "WINDOWS-1250"}, {"UTF-8"});
    return converter;
}

Iconv& iconvUtf32ToUtf8()
{
    static Iconv converter({"UTF-8"}, {"UTF-32LE"});
    return converter;
}

Iconv& iconvUtf32ToCp1250()
{
    static Iconv converter({"CP1250", "WINDOWS-1250"}, {"UTF-32LE"});
    return converter;
}

std::string utf32le(char32_t c)
{
    std::string out;
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<char>((c >> shift) & 0xFF));
    return out;
}

// Parameterised cases are named after their own name field.
template <class Case>
std::string caseName(const testing::TestParamInfo<Case>& param)
{
    return param.param.name;
}

// ---------------------------------------------------------------------------
// The table against the system's converter

TEST(Windows1250Table, IconvLeavesExactlyTheFiveUndefinedBytesWithoutACharacter)
{
    ASSERT_TRUE(iconvDecoder().ok()) << "iconv has no CP1250 converter";
    for (unsigned byte = 0; byte < 256; ++byte) {
        const bool decodes = iconvDecoder().convert(byteString(byte)).has_value();
        EXPECT_EQ(decodes, !isUndefined(byte)) << "byte " << hex(byteString(byte));
    }
}

TEST(Windows1250Table, DefinedBytesDecodeAsIconvDecodesThem)
{
    ASSERT_TRUE(iconvDecoder().ok()) << "iconv has no CP1250 converter";
    int compared = 0;
    for (unsigned byte = 0; byte < 256; ++byte) {
        if (isUndefined(byte))
            continue;
        const std::optional<std::string> expected = iconvDecoder().convert(byteString(byte));
        ASSERT_TRUE(expected.has_value()) << "byte " << hex(byteString(byte));
        EXPECT_EQ(hex(toUtf8(byteString(byte))), hex(*expected)) << "byte " << hex(byteString(byte));
        ++compared;
    }
    EXPECT_EQ(compared, 251);
}

TEST(Windows1250Table, DefinedBytesEncodeFromIconvsCharacters)
{
    ASSERT_TRUE(iconvDecoder().ok()) << "iconv has no CP1250 converter";
    for (unsigned byte = 0; byte < 256; ++byte) {
        if (isUndefined(byte))
            continue;
        const std::optional<std::string> utf8 = iconvDecoder().convert(byteString(byte));
        ASSERT_TRUE(utf8.has_value());
        const auto encoded = fromUtf8(*utf8);
        ASSERT_TRUE(encoded.hasValue()) << "byte " << hex(byteString(byte));
        EXPECT_EQ(hex(*encoded), hex(byteString(byte)));
    }
}

// Every character iconv can store must get the same byte here, and every
// character iconv refuses must be refused here too, apart from the C1
// controls that stand in for the undefined bytes.
TEST(Windows1250Table, EveryBasicPlaneCharacterMapsAsIconvMapsIt)
{
    ASSERT_TRUE(iconvUtf32ToCp1250().ok()) << "iconv has no CP1250 converter";
    int mapped = 0;
    for (char32_t c = 0; c <= 0xFFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        if (c < 0x100 && isUndefined(static_cast<unsigned>(c)))
            continue;
        const std::optional<std::string> expected = iconvUtf32ToCp1250().convert(utf32le(c));
        const std::optional<std::uint8_t> actual = fromUnicode(c);
        ASSERT_EQ(actual.has_value(), expected.has_value()) << codePoint(c);
        if (actual) {
            ASSERT_EQ(expected->size(), 1u) << codePoint(c);
            EXPECT_EQ(*actual, static_cast<std::uint8_t>((*expected)[0])) << codePoint(c);
            ++mapped;
        }
    }
    EXPECT_EQ(mapped, 251);
}

TEST(Windows1250Table, NoCharacterBeyondTheBasicPlaneHasAByte)
{
    // Code points that share their low 16 bits with a mapped character catch
    // a lookup that narrows before it compares.
    for (const char32_t c : {U'\U00010000', U'\U00010041', U'\U00010160', U'\U000120AC',
                             U'\U0001F600', U'\U0010FFFF', U'\U00100159'}) {
        EXPECT_FALSE(fromUnicode(c).has_value()) << codePoint(c);
    }
    for (const char32_t c : {char32_t{0x110000}, char32_t{0x110041}, char32_t{0xFFFFFFFF}})
        EXPECT_FALSE(fromUnicode(c).has_value()) << codePoint(c);
}

TEST(Windows1250Table, KnownCharactersHaveTheirPublishedBytes)
{
    struct Known {
        char32_t character;
        std::uint8_t byte;
    };
    const Known known[] = {
        {U'A', 0x41},       {U'\u20AC', 0x80}, {U'\u201E', 0x84}, {U'\u0160', 0x8A},
        {U'\u0161', 0x9A},  {U'\u017D', 0x8E}, {U'\u017E', 0x9E}, {U'\u0159', 0xF8},
        {U'\u0158', 0xD8},  {U'\u016F', 0xF9}, {U'\u016E', 0xD9}, {U'\u010D', 0xE8},
        {U'\u00A0', 0xA0},  {U'\u02D9', 0xFF}, {U'\u0141', 0xA3}, {U'\u0150', 0xD5},
    };
    for (const Known& k : known) {
        EXPECT_EQ(toUnicode(k.byte), k.character) << hex(byteString(k.byte));
        EXPECT_EQ(fromUnicode(k.character), std::optional<std::uint8_t>(k.byte)) << codePoint(k.character);
    }
}

// ---------------------------------------------------------------------------
// The undefined bytes

TEST(Windows1250Undefined, BytesDecodeToTheC1ControlOfTheSameValue)
{
    for (const std::uint8_t byte : kUndefinedBytes) {
        EXPECT_EQ(toUnicode(byte), char32_t{byte}) << hex(byteString(byte));
        // U+0080..U+00BF take two bytes in UTF-8: C2 and the value itself.
        const std::string expected = std::string("\xC2") + byteString(byte);
        EXPECT_EQ(hex(toUtf8(byteString(byte))), hex(expected));
    }
}

TEST(Windows1250Undefined, C1ControlsEncodeBackToTheirBytes)
{
    for (const std::uint8_t byte : kUndefinedBytes) {
        EXPECT_EQ(fromUnicode(char32_t{byte}), std::optional<std::uint8_t>(byte)) << hex(byteString(byte));
        const auto encoded = fromUtf8(std::string("\xC2") + byteString(byte));
        ASSERT_TRUE(encoded.hasValue()) << hex(byteString(byte));
        EXPECT_EQ(hex(*encoded), hex(byteString(byte)));
    }
}

TEST(Windows1250Undefined, OtherC1ControlsHaveNoByte)
{
    // Only the five stand-ins are C1 controls; the rest of U+0080..U+009F
    // share their values with bytes that hold other characters.
    for (char32_t c = 0x80; c <= 0x9F; ++c) {
        if (isUndefined(static_cast<unsigned>(c)))
            continue;
        EXPECT_FALSE(fromUnicode(c).has_value()) << codePoint(c);
    }
}

// ---------------------------------------------------------------------------
// Round trips

TEST(Windows1250RoundTrip, EveryByteSurvivesDecodingAndEncoding)
{
    for (unsigned byte = 0; byte < 256; ++byte) {
        const std::string original = byteString(byte);
        const auto encoded = fromUtf8(toUtf8(original));
        ASSERT_TRUE(encoded.hasValue()) << "byte " << hex(original);
        EXPECT_EQ(hex(*encoded), hex(original));
        EXPECT_EQ(fromUnicode(toUnicode(static_cast<std::uint8_t>(byte))),
                  std::optional<std::uint8_t>(static_cast<std::uint8_t>(byte)));
    }
}

TEST(Windows1250RoundTrip, AllBytesTogetherSurviveAsOneText)
{
    std::string all;
    for (unsigned byte = 0; byte < 256; ++byte)
        all += byteString(byte);
    const std::string utf8 = toUtf8(all);
    EXPECT_EQ(characterCount(utf8), 256u);
    const auto encoded = fromUtf8(utf8);
    ASSERT_TRUE(encoded.hasValue());
    EXPECT_EQ(hex(*encoded), hex(all));
}

TEST(Windows1250RoundTrip, EmptyTextStaysEmpty)
{
    EXPECT_EQ(toUtf8(""), "");
    const auto encoded = fromUtf8("");
    ASSERT_TRUE(encoded.hasValue());
    EXPECT_EQ(*encoded, "");
}

TEST(Windows1250RoundTrip, NulIsAnOrdinaryCharacterHere)
{
    const std::string withNul("a\0b", 3);
    const auto encoded = fromUtf8(withNul);
    ASSERT_TRUE(encoded.hasValue());
    EXPECT_EQ(hex(*encoded), "61 00 62");
    EXPECT_EQ(hex(toUtf8(withNul)), "61 00 62");
}

// ---------------------------------------------------------------------------
// Texts

struct TextCase {
    const char* name;
    const char* utf8;
    std::string bytes; // empty: take the bytes from iconv alone
};

std::ostream& operator<<(std::ostream& os, const TextCase& c)
{
    return os << c.name;
}

class Windows1250Text : public testing::TestWithParam<TextCase> {};

TEST_P(Windows1250Text, EncodesToTheExpectedBytes)
{
    const TextCase& c = GetParam();
    const auto encoded = fromUtf8(c.utf8);
    ASSERT_TRUE(encoded.hasValue()) << "fails at character " << encoded.error().characterIndex << " "
                                    << codePoint(encoded.error().character);
    if (!c.bytes.empty()) {
        EXPECT_EQ(hex(*encoded), hex(c.bytes));
    }
    ASSERT_TRUE(iconvEncoder().ok()) << "iconv has no CP1250 converter";
    const std::optional<std::string> reference = iconvEncoder().convert(c.utf8);
    ASSERT_TRUE(reference.has_value());
    EXPECT_EQ(hex(*encoded), hex(*reference));
}

TEST_P(Windows1250Text, DecodesBackToTheSameText)
{
    const TextCase& c = GetParam();
    const auto encoded = fromUtf8(c.utf8);
    ASSERT_TRUE(encoded.hasValue());
    EXPECT_EQ(toUtf8(*encoded), c.utf8);
    EXPECT_EQ(characterCount(c.utf8), encoded->size());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Windows1250Text,
    testing::Values(
        TextCase{"Ascii", "Alarm 1: door open!", "Alarm 1: door open!"},
        TextCase{"CzechPangram", "Příliš žluťoučký kůň úpěl ďábelské ódy",
                 "P\xF8\xEDli\x9A \x9Elu\x9Do"
                 "u\xE8k\xFD k\xF9\xF2 \xFAp\xECl \xEF\xE1"
                 "belsk\xE9 \xF3" "dy"},
        TextCase{"CzechCapitals", "ŠČŘŽÝÁÍÉÚŮĎŤŇ",
                 "\x8A\xC8\xD8\x8E\xDD\xC1\xCD\xC9\xDA\xD9\xCF\x8D\xD2"},
        TextCase{"Typography", "„Ahoj“ – 10 €", "\x84" "Ahoj\x93 \x96 10 \x80"},
        TextCase{"Slovak", "Ľúbostná pieseň, dĺžeň ôsmich", ""},
        TextCase{"Polish", "Zażółć gęślą jaźń", ""},
        TextCase{"Hungarian", "Árvíztűrő tükörfúrógép", ""},
        TextCase{"Romanian", "V\u00E2n\u0103torul \u00EE\u015Fi \u0163ine pu\u015Fca", ""},
        TextCase{"Marks", "ˇ˘˛˝˙ §°±×÷ ‰™…†‡•", ""}),
    caseName<TextCase>);

// ---------------------------------------------------------------------------
// Characters the code page cannot hold

struct UnmappableCase {
    const char* name;
    const char* utf8;
    std::size_t index;
    char32_t character;
};

std::ostream& operator<<(std::ostream& os, const UnmappableCase& c)
{
    return os << c.name;
}

class Windows1250Unmappable : public testing::TestWithParam<UnmappableCase> {};

TEST_P(Windows1250Unmappable, FailsAtTheFirstCharacterWithoutAByte)
{
    const UnmappableCase& c = GetParam();
    const auto encoded = fromUtf8(c.utf8);
    ASSERT_FALSE(encoded.hasValue()) << hex(*encoded);
    EXPECT_FALSE(encoded.error().invalidUtf8);
    EXPECT_EQ(encoded.error().characterIndex, c.index);
    EXPECT_EQ(codePoint(encoded.error().character), codePoint(c.character));
}

TEST_P(Windows1250Unmappable, IconvAgreesTheTextCannotBeStored)
{
    ASSERT_TRUE(iconvEncoder().ok()) << "iconv has no CP1250 converter";
    EXPECT_FALSE(iconvEncoder().convert(GetParam().utf8).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Windows1250Unmappable,
    testing::Values(
        UnmappableCase{"SpanishEnye", "abc€ñ", 4, U'\u00F1'},
        UnmappableCase{"Omega", "\u03A9", 0, U'\u03A9'},
        UnmappableCase{"Arrow", "a\u2192b", 1, U'\u2192'},
        UnmappableCase{"Emoji", "ok \U0001F600", 3, U'\U0001F600'},
        UnmappableCase{"Cjk", "x\u4E2D\u6587", 1, U'\u4E2D'},
        UnmappableCase{"IndexCountsCharactersNotBytes", "Příliš ñ", 7, U'\u00F1'},
        UnmappableCase{"FirstOfSeveral", "ž\u03A9\u00F1", 1, U'\u03A9'},
        UnmappableCase{"CharacterAheadOfBrokenUtf8", "\u00F1\x80", 0, U'\u00F1'},
        UnmappableCase{"SharesLowBitsWithSCaron", "\U00010160", 0, U'\U00010160'},
        UnmappableCase{"C1ControlWithAnotherCharactersByte", "\u0080", 0, U'\u0080'},
        UnmappableCase{"LastBeforeSurrogates", "\uD7FF", 0, U'\uD7FF'},
        UnmappableCase{"FirstAfterSurrogates", "\uE000", 0, U'\uE000'},
        UnmappableCase{"FirstBeyondBasicPlane", "\U00010000", 0, U'\U00010000'},
        UnmappableCase{"LastCodePoint", "\U0010FFFF", 0, U'\U0010FFFF'}),
    caseName<UnmappableCase>);

// Every code point, once written as UTF-8, must be read back as itself; the
// failure report of an unmappable character shows what was read.
TEST(Windows1250Utf8, EveryCodePointIsReadBackAsItself)
{
    ASSERT_TRUE(iconvUtf32ToUtf8().ok());
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        const std::optional<std::string> utf8 = iconvUtf32ToUtf8().convert(utf32le(c));
        ASSERT_TRUE(utf8.has_value()) << codePoint(c);
        ASSERT_EQ(characterCount(*utf8), 1u) << codePoint(c);
        const auto encoded = fromUtf8(*utf8);
        const std::optional<std::uint8_t> byte = fromUnicode(c);
        if (byte) {
            ASSERT_TRUE(encoded.hasValue()) << codePoint(c);
            ASSERT_EQ(hex(*encoded), hex(byteString(*byte))) << codePoint(c);
        } else {
            ASSERT_FALSE(encoded.hasValue()) << codePoint(c);
            ASSERT_FALSE(encoded.error().invalidUtf8) << codePoint(c);
            ASSERT_EQ(codePoint(encoded.error().character), codePoint(c));
        }
    }
}

// ---------------------------------------------------------------------------
// Broken UTF-8

struct BrokenCase {
    const char* name;
    std::string utf8;
    std::size_t index;
};

std::ostream& operator<<(std::ostream& os, const BrokenCase& c)
{
    return os << c.name;
}

const BrokenCase kBrokenCases[] = {
    BrokenCase{"LoneContinuation", "\x80", 0},
    BrokenCase{"ContinuationAfterText", "ab\xBF", 2},
    BrokenCase{"TruncatedTwoByte", "\xC5", 0},
    BrokenCase{"TruncatedAfterText", "žlu\xC5", 3},
    BrokenCase{"LeadFollowedByAscii", "\xC5x", 0},
    BrokenCase{"TruncatedThreeByte", "\xE2\x82", 0},
    BrokenCase{"ThreeByteBadSecond", "\xE2(\xA1", 0},
    BrokenCase{"ThreeByteBadThird", "\xE2\x82(", 0},
    BrokenCase{"TruncatedFourByte", "a\xF0\x9F\x98", 1},
    BrokenCase{"FourByteBadFourth", "\xF0\x9F\x98(", 0},
    BrokenCase{"OverlongSlash", "\xC0\xAF", 0},
    BrokenCase{"OverlongTwoByteLimit", "\xC1\xBF", 0},
    BrokenCase{"OverlongThreeByte", "\xE0\x80\xAF", 0},
    BrokenCase{"OverlongThreeByteLimit", "\xE0\x9F\xBF", 0},
    BrokenCase{"OverlongFourByte", "\xF0\x80\x80\xAF", 0},
    BrokenCase{"OverlongFourByteLimit", "\xF0\x8F\xBF\xBF", 0},
    BrokenCase{"HighSurrogate", "\xED\xA0\x80", 0},
    BrokenCase{"LowSurrogate", "x\xED\xBF\xBF", 1},
    BrokenCase{"BeyondLastCodePoint", "\xF4\x90\x80\x80", 0},
    BrokenCase{"FourByteLeadTooHigh", "\xF5\x80\x80\x80", 0},
    BrokenCase{"FiveByteForm", "\xF8\x88\x80\x80\x80", 0},
    BrokenCase{"ByteFE", "\xFE", 0},
    BrokenCase{"ByteFF", "ž\xFF", 1},
    BrokenCase{"BrokenAfterNul", std::string("\0\x80", 2), 1},
};

class Windows1250BrokenUtf8 : public testing::TestWithParam<BrokenCase> {};

TEST_P(Windows1250BrokenUtf8, IsReportedAsInvalidWhereItStarts)
{
    const BrokenCase& c = GetParam();
    const auto encoded = fromUtf8(c.utf8);
    ASSERT_FALSE(encoded.hasValue()) << hex(*encoded);
    EXPECT_TRUE(encoded.error().invalidUtf8);
    EXPECT_EQ(encoded.error().characterIndex, c.index);
    EXPECT_EQ(codePoint(encoded.error().character), "U+FFFD");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Windows1250BrokenUtf8, testing::ValuesIn(kBrokenCases),
    caseName<BrokenCase>);

TEST(Windows1250Utf8, TextEndingInsideACharacterIsBrokenEvenIfMoreBytesFollowInMemory)
{
    // The bytes after the view would complete the character; they are not
    // part of the text and must not be read.
    const std::string whole = "\xC5\xBE\xC5\x99"; // "žř"
    const std::string_view cut(whole.data(), 3);
    const auto encoded = fromUtf8(cut);
    ASSERT_FALSE(encoded.hasValue()) << hex(*encoded);
    EXPECT_TRUE(encoded.error().invalidUtf8);
    EXPECT_EQ(encoded.error().characterIndex, 1u);
    EXPECT_EQ(characterCount(cut), 2u);

    const std::string emoji = "\U0001F600";
    EXPECT_EQ(characterCount(std::string_view(emoji.data(), 3)), 3u);
}

TEST(Windows1250Utf8, IconvAlsoRejectsEveryBrokenCase)
{
    // Keeps the cases above honest: each one really is ill-formed UTF-8.
    Iconv utf8Check({"UTF-32LE"}, {"UTF-8"});
    ASSERT_TRUE(utf8Check.ok());
    for (const BrokenCase& c : kBrokenCases)
        EXPECT_FALSE(utf8Check.convert(c.utf8).has_value()) << c.name;
}

// ---------------------------------------------------------------------------
// Counting characters

struct CountCase {
    const char* name;
    std::string utf8;
    std::size_t count;
};

std::ostream& operator<<(std::ostream& os, const CountCase& c)
{
    return os << c.name;
}

class Windows1250CharacterCount : public testing::TestWithParam<CountCase> {};

TEST_P(Windows1250CharacterCount, CountsCodePoints)
{
    EXPECT_EQ(characterCount(GetParam().utf8), GetParam().count) << hex(GetParam().utf8);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Windows1250CharacterCount,
    testing::Values(
        CountCase{"Empty", "", 0},
        CountCase{"Ascii", "abc", 3},
        CountCase{"Czech", "žluť", 4},
        CountCase{"CzechPangram", "Příliš žluťoučký kůň úpěl ďábelské ódy", 38},
        CountCase{"ThreeByteCharacters", "€„“", 3},
        CountCase{"EmojiAmongLetters", "a\U0001F600b", 3},
        CountCase{"Cjk", "\u4E2D\u6587", 2},
        CountCase{"Nul", std::string("\0\0", 2), 2},
        CountCase{"LoneContinuation", "\x80", 1},
        CountCase{"ContinuationBetweenLetters", "a\x80" "b", 3},
        CountCase{"TruncatedLead", "\xC5", 1},
        CountCase{"TruncatedLeadBeforeLetter", "\xC5" "a", 2},
        // Each byte of a sequence that never completes stands alone.
        CountCase{"TruncatedThreeByte", "\xE2\x82", 2},
        CountCase{"Overlong", "\xC0\xAF", 2},
        CountCase{"Surrogate", "\xED\xA0\x80", 3},
        CountCase{"BeyondLastCodePoint", "\xF4\x90\x80\x80", 4},
        CountCase{"EmojiThenTruncatedEmoji", "\U0001F600\xF0\x9F\x98", 4},
        CountCase{"BrokenByteInsideCzech", "ž\xFFluť", 5}),
    caseName<CountCase>);

} // namespace
