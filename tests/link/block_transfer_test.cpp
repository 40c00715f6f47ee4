// The link beyond what its cases in data/wire and data/link show: the
// largest memory, a write stopped after every block, late and noisy replies,
// the image a stopped write gives back, the user's turns.

#include <gtest/gtest.h>

#include "link/block_transfer.h"
#include "settings/image_encoder.h"
#include "flow/file_flows.h"
#include "link/station_backup.h"
#include "link/station_flows.h"
#include "settings/image_header.h"
#include "settings/used_size.h"
#include "support/recording_interaction.h"
#include "support/sim_line.h"
#include "support/test_data.h"

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

// A write stopped after any single block, with or without read-back, leaves
// a station that reads as not programmed; only a stop after the block that
// completes the write leaves a valid header, over everything written.
TEST(BlockTransfer, AWriteStoppedAfterAnyBlockLeavesNoValidHeaderOverOtherData)
{
    StationSettings settings;
    EepromImage intended(0xFF);
    ASSERT_TRUE(encodeImage(settings, intended));
    const std::size_t used = usedSize(settings);
    Bytes before(intended.bytes().begin(), intended.bytes().begin() + 8192);
    std::fill(before.begin() + kFirstDataBlock, before.end(), 0x55); // an older configuration
    const auto valid = [](const Bytes& eeprom) {
        EepromImage image(0xFF);
        std::copy(eeprom.begin(), eeprom.end(), image.bytes().begin());
        return imageHeaderValid(image);
    };
    ASSERT_TRUE(valid(before));
    for (const bool check : {false, true}) {
        int validStops = 0;
        std::size_t stop = 1;
        for (;; ++stop) {
            sim::StationBehaviour behaviour;
            behaviour.faults.hangUpAfterBlocks = static_cast<unsigned>(stop);
            SimRig rig({}, before, behaviour);
            EepromImage image = intended;
            const bool done = BlockTransfer(rig.io, image).writeAllBlocks(used, check);
            const Bytes& held = rig.line.station.eeprom();
            if (done || valid(held)) {
                validStops += !done;
                for (std::size_t a = 0; a < used; ++a)
                    ASSERT_TRUE(a / 64 == 1 || held[a] == intended.byte(a)) << a << " after " << stop;
            }
            if (done)
                break;
        }
        EXPECT_EQ(validStops, check ? 1 : 0) << "the stop between the last write and its read-back";
        EXPECT_EQ(stop, (check ? 2 : 1) * (52 + (used - kFirstDataBlock + 7) / 8 + 1));
    }
}

// However late the replies, a read gives the station's bytes, never a read
// out of step, and a write with read-back is not failed by replies that were
// meant for other requests: on a line at 9,600 baud and on one without delay.
TEST(BlockTransfer, LateRepliesNeitherShiftAReadNorFailAWriteWithReadBack)
{
    const sim::StationProfile profile{2151298, 1, 0, 4, 4};
    const Bytes held = test::pattern(2048, 7, 3, 251);
    const Bytes written = test::pattern(2048, 3, 4, 256);
    for (const unsigned baud : {9600u, 0u})
        for (const unsigned every : {7u, 13u, 20u})
            for (const int late : {150, 1300}) {
                SCOPED_TRACE(std::to_string(baud) + " baud, every " + std::to_string(every) + " late by "
                    + std::to_string(late));
                sim::StationBehaviour behaviour;
                behaviour.line.baud = baud;
                behaviour.faults.lateEvery = every;
                behaviour.faults.lateBy = std::chrono::milliseconds(late);
                SimRig rig(profile, held, behaviour);
                EepromImage image(0);
                ASSERT_TRUE(BlockTransfer(rig.io, image).readAllBlocks(1984));
                EXPECT_TRUE(std::equal(held.begin(), held.begin() + 1984, image.bytes().begin()));

                std::copy(written.begin(), written.end(), image.bytes().begin());
                ASSERT_TRUE(BlockTransfer(rig.io, image).writeAllBlocks(1976, true));
                EXPECT_TRUE(std::equal(written.begin(), written.begin() + 64, rig.line.station.eeprom().begin()));
                EXPECT_TRUE(std::equal(written.begin() + 128, written.begin() + 1984,
                    rig.line.station.eeprom().begin() + 128));
            }
}

// Once a reply was given up (block 8's retry, whose own reply the dropped
// one's place took), the blocks read after it are read again, last first, and
// each is taken where two reads agree: a third read settles a disagreement,
// and three different answers are a block error.
TEST(BlockTransfer, BlocksAfterARetryAreTakenWhereTwoReadsAgree)
{
    const Bytes held = test::pattern(128, 1, 0, 256);
    // Requests 1 to 9 are the first read (block 8 twice), 10 to 15 the
    // second from block 56 down to 16; block 16 is request 4 and 15, and
    // request 16 when read a third time.
    for (const auto& [noisy, read] : std::vector<std::pair<std::vector<std::size_t>, bool>>{
             {{4}, true}, {{15}, true}, {{4, 15, 16}, false}}) {
        SimRig rig({2151298, 1, 0, 0, 4}, held);
        rig.faults[2] = RequestFault::Drop;
        for (const auto n : noisy)
            rig.faults[n] = RequestFault::ReadOther;
        EepromImage image(0);
        EXPECT_EQ(BlockTransfer(rig.io, image).readAllBlocks(64), read) << noisy.back();
        EXPECT_TRUE(!read || std::equal(held.begin(), held.begin() + 64, image.bytes().begin())) << noisy.back();
    }
}

// Whatever stops a write (a dead line, Storno, a read-back that differs), the
// image comes back as it was: saving it afterwards gives the file as before.
TEST(StationFlows, AWriteThatStopsLeavesTheImageToSaveAsBefore)
{
    test::ScratchDir dir;
    test::RecordingInteraction ui;
    EepromImage loaded(0);
    StationSettings settings;
    ASSERT_EQ(loadSettingsFile(test::dataDir() / "empty.eep", loaded, settings, ui), FlowOutcome::Done);
    for (std::size_t a = 200; a < 240; ++a) // header bytes of no field, which a file may hold
        loaded.putByte(a, 0xA5);
    ASSERT_EQ(saveSettingsFile(dir / "before.eep", loaded, settings, ui), FlowOutcome::Done);
    for (const auto& [name, fault, storno] : std::vector<std::tuple<std::string, RequestFault, std::size_t>>{
             {"hangup", RequestFault::HangUp, 0}, {"storno", RequestFault::None, 39},
             {"store-other", RequestFault::StoreOther, 0}}) {
        SimRig rig;
        rig.faults[39] = fault; // a write request of the header pass
        rig.stornoAt = storno;
        EepromImage image = loaded;
        EXPECT_EQ(link::writeStation(rig.io, image, settings, 8128, true), FlowOutcome::Failed) << name;
        ASSERT_EQ(saveSettingsFile(dir / (name + ".eep"), image, settings, ui), FlowOutcome::Done);
        EXPECT_EQ(test::readBytes(dir / (name + ".eep")), test::readBytes(dir / "before.eep")) << name;
    }
}

// A backup's file name: when, and which station, in characters any file
// system takes.
TEST(StationBackup, FileNameCarriesTheTimeAndTheStationsName)
{
    std::tm when{};
    when.tm_year = 125, when.tm_mon = 2, when.tm_mday = 1, when.tm_hour = 14, when.tm_min = 5, when.tm_sec = 9;
    for (const auto& [name, file] : std::vector<std::pair<std::string, std::string>>{
             {"Čerpadlo 2", "2025-03-01 14-05-09 Čerpadlo 2.eep"}, {"a/b:c*?", "2025-03-01 14-05-09 a_b_c__.eep"},
             {"", "2025-03-01 14-05-09 stanice.eep"}, {" ..Vrt. ", "2025-03-01 14-05-09 Vrt.eep"},
             {" . ", "2025-03-01 14-05-09 stanice.eep"}})
        EXPECT_EQ(link::backupFileName(when, name), file);
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
