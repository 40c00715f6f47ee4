#pragma once
// What every serial line promises the link, checked on a pseudo-terminal:
// the test holds the station's end (the master) and the line opens the other
// end by its path. A test file instantiates the suite for its line type and
// says how to make one:
//
//   template <> std::unique_ptr<MyLine> makeLineFor<MyLine>(const std::string& path) { ... }
//   INSTANTIATE_TYPED_TEST_SUITE_P(MyLine, SerialLineContract, testing::Types<MyLine>);

#include <pty.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "link/serial_line.h"

namespace rm8::test {

template <class Line>
std::unique_ptr<Line> makeLineFor(const std::string& path);

template <class Line>
class SerialLineContract : public testing::Test {
protected:
    void SetUp() override
    {
        char name[256] = {};
        ASSERT_EQ(::openpty(&master_, &slave_, name, nullptr, nullptr), 0);
        line_ = makeLineFor<Line>(name);
        const auto opened = line_->open();
        ASSERT_TRUE(opened) << opened.error();
    }
    void TearDown() override
    {
        line_.reset();
        if (master_ >= 0)
            ::close(master_);
        ::close(slave_);
    }

    void hangUp()
    {
        ::close(master_);
        master_ = -1;
    }

    std::vector<std::uint8_t> readUpTo(std::size_t count)
    {
        std::vector<std::uint8_t> received;
        const auto deadline = link::Clock::now() + std::chrono::seconds(5);
        while (received.size() < count && link::Clock::now() < deadline) {
            auto bytes = line_->read(deadline);
            if (!bytes)
                break;
            received.insert(received.end(), bytes->begin(), bytes->end());
        }
        return received;
    }

    std::unique_ptr<Line> line_;
    int master_ = -1;
    int slave_ = -1; // kept open so that the line sees no hang-up
};

TYPED_TEST_SUITE_P(SerialLineContract);

TYPED_TEST_P(SerialLineContract, EveryByteValuePassesUnchangedBothWays)
{
    std::vector<std::uint8_t> all(256);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<std::uint8_t>(i);

    ASSERT_EQ(::write(this->master_, all.data(), all.size()), 256);
    EXPECT_EQ(this->readUpTo(all.size()), all);

    ASSERT_TRUE(this->line_->write(all));
    std::vector<std::uint8_t> back(all.size());
    std::size_t got = 0;
    while (got < back.size()) {
        const ssize_t n = ::read(this->master_, back.data() + got, back.size() - got);
        ASSERT_GT(n, 0);
        got += static_cast<std::size_t>(n);
    }
    EXPECT_EQ(back, all);
}

TYPED_TEST_P(SerialLineContract, SilenceEndsAtTheDeadlineWithNothing)
{
    using namespace std::chrono_literals;
    const auto start = link::Clock::now();
    auto bytes = this->line_->read(start + 120ms);
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->empty());
    EXPECT_GE(link::Clock::now() - start, 120ms) << "returned before the deadline";
}

TYPED_TEST_P(SerialLineContract, DataEndsTheWaitBeforeTheDeadline)
{
    using namespace std::chrono_literals;
    const std::uint8_t reply[] = {0x81, 0x82, 13};
    ASSERT_EQ(::write(this->master_, reply, sizeof reply), 3);
    const auto start = link::Clock::now();
    auto bytes = this->line_->read(start + 30s);
    ASSERT_TRUE(bytes);
    EXPECT_FALSE(bytes->empty());
    // A wait that ignored the data would only end after 30 s.
    EXPECT_LT(link::Clock::now() - start, 10s);
}

TYPED_TEST_P(SerialLineContract, FlushDropsWhatWaits)
{
    using namespace std::chrono_literals;
    const std::uint8_t stale[] = {1, 2, 3};
    ASSERT_EQ(::write(this->master_, stale, sizeof stale), 3);
    ::usleep(50000);
    this->line_->flushInput();
    auto bytes = this->line_->read(link::Clock::now() + 50ms);
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->empty());
}

TYPED_TEST_P(SerialLineContract, AHangUpEndsTheWaitWithoutHanging)
{
    using namespace std::chrono_literals;
    this->hangUp();
    const auto start = link::Clock::now();
    const auto bytes = this->line_->read(start + 300ms);
    // Either the line reports the failure or the wait runs out; what must
    // not happen is data, or a wait far past the deadline.
    if (bytes) {
        EXPECT_TRUE(bytes->empty());
    }
    EXPECT_LT(link::Clock::now() - start, 5s);
}

TYPED_TEST_P(SerialLineContract, ClosedLineRefusesToReadAndWrite)
{
    this->line_->close();
    EXPECT_FALSE(this->line_->isOpen());
    EXPECT_FALSE(this->line_->read(link::Clock::now()));
    const std::uint8_t byte = 1;
    EXPECT_FALSE(this->line_->write({&byte, 1}));
    ASSERT_TRUE(this->line_->open());
    EXPECT_TRUE(this->line_->isOpen());
}

TYPED_TEST_P(SerialLineContract, MissingDeviceIsRefusedWithItsName)
{
    const auto missing = makeLineFor<TypeParam>("/dev/no-such-serial-port");
    const auto opened = missing->open();
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().find("/dev/no-such-serial-port"), std::string::npos) << opened.error();
    EXPECT_FALSE(missing->isOpen());
}

REGISTER_TYPED_TEST_SUITE_P(SerialLineContract, EveryByteValuePassesUnchangedBothWays,
                            SilenceEndsAtTheDeadlineWithNothing, DataEndsTheWaitBeforeTheDeadline,
                            FlushDropsWhatWaits, AHangUpEndsTheWaitWithoutHanging,
                            ClosedLineRefusesToReadAndWrite, MissingDeviceIsRefusedWithItsName);

} // namespace rm8::test
