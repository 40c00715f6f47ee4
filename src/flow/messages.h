#pragma once
// The tool's own texts that the core flows show, in one place. They are the
// station tool's fixed Czech texts: do not reword them.

#include <string>
#include <string_view>

namespace rm8::messages {

std::string loadingFile(std::string_view path);
std::string loadFailed(std::string_view path);
inline constexpr std::string_view kConvertingData = "Převádím data ...";
std::string loadSucceeded(std::string_view path);
std::string notEepromFormat(std::string_view path);

std::string savingFile(std::string_view path);
inline constexpr std::string_view kConversionFailed = "Nastala chyba při převodu dat.";
inline constexpr std::string_view kOverwriteQuestion = "Tento soubor již existuje. Mám ho přepsat?";
std::string saveFailed(std::string_view path);

// The write-to-station flow's report of an encoding fault.
inline constexpr std::string_view kEepromConversionFailed =
    "Data nebyla úspěšně uložena do EEPROM. Nastala chyba při převodu dat z formuláře nastavení.";

} // namespace rm8::messages
