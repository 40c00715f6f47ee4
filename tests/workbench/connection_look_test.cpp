// The rows of the connection look, and what btDEA does in each state.

#include <gtest/gtest.h>

#include "workbench/connection_look.h"

namespace rm8 {
namespace {

using link::ConnectionState;

struct LookCase {
    ConnectionState state;
    ConnectionLook look;
    LinkCommand command;
};

const LookCase kLooks[] = {
    { ConnectionState::Inactive, { "Neaktivní", { 255, 0, 0 }, "Aktivovat", true, false, false, true, false },
        LinkCommand::Activate },
    { ConnectionState::Active, { "Aktivní", { 0, 0, 255 }, "Deaktivovat", false, true, true, false, false },
        LinkCommand::Deactivate },
    { ConnectionState::WrongVersion,
        { "Chybné zařízení", { 0, 0, 255 }, "Deaktivovat", false, std::nullopt, false, false, true },
        LinkCommand::Deactivate },
};

TEST(ConnectionLook, OneRowPerState)
{
    for (const auto& c : kLooks) {
        SCOPED_TRACE(std::string(link::stateWord(c.state)));
        const ConnectionLook& look = connectionLook(c.state);
        EXPECT_EQ(look.stateText, c.look.stateText);
        EXPECT_EQ(look.stateColour, c.look.stateColour);
        EXPECT_EQ(look.linkCommand, c.look.linkCommand);
        EXPECT_EQ(look.portChoosable, c.look.portChoosable);
        EXPECT_EQ(look.eepromCommands, c.look.eepromCommands);
        EXPECT_EQ(look.compareWithStation, c.look.compareWithStation);
        EXPECT_EQ(look.identityUnknown, c.look.identityUnknown);
        EXPECT_EQ(look.hidesProgress, c.look.hidesProgress);
        EXPECT_EQ(linkCommand(c.state), c.command);
    }
}

} // namespace
} // namespace rm8
