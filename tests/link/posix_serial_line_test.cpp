// The POSIX line keeps every promise of a serial line; beyond that it must
// refuse a device that is not a terminal.

#include "link/posix_serial_line.h"
#include "support/serial_line_contract.h"

namespace rm8::test {

template <>
std::unique_ptr<link::PosixSerialLine> makeLineFor<link::PosixSerialLine>(const std::string& path)
{
    return std::make_unique<link::PosixSerialLine>(path);
}

INSTANTIATE_TYPED_TEST_SUITE_P(Posix, SerialLineContract, testing::Types<link::PosixSerialLine>);

TEST(PosixSerialLine, NonTerminalAndMissingDeviceAreRefused)
{
    link::PosixSerialLine notATerminal("/dev/null");
    EXPECT_FALSE(notATerminal.open());
    EXPECT_FALSE(notATerminal.read(link::Clock::now()));

    link::PosixSerialLine nothing("");
    const auto opened = nothing.open();
    ASSERT_FALSE(opened);
    EXPECT_FALSE(opened.error().empty());
}

} // namespace rm8::test
