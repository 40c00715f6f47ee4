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

} // namespace
} // namespace rm8
