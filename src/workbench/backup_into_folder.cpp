#include "workbench/backup_into_folder.h"

#include <ctime>
#include <string>
#include <system_error>

#include "link/station_backup.h"

namespace rm8 {
namespace {

std::tm localNow()
{
    const std::time_t now = std::time(nullptr);
    std::tm local {};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    return local;
}

} // namespace

FlowOutcome backUpIntoFolder(
    link::LineIo& io, std::size_t eepromSize, const std::filesystem::path& folder, std::string_view stationName)
{
    Interaction& ui = io.ui();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error || !std::filesystem::is_directory(folder, error)) {
        ui.message(MessageIcon::Stop, "Nelze vytvořit složku záloh " + folder.string());
        return FlowOutcome::Failed;
    }
    const std::filesystem::path file = folder / link::backupFileName(localNow(), stationName);
    if (const FlowOutcome saved = link::backupStation(io, eepromSize, file); saved != FlowOutcome::Done)
        return saved;
    ui.message(MessageIcon::Information, "Dosavadní obsah stanice byl uložen do souboru " + file.string());
    return FlowOutcome::Done;
}

} // namespace rm8
