#pragma once
// Phone numbers: the national prefix (UTO) put in front of numbers written
// without an international one, and the permissions that need a number.

#include <string>
#include <string_view>

namespace rm8 {

// Applied when a non-empty number is accepted. With the UTO box clear the
// number stays as typed; otherwise "00" becomes "+", and a number that begins
// neither with "+", "00" nor the UTO text loses one leading "0" and gets the
// UTO text in front.
std::string normalisePhoneNumber(std::string_view number, bool utoEnabled, std::string_view uto);

// A permission box may not stay ticked while its row has no number. Says
// which boxes the rule clears; each cleared box comes with its message.
struct PhoneTableOutcome {
    bool clearPrijem = false;
    bool clearUdalost = false;
};

PhoneTableOutcome applyPhoneTableRule(std::string_view number, bool prijem, bool udalost);

inline constexpr std::string_view kPrijemNeedsNumber =
    "Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Příjem' nezaškrtnuté.";
inline constexpr std::string_view kUdalostNeedsNumber =
    "Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Události' nezaškrtnuté.";

} // namespace rm8
