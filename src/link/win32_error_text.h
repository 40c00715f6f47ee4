#pragma once
// What a Windows error code means for a serial port, in Czech: the codes a
// port gives when it is missing, taken, refused or pulled out. Plain numbers,
// so that the table is the same on every build.

#include <optional>
#include <string_view>

namespace rm8::link {

// The port's own wording for the codes it knows; nothing for the rest, which
// the system describes itself.
std::optional<std::string_view> serialPortErrorText(unsigned long win32Error);

} // namespace rm8::link
