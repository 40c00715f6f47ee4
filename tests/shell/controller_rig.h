#pragma once
// The main window and its commands against a simulated station on a
// pseudo-terminal (on Windows, which has none, in process behind the line
// the controller opens): "COM 1" is the station, the other port entries have
// no device. Questions of the flows go to a script unless the test gives the
// real interaction.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "shell/main_controller.h"
#ifdef Q_OS_WIN
#include "support/sim_line.h"
#else
#include "sim/pty_station.h"
#endif
#include "support/recording_interaction.h"
#include "ui/main_window.h"
#include "window_tests.h"

namespace rm8::shell::test {

inline QString q(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

#ifdef Q_OS_WIN
// The station of the pseudo-terminal's interface, simulated in process: each
// line the controller opens is a view of the one simulated line, on its clock.
class InProcessStation {
public:
    explicit InProcessStation(sim::StationSimulator simulator)
        : line_(std::move(simulator))
    {
    }
    void start() { }
    const std::string& path() const { return name_; }
    std::vector<std::vector<std::uint8_t>> requests() const { return line_.station.requests(); }
    std::vector<std::uint8_t> eeprom() const { return line_.station.eeprom(); }
    MainController::LineFactory lineFactory()
    {
        return [this](const std::string&) -> std::unique_ptr<link::SerialLine> { return std::make_unique<View>(line_); };
    }

private:
    class View : public link::SerialLine, public link::LineClock {
    public:
        explicit View(rm8::test::SimLine& line)
            : line_(line)
        {
        }
        Expected<void, std::string> open() override { return line_.open(); }
        void close() override { line_.close(); }
        bool isOpen() const override { return line_.isOpen(); }
        Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override { return line_.write(bytes); }
        Expected<std::vector<std::uint8_t>, std::string> read(link::Clock::time_point deadline) override
        {
            return line_.read(deadline);
        }
        void flushInput() override { line_.flushInput(); }
        link::Clock::time_point now() override { return line_.now(); }
        void sleepUntil(link::Clock::time_point until) override { line_.sleepUntil(until); }

    private:
        rm8::test::SimLine& line_;
    };

    rm8::test::SimLine line_;
    std::string name_ = "SIM1";
};
#endif

struct Rig {
    explicit Rig(sim::StationProfile profile = {}, MainController::Options options = {}, Interaction* shown = nullptr,
        std::vector<std::uint8_t> eeprom = {})
        : station(sim::StationSimulator(profile, std::move(eeprom)))
    {
        station.start();
        options.ports = link::PortMap();
        options.ports.set(1, station.path());
#ifdef Q_OS_WIN
        if (!options.lineFactory)
            options.lineFactory = station.lineFactory();
#endif
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
#ifdef Q_OS_WIN
    InProcessStation station;
#else
    sim::PtyStation station;
#endif
    ui::MainWindow window;
    MainController* controller = nullptr; // owned by the window
};

} // namespace rm8::shell::test
