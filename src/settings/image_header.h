#pragma once
// The header test that decides whether an image holds a configuration: the
// layout mark at 46 and the check byte at 48. The same checksum guards every
// serial frame.

#include <cstdint>
#include <span>

#include "settings/eeprom_image.h"

namespace rm8 {

// (sum of the bytes + 1) mod 256, with 13 replaced by 12 so that it can never
// be taken for a carriage return.
std::uint8_t frameChecksum(std::span<const std::uint8_t> bytes);

// The check byte that belongs at address 48 for bytes 0..47 of the image.
std::uint8_t headerCheckByte(const EepromImage& image);

bool imageHeaderValid(const EepromImage& image);

} // namespace rm8
