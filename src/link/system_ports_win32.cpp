#include <algorithm>

#include <windows.h>

#include <setupapi.h>

#include "link/system_ports.h"

namespace rm8::link {
namespace {

// The device manager's class "Ports (COM & LPT)".
constexpr GUID kPortsClass = { 0x4d36e978, 0xe325, 0x11ce, { 0xbf, 0xc1, 0x08, 0x00, 0x2b, 0xe1, 0x03, 0x18 } };

std::string utf8(const std::wstring& wide)
{
    const int size
        = WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), static_cast<int>(wide.size()), text.data(), size, nullptr, nullptr);
    return text;
}

std::wstring registryText(HKEY key, const wchar_t* name)
{
    wchar_t value[256] = {};
    DWORD size = sizeof value - sizeof(wchar_t);
    DWORD type = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(value), &size) != ERROR_SUCCESS
        || type != REG_SZ)
        return {};
    return value;
}

// The COM ports the device manager lists, with their friendly names
// ("USB Serial Port (COM5)").
void addDeviceManagerPorts(std::vector<SystemPort>& ports)
{
    HDEVINFO devices = SetupDiGetClassDevsW(&kPortsClass, nullptr, nullptr, DIGCF_PRESENT);
    if (devices == INVALID_HANDLE_VALUE)
        return;
    SP_DEVINFO_DATA device {};
    device.cbSize = sizeof device;
    for (DWORD i = 0; SetupDiEnumDeviceInfo(devices, i, &device); ++i) {
        HKEY key = SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
        if (key == INVALID_HANDLE_VALUE)
            continue;
        const std::wstring port = registryText(key, L"PortName");
        RegCloseKey(key);
        if (port.rfind(L"COM", 0) != 0)
            continue; // a printer port
        wchar_t name[256] = {};
        const bool named = SetupDiGetDeviceRegistryPropertyW(
            devices, &device, SPDRP_FRIENDLYNAME, nullptr, reinterpret_cast<BYTE*>(name), sizeof name - 2, nullptr);
        ports.push_back({ utf8(port), named ? utf8(name) : std::string() });
    }
    SetupDiDestroyDeviceInfoList(devices);
}

// Ports the system maps without a device manager entry (Wine's, some
// virtual ports): the kernel's own list of serial ports.
void addSerialCommPorts(std::vector<SystemPort>& ports)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    for (DWORD i = 0;; ++i) {
        wchar_t name[256] = {}, value[256] = {};
        DWORD nameSize = 255, valueSize = sizeof value - sizeof(wchar_t), type = 0;
        if (RegEnumValueW(key, i, name, &nameSize, nullptr, &type, reinterpret_cast<BYTE*>(value), &valueSize)
            != ERROR_SUCCESS)
            break;
        const std::string port = utf8(value);
        const bool listed
            = std::any_of(ports.begin(), ports.end(), [&](const SystemPort& p) { return p.device == port; });
        if (type == REG_SZ && !listed)
            ports.push_back({ port, {} });
    }
    RegCloseKey(key);
}

// COM2 before COM10.
bool byPortNumber(const SystemPort& a, const SystemPort& b)
{
    if (a.device.size() != b.device.size())
        return a.device.size() < b.device.size();
    return a.device < b.device;
}

} // namespace

std::vector<SystemPort> systemSerialPorts(const std::filesystem::path&)
{
    std::vector<SystemPort> ports;
    addDeviceManagerPorts(ports);
    addSerialCommPorts(ports);
    std::sort(ports.begin(), ports.end(), byPortNumber);
    return ports;
}

} // namespace rm8::link
