#pragma once
// The questions before the program ends, one path for both ways out: the
// exit command (btKonec), where Storno keeps the program running, and the
// closing of the window, which cannot refuse the station's question.
// Settings never kept are offered for saving first, then an open session
// for deactivation.

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "flow/interaction.h"
#include "workbench/workbench.h"

namespace rm8 {

inline constexpr std::string_view kStillProgramming
    = "Zařízení nebylo deaktivováno a je zřejmě stále v programovacím módu. Má se zařízení před ukončením "
      "programu deaktivovat?";
inline constexpr std::string_view kUnsavedSettings
    = "Nastavení bylo změněno a nebylo uloženo do souboru ani do EEPROM. Uložit je před ukončením programu do souboru?";

inline constexpr std::string_view kUnsavedBeforeOpening
    = "Nastavení bylo změněno a nebylo uloženo do souboru ani do EEPROM. Uložit je před otevřením jiného souboru do "
      "souboru?";

enum class ExitBy { Command, ClosingWindow };

// The file to save to, or nothing when the technician cancelled the dialog.
using SaveFileChooser = std::function<std::optional<std::filesystem::path>()>;

// Settings never kept offered for saving with the question given; true
// when they were saved, were not changed or may go, false when the
// technician chose to stay (Storno, or no file chosen, or the save failed).
bool savedOrLeftAlone(Workbench& bench, Interaction& ui, std::string_view question, const SaveFileChooser& chooseFile);

// True when the program may end; false when the technician chose to stay.
bool clearToExit(Workbench& bench, Interaction& ui, ExitBy by, const SaveFileChooser& chooseFile);

} // namespace rm8
