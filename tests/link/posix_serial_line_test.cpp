// The serial line on a pseudo-terminal pair: the test holds the station's
// end (the master) and the line opens the other end by its path.

#include <pty.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "link/posix_serial_line.h"

namespace rm8::link {
namespace {

using namespace std::chrono_literals;

class PseudoTerminal : public testing::Test {
protected:
    void SetUp() override
    {
        char name[256] = {};
        ASSERT_EQ(::openpty(&master_, &slave_, name, nullptr, nullptr), 0);
        path_ = name;
    }
    void TearDown() override
    {
        ::close(master_);
        ::close(slave_);
    }

    int master_ = -1;
    int slave_ = -1; // kept open so that the line never sees a hang-up
    std::string path_;
};

TEST_F(PseudoTerminal, EveryByteValuePassesUnchangedBothWays)
{
    PosixSerialLine line(path_);
    ASSERT_TRUE(line.open());
    std::vector<std::uint8_t> all(256);
    for (int i = 0; i < 256; ++i)
        all[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i);

    ASSERT_EQ(::write(master_, all.data(), all.size()), 256);
    std::vector<std::uint8_t> received;
    const auto deadline = Clock::now() + 5s;
    while (received.size() < all.size() && Clock::now() < deadline) {
        auto bytes = line.read(deadline);
        ASSERT_TRUE(bytes);
        received.insert(received.end(), bytes->begin(), bytes->end());
    }
    EXPECT_EQ(received, all);

    ASSERT_TRUE(line.write(all));
    std::vector<std::uint8_t> back(256);
    std::size_t got = 0;
    while (got < back.size()) {
        const ssize_t n = ::read(master_, back.data() + got, back.size() - got);
        ASSERT_GT(n, 0);
        got += static_cast<std::size_t>(n);
    }
    EXPECT_EQ(back, all);
}

TEST_F(PseudoTerminal, SilenceEndsAtTheDeadlineWithNothing)
{
    PosixSerialLine line(path_);
    ASSERT_TRUE(line.open());
    const auto start = Clock::now();
    auto bytes = line.read(start + 120ms);
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->empty());
    EXPECT_GE(Clock::now() - start, 120ms) << "returned before the deadline";
}

TEST_F(PseudoTerminal, DataEndsTheWaitBeforeTheDeadline)
{
    PosixSerialLine line(path_);
    ASSERT_TRUE(line.open());
    const std::uint8_t reply[] = {0x81, 0x82, 13};
    ASSERT_EQ(::write(master_, reply, sizeof reply), 3);
    const auto start = Clock::now();
    auto bytes = line.read(start + 30s);
    ASSERT_TRUE(bytes);
    EXPECT_FALSE(bytes->empty());
    // A wait that ignored the data would only end after 30 s.
    EXPECT_LT(Clock::now() - start, 10s);
}

TEST_F(PseudoTerminal, FlushDropsWhatWaits)
{
    PosixSerialLine line(path_);
    ASSERT_TRUE(line.open());
    const std::uint8_t stale[] = {1, 2, 3};
    ASSERT_EQ(::write(master_, stale, sizeof stale), 3);
    ::usleep(50000);
    line.flushInput();
    auto bytes = line.read(Clock::now() + 50ms);
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->empty());
}

TEST(PosixSerialLine, MissingDeviceAndNonTerminalAreRefused)
{
    PosixSerialLine missing("/dev/no-such-serial-port");
    const auto opened = missing.open();
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().find("/dev/no-such-serial-port"), std::string::npos);
    EXPECT_FALSE(missing.isOpen());

    PosixSerialLine notATerminal("/dev/null");
    EXPECT_FALSE(notATerminal.open());
    EXPECT_FALSE(notATerminal.read(Clock::now()));
}

} // namespace
} // namespace rm8::link
