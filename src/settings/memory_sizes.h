#pragma once
// The EEPROM sizes a station reports by code, as the memory display shows
// them: the settings area is the memory less 64 bytes, right-aligned in
// eleven characters.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace rm8 {

struct MemorySizeRow {
    std::uint8_t code;
    std::string_view text;
};

inline constexpr std::array<MemorySizeRow, 10> kMemorySizes{{
    {0, "    64 byte"},
    {1, "   192 byte"},
    {2, "   448 byte"},
    {3, "   960 byte"},
    {4, "  1984 byte"},
    {5, "  4032 byte"},
    {6, "  8128 byte"},
    {7, " 16320 byte"},
    {8, " 32704 byte"},
    {9, " 65472 byte"},
}};

inline constexpr std::string_view kByteSuffix = " byte";

// The display text of a size code, or nothing for a code no row has.
std::optional<std::string_view> memorySizeText(std::uint8_t code);

// A size as the display would show it without its " byte": the table's
// right-aligned text for a size of the table, the plain number otherwise.
std::string memorySizeNumberText(std::size_t bytes);

// The settings area in bytes that a display text of the table stands for;
// nothing for "?" or any text the table does not have. The station reports
// a code, the session keeps the text, and the size is taken from the table
// once, not read back out of a label.
std::optional<std::size_t> memorySizeBytes(std::string_view text);

} // namespace rm8
