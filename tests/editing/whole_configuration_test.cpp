// Whole configurations judged at once, as before the EEPROM is written: each
// tests/data/editing/<case>.json must give exactly the report written in
// <case>.expected.txt, line for line and in order. A case's "eepromSize" is
// the station's memory for the size check; its other keys are settings.

#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "editing/configuration_check.h"
#include "fields/settings_json.h"
#include "support/test_data.h"

namespace rm8 {
namespace {

std::string place(const std::string& field, FieldRow row)
{
    return row ? field + "[" + std::to_string(rowNumber(*row)) + "]" : field;
}

// Violations as "field[row] rule: message", then what leaving the clamped
// fields and the phone numbers would change, as "field[row]: "from" -> "to"".
std::string reportText(const CheckReport& report)
{
    std::string text;
    for (const auto& v : report.violations)
        text += place(v.field, v.row) + " " + std::string(ruleName(v.rule)) + ": " + v.message + "\n";
    for (const auto& a : report.adjustments)
        text += place(a.field, a.row) + ": \"" + a.from + "\" -> \"" + a.to + "\"\n";
    return text;
}

TEST(WholeConfiguration, EveryCaseReportsExactlyItsExpectedLines)
{
    int cases = 0;
    for (const auto& entry : std::filesystem::directory_iterator(test::dataDir() / "editing")) {
        if (entry.path().extension() != ".json")
            continue;
        SCOPED_TRACE(entry.path().filename().string());
        ++cases;
        auto json = test::readJson(entry.path());
        std::optional<std::size_t> eepromSize;
        if (json.contains("eepromSize")) {
            eepromSize = json["eepromSize"].get<std::size_t>();
            json.erase("eepromSize");
        }
        const auto settings = settingsFromJson(json);
        ASSERT_TRUE(settings) << settings.error();
        auto expectedPath = entry.path();
        expectedPath.replace_extension(".expected.txt");
        ASSERT_TRUE(std::filesystem::exists(expectedPath));
        const auto expected = test::readBytes(expectedPath);
        const CheckReport report = checkConfiguration(*settings, eepromSize);
        EXPECT_EQ(reportText(report), std::string(expected.begin(), expected.end()));
    }
    EXPECT_EQ(cases, 10);
}

} // namespace
} // namespace rm8
