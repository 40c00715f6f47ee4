#pragma once
// Windows-1250, the single-byte code page in which the station stores its
// texts. Texts live in the program as UTF-8; the image holds one byte per
// character.
//
// The five byte values that Windows-1250 leaves undefined (0x81, 0x83, 0x88,
// 0x90, 0x98) map to the C1 control characters of the same value, as Windows
// itself does, so that every byte decodes and every decoded text re-encodes to
// the same byte. Do not "fix" this mapping: byte-exact round trips rest on it.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/expected.h"

namespace rm8::cp1250 {

// The Unicode character of a byte. Total: every byte has one.
char32_t toUnicode(std::uint8_t byte);

// The byte of a Unicode character, or nothing when Windows-1250 cannot hold it.
std::optional<std::uint8_t> fromUnicode(char32_t character);

// Why a UTF-8 text could not become Windows-1250 bytes.
struct EncodeFailure {
    std::size_t characterIndex = 0; // 0-based, counted in characters
    char32_t character = 0;         // the character, or U+FFFD for broken UTF-8
    bool invalidUtf8 = false;
};

// UTF-8 text to Windows-1250 bytes.
Expected<std::string, EncodeFailure> fromUtf8(std::string_view utf8);

// Windows-1250 bytes to UTF-8 text. Total.
std::string toUtf8(std::string_view bytes);

// The number of characters (code points) of a UTF-8 text: the number of image
// bytes it takes. A broken sequence counts one per byte that cannot start or
// continue a character.
std::size_t characterCount(std::string_view utf8);

} // namespace rm8::cp1250
