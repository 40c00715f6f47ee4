#pragma once
// One step of the editing history: the settings before and after a change
// that the technician can take back as a whole, and the name under which
// it is offered ("Zpět: IN3 Název"). A snapshot of the whole record per
// step: the record is small, and a load or a row dialog changes many fields
// at once.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "fields/table_rows.h"
#include "settings/station_settings.h"

namespace rm8 {

struct SettingsStep {
    std::string name;
    StationSettings before;
    StationSettings after;
};

// Whole configurations put into the window.
inline constexpr std::string_view kLoadStepName = "Načtení ze souboru";
inline constexpr std::string_view kReadStepName = "Čtení ze stanice";

// A field left or clicked: its row's label and its caption ("IN3 Název"),
// the caption alone for a single field, the name itself for a field
// without a caption.
std::string fieldStepName(std::string_view field, FieldRow row);

// A change that came without its field named (text put into a field that
// never had the focus): named after the first field it changed; empty
// when nothing changed.
std::string changeStepName(const StationSettings& before, const StationSettings& after);

// The step from before to after, when they differ.
std::optional<SettingsStep> settingsStep(std::string name, const StationSettings& before, const StationSettings& after);

} // namespace rm8
