#pragma once
// The clock the link measures its reply times by. The real one is the steady
// clock and sleeps the thread. A line that keeps time of its own, such as a
// simulated station in the same process, comes with a clock that it moves
// itself; then the reply times hold to the millisecond and no wait takes
// real time.

#include <thread>

#include "link/serial_line.h"

namespace rm8::link {

class LineClock {
public:
    virtual ~LineClock() = default;
    virtual Clock::time_point now() = 0;
    // Returns once now() has reached the given time.
    virtual void sleepUntil(Clock::time_point until) = 0;
};

class SteadyLineClock final : public LineClock {
public:
    Clock::time_point now() override { return Clock::now(); }
    void sleepUntil(Clock::time_point until) override { std::this_thread::sleep_until(until); }
};

// The clock of every real line.
inline LineClock& steadyClock()
{
    static SteadyLineClock clock;
    return clock;
}

} // namespace rm8::link
