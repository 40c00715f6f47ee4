#pragma once
// The station's EEPROM as a 65,536-byte array. Every byte the encoder does not
// write keeps the value that the last read or load left in it.

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

namespace rm8 {

// An address at or past the end of the image.
class ImageRangeError : public std::out_of_range {
public:
    explicit ImageRangeError(std::uint64_t address);
    std::uint64_t address() const { return address_; }

private:
    std::uint64_t address_;
};

// A value that does not fit the byte or word it is stored into.
class ImageOverflowError : public std::overflow_error {
public:
    ImageOverflowError(std::uint64_t address, long long value);
    std::uint64_t address() const { return address_; }
    long long value() const { return value_; }

private:
    std::uint64_t address_;
    long long value_;
};

class EepromImage {
public:
    static constexpr std::size_t kSize = 65536;

    explicit EepromImage(std::uint8_t fill = 0);

    // Checked accessors, little-endian words; they throw the errors above.
    std::uint8_t byte(std::uint64_t address) const;
    std::uint16_t word(std::uint64_t address) const;
    void putByte(std::uint64_t address, long long value);
    void putWord(std::uint64_t address, long long value);

    std::span<const std::uint8_t> bytes() const { return bytes_; }
    std::span<std::uint8_t> bytes() { return bytes_; }

    friend bool operator==(const EepromImage&, const EepromImage&) = default;

private:
    std::vector<std::uint8_t> bytes_;
};

} // namespace rm8
