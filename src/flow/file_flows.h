#pragma once
// Loading settings from a file and saving them to one, with the progress
// texts, questions and messages the technician sees. The file dialogs stay
// with the caller: these flows start from a chosen path.

#include <filesystem>

#include "flow/decode_step.h"
#include "flow/interaction.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8 {

enum class FlowOutcome {
    Done,
    Declined, // nothing changed, by the user's choice (overwrite refused)
    Rejected, // the file is not a configuration; the settings are unchanged
    Failed,   // an error was reported
};

// The image takes the file's bytes once the file was read (also when its
// header fails); the settings change only when the whole image decoded.
FlowOutcome loadSettingsFile(const std::filesystem::path& path, EepromImage& image, StationSettings& settings,
                             Interaction& ui, const DecodeWatch& watch = {});

// Encodes the settings into the image and writes the file, asking before an
// existing file is replaced.
FlowOutcome saveSettingsFile(const std::filesystem::path& path, EepromImage& image,
                             const StationSettings& settings, Interaction& ui);

} // namespace rm8
