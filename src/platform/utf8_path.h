#pragma once
// File names travel through the program as UTF-8. On Windows a path built
// from a narrow string takes it in the system's ANSI code page, and
// path::string() gives it back in that code page (or fails on a letter the
// code page lacks), so a name like "Čerpadlo Žďár.eep" must cross at these
// two edges, where the wide API takes over.

#include <filesystem>
#include <string>
#include <string_view>

namespace rm8::platform {

std::filesystem::path pathFromUtf8(std::string_view utf8);
std::string utf8FromPath(const std::filesystem::path& path);

} // namespace rm8::platform
