#pragma once
// What a station says about itself, turned into display texts: the modem by
// its code and the product by its three-byte signature. The modem codes are
// not consecutive; they are kept as the stations report them.

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace rm8::link {

struct ModemRow {
    std::uint8_t code;
    std::string_view text;
};

inline constexpr std::array<ModemRow, 7> kModems{{
    {0, "M1 Siemens"},
    {1, "A1 Falcom"},
    {2, "A1 Siemens"},
    {3, "M20 Siemens"},
    {4, "TC35 Siemens"},
    {32, "GM12 Ericsson"},
    {33, "GM25 Ericsson"},
}};

// A signature is the type byte, then 0xD3, then 0x82, the first most
// significant.
constexpr std::uint32_t signatureOf(std::uint8_t typeByte)
{
    return (static_cast<std::uint32_t>(typeByte) * 256 + 0xD3) * 256 + 0x82;
}

struct DeviceRow {
    std::string_view product;
    std::uint32_t signature;
};

// Six rows, the last two empty (signature 0), searched in order.
inline constexpr std::array<DeviceRow, 6> kDeviceTypes{{
    {"RMADC3", signatureOf(0x19)},
    {"RMADC2", signatureOf(0x22)},
    {"RM8", signatureOf(0x20)},
    {"RMA8", signatureOf(0x21)},
    {"", 0},
    {"", 0},
}};

std::optional<std::string_view> modemText(std::uint8_t code);
std::optional<std::string_view> productName(std::uint32_t signature);

} // namespace rm8::link
