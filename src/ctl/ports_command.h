#pragma once
// rm8ctl ports: the serial ports the system has now, one a line, with what
// each is (the USB adapter, or the device manager's name on Windows).

#include <ostream>

#include "ctl/arguments.h"

namespace rm8::ctl {

int portsCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);

} // namespace rm8::ctl
