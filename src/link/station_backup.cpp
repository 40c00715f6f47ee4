#include "link/station_backup.h"

#include <span>

#include "common/atomic_file.h"
#include "flow/messages.h"
#include "link/station_flows.h"
#include "settings/eeprom_image.h"

namespace rm8::link {

FlowOutcome backupStation(LineIo& io, std::size_t eepromSize, const std::filesystem::path& file)
{
    EepromImage image(0xFF);
    if (const FlowOutcome read = readStationImage(io, image, eepromSize); read != FlowOutcome::Done)
        return read;
    const auto bytes = image.bytes().first(std::min(eepromSize, image.bytes().size()));
    if (auto written = writeFileAtomically(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        !written) {
        io.ui().message(MessageIcon::Stop, messages::saveFailed(file.string()), written.error());
        return FlowOutcome::Failed;
    }
    return FlowOutcome::Done;
}

std::string backupFileName(const std::tm& localTime, std::string_view stationName)
{
    char stamp[32] = {};
    (void)std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H-%M-%S", &localTime);
    std::string name;
    for (const char c : stationName) {
        const auto u = static_cast<unsigned char>(c);
        // Bytes of 128 and above are kept: they are UTF-8 letters.
        name += u < 32 || std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos ? '_' : c;
    }
    const auto first = name.find_first_not_of(" .");
    name = first == std::string::npos ? std::string("stanice") : name.substr(first);
    while (name.back() == ' ' || name.back() == '.')
        name.pop_back();
    return std::string(stamp) + " " + name + ".eep";
}

} // namespace rm8::link
