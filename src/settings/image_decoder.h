#pragma once
// Fills the station settings from the image. The decoder checks nothing: a
// fault (an address past 65,535, a text that runs to the end of the image)
// stops it where it stands and leaves the fields filled so far. Fields the
// image does not carry keep their values.

#include "common/expected.h"
#include "settings/codec_error.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8 {

Expected<void, CodecError> decodeImage(const EepromImage& image, StationSettings& settings);

} // namespace rm8
