#include "ctl/configuration_input.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "ctl/cli_interaction.h"
#include "fields/settings_json.h"
#include "flow/file_flows.h"
#include "platform/utf8_path.h"

namespace rm8::ctl {
namespace fs = std::filesystem;

namespace {

// Far more than any configuration needs; a larger file is surely not one.
constexpr std::uintmax_t kMaxJsonBytes = 16u << 20;

std::string named(const fs::path& path, const std::string& what)
{
    return "Soubor '" + platform::utf8FromPath(path) + "': " + what;
}

} // namespace

bool isJsonPath(const fs::path& path)
{
    std::string extension = platform::utf8FromPath(path.extension());
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".json";
}

Expected<StationSettings, std::string> loadSettingsJson(const fs::path& path)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found)
        return unexpected(named(path, "soubor neexistuje"));
    if (status.type() != fs::file_type::regular)
        return unexpected(named(path, "nejde o obyčejný soubor (např. jde o adresář)"));
    if (fs::file_size(path, error) > kMaxJsonBytes)
        return unexpected(named(path, "soubor je příliš velký na nastavení"));
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in && !in.eof())
        return unexpected(named(path, "soubor nelze přečíst"));
    auto settings = parseSettingsJson(text.str());
    if (!settings)
        return unexpected(named(path, settings.error()));
    return *settings;
}

Expected<Configuration, std::string> loadConfiguration(const fs::path& path)
{
    Configuration configuration;
    if (isJsonPath(path)) {
        auto settings = loadSettingsJson(path);
        if (!settings)
            return unexpected(settings.error());
        configuration.settings = *settings;
        return configuration;
    }
    CliInteraction ui(false);
    const FlowOutcome outcome = loadSettingsFile(path, configuration.image, configuration.settings, ui);
    if (outcome != FlowOutcome::Done) {
        const auto& shown = ui.messages();
        return unexpected(shown.empty() ? named(path, "nelze načíst") : shown.back().line());
    }
    return configuration;
}

} // namespace rm8::ctl
