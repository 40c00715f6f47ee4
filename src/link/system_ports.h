#pragma once
// The serial ports the system has now, as the technician recognises them:
// on Linux the stable names under /dev/serial/by-id with the USB adapter's
// product, maker and IDs; on Windows the COM ports with the names the device
// manager shows.

#include <filesystem>
#include <string>
#include <vector>

namespace rm8::link {

struct SystemPort {
    std::string device; // what a line opens: a path, or "COM5"
    std::string description; // may be empty
};

// Sorted by device. The root is where the system's folders are looked for
// (a test gives a folder of its own); Windows asks the system instead.
std::vector<SystemPort> systemSerialPorts(const std::filesystem::path& root = "/");

// "device – description", or the device alone: one line of a port list.
std::string portListLine(const SystemPort& port);

} // namespace rm8::link
