#include "ctl/report_command.h"

#include "common/atomic_file.h"
#include "ctl/configuration_input.h"
#include "ctl/file_commands.h"
#include "platform/utf8_path.h"
#include "report/report_content.h"
#include "report/report_text.h"

namespace rm8::ctl {

int reportCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (arguments.operands.size() != 1) {
        err << "rm8ctl: report: očekáváno 1 jméno souboru, zadáno " << arguments.operands.size()
            << " (viz rm8ctl --help)\n";
        return kBadInput;
    }
    auto configuration = loadConfiguration(platform::pathFromUtf8(arguments.operands[0]));
    if (!configuration) {
        err << "rm8ctl: " << configuration.error() << '\n';
        return kBadInput;
    }
    const std::string text = report::reportText(report::buildReport(configuration->settings));
    if (const auto target = arguments.value("--out")) {
        if (auto written = writeFileAtomically(platform::pathFromUtf8(*target), text); !written) {
            err << "rm8ctl: Soubor '" << *target << "' nelze zapsat: " << written.error() << '\n';
            return kBadInput;
        }
        return kSuccess;
    }
    out << text;
    return kSuccess;
}

} // namespace rm8::ctl
