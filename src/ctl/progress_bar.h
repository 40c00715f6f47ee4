#pragma once
// The command line's picture of a block transfer: a bar, the blocks done and
// the time left, estimated from the pace so far. Redrawn at most a few times
// a second so that a slow terminal never holds up the transfer.

#include <chrono>
#include <cstddef>
#include <string>

namespace rm8::ctl {

class ProgressBar {
public:
    using Clock = std::chrono::steady_clock;

    explicit ProgressBar(bool enabled) : enabled_(enabled) {}

    bool enabled() const { return enabled_; }
    void start(Clock::time_point now = Clock::now());

    // The line to draw, or nothing when the bar is off or was drawn moments
    // ago (the last block is always drawn).
    std::string update(std::size_t done, std::size_t total, Clock::time_point now = Clock::now());

    // "[#####.....]  123/1016 bloků, zbývá 1:05"
    static std::string render(std::size_t done, std::size_t total, Clock::duration elapsed);

private:
    bool enabled_;
    Clock::time_point started_{};
    Clock::time_point drawn_{};
    bool everDrawn_ = false;
};

} // namespace rm8::ctl
