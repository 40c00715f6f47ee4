#pragma once
// Reading a station's EEPROM into the settings, and writing the settings
// into a station, with every message the technician sees. The session is
// open when they start and stays so.

#include <cstddef>
#include <functional>

#include "flow/decode_step.h"
#include "flow/file_flows.h"
#include "link/line_io.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"

namespace rm8::link {

// The station's whole settings area into the image as it is: no header test
// and no decoding. A failed or cancelled read shows the read flow's message;
// a read that worked shows none.
FlowOutcome readStationImage(LineIo& io, EepromImage& image, std::size_t eepromSize);

// eepromSize: the settings area the station reported (e.g. 8128).
FlowOutcome readStation(LineIo& io, EepromImage& image, StationSettings& settings, std::size_t eepromSize,
                        const DecodeWatch& watch = {});

// What a write passes before anything is sent, after the output cross-check
// and the size check that every write makes.
struct WriteGates {
    // Settings that break the station's rules go only on an explicit Ano.
    // Off where the question was settled before (rm8ctl's --force).
    bool askAboutViolations = false;
    // The station's previous content kept; called only for a write that
    // will go ahead, and anything but Done stops it.
    std::function<FlowOutcome()> backUp;
};

// Cross-checks the outputs, checks the size, passes the gates, encodes and
// writes in three passes; checkWrite reads every block back. Whatever stops
// the write, the image is given back as it came, so that saving it
// afterwards writes the same file as before.
FlowOutcome writeStation(LineIo& io, EepromImage& image, const StationSettings& settings, std::size_t eepromSize,
                         bool checkWrite, const WriteGates& gates = {});

} // namespace rm8::link
