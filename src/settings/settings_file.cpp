#include "settings/settings_file.h"

#include "common/atomic_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>
#include <vector>

namespace rm8 {
namespace fs = std::filesystem;

std::string FileError::describe() const
{
    std::string text;
    switch (fault) {
    case FileFault::NotFound:
        text = "soubor neexistuje";
        break;
    case FileFault::NotARegularFile:
        text = "nejde o obyčejný soubor (např. jde o adresář)";
        break;
    case FileFault::TooLarge:
        text = "soubor je delší než paměť EEPROM (65536 bajtů)";
        break;
    case FileFault::ReadFailed:
        text = "soubor nelze přečíst";
        break;
    case FileFault::WriteFailed:
        text = "soubor nelze zapsat";
        break;
    }
    if (!detail.empty())
        text += ": " + detail;
    return text;
}

namespace {

FileError failure(FileFault fault, std::string detail = {})
{
    return FileError{fault, std::move(detail)};
}

std::string systemReason(const std::error_code& error)
{
    return error ? error.message() : std::string();
}

} // namespace

Expected<std::size_t, FileError> readImageFile(const fs::path& path, EepromImage& image)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found)
        return unexpected(failure(FileFault::NotFound));
    if (error)
        return unexpected(failure(FileFault::ReadFailed, systemReason(error)));
    if (status.type() != fs::file_type::regular)
        return unexpected(failure(FileFault::NotARegularFile));
    const auto size = fs::file_size(path, error);
    if (error)
        return unexpected(failure(FileFault::ReadFailed, systemReason(error)));
    if (size > EepromImage::kSize)
        return unexpected(failure(FileFault::TooLarge));

    std::ifstream in(path, std::ios::binary);
    if (!in)
        return unexpected(failure(FileFault::ReadFailed, std::strerror(errno)));
    // One byte more than the image holds, so that a file that grew after the
    // size check is still caught.
    std::vector<char> buffer(EepromImage::kSize + 1);
    in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    if (in.bad())
        return unexpected(failure(FileFault::ReadFailed, std::strerror(errno)));
    const auto length = static_cast<std::size_t>(in.gcount());
    if (length > EepromImage::kSize)
        return unexpected(failure(FileFault::TooLarge));

    auto bytes = image.bytes();
    std::memcpy(bytes.data(), buffer.data(), length);
    // The byte loop of the load reads once even from an empty file and
    // stores what it got, a 0, at offset 0.
    if (length == 0)
        bytes[0] = 0;
    return length;
}

std::size_t settingsFileLength(std::size_t usedSize)
{
    return usedSize > 2 ? usedSize - 1 : 1;
}

Expected<void, FileError> writeImageFile(const fs::path& path, const EepromImage& image, std::size_t usedSize)
{
    const std::size_t length = settingsFileLength(usedSize);
    if (length > EepromImage::kSize)
        return unexpected(failure(FileFault::WriteFailed, "nastavení jsou větší než paměť EEPROM"));

    const auto bytes = image.bytes().first(length);
    auto written = writeFileAtomically(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (!written)
        return unexpected(failure(FileFault::WriteFailed, written.error()));
    return {};
}

} // namespace rm8
