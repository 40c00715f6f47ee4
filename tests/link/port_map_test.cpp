#include <gtest/gtest.h>

#include "link/port_map.h"

namespace rm8::link {
namespace {

struct DeviceCase {
    const char* name;
    const char* portText;
    std::optional<std::string> device;
};

class PortMapDevice : public testing::TestWithParam<DeviceCase> {};

TEST_P(PortMapDevice, FollowsTheLastDigitOfTheListText)
{
    PortMap map = PortMap::platformDefault();
    ASSERT_TRUE(map.assign("COM 2=/dev/ttyUSB0"));
    EXPECT_EQ(map.device(GetParam().portText), GetParam().device);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PortMapDevice,
    testing::Values(DeviceCase{"Com1IsTheFirstSerialPort", "COM 1", "/dev/ttyS0"},
                    DeviceCase{"Com3", "COM 3", "/dev/ttyS2"}, DeviceCase{"Com9", "COM 9", "/dev/ttyS8"},
                    DeviceCase{"ReassignedCom2", "COM 2", "/dev/ttyUSB0"},
                    DeviceCase{"Com0HasNoDevice", "COM 0", std::nullopt},
                    DeviceCase{"PathIsItsOwnDevice", "/dev/pts/7", "/dev/pts/7"},
                    DeviceCase{"EmptyTextHasNoDevice", "", std::nullopt}),
    [](const auto& param) { return std::string(param.param.name); });

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

TEST(PortMap, ADeviceMayContainAnEqualsSign)
{
    PortMap map;
    ASSERT_TRUE(map.assign("COM 4=/dev/serial/by-id/usb-x=y"));
    EXPECT_EQ(map.device("COM 4"), "/dev/serial/by-id/usb-x=y");
    EXPECT_EQ(map.device("COM 1"), std::nullopt);
}

} // namespace
} // namespace rm8::link
