#include "link/station_tables.h"

namespace rm8::link {

std::optional<std::string_view> modemText(std::uint8_t code)
{
    for (const auto& row : kModems)
        if (row.code == code)
            return row.text;
    return std::nullopt;
}

std::optional<std::string_view> productName(std::uint32_t signature)
{
    for (const auto& row : kDeviceTypes)
        if (row.signature == signature)
            return row.product;
    return std::nullopt;
}

} // namespace rm8::link
