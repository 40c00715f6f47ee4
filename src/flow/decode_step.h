#pragma once
// The step every load takes once an image was accepted, from a file or a
// station: "Převádím data ...", the decoding, the progress window hidden.
// Whoever shows the settings is told when it happens, not left to guess it
// from the progress texts.

#include <functional>

#include "common/expected.h"
#include "flow/interaction.h"
#include "settings/codec_error.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8 {

struct DecodeWatch {
    // Before "Převádím data ..." is shown.
    std::function<void()> converting;
    // The settings now hold the decoded configuration; called before the
    // flow's success message, so that it shows over the new settings.
    std::function<void(const StationSettings&)> decoded;
};

Expected<void, CodecError> decodeWithProgress(
    const EepromImage& image, StationSettings& settings, Interaction& ui, const DecodeWatch& watch);

} // namespace rm8
