#pragma once
// rm8ctl report: the settings report of a configuration as UTF-8 text.

#include <ostream>

#include "ctl/arguments.h"

namespace rm8::ctl {

int reportCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);

} // namespace rm8::ctl
