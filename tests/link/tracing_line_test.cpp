// The support trace must show frames as the station saw them: whole replies
// even when the line delivers them in pieces, and leftovers before the
// request that follows them.

#include <deque>

#include <gtest/gtest.h>

#include "link/tracing_line.h"
#include "support/test_line.h"

namespace rm8::link {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Hands out prepared chunks, one per read, and keeps what was written.
class ChunkLine : public test::TestLine {
public:
    ChunkLine() { open_ = false; }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        written.insert(written.end(), bytes.begin(), bytes.end());
        return {};
    }
    Expected<std::vector<std::uint8_t>, std::string> read(Clock::time_point) override
    {
        if (failNext)
            return unexpected(std::string("odpojeno"));
        if (chunks.empty())
            return Bytes{};
        Bytes chunk = chunks.front();
        chunks.pop_front();
        return chunk;
    }
    void flushInput() override { ++flushes; }

    std::deque<Bytes> chunks;
    Bytes written;
    int flushes = 0;
    bool failNext = false;
};

struct Entry {
    FrameDirection direction;
    Bytes bytes;
    bool operator==(const Entry&) const = default;
};

struct Rig {
    ChunkLine line;
    std::vector<Entry> log;
    TracingLine traced{line, [this](FrameDirection d, std::span<const std::uint8_t> b) {
                           log.push_back({d, Bytes(b.begin(), b.end())});
                       }};

    void readAll()
    {
        while (!line.chunks.empty())
            ASSERT_TRUE(traced.read(Clock::now()));
    }
};

constexpr auto In = FrameDirection::FromStation;
constexpr auto Out = FrameDirection::ToStation;

TEST(TracingLine, RepliesInPiecesAreLoggedWholeAndPassedOnUnchanged)
{
    Rig rig;
    rig.line.chunks = {{0x81}, {0x82, 13, 0x83}, {0x84, 13}};
    Bytes passed;
    while (!rig.line.chunks.empty()) {
        auto bytes = rig.traced.read(Clock::now());
        ASSERT_TRUE(bytes);
        passed.insert(passed.end(), bytes->begin(), bytes->end());
    }
    EXPECT_EQ(passed, (Bytes{0x81, 0x82, 13, 0x83, 0x84, 13}));
    EXPECT_EQ(rig.log, (std::vector<Entry>{{In, {0x81, 0x82, 13}}, {In, {0x83, 0x84, 13}}}));
}

TEST(TracingLine, RequestsAreLoggedAsWrittenAfterAnyUnfinishedReply)
{
    Rig rig;
    rig.line.chunks = {{0x81, 0x82}};
    rig.readAll();
    EXPECT_TRUE(rig.log.empty()) << "a reply without its terminator waits for the rest";
    const Bytes request{1, 2, 13};
    ASSERT_TRUE(rig.traced.write(request));
    EXPECT_EQ(rig.line.written, request);
    EXPECT_EQ(rig.log, (std::vector<Entry>{{In, {0x81, 0x82}}, {Out, request}}));
}

TEST(TracingLine, FlushAndCloseLogWhatIsPending)
{
    Rig rig;
    rig.line.chunks = {{7, 8}};
    rig.readAll();
    rig.traced.flushInput();
    EXPECT_EQ(rig.line.flushes, 1);
    rig.line.chunks = {{9}};
    rig.readAll();
    ASSERT_TRUE(rig.traced.open());
    rig.traced.close();
    EXPECT_FALSE(rig.line.isOpen());
    EXPECT_EQ(rig.log, (std::vector<Entry>{{In, {7, 8}}, {In, {9}}}));
}

TEST(TracingLine, ALineFailureIsPassedOnAndLogsNothing)
{
    Rig rig;
    rig.line.failNext = true;
    const auto bytes = rig.traced.read(Clock::now());
    ASSERT_FALSE(bytes);
    EXPECT_EQ(bytes.error(), "odpojeno");
    EXPECT_TRUE(rig.log.empty());
}

} // namespace
} // namespace rm8::link
