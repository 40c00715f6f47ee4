#include "settings/image_survey.h"

#include "settings/image_header.h"
#include "settings/image_layout.h"

namespace rm8 {
namespace {

std::optional<std::uint32_t> findEncodedEnd(const EepromImage& image)
{
    // The general text block is laid out last: eight texts, then the end mark.
    std::uint64_t p = image.word(layout::kGeneralTextsPointer);
    const auto bytes = image.bytes();
    for (int text = 0; text < 8; ++text) {
        while (p < bytes.size() && bytes[p] != 0)
            ++p;
        if (p >= bytes.size())
            return std::nullopt;
        ++p;
    }
    if (p + 1 >= bytes.size() || image.word(p) != layout::kEndMark)
        return std::nullopt;
    return static_cast<std::uint32_t>(p + 2);
}

} // namespace

ImageInspection inspectImage(const EepromImage& image)
{
    ImageInspection result;
    result.layoutMark = image.word(layout::kLayoutMarkAddress);
    result.storedCheckByte = image.byte(layout::kCheckByteAddress);
    result.computedCheckByte = headerCheckByte(image);
    result.headerValid = imageHeaderValid(image);
    for (const auto& group : layout::kRowTextGroups)
        result.pointers.push_back({group.pointer, group.name, image.word(group.pointer)});
    static constexpr std::string_view kSlotNames[] = {"slot A", "slot B", "slot C", "slot D"};
    for (std::size_t i = 0; i < layout::kAnalogSlots.size(); ++i)
        result.pointers.push_back(
            {layout::kAnalogSlots[i].pointer, kSlotNames[i], image.word(layout::kAnalogSlots[i].pointer)});
    result.pointers.push_back({layout::kReservedTextsPointer, "reserved texts",
                               image.word(layout::kReservedTextsPointer)});
    result.pointers.push_back({layout::kGeneralTextsPointer, "general texts",
                               image.word(layout::kGeneralTextsPointer)});
    result.pointers.push_back({layout::kPhonesPointer, "tabTC", image.word(layout::kPhonesPointer)});
    result.encodedEnd = findEncodedEnd(image);
    return result;
}

} // namespace rm8
