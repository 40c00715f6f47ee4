#pragma once
// Reading a station's EEPROM into the settings, and writing the settings
// into a station, with every message the technician sees. The session is
// open when they start and stays so.

#include <cstddef>

#include "flow/file_flows.h"
#include "link/line_io.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8::link {

// eepromSize: the settings area the station reported (e.g. 8128).
FlowOutcome readStation(LineIo& io, EepromImage& image, StationSettings& settings, std::size_t eepromSize);

// Cross-checks the outputs, checks the size, encodes and writes in three
// passes; checkWrite reads every block back.
FlowOutcome writeStation(LineIo& io, EepromImage& image, const StationSettings& settings, std::size_t eepromSize,
                         bool checkWrite);

} // namespace rm8::link
