#include <gtest/gtest.h>

#include "fields/field_catalogue.h"
#include "fields/settings_diff.h"
#include "fields/settings_json.h"
#include "support/test_data.h"

namespace rm8 {
namespace {

using nlohmann::json;

TEST(SettingsJson, EveryFieldIsWrittenInCatalogueOrder)
{
    const auto written = settingsToJson(StationSettings());
    const auto catalogue = fieldCatalogue();
    ASSERT_EQ(written.size(), catalogue.size());
    std::size_t i = 0;
    for (const auto& [key, value] : written.items())
        EXPECT_EQ(key, catalogue[i++].name);
    EXPECT_EQ(written.begin().key(), "tabJmenoStanice");
}

TEST(SettingsJson, ShapesHaveTheirJsonTypes)
{
    StationSettings s;
    s.opBatt = true;
    s.opEnablePS1 = true;
    s.tabINPNeg[2] = true;
    s.eeMaskDInLHAlarm[5] = true;
    s.analogOptions[1] = 255;
    const auto j = settingsToJson(s);
    EXPECT_EQ(j["opBatt"], 1);
    EXPECT_TRUE(j["opBatt"].is_number_integer());
    EXPECT_EQ(j["opEnablePS1"], true);
    EXPECT_EQ(j["tabINPNeg"][2], 1);
    EXPECT_TRUE(j["eeMaskDInLHAlarm"][5].is_boolean());
    EXPECT_EQ(j["analogOptions"][1], 255);
    EXPECT_EQ(j["tabAINCL2Level"][7], " 27");
    EXPECT_EQ(j["tabUTO"], "+420");
}

TEST(SettingsJson, MissingKeysTakeStartupValues)
{
    auto settings = parseSettingsJson(R"({"tabJmenoStanice": "Vrt 3", "tabINPNeg": [0,1,0,0,0,0,0,1]})");
    ASSERT_TRUE(settings) << settings.error();
    StationSettings expected;
    expected.tabJmenoStanice = "Vrt 3";
    expected.tabINPNeg[1] = true;
    expected.tabINPNeg[7] = true;
    EXPECT_EQ(*settings, expected);
    EXPECT_EQ(settings->tabOUTimpulsLEN[0], "2");
    EXPECT_EQ(settings->tabAINCL1Level[0], " 0");
}

TEST(SettingsJson, RoundTripOfARichConfiguration)
{
    const json stored = test::readJson(test::dataDir() / "full.json");
    auto settings = settingsFromJson(stored);
    ASSERT_TRUE(settings) << settings.error();
    EXPECT_EQ(json::parse(settingsToJsonText(*settings)), stored);
}

struct BadJsonCase {
    const char* name;
    const char* text;
    const char* mentions; // the message must name this
};

class BadJson : public testing::TestWithParam<BadJsonCase> {};

TEST_P(BadJson, IsRefusedNamingTheKey)
{
    auto settings = parseSettingsJson(GetParam().text);
    ASSERT_FALSE(settings);
    EXPECT_NE(settings.error().find(GetParam().mentions), std::string::npos) << settings.error();
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadJson,
    testing::Values(BadJsonCase{"UnknownKey", R"({"tabFoo": 1})", "'tabFoo'"},
                    BadJsonCase{"TextAsNumber", R"({"tabPIN": 1234})", "'tabPIN'"},
                    BadJsonCase{"CheckBoxAsText", R"({"opBatt": "yes"})", "'opBatt'"},
                    BadJsonCase{"CheckBoxAsBoolean", R"({"opBatt": true})", "'opBatt'"},
                    BadJsonCase{"CheckBoxTwo", R"({"opBatt": 2})", "'opBatt'"},
                    BadJsonCase{"OptionAsNumber", R"({"opEnablePS1": 1})", "'opEnablePS1'"},
                    BadJsonCase{"RowTooShort", R"({"tabINPNazev": ["a"]})", "'tabINPNazev'"},
                    BadJsonCase{"RowTooLong", R"({"tabTC": ["","","","","","","","",""]})", "'tabTC'"},
                    BadJsonCase{"RowWithNumber", R"({"tabTC": ["","","","","","","",5]})", "'tabTC'"},
                    BadJsonCase{"CheckRowWithBoolean", R"({"tabINPZpr": [0,0,0,0,0,0,0,true]})", "'tabINPZpr'"},
                    BadJsonCase{"FlagRowWithNumber", R"({"eeMaskDInHLAlarm": [0,0,0,0,0,0,0,0]})", "'eeMaskDInHLAlarm'"},
                    BadJsonCase{"ByteTooLarge", R"({"eeMaskDOutFnc": 256})", "'eeMaskDOutFnc'"},
                    BadJsonCase{"ByteNegative", R"({"analogOptions": [0,0,0,0,0,0,0,-1]})", "'analogOptions'"},
                    BadJsonCase{"ByteFraction", R"({"eeMaskDOutFnc": 1.5})", "'eeMaskDOutFnc'"},
                    BadJsonCase{"NotAnObject", R"([1,2,3])", "objekt"},
                    BadJsonCase{"Syntax", R"({"tabPIN": )", "JSON"},
                    BadJsonCase{"BrokenUtf8", "{\"tabPIN\": \"\xC5\"}", "JSON"}),
    [](const auto& row) { return std::string(row.param.name); });

// The catalogue and the start-up record must tell the same story, or a JSON
// with missing keys would not match a freshly started window.
TEST(FieldCatalogue, StartupTextsMatchTheInitialTexts)
{
    const auto startup = settingsToJson(StationSettings());
    for (const auto& field : fieldCatalogue()) {
        if (field.shape != FieldShape::Text && field.shape != FieldShape::TextRow)
            continue;
        const std::string name(field.name);
        if (name == "tabAINCL1Level" || name == "tabAINCL2Level")
            continue; // the start-up writes the measuring ranges over them
        if (field.shape == FieldShape::Text)
            EXPECT_EQ(startup[name], field.initialText) << name;
        else
            for (const auto& text : startup[name])
                EXPECT_EQ(text, field.initialText) << name;
    }
    EXPECT_EQ(findField("tabPIN")->maxLength, 8);
    EXPECT_EQ(findField("tabTC")->maxLength, 50);
    EXPECT_EQ(findField("tabAINCL2Level")->initialText, "100");
    EXPECT_EQ(findField("tabAINNazev")->pageOfRow(4), Page::Analog5To8);
    EXPECT_EQ(findField("nothing"), nullptr);
}

TEST(SettingsDiff, ListsOneEntryPerFieldAndRow)
{
    StationSettings a;
    StationSettings b;
    b.tabJmenoStanice = "Nová";
    b.tabINPNazev[2] = "DVERE";
    b.tabINPNazev[7] = "OKNO";
    b.opEnablePS1 = true;
    const auto differences = diffSettings(a, b);
    ASSERT_EQ(differences.size(), 4u);
    EXPECT_EQ(differences[0].field, "tabJmenoStanice");
    EXPECT_EQ(differences[0].row, 0);
    EXPECT_EQ(differences[0].left, "\"\"");
    EXPECT_EQ(differences[0].right, "\"Nová\"");
    EXPECT_EQ(differences[1].field, "opEnablePS1");
    EXPECT_EQ(differences[1].right, "true");
    EXPECT_EQ(differences[2].field, "tabINPNazev");
    EXPECT_EQ(differences[2].row, 3);
    EXPECT_EQ(differences[3].row, 8);
    EXPECT_TRUE(diffSettings(b, b).empty());
}

} // namespace
} // namespace rm8
