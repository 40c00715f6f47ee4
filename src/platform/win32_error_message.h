#pragma once
// The system's own description of a Windows error code, as UTF-8.

#include <string>

namespace rm8::platform {

// "Access is denied (chyba 5)"; the system's language, the code always.
std::string win32ErrorMessage(unsigned long code);

} // namespace rm8::platform
