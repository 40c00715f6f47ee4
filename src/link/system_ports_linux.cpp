#include <algorithm>
#include <fstream>

#include "link/system_ports.h"

namespace rm8::link {
namespace {

namespace fs = std::filesystem;

std::string firstLine(const fs::path& file)
{
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

// The USB device a tty hangs from: the nearest folder above the tty's
// device that names a vendor and a product.
fs::path usbDeviceOf(const fs::path& ttyDevice)
{
    std::error_code error;
    for (fs::path at = fs::canonical(ttyDevice, error); !error && at.has_relative_path(); at = at.parent_path())
        if (fs::exists(at / "idVendor", error) && fs::exists(at / "idProduct", error))
            return at;
    return {};
}

// "FT232R USB UART (FTDI), USB 0403:6001", as far as the adapter tells.
std::string describeUsb(const fs::path& usb)
{
    if (usb.empty())
        return {};
    std::string text = firstLine(usb / "product");
    const std::string maker = firstLine(usb / "manufacturer");
    if (!maker.empty() && text.find(maker) == std::string::npos)
        text += text.empty() ? maker : " (" + maker + ")";
    return text + (text.empty() ? "" : ", ") + "USB " + firstLine(usb / "idVendor") + ":"
        + firstLine(usb / "idProduct");
}

// The sysfs folder of the tty that a /dev link leads to ("ttyUSB0").
fs::path ttyDeviceOf(const fs::path& root, const fs::path& link)
{
    std::error_code error;
    const fs::path target = fs::read_symlink(link, error);
    const fs::path name = (error ? link : target).filename();
    return root / "sys/class/tty" / name / "device";
}

} // namespace

std::vector<SystemPort> systemSerialPorts(const fs::path& root)
{
    std::vector<SystemPort> ports;
    std::error_code error;
    const fs::path byId = root / "dev/serial/by-id";
    for (const auto& entry : fs::directory_iterator(byId, error)) {
        const fs::path shown = fs::path("/dev/serial/by-id") / entry.path().filename();
        ports.push_back({ shown.string(), describeUsb(usbDeviceOf(ttyDeviceOf(root, entry.path()))) });
    }
    std::sort(ports.begin(), ports.end(), [](const SystemPort& a, const SystemPort& b) { return a.device < b.device; });
    return ports;
}

} // namespace rm8::link
