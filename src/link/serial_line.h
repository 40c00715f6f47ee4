#pragma once
// The serial line to a station as the link needs it: open, close, write,
// read with a deadline, and drop what is waiting. A real port, a
// pseudo-terminal and the tests' virtual station all stand behind it.

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "common/expected.h"

namespace rm8::link {

using Clock = std::chrono::steady_clock;

class SerialLine {
public:
    virtual ~SerialLine() = default;

    // 9,600 baud, 8 data bits, no parity, 1 stop bit, DTR off, RTS on. The
    // error is the system's reason.
    virtual Expected<void, std::string> open() = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;

    virtual Expected<void, std::string> write(std::span<const std::uint8_t> bytes) = 0;

    // Blocks until at least one byte has arrived or the deadline has passed,
    // and returns what has arrived (nothing at the deadline). An error means
    // the line itself failed, for example an adapter that was unplugged.
    virtual Expected<std::vector<std::uint8_t>, std::string> read(Clock::time_point deadline) = 0;

    // Drops whatever has arrived and not been read.
    virtual void flushInput() = 0;
};

} // namespace rm8::link
