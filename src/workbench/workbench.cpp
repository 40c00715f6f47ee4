#include "workbench/workbench.h"

#include <string>
#include <utility>

#include "link/station_flows.h"
#include "settings/memory_sizes.h"
#include "workbench/backup_into_folder.h"
#include "workbench/connection_look.h"

namespace rm8 {

Workbench::Workbench(Interaction& ui, LineFactory makeLine)
    : ui_(ui)
    , makeLine_(std::move(makeLine))
{
}

Workbench::~Workbench()
{
    closeSession();
}

void Workbench::startFrom(const StationSettings& settings)
{
    settings_ = settings;
    keep();
}

std::optional<std::size_t> Workbench::eepromSize() const
{
    return memorySizeBytes(identity_.memorySize);
}

void Workbench::activateOrDeactivate(std::string_view portName)
{
    switch (linkCommand(state_)) {
    case LinkCommand::Activate:
        activate(portName);
        break;
    case LinkCommand::Deactivate:
        (void)deactivate();
        break;
    }
}

void Workbench::activate(std::string_view portName)
{
    closeSession();
    line_ = makeLine_ ? makeLine_(portName) : nullptr;
    if (!line_) {
        ui_.message(MessageIcon::Stop, "Nelze otevřít port " + std::string(portName));
        return;
    }
    auto* ownClock = dynamic_cast<link::LineClock*>(line_.get());
    io_ = std::make_unique<link::LineIo>(*line_, ui_, ownClock ? *ownClock : link::steadyClock());
    const link::Activation activation = link::activateLink(*io_, portName);
    if (activation.state == link::ConnectionState::Inactive) {
        closeSession();
        return;
    }
    state_ = activation.state;
    identity_ = activation.identity;
}

bool Workbench::deactivate()
{
    if (io_ && !link::deactivateLink(*io_))
        return false;
    closeSession();
    return true;
}

void Workbench::closeSession()
{
    io_.reset();
    if (line_)
        line_->close();
    line_.reset();
    showInactive();
}

void Workbench::showInactive()
{
    state_ = link::ConnectionState::Inactive;
    identity_ = {};
}

FlowOutcome Workbench::read()
{
    if (!io_ || state_ != link::ConnectionState::Active)
        return FlowOutcome::Declined;
    const FlowOutcome outcome = link::readStation(*io_, image_, settings_, eepromSize().value_or(0), watch_);
    if (outcome == FlowOutcome::Done)
        keep();
    return outcome;
}

WritePlan Workbench::writePlan() const
{
    return planWrite(settings_, eepromSize().value_or(0));
}

FlowOutcome Workbench::write(bool checkWrite, const std::optional<std::filesystem::path>& backupFolder)
{
    if (!io_ || state_ != link::ConnectionState::Active)
        return FlowOutcome::Declined;
    const std::size_t size = eepromSize().value_or(0);
    link::WriteGates gates { .askAboutViolations = true, .backUp = nullptr };
    if (backupFolder)
        gates.backUp = [&] { return backUpIntoFolder(*io_, size, *backupFolder, settings_.tabJmenoStanice); };
    const FlowOutcome outcome = link::writeStation(*io_, image_, settings_, size, checkWrite, gates);
    if (outcome == FlowOutcome::Done)
        keep();
    return outcome;
}

FlowOutcome Workbench::load(const std::filesystem::path& path)
{
    const FlowOutcome outcome = loadSettingsFile(path, image_, settings_, ui_, watch_);
    if (outcome == FlowOutcome::Done)
        keep();
    return outcome;
}

FlowOutcome Workbench::save(const std::filesystem::path& path)
{
    const FlowOutcome outcome = saveSettingsFile(path, image_, settings_, ui_);
    if (outcome == FlowOutcome::Done)
        keep();
    return outcome;
}

std::optional<StationSettings> Workbench::settingsInFile(const std::filesystem::path& path)
{
    EepromImage image;
    StationSettings other;
    if (loadSettingsFile(path, image, other, ui_, { watch_.converting, nullptr }) != FlowOutcome::Done)
        return std::nullopt;
    return other;
}

std::optional<StationSettings> Workbench::settingsInStation()
{
    if (!io_ || state_ != link::ConnectionState::Active)
        return std::nullopt;
    EepromImage image;
    StationSettings other;
    if (link::readStation(*io_, image, other, eepromSize().value_or(0), { watch_.converting, nullptr })
        != FlowOutcome::Done)
        return std::nullopt;
    return other;
}

} // namespace rm8
