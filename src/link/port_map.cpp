#include "link/port_map.h"

namespace rm8::link {

bool isPortListName(std::string_view text)
{
    return text.size() == 5 && text.substr(0, 4) == "COM " && text[4] >= '0' && text[4] <= '9';
}

PortMap PortMap::platformDefault()
{
    PortMap map;
    for (int n = 1; n <= 9; ++n) {
#ifdef _WIN32
        map.set(n, "COM" + std::to_string(n));
#else
        map.set(n, "/dev/ttyS" + std::to_string(n - 1));
#endif
    }
    return map;
}

std::optional<std::string> PortMap::device(std::string_view portText) const
{
    if (!isPortListName(portText))
        return portText.empty() ? std::nullopt : std::optional<std::string>(std::string(portText));
    const auto it = devices_.find(portText.back() - '0');
    if (it == devices_.end() || it->second.empty())
        return std::nullopt;
    return it->second;
}

void PortMap::set(int number, std::string device)
{
    devices_[number] = std::move(device);
}

Expected<void, std::string> PortMap::assign(std::string_view spec)
{
    const auto equals = spec.find('=');
    if (equals == std::string_view::npos)
        return unexpected("'" + std::string(spec) + "': očekáváno \"COM n=ZAŘÍZENÍ\"");
    const std::string_view name = spec.substr(0, equals);
    const std::string_view device = spec.substr(equals + 1);
    if (!isPortListName(name) || name.back() == '0')
        return unexpected("'" + std::string(name) + "': port musí být COM 1 až COM 9");
    if (device.empty())
        return unexpected("'" + std::string(spec) + "': chybí zařízení");
    set(name.back() - '0', std::string(device));
    return {};
}

} // namespace rm8::link
