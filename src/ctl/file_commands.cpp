#include "ctl/file_commands.h"

#include <cstdio>

#include "common/atomic_file.h"
#include "ctl/check_command.h"
#include "ctl/cli_interaction.h"
#include "ctl/configuration_input.h"
#include "fields/settings_diff.h"
#include "fields/settings_json.h"
#include "fields/table_rows.h"
#include "flow/file_flows.h"
#include "flow/messages.h"
#include "platform/utf8_path.h"
#include "settings/image_encoder.h"
#include "settings/image_layout.h"
#include "settings/image_survey.h"
#include "settings/loaded_settings.h"
#include "settings/settings_file.h"
#include "settings/used_size.h"

namespace rm8::ctl {
namespace {

int fail(std::ostream& err, const std::string& line, int status = kBadInput)
{
    err << "rm8ctl: " << line << '\n';
    return status;
}

bool expectOperands(const Arguments& arguments, std::size_t count, std::ostream& err)
{
    if (arguments.operands.size() == count)
        return true;
    err << "rm8ctl: " << arguments.command << ": očekáváno " << fileNames(count) << ", zadáno "
        << arguments.operands.size() << " (viz rm8ctl --help)\n";
    return false;
}

std::string hex(unsigned value, int digits)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "0x%0*X", digits, value);
    return buffer;
}

} // namespace

int decodeCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (!expectOperands(arguments, 1, err))
        return kBadInput;
    auto configuration = loadConfiguration(platform::pathFromUtf8(arguments.operands[0]));
    if (!configuration)
        return fail(err, configuration.error());
    const std::string json = settingsToJsonText(configuration->settings);
    if (const auto target = arguments.value("--out")) {
        auto written = writeFileAtomically(platform::pathFromUtf8(*target), json);
        if (!written)
            return fail(err, "Soubor '" + *target + "' nelze zapsat: " + written.error());
        return kSuccess;
    }
    out << json;
    return kSuccess;
}

int encodeCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    (void)out;
    if (!expectOperands(arguments, 1, err))
        return kBadInput;
    const auto target = arguments.value("--out");
    if (!target)
        return fail(err, "encode: chybí volba --out SOUBOR.eep");
    auto settings = loadSettingsJson(platform::pathFromUtf8(arguments.operands[0]));
    if (!settings)
        return fail(err, settings.error());
    EepromImage image;
    if (const auto base = arguments.value("--base")) {
        auto read = readImageFile(platform::pathFromUtf8(*base), image);
        if (!read)
            return fail(err, "Základní obraz '" + *base + "': " + read.error().describe());
    }
    // Settings that cannot be encoded at all are bad input; settings that
    // break the station's rules are refused. The first is told first.
    EepromImage trial = image;
    if (auto encoded = encodeImage(*settings, trial); !encoded)
        return fail(err, "Soubor '" + arguments.operands[0] + "' nebyl uložen do '" + *target
                             + "': " + std::string(messages::kConversionFailed) + " (" + encoded.error().describe()
                             + ")");
    // A configuration the station would misread is not saved unless asked.
    if (const CheckReport report = checkConfiguration(*settings); !report.clean() && !arguments.has("--force")) {
        printViolations(report, err, "rm8ctl: Soubor '" + arguments.operands[0] + "': ");
        return fail(err, "Soubor '" + *target + "' nebyl zapsán: nastavení porušují pravidla stanice (--force je uloží i tak).",
                    kDifferent);
    }

    CliInteraction ui(arguments.has("--yes"));
    switch (saveSettingsFile(platform::pathFromUtf8(*target), image, *settings, ui)) {
    case FlowOutcome::Done:
        return kSuccess;
    case FlowOutcome::Declined:
        return fail(err, "Soubor '" + *target + "' již existuje a nebyl přepsán (přepsání povolí volba --yes).",
                    kDifferent);
    case FlowOutcome::Rejected:
    case FlowOutcome::Failed:
        break;
    }
    // The conversion message names no file; the command line says which
    // settings could not be converted and that nothing was written.
    const auto& shown = ui.messages();
    const std::string reason = shown.empty() ? std::string("nastala chyba") : shown.back().line();
    return fail(err, "Soubor '" + arguments.operands[0] + "' nebyl uložen do '" + *target + "': " + reason);
}

int infoCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (!expectOperands(arguments, 1, err))
        return kBadInput;
    const std::string path = arguments.operands[0];
    EepromImage image;
    auto read = readImageFile(platform::pathFromUtf8(path), image);
    if (!read)
        return fail(err, "Soubor '" + path + "': " + read.error().describe());

    const ImageInspection inspection = inspectImage(image);
    out << "Soubor:                 " << path << " (" << *read << " bajtů)\n";
    out << "Značka formátu (46):    " << inspection.layoutMark << " (" << hex(inspection.layoutMark, 4) << ")";
    if (inspection.layoutMark != layout::kLayoutMark)
        out << ", očekáváno " << layout::kLayoutMark << " (" << hex(layout::kLayoutMark, 4) << ")";
    out << '\n';
    out << "Kontrolní bajt (48):    uložený " << unsigned(inspection.storedCheckByte) << ", vypočtený "
        << unsigned(inspection.computedCheckByte) << '\n';
    out << "Hlavička:               " << (inspection.headerValid ? "platná" : "neplatná") << '\n';
    out << "Ukazatele:\n";
    for (const auto& pointer : inspection.pointers) {
        char line[96];
        std::snprintf(line, sizeof line, "  %3u  %-16s %5u (%s)\n", unsigned(pointer.address),
                      std::string(pointer.group).c_str(), unsigned(pointer.target), hex(pointer.target, 4).c_str());
        out << line;
    }
    out << "Konec zakódovaných dat: ";
    if (inspection.encodedEnd)
        out << *inspection.encodedEnd << '\n';
    else
        out << "nenalezen (za obecnými texty není koncová značka)\n";

    StationSettings settings;
    auto decoded = decodeLoadedImage(image, settings);
    out << "Velikost nastavení:     ";
    if (decoded)
        out << usedSize(settings) << " byte\n";
    else
        out << "nelze určit (" << decoded.error().describe() << ")\n";
    return kSuccess;
}

int diffCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (!expectOperands(arguments, 2, err))
        return kBadInput;
    auto left = loadConfiguration(platform::pathFromUtf8(arguments.operands[0]));
    if (!left)
        return fail(err, left.error());
    auto right = loadConfiguration(platform::pathFromUtf8(arguments.operands[1]));
    if (!right)
        return fail(err, right.error());
    const auto differences = diffSettings(left->settings, right->settings);
    for (const auto& difference : differences) {
        out << difference.field;
        if (difference.row)
            out << '[' << rowNumber(*difference.row) << ']';
        out << ": " << difference.left << " -> " << difference.right << '\n';
    }
    return differences.empty() ? kSuccess : kDifferent;
}

} // namespace rm8::ctl
