#include "common/file_names.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace rm8 {
namespace {

constexpr std::string_view kRefused = "/\\:*?\"<>|";
constexpr std::array<std::string_view, 22> kDeviceNames = { "CON", "PRN", "AUX", "NUL", "COM1", "COM2", "COM3", "COM4",
    "COM5", "COM6", "COM7", "COM8", "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9" };

// Windows refuses a device name also with an extension after it: "nul.txt".
bool isDeviceName(std::string_view stem)
{
    std::string base(stem.substr(0, stem.find('.')));
    while (!base.empty() && base.back() == ' ')
        base.pop_back();
    std::transform(
        base.begin(), base.end(), base.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return std::find(kDeviceNames.begin(), kDeviceNames.end(), base) != kDeviceNames.end();
}

} // namespace

std::string portableFileStem(std::string_view name, std::string_view fallback)
{
    std::string stem;
    for (const char c : name) {
        // Bytes of 128 and above are kept: they are UTF-8 letters.
        const bool refused = static_cast<unsigned char>(c) < 32 || kRefused.find(c) != std::string_view::npos;
        stem += refused ? '_' : c;
    }
    const auto first = stem.find_first_not_of(" .");
    if (first == std::string::npos)
        return std::string(fallback);
    stem = stem.substr(first, stem.find_last_not_of(" .") - first + 1);
    if (isDeviceName(stem))
        stem += '_';
    return stem;
}

} // namespace rm8
