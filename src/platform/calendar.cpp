#include "platform/calendar.h"

namespace rm8::platform {

std::tm utcTime(std::time_t at)
{
    std::tm broken {};
#ifdef _WIN32
    gmtime_s(&broken, &at);
#else
    gmtime_r(&at, &broken);
#endif
    return broken;
}

std::tm localTime(std::time_t at)
{
    std::tm broken {};
#ifdef _WIN32
    localtime_s(&broken, &at);
#else
    localtime_r(&at, &broken);
#endif
    return broken;
}

} // namespace rm8::platform
