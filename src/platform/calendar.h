#pragma once
// Broken-down times, safe to call from any thread on either system (POSIX
// has gmtime_r and localtime_r, Windows gmtime_s and localtime_s).

#include <ctime>

namespace rm8::platform {

std::tm utcTime(std::time_t at);
std::tm localTime(std::time_t at);

} // namespace rm8::platform
