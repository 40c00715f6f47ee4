#pragma once
// The used-size figure of the memory display: what the settings take in the
// station's memory. It fixes the settings file's length (one byte short of
// it), the size check and the data pass of a block write. Texts count one
// byte per character, not per UTF-8 byte.

#include <cstddef>

#include "settings/station_settings.h"

namespace rm8 {

std::size_t usedSize(const StationSettings& settings);

} // namespace rm8
