#include "fields/settings_diff.h"
#include "fields/settings_json.h"
#include "settings/table_file.h"

namespace rm8 {
namespace {

// The golden files are written as the tool writes them, so reading one and
// writing it again must give it back character for character.
TEST(SettingsJson, GoldenFilesReadAndWriteBackUnchanged)
{
    for (const auto& c : test::readJson(test::dataDir() / "manifest.json")) {
        const std::string name = c["name"];
        for (const std::string& file : { name + ".json", name + (c["has_input"] ? ".input.json" : ".json") }) {
            const auto bytes = test::readBytes(test::dataDir() / file);
            const std::string text(bytes.begin(), bytes.end());
            const auto settings = parseSettingsJson(text);
            ASSERT_TRUE(settings) << file << settings.error();
            EXPECT_EQ(settingsToJsonText(*settings), text) << file;
        }
    }
}

TEST(SettingsJson, MissingKeysKeepTheStartUpValues)
{
    StationSettings expected;
    expected.tabJmenoStanice = "Vrt 3";
    expected.tabINPNeg[7] = true;
    EXPECT_EQ(parseSettingsJson(R"({"tabJmenoStanice": "Vrt 3", "tabINPNeg": [0,0,0,0,0,0,0,1]})").value(), expected);
}

TEST(SettingsJson, WrongInputIsRefusedNamingTheKey)
{
    for (const auto& row : test::readTable("settings/bad_json.tsv")) {
        const auto settings = parseSettingsJson(row[0]);
        ASSERT_FALSE(settings) << row[0];
        EXPECT_EQ(test::likePattern(settings.error(), row[1]), row[1]);
    }
}

TEST(SettingsDiff, ListsOneEntryPerFieldAndRowInTheJsonForm)
{
    StationSettings b;
    b.tabJmenoStanice = "Nová";
    b.tabINPNazev[2] = "DVERE";
    b.tabINPNazev[7] = "OKNO";
    b.opEnablePS1 = true;
    b.tabINPNeg[0] = true;
    std::vector<std::string> shown;
    for (const auto& d : diffSettings(StationSettings(), b))
        shown.push_back(std::string(d.field) + "/" + std::to_string(d.row) + ": " + d.left + " -> " + d.right);
    EXPECT_EQ(shown,
        (std::vector<std::string> { "tabJmenoStanice/0: \"\" -> \"Nová\"", "opEnablePS1/0: false -> true",
            "tabINPNazev/3: \"\" -> \"DVERE\"", "tabINPNazev/8: \"\" -> \"OKNO\"", "tabINPNeg/1: 0 -> 1" }));
    EXPECT_TRUE(diffSettings(b, b).empty());
}

} // namespace
} // namespace rm8
