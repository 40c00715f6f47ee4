#pragma once
// Writing a file so that it appears complete or not at all: the bytes go to a
// temporary file beside the target, which is then renamed over it. A good
// file is never replaced by a half-written one.

#include <filesystem>
#include <span>
#include <string>

#include "common/expected.h"

namespace rm8 {

// On failure the error is the system's reason.
Expected<void, std::string> writeFileAtomically(const std::filesystem::path& path, std::span<const char> bytes);

} // namespace rm8
