#include "link/tracing_line.h"

#include "link/frame.h"

namespace rm8::link {

TracingLine::~TracingLine()
{
    flushPending();
}

void TracingLine::close()
{
    flushPending();
    line_.close();
}

Expected<void, std::string> TracingLine::write(std::span<const std::uint8_t> bytes)
{
    // Whatever came in before this request was a reply cut short or noise;
    // it belongs in the log before the request that follows it.
    flushPending();
    sink_(FrameDirection::ToStation, bytes);
    return line_.write(bytes);
}

Expected<std::vector<std::uint8_t>, std::string> TracingLine::read(Clock::time_point deadline)
{
    auto bytes = line_.read(deadline);
    if (!bytes)
        return bytes;
    for (const std::uint8_t byte : *bytes) {
        pending_.push_back(byte);
        if (byte == kTerminator || pending_.size() >= 256)
            flushPending();
    }
    return bytes;
}

void TracingLine::flushInput()
{
    flushPending();
    line_.flushInput();
}

void TracingLine::flushPending()
{
    if (pending_.empty())
        return;
    sink_(FrameDirection::FromStation, pending_);
    pending_.clear();
}

} // namespace rm8::link
