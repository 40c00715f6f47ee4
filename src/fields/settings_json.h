#pragma once
// The settings as one JSON object, keyed by field name, in the catalogue's
// order. Every key is always written; on reading, a missing key keeps the
// field's start-up value and an unknown key, a wrong type or a row array that
// is not eight long is an error naming the key. What is read is settled as
// any loaded configuration is: the battery text is the battery row's
// falling-CL1 text (either key gives both; two different texts are an error).

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "common/expected.h"
#include "settings/station_settings.h"

namespace rm8 {

nlohmann::ordered_json settingsToJson(const StationSettings& settings);
std::string settingsToJsonText(const StationSettings& settings);

Expected<StationSettings, std::string> settingsFromJson(const nlohmann::json& json);
Expected<StationSettings, std::string> parseSettingsJson(std::string_view text);

} // namespace rm8
