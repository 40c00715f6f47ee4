#pragma once
// The programming-mode session: the station is found by a repeated attention
// request, identified (product, processor version, memory size, modem),
// judged, and later released again.

#include <string>
#include <string_view>

#include "flow/messages.h"
#include "link/line_io.h"

namespace rm8::link {

enum class ConnectionState { Inactive, Active, WrongVersion };

// The state words of the connection display: "Neaktivni", "Aktivni",
// "Aktivni-spatna verze".
std::string_view stateWord(ConnectionState state);

// What the identification labels show; "?" where nothing is known.
struct StationIdentity {
    std::string product = "?";
    std::string version = "?";
    std::string memorySize = "?"; // as the memory table writes it, e.g. "  8128 byte"
    std::string modem = "?";
};

struct Activation {
    ConnectionState state = ConnectionState::Inactive;
    StationIdentity identity;
};

// portName is what the port list shows ("COM 1"); it names the port in the
// message when it cannot be opened.
Activation activateLink(LineIo& io, std::string_view portName);

// How a deactivation ended: the station left programming mode; it did not
// answer and the technician treated the link as inactive anyway (the port is
// closed, the station probably still in programming mode); or it did not
// answer and the session stays active.
enum class Leave { Left, GivenUp, Kept };
Leave leaveProgrammingMode(LineIo& io);

// True when the link is now inactive: the station left programming mode, or
// the technician chose to treat it as inactive anyway.
bool deactivateLink(LineIo& io);

} // namespace rm8::link
