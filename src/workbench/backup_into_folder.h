#pragma once
// The window's backup before a write: the station's content into a new file
// of the backup folder, named by the time and the station's name, and the
// technician told where it went.

#include <cstddef>
#include <filesystem>
#include <string_view>

#include "flow/file_flows.h"
#include "link/line_io.h"

namespace rm8 {

FlowOutcome backUpIntoFolder(
    link::LineIo& io, std::size_t eepromSize, const std::filesystem::path& folder, std::string_view stationName);

} // namespace rm8
