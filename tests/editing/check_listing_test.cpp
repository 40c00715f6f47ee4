// The check as the window lists it, the count of errors in Czech, and the
// table of what differs between two configurations. The expected files in
// tests/data/check/ were checked by hand (README.md there says against what).

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "editing/check_listing.h"
#include "fields/compare_table.h"
#include "fields/field_captions.h"
#include "fields/settings_json.h"
#include "settings/image_decoder.h"
#include "settings/settings_file.h"
#include "support/test_data.h"

namespace rm8 {
namespace {

std::string fileText(const std::string& name)
{
    const auto bytes = test::readBytes(test::dataDir() / "check" / name);
    return { bytes.begin(), bytes.end() };
}

StationSettings decodedFile(const std::string& name)
{
    EepromImage image;
    EXPECT_TRUE(readImageFile(test::dataDir() / name, image));
    StationSettings settings;
    EXPECT_TRUE(decodeImage(image, settings));
    return settings;
}

TEST(CheckListing, SeededConfigurationListsViolationsInReportOrderThenAdjustments)
{
    const auto settings = settingsFromJson(test::readJson(test::dataDir() / "check" / "seeded.json"));
    ASSERT_TRUE(settings) << settings.error();
    std::string listed;
    for (const auto& e : listCheckReport(checkConfiguration(*settings, 448)))
        listed += std::string(e.isAdjustment ? "úprava" : "chyba") + "\t"
            + (e.page ? std::string(pageCaption(*e.page)) : "-") + "\t" + e.label + "\t" + e.field
            + (e.row ? "[" + std::to_string(rowNumber(*e.row)) + "]" : "") + "\t" + e.message + "\n";
    EXPECT_EQ(listed, fileText("seeded.listing.tsv"));
}

TEST(CheckListing, CountsTakeTheCzechPluralOfTheirCase)
{
    std::istringstream cases(fileText("plurals.tsv"));
    std::string count, title, question;
    int read = 0;
    while (std::getline(cases, count, '\t') && std::getline(cases, title, '\t') && std::getline(cases, question)) {
        ++read;
        EXPECT_EQ(checkPanelTitle(std::stoul(count)), title);
        EXPECT_EQ(writeQuestion(std::stoul(count)), question);
    }
    EXPECT_EQ(read, 10);
}

TEST(CompareTable, TwoGoldenFilesDifferExactlyAsListed)
{
    std::string table;
    for (const auto& r : compareTable(decodedFile("header_checksum_13.eep"), decodedFile("flags_conditional.eep")))
        table += std::string(pageCaption(r.page)) + "\t" + r.rowLabel + "\t" + r.caption + "\t" + r.windowValue + "\t"
            + r.otherValue + "\n";
    EXPECT_EQ(table, fileText("header_checksum_13.vs.flags_conditional.tsv"));
}

TEST(FieldCaptions, EveryFieldOfTheCatalogueHasOne)
{
    for (const auto& field : fieldCatalogue())
        EXPECT_FALSE(fieldCaption(field.name).empty()) << field.name;
}

// A row names a table's row only for a field of a table and within its
// eight rows; otherwise the label is the caption alone.
TEST(FieldCaptions, LabelAndPageFollowTheRow)
{
    struct Case {
        std::string_view field;
        FieldRow row;
        std::string label;
        std::optional<Page> page;
    };
    const Case cases[] = {
        { "tabINPNazev", 2, "IN3: Název", Page::DigitalInputs },
        { "tabAINCL1Level", kBatteryRow, "BAT: CL1", Page::Analog5To8 },
        { "tabAINNazev", 3, "AIN4: Název", Page::Analog1To4 },
        { "tabAINNazev", kRows, "Název", Page::Analog1To4 },
        { "tabAINNazev", std::nullopt, "Název", Page::Analog1To4 },
        { "tabPIN", std::nullopt, "PIN SIM karty", Page::General },
        { "tabPIN", 3, "PIN SIM karty", Page::General },
        { "lblInfoPamUsage", std::nullopt, "Velikost nastavení", std::nullopt },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.field));
        EXPECT_EQ(fieldLabel(c.field, c.row), c.label);
        EXPECT_EQ(fieldPage(c.field, c.row), c.page);
    }
}

} // namespace
} // namespace rm8
