#pragma once
// The session behind the main window, without the window: the settings
// being edited and what was last kept of them, the EEPROM image, the link
// to the station and what it said about itself. Every command of the window
// is an operation here, every decision the window used to take from its
// own captions and labels is a typed value here, and the settings change in
// one place (edit and the loads), where an undo history can sit later.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "editing/write_plan.h"
#include "flow/decode_step.h"
#include "flow/file_flows.h"
#include "flow/interaction.h"
#include "link/line_io.h"
#include "link/serial_line.h"
#include "link/session.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8 {

class Workbench {
public:
    // The line for a port of the port list ("COM 1"), closed; nothing when
    // the entry names no device. A line that keeps time of its own (a
    // simulated one) is waited on by its own clock.
    using LineFactory = std::function<std::unique_ptr<link::SerialLine>(std::string_view portName)>;

    Workbench(Interaction& ui, LineFactory makeLine);
    ~Workbench();
    Workbench(const Workbench&) = delete;
    Workbench& operator=(const Workbench&) = delete;

    // --- the settings ---
    const StationSettings& settings() const { return settings_; }
    // The technician's edits; nothing else replaces the settings but the
    // loads and reads below.
    void edit(const StationSettings& settings) { settings_ = settings; }
    // The settings as they start, counted as kept.
    void startFrom(const StationSettings& settings);
    // The settings differ from the last ones loaded, saved, read or written.
    bool modified() const { return settings_ != kept_; }
    // Told when a load or a read put new settings in, before its message;
    // converting before "Převádím data ...", also for a comparison.
    void setDecodeWatch(DecodeWatch watch) { watch_ = std::move(watch); }

    // --- the link ---
    link::ConnectionState connection() const { return state_; }
    bool sessionOpen() const { return io_ != nullptr; }
    const link::StationIdentity& identity() const { return identity_; }
    // The settings area of the identified station; nothing while no station
    // is identified or its memory code is unknown.
    std::optional<std::size_t> eepromSize() const;
    // btDEA: activates where no session is, deactivates where one is.
    void activateOrDeactivate(std::string_view portName);
    void activate(std::string_view portName);
    // True when the link is inactive afterwards.
    bool deactivate();
    // Drops the line without a word to the station (the program ends).
    void closeSession();

    // --- the commands ---
    FlowOutcome read();
    // What the write would meet, in its order.
    WritePlan writePlan() const;
    // backupFolder: where the station's previous content goes first, when
    // the write will go ahead; nothing for no backup.
    FlowOutcome write(bool checkWrite, const std::optional<std::filesystem::path>& backupFolder);
    FlowOutcome load(const std::filesystem::path& path);
    FlowOutcome save(const std::filesystem::path& path);
    // The settings of a file or of the station, read apart: they never
    // become the workbench's settings.
    std::optional<StationSettings> settingsInFile(const std::filesystem::path& path);
    std::optional<StationSettings> settingsInStation();

private:
    void keep() { kept_ = settings_; }
    void showInactive();

    Interaction& ui_;
    LineFactory makeLine_;
    DecodeWatch watch_;

    std::unique_ptr<link::SerialLine> line_;
    std::unique_ptr<link::LineIo> io_;
    link::ConnectionState state_ = link::ConnectionState::Inactive;
    link::StationIdentity identity_;

    EepromImage image_;
    StationSettings settings_;
    StationSettings kept_; // what the last load, save, read or write left
};

} // namespace rm8
