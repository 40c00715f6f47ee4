#pragma once
// The main window and its commands against a simulated station on a
// pseudo-terminal: "COM 1" is the station, the other port entries have no
// device. Questions of the flows go to a script unless the test gives the
// real interaction.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "shell/main_controller.h"
#include "sim/pty_station.h"
#include "support/recording_interaction.h"
#include "ui/main_window.h"
#include "window_tests.h"

namespace rm8::shell::test {

inline QString q(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

struct Rig {
    explicit Rig(sim::StationProfile profile = {}, MainController::Options options = {}, Interaction* shown = nullptr,
        std::vector<std::uint8_t> eeprom = {})
        : station(sim::StationSimulator(profile, std::move(eeprom)))
    {
        station.start();
        options.ports = link::PortMap();
        options.ports.set(1, station.path());
        controller = new MainController(window, shown ? *shown : ui, std::move(options));
        window.show();
    }
    template <class W = QAbstractButton> W* widget(const char* name) { return window.findChild<W*>(name); }
    void click(const char* name) { QTest::mouseClick(widget(name), Qt::LeftButton); }
    QString text(const char* name) { return widget<QLabel>(name)->text(); }
    void type(const char* name, const QString& text)
    {
        widget<QLineEdit>(name)->clear();
        QTest::keyClicks(widget<QLineEdit>(name), text);
    }
    StationSettings fields() const
    {
        StationSettings settings;
        window.readSettings(settings);
        return settings;
    }
    std::size_t requests(std::uint8_t code) const
    {
        const auto all = station.requests();
        return std::size_t(std::count_if(all.begin(), all.end(), [code](auto& r) { return r.front() == code; }));
    }
    bool activate()
    {
        click("btDEA");
        return widget("btDEA")->text() == QStringLiteral("Deaktivovat");
    }

    rm8::test::RecordingInteraction ui; // outlives the window and its commands
    sim::PtyStation station;
    ui::MainWindow window;
    MainController* controller = nullptr; // owned by the window
};

} // namespace rm8::shell::test
