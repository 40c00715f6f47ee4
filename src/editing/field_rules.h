#pragma once
// Which rules each text field applies when it is left, in which order, and
// what it says when one fails. One table serves the main window's fields and
// the row dialogs' fields alike; a field stops at its first failing rule.
// Nothing here shows a message: the caller does.

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rm8 {

enum class RuleKind {
    CharacterSet,   // every character in the set; the argument is the set
    NotEmpty,       // the text must not be empty
    Keyword,        // neither a reserved keyword nor the start of one
    PrefixConflict, // neither this nor the argument field may begin the other
    EqualConflict,  // must not equal the argument field (case ignored)
    SmsValidity,    // whole days 1..30
    // Rules of the whole configuration:
    LevelCheck,
    OutputCrossCheck,
    PhoneTable,
    SizeCheck,
};

std::string_view ruleName(RuleKind rule);

struct Rule {
    RuleKind kind;
    std::string_view argument; // a character set, or the other field's name
    std::string_view message;  // ends in ": " when the set or keywords follow it
};

struct FieldRules {
    std::string_view field;
    std::vector<Rule> rules;
};

std::span<const FieldRules> fieldRuleTable();
const FieldRules* findFieldRules(std::string_view field);

struct RuleFailure {
    RuleKind rule;
    std::string message; // exactly as the message box shows it
};

// The text of another field of the same row (or of the same dialog).
using OtherFieldText = std::function<std::string(std::string_view field)>;

// Applies the field's rules to a text, as on leaving the field. A field
// without rules always passes; the clamped fields have none (see
// field_clamps.h).
std::optional<RuleFailure> checkFieldText(std::string_view field, std::string_view text,
                                          const OtherFieldText& other);

} // namespace rm8
