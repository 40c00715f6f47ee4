#include "editing/field_rules.h"

#include <tuple>

#include "editing/character_sets.h"
#include "editing/numeric_clamps.h"
#include "editing/text_compare.h"

namespace rm8 {
namespace {

using enum RuleKind;
using namespace sets;

constexpr std::string_view kTextChars = "Text může obsahovat pouze tyto znaky: ";
constexpr std::string_view kBadNumber = "Číslo je chybně zadáno.";
constexpr std::string_view kInputNameChars = "Název vstupu může obsahovat pouze tyto znaky: ";
constexpr std::string_view kInputNameKeyword =
    "Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): ";
constexpr std::string_view kOffChars = "Název 'Vypnuto' může obsahovat pouze tyto znaky: ";
constexpr std::string_view kOnChars = "Název 'Zapnuto' může obsahovat pouze tyto znaky: ";
constexpr std::string_view kOffEqualsOn = "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'.";
constexpr std::string_view kOnEqualsOff = "Název 'Zapnuto' nesmí být stejný jako název 'Vypnuto'.";
constexpr std::string_view kOutputNameChars = "Název výstupu může obsahovat pouze tyto znaky: ";
constexpr std::string_view kOutputNameKeyword =
    "Název výstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): ";
constexpr std::string_view kImpulseChars = "Název 'Impuls' může obsahovat pouze tyto znaky: ";
constexpr std::string_view kImpulseKeyword =
    "Název 'Impuls' nesmí být žádné z těchto klíčových slov (ani jejich předpony): ";
// The output dialog spells it in lower case; kept so.
constexpr std::string_view kDialogImpulseKeyword =
    "Název 'impuls' nesmí být žádné z těchto klíčových slov (ani jejich předpony): ";
constexpr std::string_view kOffKeyword =
    "Název 'Vypnuto' nesmí být žádné z těchto klíčových slov (ani jejich předpony): ";
constexpr std::string_view kOnKeyword =
    "Název 'Zapnuto' nesmí být žádné z těchto klíčových slov (ani jejich předpony): ";

std::vector<FieldRules> buildTable()
{
    const Rule messageText{CharacterSet, kMessageText, kTextChars};
    const std::vector<Rule> level{{CharacterSet, kDecimal, kBadNumber}, {NotEmpty, "", kBadNumber}};
    std::vector<FieldRules> table;
    const auto add = [&](std::string_view field, std::vector<Rule> rules) { table.push_back({field, std::move(rules)}); };

    for (auto field : {"rtBattLow", "rtNotAuthorized", "rtPowerDown", "rtPowerUp", "rtSwitchOff", "rtSwitchOn",
                       "tabAINNazev", "tabAINStateL", "tabAINStateM", "tabAINStateH", "tabAINCL1Up", "tabAINCL1Dn",
                       "tabAINCL2Up", "tabAINCL2Dn", "AINNazev", "AINStateL", "AINStateM", "AINStateH", "AINCL1Up",
                       "AINCL1Dn", "AINCL2Up", "AINCL2Dn"})
        add(field, {messageText});
    for (auto field : {"tabAINCL1Level", "tabAINCL2Level", "tabAINHCL1Level", "tabAINHCL2Level", "AINCL1Level",
                       "AINCL2Level", "AINHCL1Level", "AINHCL2Level"})
        add(field, level);

    // Digital inputs, main window and dialog
    for (auto [name, off, on, hl, lh, hlMessage, lhMessage] : {
             std::tuple{"tabINPNazev", "tabINPVyp", "tabINPZap", "tabINPHL", "tabINPLH",
                        "Název přechodu 'Aktivní->Neaktivní' může obsahovat pouze tyto znaky: ",
                        "Název přechodu 'Neaktivní->Aktivní' může obsahovat pouze tyto znaky: "},
             std::tuple{"INPNazev", "INPVyp", "INPZap", "INPHL", "INPLH",
                        "Název přechodu '1->0' může obsahovat pouze tyto znaky: ",
                        "Název přechodu '0->1' může obsahovat pouze tyto znaky: "},
         }) {
        add(name, {{CharacterSet, kInputName, kInputNameChars}, {Keyword, kReservedKeywords, kInputNameKeyword}});
        add(off, {{CharacterSet, kInputName, kOffChars}, {EqualConflict, on, kOffEqualsOn}});
        add(on, {{CharacterSet, kInputName, kOnChars}, {EqualConflict, off, kOnEqualsOff}});
        add(hl, {{CharacterSet, kInputName, hlMessage}});
        add(lh, {{CharacterSet, kInputName, lhMessage}});
    }

    // Outputs, main window: the commands may not begin one another
    add("tabOUTNazev", {{CharacterSet, kOutputName, kOutputNameChars}, {Keyword, kReservedKeywords, kOutputNameKeyword}});
    add("tabOUTimpuls", {{CharacterSet, kOutputName, kImpulseChars},
                         {PrefixConflict, "tabOUTVyp", "Název 'Impuls' nesmí být prefixem názvu 'Vypnuto' ani naopak."},
                         {PrefixConflict, "tabOUTZap", "Název 'Impuls' nesmí být prefixem názvu 'Zapnuto' ani naopak."},
                         {Keyword, kReservedKeywords, kImpulseKeyword}});
    add("tabOUTVyp", {{CharacterSet, kOutputName, kOffChars},
                      {PrefixConflict, "tabOUTZap", "Název 'Vypnuto' nesmí být prefixem názvu 'Zapnuto' ani naopak."},
                      {PrefixConflict, "tabOUTimpuls", "Název 'Vypnuto' nesmí být prefixem názvu 'Impuls' ani naopak."},
                      {Keyword, kReservedKeywords, kOffKeyword}});
    add("tabOUTZap", {{CharacterSet, kOutputName, kOnChars},
                      {PrefixConflict, "tabOUTVyp", "Název 'Zapnuto' nesmí být prefixem názvu 'Vypnuto' ani naopak."},
                      {PrefixConflict, "tabOUTimpuls", "Název 'Zapnuto' nesmí být prefixem názvu 'Impuls' ani naopak."},
                      {Keyword, kReservedKeywords, kOnKeyword}});

    // Outputs, dialog: only the on and off commands are compared, for equality
    add("OUTNazev", {{CharacterSet, kOutputName, kOutputNameChars}, {Keyword, kReservedKeywords, kOutputNameKeyword}});
    add("OUTimpuls", {{CharacterSet, kOutputName, kImpulseChars}, {Keyword, kReservedKeywords, kDialogImpulseKeyword}});
    add("OUTVyp", {{CharacterSet, kOutputName, kOffChars},
                   {EqualConflict, "OUTZap", kOffEqualsOn},
                   {Keyword, kReservedKeywords, kOffKeyword}});
    add("OUTZap", {{CharacterSet, kOutputName, kOnChars},
                   {EqualConflict, "OUTVyp", kOnEqualsOff},
                   {Keyword, kReservedKeywords, kOnKeyword}});

    // Numbers
    add("tabTC", {{CharacterSet, kPhone, "Telefonní číslo je špatně zadáno."}});
    add("TC", {{CharacterSet, kPhone, "Telefonní číslo je špatně zadáno."}});
    add("tabTCcentra", {{CharacterSet, kPhone, "Telefonní číslo servisního centra je špatně zadáno."}});
    add("tabUTO", {{CharacterSet, kPhone, "UTO je špatně zadáno."}});
    add("tabPIN", {{CharacterSet, kDigits, "PIN je špatně zadán."}});
    add("tabDobaPlatnostiSMS",
        {{SmsValidity, "", "Doba platnosti SMS zprávy je špatně zadána. Povolená hodnota je číslo 1 až 30 včetně."}});
    return table;
}

const std::vector<FieldRules>& table()
{
    static const std::vector<FieldRules> rules = buildTable();
    return rules;
}

// A message that ends in ": " is followed by what was violated.
std::string composed(const Rule& rule)
{
    std::string message(rule.message);
    if (message.ends_with(": "))
        message += rule.argument;
    return message;
}

bool passes(const Rule& rule, std::string_view text, const OtherFieldText& other)
{
    switch (rule.kind) {
    case CharacterSet:
        return sets::inSet(text, rule.argument);
    case NotEmpty:
        return !text.empty();
    case Keyword:
        return passesKeywordTest(text, rule.argument);
    case PrefixConflict:
        return !isPrefixOfEachOther(text, other(rule.argument));
    case EqualConflict:
        return text.empty() || !equalIgnoringCase(text, other(rule.argument));
    case SmsValidity:
        return smsValidityAccepted(text);
    case LevelCheck:
    case OutputCrossCheck:
    case PhoneTable:
    case SizeCheck:
        break; // rules of the whole configuration, which no field's row holds
    }
    return true;
}

} // namespace

std::string_view ruleName(RuleKind rule)
{
    switch (rule) {
    case CharacterSet: return "character-set";
    case NotEmpty: return "not-empty";
    case Keyword: return "keyword";
    case PrefixConflict: return "prefix";
    case EqualConflict: return "equality";
    case SmsValidity: return "sms-validity";
    case LevelCheck: return "level-check";
    case OutputCrossCheck: return "output-cross-check";
    case PhoneTable: return "phone-table";
    case SizeCheck: return "size-check";
    }
    return "unknown";
}

std::span<const FieldRules> fieldRuleTable()
{
    return table();
}

const FieldRules* findFieldRules(std::string_view field)
{
    for (const auto& entry : table())
        if (entry.field == field)
            return &entry;
    return nullptr;
}

std::optional<RuleFailure> checkFieldText(std::string_view field, std::string_view text, const OtherFieldText& other)
{
    const FieldRules* entry = findFieldRules(field);
    if (entry == nullptr)
        return std::nullopt;
    for (const auto& rule : entry->rules)
        if (!passes(rule, text, other))
            return RuleFailure{rule.kind, composed(rule)};
    return std::nullopt;
}

} // namespace rm8
