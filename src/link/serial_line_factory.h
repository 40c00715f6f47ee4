#pragma once
// The serial line of the system the program runs on, so that the programs
// name a device and never a line type.

#include <memory>
#include <string>

#include "link/serial_line.h"

namespace rm8::link {

// A POSIX device path ("/dev/ttyUSB0") or a Windows port ("COM 12", "COM3",
// "\\.\COM3"); the line is not opened yet.
std::unique_ptr<SerialLine> makeSerialLine(std::string device);

} // namespace rm8::link
