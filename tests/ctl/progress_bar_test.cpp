#include <gtest/gtest.h>

#include "ctl/progress_bar.h"

namespace rm8::ctl {
namespace {

using namespace std::chrono_literals;

struct RenderCase {
    const char* name;
    std::size_t done;
    std::size_t total;
    ProgressBar::Clock::duration elapsed;
    const char* expected;
};

class ProgressBarRender : public testing::TestWithParam<RenderCase> {};

TEST_P(ProgressBarRender, DrawsBarCountsAndTimeLeft)
{
    const auto& c = GetParam();
    EXPECT_EQ(ProgressBar::render(c.done, c.total, c.elapsed), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ProgressBarRender,
    testing::Values(
        RenderCase{"NothingDoneHasNoEstimate", 0, 1016, 0s, "[..............................] 0/1016 bloků, zbývá ?:??"},
        RenderCase{"HalfWayTakesAsLongAgain", 508, 1016, 65s,
                   "[###############...............] 508/1016 bloků, zbývá 1:05"},
        RenderCase{"PartSecondsRoundUp", 1, 3, 1500ms, "[##########....................] 1/3 bloků, zbývá 0:03"},
        RenderCase{"DoneIsFullWithNothingLeft", 57, 57, 9s, "[##############################] 57/57 bloků, zbývá 0:00"},
        RenderCase{"MoreThanTotalIsCappedAtFull", 9, 8, 1s, "[##############################] 8/8 bloků, zbývá 0:00"}),
    [](const auto& param) { return std::string(param.param.name); });

TEST(ProgressBar, RedrawsAFewTimesASecondButAlwaysTheLastBlock)
{
    ProgressBar bar(true);
    const auto t0 = ProgressBar::Clock::time_point{} + 1h;
    bar.start(t0);
    EXPECT_FALSE(bar.update(0, 10, t0).empty());
    EXPECT_TRUE(bar.update(1, 10, t0 + 50ms).empty());
    EXPECT_FALSE(bar.update(2, 10, t0 + 250ms).empty());
    EXPECT_FALSE(bar.update(10, 10, t0 + 260ms).empty());
}

TEST(ProgressBar, DisabledBarDrawsNothing)
{
    ProgressBar bar(false);
    bar.start();
    EXPECT_TRUE(bar.update(1, 2).empty());
    EXPECT_TRUE(bar.update(2, 2).empty());
}

} // namespace
} // namespace rm8::ctl
