#include "sim/station_simulator.h"

#include "link/frame.h"
#include "link/protocol_codes.h"
#include "settings/image_header.h"

namespace rm8::sim {
namespace {

namespace code = link::protocol;
using Bytes = std::vector<std::uint8_t>;
using link::protocol::kBlockBytes;
// Longer than any request; what runs past it without a terminator is line
// noise, and the station's buffer would have overrun long before.
constexpr std::size_t kLongestRequest = 256;
constexpr unsigned kBitsPerByte = 10; // start bit, 8 data bits, stop bit

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

bool isBlockRequest(const Bytes& request)
{
    return !request.empty() && (request[0] == code::kReadBlock || request[0] == code::kWriteBlock);
}

} // namespace

std::chrono::nanoseconds LineEmulation::wireTime(std::size_t bytes) const
{
    if (baud == 0)
        return std::chrono::nanoseconds(0);
    return std::chrono::nanoseconds(static_cast<std::int64_t>(bytes) * kBitsPerByte * 1'000'000'000 / baud);
}

std::size_t memoryBytes(std::uint8_t memorySizeCode)
{
    return (std::size_t{1} << (memorySizeCode + 7u)) - 64;
}

StationSimulator::StationSimulator(StationProfile profile, std::vector<std::uint8_t> eeprom,
                                   StationBehaviour behaviour)
    : profile_(profile), behaviour_(behaviour), eeprom_(std::move(eeprom))
{
    // An unprogrammed EEPROM reads as 0xFF throughout.
    eeprom_.resize(memoryBytes(profile_.memorySizeCode) + 64, 0xFF);
}

std::vector<Reply> StationSimulator::respond(std::span<const std::uint8_t> bytes)
{
    std::vector<Reply> out;
    for (std::uint8_t b : bytes) {
        if (hungUp_)
            break;
        if (b != link::kTerminator) {
            if (pending_.size() < kLongestRequest)
                pending_.push_back(b);
            else
                pending_.clear(); // overrun: what was collected is no request any more
            continue;
        }
        Bytes frame;
        frame.swap(pending_);
        frame.push_back(b);
        if (frame.size() < 3 || frameChecksum(std::span(frame).first(frame.size() - 2)) != frame[frame.size() - 2])
            continue; // a garbled request gets no answer, as on a real line
        frame.resize(frame.size() - 2);
        ++frames_;
        if (behaviour_.keepRequests)
            requests_.push_back(frame);
        const RequestFault fault = behaviour_.faultFor ? behaviour_.faultFor(frames_, frame) : RequestFault::None;
        if (fault == RequestFault::HangUp) {
            hungUp_ = true;
            break;
        }
        if (auto reply = answer(frame, fault))
            out.push_back(shape(frame, *reply, fault));
        if (isBlockRequest(frame)) {
            ++blockRequests_;
            const unsigned limit = behaviour_.faults.hangUpAfterBlocks;
            if (limit != 0 && blockRequests_ >= limit)
                hungUp_ = true;
        }
    }
    return out;
}

std::vector<std::uint8_t> StationSimulator::receive(std::span<const std::uint8_t> bytes)
{
    Bytes out;
    for (const Reply& reply : respond(bytes))
        if (reply.sent())
            out.insert(out.end(), reply.bytes.begin(), reply.bytes.end());
    return out;
}

Reply StationSimulator::shape(const Bytes& request, const Bytes& data, RequestFault fault)
{
    const StationFaults& faults = behaviour_.faults;
    const std::size_t number = ++replies_;
    const auto every = [number](unsigned n) { return n != 0 && number % n == 0; };

    Reply reply;
    reply.bytes = link::encodeFrame(data);
    if (behaviour_.line.baud != 0) {
        // Both frames as they would travel the cable (with checksum and
        // terminator), the request having gone out at once on the pty.
        reply.delay = behaviour_.line.wireTime(request.size() + 2 + reply.bytes.size());
        if (request[0] == code::kWriteBlock)
            reply.delay += behaviour_.line.writeTime;
    }
    if (fault == RequestFault::None) {
        if (every(faults.dropEvery))
            fault = RequestFault::Drop;
        else if (every(faults.badChecksumEvery))
            fault = RequestFault::Garble;
        else if (every(faults.lateEvery))
            fault = RequestFault::Late;
    }
    if (fault == RequestFault::Drop) {
        reply.fault = ReplyFault::Dropped;
    } else if (fault == RequestFault::Garble) {
        reply.fault = ReplyFault::BadChecksum;
        auto& check = reply.bytes[reply.bytes.size() - 2];
        check = static_cast<std::uint8_t>(check + 1);
        if (check == link::kTerminator) // a checksum of 13 would end the frame early
            check = static_cast<std::uint8_t>(check + 1);
    } else if (fault == RequestFault::Late) {
        reply.fault = ReplyFault::Late;
        reply.delay += faults.lateBy;
    } else if (fault == RequestFault::Twice) {
        const Bytes frame = reply.bytes;
        reply.bytes.insert(reply.bytes.end(), frame.begin(), frame.end());
        reply.delay += behaviour_.line.wireTime(frame.size());
    }
    return reply;
}

std::optional<std::vector<std::uint8_t>> StationSimulator::answer(const Bytes& request, RequestFault fault)
{
    const std::uint8_t requestCode = request[0];
    Bytes reply{code::replyCode(requestCode)};
    switch (requestCode) {
    case code::kAttention:
        if (attentions_++ < behaviour_.faults.silentAttentions)
            return std::nullopt;
        programming_ = true;
        return reply;
    case code::kIdentify: {
        const Bytes digits = hex({static_cast<std::uint8_t>(profile_.signature & 0xFF),
                                  static_cast<std::uint8_t>((profile_.signature >> 8) & 0xFF),
                                  static_cast<std::uint8_t>((profile_.signature >> 16) & 0xFF),
                                  profile_.versionMajor, profile_.versionMinor});
        reply.insert(reply.end(), digits.begin(), digits.end());
        return reply;
    }
    case code::kConfiguration: {
        const Bytes digits = hex({profile_.memorySizeCode, profile_.modemCode});
        reply.insert(reply.end(), digits.begin(), digits.end());
        return reply;
    }
    case code::kReadBlock: {
        if (request.size() < code::kBlockRequestLength)
            return std::nullopt;
        const std::size_t address = addressOf(request);
        for (std::size_t k = 0; k < kBlockBytes; ++k) {
            std::uint8_t value = address + k < eeprom_.size() ? eeprom_[address + k] : 0xFF;
            if (k == 0 && fault == RequestFault::ReadOther)
                value = static_cast<std::uint8_t>(value ^ (frames_ % 255 + 1));
            link::appendHexByte(reply, value);
        }
        return reply;
    }
    case code::kWriteBlock: {
        if (request.size() < code::kWriteRequestLength)
            return std::nullopt;
        const std::size_t address = addressOf(request);
        const std::size_t data = code::kBlockRequestLength;
        for (std::size_t k = 0; k < kBlockBytes; ++k) {
            auto value = link::hexPairToByte(request[data + 2 * k], request[data + 1 + 2 * k]);
            if (k == 0 && (behaviour_.faults.corruptWrites || fault == RequestFault::StoreOther))
                value = static_cast<std::uint8_t>(~value);
            if (address + k < eeprom_.size())
                eeprom_[address + k] = value;
        }
        return reply;
    }
    case code::kLeave:
        if (behaviour_.faults.silentLeave)
            return std::nullopt;
        programming_ = false;
        return reply;
    default:
        return std::nullopt;
    }
}

} // namespace rm8::sim
