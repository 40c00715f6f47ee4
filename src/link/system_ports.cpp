#include "link/system_ports.h"

namespace rm8::link {

std::string portListLine(const SystemPort& port)
{
    return port.description.empty() ? port.device : port.device + " – " + port.description;
}

} // namespace rm8::link
