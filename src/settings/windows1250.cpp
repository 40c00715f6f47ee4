#include "settings/windows1250.h"

#include <algorithm>
#include <array>
#include <utility>

namespace rm8::cp1250 {

namespace {

// The upper half of the code page, bytes 0x80..0xFF. The lower half is ASCII.
// The undefined bytes 0x81, 0x83, 0x88, 0x90 and 0x98 carry the C1 control of
// the same value (see the header for why).
constexpr std::array<char16_t, 128> kUpperHalf = {
    // 0x80
    u'\u20AC', u'\u0081', u'\u201A', u'\u0083', u'\u201E', u'\u2026', u'\u2020', u'\u2021',
    u'\u0088', u'\u2030', u'\u0160', u'\u2039', u'\u015A', u'\u0164', u'\u017D', u'\u0179',
    // 0x90
    u'\u0090', u'\u2018', u'\u2019', u'\u201C', u'\u201D', u'\u2022', u'\u2013', u'\u2014',
    u'\u0098', u'\u2122', u'\u0161', u'\u203A', u'\u015B', u'\u0165', u'\u017E', u'\u017A',
    // 0xA0
    u'\u00A0', u'\u02C7', u'\u02D8', u'\u0141', u'\u00A4', u'\u0104', u'\u00A6', u'\u00A7',
    u'\u00A8', u'\u00A9', u'\u015E', u'\u00AB', u'\u00AC', u'\u00AD', u'\u00AE', u'\u017B',
    // 0xB0
    u'\u00B0', u'\u00B1', u'\u02DB', u'\u0142', u'\u00B4', u'\u00B5', u'\u00B6', u'\u00B7',
    u'\u00B8', u'\u0105', u'\u015F', u'\u00BB', u'\u013D', u'\u02DD', u'\u013E', u'\u017C',
    // 0xC0
    u'\u0154', u'\u00C1', u'\u00C2', u'\u0102', u'\u00C4', u'\u0139', u'\u0106', u'\u00C7',
    u'\u010C', u'\u00C9', u'\u0118', u'\u00CB', u'\u011A', u'\u00CD', u'\u00CE', u'\u010E',
    // 0xD0
    u'\u0110', u'\u0143', u'\u0147', u'\u00D3', u'\u00D4', u'\u0150', u'\u00D6', u'\u00D7',
    u'\u0158', u'\u016E', u'\u00DA', u'\u0170', u'\u00DC', u'\u00DD', u'\u0162', u'\u00DF',
    // 0xE0
    u'\u0155', u'\u00E1', u'\u00E2', u'\u0103', u'\u00E4', u'\u013A', u'\u0107', u'\u00E7',
    u'\u010D', u'\u00E9', u'\u0119', u'\u00EB', u'\u011B', u'\u00ED', u'\u00EE', u'\u010F',
    // 0xF0
    u'\u0111', u'\u0144', u'\u0148', u'\u00F3', u'\u00F4', u'\u0151', u'\u00F6', u'\u00F7',
    u'\u0159', u'\u016F', u'\u00FA', u'\u0171', u'\u00FC', u'\u00FD', u'\u0163', u'\u02D9',
};

struct ReverseEntry {
    char16_t character;
    std::uint8_t byte;
};

// Encoding runs once per character over whole images, so the reverse mapping
// is built at compile time and searched by halving rather than by scanning
// the 128 entries.
constexpr std::array<ReverseEntry, 128> makeReverseTable()
{
    std::array<ReverseEntry, 128> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = ReverseEntry{kUpperHalf[i], static_cast<std::uint8_t>(0x80 + i)};
    std::sort(table.begin(), table.end(), [](const ReverseEntry& a, const ReverseEntry& b) {
        return a.character < b.character;
    });
    return table;
}

constexpr std::array<ReverseEntry, 128> kReverse = makeReverseTable();

constexpr bool hasNoDuplicates()
{
    for (std::size_t i = 1; i < kReverse.size(); ++i)
        if (kReverse[i - 1].character == kReverse[i].character)
            return false;
    return true;
}
static_assert(hasNoDuplicates(), "two bytes would claim the same character");

// One step of strict UTF-8 decoding. A length of 0 means the bytes at the
// position do not begin a well-formed character.
struct Decoded {
    char32_t character = 0;
    std::size_t length = 0;
};

constexpr bool isContinuation(unsigned byte)
{
    return (byte & 0xC0u) == 0x80u;
}

Decoded decodeAt(std::string_view text, std::size_t pos)
{
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[pos + i]); };
    const std::size_t available = text.size() - pos;
    const unsigned lead = at(0);

    if (lead < 0x80u)
        return {lead, 1};

    // The bounds on the second byte are what rule out overlong forms,
    // surrogates and code points beyond U+10FFFF (RFC 3629, section 4).
    std::size_t length = 0;
    unsigned secondLow = 0x80u;
    unsigned secondHigh = 0xBFu;
    char32_t value = 0;
    if (lead >= 0xC2u && lead <= 0xDFu) {
        length = 2;
        value = lead & 0x1Fu;
    } else if (lead >= 0xE0u && lead <= 0xEFu) {
        length = 3;
        value = lead & 0x0Fu;
        if (lead == 0xE0u)
            secondLow = 0xA0u;
        else if (lead == 0xEDu)
            secondHigh = 0x9Fu;
    } else if (lead >= 0xF0u && lead <= 0xF4u) {
        length = 4;
        value = lead & 0x07u;
        if (lead == 0xF0u)
            secondLow = 0x90u;
        else if (lead == 0xF4u)
            secondHigh = 0x8Fu;
    } else {
        return {};
    }

    if (available < length)
        return {};
    const unsigned second = at(1);
    if (second < secondLow || second > secondHigh)
        return {};
    value = (value << 6) | (second & 0x3Fu);
    for (std::size_t i = 2; i < length; ++i) {
        const unsigned next = at(i);
        if (!isContinuation(next))
            return {};
        value = (value << 6) | (next & 0x3Fu);
    }
    return {value, length};
}

void appendUtf8(std::string& out, char32_t c)
{
    const auto put = [&](char32_t unit) { out.push_back(static_cast<char>(unit)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6));
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | (c >> 18));
        put(0x80 | ((c >> 12) & 0x3F));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

} // namespace

char32_t toUnicode(std::uint8_t byte)
{
    if (byte < 0x80)
        return byte;
    return kUpperHalf[byte - 0x80u];
}

std::optional<std::uint8_t> fromUnicode(char32_t character)
{
    if (character < 0x80)
        return static_cast<std::uint8_t>(character);
    if (character > 0xFFFF)
        return std::nullopt;
    const auto key = static_cast<char16_t>(character);
    const auto* found = std::lower_bound(
        kReverse.begin(), kReverse.end(), key,
        [](const ReverseEntry& entry, char16_t wanted) { return entry.character < wanted; });
    if (found == kReverse.end() || found->character != key)
        return std::nullopt;
    return found->byte;
}

Expected<std::string, EncodeFailure> fromUtf8(std::string_view utf8)
{
    std::string bytes;
    bytes.reserve(utf8.size());
    std::size_t index = 0;
    for (std::size_t pos = 0; pos < utf8.size(); ++index) {
        const Decoded decoded = decodeAt(utf8, pos);
        if (decoded.length == 0)
            return unexpected(EncodeFailure{index, U'\uFFFD', true});
        const std::optional<std::uint8_t> byte = fromUnicode(decoded.character);
        if (!byte)
            return unexpected(EncodeFailure{index, decoded.character, false});
        bytes.push_back(static_cast<char>(*byte));
        pos += decoded.length;
    }
    return bytes;
}

std::string toUtf8(std::string_view bytes)
{
    std::string utf8;
    // Every character of the code page lies in the BMP, so three bytes each
    // is enough and the string never grows twice.
    utf8.reserve(bytes.size() * 3);
    for (const char c : bytes)
        appendUtf8(utf8, toUnicode(static_cast<std::uint8_t>(c)));
    return utf8;
}

std::size_t characterCount(std::string_view utf8)
{
    std::size_t count = 0;
    for (std::size_t pos = 0; pos < utf8.size(); ++count) {
        const Decoded decoded = decodeAt(utf8, pos);
        pos += decoded.length == 0 ? 1 : decoded.length;
    }
    return count;
}

} // namespace rm8::cp1250
