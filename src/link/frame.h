#pragma once
// A frame on the serial line: data bytes, one checksum byte, a carriage
// return. The checksum is the image header's: (sum + 1) mod 256 with 13
// replaced by 12, so that it can never be taken for the terminator.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace rm8::link {

inline constexpr std::uint8_t kTerminator = 13;

// The bytes to send for a request.
std::vector<std::uint8_t> encodeFrame(std::span<const std::uint8_t> data);

// Collects a reply as the station sends it. At most 101 characters are kept;
// a longer reply can never end in a stored terminator and so is never
// complete (it ends by timeout).
class FrameAssembler {
public:
    static constexpr std::size_t kMaxStored = 101;

    void add(std::span<const std::uint8_t> bytes);
    bool complete() const { return !stored_.empty() && stored_.back() == kTerminator; }
    void clear() { stored_.clear(); }

    // The reply's data without checksum and terminator, or nothing when the
    // checksum does not match. Only meaningful once complete.
    std::optional<std::vector<std::uint8_t>> reply() const;

private:
    std::vector<std::uint8_t> stored_;
};

// Numbers inside frames travel as two hexadecimal characters per byte: upper
// case when sent, either case when read.
void appendHexByte(std::vector<std::uint8_t>& frame, std::uint8_t value);
std::uint8_t hexPairToByte(std::uint8_t high, std::uint8_t low);

} // namespace rm8::link
