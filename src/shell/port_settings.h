#pragma once
// Which device each entry of the port list opens, remembered between runs:
// a technician with a USB adapter points "COM 1" at it once. Only the
// entries that differ from the platform's own are stored.

#include <QString>

#include <vector>

#include "link/port_map.h"

class QSettings;

namespace rm8::shell {

// The entries of the window's port list, "COM 1" to "COM 4".
inline constexpr int kFirstListedPort = 1;
inline constexpr int kLastListedPort = 4;

// Applies the remembered assignments over what the map already holds.
void loadPortAssignments(QSettings& store, link::PortMap& ports);

// Remembers the listed ports' devices; one that is the platform's own is
// forgotten, so a later change of the default reaches it.
void savePortAssignments(QSettings& store, const link::PortMap& ports);

// A serial port the system knows, to choose from.
struct SystemPort {
    QString device;      // the path to open, e.g. /dev/ttyUSB0
    QString description; // what the system says about it, e.g. "FT232R USB UART (FTDI)"
};

std::vector<SystemPort> systemSerialPorts();

} // namespace rm8::shell
