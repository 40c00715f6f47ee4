#include "workbench/connection_look.h"

#include <array>

namespace rm8 {
namespace {

constexpr Colour kRed { 255, 0, 0 };
constexpr Colour kBlue { 0, 0, 255 };

// In the order of link::ConnectionState.
constexpr auto kLooks = std::to_array<ConnectionLook>({
    { "Neaktivní", kRed, "Aktivovat", true, false, false, true, false },
    { "Aktivní", kBlue, "Deaktivovat", false, true, true, false, false },
    { "Chybné zařízení", kBlue, "Deaktivovat", false, std::nullopt, false, false, true },
});

} // namespace

const ConnectionLook& connectionLook(link::ConnectionState state)
{
    return kLooks.at(static_cast<std::size_t>(state));
}

LinkCommand linkCommand(link::ConnectionState state)
{
    return state == link::ConnectionState::Inactive ? LinkCommand::Activate : LinkCommand::Deactivate;
}

} // namespace rm8
