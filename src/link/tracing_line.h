#pragma once
// A serial line that reports every frame it carries, for a support log: the
// requests as they are written, the replies once their terminator (or the
// receive limit) is reached. Everything else is passed through unchanged.

#include <functional>

#include "link/frame_log.h"
#include "link/serial_line.h"

namespace rm8::link {

class TracingLine : public SerialLine {
public:
    using Sink = std::function<void(FrameDirection, std::span<const std::uint8_t>)>;

    TracingLine(SerialLine& line, Sink sink) : line_(line), sink_(std::move(sink)) {}
    ~TracingLine() override;

    Expected<void, std::string> open() override { return line_.open(); }
    void close() override;
    bool isOpen() const override { return line_.isOpen(); }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override;
    Expected<std::vector<std::uint8_t>, std::string> read(Clock::time_point deadline) override;
    void flushInput() override;

private:
    // Reports what has arrived so far as one entry, if anything has.
    void flushPending();

    SerialLine& line_;
    Sink sink_;
    std::vector<std::uint8_t> pending_;
};

} // namespace rm8::link
