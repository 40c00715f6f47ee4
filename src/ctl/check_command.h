#pragma once
// rm8ctl check: every rule of the station applied to a whole configuration.

#include <ostream>

#include "ctl/arguments.h"
#include "editing/configuration_check.h"

namespace rm8::ctl {

int checkCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);

// One line per violation: the field, its row in brackets, the message.
void printViolations(const CheckReport& report, std::ostream& out, const std::string& prefix = {});

} // namespace rm8::ctl
