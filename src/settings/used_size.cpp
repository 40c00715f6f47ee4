#include "settings/used_size.h"

#include <array>

#include "settings/conversions.h"
#include "settings/image_layout.h"
#include "settings/windows1250.h"

namespace rm8 {
namespace {

// The fixed area below the heap, the end mark after it, and one byte more:
// the figure has always counted it, and the file length rests on it.
constexpr std::size_t kFixedPart = layout::kHeapStart + layout::kEndMarkLength + 1;

// A text takes its characters and the byte 0 after it.
std::size_t stored(std::string_view text)
{
    return cp1250::characterCount(text) + 1;
}

} // namespace

std::size_t usedSize(const StationSettings& s)
{
    std::size_t used = kFixedPart;
    for (const auto& text : layout::kGeneralTexts)
        used += stored(s.*text.field);
    // rtBattLow counts although the image does not carry it.
    used += stored(s.rtBattLow);
    for (const auto& group : layout::kRowTextGroups)
        for (const auto& text : s.*group.field)
            used += stored(text);
    for (const auto& slot : layout::kAnalogSlots)
        for (const auto& text : s.*slot.notInverted)
            used += stored(text);
    used += layout::kReservedTextCount * stored("");
    for (const auto& phone : s.tabTC) {
        const std::string form = phoneToAddressForm(phone);
        used += form == "00" ? 1 : stored(form);
    }
    return used;
}

} // namespace rm8
