#include "ctl/ports_command.h"

#include "ctl/file_commands.h"
#include "link/system_ports.h"

namespace rm8::ctl {

int portsCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (!arguments.operands.empty()) {
        err << "rm8ctl: ports: nečeká žádné jméno souboru (viz rm8ctl --help)\n";
        return kBadInput;
    }
    const auto ports = link::systemSerialPorts();
    if (ports.empty())
        out << "Žádný sériový port nebyl nalezen.\n";
    for (const auto& port : ports)
        out << link::portListLine(port) << '\n';
    return kSuccess;
}

} // namespace rm8::ctl
