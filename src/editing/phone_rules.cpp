#include "editing/phone_rules.h"

namespace rm8 {

std::string normalisePhoneNumber(std::string_view number, bool utoEnabled, std::string_view uto)
{
    if (!utoEnabled || number.empty() || number.starts_with("+"))
        return std::string(number);
    if (number.starts_with("00"))
        return "+" + std::string(number.substr(2));
    if (number.starts_with(uto))
        return std::string(number);
    if (number.starts_with("0"))
        number.remove_prefix(1);
    return std::string(uto) + std::string(number);
}

PhoneTableOutcome applyPhoneTableRule(std::string_view number, bool prijem, bool udalost)
{
    return {number.empty() && prijem, number.empty() && udalost};
}

} // namespace rm8
