#include "link/serial_line_factory.h"

#ifdef _WIN32
#include "link/win32_serial_line.h"
#else
#include "link/posix_serial_line.h"
#endif

namespace rm8::link {

std::unique_ptr<SerialLine> makeSerialLine(std::string device)
{
#ifdef _WIN32
    return std::make_unique<Win32SerialLine>(std::move(device));
#else
    return std::make_unique<PosixSerialLine>(std::move(device));
#endif
}

} // namespace rm8::link
