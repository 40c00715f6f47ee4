#include "editing/text_compare.h"

namespace rm8 {
namespace {

char32_t upper(char32_t c)
{
    if (c >= U'a' && c <= U'z')
        return c - 32;
    if ((c >= 0xE0 && c <= 0xFE && c != 0xF7))
        return c - 32;
    if (c == 0xFF)
        return 0x178;
    // Latin Extended-A: upper case is the even member of a pair, except in
    // the two runs where it is the odd one.
    if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177))
        return c & ~char32_t{1};
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E))
        return (c % 2 == 0) ? c - 1 : c;
    return c;
}

std::u32string decode(std::string_view utf8)
{
    std::u32string out;
    std::size_t i = 0;
    while (i < utf8.size()) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
        if (i + length > utf8.size())
            length = 1;
        char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
        bool broken = length == 1 && lead >= 0x80;
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(utf8[i + k]);
            if ((next & 0xC0) != 0x80) {
                broken = true;
                length = 1;
                break;
            }
            c = (c << 6) | (next & 0x3Fu);
        }
        // A broken byte stands for itself, shifted out of the way of real
        // characters, so that it still compares only with the same byte.
        out.push_back(broken ? 0x110000 + lead : c);
        i += length;
    }
    return out;
}

} // namespace

std::u32string foldCase(std::string_view utf8)
{
    std::u32string text = decode(utf8);
    for (auto& c : text)
        c = upper(c);
    return text;
}

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
    return foldCase(a) == foldCase(b);
}

bool isPrefixOfEachOther(std::string_view str1, std::string_view str2)
{
    const std::u32string a = foldCase(str1);
    const std::u32string b = foldCase(str2);
    const std::u32string& shorter = a.size() <= b.size() ? a : b;
    const std::u32string& longer = a.size() <= b.size() ? b : a;
    return !shorter.empty() && longer.compare(0, shorter.size(), shorter) == 0;
}

bool passesKeywordTest(std::string_view name, std::string_view list)
{
    if (name.empty())
        return true;
    const std::u32string folded = foldCase(name);
    std::size_t start = 0;
    while (start <= list.size()) {
        std::size_t end = list.find(';', start);
        if (end == std::string_view::npos)
            end = list.size();
        const std::u32string keyword = foldCase(list.substr(start, end - start));
        if (folded.size() <= keyword.size() && keyword.compare(0, folded.size(), folded) == 0)
            return false;
        start = end + 1;
    }
    return true;
}

} // namespace rm8
