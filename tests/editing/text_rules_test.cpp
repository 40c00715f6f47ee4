// The text rules a field applies when it is left: character sets, the
// station's keywords, the prefix and equality tests between command words,
// and the exact messages the window shows, field by field.

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "editing/character_sets.h"
#include "editing/field_rules.h"
#include "editing/text_compare.h"

namespace rm8 {
namespace {

// Written out here once more rather than taken from the code, so that a
// changed character in a set or keyword list shows up as a failure.
const std::string kInputSet =
    R"x( `!@#$%^&*()-_=+\|[{]};:',<.>/?0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ)x";
const std::string kOutputSet = "_0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
const std::string kMessageSet =
    R"x( !#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]\^_`abcdefghijklmnopqrstuvwxyz{}|~)x";
const std::string kPhoneSet = "+0123456789";
const std::string kDigitSet = "0123456789";
const std::string kDecimalSet = "0123456789,.";
const std::string kKeywords = "STATE;STAV;BACK;NOBACK;RESET;SHUTDOWN;NAME;ZPET;NEZPET;JMENO";

// ---------------------------------------------------------------------------
// The sets themselves

struct SetDefinition {
    const char* name;
    std::string_view actual;
    std::string expected;
};

class SetContents : public testing::TestWithParam<SetDefinition> {};

TEST_P(SetContents, HoldsExactlyTheStationsCharacters)
{
    EXPECT_EQ(GetParam().actual, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Sets, SetContents,
                         testing::Values(SetDefinition{"InputName", sets::kInputName, kInputSet},
                                         SetDefinition{"OutputName", sets::kOutputName, kOutputSet},
                                         SetDefinition{"MessageText", sets::kMessageText, kMessageSet},
                                         SetDefinition{"Phone", sets::kPhone, kPhoneSet},
                                         SetDefinition{"Digits", sets::kDigits, kDigitSet},
                                         SetDefinition{"Decimal", sets::kDecimal, kDecimalSet},
                                         SetDefinition{"ReservedKeywords", sets::kReservedKeywords, kKeywords}),
                         [](const testing::TestParamInfo<SetDefinition>& row) { return std::string(row.param.name); });

struct SetCase {
    const char* name;
    std::string_view set;
    std::string text;
    bool accepted;
};

class SetMembership : public testing::TestWithParam<SetCase> {};

TEST_P(SetMembership, AcceptsOnlyTextsMadeOfTheSet)
{
    const auto& c = GetParam();
    EXPECT_EQ(sets::inSet(c.text, c.set), c.accepted) << "text: " << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Membership, SetMembership,
    testing::Values(
        // Every set takes its own whole contents and the empty text.
        SetCase{"InputWholeSet", sets::kInputName, kInputSet, true},
        SetCase{"OutputWholeSet", sets::kOutputName, kOutputSet, true},
        SetCase{"MessageWholeSet", sets::kMessageText, kMessageSet, true},
        SetCase{"PhoneWholeSet", sets::kPhone, kPhoneSet, true},
        SetCase{"DigitWholeSet", sets::kDigits, kDigitSet, true},
        SetCase{"DecimalWholeSet", sets::kDecimal, kDecimalSet, true},
        SetCase{"InputEmpty", sets::kInputName, "", true},
        SetCase{"OutputEmpty", sets::kOutputName, "", true},
        SetCase{"MessageEmpty", sets::kMessageText, "", true},
        SetCase{"PhoneEmpty", sets::kPhone, "", true},
        SetCase{"DigitEmpty", sets::kDigits, "", true},
        SetCase{"DecimalEmpty", sets::kDecimal, "", true},
        // What each set deliberately leaves out.
        SetCase{"InputNoDoubleQuote", sets::kInputName, "a\"b", false},
        SetCase{"InputNoTilde", sets::kInputName, "a~b", false},
        SetCase{"InputTakesSpace", sets::kInputName, "Dvere rozvadece", true},
        SetCase{"OutputNoSpace", sets::kOutputName, "OUT 1", false},
        SetCase{"OutputNoHyphen", sets::kOutputName, "OUT-1", false},
        SetCase{"OutputNoPoint", sets::kOutputName, "OUT.1", false},
        SetCase{"OutputTakesUnderscore", sets::kOutputName, "RESET_MODEMU", true},
        SetCase{"MessageNoDoubleQuote", sets::kMessageText, "say \"hi\"", false},
        SetCase{"MessageTakesTilde", sets::kMessageText, "~100 %", true},
        SetCase{"PhoneNoSpace", sets::kPhone, "+420 601", false},
        SetCase{"PhoneNoHyphen", sets::kPhone, "601-234", false},
        SetCase{"PhonePlusInTheMiddle", sets::kPhone, "60+1", true},
        SetCase{"DigitNoPlus", sets::kDigits, "+1234", false},
        SetCase{"DecimalComma", sets::kDecimal, "1,5", true},
        SetCase{"DecimalPoint", sets::kDecimal, "1.5", true},
        SetCase{"DecimalNoMinus", sets::kDecimal, "-1", false},
        SetCase{"DecimalNoBlank", sets::kDecimal, " 0", false},
        // No set holds a letter with a diacritic, lower or upper case.
        SetCase{"InputNoDiacriticSmall", sets::kInputName, "Dveře", false},
        SetCase{"InputNoDiacriticCapital", sets::kInputName, "ČERPADLO", false},
        SetCase{"OutputNoDiacriticSmall", sets::kOutputName, "topení", false},
        SetCase{"OutputNoDiacriticCapital", sets::kOutputName, "OSVĚTLENÍ", false},
        SetCase{"MessageNoDiacriticSmall", sets::kMessageText, "Výpadek sítě", false},
        SetCase{"MessageNoDiacriticCapital", sets::kMessageText, "ŘÍDICÍ", false},
        SetCase{"PhoneNoDiacritic", sets::kPhone, "1ž", false},
        SetCase{"DigitNoDiacritic", sets::kDigits, "ů", false},
        SetCase{"DecimalNoDiacritic", sets::kDecimal, "1,é", false}),
    [](const testing::TestParamInfo<SetCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// The keyword test against the station's own command words

struct KeywordCase {
    const char* name;
    std::string text;
    bool passes;
};

class ReservedKeywords : public testing::TestWithParam<KeywordCase> {};

TEST_P(ReservedKeywords, RefusesKeywordsAndTheirPrefixes)
{
    const auto& c = GetParam();
    EXPECT_EQ(passesKeywordTest(c.text, kKeywords), c.passes) << "name: " << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Keywords, ReservedKeywords,
    testing::Values(KeywordCase{"EmptyPasses", "", true}, KeywordCase{"LowerCasePrefixOfState", "st", false},
                    KeywordCase{"StateWithXPasses", "STATEX", true}, KeywordCase{"ThreeLettersOfState", "STA", false},
                    KeywordCase{"SingleLetterPrefix", "S", false}, KeywordCase{"ZpetLowerCase", "zpet", false},
                    KeywordCase{"NobackWithXPasses", "NOBACKX", true}, KeywordCase{"WholeKeywordState", "STATE", false},
                    KeywordCase{"MixedCaseReset", "ReSeT", false}, KeywordCase{"PrefixOfShutdown", "SHUT", false},
                    KeywordCase{"PrefixOfNezpet", "ne", false}, KeywordCase{"PrefixOfName", "NAM", false},
                    KeywordCase{"LastKeywordOfTheList", "jmeno", false},
                    KeywordCase{"LastKeywordPrefix", "JM", false},
                    KeywordCase{"KeywordInsideIsNoPrefix", "ATE", true},
                    KeywordCase{"LongerThanBack", "BACKUP", true}, KeywordCase{"LongerThanStav", "STAVY", true},
                    KeywordCase{"UnrelatedWord", "CERPADLO", true},
                    KeywordCase{"SemicolonSpanningTwoWords", "STATE;STAV", true}),
    [](const testing::TestParamInfo<KeywordCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// Prefix and equality between two names

struct PairCase {
    const char* name;
    std::string first;
    std::string second;
    bool expected;
};

class PrefixOfEachOther : public testing::TestWithParam<PairCase> {};

TEST_P(PrefixOfEachOther, ComparesTheShorterWithTheStartOfTheLonger)
{
    const auto& c = GetParam();
    EXPECT_EQ(isPrefixOfEachOther(c.first, c.second), c.expected) << c.first << " / " << c.second;
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, PrefixOfEachOther,
    testing::Values(PairCase{"ZapAgainstZapnuto", "ZAP", "zapnuto", true}, PairCase{"EmptyAgainstX", "", "X", false},
                    PairCase{"XAgainstEmpty", "X", "", false}, PairCase{"ZapAgainstVyp", "ZAP", "VYP", false},
                    PairCase{"EqualNonEmpty", "VYP", "VYP", true}, PairCase{"EqualButCase", "Vyp", "vYP", true},
                    PairCase{"BothEmpty", "", "", false}, PairCase{"ShorterComesSecond", "Vypnuto", "VYP", true},
                    PairCase{"OnAgainstOn1", "ON", "on1", true}, PairCase{"OnAgainstOff", "ON", "OFF", false},
                    PairCase{"SameLengthDifferent", "ON", "OF", false},
                    PairCase{"EndOfLongerIsNoPrefix", "PNUTO", "ZAPNUTO", false},
                    PairCase{"CzechCapitalAgainstSmall", "ŽÁR", "žárovka", true}),
    [](const testing::TestParamInfo<PairCase>& row) { return std::string(row.param.name); });

class EqualIgnoringCase : public testing::TestWithParam<PairCase> {};

TEST_P(EqualIgnoringCase, IgnoresOnlyLetterCase)
{
    const auto& c = GetParam();
    EXPECT_EQ(equalIgnoringCase(c.first, c.second), c.expected) << c.first << " / " << c.second;
}

INSTANTIATE_TEST_SUITE_P(Pairs, EqualIgnoringCase,
                         testing::Values(PairCase{"UpperAgainstLower", "ON", "on", true},
                                         PairCase{"Identical", "Zapnuto", "Zapnuto", true},
                                         PairCase{"PrefixIsNotEqual", "ON", "ON1", false},
                                         PairCase{"DifferentLetters", "ANO", "NE", false},
                                         PairCase{"BothEmpty", "", "", true},
                                         PairCase{"CzechCase", "Čerpadlo", "čERPADLO", true},
                                         PairCase{"DiacriticIsNotPlainLetter", "cerpadlo", "čerpadlo", false}),
                         [](const testing::TestParamInfo<PairCase>& row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------
// The rule table, field by field

struct FieldCase {
    const char* name;
    const char* field;
    std::string text;
    std::map<std::string, std::string> others; // the other fields of the row
    std::optional<RuleKind> kind;                // nothing when the text passes
    std::string message;
};

FieldCase passes(const char* name, const char* field, std::string text, std::map<std::string, std::string> others = {})
{
    return {name, field, std::move(text), std::move(others), std::nullopt, ""};
}

FieldCase fails(const char* name, const char* field, std::string text, RuleKind kind, std::string message,
                std::map<std::string, std::string> others = {})
{
    return {name, field, std::move(text), std::move(others), kind, std::move(message)};
}

class FieldTextRules : public testing::TestWithParam<FieldCase> {};

TEST_P(FieldTextRules, StopsAtTheFirstFailingRuleWithItsMessage)
{
    const auto& c = GetParam();
    const OtherFieldText other = [&](std::string_view field) {
        const auto found = c.others.find(std::string(field));
        return found == c.others.end() ? std::string() : found->second;
    };
    const auto failure = checkFieldText(c.field, c.text, other);
    if (!c.kind) {
        EXPECT_FALSE(failure.has_value()) << "refused with: " << failure->message;
        return;
    }
    ASSERT_TRUE(failure.has_value()) << "field " << c.field << " accepted: " << c.text;
    EXPECT_EQ(failure->rule, *c.kind) << "reported rule: " << ruleName(failure->rule);
    EXPECT_EQ(failure->message, c.message);
}

const auto kFieldNameGenerator = [](const testing::TestParamInfo<FieldCase>& row) {
    return std::string(row.param.name);
};

using enum RuleKind;

const std::string kTextChars = "Text může obsahovat pouze tyto znaky: " + kMessageSet;
const std::string kBadNumber = "Číslo je chybně zadáno.";

INSTANTIATE_TEST_SUITE_P(
    InputFields, FieldTextRules,
    testing::Values(
        // Name: input-name set, then the keywords (main window and dialog alike)
        passes("NamePlain", "tabINPNazev", "Dvere rozvadece"), passes("NameEmpty", "tabINPNazev", ""),
        passes("NameStateX", "tabINPNazev", "STATEX"),
        fails("NameDiacritic", "tabINPNazev", "Dveře", CharacterSet,
              "Název vstupu může obsahovat pouze tyto znaky: " + kInputSet),
        fails("NameDoubleQuote", "tabINPNazev", "a\"b", CharacterSet,
              "Název vstupu může obsahovat pouze tyto znaky: " + kInputSet),
        fails("NameSt", "tabINPNazev", "st", Keyword,
              "Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords),
        fails("NameJmeno", "tabINPNazev", "Jmeno", Keyword,
              "Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords),
        fails("DialogNameTilde", "INPNazev", "a~", CharacterSet,
              "Název vstupu může obsahovat pouze tyto znaky: " + kInputSet),
        fails("DialogNameKeyword", "INPNazev", "BACK", Keyword,
              "Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords),
        passes("DialogNamePlain", "INPNazev", "Zaplaveni sachty"),

        // State names: input-name set, then not equal to the other state
        fails("OffStateCharacters", "tabINPVyp", "zavřeno", CharacterSet,
              "Název 'Vypnuto' může obsahovat pouze tyto znaky: " + kInputSet, {{"tabINPZap", "zavreno"}}),
        fails("OffEqualsOn", "tabINPVyp", "ANO", EqualConflict, "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'.",
              {{"tabINPZap", "ano"}}),
        passes("OffDiffersFromOn", "tabINPVyp", "NE", {{"tabINPZap", "ANO"}}),
        passes("OffPrefixOfOnIsAllowed", "tabINPVyp", "A", {{"tabINPZap", "AB"}}),
        passes("OffAndOnBothEmpty", "tabINPVyp", "", {{"tabINPZap", ""}}),
        passes("OffStateIsNoKeywordCheck", "tabINPVyp", "STATE", {{"tabINPZap", "x"}}),
        fails("OnStateCharacters", "tabINPZap", "a~", CharacterSet,
              "Název 'Zapnuto' může obsahovat pouze tyto znaky: " + kInputSet),
        fails("OnEqualsOff", "tabINPZap", "Klid", EqualConflict, "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'.",
              {{"tabINPVyp", "KLID"}}),
        passes("OnDiffersFromOff", "tabINPZap", "POZAR", {{"tabINPVyp", "klid"}}),
        fails("DialogOffCharacters", "INPVyp", "v pořádku", CharacterSet,
              "Název 'Vypnuto' může obsahovat pouze tyto znaky: " + kInputSet),
        fails("DialogOffEqualsOn", "INPVyp", "ok", EqualConflict, "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'.",
              {{"INPZap", "OK"}}),
        fails("DialogOnEqualsOff", "INPZap", "OK", EqualConflict, "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'.",
              {{"INPVyp", "ok"}}),
        passes("DialogOnDiffers", "INPZap", "ON", {{"INPVyp", "OFF"}}),

        // Transition texts: the main window names the states, the dialog the bits
        fails("MainHighToLow", "tabINPHL", "Dveře zavřeny", CharacterSet,
              "Název přechodu 'Aktivní->Neaktivní' může obsahovat pouze tyto znaky: " + kInputSet),
        fails("MainLowToHigh", "tabINPLH", "a~", CharacterSet,
              "Název přechodu 'Neaktivní->Aktivní' může obsahovat pouze tyto znaky: " + kInputSet),
        fails("DialogHighToLow", "INPHL", "a\"", CharacterSet,
              "Název přechodu '1->0' může obsahovat pouze tyto znaky: " + kInputSet),
        fails("DialogLowToHigh", "INPLH", "Šachta", CharacterSet,
              "Název přechodu '0->1' může obsahovat pouze tyto znaky: " + kInputSet),
        passes("TransitionWithPunctuation", "tabINPLH", "Otevreny dvere! (alarm)"),
        passes("TransitionIsNoKeywordCheck", "INPHL", "RESET")),
    kFieldNameGenerator);

INSTANTIATE_TEST_SUITE_P(
    OutputMainWindow, FieldTextRules,
    testing::Values(
        passes("NamePlain", "tabOUTNazev", "CERPADLO1"), passes("NameEmpty", "tabOUTNazev", ""),
        fails("NameSpace", "tabOUTNazev", "OUT 1", CharacterSet,
              "Název výstupu může obsahovat pouze tyto znaky: _0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"),
        fails("NameDiacritic", "tabOUTNazev", "TOPENÍ", CharacterSet,
              "Název výstupu může obsahovat pouze tyto znaky: " + kOutputSet),
        fails("NameKeyword", "tabOUTNazev", "Reset", Keyword,
              "Název výstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords),
        passes("NameLongerThanKeyword", "tabOUTNazev", "RESET_MODEMU"),

        // On command: set, prefix against off, against impulse, keywords
        fails("OnAgainstOffPrefix", "tabOUTZap", "ON", PrefixConflict,
              "Název 'Zapnuto' nesmí být prefixem názvu 'Vypnuto' ani naopak.",
              {{"tabOUTVyp", "on1"}, {"tabOUTimpuls", ""}}),
        passes("OnAndOffDoNotConflict", "tabOUTZap", "ON", {{"tabOUTVyp", "OFF"}, {"tabOUTimpuls", "PULSE"}}),
        fails("OnAgainstImpulsePrefix", "tabOUTZap", "ON", PrefixConflict,
              "Název 'Zapnuto' nesmí být prefixem názvu 'Impuls' ani naopak.",
              {{"tabOUTVyp", "OFF"}, {"tabOUTimpuls", "ONE"}}),
        fails("OnOffTestedBeforeImpulse", "tabOUTZap", "ON", PrefixConflict,
              "Název 'Zapnuto' nesmí být prefixem názvu 'Vypnuto' ani naopak.",
              {{"tabOUTVyp", "O"}, {"tabOUTimpuls", "ONX"}}),
        fails("OnKeyword", "tabOUTZap", "STAV", Keyword,
              "Název 'Zapnuto' nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords,
              {{"tabOUTVyp", "OFF"}, {"tabOUTimpuls", ""}}),
        fails("OnPrefixBeforeKeyword", "tabOUTZap", "STAV", PrefixConflict,
              "Název 'Zapnuto' nesmí být prefixem názvu 'Vypnuto' ani naopak.",
              {{"tabOUTVyp", "stavx"}, {"tabOUTimpuls", ""}}),
        fails("OnCharactersBeforePrefix", "tabOUTZap", "O N", CharacterSet,
              "Název 'Zapnuto' může obsahovat pouze tyto znaky: " + kOutputSet,
              {{"tabOUTVyp", "O N1"}, {"tabOUTimpuls", ""}}),
        passes("OnEmptyNeverConflicts", "tabOUTZap", "", {{"tabOUTVyp", "OFF"}, {"tabOUTimpuls", "IMP"}}),

        // Off command: set, prefix against on, against impulse, keywords
        fails("OffAgainstOnPrefix", "tabOUTVyp", "Vypnout", PrefixConflict,
              "Název 'Vypnuto' nesmí být prefixem názvu 'Zapnuto' ani naopak.",
              {{"tabOUTZap", "VYP"}, {"tabOUTimpuls", ""}}),
        fails("OffAgainstImpulsePrefix", "tabOUTVyp", "X", PrefixConflict,
              "Název 'Vypnuto' nesmí být prefixem názvu 'Impuls' ani naopak.",
              {{"tabOUTZap", "ON"}, {"tabOUTimpuls", "xx"}}),
        fails("OffKeyword", "tabOUTVyp", "shutdown", Keyword,
              "Název 'Vypnuto' nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords,
              {{"tabOUTZap", "ON"}, {"tabOUTimpuls", ""}}),
        fails("OffCharacters", "tabOUTVyp", "OFF!", CharacterSet,
              "Název 'Vypnuto' může obsahovat pouze tyto znaky: " + kOutputSet),
        passes("OffClean", "tabOUTVyp", "VYP1", {{"tabOUTZap", "ZAP1"}, {"tabOUTimpuls", "IMP1"}}),

        // Impulse command: set, prefix against off, against on, keywords
        fails("ImpulseAgainstOffPrefix", "tabOUTimpuls", "P", PrefixConflict,
              "Název 'Impuls' nesmí být prefixem názvu 'Vypnuto' ani naopak.",
              {{"tabOUTVyp", "PUSTIT"}, {"tabOUTZap", "PUL"}}),
        fails("ImpulseAgainstOnPrefix", "tabOUTimpuls", "PULS", PrefixConflict,
              "Název 'Impuls' nesmí být prefixem názvu 'Zapnuto' ani naopak.",
              {{"tabOUTVyp", "VYP"}, {"tabOUTZap", "pul"}}),
        fails("ImpulseKeyword", "tabOUTimpuls", "reset", Keyword,
              "Název 'Impuls' nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords,
              {{"tabOUTVyp", "VYP"}, {"tabOUTZap", "ZAP"}}),
        fails("ImpulseCharacters", "tabOUTimpuls", "IMP-1", CharacterSet,
              "Název 'Impuls' může obsahovat pouze tyto znaky: " + kOutputSet),
        passes("ImpulseClean", "tabOUTimpuls", "IMP1", {{"tabOUTVyp", "VYP1"}, {"tabOUTZap", "ZAP1"}})),
    kFieldNameGenerator);

INSTANTIATE_TEST_SUITE_P(
    OutputDialog, FieldTextRules,
    testing::Values(
        fails("NameSpace", "OUTNazev", "a b", CharacterSet,
              "Název výstupu může obsahovat pouze tyto znaky: " + kOutputSet),
        fails("NameKeyword", "OUTNazev", "noback", Keyword,
              "Název výstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords),
        passes("NamePlain", "OUTNazev", "SIRENA"),

        // The dialog compares its off and on commands for equality only
        fails("OffEqualsOnCaseIgnored", "OUTVyp", "ON", EqualConflict,
              "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'.", {{"OUTZap", "on"}, {"OUTimpuls", ""}}),
        fails("OnEqualsOffCaseIgnored", "OUTZap", "on", EqualConflict,
              "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'.", {{"OUTVyp", "ON"}, {"OUTimpuls", ""}}),
        passes("OffPrefixOfOnPasses", "OUTVyp", "ON", {{"OUTZap", "ON1"}, {"OUTimpuls", ""}}),
        passes("OnPrefixOfOffPasses", "OUTZap", "ON", {{"OUTVyp", "ON1"}, {"OUTimpuls", ""}}),
        passes("OffEqualToImpulsePasses", "OUTVyp", "PULS", {{"OUTZap", "ON"}, {"OUTimpuls", "PULS"}}),
        passes("BothEmpty", "OUTVyp", "", {{"OUTZap", ""}, {"OUTimpuls", ""}}),
        fails("OnEqualityBeforeKeyword", "OUTZap", "BACK", EqualConflict,
              "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'.", {{"OUTVyp", "back"}}),
        fails("OnKeyword", "OUTZap", "BACK", Keyword,
              "Název 'Zapnuto' nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords,
              {{"OUTVyp", "x"}}),
        fails("OffKeyword", "OUTVyp", "ZPE", Keyword,
              "Název 'Vypnuto' nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords,
              {{"OUTZap", "x"}}),
        fails("OffCharacters", "OUTVyp", "VYP 1", CharacterSet,
              "Název 'Vypnuto' může obsahovat pouze tyto znaky: " + kOutputSet, {{"OUTZap", "VYP 1"}}),
        fails("OnCharacters", "OUTZap", "ZAP.1", CharacterSet,
              "Název 'Zapnuto' může obsahovat pouze tyto znaky: " + kOutputSet),

        // The impulse command: no test against the others; 'impuls' in lower case
        passes("ImpulseEqualToOnPasses", "OUTimpuls", "ON", {{"OUTZap", "ON"}, {"OUTVyp", "ON1"}}),
        passes("ImpulsePrefixOfOffPasses", "OUTimpuls", "V", {{"OUTZap", "ZAP"}, {"OUTVyp", "VYP"}}),
        fails("ImpulseKeywordLowerCase", "OUTimpuls", "reset", Keyword,
              "Název 'impuls' nesmí být žádné z těchto klíčových slov (ani jejich předpony): " + kKeywords),
        fails("ImpulseCharacters", "OUTimpuls", "a b", CharacterSet,
              "Název 'Impuls' může obsahovat pouze tyto znaky: " + kOutputSet)),
    kFieldNameGenerator);

INSTANTIATE_TEST_SUITE_P(
    NumbersAndPin, FieldTextRules,
    testing::Values(passes("PhoneInternational", "tabTC", "+420601234567"),
                    passes("PhonePlusInTheMiddle", "tabTC", "60+1"), passes("PhoneEmpty", "tabTC", ""),
                    fails("PhoneSpace", "tabTC", "+420 601", CharacterSet, "Telefonní číslo je špatně zadáno."),
                    fails("DialogPhoneLetter", "TC", "0601a", CharacterSet, "Telefonní číslo je špatně zadáno."),
                    passes("DialogPhoneDigits", "TC", "0601234567"),
                    fails("CentreHyphen", "tabTCcentra", "+420-603", CharacterSet,
                          "Telefonní číslo servisního centra je špatně zadáno."),
                    passes("CentrePreset", "tabTCcentra", "+420603052000"),
                    fails("UtoLetter", "tabUTO", "+42a", CharacterSet, "UTO je špatně zadáno."),
                    passes("UtoPlain", "tabUTO", "+421"),
                    fails("PinLetter", "tabPIN", "12a4", CharacterSet, "PIN je špatně zadán."),
                    fails("PinPlus", "tabPIN", "+123", CharacterSet, "PIN je špatně zadán."),
                    passes("PinDigits", "tabPIN", "0000"), passes("PinEmpty", "tabPIN", "")),
    kFieldNameGenerator);

INSTANTIATE_TEST_SUITE_P(
    SmsValidityField, FieldTextRules,
    testing::Values(
        fails("Zero", "tabDobaPlatnostiSMS", "0", SmsValidity,
              "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."),
        fails("ThirtyOne", "tabDobaPlatnostiSMS", "31", SmsValidity,
              "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."),
        fails("Empty", "tabDobaPlatnostiSMS", "", SmsValidity,
              "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."),
        fails("Letter", "tabDobaPlatnostiSMS", "a", SmsValidity,
              "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."),
        fails("DecimalPoint", "tabDobaPlatnostiSMS", "1.5", SmsValidity,
              "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."),
        fails("LeadingBlank", "tabDobaPlatnostiSMS", " 5", SmsValidity,
              "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."),
        passes("One", "tabDobaPlatnostiSMS", "1"), passes("Thirty", "tabDobaPlatnostiSMS", "30"),
        passes("StartupThree", "tabDobaPlatnostiSMS", "3"), passes("LeadingZero", "tabDobaPlatnostiSMS", "07")),
    kFieldNameGenerator);

INSTANTIATE_TEST_SUITE_P(
    AnalogFields, FieldTextRules,
    testing::Values(
        fails("MainName", "tabAINNazev", "Hladina nádrže", CharacterSet, kTextChars),
        fails("MainStateLow", "tabAINStateL", "\"low\"", CharacterSet, kTextChars),
        fails("MainStateMedium", "tabAINStateM", "v pořádku", CharacterSet, kTextChars),
        fails("MainStateHigh", "tabAINStateH", "vysoká", CharacterSet, kTextChars),
        fails("MainLevel1Up", "tabAINCL1Up", "\"", CharacterSet, kTextChars),
        fails("MainLevel1Down", "tabAINCL1Dn", "é", CharacterSet, kTextChars),
        fails("MainLevel2Up", "tabAINCL2Up", "ů", CharacterSet, kTextChars),
        fails("MainLevel2Down", "tabAINCL2Dn", "ý", CharacterSet, kTextChars),
        fails("DialogName", "AINNazev", "Průtok", CharacterSet, kTextChars),
        fails("DialogStateLow", "AINStateL", "malý", CharacterSet, kTextChars),
        fails("DialogStateMedium", "AINStateM", "\"ok\"", CharacterSet, kTextChars),
        fails("DialogStateHigh", "AINStateH", "Ž", CharacterSet, kTextChars),
        fails("DialogLevel1Up", "AINCL1Up", "ě", CharacterSet, kTextChars),
        fails("DialogLevel1Down", "AINCL1Dn", "š", CharacterSet, kTextChars),
        fails("DialogLevel2Up", "AINCL2Up", "č", CharacterSet, kTextChars),
        fails("DialogLevel2Down", "AINCL2Dn", "ř", CharacterSet, kTextChars),
        passes("NameWithPunctuation", "tabAINNazev", "Hladina ~50% [m]"),
        passes("EventTextIsNoKeywordCheck", "AINCL1Up", "STATE"),

        // Levels: decimal set first, then not empty, both with one message
        fails("LevelEmpty", "tabAINCL1Level", "", NotEmpty, kBadNumber),
        fails("LevelMinus", "tabAINCL1Level", "-1", CharacterSet, kBadNumber),
        fails("LevelBlank", "tabAINCL2Level", " 5", CharacterSet, kBadNumber),
        fails("LevelExponent", "tabAINHCL1Level", "1e3", CharacterSet, kBadNumber),
        fails("HysteresisEmpty", "tabAINHCL2Level", "", NotEmpty, kBadNumber),
        passes("LevelComma", "tabAINCL1Level", "1,5"), passes("LevelPoint", "tabAINCL2Level", "1.5"),
        passes("HysteresisWhole", "tabAINHCL1Level", "2"),
        fails("DialogLevelEmpty", "AINCL1Level", "", NotEmpty, kBadNumber),
        fails("DialogLevelMinus", "AINCL2Level", "-1", CharacterSet, kBadNumber),
        fails("DialogHysteresisLetter", "AINHCL1Level", "0,5a", CharacterSet, kBadNumber),
        fails("DialogHysteresisEmpty", "AINHCL2Level", "", NotEmpty, kBadNumber),
        passes("DialogLevelComma", "AINCL2Level", "99,9")),
    kFieldNameGenerator);

INSTANTIATE_TEST_SUITE_P(
    ReportTexts, FieldTextRules,
    testing::Values(fails("PowerUp", "rtPowerUp", "Napájení obnoveno", CharacterSet, kTextChars),
                    fails("PowerDown", "rtPowerDown", "\"vypadek\"", CharacterSet, kTextChars),
                    fails("SwitchOn", "rtSwitchOn", "Ťapkov", CharacterSet, kTextChars),
                    fails("SwitchOff", "rtSwitchOff", "ŘÍDICÍ", CharacterSet, kTextChars),
                    fails("BattLow", "rtBattLow", "vybitá", CharacterSet, kTextChars),
                    fails("NotAuthorized", "rtNotAuthorized", "Nepovolený", CharacterSet, kTextChars),
                    passes("PowerUpPlain", "rtPowerUp", "Napajeni obnoveno, uroven OK!"),
                    passes("NotAuthorizedEmpty", "rtNotAuthorized", "")),
    kFieldNameGenerator);

INSTANTIATE_TEST_SUITE_P(
    FieldsWithoutRefusal, FieldTextRules,
    testing::Values(passes("StationNameAnyText", "tabJmenoStanice", "Čerpací stanice \"Žďár\" ~"),
                    passes("ImpulseLengthIsClampedNotRefused", "tabOUTimpulsLEN", "abc"),
                    passes("DialogImpulseLengthIsClampedNotRefused", "OUTimpulsLEN", "-5"),
                    passes("HoursAreClampedNotRefused", "eePSOnH", "x"),
                    passes("MinutesAreClampedNotRefused", "eePSOffM", "999999"),
                    passes("UnknownField", "noSuchField", "\"")),
    kFieldNameGenerator);

} // namespace
} // namespace rm8
