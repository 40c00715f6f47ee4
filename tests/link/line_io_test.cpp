// A failed line (an unplugged adapter) fails every read at once. The reply
// wait must still last its full time with the user interface getting its
// turns, or the attention loop and the block retries would spin.

#include <gtest/gtest.h>

#include <thread>
#include <utility>

#include "link/frame.h"
#include "link/line_io.h"
#include "support/test_line.h"

namespace rm8::link {
namespace {

using namespace std::chrono_literals;

class UnpluggedLine : public test::TestLine {
public:
    Expected<void, std::string> write(std::span<const std::uint8_t>) override
    {
        return unexpected(std::string("odpojeno"));
    }
    Expected<std::vector<std::uint8_t>, std::string> read(Clock::time_point) override
    {
        ++reads;
        return unexpected(std::string("odpojeno"));
    }
    int reads = 0;
};

class CountingInteraction : public Interaction {
public:
    void showProgress(std::string_view, bool) override {}
    void hideProgress() override {}
    bool cancelRequested() override
    {
        ++turns;
        return false;
    }
    void message(MessageIcon, std::string_view, std::string_view) override {}
    Answer ask(MessageIcon, std::string_view, Buttons) override { return Answer::No; }
    int turns = 0;
};

TEST(LineIo, FailedLineWaitsOutTheReplyTimeWithTurnsForTheUser)
{
    UnpluggedLine line;
    CountingInteraction ui;
    LineIo io(line, ui);
    const std::uint8_t attention[] = {1};
    const auto start = Clock::now();
    EXPECT_FALSE(io.exchange(attention, 0x81, 300ms));
    const auto took = Clock::now() - start;
    EXPECT_GE(took, 300ms);
    EXPECT_LT(took, 5s);
    EXPECT_LE(line.reads, 2) << "a failing line must not be asked again and again";
    // Turns come every 50 ms; a loaded machine may oversleep some of them,
    // so only require that the wait was not one silent block.
    EXPECT_GE(ui.turns, 3) << "the user interface needs its turns while the line is dead";
}

// Holds what "arrived" in a queue; flushing empties it, as the port does.
class QueuedLine : public UnpluggedLine {
public:
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        written.insert(written.end(), bytes.begin(), bytes.end());
        for (const auto& reply : answers)
            waiting.insert(waiting.end(), reply.begin(), reply.end());
        answers.clear();
        return {};
    }
    Expected<std::vector<std::uint8_t>, std::string> read(Clock::time_point deadline) override
    {
        if (waiting.empty()) {
            std::this_thread::sleep_until(deadline);
            return std::vector<std::uint8_t>{};
        }
        return std::exchange(waiting, {});
    }
    void flushInput() override { waiting.clear(); }

    std::vector<std::uint8_t> waiting;
    std::vector<std::vector<std::uint8_t>> answers; // sent once the next request is written
    std::vector<std::uint8_t> written;
};

// Block replies carry no address: a reply that came after its request timed
// out, and waits in the port when the next request goes out, must not be
// taken for the answer to that request.
TEST(LineIo, AStaleReplyWaitingBeforeTheRequestIsNotTakenForItsAnswer)
{
    QueuedLine line;
    CountingInteraction ui;
    LineIo io(line, ui);
    const std::uint8_t readBlock8[] = {4, '0', '8', '0', '0'};
    const std::vector<std::uint8_t> staleBlock0 = {0x84, '1', '1', '1', '1', '1', '1', '1', '1',
                                                   '1', '1', '1', '1', '1', '1', '1', '1'};
    const std::vector<std::uint8_t> block8 = {0x84, '2', '2', '2', '2', '2', '2', '2', '2',
                                              '2', '2', '2', '2', '2', '2', '2', '2'};
    line.waiting = encodeFrame(staleBlock0);
    line.answers = {encodeFrame(block8)};
    const auto reply = io.exchange(readBlock8, 0x84, 200ms);
    ASSERT_TRUE(reply);
    EXPECT_EQ(*reply, block8);
}

} // namespace
} // namespace rm8::link
