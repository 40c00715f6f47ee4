#pragma once
// A configuration named on the command line: a settings file (*.eep), loaded
// as the main window loads one, or a settings JSON.

#include <filesystem>
#include <string>

#include "common/expected.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8::ctl {

struct Configuration {
    StationSettings settings;
    EepromImage image;          // the file's bytes for a settings file, zeros for JSON
};

bool isJsonPath(const std::filesystem::path& path);

// The error is one line that names the file and says what is wrong.
Expected<Configuration, std::string> loadConfiguration(const std::filesystem::path& path);
Expected<StationSettings, std::string> loadSettingsJson(const std::filesystem::path& path);

} // namespace rm8::ctl
