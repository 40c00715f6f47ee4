#pragma once
// A station in programming mode, as far as the configuration cable sees it:
// it takes request frames and gives reply frames. rm8sim puts it on a
// pseudo-terminal; tests can drive it directly. Besides a healthy station it
// can play a slow line and the faults a technician meets in the field, so
// that the tool's retries and failure paths can be exercised on purpose.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace rm8::sim {

struct StationProfile {
    std::uint32_t signature = 2151298; // RM8
    std::uint8_t versionMajor = 1;
    std::uint8_t versionMinor = 0;
    std::uint8_t memorySizeCode = 6; // 8128 bytes of settings area
    std::uint8_t modemCode = 4;      // TC35 Siemens
};

// A pseudo-terminal carries bytes at once; a station's cable does not. With a
// rate set, each reply is held back for as long as the request and the reply
// would take on such a line (10 bits per byte: 8N1), plus the EEPROM's write
// cycle for a written block, counted from the request's last byte.
struct LineEmulation {
    unsigned baud = 0; // 0: replies go out at once
    std::chrono::microseconds writeTime{5000};

    // The time the given number of bytes take on the emulated line.
    std::chrono::nanoseconds wireTime(std::size_t bytes) const;
};

// Faults are counted over the replies the station makes (a silent attention
// makes none); "every Nth" with N = 0 is off.
struct StationFaults {
    unsigned silentAttentions = 0; // the first N attention requests get no answer
    unsigned dropEvery = 0;        // every Nth reply is not sent
    unsigned badChecksumEvery = 0; // every Nth reply carries a wrong checksum
    unsigned lateEvery = 0;        // every Nth reply comes after any timeout of the tool
    std::chrono::milliseconds lateBy{1500};
    bool corruptWrites = false;  // stores the first byte of a written block inverted, answers as if all were well
    unsigned hangUpAfterBlocks = 0; // after N read or write requests the line goes dead; 0: never
    bool silentLeave = false;       // the leave request gets no answer and the station stays in programming mode
};

// A fault chosen for one request, whatever the schedule above says: the reply
// dropped (the request is still carried out), sent with a wrong checksum or
// held back, the block stored with its first byte inverted, a block read
// back with its first byte changed under a valid checksum (differently for
// every request, as noise the checksum misses), or the line going dead as the
// request arrives (it is neither answered nor carried out).
// Twice: the reply frame arrives two times over, as an adapter that repeats
// its buffer delivers it.
enum class RequestFault { None, Drop, Garble, Late, StoreOther, ReadOther, HangUp, Twice };

struct StationBehaviour {
    LineEmulation line;
    StationFaults faults;
    // Asked for every well-formed request, numbered from 1 in the order they
    // arrive; a test's way to hit exactly the exchange it means.
    std::function<RequestFault(std::size_t number, std::span<const std::uint8_t> request)> faultFor;
    // Keeps every request for inspection; a long-running rm8sim switches it off.
    bool keepRequests = true;
};

enum class ReplyFault { None, Dropped, BadChecksum, Late };

struct Reply {
    std::vector<std::uint8_t> bytes; // the whole frame as it goes on the wire
    // How long after the request's last byte the reply's last byte is due.
    std::chrono::nanoseconds delay{0};
    ReplyFault fault = ReplyFault::None;

    bool sent() const { return fault != ReplyFault::Dropped; }
};

// The settings area for a memory-size code: 2^(code + 7) - 64 bytes.
std::size_t memoryBytes(std::uint8_t memorySizeCode);

class StationSimulator {
public:
    explicit StationSimulator(StationProfile profile, std::vector<std::uint8_t> eeprom = {},
                              StationBehaviour behaviour = {});

    // Bytes as they arrive from the tool; one reply per request answered, in
    // order, with when it is due and what was done to it. Dropped replies are
    // among them, marked, so that they can be logged.
    std::vector<Reply> respond(std::span<const std::uint8_t> bytes);

    // The same, for a caller that does not keep time: the bytes of every
    // reply that is sent, delays ignored.
    std::vector<std::uint8_t> receive(std::span<const std::uint8_t> bytes);

    // True once the station has hung up: nothing more is answered and the
    // line should be closed.
    bool hungUp() const { return hungUp_; }

    const std::vector<std::uint8_t>& eeprom() const { return eeprom_; }
    bool inProgrammingMode() const { return programming_; }
    std::size_t framesHandled() const { return frames_; }
    std::size_t blockRequests() const { return blockRequests_; }
    // Well-formed requests, data bytes only, in order (when kept).
    const std::vector<std::vector<std::uint8_t>>& requests() const { return requests_; }
    const StationBehaviour& behaviour() const { return behaviour_; }

private:
    std::optional<std::vector<std::uint8_t>> answer(const std::vector<std::uint8_t>& request, RequestFault fault);
    Reply shape(const std::vector<std::uint8_t>& request, const std::vector<std::uint8_t>& data, RequestFault fault);

    StationProfile profile_;
    StationBehaviour behaviour_;
    std::vector<std::uint8_t> eeprom_;
    std::vector<std::uint8_t> pending_;
    std::vector<std::vector<std::uint8_t>> requests_;
    bool programming_ = true;
    bool hungUp_ = false;
    std::size_t frames_ = 0;
    std::size_t attentions_ = 0;
    std::size_t replies_ = 0;
    std::size_t blockRequests_ = 0;
};

} // namespace rm8::sim
