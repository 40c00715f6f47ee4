#pragma once
// The settings file (*.eep): the EEPROM image itself, byte for byte, with no
// header of its own. It is written one byte short of the used-size figure and
// read whole, whatever its length, into the start of the image.

#include <cstddef>
#include <filesystem>
#include <string>

#include "common/expected.h"
#include "settings/eeprom_image.h"

namespace rm8 {

enum class FileFault {
    NotFound,
    NotARegularFile, // a directory, a device, ...
    TooLarge,        // longer than the image
    ReadFailed,
    WriteFailed,
};

struct FileError {
    FileFault fault = FileFault::ReadFailed;
    std::string detail; // the system's reason, when it gave one

    // What is wrong, in Czech, for the user.
    std::string describe() const;
};

// Reads the whole file into image offsets 0..length-1; the rest of the image
// keeps its bytes. A file that cannot be loaded leaves the image untouched.
// Returns the file's length.
Expected<std::size_t, FileError> readImageFile(const std::filesystem::path& path, EepromImage& image);

// The number of bytes a save writes for a used-size figure: one short of it.
std::size_t settingsFileLength(std::size_t usedSize);

// Writes image bytes 0..usedSize-2. The file appears complete or not at all:
// it is written beside the target and renamed over it.
Expected<void, FileError> writeImageFile(const std::filesystem::path& path, const EepromImage& image,
                                         std::size_t usedSize);

} // namespace rm8
