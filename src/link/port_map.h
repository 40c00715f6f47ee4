#pragma once
// Which device each entry of the port list opens. The window offers "COM 1"
// to "COM 4"; on Linux they stand for /dev/ttyS0 to /dev/ttyS3 unless the
// technician points one elsewhere (a USB adapter, a simulated station).

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "common/expected.h"

namespace rm8::link {

class PortMap {
public:
    // COM n is /dev/ttyS(n-1) on Linux and COMn on Windows, for n = 1 to 9.
    static PortMap platformDefault();

    // The device that a port-list text opens. Only the text's last character
    // counts, as the port digit, so "COM 0" asks for port 0, which has no
    // device. A text that is not of the form "COM n" is a device path itself.
    std::optional<std::string> device(std::string_view portText) const;

    void set(int number, std::string device);
    // "COM 1=/dev/ttyUSB0"; the error says what is wrong with the text.
    Expected<void, std::string> assign(std::string_view spec);

    const std::map<int, std::string>& entries() const { return devices_; }

private:
    std::map<int, std::string> devices_;
};

// True for "COM n" with one digit n: a port-list name rather than a path.
bool isPortListName(std::string_view text);

} // namespace rm8::link
