// The Win32 serial line keeps every promise of a serial line, checked under
// Wine on a pseudo-terminal mapped as a COM port. Ports from COM 10 up, which
// Windows opens only by their device path. Run by the Windows stage of the
// test script, which builds the agent and makes the Wine prefix.

#include "support/serial_line_contract.h"
#include "wine/wine_serial_line.h"

namespace rm8::test {
namespace {

// Which COM port each device path was given.
std::map<std::string, std::string>& portsByDevice()
{
    static std::map<std::string, std::string> ports;
    return ports;
}

} // namespace

template <> std::unique_ptr<WineSerialLine> makeLineFor<WineSerialLine>(const std::string& path)
{
    auto& ports = portsByDevice();
    if (!ports.count(path))
        ports[path] = WineLineAgent::instance().mapPort(10 + static_cast<int>(ports.size()), path);
    return std::make_unique<WineSerialLine>(ports[path]);
}

template <> std::string portNameFor<WineSerialLine>(const std::string& path)
{
    return portsByDevice().at(path);
}

INSTANTIATE_TYPED_TEST_SUITE_P(Win32UnderWine, SerialLineContract, testing::Types<WineSerialLine>);

} // namespace rm8::test
