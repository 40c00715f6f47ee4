#pragma once
// A main window with its commands, wired to a simulated station on a
// pseudo-terminal. Every line the commands open goes through a recorder, so
// a test can read what was sent to the station, request by request.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "link/serial_line.h"
#include "support/recording_interaction.h"
#include "shell/main_controller.h"
#include "sim/pty_station.h"
#include "ui/main_window.h"

namespace rm8::shell::test {

using Bytes = std::vector<std::uint8_t>;

// Passes everything through and keeps what was written.
class RecordingLine : public link::SerialLine {
public:
    RecordingLine(std::unique_ptr<link::SerialLine> inner, std::shared_ptr<Bytes> sent)
        : inner_(std::move(inner)), sent_(std::move(sent))
    {
    }
    Expected<void, std::string> open() override { return inner_->open(); }
    void close() override { inner_->close(); }
    bool isOpen() const override { return inner_->isOpen(); }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        sent_->insert(sent_->end(), bytes.begin(), bytes.end());
        return inner_->write(bytes);
    }
    Expected<Bytes, std::string> read(link::Clock::time_point deadline) override { return inner_->read(deadline); }
    void flushInput() override { inner_->flushInput(); }

private:
    std::unique_ptr<link::SerialLine> inner_;
    std::shared_ptr<Bytes> sent_;
};

inline Bytes readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline std::filesystem::path goldenFile(const std::string& name)
{
    return std::filesystem::path(RM8_TEST_DATA_DIR) / name;
}

// A station's EEPROM holding a settings file, the rest unprogrammed.
inline Bytes eepromWith(const Bytes& file, std::uint8_t sizeCode = 6)
{
    Bytes eeprom(sim::memoryBytes(sizeCode), 0xFF);
    std::copy_n(file.begin(), std::min(file.size(), eeprom.size()), eeprom.begin());
    return eeprom;
}

struct Rig {
    // No station: a port whose device nobody answers on.
    Rig() = default;

    void startStation(sim::StationProfile profile = {}, Bytes eeprom = {}, sim::StationBehaviour behaviour = {})
    {
        station = std::make_unique<sim::PtyStation>(sim::StationSimulator(profile, std::move(eeprom), behaviour));
        station->start();
        ports.set(1, station->path());
    }

    // Builds the window and its commands on the rig's ports; hooks not
    // given by the test are the rig's recorders.
    void build(MainController::Options options = {})
    {
        options.ports = ports;
        if (!options.lineFactory)
            options.lineFactory = [this](const std::string& device) -> std::unique_ptr<link::SerialLine> {
                opened.push_back(device);
                return std::make_unique<RecordingLine>(makeQtSerialLine(device), sent);
            };
        if (!options.fileChooser)
            options.fileChooser = [this](FileDialogKind kind) -> std::optional<QString> {
                chosenKinds.push_back(kind);
                return nextFile;
            };
        if (!options.systemPorts)
            options.systemPorts = [] { return std::vector<SystemPort>{}; };
        window = std::make_unique<ui::MainWindow>();
        controller = new MainController(*window, ui, std::move(options));
        window->show();
    }

    // The data bytes of every request frame sent so far (checksum and
    // terminator removed). Requests are hexadecimal text after their code,
    // so a 13 only ever ends a frame.
    std::vector<Bytes> requests() const
    {
        std::vector<Bytes> frames;
        Bytes current;
        for (const auto byte : *sent) {
            if (byte == 13) {
                if (!current.empty())
                    current.pop_back(); // the checksum
                frames.push_back(current);
                current.clear();
            } else {
                current.push_back(byte);
            }
        }
        return frames;
    }
    std::size_t requestsWithCode(std::uint8_t code) const
    {
        std::size_t count = 0;
        for (const auto& frame : requests())
            count += !frame.empty() && frame.front() == code ? std::size_t{1} : std::size_t{0};
        return count;
    }
    bool leaveRequestSent() const
    {
        for (const auto& frame : requests())
            if (frame == Bytes{6, 170, 85})
                return true;
        return false;
    }

    rm8::test::RecordingInteraction ui; // outlives the window and its commands
    link::PortMap ports = link::PortMap::platformDefault();
    std::unique_ptr<sim::PtyStation> station;
    std::shared_ptr<Bytes> sent = std::make_shared<Bytes>();
    std::vector<std::string> opened;
    std::vector<FileDialogKind> chosenKinds;
    std::optional<QString> nextFile;
    std::unique_ptr<ui::MainWindow> window;
    MainController* controller = nullptr; // owned by the window
};

} // namespace rm8::shell::test
