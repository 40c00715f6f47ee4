#include "link/com_port_name.h"

#include <algorithm>
#include <cctype>

namespace rm8::link {
namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The port number's digits of "COM n" / "COMn" in any letter case, or empty.
std::string_view portDigits(std::string_view text)
{
    if (text.size() < 4)
        return {};
    const bool com = std::equal(text.begin(), text.begin() + 3, "COM",
        [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; });
    if (!com)
        return {};
    std::string_view digits = text.substr(3);
    if (digits.front() == ' ')
        digits.remove_prefix(1);
    const bool number = !digits.empty() && digits.front() != '0' && std::all_of(digits.begin(), digits.end(), isDigit);
    return number ? digits : std::string_view();
}

} // namespace

std::string win32DevicePath(std::string_view portText)
{
    const std::string_view digits = portDigits(portText);
    if (digits.empty())
        return std::string(portText);
    return "\\\\.\\COM" + std::string(digits);
}

} // namespace rm8::link
