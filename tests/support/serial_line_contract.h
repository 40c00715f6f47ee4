#pragma once
// What every serial line promises the link, checked on a pseudo-terminal: the
// test holds the station's end (the master) and the line opens the other end
// by its path. The last case carries a session with the simulated station:
// the link's one run over a real terminal. A test file instantiates the
// suite for its line type and says how to make one:
//
//   template <> std::unique_ptr<MyLine> makeLineFor<MyLine>(const std::string& path) { ... }
//   INSTANTIATE_TYPED_TEST_SUITE_P(My, SerialLineContract, testing::Types<MyLine>);

#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "link/block_transfer.h"
#include "link/session.h"
#include "sim/pty_station.h"
#include "support/recording_interaction.h"

namespace rm8::test {

using namespace std::chrono_literals;
using link::Clock;

template <class Line> std::unique_ptr<Line> makeLineFor(const std::string& path);
// The name by which a line's errors call the device at path: the path itself,
// unless the line type reaches devices by other names (a COM port under Wine).
template <class Line> std::string portNameFor(const std::string& path)
{
    return path;
}

template <class Line> class SerialLineContract : public testing::Test {
protected:
    void SetUp() override
    {
        char name[256] = {};
        ASSERT_EQ(::openpty(&master_, &slave_, name, nullptr, nullptr), 0);
        line_ = makeLineFor<Line>(name);
        ASSERT_TRUE(line_->open());
    }
    void TearDown() override
    {
        line_.reset();
        ::close(master_);
        ::close(slave_);
    }
    // What arrives within the wait; the wait must not end early.
    std::vector<std::uint8_t> readFor(Clock::duration wait)
    {
        const auto deadline = Clock::now() + wait;
        const auto bytes = line_->read(deadline);
        EXPECT_TRUE(bytes && (!bytes->empty() || Clock::now() >= deadline));
        return bytes ? *bytes : std::vector<std::uint8_t>{};
    }

    std::unique_ptr<Line> line_;
    int master_ = -1;
    int slave_ = -1; // kept open so that the line sees no hang-up
};

TYPED_TEST_SUITE_P(SerialLineContract);

TYPED_TEST_P(SerialLineContract, OpensRawAt9600BaudEightDataBitsNoParityOneStopBit)
{
    termios mode{};
    ASSERT_EQ(::tcgetattr(this->slave_, &mode), 0);
    EXPECT_EQ(::cfgetospeed(&mode), speed_t{B9600});
    EXPECT_EQ(mode.c_cflag & (CSIZE | PARENB | CSTOPB), tcflag_t{CS8});
    EXPECT_EQ(mode.c_lflag & (ICANON | ECHO | ISIG | IEXTEN), 0u);
    EXPECT_EQ(mode.c_iflag & (ICRNL | INLCR | IGNCR | ISTRIP | IXON | IXOFF), 0u);
    EXPECT_EQ(mode.c_oflag & OPOST, 0u);
}

TYPED_TEST_P(SerialLineContract, CarriesEveryByteValueBothWaysAndDropsWhatWaitsOnAFlush)
{
    std::vector<std::uint8_t> all(256), in, out(256);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<std::uint8_t>(i);
    ASSERT_EQ(::write(this->master_, all.data(), all.size()), 256);
    const auto start = Clock::now();
    for (int reads = 0; in.size() < all.size() && reads < 100; ++reads) {
        const auto chunk = this->readFor(5s);
        in.insert(in.end(), chunk.begin(), chunk.end());
    }
    EXPECT_EQ(in, all);
    EXPECT_LT(Clock::now() - start, 4s) << "data ends a wait";
    ASSERT_TRUE(this->line_->write(all));
    for (std::size_t got = 0; got < out.size();) {
        const ssize_t n = ::read(this->master_, out.data() + got, out.size() - got);
        ASSERT_GT(n, 0);
        got += static_cast<std::size_t>(n);
    }
    EXPECT_EQ(out, all);
    EXPECT_TRUE(this->readFor(100ms).empty());
    ASSERT_EQ(::write(this->master_, all.data(), 3), 3);
    ::usleep(50000);
    this->line_->flushInput();
    EXPECT_TRUE(this->readFor(50ms).empty());
}

TYPED_TEST_P(SerialLineContract, EndsAWaitWithoutDataWhenUnpluggedAndRefusesWhenClosedOrMissing)
{
    ::close(std::exchange(this->master_, -1));
    const auto start = Clock::now();
    const auto bytes = this->line_->read(start + 300ms);
    EXPECT_TRUE(!bytes || bytes->empty()) << "a failure, or a wait that runs out";
    EXPECT_LT(Clock::now() - start, 5s);
    this->line_->close();
    EXPECT_FALSE(this->line_->isOpen());
    EXPECT_FALSE(this->line_->read(Clock::now()));
    EXPECT_FALSE(this->line_->write(std::vector<std::uint8_t>{1}));
    const auto missing = makeLineFor<TypeParam>("/dev/no-such-serial-port");
    const auto opened = missing->open();
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().find(portNameFor<TypeParam>("/dev/no-such-serial-port")), std::string::npos)
        << opened.error();
}

TYPED_TEST_P(SerialLineContract, CarriesASessionWithTheSimulatedStation)
{
    sim::PtyStation station{sim::StationSimulator({2151298, 1, 0, 2, 4})}; // 448 bytes
    station.start();
    const auto line = makeLineFor<TypeParam>(station.path());
    RecordingInteraction ui;
    link::LineIo io(*line, ui);
    ASSERT_EQ(link::activateLink(io, "COM 1").state, link::ConnectionState::Active);
    EepromImage image, back;
    for (std::size_t a = 0; a < 448; ++a)
        image.putByte(a, static_cast<long long>(a * 7 % 256));
    ASSERT_TRUE(link::BlockTransfer(io, image).writeAllBlocks(440, true));
    ASSERT_TRUE(link::BlockTransfer(io, back).readAllBlocks(448));
    for (std::size_t a = 0; a < 448; ++a)
        ASSERT_EQ(back.byte(a), a >= 64 && a < 128 ? 0xFF : image.byte(a)) << a;
    EXPECT_TRUE(link::deactivateLink(io));
    EXPECT_FALSE(line->isOpen());
}

REGISTER_TYPED_TEST_SUITE_P(SerialLineContract, OpensRawAt9600BaudEightDataBitsNoParityOneStopBit,
    CarriesEveryByteValueBothWaysAndDropsWhatWaitsOnAFlush,
    EndsAWaitWithoutDataWhenUnpluggedAndRefusesWhenClosedOrMissing, CarriesASessionWithTheSimulatedStation);

} // namespace rm8::test
