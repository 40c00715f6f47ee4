#include "settings/eeprom_image.h"

#include <string>

namespace rm8 {

ImageRangeError::ImageRangeError(std::uint64_t address)
    : std::out_of_range("address " + std::to_string(address) + " is outside the image")
    , address_(address)
{
}

ImageOverflowError::ImageOverflowError(std::uint64_t address, long long value)
    : std::overflow_error("value " + std::to_string(value) + " does not fit at address "
                          + std::to_string(address))
    , address_(address)
    , value_(value)
{
}

EepromImage::EepromImage(std::uint8_t fill) : bytes_(kSize, fill) {}

std::uint8_t EepromImage::byte(std::uint64_t address) const
{
    if (address >= kSize)
        throw ImageRangeError(address);
    return bytes_[address];
}

std::uint16_t EepromImage::word(std::uint64_t address) const
{
    const unsigned low = byte(address);
    const unsigned high = byte(address + 1);
    return static_cast<std::uint16_t>(low + 256u * high);
}

void EepromImage::putByte(std::uint64_t address, long long value)
{
    if (address >= kSize)
        throw ImageRangeError(address);
    if (value < 0 || value > 255)
        throw ImageOverflowError(address, value);
    bytes_[address] = static_cast<std::uint8_t>(value);
}

void EepromImage::putWord(std::uint64_t address, long long value)
{
    if (value < 0 || value > 65535)
        throw ImageOverflowError(address, value);
    // The high byte is checked first so that a word at the last address
    // leaves the image untouched.
    if (address + 1 >= kSize)
        throw ImageRangeError(address + 1);
    putByte(address, value % 256);
    putByte(address + 1, value / 256);
}

} // namespace rm8
