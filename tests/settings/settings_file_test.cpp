// Loading and saving settings files, every fault included. A save whose
// temporary file cannot be made (a name at the length limit) must leave the
// old file whole.

#include <algorithm>

#include "settings/settings_file.h"
#include "settings/table_file.h"

namespace rm8 {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr bool kOnWindows = true;
#else
constexpr bool kOnWindows = false;
#endif

TEST(SettingsFile, LoadsOrSavesOrSaysWhyNot)
{
    for (const auto& row : test::readTable("settings/settings_files.tsv")) {
        SCOPED_TRACE(row[0] + " " + row[1] + " " + row[2] + " " + row[3]);
        test::ScratchDir dir;
        const bool save = row[0] == "save";
        const fs::path path = row[1] == "." ? dir.path()
            : row[1].starts_with("long")    ? dir / std::string(std::stoul(row[1].substr(4)), 'n')
                                            : dir / row[1];
        const std::vector<char> old = row[2] == "-" ? std::vector<char>() : std::vector<char>(std::stoul(row[2]), 'o');
        if (row[2] != "-")
            test::writeBytes(path, old);
        EepromImage image(0x77);
        for (std::size_t a = 0; a < EepromImage::kSize && save; ++a)
            image.putByte(a, static_cast<long long>(a % 251));
        const EepromImage before = image;
        std::string error;
        std::size_t length = 0;
        if (save) {
            const auto result = writeImageFile(path, image, std::stoul(row[3]));
            error = result ? "" : result.error().describe();
            length = result ? fs::file_size(path) : 0;
        } else {
            const auto result = readImageFile(path, image);
            error = result ? "" : result.error().describe();
            length = result ? *result : 0;
        }
        // Windows reads a name longer than a path may be as no such file.
        const std::string expected = kOnWindows && row.size() > 6 && !row[6].empty() ? row[6] : row[4];
        EXPECT_EQ(test::likePattern(error, expected), expected);
        EXPECT_EQ(length, std::stoul(row[5]));
        std::error_code ignored;
        const auto file = fs::is_regular_file(path, ignored) ? test::readBytes(path) : std::vector<char>();
        const std::vector<char> saved(
            image.bytes().begin(), image.bytes().begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(file, save && error.empty() ? saved : old);
        // A load fills the start of the image; an empty file still stores the
        // one byte 0 that the read loop took.
        EepromImage loaded = before;
        const std::size_t fits = std::min(file.size(), loaded.bytes().size()); // a too-long file loads nothing
        std::copy_n(file.begin(), fits, loaded.bytes().begin());
        loaded.putByte(0, file.empty() ? 0 : loaded.byte(0));
        EXPECT_EQ(image, save || !error.empty() ? before : loaded);
        for (const auto& entry : fs::recursive_directory_iterator(dir.path()))
            EXPECT_EQ(entry.path().string().find(".part-"), std::string::npos) << "a temporary file was left";
    }
}

} // namespace
} // namespace rm8
