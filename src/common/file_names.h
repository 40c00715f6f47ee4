#pragma once
// File names made from what a technician typed (a station's name), so that
// every file system takes them, Windows' included.

#include <string>
#include <string_view>

namespace rm8 {

// The name with each character a file name cannot hold ("/\:*?"<>|" and
// control characters) made "_", without leading or trailing blanks and dots,
// and with "_" after a name that Windows keeps for a device (CON, NUL, COM1,
// LPT1, ...). An empty result gives the fallback. UTF-8 letters are kept.
std::string portableFileStem(std::string_view name, std::string_view fallback);

} // namespace rm8
