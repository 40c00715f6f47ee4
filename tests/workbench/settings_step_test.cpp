// The steps of the editing history: named as the window shows the field,
// and no step where nothing changed.

#include <gtest/gtest.h>

#include "workbench/settings_step.h"

namespace rm8::test {
namespace {

struct NameCase {
    const char* field;
    std::optional<std::size_t> row;
    const char* name;
};

const NameCase kNames[] = {
    { "tabINPNazev", 2, "IN3 Název" },
    { "tabAINCL1Dn", 7, "BAT Přechod dolu přes CL1" },
    { "tabTCPrijem", 0, "T1 Příjem" },
    { "tabJmenoStanice", std::nullopt, "Název stanice" },
    // A single field stays unnumbered whatever row comes with it.
    { "tabUTOEnable", 3, "Automaticky vkládat před tel. číslo UTO" },
    { "bezPopisku", std::nullopt, "bezPopisku" },
};

TEST(SettingsStep, NamedAfterTheRowAndTheCaption)
{
    for (const auto& c : kNames)
        EXPECT_EQ(fieldStepName(c.field, c.row), c.name) << c.field;
}

TEST(SettingsStep, AnUnnamedChangeIsNamedAfterItsFirstField)
{
    StationSettings before;
    StationSettings after = before;
    EXPECT_EQ(changeStepName(before, after), "");
    after.tabOUTNazev[5] = "SIRENA";
    after.tabTC[0] = "+420601234567";
    EXPECT_EQ(changeStepName(before, after), "OUT6 Název");
    after.tabINPNazev[0] = "DVERE";
    EXPECT_EQ(changeStepName(before, after), "IN1 Název");
    after.tabPIN = "1234";
    EXPECT_EQ(changeStepName(before, after), "PIN SIM karty");
}

TEST(SettingsStep, OnlyAChangeIsAStep)
{
    StationSettings before;
    StationSettings after = before;
    EXPECT_FALSE(settingsStep("Název stanice", before, after));
    after.tabJmenoStanice = "Vodarna";
    const auto step = settingsStep("Název stanice", before, after);
    ASSERT_TRUE(step);
    EXPECT_EQ(step->name, "Název stanice");
    EXPECT_TRUE(step->before == before);
    EXPECT_TRUE(step->after == after);
}

} // namespace
} // namespace rm8::test
