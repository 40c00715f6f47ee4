#pragma once
// A station's previous content kept before it is overwritten: its whole
// settings area read raw (as it is, programmed or not) into a file, so that a
// write that turns out wrong can be undone by writing the file back.

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>

#include "flow/file_flows.h"
#include "link/line_io.h"

namespace rm8::link {

// Reads the station and writes its bytes 0 to eepromSize - 1 to the file
// (through a temporary, so that a failure leaves no half file). A failed or
// cancelled read shows the read flow's message, a file that cannot be written
// the save flow's; nothing is shown on success.
FlowOutcome backupStation(LineIo& io, std::size_t eepromSize, const std::filesystem::path& file);

// The name of a backup file in a folder of backups: local date and time of
// the backup, then the station's name, "2025-03-01 14-05-09 Cerpadlo 2.eep".
// The name as any file system takes it; no name gives "stanice".
std::string backupFileName(const std::tm& localTime, std::string_view stationName);

} // namespace rm8::link
