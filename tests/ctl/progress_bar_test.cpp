#include <gtest/gtest.h>

#include "ctl/progress_bar.h"

namespace rm8::ctl {
namespace {

using namespace std::chrono_literals;

TEST(ProgressBar, DrawsBarCountsAndTimeLeft)
{
    const struct {
        std::size_t done, total;
        ProgressBar::Clock::duration elapsed;
        const char* line;
    } cases[] = {
        {0, 1016, 0s, "[..............................] 0/1016 bloků, zbývá ?:??"}, // no pace yet
        {508, 1016, 65s, "[###############...............] 508/1016 bloků, zbývá 1:05"},
        {1, 3, 1500ms, "[##########....................] 1/3 bloků, zbývá 0:03"}, // part seconds round up
        {9, 8, 1s, "[##############################] 8/8 bloků, zbývá 0:00"},   // never past full
        {0, 1, 0s, "[..............................] 0/1 bloků, zbývá ?:??"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ProgressBar::render(c.done, c.total, c.elapsed), c.line);
}

// A terminal is redrawn at most every 200 ms, the last block always, and a
// new transfer starts drawing at once; a transfer of no blocks draws nothing.
TEST(ProgressBar, RedrawsAFewTimesASecondButAlwaysTheLastBlock)
{
    const auto t0 = ProgressBar::Clock::time_point{} + 1h;
    const struct {
        bool restart;
        std::size_t done, total;
        ProgressBar::Clock::duration at;
        bool drawn;
    } steps[] = {{true, 0, 10, 0ms, true},     {false, 1, 10, 50ms, false}, {false, 2, 10, 200ms, true},
                 {false, 3, 10, 250ms, false}, {false, 10, 10, 260ms, true}, {true, 0, 1, 300ms, true},
                 {true, 0, 0, 600ms, false}};
    ProgressBar bar(true);
    ProgressBar off(false);
    off.start(t0);
    for (const auto& step : steps) {
        if (step.restart)
            bar.start(t0 + step.at);
        EXPECT_EQ(!bar.update(step.done, step.total, t0 + step.at).empty(), step.drawn) << step.at.count();
        EXPECT_EQ(off.update(step.done, step.total, t0 + step.at), "");
    }
}

} // namespace
} // namespace rm8::ctl
