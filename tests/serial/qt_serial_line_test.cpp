// The QSerialPort line keeps every promise of a serial line, and carries a
// whole session with a simulated station.

#include <QCoreApplication>

#include <gtest/gtest.h>

#include "link/fake_station.h"
#include "link/session.h"
#include "link/station_flows.h"
#include "serial/qt_serial_line.h"
#include "settings/used_size.h"
#include "sim/pty_station.h"
#include "support/serial_line_contract.h"

namespace rm8::test {

template <>
std::unique_ptr<serial::QtSerialLine> makeLineFor<serial::QtSerialLine>(const std::string& path)
{
    return std::make_unique<serial::QtSerialLine>(QString::fromStdString(path));
}

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, SerialLineContract, testing::Types<serial::QtSerialLine>);

} // namespace rm8::test

namespace rm8::serial {
namespace {

using namespace std::chrono_literals;
using link::Clock;

TEST(QtSerialLine, WritesAndReadsAStationThroughTheWholeSession)
{
    sim::StationProfile profile;
    profile.memorySizeCode = 2; // 448 bytes of settings
    sim::PtyStation station{sim::StationSimulator(profile)};
    station.start();

    QtSerialLine line(QString::fromStdString(station.path()));
    test::RecordingInteraction ui;
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
