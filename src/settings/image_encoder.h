#pragma once
// Writes the station settings into the image. Only the bytes of the station's
// layout are written; every other byte keeps its value. On a fault the image
// is left exactly as it was.

#include <cstdint>

#include "common/expected.h"
#include "settings/codec_error.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8 {

struct EncodeSummary {
    std::uint32_t end = 0; // the address just past the end mark
};

Expected<EncodeSummary, CodecError> encodeImage(const StationSettings& settings, EepromImage& image);

} // namespace rm8
