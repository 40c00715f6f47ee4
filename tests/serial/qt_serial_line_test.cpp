// The QSerialPort line on pseudo-terminals: the same promises as the POSIX
// line (every byte value, waits that end at data or the deadline, flushing)
// and the whole session against a simulated station.

#include <pty.h>
#include <unistd.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include "link/session.h"
#include "link/station_flows.h"
#include "serial/qt_serial_line.h"
#include "settings/used_size.h"
#include "sim/pty_station.h"

namespace rm8::serial {
namespace {

using namespace std::chrono_literals;
using link::Clock;

class PseudoTerminal : public testing::Test {
protected:
    void SetUp() override
    {
        char name[256] = {};
        ASSERT_EQ(::openpty(&master_, &slave_, name, nullptr, nullptr), 0);
        path_ = QString::fromLocal8Bit(name);
    }
    void TearDown() override
    {
        if (master_ >= 0)
            ::close(master_);
        ::close(slave_);
    }

    std::vector<std::uint8_t> readAll(QtSerialLine& line, std::size_t count)
    {
        std::vector<std::uint8_t> received;
        const auto deadline = Clock::now() + 5s;
        while (received.size() < count && Clock::now() < deadline) {
            auto bytes = line.read(deadline);
            if (!bytes)
                break;
            received.insert(received.end(), bytes->begin(), bytes->end());
        }
        return received;
    }

    int master_ = -1;
    int slave_ = -1; // kept open so that the line sees no hang-up
    QString path_;
};

std::vector<std::uint8_t> everyByteValue()
{
    std::vector<std::uint8_t> all(256);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<std::uint8_t>(i);
    return all;
}

TEST_F(PseudoTerminal, OpensADeviceWithoutModemLines)
{
    QtSerialLine line(path_);
    const auto opened = line.open();
    ASSERT_TRUE(opened) << opened.error();
    EXPECT_TRUE(line.isOpen());
    line.close();
    EXPECT_FALSE(line.isOpen());
}

TEST_F(PseudoTerminal, EveryByteValuePassesUnchangedBothWays)
{
    QtSerialLine line(path_);
    ASSERT_TRUE(line.open());
    const auto all = everyByteValue();

    ASSERT_EQ(::write(master_, all.data(), all.size()), 256);
    EXPECT_EQ(readAll(line, all.size()), all);

    ASSERT_TRUE(line.write(all));
    std::vector<std::uint8_t> back(all.size());
    std::size_t got = 0;
    while (got < back.size()) {
        const ssize_t n = ::read(master_, back.data() + got, back.size() - got);
        ASSERT_GT(n, 0);
        got += static_cast<std::size_t>(n);
    }
    EXPECT_EQ(back, all);
}

TEST_F(PseudoTerminal, SilenceEndsAtTheDeadlineAndDataEndsItEarly)
{
    QtSerialLine line(path_);
    ASSERT_TRUE(line.open());
    auto start = Clock::now();
    auto nothing = line.read(start + 120ms);
    ASSERT_TRUE(nothing);
    EXPECT_TRUE(nothing->empty());
    EXPECT_GE(Clock::now() - start, 120ms) << "returned before the deadline";

    const std::uint8_t reply[] = {0x81, 0x82, 13};
    ASSERT_EQ(::write(master_, reply, sizeof reply), 3);
    start = Clock::now();
    auto bytes = line.read(start + 30s);
    ASSERT_TRUE(bytes);
    EXPECT_FALSE(bytes->empty());
    // A wait that ignored the data would only end after 30 s.
    EXPECT_LT(Clock::now() - start, 10s);
}

TEST_F(PseudoTerminal, FlushDropsWhatWaits)
{
    QtSerialLine line(path_);
    ASSERT_TRUE(line.open());
    const std::uint8_t stale[] = {1, 2, 3};
    ASSERT_EQ(::write(master_, stale, sizeof stale), 3);
    ::usleep(50000);
    line.flushInput();
    auto bytes = line.read(Clock::now() + 50ms);
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->empty());
}

TEST_F(PseudoTerminal, AHangUpEndsTheWaitWithoutHanging)
{
    QtSerialLine line(path_);
    ASSERT_TRUE(line.open());
    ::close(master_);
    master_ = -1;
    const auto start = Clock::now();
    const auto bytes = line.read(start + 300ms);
    // Either the line reports the failure or the wait runs out; what must
    // not happen is data or a wait far past the deadline.
    if (bytes) {
        EXPECT_TRUE(bytes->empty());
    }
    EXPECT_LT(Clock::now() - start, 5s);
}

TEST(QtSerialLine, MissingDeviceIsRefusedWithItsName)
{
    QtSerialLine missing(QStringLiteral("/dev/no-such-serial-port"));
    const auto opened = missing.open();
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().find("/dev/no-such-serial-port"), std::string::npos) << opened.error();
    EXPECT_FALSE(missing.isOpen());
    EXPECT_FALSE(missing.read(Clock::now()));
    const std::uint8_t byte = 1;
    EXPECT_FALSE(missing.write({&byte, 1}));
}

// Answers every question Yes and remembers the messages.
class QuietInteraction : public Interaction {
public:
    void showProgress(std::string_view, bool) override {}
    void hideProgress() override {}
    bool cancelRequested() override { return false; }
    void message(MessageIcon, std::string_view text, std::string_view) override { messages.emplace_back(text); }
    Answer ask(MessageIcon, std::string_view, Buttons) override { return Answer::Yes; }

    std::vector<std::string> messages;
};

TEST(QtSerialLine, WritesAndReadsAStationThroughTheWholeSession)
{
    sim::StationProfile profile;
    profile.memorySizeCode = 2; // 448 bytes of settings
    sim::PtyStation station{sim::StationSimulator(profile)};
    station.start();

    QtSerialLine line(QString::fromStdString(station.path()));
    QuietInteraction ui;
    link::LineIo io(line, ui);
    const auto activation = link::activateLink(io, "COM 1");
    ASSERT_EQ(activation.state, link::ConnectionState::Active);
    EXPECT_EQ(activation.identity.memorySize, "   448 byte");

    StationSettings written;
    written.tabJmenoStanice = "Vodárna Hůrka";
    written.tabOUTNazev[0] = "PUMPA";
    EepromImage image;
    ASSERT_EQ(link::writeStation(io, image, written, 448, true), FlowOutcome::Done);

    EepromImage readBack(0xFF);
    StationSettings loaded;
    ASSERT_EQ(link::readStation(io, readBack, loaded, 448), FlowOutcome::Done);
    EXPECT_EQ(loaded.tabJmenoStanice, written.tabJmenoStanice);
    EXPECT_EQ(loaded.tabOUTNazev[0], "PUMPA");
    // Every byte the write sent is what the station now holds.
    const auto used = static_cast<std::ptrdiff_t>(usedSize(written));
    const auto held = station.eeprom();
    ASSERT_GE(held.size(), static_cast<std::size_t>(used));
    EXPECT_TRUE(std::equal(held.begin() + 272, held.begin() + used, image.bytes().begin() + 272));
    EXPECT_TRUE(std::equal(held.begin(), held.begin() + used, readBack.bytes().begin()));

    EXPECT_TRUE(link::deactivateLink(io));
    EXPECT_FALSE(line.isOpen());
}

} // namespace
} // namespace rm8::serial

int main(int argc, char** argv)
{
    // QSerialPort's notifiers want an application object, even unused.
    QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
