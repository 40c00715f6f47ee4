#include "sim/station_simulator.h"

#include "link/frame.h"
#include "settings/image_header.h"

namespace rm8::sim {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kBlock = 8;

Bytes hex(std::initializer_list<std::uint8_t> values)
{
    Bytes out;
    for (auto v : values)
        link::appendHexByte(out, v);
    return out;
}

std::size_t addressOf(const Bytes& request)
{
    return link::hexPairToByte(request[1], request[2]) + 256u * link::hexPairToByte(request[3], request[4]);
}

} // namespace

std::size_t memoryBytes(std::uint8_t memorySizeCode)
{
    return (std::size_t{1} << (memorySizeCode + 7u)) - 64;
}

StationSimulator::StationSimulator(StationProfile profile, std::vector<std::uint8_t> eeprom)
    : profile_(profile), eeprom_(std::move(eeprom))
{
    // An unprogrammed EEPROM reads as 0xFF throughout.
    eeprom_.resize(memoryBytes(profile_.memorySizeCode) + 64, 0xFF);
}

std::vector<std::uint8_t> StationSimulator::receive(std::span<const std::uint8_t> bytes)
{
    Bytes out;
    for (std::uint8_t b : bytes) {
        pending_.push_back(b);
        if (b != link::kTerminator)
            continue;
        Bytes frame;
        frame.swap(pending_);
        if (frame.size() < 2 || frameChecksum(std::span(frame).first(frame.size() - 2)) != frame[frame.size() - 2])
            continue; // a garbled request gets no answer, as on a real line
        frame.resize(frame.size() - 2);
        ++frames_;
        if (auto reply = answer(frame)) {
            const Bytes wire = link::encodeFrame(*reply);
            out.insert(out.end(), wire.begin(), wire.end());
        }
    }
    return out;
}

std::optional<std::vector<std::uint8_t>> StationSimulator::answer(const Bytes& request)
{
    if (request.empty())
        return std::nullopt;
    switch (request[0]) {
    case 1:
        programming_ = true;
        return Bytes{129};
    case 2: {
        Bytes reply{130};
        const Bytes digits = hex({static_cast<std::uint8_t>(profile_.signature & 0xFF),
                                  static_cast<std::uint8_t>((profile_.signature >> 8) & 0xFF),
                                  static_cast<std::uint8_t>((profile_.signature >> 16) & 0xFF),
                                  profile_.versionMajor, profile_.versionMinor});
        reply.insert(reply.end(), digits.begin(), digits.end());
        return reply;
    }
    case 3: {
        Bytes reply{131};
        const Bytes digits = hex({profile_.memorySizeCode, profile_.modemCode});
        reply.insert(reply.end(), digits.begin(), digits.end());
        return reply;
    }
    case 4: {
        if (request.size() < 5)
            return std::nullopt;
        const std::size_t address = addressOf(request);
        Bytes reply{132};
        for (std::size_t k = 0; k < kBlock; ++k)
            link::appendHexByte(reply, address + k < eeprom_.size() ? eeprom_[address + k] : 0xFF);
        return reply;
    }
    case 5: {
        if (request.size() < 5 + 2 * kBlock)
            return std::nullopt;
        const std::size_t address = addressOf(request);
        for (std::size_t k = 0; k < kBlock; ++k)
            if (address + k < eeprom_.size())
                eeprom_[address + k] = link::hexPairToByte(request[5 + 2 * k], request[6 + 2 * k]);
        return Bytes{133};
    }
    case 6:
        programming_ = false;
        return Bytes{134};
    default:
        return std::nullopt;
    }
}

} // namespace rm8::sim
