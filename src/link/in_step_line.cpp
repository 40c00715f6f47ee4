#include "link/in_step_line.h"

#include <algorithm>

#include "link/frame.h"

namespace rm8::link {

void InStepLine::start()
{
    io_.flushInput();
    inbox_.clear();
    frameLength_ = 0;
    unanswered_ = 0;
    inStep_ = true;
}

void InStepLine::keep(std::span<const std::uint8_t> bytes)
{
    for (const std::uint8_t b : bytes) {
        if (b == kTerminator || frameLength_ <= FrameAssembler::kMaxStored)
            inbox_.push_back(b);
        frameLength_ = b == kTerminator ? 0 : frameLength_ + 1;
    }
}

std::optional<std::vector<std::uint8_t>> InStepLine::nextFrame()
{
    const auto end = std::find(inbox_.begin(), inbox_.end(), kTerminator);
    if (end == inbox_.end())
        return std::nullopt;
    std::vector<std::uint8_t> frame(inbox_.begin(), end + 1);
    inbox_.erase(inbox_.begin(), end + 1);
    if (frame.size() > FrameAssembler::kMaxStored)
        frame.clear(); // an overlong frame is no reply
    return frame;
}

InStepLine::Heard InStepLine::hear(std::uint8_t replyCode)
{
    while (auto frame = nextFrame()) {
        if (unanswered_ == 0) {
            // Nothing was asked for: a reply given up earlier, or one the
            // counting missed. Either way the count is no longer to be trusted.
            inStep_ = false;
            continue;
        }
        --unanswered_;
        FrameAssembler assembler;
        assembler.add(*frame);
        auto reply = assembler.reply();
        if (reply && !reply->empty() && reply->front() == replyCode)
            return { std::move(reply), unanswered_ == 0 };
        if (unanswered_ == 0)
            return { std::nullopt, true };
    }
    return {};
}

std::optional<std::vector<std::uint8_t>> InStepLine::exchange(
    std::span<const std::uint8_t> request, std::uint8_t replyCode, std::chrono::milliseconds timeout)
{
    if (unanswered_ > 0 && !std::ranges::equal(request, pending_))
        drain();
    if (unanswered_ == 0) {
        // Nothing is owed: whatever waits is noise or a reply given up.
        (void)hear(0);
        io_.flushInput();
        inbox_.clear();
        frameLength_ = 0;
    }
    pending_.assign(request.begin(), request.end());
    io_.send(request);
    ++unanswered_;
    auto& clock = io_.clock();
    const auto deadline = clock.now() + timeout;
    lastDeadline_ = deadline;
    for (auto now = clock.now(); now < deadline; now = clock.now()) {
        const auto bytes = io_.line().read(std::min(deadline, now + LineIo::kTurn));
        if (!bytes) {
            // A failed line answers at once; its reply time is waited out
            // all the same, so that the retries keep their pace.
            io_.waitUntil(deadline);
            return std::nullopt;
        }
        keep(*bytes);
        auto heard = hear(replyCode);
        // The user interface's turn; Storno is read between blocks.
        (void)io_.ui().cancelRequested();
        if (heard.reply || heard.lastAnswered)
            return std::move(heard.reply);
    }
    return std::nullopt;
}

void InStepLine::drain()
{
    auto& clock = io_.clock();
    auto until = std::max(lastDeadline_, clock.now() + kQuiet);
    const auto giveUp = until + 10 * kQuiet; // a line that keeps talking
    for (auto now = clock.now(); unanswered_ > 0 && now < until; now = clock.now()) {
        const auto bytes = io_.line().read(std::min(until, now + LineIo::kTurn));
        if (!bytes)
            break; // a dead line owes nothing any more
        if (!bytes->empty()) {
            keep(*bytes);
            (void)hear(0); // every frame is counted; none is taken
            until = std::min(giveUp, std::max(until, clock.now() + kQuiet));
        }
        (void)io_.ui().cancelRequested();
    }
    if (unanswered_ > 0) {
        unanswered_ = 0;
        inStep_ = false;
    }
}

} // namespace rm8::link
