#include "common/atomic_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <random>
#include <system_error>

namespace rm8 {
namespace fs = std::filesystem;

Expected<void, std::string> writeFileAtomically(const fs::path& path, std::span<const char> bytes)
{
    std::error_code error;
    if (fs::is_directory(path, error))
        return unexpected(std::string("cíl je adresář"));

    std::random_device entropy;
    const fs::path temporary = path.string() + ".part-" + std::to_string(entropy() % 1000000);
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
    fs::rename(temporary, path, error);
    if (error) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
        return unexpected(error.message());
    }
    return {};
}

} // namespace rm8
