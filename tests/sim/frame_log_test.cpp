// The support log: its line format is what a support technician greps and
// what the tools' logs are lined up by, so it is pinned byte for byte.

#include <chrono>
#include <ctime>
#include <iomanip>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <unistd.h>

#include "link/frame_log.h"

namespace rm8::link {
namespace {

using namespace std::chrono;
using Bytes = std::vector<std::uint8_t>;

// 2026-11-22 21:05:03 UTC, built from calendar parts so that the expected
// text does not come from the code under test.
FrameLog::TimePoint at(int micros)
{
    const sys_days day = year{2026} / November / 22;
    return FrameLog::TimePoint(day + hours{21} + minutes{5} + seconds{3} + microseconds{micros});
}

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

struct LineRow {
    const char* name;
    FrameDirection direction;
    Bytes bytes;
    int micros;
    std::string expected;
};

class FrameLogLine : public ::testing::TestWithParam<LineRow> {};

TEST_P(FrameLogLine, IsTimeDirectionAndUpperCaseHexPairs)
{
    const auto& row = GetParam();
    std::ostringstream out;
    FrameLog log(out);
    log.record(row.direction, row.bytes, at(row.micros));
    EXPECT_EQ(out.str(), row.expected + "\n");
    EXPECT_EQ(FrameLog::formatLine(row.direction, row.bytes, at(row.micros)), row.expected + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    FrameLog, FrameLogLine,
    ::testing::Values(
        LineRow{"Attention", FrameDirection::ToStation, {1, 2, 13}, 123456, "2026-11-22 21:05:03.123456 > 01 02 0D"},
        LineRow{"AttentionReply", FrameDirection::FromStation, {0x81, 0x82, 13}, 7,
                "2026-11-22 21:05:03.000007 < 81 82 0D"},
        LineRow{"EveryNibble", FrameDirection::ToStation, {0x00, 0x0F, 0xA0, 0xFF, 0x5A}, 999999,
                "2026-11-22 21:05:03.999999 > 00 0F A0 FF 5A"},
        LineRow{"LeaveRequest", FrameDirection::ToStation, {6, 170, 85, 6, 13}, 0,
                "2026-11-22 21:05:03.000000 > 06 AA 55 06 0D"}),
    [](const ::testing::TestParamInfo<LineRow>& row) { return std::string(row.param.name); });

TEST(FrameLog, EmptyChunkWritesNothing)
{
    std::ostringstream out;
    FrameLog log(out);
    log.record(FrameDirection::FromStation, Bytes{}, at(0));
    EXPECT_EQ(out.str(), "");
}

TEST(FrameLog, NoteIsOneMarkedLine)
{
    std::ostringstream out;
    FrameLog log(out);
    log.note("reply dropped\nsecond line", at(42));
    EXPECT_EQ(out.str(), "2026-11-22 21:05:03.000042 # reply dropped second line\n");
}

TEST(FrameLog, TimeWithoutArgumentIsNow)
{
    std::ostringstream out;
    FrameLog log(out);
    const auto before = floor<seconds>(system_clock::now());
    log.record(FrameDirection::ToStation, Bytes{1, 2, 13});
    const auto after = system_clock::now();
    // The printed time, read back, must lie between the two readings.
    std::tm parts{};
    std::istringstream in(out.str());
    in >> std::get_time(&parts, "%Y-%m-%d %H:%M:%S");
    ASSERT_FALSE(in.fail()) << out.str();
    const auto printed = system_clock::from_time_t(::timegm(&parts));
    EXPECT_GE(printed, before);
    EXPECT_LE(printed, after);
}

// Many writers at once: every line must come out whole, none lost.
TEST(FrameLog, LinesFromManyThreadsStayWhole)
{
    std::ostringstream out;
    FrameLog log(out);
    constexpr int kThreads = 4;
    constexpr int kLines = 500;
    std::vector<std::thread> writers;
    for (int t = 0; t < kThreads; ++t)
        writers.emplace_back([&log, t] {
            for (int i = 0; i < kLines; ++i) {
                const Bytes chunk(static_cast<std::size_t>(1 + i % 20), static_cast<std::uint8_t>(t));
                log.record(t % 2 == 0 ? FrameDirection::ToStation : FrameDirection::FromStation, chunk);
            }
        });
    for (auto& w : writers)
        w.join();
    const auto all = lines(out.str());
    ASSERT_EQ(all.size(), static_cast<std::size_t>(kThreads * kLines));
    const std::regex shape(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{6} ([<>])( 0([0-3]))+)");
    for (const auto& line : all) {
        std::smatch m;
        ASSERT_TRUE(std::regex_match(line, m, shape)) << line;
        // One writer's bytes only, and its own direction.
        const char owner = m[3].str()[0];
        EXPECT_EQ(m[1].str(), (owner - '0') % 2 == 0 ? ">" : "<") << line;
        const std::string pair = std::string(" 0") + owner;
        for (auto p = static_cast<std::size_t>(m.position(1)) + 1; p < line.size(); p += 3)
            EXPECT_EQ(line.substr(p, 3), pair) << line;
    }
}

TEST(FrameLog, FileIsCreatedAndWrittenLineByLine)
{
    const auto path = std::filesystem::temp_directory_path() / ("rm8_frame_log_" + std::to_string(::getpid()) + ".log");
    {
        std::ofstream stale(path);
        stale << "old content\n";
    }
    auto log = FrameLog::toFile(path.string());
    ASSERT_TRUE(log) << log.error();
    (*log)->record(FrameDirection::ToStation, Bytes{2, 3, 13}, at(1));
    // Flushed per line: readable while the log is still open.
    std::ifstream in(path);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text, "2026-11-22 21:05:03.000001 > 02 03 0D\n");
    EXPECT_TRUE((*log)->good());
    std::filesystem::remove(path);
}

TEST(FrameLog, FileThatCannotBeCreatedIsNamed)
{
    const std::string path = "/nonexistent-dir-rm8/trace.log";
    auto log = FrameLog::toFile(path);
    ASSERT_FALSE(log);
    EXPECT_NE(log.error().find(path), std::string::npos) << log.error();
}

} // namespace
} // namespace rm8::link
