#pragma once
// rm8ctl's commands on a station: identify, read and write, each running the
// session and transfer flows of the main window with the command line's
// answers to their questions.

#include <ostream>

#include "ctl/arguments.h"
#include "link/port_map.h"

namespace rm8::ctl {

// The work was done, but the station did not answer the request to leave
// programming mode: it probably still waits in it and does not do its job.
inline constexpr int kLeftInProgrammingMode = 3;

int identifyCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int readCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int writeCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);

// The port table: "COM n" is /dev/ttyS(n-1) unless --com "COM n=DEVICE,..."
// says otherwise; anything that is not "COM n" is taken as a device path.
Expected<link::PortMap, std::string> portMap(const Arguments& arguments);

} // namespace rm8::ctl
