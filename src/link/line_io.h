#pragma once
// One exchange at a time on the serial line: a request frame out, a reply
// frame in within a timeout. While it waits the user interface gets a turn
// at least every 50 ms; a reply is taken the moment its terminator arrives.
// The timeouts are measured on the clock given, the steady clock unless the
// line keeps time of its own.

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "flow/interaction.h"
#include "link/line_clock.h"
#include "link/serial_line.h"

namespace rm8::link {

class LineIo {
public:
    static constexpr std::chrono::milliseconds kTurn { 50 };

    LineIo(SerialLine& line, Interaction& ui, LineClock& clock = steadyClock())
        : line_(line)
        , ui_(ui)
        , clock_(clock)
    {
    }

    void send(std::span<const std::uint8_t> data);

    // The reply's data (byte 0 is the reply code), or nothing when no valid
    // reply came in time: silence, a late or overlong reply, a bad checksum
    // or a failed line.
    std::optional<std::vector<std::uint8_t>> receive(std::chrono::milliseconds timeout);

    // A request and its reply, accepted only with the expected reply code;
    // what arrived before the request is dropped. The block transfers count
    // their replies instead (in_step_line.h).
    std::optional<std::vector<std::uint8_t>> exchange(
        std::span<const std::uint8_t> request, std::uint8_t replyCode, std::chrono::milliseconds timeout);

    void flushInput() { line_.flushInput(); }

    // Waits out a reply time, giving the user interface its turns.
    void waitUntil(Clock::time_point deadline);

    SerialLine& line() { return line_; }
    Interaction& ui() { return ui_; }
    LineClock& clock() { return clock_; }

private:
    SerialLine& line_;
    Interaction& ui_;
    LineClock& clock_;
};

} // namespace rm8::link
