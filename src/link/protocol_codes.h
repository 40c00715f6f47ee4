#pragma once
// The station's request codes, the first data byte of every request frame.
// A reply starts with its request's code plus 128. The link and the
// simulated station both speak from this table.

#include <array>
#include <cstddef>
#include <cstdint>

namespace rm8::link::protocol {

inline constexpr std::uint8_t kAttention = 1;
inline constexpr std::uint8_t kIdentify = 2;
inline constexpr std::uint8_t kConfiguration = 3;
inline constexpr std::uint8_t kReadBlock = 4;
inline constexpr std::uint8_t kWriteBlock = 5;
inline constexpr std::uint8_t kLeave = 6;

// The leave request carries two fixed bytes after its code.
inline constexpr std::array<std::uint8_t, 3> kLeaveRequest{kLeave, 170, 85};

constexpr std::uint8_t replyCode(std::uint8_t request)
{
    return static_cast<std::uint8_t>(request + 128);
}

// A block request is its code and the address, low byte first, as two
// hexadecimal pairs; a write adds the block's bytes as pairs. A read reply
// carries the block's bytes as pairs after its code.
inline constexpr std::size_t kBlockBytes = 8;
inline constexpr std::size_t kBlockRequestLength = 5;
inline constexpr std::size_t kWriteRequestLength = kBlockRequestLength + 2 * kBlockBytes;
inline constexpr std::size_t kReadReplyLength = 1 + 2 * kBlockBytes;

} // namespace rm8::link::protocol
