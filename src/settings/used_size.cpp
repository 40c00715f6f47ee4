#include "settings/used_size.h"

#include <array>

#include "settings/conversions.h"
#include "settings/image_layout.h"
#include "settings/windows1250.h"

namespace rm8 {
namespace {

// The fixed area and the end mark, and one more byte: the figure has always
// counted it, and the file length rests on it.
constexpr std::size_t kFixedPart = 275;
constexpr std::size_t kReservedTexts = 2;

std::size_t stored(std::string_view text)
{
    return cp1250::characterCount(text) + 1;
}

} // namespace

std::size_t usedSize(const StationSettings& s)
{
    std::size_t used = kFixedPart;
    // rtBattLow counts although the image does not carry it.
    for (const auto* text : {&s.tabJmenoStanice, &s.tabPIN, &s.tabTCcentra, &s.rtNotAuthorized,
                             &s.rtPowerUp, &s.rtPowerDown, &s.rtSwitchOn, &s.rtSwitchOff, &s.rtBattLow})
        used += stored(*text);
    for (const auto& group : layout::kRowTextGroups)
        for (const auto& text : s.*group.field)
            used += stored(text);
    for (const auto& slot : layout::kAnalogSlots)
        for (const auto& text : s.*slot.notInverted)
            used += stored(text);
    used += kReservedTexts;
    for (const auto& phone : s.tabTC) {
        const std::string form = phoneToAddressForm(phone);
        used += form == "00" ? 1 : stored(form);
    }
    return used;
}

} // namespace rm8
