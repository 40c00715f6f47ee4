#pragma once
// How the link panel looks in each connection state, and what btDEA does
// there: one row per state instead of captions compared back. The window
// draws a row; nothing reads the look back to decide anything.

#include <cstdint>
#include <optional>
#include <string_view>

#include "link/session.h"

namespace rm8 {

struct Colour {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
    bool operator==(const Colour&) const = default;
};

struct ConnectionLook {
    std::string_view stateText; // tabDeAktivNapis
    Colour stateColour;
    std::string_view linkCommand; // the caption of btDEA
    bool portChoosable; // tabPort and the port dialog
    // btEEPROMLoad and btEEPROMSave; nothing where they keep what they had
    // (a station of a wrong version may be deactivated, never read or
    // written).
    std::optional<bool> eepromCommands;
    bool compareWithStation; // btPorovnatStanici
    bool identityUnknown; // the identification labels go back to "?"
    // The activation's progress window stays up until the verdict is shown.
    bool hidesProgress;
};

const ConnectionLook& connectionLook(link::ConnectionState state);

enum class LinkCommand { Activate, Deactivate };
// What btDEA does in a state: open a session where none is, else close it.
LinkCommand linkCommand(link::ConnectionState state);

} // namespace rm8
