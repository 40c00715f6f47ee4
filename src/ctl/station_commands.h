#pragma once
// rm8ctl's commands on a station: identify, read and write, each running the
// session and transfer flows of the main window with the command line's
// answers to their questions.

#include <ostream>

#include "ctl/arguments.h"

namespace rm8::ctl {

int identifyCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int readCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int writeCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);

// "COM n" names the device of the port table (/dev/ttyS(n-1)); anything else
// is taken as a device path.
std::string devicePath(const std::string& port);

} // namespace rm8::ctl
