// Which device a port of the list opens, and the POSIX line on it: it keeps
// every promise of a serial line, and refuses a device that is not a
// terminal, and a port with no device.

#include "link/port_map.h"
#include "link/posix_serial_line.h"
#include "support/serial_line_contract.h"

namespace rm8::test {

template <> std::unique_ptr<link::PosixSerialLine> makeLineFor<link::PosixSerialLine>(const std::string& path)
{
    return std::make_unique<link::PosixSerialLine>(path);
}

INSTANTIATE_TYPED_TEST_SUITE_P(Posix, SerialLineContract, testing::Types<link::PosixSerialLine>);

TEST(PosixSerialLine, RefusesANonTerminalAndAPortWithoutDevice)
{
    for (const char* path : {"/dev/null", ""}) {
        link::PosixSerialLine line(path);
        const auto opened = line.open();
        ASSERT_FALSE(opened) << path;
        EXPECT_FALSE(opened.error().empty());
        EXPECT_FALSE(line.isOpen());
    }
}

using link::PortMap;

TEST(PortMap, ThePortListTextsLastDigitChoosesTheDevice)
{
    PortMap map = PortMap::platformDefault();
    ASSERT_TRUE(map.assign("COM 2=/dev/ttyUSB0"));
    ASSERT_TRUE(map.assign("COM 4=/dev/serial/by-id/usb-x=y"));
    for (const auto& [text, device] : std::vector<std::pair<const char*, std::optional<std::string>>>{
             {"COM 1", "/dev/ttyS0"}, {"COM 3", "/dev/ttyS2"}, {"COM 9", "/dev/ttyS8"}, {"COM 2", "/dev/ttyUSB0"},
             {"COM 4", "/dev/serial/by-id/usb-x=y"}, {"COM 0", std::nullopt}, {"", std::nullopt},
             {"/dev/pts/7", "/dev/pts/7"}})
        EXPECT_EQ(map.device(text), device) << text;
    EXPECT_EQ(PortMap().device("COM 1"), std::nullopt);
}

TEST(PortMap, AssignRefusesWhatIsNotAPortAndADevice)
{
    PortMap map = PortMap::platformDefault();
    const auto before = map.entries();
    for (const char* bad : {"COM 1", "COM 0=/dev/x", "COM 10=/dev/x", "LPT 1=/dev/x", "COM 1=", "=/dev/x"}) {
        const auto result = map.assign(bad);
        ASSERT_FALSE(result) << bad;
        EXPECT_FALSE(result.error().empty());
    }
    EXPECT_EQ(map.entries(), before);
}

} // namespace rm8::test
