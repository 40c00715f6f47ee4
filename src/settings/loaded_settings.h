#pragma once
// What a load leaves in the settings, whatever the configuration came from:
// a settings file, a station or a settings JSON. Every program and every
// flow takes these two steps, so the window, rm8ctl, the check and the
// report see the same settings for the same configuration.

#include "common/expected.h"
#include "settings/codec_error.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8 {

// The image does not carry the battery text: the station sends the battery
// row's falling-CL1 text instead, so a loaded configuration's battery text
// is that one, never a text left over from before.
void takeBatteryTextFromRow(StationSettings& settings);

// Decodes an accepted image into the settings, through a copy: an image that
// stops the decoder half-way leaves the settings as they were, not half of
// one configuration and half of another.
Expected<void, CodecError> decodeLoadedImage(const EepromImage& image, StationSettings& settings);

} // namespace rm8
