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

// The programming-mode session.
std::string portNotOpened(std::string_view portName);
inline constexpr std::string_view kConnectInstructions =
    "Uveďte zařízení do vypnutého stavu (CPU LED svítí trvale).\r\n"
    "Pokud zařízení není vypnuto, vypnete jej stiskem tlačítka 'GSM OFF'.\r\n"
    "Poté připojte konfigurační kabel a potvrďte 'OK'.";
inline constexpr std::string_view kSearchingStation = "Program se pokouší navázat komunikaci ...";
inline constexpr std::string_view kActivationFailed = "Při pokusu aktivovat spojení nastala chyba.";
inline constexpr std::string_view kUnknownDevice =
    "Připojené zařízení není známo. Je sice povoleno ho naprogramovat, ale za způsobené chyby není ručeno.";
std::string wrongProduct(std::string_view programmableProduct);
std::string oldProcessor(std::string_view minimumVersion);
inline constexpr std::string_view kLeaveFailedQuestion =
    "Při deaktivaci spojení došlo k chybě. Zařízení je zřejmě stále v programovacím módu. Mám přesto přejít do "
    "'Neaktivního stavu'?";

// Reading from and writing to the station.
inline constexpr std::string_view kReadingEeprom = "Načítám data z EEPROM do PC.";
inline constexpr std::string_view kStationReadFailed =
    "Data nebyla úspěšně načtena z EEPROM. Došlo k chybě při načítání bloku dat.";
// The doubled syllable is the station tool's own.
inline constexpr std::string_view kStationReadCancelled = "Načtítání dat z EEPROM do PC bylo stornováno.";
inline constexpr std::string_view kStationNotProgrammed =
    "Data nebyla úspěšně načtena z EEPROM. EEPROM zřejmě není naprogramována.";
inline constexpr std::string_view kStationReadDone = "Data byla úspěšně načtena z EEPROM.";
inline constexpr std::string_view kWritingEeprom = "Ukládám data z PC do EEPROM.";
inline constexpr std::string_view kStationWriteFailed =
    "Data nebyla úspěšně uložena do EEPROM. Došlo k chybě při ukládání bloku do EEPROM.";
inline constexpr std::string_view kStationWriteCancelled = "Ukládání dat z PC do EEPROM bylo stornováno.";
inline constexpr std::string_view kStationWriteDone = "Data byla úspěšně uložena do EEPROM.";

} // namespace rm8::messages
