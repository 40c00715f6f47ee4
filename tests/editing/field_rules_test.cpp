// The rules each field applies on leaving, with the exact messages the
// technician sees, in the order the fields apply them.

#include <gtest/gtest.h>

#include "editing/character_sets.h"
#include "editing/field_rules.h"
#include "editing/text_compare.h"

namespace rm8 {
namespace {

constexpr const char* kKeywords = "STATE;STAV;BACK;NOBACK;RESET;SHUTDOWN;NAME;ZPET;NEZPET;JMENO";
constexpr const char* kOutputSet = "_0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr const char* kInputSet =
    " `!@#$%^&*()-_=+\\|[{]};:',<.>/?0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr const char* kMessageSet =
    " !#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]\\^_`abcdefghijklmnopqrstuvwxyz{}|~";

struct FieldCase {
    const char* name;
    const char* field;
    const char* text;
    const char* other; // the text of every other field of the row
    std::string expected; // empty: the text passes
};

class FieldRule : public testing::TestWithParam<FieldCase> {};

TEST_P(FieldRule, GivesTheExactMessageOrPasses)
{
    const auto& c = GetParam();
    const auto failure = checkFieldText(c.field, c.text, [&](std::string_view) { return std::string(c.other); });
    if (c.expected.empty()) {
        EXPECT_FALSE(failure) << failure->message;
    } else {
        ASSERT_TRUE(failure) << "expected: " << c.expected;
        EXPECT_EQ(failure->message, c.expected);
    }
}

const std::string kInputNameChars = std::string("Název vstupu může obsahovat pouze tyto znaky: ") + kInputSet;
const std::string kInputKeyword =
    std::string("Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): ") + kKeywords;
const std::string kOutputNameChars = std::string("Název výstupu může obsahovat pouze tyto znaky: ") + kOutputSet;

INSTANTIATE_TEST_SUITE_P(
    Names, FieldRule,
    testing::Values(
        FieldCase{"EmptyInputNamePasses", "tabINPNazev", "", "", ""},
        FieldCase{"InputNamePrefixOfState", "tabINPNazev", "st", "", kInputKeyword},
        FieldCase{"InputNameLongerThanKeyword", "tabINPNazev", "STATEX", "", ""},
        FieldCase{"InputNameEqualsKeywordIgnoringCase", "INPNazev", "zpet", "", kInputKeyword},
        FieldCase{"InputNameWithDoubleQuote", "tabINPNazev", "A\"B", "", kInputNameChars},
        FieldCase{"InputNameWithDiacritics", "tabINPNazev", "Dveře", "", kInputNameChars},
        FieldCase{"CharactersBeforeKeyword", "tabINPNazev", "s\"", "", kInputNameChars},
        FieldCase{"OutputNameWithSpace", "tabOUTNazev", "PUMPA 1", "", kOutputNameChars},
        FieldCase{"OutputNameKeyword", "OUTNazev", "Reset", "",
                  std::string("Název výstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): ")
                      + kKeywords},
        FieldCase{"StationNameHasNoRules", "tabJmenoStanice", "Čerpací stanice \"U lesa\"", "", ""}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    InputStates, FieldRule,
    testing::Values(
        FieldCase{"OffEqualsOnIgnoringCase", "tabINPVyp", "zavreno", "ZAVRENO",
                  "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'."},
        FieldCase{"OnEqualsOffInDialog", "INPZap", "Open", "open", "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'."},
        FieldCase{"EmptyStatesNeverConflict", "tabINPZap", "", "", ""},
        FieldCase{"PrefixIsNotEquality", "tabINPVyp", "ZAV", "ZAVRENO", ""},
        FieldCase{"OffStateCharacters", "tabINPVyp", "~", "",
                  std::string("Název 'Vypnuto' může obsahovat pouze tyto znaky: ") + kInputSet},
        FieldCase{"MainWindowHighToLow", "tabINPHL", "a~", "",
                  std::string("Název přechodu 'Aktivní->Neaktivní' může obsahovat pouze tyto znaky: ") + kInputSet},
        FieldCase{"MainWindowLowToHigh", "tabINPLH", "a~", "",
                  std::string("Název přechodu 'Neaktivní->Aktivní' může obsahovat pouze tyto znaky: ") + kInputSet},
        FieldCase{"DialogHighToLow", "INPHL", "a~", "",
                  std::string("Název přechodu '1->0' může obsahovat pouze tyto znaky: ") + kInputSet},
        FieldCase{"DialogLowToHigh", "INPLH", "a~", "",
                  std::string("Název přechodu '0->1' může obsahovat pouze tyto znaky: ") + kInputSet}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    OutputCommands, FieldRule,
    testing::Values(
        FieldCase{"OnIsPrefixOfOff", "tabOUTZap", "ON", "on1",
                  "Název 'Zapnuto' nesmí být prefixem názvu 'Vypnuto' ani naopak."},
        FieldCase{"OnAndOffDiffer", "tabOUTZap", "ON", "OFF", ""},
        FieldCase{"OffAgainstUnrelatedCommands", "tabOUTVyp", "VYP", "ZAP",
                  ""},
        FieldCase{"ImpulseAgainstOffFirst", "tabOUTimpuls", "IMP", "IMPULS",
                  "Název 'Impuls' nesmí být prefixem názvu 'Vypnuto' ani naopak."},
        FieldCase{"MainWindowImpulseKeyword", "tabOUTimpuls", "back", "X",
                  std::string("Název 'Impuls' nesmí být žádné z těchto klíčových slov (ani jejich předpony): ") + kKeywords},
        FieldCase{"DialogImpulseKeywordInLowerCase", "OUTimpuls", "back", "X",
                  std::string("Název 'impuls' nesmí být žádné z těchto klíčových slov (ani jejich předpony): ") + kKeywords},
        FieldCase{"DialogComparesOnlyForEquality", "OUTZap", "ON", "ON1", ""},
        FieldCase{"DialogOffEqualsOn", "OUTVyp", "ON", "on", "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'."},
        FieldCase{"DialogImpulseNotComparedWithCommands", "OUTimpuls", "ON", "ON", ""},
        FieldCase{"CommandCharacters", "OUTVyp", "vyp-1", "",
                  std::string("Název 'Vypnuto' může obsahovat pouze tyto znaky: ") + kOutputSet}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    NumbersAndTexts, FieldRule,
    testing::Values(
        FieldCase{"DecimalComma", "tabAINCL1Level", "1,5", "", ""},
        FieldCase{"DecimalPoint", "AINHCL2Level", "1.5", "", ""},
        FieldCase{"NegativeLevel", "tabAINCL2Level", "-1", "", "Číslo je chybně zadáno."},
        FieldCase{"EmptyLevel", "AINCL1Level", "", "", "Číslo je chybně zadáno."},
        FieldCase{"PhoneWithPlusInside", "tabTC", "60+1", "", ""},
        FieldCase{"PhoneWithSpace", "TC", "601 234", "", "Telefonní číslo je špatně zadáno."},
        FieldCase{"ServiceCentre", "tabTCcentra", "+420-602", "", "Telefonní číslo servisního centra je špatně zadáno."},
        FieldCase{"Uto", "tabUTO", "x", "", "UTO je špatně zadáno."},
        FieldCase{"PinWithPlus", "tabPIN", "+1234", "", "PIN je špatně zadán."},
        FieldCase{"ReportTextWithDoubleQuote", "rtPowerUp", "\"", "", std::string("Text může obsahovat pouze tyto znaky: ") + kMessageSet},
        FieldCase{"AnalogEventText", "AINCL2Dn", "teplota > 50 ~", "", ""},
        FieldCase{"SmsValidityEmpty", "tabDobaPlatnostiSMS", "", "",
                  "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."},
        FieldCase{"SmsValidityZero", "tabDobaPlatnostiSMS", "0", "",
                  "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."},
        FieldCase{"SmsValidity31", "tabDobaPlatnostiSMS", "31", "",
                  "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."},
        FieldCase{"SmsValidityNotDigits", "tabDobaPlatnostiSMS", "3d", "",
                  "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."},
        FieldCase{"SmsValidityOne", "tabDobaPlatnostiSMS", "1", "", ""},
        FieldCase{"SmsValidityThirty", "tabDobaPlatnostiSMS", "30", "", ""},
        FieldCase{"ClampedFieldsNeverRefuse", "tabOUTimpulsLEN", "abc", "", ""}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(FieldRuleTable, EveryMessageEndingInAColonIsFollowedByWhatWasViolated)
{
    for (const auto& entry : fieldRuleTable())
        for (const auto& rule : entry.rules)
            if (std::string_view(rule.message).ends_with(": ")) {
                EXPECT_TRUE(rule.kind == RuleKind::CharacterSet || rule.kind == RuleKind::Keyword) << entry.field;
            }
    EXPECT_EQ(findFieldRules("nothing"), nullptr);
    EXPECT_TRUE(findFieldRules("eePSOnM")->clamps());
}

struct CompareCase {
    const char* name;
    const char* a;
    const char* b;
    bool prefix;
};

class PrefixOfEachOther : public testing::TestWithParam<CompareCase> {};

TEST_P(PrefixOfEachOther, ComparesIgnoringCase)
{
    EXPECT_EQ(isPrefixOfEachOther(GetParam().a, GetParam().b), GetParam().prefix);
}

INSTANTIATE_TEST_SUITE_P(Cases, PrefixOfEachOther,
                         testing::Values(CompareCase{"ShortFirst", "ZAP", "zapnuto", true},
                                         CompareCase{"ShortSecond", "Vypnuto", "VYP", true},
                                         CompareCase{"EmptyAgainstText", "", "X", false},
                                         CompareCase{"BothEmpty", "", "", false},
                                         CompareCase{"Different", "ZAP", "VYP", false},
                                         CompareCase{"EqualTexts", "Zap", "zAP", true},
                                         CompareCase{"CzechLetters", "čerp", "ČERPADLO", true}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(KeywordTest, WalksTheListWordByWord)
{
    EXPECT_FALSE(passesKeywordTest("nob", sets::kReservedKeywords));
    EXPECT_TRUE(passesKeywordTest("NOBACKX", sets::kReservedKeywords));
    EXPECT_FALSE(passesKeywordTest("jmeno", sets::kReservedKeywords)) << "the last word counts too";
    EXPECT_TRUE(passesKeywordTest("TATE", sets::kReservedKeywords)) << "only the start of a word";
    EXPECT_TRUE(passesKeywordTest("A", "B;;C;")) << "empty entries match no name";
    EXPECT_FALSE(passesKeywordTest("c", "B;;C;"));
}

} // namespace
} // namespace rm8
