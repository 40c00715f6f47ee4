#include "common/atomic_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <random>
#include <system_error>

#ifdef _WIN32
#include <windows.h>

#include "platform/win32_error_message.h"
#endif

namespace rm8 {
namespace fs = std::filesystem;
namespace {

// Puts the finished file in the target's place, an existing target included;
// the error is the system's reason.
Expected<void, std::string> replaceWith(const fs::path& temporary, const fs::path& target)
{
#ifdef _WIN32
    // A plain rename refuses an existing target on Windows.
    if (MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return {};
    return unexpected(platform::win32ErrorMessage(GetLastError()));
#else
    std::error_code error;
    fs::rename(temporary, target, error);
    if (error)
        return unexpected(error.message());
    return {};
#endif
}

} // namespace

Expected<void, std::string> writeFileAtomically(const fs::path& path, std::span<const char> bytes)
{
    std::error_code error;
    if (fs::is_directory(path, error))
        return unexpected(std::string("cíl je adresář"));

    std::random_device entropy;
    // Built on the path itself: through a narrow string a Czech letter would
    // not survive on Windows.
    fs::path temporary = path;
    temporary += ".part-" + std::to_string(entropy() % 1000000);
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out)
            return unexpected(std::string(std::strerror(errno)));
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.close();
        if (!out) {
            const std::string reason = std::strerror(errno);
            fs::remove(temporary, error);
            return unexpected(reason);
        }
    }
    if (auto replaced = replaceWith(temporary, path); !replaced) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
        return unexpected(replaced.error());
    }
    return {};
}

} // namespace rm8
