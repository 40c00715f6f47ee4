#pragma once
// What stands in the way of a write, in the order the technician meets it:
// the first output that could be taken for another, settings too big for
// the station's memory, then the rules the settings break, which only an
// explicit Ano lets through. The window and rm8ctl take the same gates in
// the same order, and only a write that will go ahead is worth a backup.

#include <cstddef>
#include <optional>

#include "editing/configuration_check.h"
#include "editing/output_cross_check.h"
#include "settings/station_settings.h"

namespace rm8 {

struct WritePlan {
    std::optional<OutputConflict> conflict; // the first, where the write stops
    std::optional<Violation> tooBig;
    // Violations of the station's rules; counted only when nothing above
    // refuses the write already.
    std::size_t violations = 0;

    // The write stops with the flow's own message.
    bool refused() const { return conflict.has_value() || tooBig.has_value(); }
};

// eepromSize: the settings area of the identified station, when known.
WritePlan planWrite(const StationSettings& settings, std::optional<std::size_t> eepromSize);

} // namespace rm8
