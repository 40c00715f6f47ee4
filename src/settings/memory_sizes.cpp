#include "settings/memory_sizes.h"

namespace rm8 {

std::optional<std::string_view> memorySizeText(std::uint8_t code)
{
    for (const auto& row : kMemorySizes)
        if (row.code == code)
            return row.text;
    return std::nullopt;
}

std::string memorySizeNumberText(std::size_t bytes)
{
    for (const auto& row : kMemorySizes) {
        const std::string_view number = row.text.substr(0, row.text.size() - kByteSuffix.size());
        const auto first = number.find_first_not_of(' ');
        if (number.substr(first) == std::to_string(bytes))
            return std::string(number);
    }
    return std::to_string(bytes);
}

std::optional<std::size_t> memorySizeBytes(std::string_view text)
{
    for (const auto& row : kMemorySizes)
        if (row.text == text)
            return (std::size_t{1} << (row.code + 7u)) - 64;
    return std::nullopt;
}

} // namespace rm8
