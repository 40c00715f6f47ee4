// How long the tool waits for each reply, read off the deadlines it hands the
// line rather than off a stopwatch, so a loaded machine cannot blur them:
// the last deadline of a wait, less the moment its request was written, is
// the reply time the tool allowed.

#include <map>
#include <thread>

#include <gtest/gtest.h>

#include "link/block_transfer.h"
#include "link/frame.h"
#include "link/session.h"
#include "support/test_line.h"

namespace rm8::link {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

// A station that answers only the request codes it is told to; for the rest
// it stays silent, and the wait runs its full time.
class DeadlineLine : public test::TestLine {
public:
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        waits.push_back({bytes.empty() ? std::uint8_t{0} : bytes.front(), Clock::now(), {}});
        if (const auto it = answers.find(waits.back().code); it != answers.end())
            pending = encodeFrame(it->second);
        return {};
    }
    Expected<std::vector<std::uint8_t>, std::string> read(Clock::time_point deadline) override
    {
        if (!waits.empty())
            waits.back().lastDeadline = deadline;
        if (!pending.empty())
            return std::exchange(pending, {});
        std::this_thread::sleep_until(deadline);
        return Bytes{};
    }
    void flushInput() override { pending.clear(); }

    struct Wait {
        std::uint8_t code;
        Clock::time_point written;
        Clock::time_point lastDeadline;
    };
    // Milliseconds allowed for the replies to requests with this code.
    std::vector<long> allowed(std::uint8_t code) const
    {
        std::vector<long> out;
        for (const auto& w : waits)
            if (w.code == code)
                out.push_back(static_cast<long>(
                    std::chrono::round<std::chrono::milliseconds>(w.lastDeadline - w.written).count()));
        return out;
    }

    std::map<std::uint8_t, Bytes> answers;
    std::vector<Wait> waits;
    Bytes pending;
};

// Stops a search after a number of progress turns.
class QuietUi : public Interaction {
public:
    void showProgress(std::string_view, bool) override {}
    void hideProgress() override {}
    bool cancelRequested() override { return stopAfter > 0 && ++turns >= stopAfter; }
    void message(MessageIcon, std::string_view, std::string_view) override {}
    Answer ask(MessageIcon, std::string_view, Buttons) override { return Answer::Yes; }
    int stopAfter = 0;
    int turns = 0;
};

std::vector<long> steps(long from, long to)
{
    std::vector<long> out;
    for (long ms = from; ms <= to; ms += 100)
        out.push_back(ms);
    return out;
}

// The deadline is taken a moment after the request is written: a wait is
// found a millisecond short by rounding, or longer when the machine was busy
// in that moment. The reply times differ by 100 ms steps, so 30 ms of slack
// still tells a wrong one.
bool isWait(long got, long want)
{
    return got >= want - 1 && got <= want + 30;
}

void expectWaits(const std::vector<long>& got, const std::vector<long>& want)
{
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_TRUE(isWait(got[i], want[i])) << "attempt " << i + 1 << ": " << got[i] << " ms, not " << want[i];
}

const Bytes kBlockRead = {0x84, '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0'};

TEST(ReplyWaits, ABlockReadIsTriedTwelveTimesWaitingOneHundredMoreEachTime)
{
    DeadlineLine line;
    QuietUi ui;
    LineIo io(line, ui);
    EepromImage image;
    BlockTransfer transfer(io, image);
    EXPECT_FALSE(transfer.readAllBlocks(64));
    expectWaits(line.allowed(4), steps(100, 1200));
}

TEST(ReplyWaits, ABlockWriteIsTriedTenTimesFromTwoHundred)
{
    DeadlineLine line;
    QuietUi ui;
    LineIo io(line, ui);
    EepromImage image;
    BlockTransfer transfer(io, image);
    EXPECT_FALSE(transfer.writeAllBlocks(272, false));
    expectWaits(line.allowed(5), steps(200, 1100));
}

TEST(ReplyWaits, AReadBackIsTriedNineTimesFromTwoHundred)
{
    DeadlineLine line;
    line.answers[5] = {0x85};
    QuietUi ui;
    LineIo io(line, ui);
    EepromImage image;
    BlockTransfer transfer(io, image);
    EXPECT_FALSE(transfer.writeAllBlocks(272, true));
    ASSERT_EQ(line.allowed(5).size(), 1u) << "the block was written at once";
    expectWaits(line.allowed(4), steps(200, 1000));
}

// Only a wait that runs out shows its full length; so each request is left
// unanswered in turn.
TEST(ReplyWaits, SessionRequestsWaitFiveHundredForAttentionAndOneHundredForTheRest)
{
    const Bytes identity = {0x82, '8', '2', 'D', '3', '2', '0', '0', '1', '0', '0'};
    DeadlineLine noIdentity;
    noIdentity.answers[1] = {0x81};
    QuietUi ui;
    LineIo io(noIdentity, ui);
    EXPECT_EQ(activateLink(io, "COM 1").state, ConnectionState::Inactive);
    expectWaits(noIdentity.allowed(2), {100});

    DeadlineLine noConfiguration;
    noConfiguration.answers[1] = {0x81};
    noConfiguration.answers[2] = identity;
    LineIo io2(noConfiguration, ui);
    EXPECT_EQ(activateLink(io2, "COM 1").state, ConnectionState::Inactive);
    expectWaits(noConfiguration.allowed(3), {100});

    DeadlineLine silent;
    QuietUi search;
    search.stopAfter = 25; // two attention waits and a bit: a turn comes every 50 ms
    LineIo searching(silent, search);
    EXPECT_EQ(activateLink(searching, "COM 1").state, ConnectionState::Inactive);
    const auto attention = silent.allowed(1);
    ASSERT_GE(attention.size(), 2u);
    // The last one may have been cut short by Storno.
    for (std::size_t i = 0; i + 1 < attention.size(); ++i)
        EXPECT_TRUE(isWait(attention[i], 500)) << attention[i] << " ms";

    DeadlineLine leaving;
    LineIo releasing(leaving, ui);
    EXPECT_TRUE(deactivateLink(releasing)) << "the question is answered Yes";
    expectWaits(leaving.allowed(6), {100});
}

} // namespace
} // namespace rm8::link
