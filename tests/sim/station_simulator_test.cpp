// The simulated station's own logic, driven directly: which reply its fault
// schedule hits, how long an emulated line holds a reply back, and what it
// makes of noise; its answers to each request are pinned by the link's
// transcripts in data/wire. And the support log it keeps: its line format is
// what a support technician greps and what the logs of a tool and a station
// are lined up by.

#include <regex>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

#include "link/frame.h"
#include "link/frame_log.h"
#include "sim/station_simulator.h"

namespace rm8::sim {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

const Bytes kAttention{1, 2, 13};
const Bytes kRead0{4, '0', '0', '0', '0', 0xC5, 13};
const Bytes kWrite8{
    5, '0', '8', '0', '0', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', 0xDE, 13};

StationSimulator station(StationFaults faults, unsigned baud = 0, Bytes eeprom = {})
{
    StationBehaviour behaviour;
    behaviour.line.baud = baud;
    behaviour.faults = faults;
    return StationSimulator({2151298, 1, 0, 2, 4}, std::move(eeprom), behaviour);
}

TEST(StationSimulator, TheFaultScheduleCountsReplies)
{
    // Per attention request: '.' answered, 'D' dropped, 'C' a wrong checksum, 'L' late.
    for (const auto& [faults, expected] :
        std::vector<std::pair<StationFaults, std::string>>{{{0, 3, 0, 0}, "..D..D..D..D"},
            {{0, 0, 4, 0}, "...C...C...C"}, {{0, 0, 0, 5}, "....L....L.."}, {{0, 2, 3, 0}, ".DCD.D.DCD.D"},
            {{3, 2, 0, 0}, ".D.D.D.D."}}) { // silent attentions make no reply and are not counted
        auto sim = station(faults);
        std::string got;
        for (int i = 0; i < 12; ++i)
            for (const auto& reply : sim.respond(kAttention))
                got += ".DCL"[static_cast<int>(reply.fault)];
        EXPECT_EQ(got, expected);
    }
}

TEST(StationSimulator, AGarbledChecksumIsNeitherTheRightOneNorATerminator)
{
    for (unsigned v = 0; v < 256; ++v) {
        Bytes eeprom(512, 0);
        eeprom[0] = static_cast<std::uint8_t>(v); // every checksum value, 12 among them
        const auto reply = station({0, 0, 1, 0}, 0, eeprom).respond(kRead0).at(0).bytes;
        EXPECT_NE(reply.end()[-2], link::encodeFrame(Bytes(reply.begin(), reply.end() - 2)).end()[-2]) << v;
        EXPECT_NE(reply.end()[-2], 13) << v;
    }
}

TEST(StationSimulator, AnEmulatedLineHoldsAReplyBackForBothFramesAndTheWriteCycle)
{
    for (const auto& [baud, request, late, delay] :
        std::vector<std::tuple<unsigned, Bytes, unsigned, std::chrono::nanoseconds>>{
            {9600, kAttention, 0, 6'250'000ns}, // 3 + 3 bytes of 10 bits
            {9600, kRead0, 0, 27'083'333ns}, // 7 + 19 bytes
            {19200, kRead0, 0, 13'541'666ns},
            {9600, kWrite8, 0, 27'083'333ns + 5ms}, // 23 + 3 bytes and the write cycle
            {0, kWrite8, 0, 0ns}, {0, kRead0, 1, 1500ms}, {9600, kRead0, 1, 1500ms + 27'083'333ns}})
        EXPECT_EQ(station({0, 0, 0, late}, baud).respond(request).at(0).delay, delay) << baud;
}

TEST(StationSimulator, AnswersNoNoiseAndTakesARequestInPiecesAsOne)
{
    auto sim = station({});
    EXPECT_TRUE(sim.respond(Bytes{1, 3, 13}).empty()) << "a wrong checksum";
    EXPECT_TRUE(sim.respond(Bytes(300, 0x55)).empty()) << "longer than any request";
    EXPECT_TRUE(sim.respond(kAttention).empty()) << "lost in the noise before it";
    for (std::size_t cut = 1; cut < kRead0.size(); ++cut) {
        EXPECT_TRUE(sim.respond(std::span(kRead0).first(cut)).empty());
        EXPECT_EQ(sim.receive(std::span(kRead0).subspan(cut)).at(0), 0x84) << cut;
    }
    EXPECT_EQ(sim.framesHandled(), kRead0.size() - 1);
}

// 2026-11-22 21:05:03 UTC plus some microseconds, from calendar parts.
link::FrameLog::TimePoint at(int micros)
{
    return link::FrameLog::TimePoint(std::chrono::sys_days(std::chrono::year{2026} / std::chrono::November / 22) + 21h
        + 5min + 3s + std::chrono::microseconds{micros});
}

TEST(FrameLog, OneLineOfTimeDirectionAndUpperCaseHexPairsPerChunkOrNote)
{
    std::ostringstream out;
    link::FrameLog log(out);
    log.record(link::FrameDirection::ToStation, Bytes{0x00, 0x0F, 0xA0, 0xFF, 13}, at(123456));
    log.record(link::FrameDirection::FromStation, Bytes{0x81, 0x82, 13}, at(7));
    log.record(link::FrameDirection::FromStation, Bytes{}, at(0));
    log.note("reply dropped\nsecond line", at(0));
    EXPECT_EQ(out.str(),
        "2026-11-22 21:05:03.123456 > 00 0F A0 FF 0D\n"
        "2026-11-22 21:05:03.000007 < 81 82 0D\n"
        "2026-11-22 21:05:03.000000 # reply dropped second line\n");
}

TEST(FrameLog, LinesFromManyThreadsStayWhole)
{
    std::ostringstream out;
    link::FrameLog log(out);
    std::vector<std::thread> writers;
    for (int t = 0; t < 4; ++t)
        writers.emplace_back([&log, t] {
            for (int i = 0; i < 500; ++i)
                log.record(
                    link::FrameDirection::ToStation, Bytes(static_cast<std::size_t>(1 + i % 20), std::uint8_t(t)));
        });
    for (auto& w : writers)
        w.join();
    std::istringstream in(out.str());
    const std::regex whole(R"(\S+ \S+ > 0([0-3])( 0\1)*)");
    int lines = 0;
    for (std::string line; std::getline(in, line); ++lines)
        ASSERT_TRUE(std::regex_match(line, whole)) << line;
    EXPECT_EQ(lines, 2000);
}

} // namespace
} // namespace rm8::sim
