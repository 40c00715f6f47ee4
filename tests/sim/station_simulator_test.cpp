// The simulated station's faults and line emulation, driven directly: which
// reply gets which fault, how long each reply is held back, what a corrupting
// station stores and when a station hangs up. The requests are built with the
// tests' own framing helpers, not the link's.

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "link/fake_station.h"
#include "sim/station_simulator.h"

namespace rm8::sim {
namespace {

using namespace std::chrono_literals;
using test::Bytes;

Bytes frame(Bytes data)
{
    const auto check = test::wireChecksum(data);
    data.push_back(check);
    data.push_back(13);
    return data;
}

Bytes attention()
{
    return frame({1});
}

Bytes readRequest(std::uint16_t address)
{
    Bytes data{4};
    test::appendHex(data, static_cast<std::uint8_t>(address % 256));
    test::appendHex(data, static_cast<std::uint8_t>(address / 256));
    return frame(data);
}

Bytes writeRequest(std::uint16_t address, const Bytes& block)
{
    Bytes data{5};
    test::appendHex(data, static_cast<std::uint8_t>(address % 256));
    test::appendHex(data, static_cast<std::uint8_t>(address / 256));
    for (const auto b : block)
        test::appendHex(data, b);
    return frame(data);
}

StationSimulator simulator(StationFaults faults, unsigned baud = 0)
{
    StationBehaviour behaviour;
    behaviour.faults = faults;
    behaviour.line.baud = baud;
    StationProfile profile;
    profile.memorySizeCode = 2;
    return StationSimulator(profile, {}, behaviour);
}

// One letter per reply: '.' sent as is, 'D' dropped, 'C' wrong checksum,
// 'L' late.
std::string faultsOf(StationSimulator& station, int attentions)
{
    std::string out;
    for (int i = 0; i < attentions; ++i)
        for (const auto& reply : station.respond(attention())) {
            switch (reply.fault) {
            case ReplyFault::None:
                out += '.';
                break;
            case ReplyFault::Dropped:
                out += 'D';
                break;
            case ReplyFault::BadChecksum:
                out += 'C';
                break;
            case ReplyFault::Late:
                out += 'L';
                break;
            }
        }
    return out;
}

struct FaultRow {
    const char* name;
    StationFaults faults;
    std::string expected; // for twelve attention requests
};

class FaultSchedule : public ::testing::TestWithParam<FaultRow> {};

TEST_P(FaultSchedule, EveryNthReplyIsHit)
{
    auto station = simulator(GetParam().faults);
    EXPECT_EQ(faultsOf(station, 12), GetParam().expected);
}

StationFaults faults(unsigned silent, unsigned drop, unsigned bad, unsigned late)
{
    StationFaults f;
    f.silentAttentions = silent;
    f.dropEvery = drop;
    f.badChecksumEvery = bad;
    f.lateEvery = late;
    return f;
}

INSTANTIATE_TEST_SUITE_P(
    StationSimulator, FaultSchedule,
    ::testing::Values(FaultRow{"Healthy", faults(0, 0, 0, 0), "............"},
                      FaultRow{"DropEveryThird", faults(0, 3, 0, 0), "..D..D..D..D"},
                      FaultRow{"BadChecksumEveryFourth", faults(0, 0, 4, 0), "...C...C...C"},
                      FaultRow{"LateEveryFifth", faults(0, 0, 0, 5), "....L....L.."},
                      FaultRow{"DropWinsOverChecksum", faults(0, 2, 3, 0), ".DCD.D.DCD.D"},
                      FaultRow{"EveryReplyDropped", faults(0, 1, 0, 0), "DDDDDDDDDDDD"},
                      // Silent attentions make no reply and so are not counted.
                      FaultRow{"SilenceThenDropEverySecond", faults(3, 2, 0, 0), ".D.D.D.D."}),
    [](const ::testing::TestParamInfo<FaultRow>& row) { return std::string(row.param.name); });

Bytes readReplyData(const Bytes& block)
{
    Bytes data{132};
    for (const auto b : block)
        test::appendHex(data, b);
    return data;
}

TEST(StationSimulator, WrongChecksumIsNeitherRightNorATerminator)
{
    // Random blocks, and one whose right checksum is 12, where the wrong one
    // must step over 13.
    std::mt19937 random(7);
    const auto randomBlock = [&random] {
        Bytes block(8);
        for (auto& b : block)
            b = static_cast<std::uint8_t>(random() % 256);
        return block;
    };
    std::vector<Bytes> blocks;
    while (blocks.empty()) {
        const Bytes candidate = randomBlock();
        if (test::wireChecksum(readReplyData(candidate)) == 12)
            blocks.push_back(candidate);
    }
    while (blocks.size() < 256)
        blocks.push_back(randomBlock());

    for (const auto& block : blocks) {
        Bytes eeprom(448 + 64, 0xFF);
        std::copy(block.begin(), block.end(), eeprom.begin());
        StationProfile profile;
        profile.memorySizeCode = 2;
        StationBehaviour behaviour;
        behaviour.faults.badChecksumEvery = 1;
        StationSimulator faulty(profile, eeprom, behaviour);
        const auto bad = faulty.respond(readRequest(0));
        ASSERT_EQ(bad.size(), 1u);
        const Bytes data = readReplyData(block);
        ASSERT_EQ(bad[0].bytes.size(), data.size() + 2);
        EXPECT_TRUE(std::equal(data.begin(), data.end(), bad[0].bytes.begin()));
        const std::uint8_t check = bad[0].bytes[data.size()];
        EXPECT_NE(check, test::wireChecksum(data));
        EXPECT_NE(check, 13);
        EXPECT_EQ(bad[0].bytes.back(), 13);
    }
}

TEST(StationSimulator, ReceiveLeavesOutDroppedRepliesOnly)
{
    auto station = simulator(faults(0, 2, 3, 0));
    Bytes stream;
    for (int i = 0; i < 3; ++i) {
        const auto a = attention();
        stream.insert(stream.end(), a.begin(), a.end());
    }
    // Replies 1 (sent), 2 (dropped), 3 (wrong checksum, still sent).
    const Bytes expected{0x81, 0x82, 13, 0x81, 0x83, 13};
    EXPECT_EQ(station.receive(stream), expected);
}

// ---- line emulation ----

struct TimingRow {
    const char* name;
    unsigned baud;
    Bytes request;
    std::size_t replyBytes;
    std::chrono::nanoseconds expected;
};

class EmulatedDelay : public ::testing::TestWithParam<TimingRow> {};

TEST_P(EmulatedDelay, IsBothFramesAtTenBitsPerBytePlusTheWriteCycle)
{
    const auto& row = GetParam();
    auto station = simulator({}, row.baud);
    const auto replies = station.respond(row.request);
    ASSERT_EQ(replies.size(), 1u);
    EXPECT_EQ(replies[0].bytes.size(), row.replyBytes);
    EXPECT_EQ(replies[0].delay, row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    StationSimulator, EmulatedDelay,
    ::testing::Values(
        // 3 + 3 bytes, 60 bits at 9,600 baud: 6.25 ms.
        TimingRow{"Attention9600", 9600, attention(), 3, 6'250'000ns},
        // 7 + 19 bytes: 260 bits.
        TimingRow{"ReadBlock9600", 9600, readRequest(272), 19, 27'083'333ns},
        // 23 + 3 bytes and the default 5 ms write cycle.
        TimingRow{"WriteBlock9600", 9600, writeRequest(272, Bytes(8, 0x11)), 3, 27'083'333ns + 5ms},
        TimingRow{"ReadBlock19200", 19200, readRequest(0), 19, 13'541'666ns},
        // Without emulation there is no write cycle either.
        TimingRow{"WriteBlockAtOnce", 0, writeRequest(8, Bytes(8, 0x22)), 3, 0ns}),
    [](const ::testing::TestParamInfo<TimingRow>& row) { return std::string(row.param.name); });

TEST(StationSimulator, LateReplyComesAfterTheLongestTimeout)
{
    StationFaults f;
    f.lateEvery = 1;
    auto atOnce = simulator(f);
    EXPECT_EQ(atOnce.respond(readRequest(0)).at(0).delay, 1500ms) << "longer than the longest wait, 1,200 ms";
    auto slow = simulator(f, 9600);
    EXPECT_EQ(slow.respond(readRequest(0)).at(0).delay, 1500ms + 27'083'333ns);
}

// ---- what the station stores ----

TEST(StationSimulator, CorruptingStationInvertsTheFirstByteAndAnswersAsIfWell)
{
    StationFaults f;
    f.corruptWrites = true;
    auto corrupt = simulator(f);
    auto healthy = simulator({});
    const Bytes block{0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
    const auto bad = corrupt.respond(writeRequest(272, block));
    const auto good = healthy.respond(writeRequest(272, block));
    ASSERT_EQ(bad.size(), 1u);
    EXPECT_EQ(bad[0].bytes, good.at(0).bytes) << "the reply gives nothing away";
    EXPECT_EQ(bad[0].bytes, (Bytes{133, 134, 13}));
    const Bytes stored(corrupt.eeprom().begin() + 272, corrupt.eeprom().begin() + 280);
    EXPECT_EQ(stored, (Bytes{0xEE, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88}));
    EXPECT_TRUE(std::equal(block.begin(), block.end(), healthy.eeprom().begin() + 272));
}

TEST(StationSimulator, DroppedWriteReplyStillStoresTheBlock)
{
    auto station = simulator(faults(0, 1, 0, 0));
    const Bytes block(8, 0x3C);
    const auto replies = station.respond(writeRequest(16, block));
    ASSERT_EQ(replies.size(), 1u);
    EXPECT_FALSE(replies[0].sent());
    EXPECT_TRUE(std::equal(block.begin(), block.end(), station.eeprom().begin() + 16));
}

// ---- hanging up ----

TEST(StationSimulator, HangsUpAfterTheNthBlockRequestAndAnswersNothingMore)
{
    StationFaults f;
    f.hangUpAfterBlocks = 3;
    auto station = simulator(f);
    EXPECT_EQ(station.respond(attention()).size(), 1u) << "other requests are not counted";
    EXPECT_EQ(station.respond(readRequest(0)).size(), 1u);
    EXPECT_EQ(station.respond(writeRequest(8, Bytes(8, 1))).size(), 1u);
    EXPECT_FALSE(station.hungUp());
    EXPECT_EQ(station.respond(readRequest(16)).size(), 1u) << "the Nth is still answered";
    EXPECT_TRUE(station.hungUp());
    EXPECT_TRUE(station.respond(attention()).empty());
    EXPECT_TRUE(station.respond(writeRequest(24, Bytes(8, 2))).empty());
    EXPECT_EQ(station.eeprom()[24], 0xFF) << "a hung-up station stores nothing";
    EXPECT_EQ(station.blockRequests(), 3u);
}

// ---- line noise ----

TEST(StationSimulator, GarbledAndOverlongRequestsGetNoAnswer)
{
    auto station = simulator({});
    Bytes bad = attention();
    bad[1] = static_cast<std::uint8_t>(bad[1] + 1);
    EXPECT_TRUE(station.respond(bad).empty());
    // Noise longer than any request, then a request: the request is lost in
    // the noise, the next one is answered.
    Bytes noise(300, 0x55);
    EXPECT_TRUE(station.respond(noise).empty());
    EXPECT_TRUE(station.respond(attention()).empty());
    EXPECT_EQ(station.respond(attention()).size(), 1u);
    EXPECT_EQ(station.framesHandled(), 1u);
    ASSERT_EQ(station.requests().size(), 1u);
    EXPECT_EQ(station.requests()[0], Bytes{1});
}

TEST(StationSimulator, RequestSplitAnywhereIsOneRequest)
{
    const Bytes whole = readRequest(0x0110);
    for (std::size_t cut = 1; cut < whole.size(); ++cut) {
        auto station = simulator({});
        EXPECT_TRUE(station.respond(std::span(whole).first(cut)).empty()) << cut;
        EXPECT_EQ(station.respond(std::span(whole).subspan(cut)).size(), 1u) << cut;
        EXPECT_EQ(station.framesHandled(), 1u);
    }
}

} // namespace
} // namespace rm8::sim
