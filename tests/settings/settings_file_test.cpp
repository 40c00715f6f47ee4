#include <gtest/gtest.h>

#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "settings/settings_file.h"
#include "settings/used_size.h"
#include "support/test_data.h"

namespace rm8 {
namespace {

using test::ScratchDir;

TEST(SettingsFile, SavedFileIsOneByteShortOfTheUsedSize)
{
    ScratchDir dir;
    const StationSettings settings;
    EepromImage image(0x33);
    ASSERT_TRUE(encodeImage(settings, image));
    ASSERT_TRUE(writeImageFile(dir / "a.eep", image, usedSize(settings)));
    const auto bytes = test::readBytes(dir / "a.eep");
    ASSERT_EQ(bytes.size(), 429u);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        ASSERT_EQ(static_cast<std::uint8_t>(bytes[i]), image.byte(i)) << "offset " << i;

    // Loading it back and saving again gives the same file.
    EepromImage reloaded(0x33);
    ASSERT_TRUE(readImageFile(dir / "a.eep", reloaded));
    ASSERT_TRUE(writeImageFile(dir / "b.eep", reloaded, usedSize(settings)));
    EXPECT_EQ(test::readBytes(dir / "b.eep"), bytes);
}

TEST(SettingsFile, ShortFileKeepsTheRestOfTheImage)
{
    ScratchDir dir;
    EepromImage valid;
    ASSERT_TRUE(encodeImage(StationSettings(), valid));
    std::vector<char> first49(valid.bytes().begin(), valid.bytes().begin() + 49);
    test::writeBytes(dir / "short.eep", first49);

    EepromImage image(0x77);
    auto length = readImageFile(dir / "short.eep", image);
    ASSERT_TRUE(length);
    EXPECT_EQ(*length, 49u);
    EXPECT_TRUE(imageHeaderValid(image));
    EXPECT_EQ(image.byte(49), 0x77);
    EXPECT_EQ(image.byte(65535), 0x77);
}

TEST(SettingsFile, EmptyFileLoadsAndFailsTheHeader)
{
    ScratchDir dir;
    test::writeBytes(dir / "empty.eep", {});
    EepromImage image(0x77);
    auto length = readImageFile(dir / "empty.eep", image);
    ASSERT_TRUE(length);
    EXPECT_EQ(*length, 0u);
    EXPECT_FALSE(imageHeaderValid(image));
}

TEST(SettingsFile, WholeImageLoadsAndOneByteMoreDoesNot)
{
    ScratchDir dir;
    std::vector<char> bytes(65536, 'z');
    test::writeBytes(dir / "full.eep", bytes);
    EepromImage image;
    ASSERT_TRUE(readImageFile(dir / "full.eep", image));
    EXPECT_EQ(image.byte(65535), 'z');

    bytes.push_back('z');
    test::writeBytes(dir / "long.eep", bytes);
    EepromImage untouched(0x11);
    auto result = readImageFile(dir / "long.eep", untouched);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().fault, FileFault::TooLarge);
    EXPECT_EQ(untouched, EepromImage(0x11)) << "a refused file changes nothing";
}

TEST(SettingsFile, MissingFileAndDirectoryAreReported)
{
    ScratchDir dir;
    EepromImage image;
    auto missing = readImageFile(dir / "none.eep", image);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().fault, FileFault::NotFound);
    auto folder = readImageFile(dir.path(), image);
    ASSERT_FALSE(folder);
    EXPECT_EQ(folder.error().fault, FileFault::NotARegularFile);
    EXPECT_NE(folder.error().describe().find("adresář"), std::string::npos);
}

TEST(SettingsFile, FailedWriteLeavesNoFileBehind)
{
    ScratchDir dir;
    EepromImage image;
    auto result = writeImageFile(dir / "missing-folder" / "a.eep", image, 430);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().fault, FileFault::WriteFailed);

    auto intoFolder = writeImageFile(dir.path(), image, 430);
    ASSERT_FALSE(intoFolder);
    EXPECT_TRUE(std::filesystem::is_directory(dir.path()));
}

TEST(SettingsFile, ReplacingAFileLeavesNoTemporaryFiles)
{
    ScratchDir dir;
    test::writeBytes(dir / "a.eep", {'o', 'l', 'd'});
    EepromImage image(0x42);
    ASSERT_TRUE(writeImageFile(dir / "a.eep", image, 11));
    EXPECT_EQ(test::readBytes(dir / "a.eep"), std::vector<char>(10, 0x42));
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(dir.path()))
        ++files;
    EXPECT_EQ(files, 1u);
}

TEST(SettingsFile, SettingsLargerThanTheImageAreNotWritten)
{
    ScratchDir dir;
    EepromImage image;
    EXPECT_FALSE(writeImageFile(dir / "a.eep", image, 65538));
    EXPECT_FALSE(std::filesystem::exists(dir / "a.eep"));
    EXPECT_TRUE(writeImageFile(dir / "b.eep", image, 65537));
    EXPECT_EQ(std::filesystem::file_size(dir / "b.eep"), 65536u);
}

} // namespace
} // namespace rm8
