// The port list of rm8ctl ports on Linux, from a folder laid out as /dev and
// /sys are: by-id links to ttys, each tty's device inside its USB adapter,
// which names its vendor, product and maker (or leaves some out).

#include <fstream>

#include <gtest/gtest.h>

#include "link/system_ports.h"
#include "support/test_data.h"

namespace rm8::test {
namespace {

namespace fs = std::filesystem;

struct Adapter {
    const char* byId;
    const char* tty;
    const char* usbFiles; // "idVendor=0403;idProduct=6001;product=...": none for a port without USB
    const char* shown;
};

const Adapter kAdapters[] = {
    { "usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0", "ttyUSB0",
        "idVendor=0403;idProduct=6001;product=FT232R USB UART;manufacturer=FTDI",
        "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0 – FT232R USB UART (FTDI), USB 0403:6001" },
    { "usb-Prolific_PL2303-if00-port0", "ttyUSB1",
        "idVendor=067b;idProduct=2303;product=Prolific PL2303 Serial;manufacturer=Prolific",
        "/dev/serial/by-id/usb-Prolific_PL2303-if00-port0 – Prolific PL2303 Serial, USB 067b:2303" },
    { "usb-1a86_USB_Serial-if00-port0", "ttyUSB2", "idVendor=1a86;idProduct=7523",
        "/dev/serial/by-id/usb-1a86_USB_Serial-if00-port0 – USB 1a86:7523" },
    { "usb-maker_only-if00", "ttyACM0", "idVendor=2341;idProduct=0043;manufacturer=Arduino",
        "/dev/serial/by-id/usb-maker_only-if00 – Arduino, USB 2341:0043" },
    { "pci-serial-card", "ttyS4", "", "/dev/serial/by-id/pci-serial-card" },
};

void writeUsbFiles(const fs::path& folder, std::string files)
{
    for (std::size_t start = 0; start < files.size();) {
        const std::size_t end = std::min(files.find(';', start), files.size());
        const std::string entry = files.substr(start, end - start);
        const std::size_t equals = entry.find('=');
        std::ofstream(folder / entry.substr(0, equals)) << entry.substr(equals + 1) << '\n';
        start = end + 1;
    }
}

TEST(SystemPorts, ByIdNamesWithTheUsbAdaptersProductMakerAndIds)
{
    ScratchDir root;
    fs::create_directories(root / "dev/serial/by-id");
    for (const Adapter& adapter : kAdapters) {
        // /sys/devices/<usb device>/<interface>/<tty>, as the kernel nests them.
        const fs::path usb = root / ("sys/devices/pci0/usb1/" + std::string(adapter.tty));
        const fs::path ttyDevice = usb / "1-1:1.0" / adapter.tty;
        fs::create_directories(ttyDevice);
        writeUsbFiles(usb, adapter.usbFiles);
        fs::create_directories(root / "sys/class/tty" / adapter.tty);
        fs::create_directory_symlink(ttyDevice, root / "sys/class/tty" / adapter.tty / "device");
        fs::create_symlink(std::string("../../") + adapter.tty, root / "dev/serial/by-id" / adapter.byId);
    }
    std::vector<std::string> shown, expected;
    for (const auto& port : link::systemSerialPorts(root.path()))
        shown.push_back(link::portListLine(port));
    for (const Adapter& adapter : kAdapters)
        expected.push_back(adapter.shown);
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(shown, expected);
}

TEST(SystemPorts, NoPortsWithoutTheByIdFolder)
{
    ScratchDir root;
    EXPECT_TRUE(link::systemSerialPorts(root.path()).empty());
}

} // namespace
} // namespace rm8::test
