#include "ctl/check_command.h"

#include <charconv>

#include <nlohmann/json.hpp>

#include "ctl/configuration_input.h"
#include "ctl/file_commands.h"
#include "fields/table_rows.h"
#include "platform/utf8_path.h"

namespace rm8::ctl {
namespace {

std::string place(const std::string& field, FieldRow row)
{
    return row ? field + "[" + std::to_string(rowNumber(*row)) + "]" : field;
}

std::string asJson(const CheckReport& report)
{
    auto array = nlohmann::ordered_json::array();
    for (const auto& violation : report.violations) {
        nlohmann::ordered_json entry;
        entry["field"] = violation.field;
        entry["row"] = violation.row ? nlohmann::ordered_json(rowNumber(*violation.row)) : nlohmann::ordered_json(nullptr);
        entry["message"] = violation.message;
        array.push_back(std::move(entry));
    }
    return array.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace

void printViolations(const CheckReport& report, std::ostream& out, const std::string& prefix)
{
    for (const auto& violation : report.violations)
        out << prefix << place(violation.field, violation.row) << ": " << violation.message << '\n';
}

int checkCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (arguments.operands.size() != 1) {
        err << "rm8ctl: check: očekáváno 1 jméno souboru, zadáno " << arguments.operands.size()
            << " (viz rm8ctl --help)\n";
        return kBadInput;
    }
    std::optional<std::size_t> eepromSize;
    if (const auto size = arguments.value("--eeprom-size")) {
        std::size_t value = 0;
        const auto [end, error] = std::from_chars(size->data(), size->data() + size->size(), value);
        if (error != std::errc() || end != size->data() + size->size()) {
            err << "rm8ctl: --eeprom-size: '" << *size << "' není počet bajtů\n";
            return kBadInput;
        }
        eepromSize = value;
    }
    auto configuration = loadConfiguration(platform::pathFromUtf8(arguments.operands[0]));
    if (!configuration) {
        err << "rm8ctl: " << configuration.error() << '\n';
        return kBadInput;
    }
    const CheckReport report = checkConfiguration(configuration->settings, eepromSize);
    if (arguments.has("--json")) {
        out << asJson(report);
    } else {
        printViolations(report, out);
        // What leaving the fields would change is worth knowing, but it is
        // not a fault.
        for (const auto& change : report.adjustments)
            out << "úprava " << place(change.field, change.row) << ": \"" << change.from << "\" -> \"" << change.to
                << "\"\n";
    }
    return report.clean() ? kSuccess : kDifferent;
}

} // namespace rm8::ctl
