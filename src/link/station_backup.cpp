#include "link/station_backup.h"

#include <span>

#include "common/atomic_file.h"
#include "common/file_names.h"
#include "flow/messages.h"
#include "link/station_flows.h"
#include "platform/utf8_path.h"
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
        io.ui().message(MessageIcon::Stop, messages::saveFailed(platform::utf8FromPath(file)), written.error());
        return FlowOutcome::Failed;
    }
    return FlowOutcome::Done;
}

std::string backupFileName(const std::tm& localTime, std::string_view stationName)
{
    char stamp[32] = {};
    (void)std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H-%M-%S", &localTime);
    return std::string(stamp) + " " + portableFileStem(stationName, "stanice") + ".eep";
}

} // namespace rm8::link
