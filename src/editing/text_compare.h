#pragma once
// Comparisons of names as the station makes them: letter case ignored.

#include <string>
#include <string_view>

namespace rm8 {

// The text in upper case, for the letters of the Latin alphabets that the
// station's code page holds; other characters stay as they are.
std::u32string foldCase(std::string_view utf8);

bool equalIgnoringCase(std::string_view a, std::string_view b);

// True when the shorter of the two (the first when they are equally long) is
// not empty and, letter case ignored, begins the other.
bool isPrefixOfEachOther(std::string_view str1, std::string_view str2);

// The keyword test: a name fails when it is not empty and, letter case
// ignored, equals one of the semicolon-separated words of the list or begins
// one. Returns true when the name passes.
bool passesKeywordTest(std::string_view name, std::string_view list);

} // namespace rm8
