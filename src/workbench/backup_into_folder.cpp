#include "workbench/backup_into_folder.h"

#include <ctime>
#include <string>
#include <system_error>

#include "link/station_backup.h"
#include "platform/calendar.h"
#include "platform/utf8_path.h"

namespace rm8 {
namespace {

std::tm localNow()
{
    return platform::localTime(std::time(nullptr));
}

} // namespace

FlowOutcome backUpIntoFolder(
    link::LineIo& io, std::size_t eepromSize, const std::filesystem::path& folder, std::string_view stationName)
{
    Interaction& ui = io.ui();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error || !std::filesystem::is_directory(folder, error)) {
        ui.message(MessageIcon::Stop, "Nelze vytvořit složku záloh " + platform::utf8FromPath(folder));
        return FlowOutcome::Failed;
    }
    // The station's name is UTF-8; on Windows a narrow name would be taken in
    // the ANSI code page and its Czech letters garbled. Shown with the
    // system's separators throughout.
    const std::filesystem::path file
        = (folder / platform::pathFromUtf8(link::backupFileName(localNow(), stationName))).make_preferred();
    if (const FlowOutcome saved = link::backupStation(io, eepromSize, file); saved != FlowOutcome::Done)
        return saved;
    ui.message(
        MessageIcon::Information, "Dosavadní obsah stanice byl uložen do souboru " + platform::utf8FromPath(file));
    return FlowOutcome::Done;
}

} // namespace rm8
