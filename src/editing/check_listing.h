#pragma once
// The whole-configuration check as the window lists it: one entry per
// violation, in the report's order, each naming its field as the window
// shows it; then what the clamps and the UTO prefix would change, marked as
// adjustments. Also the panel's title and the question before a write, with
// the count of errors in correct Czech.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "editing/configuration_check.h"
#include "fields/field_catalogue.h"

namespace rm8 {

struct CheckEntry {
    std::optional<Page> page; // none for the size check, which lives on no page
    std::string field;
    FieldRow row;
    std::string label; // "IN3: Název", or the caption of a single field
    std::string message; // the window's message; for an adjustment "\"30\" -> \"25.5\""
    bool isAdjustment = false;
};

std::vector<CheckEntry> listCheckReport(const CheckReport& report);

// "Kontrola nastavení: bez chyb", "Kontrola nastavení: 1 chyba", "… 3 chyby",
// "… 5 chyb". Adjustments are not errors and are not counted.
std::string checkPanelTitle(std::size_t violations);

// "Nastavení obsahuje 1 chybu (viz Kontrola nastavení). Přesto uložit do
// EEPROM?", with "2 chyby", "5 chyb".
std::string writeQuestion(std::size_t violations);

} // namespace rm8
