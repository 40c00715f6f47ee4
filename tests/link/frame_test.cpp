// Frame boundaries where the cases in data/wire do not reach: what the
// assembler takes for no reply, and the support trace, which shows frames as
// the station saw them however the line delivers them.

#include <deque>

#include <gtest/gtest.h>

#include "link/frame.h"
#include "link/tracing_line.h"

namespace rm8::link {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Frame, ALoneTerminatorNoiseAWrongChecksumAndAnOverlongReplyAreNoReply)
{
    for (const auto& wire :
        {Bytes{13}, Bytes{0x00, 0xFF, 0x81, 0x82, 13}, Bytes{3, 3, 13}, encodeFrame(Bytes(100, 'x'))}) {
        FrameAssembler assembler;
        assembler.add(wire);
        EXPECT_EQ(assembler.complete(), wire.size() < 102) << "the 102nd character is dropped";
        EXPECT_FALSE(assembler.reply()) << wire.size();
    }
    FrameAssembler longest;
    longest.add(encodeFrame(Bytes(99, 'x')));
    EXPECT_EQ(longest.reply(), Bytes(99, 'x'));
    EXPECT_EQ(hexPairToByte('a', 'f'), 0xAF) << "either case comes in";
}

// Hands out prepared chunks, one per read; an empty chunk is a line failure.
class ChunkLine : public SerialLine {
public:
    Expected<void, std::string> open() override { return {}; }
    void close() override { ++closes; }
    bool isOpen() const override { return closes == 0; }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        written.insert(written.end(), bytes.begin(), bytes.end());
        return {};
    }
    Expected<Bytes, std::string> read(Clock::time_point) override
    {
        const Bytes chunk = chunks.front();
        chunks.pop_front();
        if (chunk.empty())
            return unexpected(std::string("odpojeno"));
        return chunk;
    }
    void flushInput() override { ++flushes; }
    std::deque<Bytes> chunks{{0x81}, {0x82, 13, 0x83}, {0x84, 13}, {0x85}, {}, {7}, {9}};
    Bytes written;
    int flushes = 0, closes = 0;
};

TEST(TracingLine, LogsWholeFramesAndPassesEverythingOnUnchanged)
{
    ChunkLine line;
    std::vector<std::pair<FrameDirection, Bytes>> log;
    TracingLine traced(line,
        [&](FrameDirection d, std::span<const std::uint8_t> b) { log.emplace_back(d, Bytes(b.begin(), b.end())); });
    Bytes passed;
    for (int i = 0; i < 4; ++i) {
        const auto bytes = traced.read(Clock::now());
        passed.insert(passed.end(), bytes->begin(), bytes->end());
    }
    EXPECT_EQ(passed, (Bytes{0x81, 0x82, 13, 0x83, 0x84, 13, 0x85}));
    EXPECT_EQ(traced.read(Clock::now()).error(), "odpojeno");
    ASSERT_TRUE(traced.write(Bytes{1, 2, 13}));
    EXPECT_EQ(line.written, (Bytes{1, 2, 13}));
    ASSERT_TRUE(traced.read(Clock::now()));
    traced.flushInput();
    ASSERT_TRUE(traced.read(Clock::now()));
    traced.close();
    EXPECT_EQ(line.flushes + line.closes, 2);
    // The unfinished reply goes before the request after it; a flush and a
    // close log what is pending.
    const auto in = FrameDirection::FromStation;
    EXPECT_EQ(log,
        (std::vector<std::pair<FrameDirection, Bytes>>{{in, {0x81, 0x82, 13}}, {in, {0x83, 0x84, 13}}, {in, {0x85}},
            {FrameDirection::ToStation, {1, 2, 13}}, {in, {7}}, {in, {9}}}));
}

} // namespace
} // namespace rm8::link
