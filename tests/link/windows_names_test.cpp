// What Windows calls things, checked on both systems: ports from COM 10 up
// open only by their device path, its port errors have Czech texts, and a
// file name with Czech letters must reach the system's wide API whole (a
// narrow path would take it in the ANSI code page there).

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "link/com_port_name.h"
#include "link/win32_error_text.h"
#include "platform/utf8_path.h"

namespace rm8::test {
namespace {

TEST(WindowsNames, PortTextsBecomeDevicePathsAboveComNineToo)
{
    const std::pair<const char*, const char*> rows[] = {
        { "COM 5", "\\\\.\\COM5" },
        { "COM 12", "\\\\.\\COM12" },
        { "COM 10", "\\\\.\\COM10" },
        { "COM 209", "\\\\.\\COM209" },
        { "COM 1:", "COM 1:" },
        { "COM 1/", "COM 1/" },
        { "COM12", "\\\\.\\COM12" },
        { "com3", "\\\\.\\COM3" },
        { "Com 256", "\\\\.\\COM256" },
        { "\\\\.\\COM7", "\\\\.\\COM7" },
        { "COM 0", "COM 0" },
        { "COM 05", "COM 05" },
        { "COM", "COM" },
        { "COM ", "COM " },
        { "COM  5", "COM  5" },
        { "COM 1a", "COM 1a" },
        { "COMX1", "COMX1" },
        { "LPT1", "LPT1" },
        { "/dev/ttyUSB0", "/dev/ttyUSB0" },
        { "", "" },
    };
    for (const auto& [text, device] : rows)
        EXPECT_EQ(link::win32DevicePath(text), device) << text;
}

TEST(WindowsNames, PortErrorsHaveCzechTextsAndTheRestAreTheSystems)
{
    const std::pair<unsigned long, const char*> rows[] = {
        { 2, "port neexistuje" },
        { 3, "port neexistuje" },
        { 5, "přístup odepřen: port používá jiný program" },
        { 32, "port používá jiný program" },
        { 1167, "zařízení portu bylo odpojeno" },
        { 22, "zařízení portu neodpovídá, bylo odpojeno?" },
        { 31, "zařízení portu neodpovídá, bylo odpojeno?" },
        { 995, "přenos byl přerušen, zařízení portu bylo odpojeno?" },
        { 1, "není to sériový port" },
        { 123, "neplatné jméno portu" },
    };
    for (const auto& [code, text] : rows)
        EXPECT_EQ(link::serialPortErrorText(code), text) << code;
    for (const unsigned long unknown : { 0ul, 4ul, 87ul, 1168ul })
        EXPECT_EQ(link::serialPortErrorText(unknown), std::nullopt) << unknown;
}

TEST(WindowsNames, CzechFileNamesReachTheFileSystemWhole)
{
    const std::string name = "Čerpadlo Žďár ťůň.eep";
    const std::filesystem::path path = platform::pathFromUtf8(name);
#ifdef _WIN32
    EXPECT_EQ(path.native(), L"\u010Cerpadlo \u017D\u010F\u00E1r \u0165\u016F\u0148.eep");
#else
    EXPECT_EQ(path.native(), name);
#endif
    EXPECT_EQ(platform::utf8FromPath(path), name);

    const auto folder = std::filesystem::temp_directory_path() / "rm8-windows-names";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / path) << "x";
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        found.push_back(platform::utf8FromPath(entry.path().filename()));
    std::filesystem::remove_all(folder);
    EXPECT_EQ(found, std::vector<std::string> { name });
}

} // namespace
} // namespace rm8::test
