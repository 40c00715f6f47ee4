#pragma once
// rm8ctl's commands on files: decode, encode, info and diff. Each returns the
// program's exit status: 0 success, 1 a difference or a refusal, 2 bad usage
// or bad input.

#include <ostream>

#include "ctl/arguments.h"

namespace rm8::ctl {

enum ExitStatus { kSuccess = 0, kDifferent = 1, kBadInput = 2 };

int decodeCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int encodeCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int infoCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int diffCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);

} // namespace rm8::ctl
