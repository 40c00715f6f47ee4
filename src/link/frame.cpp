#include "link/frame.h"

#include "settings/image_header.h"

namespace rm8::link {

std::vector<std::uint8_t> encodeFrame(std::span<const std::uint8_t> data)
{
    std::vector<std::uint8_t> bytes(data.begin(), data.end());
    bytes.push_back(frameChecksum(data));
    bytes.push_back(kTerminator);
    return bytes;
}

void FrameAssembler::add(std::span<const std::uint8_t> bytes)
{
    for (std::uint8_t b : bytes) {
        if (stored_.size() >= kMaxStored)
            return; // the rest is dropped, as the station's line buffer would
        stored_.push_back(b);
    }
}

std::optional<std::vector<std::uint8_t>> FrameAssembler::reply() const
{
    if (!complete() || stored_.size() < 2)
        return std::nullopt;
    const std::size_t dataLength = stored_.size() - 2;
    const std::span<const std::uint8_t> data(stored_.data(), dataLength);
    if (frameChecksum(data) != stored_[dataLength])
        return std::nullopt;
    return std::vector<std::uint8_t>(data.begin(), data.end());
}

void appendHexByte(std::vector<std::uint8_t>& frame, std::uint8_t value)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    frame.push_back(static_cast<std::uint8_t>(kDigits[value / 16]));
    frame.push_back(static_cast<std::uint8_t>(kDigits[value % 16]));
}

namespace {

unsigned hexDigit(std::uint8_t c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10u;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10u;
    return 0; // a character that is not a hexadecimal digit counts as 0
}

} // namespace

std::uint8_t hexPairToByte(std::uint8_t high, std::uint8_t low)
{
    return static_cast<std::uint8_t>(hexDigit(high) * 16 + hexDigit(low));
}

} // namespace rm8::link
