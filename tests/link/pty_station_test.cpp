// The whole way from the flows to a station: the link on a real
// pseudo-terminal, a simulated station on the other end.

#include <gtest/gtest.h>

#include "link/posix_serial_line.h"
#include "link/session.h"
#include "link/station_flows.h"
#include "settings/image_header.h"
#include "settings/used_size.h"
#include "sim/pty_station.h"

namespace rm8::link {
namespace {

// Answers every question Yes and remembers the messages.
class QuietInteraction : public Interaction {
public:
    void showProgress(std::string_view, bool) override { cancelled = false; }
    void hideProgress() override {}
    bool cancelRequested() override { return cancelled; }
    void message(MessageIcon, std::string_view text, std::string_view) override { messages.emplace_back(text); }
    Answer ask(MessageIcon, std::string_view, Buttons) override { return Answer::Yes; }

    std::vector<std::string> messages;
    bool cancelled = false;
};

StationSettings configured()
{
    StationSettings s;
    s.tabJmenoStanice = "Vrt 3";
    s.tabINPNazev[0] = "DVERE";
    s.tabOUTNazev[0] = "PUMPA";
    s.tabOUTZap[0] = "ZAP";
    s.tabOUTVyp[0] = "VYP";
    s.tabTC[0] = "+420602123456";
    s.tabTCPrijem[0] = true;
    s.tabAINCL1Level.fill("0");
    s.tabAINCL2Level = {"100", "100", "100", "100", "100", "100", "100", "27"};
    return s;
}

TEST(PtyStation, ActivateWriteReadAndDeactivate)
{
    sim::StationProfile profile;
    profile.memorySizeCode = 3; // 960 bytes of settings
    sim::PtyStation station{sim::StationSimulator(profile)};
    station.start();

    PosixSerialLine line(station.path());
    QuietInteraction ui;
    LineIo io(line, ui);

    const Activation activation = activateLink(io, "COM 1");
    ASSERT_EQ(activation.state, ConnectionState::Active);
    EXPECT_EQ(activation.identity.product, "RM8");
    EXPECT_EQ(activation.identity.version, "1.0");
    EXPECT_EQ(activation.identity.memorySize, "   960 byte");
    EXPECT_EQ(activation.identity.modem, "TC35 Siemens");
    EXPECT_EQ(station.framesHandled(), 3u) << "attention, identify, configuration";

    // A station that was never programmed reads as such and changes nothing.
    EepromImage image;
    StationSettings settings = configured();
    EXPECT_EQ(readStation(io, image, settings, 960), FlowOutcome::Rejected);
    EXPECT_EQ(ui.messages.back(), "Data nebyla úspěšně načtena z EEPROM. EEPROM zřejmě není naprogramována.");
    EXPECT_EQ(settings, configured());

    EXPECT_EQ(writeStation(io, image, configured(), 960, true), FlowOutcome::Done);
    EXPECT_EQ(ui.messages.back(), "Data byla úspěšně uložena do EEPROM.");
    const auto stored = station.eeprom();
    for (std::size_t a = 64; a < 128; ++a)
        ASSERT_EQ(stored[a], 0xFF) << "address " << a << " must never be written";

    EepromImage readBack(0x55);
    StationSettings fromStation;
    EXPECT_EQ(readStation(io, readBack, fromStation, 960), FlowOutcome::Done);
    EXPECT_EQ(ui.messages.back(), "Data byla úspěšně načtena z EEPROM.");
    EXPECT_EQ(fromStation, configured());
    EXPECT_TRUE(imageHeaderValid(readBack));

    EXPECT_TRUE(deactivateLink(io));
    EXPECT_FALSE(line.isOpen());
}

TEST(PtyStation, SettingsLargerThanTheMemoryAreNotWritten)
{
    sim::StationProfile profile;
    profile.memorySizeCode = 2;
    sim::PtyStation station{sim::StationSimulator(profile)};
    station.start();
    PosixSerialLine line(station.path());
    QuietInteraction ui;
    LineIo io(line, ui);
    ASSERT_EQ(activateLink(io, "COM 1").state, ConnectionState::Active);

    StationSettings big = configured();
    big.tabJmenoStanice.assign(100, 'x');
    EepromImage image;
    const std::size_t framesBefore = station.framesHandled();
    EXPECT_EQ(writeStation(io, image, big, 448, false), FlowOutcome::Rejected);
    EXPECT_EQ(ui.messages.back(),
              "Velikost dat v nastavení (" + std::to_string(usedSize(big)) + ") je větší než je možno vložit do EEPROM (   448).");
    EXPECT_EQ(station.framesHandled(), framesBefore) << "nothing may reach the station";
}

} // namespace
} // namespace rm8::link
