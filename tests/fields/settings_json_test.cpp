#include "fields/field_catalogue.h"
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

TEST(SettingsJson, WrongInputIsRefusedNamingTheKey)
{
    for (const auto& row : test::readTable("settings/bad_json.tsv")) {
        const auto settings = parseSettingsJson(row[0]);
        ASSERT_FALSE(settings) << row[0];
        EXPECT_EQ(test::likePattern(settings.error(), row[1]), row[1]);
    }
}

// The battery text and the battery row's falling-CL1 text are one text:
// either key gives both.
TEST(SettingsJson, EitherBatteryKeyGivesBoth)
{
    for (const char* json : { R"({"rtBattLow": "Slaba baterie"})",
             R"({"tabAINCL1Dn": ["", "", "", "", "", "", "", "Slaba baterie"]})",
             R"({"rtBattLow": "Slaba baterie", "tabAINCL1Dn": ["", "", "", "", "", "", "", "Slaba baterie"]})" }) {
        const auto settings = parseSettingsJson(json);
        ASSERT_TRUE(settings) << json << settings.error();
        EXPECT_EQ(settings->rtBattLow, "Slaba baterie") << json;
        EXPECT_EQ(settings->tabAINCL1Dn[kBatteryRow], "Slaba baterie") << json;
        EXPECT_EQ(settings->tabAINCL1Dn[kBatteryRow - 1], "") << json;
    }
}

// What the window lets a technician type into each text field.
TEST(FieldCatalogue, TextFieldsAcceptTheirLengths)
{
    std::size_t texts = 0;
    for (const auto& info : fieldCatalogue()) {
        const bool text = info.shape == FieldShape::Text || info.shape == FieldShape::TextRow;
        texts += text;
        EXPECT_TRUE(text || info.maxLength == 0) << info.name << " holds no text";
    }
    const auto rows = test::readTable("fields/length_limits.tsv");
    EXPECT_EQ(rows.size(), texts);
    for (const auto& row : rows) {
        const FieldInfo* info = findField(row[0]);
        ASSERT_NE(info, nullptr) << row[0];
        EXPECT_EQ(info->maxLength, std::stoi(row[1])) << row[0];
    }
}

// Keys left out keep their start-up values, so the differences from a fresh
// record are the keys given, one entry per field and row, in the JSON form.
TEST(SettingsDiff, ListsTheKeysGivenOnePerFieldAndRow)
{
    const auto given = parseSettingsJson(R"({"tabJmenoStanice": "Nová", "opEnablePS1": true,
        "tabINPNeg": [1,0,0,0,0,0,0,0], "tabINPNazev": ["", "", "DVERE", "", "", "", "", "OKNO"]})");
    ASSERT_TRUE(given) << given.error();
    std::vector<std::string> shown;
    for (const auto& d : diffSettings(StationSettings(), *given))
        shown.push_back(std::string(d.field) + "/" + (d.row ? std::to_string(*d.row) : "-") + ": " + d.left + " -> " + d.right);
    EXPECT_EQ(shown,
        (std::vector<std::string> { "tabJmenoStanice/-: \"\" -> \"Nová\"", "opEnablePS1/-: false -> true",
            "tabINPNazev/2: \"\" -> \"DVERE\"", "tabINPNazev/7: \"\" -> \"OKNO\"", "tabINPNeg/0: 0 -> 1" }));
    EXPECT_TRUE(diffSettings(*given, *given).empty());
    // The technician is shown a difference on its field's page, rows 5 to 8
    // of an analog column on a page of their own.
    EXPECT_EQ(findField("tabAINNazev")->pageOfRow(4), Page::Analog5To8);
    EXPECT_EQ(findField("tabOUTNazev")->pageOfRow(7), Page::Outputs);
}

} // namespace
} // namespace rm8
