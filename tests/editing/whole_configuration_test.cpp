// The whole configuration judged at once, as before the EEPROM is written:
// every field's rules, the level check, the phone table, the output
// cross-check and the size check, each violation with its field, row and the
// window's exact message; clamps and the UTO prefix only as adjustments.

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editing/configuration_check.h"
#include "editing/output_cross_check.h"
#include "editing/row_labels.h"
#include "fields/settings_json.h"
#include "settings/station_settings.h"
#include "settings/used_size.h"
#include "support/test_data.h"

namespace rm8 {

// Readable failure output; gtest finds these by argument-dependent lookup.
void PrintTo(const Violation& v, std::ostream* out)
{
    *out << "{" << v.field << " row " << v.row << ", " << ruleName(v.rule) << ", \"" << v.message << "\"}";
}

void PrintTo(const Adjustment& a, std::ostream* out)
{
    *out << "{" << a.field << " row " << a.row << ", \"" << a.from << "\" -> \"" << a.to << "\"}";
}

void PrintTo(const OutputConflict& c, std::ostream* out)
{
    *out << "{row " << c.row << ", column " << static_cast<int>(c.column) << ", " << c.field << ", \"" << c.message
         << "\"}";
}

namespace {

using enum RuleKind;
using testing::UnorderedElementsAreArray;

const std::string kInputSet =
    R"x( `!@#$%^&*()-_=+\|[{]};:',<.>/?0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ)x";
const std::string kOutputSet = "_0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
const std::string kMessageSet =
    R"x( !#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]\^_`abcdefghijklmnopqrstuvwxyz{}|~)x";
const std::string kKeywords = "STATE;STAV;BACK;NOBACK;RESET;SHUTDOWN;NAME;ZPET;NEZPET;JMENO";

const std::string kSmsValidityMessage =
    "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně.";
const std::string kBadNumber = "Číslo je chybně zadáno.";
const std::string kLevelsWrong = "Hodnoty CL1, HCL1, CL2, HCL2 jsou chybně zadány.";
const std::string kPrijemMessage =
    "Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Příjem' nezaškrtnuté.";
const std::string kUdalostMessage =
    "Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Události' nezaškrtnuté.";

std::string nameConflict(const std::string& label)
{
    return "Název výstupu '" + label
           + "' není správně zadán. Jména výstupů se nesmějí shodovat a ani být předponou jiného názvu výstupu. "
             "EEPROM nelze naprogramovat dokud toto nebude odstraněno.";
}

std::string onConflict(const std::string& label)
{
    return "Název 'Zapnuto' výstupu '" + label
           + "' není správně zadán. Povel pro zapnutí se musí lišit od povelu pro vypnutí i impuls a nesmí být "
             "předponou názvu některého výstupu. EEPROM nelze naprogramovat dokud toto nebude odstraněno.";
}

std::string offConflict(const std::string& label)
{
    return "Název 'Vypnuto' výstupu '" + label
           + "' není správně zadán. Povel pro vypnutí se musí lišit od povelu pro impuls i zapnutí a nesmí být "
             "předponou názvu některého výstupu. EEPROM nelze naprogramovat dokud toto nebude odstraněno.";
}

std::string impulseConflict(const std::string& label)
{
    return "Název 'impuls' výstupu '" + label
           + "' není správně zadán. Povel pro impuls se musí lišit od povelu pro vypnutí i zapnutí a nesmí být "
             "předponou názvu některého výstupu. EEPROM nelze naprogramovat dokud toto nebude odstraněno.";
}

std::string tooBig(const std::string& used, const std::string& size)
{
    return "Velikost dat v nastavení (" + used + ") je větší než je možno vložit do EEPROM (" + size + ").";
}

// Compared field by field, so that a failure names what differs.
MATCHER_P(IsViolation, want, "")
{
    return arg.field == want.field && arg.row == want.row && arg.rule == want.rule && arg.message == want.message;
}

MATCHER_P(IsAdjustment, want, "")
{
    return arg.field == want.field && arg.row == want.row && arg.from == want.from && arg.to == want.to;
}

MATCHER_P(IsConflict, want, "")
{
    return arg.row == want.row && arg.column == want.column && arg.field == want.field && arg.message == want.message;
}

std::vector<testing::Matcher<const Violation&>> violationMatchers(const std::vector<Violation>& wanted)
{
    std::vector<testing::Matcher<const Violation&>> matchers;
    for (const auto& w : wanted)
        matchers.push_back(IsViolation(w));
    return matchers;
}

std::vector<testing::Matcher<const Adjustment&>> adjustmentMatchers(const std::vector<Adjustment>& wanted)
{
    std::vector<testing::Matcher<const Adjustment&>> matchers;
    for (const auto& w : wanted)
        matchers.push_back(IsAdjustment(w));
    return matchers;
}

StationSettings loadJson(const char* file)
{
    auto loaded = settingsFromJson(test::readJson(test::dataDir() / file));
    if (!loaded) {
        ADD_FAILURE() << file << " does not load";
        return {};
    }
    return *loaded;
}

// A filled-in configuration that breaks no rule: names, commands, levels,
// numbers with their permissions, report texts.
StationSettings cleanExample()
{
    StationSettings s;
    s.tabJmenoStanice = "Čerpací stanice Žďár";
    s.tabPIN = "4827";
    s.tabTCcentra = "+420603052000";
    s.tabDobaPlatnostiSMS = "7";
    s.rtPowerUp = "Napajeni obnoveno";
    s.rtPowerDown = "Vypadek site";
    s.rtSwitchOn = "Stanice zapnuta";
    s.rtSwitchOff = "Stanice vypnuta";
    s.rtNotAuthorized = "Nepovoleny pristup!";
    s.tabINPNazev = {"Dvere", "Zaplaveni", "Pozar", "", "", "", "", ""};
    s.tabINPZap = {"otevreno", "ANO", "POZAR", "", "", "", "", ""};
    s.tabINPVyp = {"zavreno", "NE", "klid", "", "", "", "", ""};
    s.tabINPLH = {"Dvere otevreny", "", "Pozar v objektu!", "", "", "", "", ""};
    s.tabINPHL = {"Dvere zavreny", "", "", "", "", "", "", ""};
    s.tabOUTNazev = {"CERPADLO1", "CERPADLO2", "SIRENA", "", "", "", "", ""};
    s.tabOUTZap = {"ZAP1", "ZAP2", "HOUKEJ", "", "", "", "", ""};
    s.tabOUTVyp = {"VYP1", "VYP2", "TICHO", "", "", "", "", ""};
    s.tabOUTimpuls = {"IMP1", "IMP2", "POPLACH", "", "", "", "", ""};
    s.tabOUTimpulsLEN = {"0.5", "1", "25.5", "0.1", "2", "2", "2", "2"};
    s.tabAINNazev[0] = "Hladina";
    s.tabAINStateL[0] = "nizka";
    s.tabAINStateM[0] = "normalni";
    s.tabAINStateH[0] = "vysoka";
    s.tabAINCL1Level[0] = "20";
    s.tabAINHCL1Level[0] = "2,5";
    s.tabAINCL2Level[0] = "80.5";
    s.tabAINHCL2Level[0] = "2";
    s.tabAINCL1Up[0] = "Hladina stoupa";
    s.tabAINCL1Level[7] = "11";
    s.tabAINHCL1Level[7] = "0.5";
    s.tabAINCL2Level[7] = "14";
    s.tabAINHCL2Level[7] = "0.5";
    s.tabTC[0] = "+420603123456";
    s.tabTCPrijem[0] = true;
    s.tabTCUdalost[0] = true;
    s.tabTC[1] = "+421905123456";
    s.tabTCUdalost[1] = true;
    s.eePSOnH = "12";
    s.eePSOnM = "35";
    s.eePSOffH = "465";
    s.eePSOffM = "59";
    return s;
}

// ---------------------------------------------------------------------------
// Configurations that break nothing

struct CleanCase {
    const char* name;
    std::function<StationSettings()> make;
    std::optional<std::size_t> eepromSize;
    bool adjustsNothing;
};

void PrintTo(const CleanCase& c, std::ostream* out)
{
    *out << c.name;
}

class CleanConfiguration : public testing::TestWithParam<CleanCase> {};

TEST_P(CleanConfiguration, ReportsNoViolation)
{
    const auto& c = GetParam();
    const CheckReport report = checkConfiguration(c.make(), c.eepromSize);
    EXPECT_THAT(report.violations, testing::IsEmpty());
    EXPECT_TRUE(report.clean());
    if (c.adjustsNothing) {
        EXPECT_THAT(report.adjustments, testing::IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Clean, CleanConfiguration,
    testing::Values(CleanCase{"StartUp", [] { return StationSettings(); }, std::nullopt, true},
                    CleanCase{"StartUpFitsExactly", [] { return StationSettings(); }, 430, true},
                    CleanCase{"StartUpLargeMemory", [] { return StationSettings(); }, 8128, true},
                    CleanCase{"EmptyGolden", [] { return loadJson("empty.json"); }, 430, true},
                    CleanCase{"FilledIn", cleanExample, 1984, true}),
    [](const testing::TestParamInfo<CleanCase>& row) { return std::string(row.param.name); });

TEST(EmptyConfiguration, Uses430Bytes)
{
    EXPECT_EQ(usedSize(StationSettings()), 430u);
    EXPECT_EQ(usedSize(loadJson("empty.json")), 430u);
}

// The realistic golden configuration writes its names with Czech letters,
// which the station cannot parse; the check must say so, field by field.
TEST(FullGolden, IsRefusedForItsDiacritics)
{
    const StationSettings s = loadJson("full.json");
    ASSERT_EQ(s.tabINPNazev[0], "Dveře rozvaděče");
    ASSERT_EQ(s.tabOUTNazev[4], "OSVĚTLENÍ");
    ASSERT_EQ(s.rtPowerUp, "Napájení obnoveno, úroveň OK");
    const CheckReport report = checkConfiguration(s);
    EXPECT_FALSE(report.clean());
    EXPECT_THAT(report.violations,
                testing::Contains(IsViolation(Violation{"tabINPNazev", 1, CharacterSet,
                                                        "Název vstupu může obsahovat pouze tyto znaky: " + kInputSet})));
    EXPECT_THAT(report.violations,
                testing::Contains(IsViolation(Violation{
                    "tabOUTNazev", 5, CharacterSet, "Název výstupu může obsahovat pouze tyto znaky: " + kOutputSet})));
    EXPECT_THAT(report.violations,
                testing::Contains(IsViolation(Violation{"rtPowerUp", 0, CharacterSet,
                                                        "Text může obsahovat pouze tyto znaky: " + kMessageSet})));
    // Output 6's on command TOP begins its own name TOPENÍ.
    EXPECT_THAT(report.violations,
                testing::Contains(IsViolation(Violation{"tabOUTZap", 6, OutputCrossCheck, onConflict("OUT6")})));
    // The station name has no rule of its own.
    for (const auto& v : report.violations)
        EXPECT_NE(v.field, "tabJmenoStanice") << v.message;
}

// ---------------------------------------------------------------------------
// One seeded fault at a time: exactly its violations come back

struct SeedCase {
    const char* name;
    std::function<void(StationSettings&)> seed;
    std::optional<std::size_t> eepromSize;
    std::vector<Violation> expected;
};

void PrintTo(const SeedCase& c, std::ostream* out)
{
    *out << c.name;
}

class SeededFault : public testing::TestWithParam<SeedCase> {};

TEST_P(SeededFault, IsReportedWithFieldRowAndMessage)
{
    const auto& c = GetParam();
    StationSettings s;
    c.seed(s);
    const CheckReport report = checkConfiguration(s, c.eepromSize);
    EXPECT_THAT(report.violations, UnorderedElementsAreArray(violationMatchers(c.expected)));
    EXPECT_EQ(report.clean(), c.expected.empty());
    EXPECT_THAT(report.adjustments, testing::IsEmpty());
}

const auto kSeedName = [](const testing::TestParamInfo<SeedCase>& row) { return std::string(row.param.name); };

INSTANTIATE_TEST_SUITE_P(
    CharacterSets, SeededFault,
    testing::Values(
        SeedCase{"InputName", [](StationSettings& s) { s.tabINPNazev[1] = "Dveře"; }, std::nullopt,
                 {{"tabINPNazev", 2, CharacterSet, "Název vstupu může obsahovat pouze tyto znaky: " + kInputSet}}},
        SeedCase{"InputTransition", [](StationSettings& s) { s.tabINPHL[3] = "a~"; }, std::nullopt,
                 {{"tabINPHL", 4, CharacterSet,
                   "Název přechodu 'Aktivní->Neaktivní' může obsahovat pouze tyto znaky: " + kInputSet}}},
        SeedCase{"OutputName", [](StationSettings& s) { s.tabOUTNazev[4] = "OUT 5"; }, std::nullopt,
                 {{"tabOUTNazev", 5, CharacterSet, "Název výstupu může obsahovat pouze tyto znaky: " + kOutputSet}}},
        SeedCase{"ReportText", [](StationSettings& s) { s.rtSwitchOff = "Stanice \"A\""; }, std::nullopt,
                 {{"rtSwitchOff", 0, CharacterSet, "Text může obsahovat pouze tyto znaky: " + kMessageSet}}},
        SeedCase{"BatteryAnalogName", [](StationSettings& s) { s.tabAINNazev[7] = "Baterie ř"; }, std::nullopt,
                 {{"tabAINNazev", 8, CharacterSet, "Text může obsahovat pouze tyto znaky: " + kMessageSet}}},
        SeedCase{"PhoneNumber", [](StationSettings& s) { s.tabTC[3] = "+420 601"; }, std::nullopt,
                 {{"tabTC", 4, CharacterSet, "Telefonní číslo je špatně zadáno."}}},
        SeedCase{"ServiceCentre", [](StationSettings& s) { s.tabTCcentra = "+420-603"; }, std::nullopt,
                 {{"tabTCcentra", 0, CharacterSet, "Telefonní číslo servisního centra je špatně zadáno."}}},
        SeedCase{"UtoPrefix", [](StationSettings& s) { s.tabUTO = "+42a"; }, std::nullopt,
                 {{"tabUTO", 0, CharacterSet, "UTO je špatně zadáno."}}},
        SeedCase{"Pin", [](StationSettings& s) { s.tabPIN = "12a4"; }, std::nullopt,
                 {{"tabPIN", 0, CharacterSet, "PIN je špatně zadán."}}},
        // A blank before a level is refused unless the field still holds the
        // text the window started with.
        SeedCase{"LevelWithBlank", [](StationSettings& s) { s.tabAINCL2Level[2] = " 50"; }, std::nullopt,
                 {{"tabAINCL2Level", 3, CharacterSet, kBadNumber}}},
        SeedCase{"StationNameHasNoRule", [](StationSettings& s) { s.tabJmenoStanice = "Žďár \"~\""; }, std::nullopt,
                 {}}),
    kSeedName);

INSTANTIATE_TEST_SUITE_P(
    Keywords, SeededFault,
    testing::Values(SeedCase{"InputName", [](StationSettings& s) { s.tabINPNazev[0] = "st"; }, std::nullopt,
                             {{"tabINPNazev", 1, Keyword,
                               "Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): "
                                   + kKeywords}}},
                    SeedCase{"OutputName", [](StationSettings& s) { s.tabOUTNazev[5] = "Name"; }, std::nullopt,
                             {{"tabOUTNazev", 6, Keyword,
                               "Název výstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): "
                                   + kKeywords}}},
                    SeedCase{"ImpulseCommand", [](StationSettings& s) { s.tabOUTimpuls[3] = "reset"; }, std::nullopt,
                             {{"tabOUTimpuls", 4, Keyword,
                               "Název 'Impuls' nesmí být žádné z těchto klíčových slov (ani jejich předpony): "
                                   + kKeywords}}},
                    SeedCase{"InputNameLongerThanKeywordPasses",
                             [](StationSettings& s) { s.tabINPNazev[0] = "STATEX"; }, std::nullopt, {}}),
    kSeedName);

INSTANTIATE_TEST_SUITE_P(
    PrefixAndEquality, SeededFault,
    testing::Values(
        // The main window's prefix rule hits both commands; the write flow's
        // cross-check then stops at the on command, the one that begins the other.
        SeedCase{"OnBeginsOff",
                 [](StationSettings& s) {
                     s.tabOUTZap[2] = "ON";
                     s.tabOUTVyp[2] = "ON1";
                 },
                 std::nullopt,
                 {{"tabOUTZap", 3, PrefixConflict, "Název 'Zapnuto' nesmí být prefixem názvu 'Vypnuto' ani naopak."},
                  {"tabOUTVyp", 3, PrefixConflict, "Název 'Vypnuto' nesmí být prefixem názvu 'Zapnuto' ani naopak."},
                  {"tabOUTZap", 3, OutputCrossCheck, onConflict("OUT3")}}},
        SeedCase{"OnAndOffDiffer",
                 [](StationSettings& s) {
                     s.tabOUTZap[2] = "ON";
                     s.tabOUTVyp[2] = "OFF";
                 },
                 std::nullopt,
                 {}},
        SeedCase{"InputStatesEqual",
                 [](StationSettings& s) {
                     s.tabINPZap[6] = "ANO";
                     s.tabINPVyp[6] = "ano";
                 },
                 std::nullopt,
                 {{"tabINPZap", 7, EqualConflict, "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'."},
                  {"tabINPVyp", 7, EqualConflict, "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'."}}},
        SeedCase{"InputStatePrefixIsAllowed",
                 [](StationSettings& s) {
                     s.tabINPZap[6] = "A";
                     s.tabINPVyp[6] = "AB";
                 },
                 std::nullopt,
                 {}}),
    kSeedName);

INSTANTIATE_TEST_SUITE_P(
    SmsValidity, SeededFault,
    testing::Values(SeedCase{"ThirtyOne", [](StationSettings& s) { s.tabDobaPlatnostiSMS = "31"; }, std::nullopt,
                             {{"tabDobaPlatnostiSMS", 0, SmsValidity, kSmsValidityMessage}}},
                    SeedCase{"Zero", [](StationSettings& s) { s.tabDobaPlatnostiSMS = "0"; }, std::nullopt,
                             {{"tabDobaPlatnostiSMS", 0, SmsValidity, kSmsValidityMessage}}},
                    SeedCase{"Empty", [](StationSettings& s) { s.tabDobaPlatnostiSMS = ""; }, std::nullopt,
                             {{"tabDobaPlatnostiSMS", 0, SmsValidity, kSmsValidityMessage}}},
                    SeedCase{"Thirty", [](StationSettings& s) { s.tabDobaPlatnostiSMS = "30"; }, std::nullopt, {}}),
    kSeedName);

INSTANTIATE_TEST_SUITE_P(
    Levels, SeededFault,
    testing::Values(
        SeedCase{"HysteresisEmpty", [](StationSettings& s) { s.tabAINHCL1Level[1] = ""; }, std::nullopt,
                 {{"tabAINHCL1Level", 2, NotEmpty, kBadNumber}}},
        SeedCase{"Level2BelowLevel1",
                 [](StationSettings& s) {
                     s.tabAINCL1Level[3] = "50";
                     s.tabAINCL2Level[3] = "40";
                 },
                 std::nullopt,
                 {{"tabAINCL1Level", 4, LevelCheck, kLevelsWrong}}},
        SeedCase{"HysteresisBelowRange",
                 [](StationSettings& s) {
                     s.tabAINCL1Level[0] = "1";
                     s.tabAINHCL1Level[0] = "2";
                 },
                 std::nullopt,
                 {{"tabAINCL1Level", 1, LevelCheck, kLevelsWrong}}},
        SeedCase{"BatteryAboveItsRange", [](StationSettings& s) { s.tabAINCL2Level[7] = "30"; }, std::nullopt,
                 {{"tabAINCL1Level", 8, LevelCheck, kLevelsWrong}}},
        SeedCase{"BatteryInsideItsRange",
                 [](StationSettings& s) {
                     s.tabAINCL1Level[7] = "11";
                     s.tabAINCL2Level[7] = "14";
                 },
                 std::nullopt,
                 {}},
        SeedCase{"CommaBandsTouch",
                 [](StationSettings& s) {
                     s.tabAINCL1Level[5] = "20,5";
                     s.tabAINHCL1Level[5] = "4,5";
                     s.tabAINCL2Level[5] = "30";
                     s.tabAINHCL2Level[5] = "5";
                 },
                 std::nullopt,
                 {}},
        SeedCase{"CommaBandsOverlap",
                 [](StationSettings& s) {
                     s.tabAINCL1Level[5] = "20,5";
                     s.tabAINHCL1Level[5] = "4,6";
                     s.tabAINCL2Level[5] = "30";
                     s.tabAINHCL2Level[5] = "5";
                 },
                 std::nullopt,
                 {{"tabAINCL1Level", 6, LevelCheck, kLevelsWrong}}}),
    kSeedName);

INSTANTIATE_TEST_SUITE_P(
    PhoneTable, SeededFault,
    testing::Values(SeedCase{"PrijemWithoutNumber", [](StationSettings& s) { s.tabTCPrijem[4] = true; }, std::nullopt,
                             {{"tabTCPrijem", 5, PhoneTable, kPrijemMessage}}},
                    SeedCase{"UdalostWithoutNumber", [](StationSettings& s) { s.tabTCUdalost[5] = true; }, std::nullopt,
                             {{"tabTCUdalost", 6, PhoneTable, kUdalostMessage}}},
                    SeedCase{"BothWithoutNumber",
                             [](StationSettings& s) {
                                 s.tabTCPrijem[7] = true;
                                 s.tabTCUdalost[7] = true;
                             },
                             std::nullopt,
                             {{"tabTCPrijem", 8, PhoneTable, kPrijemMessage},
                              {"tabTCUdalost", 8, PhoneTable, kUdalostMessage}}},
                    SeedCase{"BothWithNumber",
                             [](StationSettings& s) {
                                 s.tabTC[0] = "+420601234567";
                                 s.tabTCPrijem[0] = true;
                                 s.tabTCUdalost[0] = true;
                             },
                             std::nullopt,
                             {}}),
    kSeedName);

INSTANTIATE_TEST_SUITE_P(
    OutputCrossCheck, SeededFault,
    testing::Values(SeedCase{"NameBeginsAnotherName",
                             [](StationSettings& s) {
                                 s.tabOUTNazev[0] = "PUMPA";
                                 s.tabOUTNazev[1] = "PUMPA2";
                             },
                             std::nullopt,
                             {{"tabOUTNazev", 1, OutputCrossCheck, nameConflict("OUT1")}}},
                    SeedCase{"ImpulseBeginsAName",
                             [](StationSettings& s) {
                                 s.tabOUTNazev[0] = "PUMPA";
                                 s.tabOUTimpuls[6] = "PUMP";
                             },
                             std::nullopt,
                             {{"tabOUTimpuls", 7, OutputCrossCheck, impulseConflict("OUT7")}}}),
    kSeedName);

INSTANTIATE_TEST_SUITE_P(
    SizeCheck, SeededFault,
    testing::Values(
        SeedCase{"OneByteTooMany", [](StationSettings&) {}, 429, {{"lblInfoPamUsage", 0, SizeCheck, tooBig("430", "429")}}},
        SeedCase{"ExactlyFull", [](StationSettings&) {}, 430, {}},
        SeedCase{"SmallestMemory", [](StationSettings&) {}, 64,
                 {{"lblInfoPamUsage", 0, SizeCheck, tooBig("430", "    64")}}},
        // 430 + 18 characters of the station name fill a 448-byte memory.
        SeedCase{"TableSizeExactlyFull", [](StationSettings& s) { s.tabJmenoStanice = "ABCDEFGHIJKLMNOPQR"; }, 448,
                 {}},
        SeedCase{"TableSizeOneTooMany", [](StationSettings& s) { s.tabJmenoStanice = "ABCDEFGHIJKLMNOPQRS"; }, 448,
                 {{"lblInfoPamUsage", 0, SizeCheck, tooBig("449", "   448")}}},
        // A letter with a diacritic takes one byte in the station, not two.
        SeedCase{"CzechLettersCountOnce", [](StationSettings& s) { s.tabJmenoStanice = "ŽĎÁRŽĎÁRŽĎÁRŽĎÁRŽĎÁ"; }, 448,
                 {{"lblInfoPamUsage", 0, SizeCheck, tooBig("449", "   448")}}},
        SeedCase{"LargeMemoryExactlyFull", [](StationSettings& s) { s.rtPowerUp = std::string(7698, 'a'); }, 8128,
                 {}},
        SeedCase{"LargeMemoryOneTooMany", [](StationSettings& s) { s.rtPowerUp = std::string(7699, 'a'); }, 8128,
                 {{"lblInfoPamUsage", 0, SizeCheck, tooBig("8129", "  8128")}}}),
    kSeedName);

// All kinds at once: each comes back, and nothing else.
TEST(SeededFaults, OneOfEachKindTogether)
{
    StationSettings s;
    s.tabINPNazev[1] = "Dveře"; // character set
    s.tabINPNazev[0] = "st";    // keyword
    s.tabOUTZap[2] = "ON";      // prefix, and the cross-check on the on command
    s.tabOUTVyp[2] = "ON1";
    s.tabINPZap[6] = "ANO"; // equality
    s.tabINPVyp[6] = "ano";
    s.tabDobaPlatnostiSMS = "31"; // SMS validity
    s.tabAINHCL1Level[1] = "";    // not empty
    s.tabAINCL1Level[3] = "50";   // level check
    s.tabAINCL2Level[3] = "40";
    s.tabTCPrijem[4] = true;  // phone table
    s.tabTCUdalost[5] = true;
    s.tabOUTNazev[0] = "PUMPA"; // output cross-check on names
    s.tabOUTNazev[1] = "PUMPA2";
    // Used size: 430 + 2 + 5 + 2 + 3 + 3 + 3 + 5 + 6 = 459 bytes.
    const CheckReport report = checkConfiguration(s, 448);

    const std::vector<Violation> expected{
        {"tabINPNazev", 2, CharacterSet, "Název vstupu může obsahovat pouze tyto znaky: " + kInputSet},
        {"tabINPNazev", 1, Keyword, "Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords},
        {"tabOUTZap", 3, PrefixConflict, "Název 'Zapnuto' nesmí být prefixem názvu 'Vypnuto' ani naopak."},
        {"tabOUTVyp", 3, PrefixConflict, "Název 'Vypnuto' nesmí být prefixem názvu 'Zapnuto' ani naopak."},
        {"tabINPZap", 7, EqualConflict, "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'."},
        {"tabINPVyp", 7, EqualConflict, "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'."},
        {"tabDobaPlatnostiSMS", 0, SmsValidity, kSmsValidityMessage},
        {"tabAINHCL1Level", 2, NotEmpty, kBadNumber},
        {"tabAINCL1Level", 4, LevelCheck, kLevelsWrong},
        {"tabTCPrijem", 5, PhoneTable, kPrijemMessage},
        {"tabTCUdalost", 6, PhoneTable, kUdalostMessage},
        {"tabOUTNazev", 1, OutputCrossCheck, nameConflict("OUT1")},
        {"tabOUTZap", 3, OutputCrossCheck, onConflict("OUT3")},
        {"lblInfoPamUsage", 0, SizeCheck, tooBig("459", "   448")},
    };
    EXPECT_THAT(report.violations, UnorderedElementsAreArray(violationMatchers(expected)));
    EXPECT_THAT(report.adjustments, testing::IsEmpty());
    EXPECT_FALSE(report.clean());
}

// ---------------------------------------------------------------------------
// The size check alone, as the write flow makes it

struct SizeCase {
    const char* name;
    std::size_t nameLength; // characters of the station name
    std::size_t eepromSize;
    std::optional<std::string> message;
};

class SizeCheckAlone : public testing::TestWithParam<SizeCase> {};

TEST_P(SizeCheckAlone, RefusesOnlyWhatExceedsTheMemory)
{
    const auto& c = GetParam();
    StationSettings s;
    s.tabJmenoStanice = std::string(c.nameLength, 'x');
    const auto violation = sizeCheck(s, c.eepromSize);
    if (!c.message) {
        EXPECT_FALSE(violation.has_value()) << violation->message;
        return;
    }
    ASSERT_TRUE(violation.has_value());
    EXPECT_EQ(violation->field, "lblInfoPamUsage");
    EXPECT_EQ(violation->row, 0);
    EXPECT_EQ(violation->rule, SizeCheck);
    EXPECT_EQ(violation->message, *c.message);
}

INSTANTIATE_TEST_SUITE_P(Sizes, SizeCheckAlone,
                         testing::Values(SizeCase{"EmptyFits430", 0, 430, std::nullopt},
                                         SizeCase{"EmptyTooBigFor429", 0, 429, tooBig("430", "429")},
                                         SizeCase{"EmptyFitsAmply", 0, 960, std::nullopt},
                                         SizeCase{"Fills448", 18, 448, std::nullopt},
                                         SizeCase{"OneOver448", 19, 448, tooBig("449", "   448")},
                                         SizeCase{"OneOver192", 0, 192, tooBig("430", "   192")},
                                         SizeCase{"OffTableSize", 71, 500, tooBig("501", "500")}),
                         [](const testing::TestParamInfo<SizeCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// Clamps and the UTO prefix change texts; they never refuse them

struct AdjustCase {
    const char* name;
    std::function<void(StationSettings&)> seed;
    std::vector<Adjustment> expected;
};

void PrintTo(const AdjustCase& c, std::ostream* out)
{
    *out << c.name;
}

class Adjustments : public testing::TestWithParam<AdjustCase> {};

TEST_P(Adjustments, AreListedApartFromViolations)
{
    const auto& c = GetParam();
    StationSettings s;
    c.seed(s);
    const CheckReport report = checkConfiguration(s);
    EXPECT_THAT(report.violations, testing::IsEmpty());
    EXPECT_TRUE(report.clean());
    EXPECT_THAT(report.adjustments, UnorderedElementsAreArray(adjustmentMatchers(c.expected)));
}

INSTANTIATE_TEST_SUITE_P(
    Changes, Adjustments,
    testing::Values(
        AdjustCase{"ImpulseTooLong", [](StationSettings& s) { s.tabOUTimpulsLEN[1] = "30"; },
                   {{"tabOUTimpulsLEN", 2, "30", "25.5"}}},
        AdjustCase{"ImpulseRoundedHalfUp", [](StationSettings& s) { s.tabOUTimpulsLEN[4] = "0.15"; },
                   {{"tabOUTimpulsLEN", 5, "0.15", "0.2"}}},
        AdjustCase{"ImpulseZero", [](StationSettings& s) { s.tabOUTimpulsLEN[7] = "0"; },
                   {{"tabOUTimpulsLEN", 8, "0", "0.1"}}},
        AdjustCase{"ImpulseInRange", [](StationSettings& s) { s.tabOUTimpulsLEN[0] = "3.7"; }, {}},
        AdjustCase{"TooManyHours", [](StationSettings& s) { s.eePSOnH = "500"; }, {{"eePSOnH", 0, "500", "465"}}},
        AdjustCase{"MinutesCarried",
                   [](StationSettings& s) {
                       s.eePSOffH = "2";
                       s.eePSOffM = "125";
                   },
                   {{"eePSOffH", 0, "2", "4"}, {"eePSOffM", 0, "125", "5"}}},
        AdjustCase{"FiveMinutesAtLeast",
                   [](StationSettings& s) {
                       s.eePSOnH = "0";
                       s.eePSOnM = "3";
                   },
                   {{"eePSOnM", 0, "3", "5"}}},
        AdjustCase{"UtoNationalNumber",
                   [](StationSettings& s) {
                       s.tabUTOEnable = true;
                       s.tabTC[0] = "0601234567";
                       s.tabTCPrijem[0] = true;
                   },
                   {{"tabTC", 1, "0601234567", "+420601234567"}}},
        AdjustCase{"UtoDoubleZero",
                   [](StationSettings& s) {
                       s.tabUTOEnable = true;
                       s.tabTC[2] = "00420601234567";
                   },
                   {{"tabTC", 3, "00420601234567", "+420601234567"}}},
        AdjustCase{"UtoInternationalUnchanged",
                   [](StationSettings& s) {
                       s.tabUTOEnable = true;
                       s.tabTC[2] = "+420601234567";
                   },
                   {}},
        AdjustCase{"UtoBoxClearUnchanged", [](StationSettings& s) { s.tabTC[5] = "0601234567"; }, {}},
        AdjustCase{"StartUpUnchanged", [](StationSettings&) {}, {}}),
    [](const testing::TestParamInfo<AdjustCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// The output cross-check of the write flow, on its own

struct CrossCase {
    const char* name;
    std::function<void(StationSettings&)> seed;
    std::vector<OutputConflict> expected; // in the flow's order
};

void PrintTo(const CrossCase& c, std::ostream* out)
{
    *out << c.name;
}

OutputConflict conflict(std::size_t row, OutputColumn column)
{
    const std::string label = "OUT" + std::to_string(row + 1);
    switch (column) {
    case OutputColumn::Name: return {row, column, "tabOUTNazev", nameConflict(label)};
    case OutputColumn::On: return {row, column, "tabOUTZap", onConflict(label)};
    case OutputColumn::Off: return {row, column, "tabOUTVyp", offConflict(label)};
    case OutputColumn::Impulse: return {row, column, "tabOUTimpuls", impulseConflict(label)};
    }
    return {};
}

class CrossCheck : public testing::TestWithParam<CrossCase> {};

TEST_P(CrossCheck, ReportsEveryConflictingCellInOrder)
{
    const auto& c = GetParam();
    StationSettings s;
    c.seed(s);
    std::vector<testing::Matcher<const OutputConflict&>> matchers;
    for (const auto& want : c.expected)
        matchers.push_back(IsConflict(want));
    EXPECT_THAT(outputCrossCheck(s), testing::ElementsAreArray(matchers));
}

using C = OutputColumn;

INSTANTIATE_TEST_SUITE_P(
    Outputs, CrossCheck,
    testing::Values(
        CrossCase{"AllEmpty", [](StationSettings&) {}, {}},
        CrossCase{"DistinctNamesAndCommands",
                  [](StationSettings& s) {
                      s.tabOUTNazev = {"CERPADLO1", "CERPADLO2", "SIRENA", "", "", "", "", ""};
                      s.tabOUTZap = {"ZAP1", "ZAP2", "HOUKEJ", "", "", "", "", ""};
                      s.tabOUTVyp = {"VYP1", "VYP2", "TICHO", "", "", "", "", ""};
                      s.tabOUTimpuls = {"IMP1", "IMP2", "POPLACH", "", "", "", "", ""};
                  },
                  {}},
        CrossCase{"ShorterNameFirst",
                  [](StationSettings& s) {
                      s.tabOUTNazev[0] = "PUMPA";
                      s.tabOUTNazev[1] = "PUMPA2";
                  },
                  {conflict(0, C::Name)}},
        // Only the name that begins the other is at fault.
        CrossCase{"ShorterNameSecond",
                  [](StationSettings& s) {
                      s.tabOUTNazev[0] = "PUMPA2";
                      s.tabOUTNazev[1] = "pumpa";
                  },
                  {conflict(1, C::Name)}},
        CrossCase{"EqualNamesBothRows",
                  [](StationSettings& s) {
                      s.tabOUTNazev[2] = "SIRENA";
                      s.tabOUTNazev[4] = "sirena";
                  },
                  {conflict(2, C::Name), conflict(4, C::Name)}},
        CrossCase{"NameBeginsAnotherRowsCommand",
                  [](StationSettings& s) {
                      s.tabOUTNazev[0] = "TOP";
                      s.tabOUTZap[1] = "TOPIT";
                  },
                  {conflict(0, C::Name)}},
        CrossCase{"NameBeginsItsOwnCommand",
                  [](StationSettings& s) {
                      s.tabOUTNazev[2] = "ZAP";
                      s.tabOUTZap[2] = "ZAPNI";
                  },
                  {conflict(2, C::Name)}},
        CrossCase{"OffBeginsAnotherRowsName",
                  [](StationSettings& s) {
                      s.tabOUTNazev[1] = "SVETLO";
                      s.tabOUTVyp[3] = "SV";
                  },
                  {conflict(3, C::Off)}},
        CrossCase{"OnBeginsOffInItsRow",
                  [](StationSettings& s) {
                      s.tabOUTZap[0] = "ON";
                      s.tabOUTVyp[0] = "ON1";
                  },
                  {conflict(0, C::On)}},
        CrossCase{"OnEqualsImpulseInItsRow",
                  [](StationSettings& s) {
                      s.tabOUTZap[5] = "PULS";
                      s.tabOUTimpuls[5] = "puls";
                  },
                  {conflict(5, C::On), conflict(5, C::Impulse)}},
        CrossCase{"OffEqualsImpulseInItsRow",
                  [](StationSettings& s) {
                      s.tabOUTVyp[6] = "X";
                      s.tabOUTimpuls[6] = "X";
                  },
                  {conflict(6, C::Off), conflict(6, C::Impulse)}},
        CrossCase{"EqualCommandsOfDifferentRows",
                  [](StationSettings& s) {
                      s.tabOUTZap[0] = "ZAP";
                      s.tabOUTZap[1] = "ZAP";
                      s.tabOUTVyp[0] = "VYP";
                      s.tabOUTVyp[1] = "vyp";
                  },
                  {}},
        CrossCase{"ReservedWordIsNotItsConcern", [](StationSettings& s) { s.tabOUTNazev[0] = "STATE"; }, {}},
        CrossCase{"RowByRowThenColumnByColumn",
                  [](StationSettings& s) {
                      s.tabOUTNazev[0] = "XY";
                      s.tabOUTVyp[0] = "X";
                      s.tabOUTNazev[2] = "ZAP";
                      s.tabOUTZap[2] = "ZAPNI";
                      s.tabOUTimpuls[2] = "Z";
                  },
                  {conflict(0, C::Off), conflict(2, C::Name), conflict(2, C::Impulse)}},
        CrossCase{"EveryColumnOfTheLastRow",
                  [](StationSettings& s) {
                      s.tabOUTNazev[7] = "A";
                      s.tabOUTZap[7] = "ab";
                      s.tabOUTVyp[7] = "AB";
                      s.tabOUTimpuls[7] = "abc";
                  },
                  {conflict(7, C::Name), conflict(7, C::On), conflict(7, C::Off)}}),
    [](const testing::TestParamInfo<CrossCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// Row labels quoted by messages and dialog captions

struct LabelCase {
    const char* name;
    RowTable table;
    std::size_t row;
    const char* label;
};

class RowLabels : public testing::TestWithParam<LabelCase> {};

TEST_P(RowLabels, AreTheMainWindowsCaptions)
{
    EXPECT_EQ(rowLabel(GetParam().table, GetParam().row), GetParam().label);
}

INSTANTIATE_TEST_SUITE_P(Labels, RowLabels,
                         testing::Values(LabelCase{"FirstOutput", RowTable::Outputs, 0, "OUT1"},
                                         LabelCase{"LastOutput", RowTable::Outputs, 7, "OUT8"},
                                         LabelCase{"FirstInput", RowTable::Inputs, 0, "IN1"},
                                         LabelCase{"LastInput", RowTable::Inputs, 7, "IN8"},
                                         LabelCase{"FirstAnalog", RowTable::Analog, 0, "AIN1"},
                                         LabelCase{"SeventhAnalog", RowTable::Analog, 6, "AIN7"},
                                         LabelCase{"BatteryRow", RowTable::Analog, 7, "BAT"},
                                         LabelCase{"FirstPhone", RowTable::Phones, 0, "T1"},
                                         LabelCase{"LastPhone", RowTable::Phones, 7, "T8"}),
                         [](const testing::TestParamInfo<LabelCase>& row) { return std::string(row.param.name); });

} // namespace
} // namespace rm8
