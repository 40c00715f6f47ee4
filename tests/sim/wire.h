#pragma once
// Request frames as the documented protocol writes them, built with the
// tests' own framing helpers (not the link's), to compare with what a
// station received on a real pseudo-terminal.

#include <cstdint>
#include <vector>

#include "link/fake_station.h"

namespace rm8::test::wire {

inline Bytes frame(Bytes data)
{
    const auto check = wireChecksum(data);
    data.push_back(check);
    data.push_back(13);
    return data;
}

inline Bytes addressed(std::uint8_t code, std::uint16_t address)
{
    Bytes data{code};
    appendHex(data, static_cast<std::uint8_t>(address % 256));
    appendHex(data, static_cast<std::uint8_t>(address / 256));
    return data;
}

inline Bytes join(const std::vector<Bytes>& frames)
{
    Bytes out;
    for (const auto& f : frames)
        out.insert(out.end(), f.begin(), f.end());
    return out;
}

// The addresses of the block requests with this code, in order.
inline std::vector<std::uint16_t> blockAddresses(const std::vector<Bytes>& requests, std::uint8_t code)
{
    std::vector<std::uint16_t> out;
    for (const auto& r : requests)
        if (!r.empty() && r[0] == code && r.size() >= 5)
            out.push_back(FakeStation::addressOf(r));
    return out;
}

inline std::vector<std::uint16_t> headerOrder()
{
    std::vector<std::uint16_t> out;
    for (std::uint16_t a = 0; a <= 56; a = static_cast<std::uint16_t>(a + 8))
        out.push_back(a);
    for (std::uint16_t a = 128; a <= 264; a = static_cast<std::uint16_t>(a + 8))
        out.push_back(a);
    return out;
}

// Data blocks from 272 up to and including the one at or past the used size.
inline std::vector<std::uint16_t> dataOrder(std::size_t used)
{
    std::vector<std::uint16_t> out;
    std::size_t a = 272;
    do {
        out.push_back(static_cast<std::uint16_t>(a));
        a += 8;
    } while (a - 8 < used);
    return out;
}

inline Bytes patterned(std::size_t size, unsigned seed = 3)
{
    Bytes b(size);
    for (std::size_t i = 0; i < size; ++i)
        b[i] = static_cast<std::uint8_t>((i * 7 + seed) % 251);
    return b;
}

} // namespace rm8::test::wire
