// The link beyond what its cases in data/wire and data/link show: the
// largest memory, a write cut short, a late reply, the user's turns.

#include <gtest/gtest.h>

#include "link/block_transfer.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "support/sim_line.h"

namespace rm8::link {
namespace {

using sim::RequestFault;
using test::Bytes;
using test::SimRig;

TEST(BlockTransfer, ReadsTheLargestMemoryCountingItsBlocksForTheProgress)
{
    const Bytes held = test::pattern(65536, 7, 3, 251);
    SimRig rig({2151298, 1, 0, 9, 4}, held);
    EepromImage image(0);
    EXPECT_TRUE(BlockTransfer(rig.io, image).readAllBlocks(65472));
    EXPECT_EQ(rig.line.station.blockRequests(), 8184u);
    EXPECT_TRUE(std::equal(held.begin(), held.begin() + 65472, image.bytes().begin()));
    EXPECT_EQ(image.byte(65472), 0) << "nothing past the memory";
    const auto& noted = rig.line.transcript;
    EXPECT_EQ(std::count_if(noted.begin(), noted.end(), [](const auto& l) { return l.starts_with("blocks "); }), 8185);
    EXPECT_EQ(noted.end()[-2], "blocks 8184/8184");
}

// However a write stops (Storno, or a block that fails ten times), neither
// the station nor the image keeps a valid header over half-written data.
TEST(BlockTransfer, AWriteCutShortLeavesNoValidHeader)
{
    EepromImage start(0xFF);
    ASSERT_TRUE(encodeImage(StationSettings{}, start));
    const auto held = [](const SimRig& rig) {
        EepromImage out(0xFF);
        std::copy(rig.line.station.eeprom().begin(), rig.line.station.eeprom().end(), out.bytes().begin());
        return imageHeaderValid(out);
    };
    // Storno as request n arrives, or requests n to n + 9 unanswered; the writes made.
    for (const auto& [storno, n, writes] : std::vector<std::tuple<bool, std::size_t, std::size_t>>{
             {true, 1, 1}, {true, 7, 7}, {true, 27, 27}, {true, 40, 40}, {false, 4, 13}, {false, 30, 39}}) {
        SimRig rig({}, Bytes(start.bytes().begin(), start.bytes().begin() + 8192));
        ASSERT_TRUE(held(rig));
        rig.stornoAt = storno ? n : 0;
        for (std::size_t k = n; !storno && k < n + 10; ++k)
            rig.faults[k] = RequestFault::Drop;
        EepromImage image = start;
        EXPECT_FALSE(BlockTransfer(rig.io, image).writeAllBlocks(8128, false));
        EXPECT_EQ(rig.line.station.blockRequests(), writes);
        EXPECT_FALSE(held(rig)) << writes;
        EXPECT_FALSE(imageHeaderValid(image)) << writes;
        EXPECT_EQ(rig.line.transcript.back(), "hide");
    }
}

// Block replies carry no address: a reply that came after its request had
// timed out must not be taken for the answer to the next one.
TEST(BlockTransfer, ALateReplyLeftInThePortIsNotTakenForTheNextBlock)
{
    SimRig rig({2151298, 1, 0, 0, 4}, test::pattern(128, 1, 0, 256));
    rig.faults[1] = RequestFault::Late;
    EepromImage image;
    BlockTransfer transfer(rig.io, image);
    EXPECT_FALSE(transfer.readBlock(0));
    rig.line.sleepUntil(rig.line.now() + std::chrono::seconds(2));
    EXPECT_TRUE(transfer.readBlock(8));
    EXPECT_EQ(image.byte(8), 8);
}

TEST(LineIo, TheUserGetsATurnEveryFiftyMillisecondsOfAWaitAlsoOnADeadLine)
{
    for (const auto fault : {RequestFault::Drop, RequestFault::HangUp}) {
        SimRig rig;
        rig.faults[1] = fault;
        const std::uint8_t attention[] = {1};
        EXPECT_FALSE(rig.io.exchange(attention, 0x81, std::chrono::milliseconds(300)));
        EXPECT_GE(rig.turns, 6u);
    }
}

} // namespace
} // namespace rm8::link
