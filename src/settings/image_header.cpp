#include "settings/image_header.h"

#include "settings/image_layout.h"

namespace rm8 {

std::uint8_t frameChecksum(std::span<const std::uint8_t> bytes)
{
    unsigned sum = 1;
    for (std::uint8_t b : bytes)
        sum += b;
    const auto check = static_cast<std::uint8_t>(sum % 256);
    return check == 13 ? 12 : check;
}

std::uint8_t headerCheckByte(const EepromImage& image)
{
    return frameChecksum(image.bytes().first(layout::kHeaderLength));
}

bool imageHeaderValid(const EepromImage& image)
{
    return image.word(layout::kLayoutMarkAddress) == layout::kLayoutMark
           && image.byte(layout::kCheckByteAddress) == headerCheckByte(image);
}

} // namespace rm8
