#include "link/line_io.h"

#include <algorithm>

#include "link/frame.h"

namespace rm8::link {

void LineIo::send(std::span<const std::uint8_t> data)
{
    // A failed write shows up as a missing reply; the callers' retries and
    // messages cover it.
    (void)line_.write(encodeFrame(data));
}

void LineIo::waitUntil(Clock::time_point deadline)
{
    for (auto now = clock_.now(); now < deadline; now = clock_.now()) {
        clock_.sleepUntil(std::min<Clock::time_point>(deadline, now + kTurn));
        (void)ui_.cancelRequested();
    }
}

std::optional<std::vector<std::uint8_t>> LineIo::receive(std::chrono::milliseconds timeout)
{
    const auto deadline = clock_.now() + timeout;
    FrameAssembler assembler;
    while (!assembler.complete()) {
        const auto now = clock_.now();
        if (now >= deadline)
            return std::nullopt;
        auto bytes = line_.read(std::min(deadline, now + kTurn));
        if (!bytes) {
            // A failed line (an adapter pulled out) answers at once; waiting
            // out the reply time keeps the callers' retries from spinning.
            waitUntil(deadline);
            return std::nullopt;
        }
        assembler.add(*bytes);
        // The user interface's turn; Storno is read by the callers between
        // exchanges, never in the middle of one.
        (void)ui_.cancelRequested();
    }
    return assembler.reply();
}

std::optional<std::vector<std::uint8_t>> LineIo::exchange(
    std::span<const std::uint8_t> request, std::uint8_t replyCode, std::chrono::milliseconds timeout)
{
    // Whatever waits answers nothing sent from here on: a reply that came
    // after its request had timed out must not answer this one.
    line_.flushInput();
    send(request);
    auto reply = receive(timeout);
    if (!reply || reply->empty() || reply->front() != replyCode)
        return std::nullopt;
    return reply;
}

} // namespace rm8::link
