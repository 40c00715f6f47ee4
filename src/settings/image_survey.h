#pragma once
// A look at an image's fixed area without decoding it: the pointers, the
// header and where the encoded settings end. Used by the support commands.

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "settings/eeprom_image.h"

namespace rm8 {

struct PointerEntry {
    std::uint16_t address;    // where the pointer word lives
    std::string_view group;   // what it points to
    std::uint16_t target;     // the word's value
};

struct ImageInspection {
    std::uint16_t layoutMark = 0;
    std::uint8_t storedCheckByte = 0;
    std::uint8_t computedCheckByte = 0;
    bool headerValid = false;
    std::vector<PointerEntry> pointers;
    // The address just past the end mark, when the general text block can be
    // walked and an end mark follows it.
    std::optional<std::uint32_t> encodedEnd;
};

ImageInspection inspectImage(const EepromImage& image);

} // namespace rm8
