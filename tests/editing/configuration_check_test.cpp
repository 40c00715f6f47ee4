// The whole configuration at once: one violation of each kind seeded into a
// clean configuration must come back, each with its field, row and message,
// and nothing else.

#include <gtest/gtest.h>

#include "editing/configuration_check.h"
#include "editing/output_cross_check.h"
#include "fields/settings_json.h"
#include "settings/used_size.h"
#include "support/test_data.h"

namespace rm8 {
namespace {

constexpr const char* kTail = " EEPROM nelze naprogramovat dokud toto nebude odstraněno.";

StationSettings cleanSettings()
{
    StationSettings s;
    s.tabJmenoStanice = "Vrt 3";
    s.tabINPNazev = {"DVERE", "OKNO", "", "", "", "", "", ""};
    s.tabINPZap = {"otevreno", "", "", "", "", "", "", ""};
    s.tabINPVyp = {"zavreno", "", "", "", "", "", "", ""};
    s.tabOUTNazev = {"PUMPA", "SVETLO", "", "", "", "", "", ""};
    s.tabOUTZap = {"ZAP", "ROZSVIT", "", "", "", "", "", ""};
    s.tabOUTVyp = {"VYP", "ZHASNI", "", "", "", "", "", ""};
    s.tabOUTimpuls = {"IMP", "", "", "", "", "", "", ""};
    s.tabTC[0] = "+420602123456";
    s.tabTCPrijem[0] = true;
    s.tabAINCL1Level[0] = "20";
    s.tabAINHCL1Level[0] = "2";
    s.tabAINCL2Level[0] = "80";
    s.tabAINHCL2Level[0] = "2,5";
    return s;
}

TEST(ConfigurationCheck, CleanConfigurationsReportNothing)
{
    EXPECT_TRUE(checkConfiguration(StationSettings()).clean()) << "the start-up texts are not held against it";
    const auto report = checkConfiguration(cleanSettings(), 8128);
    for (const auto& v : report.violations)
        ADD_FAILURE() << v.field << "[" << v.row << "]: " << v.message;
    auto decoded = settingsFromJson(test::readJson(test::dataDir() / "empty.json"));
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(checkConfiguration(*decoded, 430).clean()) << "an empty configuration fits 430 bytes exactly";
}

struct Expected {
    std::string field;
    int row;
    RuleKind rule;
    std::string message;
};

TEST(ConfigurationCheck, ReportsOneViolationOfEachKind)
{
    StationSettings s = cleanSettings();
    s.rtPowerUp = "Napájení \"OK\"";    // character set
    s.tabINPNazev[2] = "st";            // keyword
    s.tabOUTVyp[1] = "ROZ";             // prefix of the on command (and a cross-check hit)
    s.tabINPZap[1] = "X";               // equality
    s.tabINPVyp[1] = "x";
    s.tabDobaPlatnostiSMS = "31";       // SMS validity
    s.tabAINHCL2Level[3] = "";          // not empty
    s.tabAINCL1Level[4] = "60";         // level check: level 1 above level 2
    s.tabAINCL2Level[4] = "50";
    s.tabTCUdalost[5] = true;           // phone table, no number
    s.tabTCPrijem[6] = true;
    const auto report = checkConfiguration(s, 448);

    const std::string keywords = "STATE;STAV;BACK;NOBACK;RESET;SHUTDOWN;NAME;ZPET;NEZPET;JMENO";
    const std::vector<Expected> expected{
        {"tabDobaPlatnostiSMS", 0, RuleKind::SmsValidity,
         "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."},
        {"rtPowerUp", 0, RuleKind::CharacterSet,
         "Text může obsahovat pouze tyto znaky:  !#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]\\^_`"
         "abcdefghijklmnopqrstuvwxyz{}|~"},
        {"tabINPNazev", 3, RuleKind::Keyword,
         "Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + keywords},
        {"tabINPZap", 2, RuleKind::EqualConflict, "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'."},
        {"tabINPVyp", 2, RuleKind::EqualConflict, "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'."},
        {"tabOUTZap", 2, RuleKind::PrefixConflict, "Název 'Zapnuto' nesmí být prefixem názvu 'Vypnuto' ani naopak."},
        {"tabOUTVyp", 2, RuleKind::PrefixConflict, "Název 'Vypnuto' nesmí být prefixem názvu 'Zapnuto' ani naopak."},
        {"tabAINHCL2Level", 4, RuleKind::NotEmpty, "Číslo je chybně zadáno."},
        {"tabTCUdalost", 6, RuleKind::PhoneTable,
         "Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Události' nezaškrtnuté."},
        {"tabTCPrijem", 7, RuleKind::PhoneTable,
         "Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Příjem' nezaškrtnuté."},
        {"tabAINCL1Level", 5, RuleKind::LevelCheck, "Hodnoty CL1, HCL1, CL2, HCL2 jsou chybně zadány."},
        {"tabOUTVyp", 2, RuleKind::OutputCrossCheck,
         std::string("Název 'Vypnuto' výstupu 'OUT2' není správně zadán. Povel pro vypnutí se musí lišit od povelu "
                     "pro impuls i zapnutí a nesmí být předponou názvu některého výstupu.")
             + kTail},
        {"lblInfoPamUsage", 0, RuleKind::SizeCheck,
         "Velikost dat v nastavení (" + std::to_string(usedSize(s)) + ") je větší než je možno vložit do EEPROM (   448)."},
    };
    ASSERT_EQ(report.violations.size(), expected.size());
    for (const auto& want : expected) {
        bool found = false;
        for (const auto& got : report.violations)
            found = found
                    || (got.field == want.field && got.row == want.row && got.rule == want.rule
                        && got.message == want.message);
        EXPECT_TRUE(found) << "missing: " << want.field << "[" << want.row << "] " << want.message;
    }
}

TEST(ConfigurationCheck, SizeCheckPassesAtExactlyTheMemorySize)
{
    const StationSettings s = cleanSettings();
    EXPECT_FALSE(sizeCheck(s, usedSize(s)));
    const auto tooBig = sizeCheck(s, usedSize(s) - 1);
    ASSERT_TRUE(tooBig);
    EXPECT_EQ(tooBig->message, "Velikost dat v nastavení (" + std::to_string(usedSize(s))
                                   + ") je větší než je možno vložit do EEPROM (" + std::to_string(usedSize(s) - 1)
                                   + ").");
}

TEST(ConfigurationCheck, ClampsAndPrefixesAreAdjustmentsNotViolations)
{
    StationSettings s = cleanSettings();
    s.tabOUTimpulsLEN[2] = "30";
    s.eePSOnH = "0";
    s.eePSOnM = "3";
    s.tabUTOEnable = true;
    s.tabTC[1] = "0601234567";
    const auto report = checkConfiguration(s);
    EXPECT_TRUE(report.clean());
    const std::vector<Adjustment> expected{{"tabOUTimpulsLEN", 3, "30", "25.5"},
                                           {"eePSOnM", 0, "3", "5"},
                                           {"tabTC", 2, "0601234567", "+420601234567"}};
    ASSERT_EQ(report.adjustments.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(report.adjustments[i].field, expected[i].field);
        EXPECT_EQ(report.adjustments[i].row, expected[i].row);
        EXPECT_EQ(report.adjustments[i].from, expected[i].from);
        EXPECT_EQ(report.adjustments[i].to, expected[i].to);
    }
}

TEST(OutputCrossCheck, NamesThatBeginOneAnotherStopTheFirstRowReached)
{
    StationSettings s = cleanSettings();
    s.tabOUTNazev[5] = "PUMPA2";
    const auto conflicts = outputCrossCheck(s);
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].row, 0u);
    EXPECT_EQ(conflicts[0].column, OutputColumn::Name);
    EXPECT_EQ(conflicts[0].message, std::string("Název výstupu 'OUT1' není správně zadán. Jména výstupů se nesmějí "
                                                "shodovat a ani být předponou jiného názvu výstupu.")
                                        + kTail);
}

TEST(OutputCrossCheck, CommandsAreTestedAgainstNamesAndTheirOwnRow)
{
    StationSettings s = cleanSettings();
    s.tabOUTimpuls[1] = "PUMP"; // begins the name of output 1
    s.tabOUTZap[2] = "VYP";     // equals output 1's off command: another row, so allowed
    const auto conflicts = outputCrossCheck(s);
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].row, 1u);
    EXPECT_EQ(conflicts[0].column, OutputColumn::Impulse);
    EXPECT_EQ(conflicts[0].message,
              std::string("Název 'impuls' výstupu 'OUT2' není správně zadán. Povel pro impuls se musí lišit od povelu "
                          "pro vypnutí i zapnutí a nesmí být předponou názvu některého výstupu.")
                  + kTail);
}

TEST(OutputCrossCheck, ANameMayNotBeginAnyCommand)
{
    StationSettings s = cleanSettings();
    s.tabOUTNazev[2] = "ROZ"; // begins output 2's on command
    const auto conflicts = outputCrossCheck(s);
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].row, 2u);
    EXPECT_EQ(conflicts[0].field, "tabOUTNazev");
}

} // namespace
} // namespace rm8
