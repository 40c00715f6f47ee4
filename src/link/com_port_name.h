#pragma once
// Windows names its serial ports COM1, COM2, ...; only COM1 to COM9 open by
// that plain name, so a line opens every port by its device path "\\.\COMn".

#include <string>
#include <string_view>

namespace rm8::link {

// "COM 12", "COM12" and "com12" are "\\.\COM12"; anything else (a device
// path already, or not a port at all) is returned as it is.
std::string win32DevicePath(std::string_view portText);

} // namespace rm8::link
