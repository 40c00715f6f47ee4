// The settings report: its text against goldens written by
// tests/data/report/make_golden.py from the wording alone, and its page
// layout with a font whose every character is 100 twips wide.

#include <fstream>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "fields/field_catalogue.h"
#include "fields/settings_json.h"
#include "flow/file_flows.h"
#include "report/report_content.h"
#include "report/report_layout.h"
#include "report/report_text.h"
#include "support/recording_interaction.h"
#include "support/test_data.h"

namespace {

using namespace rm8;
using namespace rm8::report;

StationSettings settingsFrom(const std::string& name)
{
    std::ifstream in(test::dataDir() / name);
    std::ostringstream text;
    text << in.rdbuf();
    auto settings = parseSettingsJson(text.str());
    EXPECT_TRUE(settings) << name;
    return settings ? *settings : StationSettings {};
}

// Every value of a field changed to another.
void mutate(std::string& text)
{
    text += "X";
}
void mutate(bool& flag)
{
    flag = !flag;
}
void mutate(std::uint8_t& byte)
{
    byte = static_cast<std::uint8_t>(~byte);
}
template <class T> void mutate(Row8<T>& row)
{
    for (auto& value : row)
        mutate(value);
}

// What rm8ctl report and the window print for each golden settings file as a
// load leaves it (the battery text taken from the battery row), and for a JSON
// form with every row filled.
std::vector<std::string> reportCases()
{
    std::vector<std::string> cases;
    for (const auto& entry : test::readJson(test::dataDir() / "manifest.json"))
        cases.push_back(entry["name"].get<std::string>() + ".eep");
    cases.push_back("report/all_rows.json");
    return cases;
}

StationSettings loaded(const std::string& name)
{
    if (name.ends_with(".json"))
        return settingsFrom(name);
    EepromImage image;
    StationSettings settings;
    test::RecordingInteraction ui;
    EXPECT_EQ(loadSettingsFile(test::dataDir() / name, image, settings, ui), FlowOutcome::Done) << name;
    return settings;
}

class ReportGolden : public testing::TestWithParam<std::string> { };

TEST_P(ReportGolden, TextEqualsTheGolden)
{
    const std::string golden = std::filesystem::path(GetParam()).stem().string() + ".txt";
    const auto expected = test::readBytes(test::dataDir() / "report" / golden);
    EXPECT_EQ(reportText(buildReport(loaded(GetParam()))), std::string(expected.begin(), expected.end()));
}

INSTANTIATE_TEST_SUITE_P(Configurations, ReportGolden, testing::ValuesIn(reportCases()));

TEST(Report, AnalogInputsAndTheUnprintedOptionsChangeNothing)
{
    const StationSettings base = settingsFrom("report/all_rows.json");
    StationSettings changed = base;
    for (const auto& field : fieldCatalogue()) {
        const bool analog = field.page == rm8::Page::Analog1To4 || field.page == rm8::Page::Analog5To8;
        if (!analog && field.name != "opSuperPS" && field.name != "opNotAuthorized" && field.name != "rtNotAuthorized")
            continue;
        std::visit([&](auto member) { mutate(changed.*member); }, field.member);
    }
    ASSERT_NE(changed, base);
    EXPECT_EQ(reportText(buildReport(changed)), reportText(buildReport(base)));
}

TEST(Report, HeaderTitleIsCutToTwentyCharacters)
{
    EXPECT_LE(firstCharacters(kHeaderTitle, 100).size(), kHeaderTitle.size());
    EXPECT_EQ(headerText("Čerpadla"), firstCharacters(kHeaderTitle, kHeaderTitleLimit) + " stanice: Čerpadla");
    // Whole characters are counted, not bytes.
    EXPECT_EQ(firstCharacters("ŽluťoučkýKůňÚpělĎábelskéÓdy", 20), "ŽluťoučkýKůňÚpělĎábe");
    EXPECT_EQ(firstCharacters("ab", 20), "ab");
}

// The name proposed for a PDF of the report: never a character a file system
// refuses, never empty.
TEST(Report, FileStemIsTheStationsNameAsAFileSystemTakesIt)
{
    StationSettings settings;
    for (const auto& [station, stem] : std::vector<std::pair<std::string, std::string>> {
             { "", "nastaveni" }, { "Čerpadlo: Vrt 2", "Čerpadlo_ Vrt 2" }, { "con", "con_" }, { "Com7.x", "Com7.x_" } }) {
        settings.tabJmenoStanice = station;
        EXPECT_EQ(buildReport(settings).fileStem, stem) << station;
    }
}

// Every character 100 twips wide; lines of fixed heights.
class RuleFont : public TextMeasure {
public:
    double width(TextStyle, std::string_view text) const override
    {
        double count = 0;
        for (const char c : text)
            count += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
        return 100 * count;
    }
    double lineHeight(TextStyle style) const override { return style == TextStyle::Header ? 300 : 200; }
};

TEST(ReportLayout, WrapsAtBlanksAndInsideWordsThatDoNotFit)
{
    const RuleFont font;
    const struct {
        const char* text;
        double width;
        std::vector<std::string> lines;
    } cases[] = {
        { "", 500, { "" } },
        { "abc de", 600, { "abc de" } },
        { "abc def gh", 600, { "abc", "def gh" } },
        { "abcdefgh", 300, { "abc", "def", "gh" } },
        { "ŽŽŽŽ ŠŠ", 300, { "ŽŽŽ", "Ž", "ŠŠ" } },
        { "xyz", 0, { "x", "y", "z" } },
    };
    for (const auto& c : cases)
        EXPECT_EQ(wrapText(c.text, c.width, TextStyle::Body, font), c.lines) << c.text << " in " << c.width;
}

TEST(ReportLayout, SmallPagesBreakInsideATableBetweenWholeRows)
{
    StationSettings settings = settingsFrom("report/all_rows.json");
    // Names of three lines each in their column, every word tagged with its row.
    for (std::size_t row = 0; row < kRows; ++row) {
        const std::string tag = "r" + std::to_string(row + 1);
        settings.tabINPNazev[row] = tag + "a " + tag + "b " + tag + "c " + tag + "d " + tag + "e " + tag + "f";
    }
    const Report report = buildReport(settings);
    const RuleFont font;
    const PageGeometry geometry { 10000, 7000 };
    const auto pages = layoutReport(report, font, geometry);

    ASSERT_GE(pages.size(), 3u);
    int inputsFrom = 0;
    int inputsTo = 0;
    for (std::size_t p = 0; p < pages.size(); ++p) {
        const report::Page& page = pages[p];
        const int number = static_cast<int>(p) + 1;
        EXPECT_EQ(page.number, number);
        ASSERT_GE(page.texts.size(), 2u);
        EXPECT_EQ(page.texts[0].text, report.header);
        EXPECT_EQ(page.texts[0].y, kHeaderTop);
        EXPECT_EQ(page.texts[1].text, pageNumberText(number));
        EXPECT_TRUE(page.texts[1].alignRight);
        for (const auto& text : page.texts) {
            EXPECT_LT(text.y + font.lineHeight(text.style) + kBottomMargin, geometry.height) << text.text;
            if (text.text == "IN1")
                inputsFrom = number;
            if (text.text == "IN8")
                inputsTo = number;
        }
    }
    EXPECT_LT(inputsFrom, inputsTo) << "the page break is to fall inside the inputs table";

    // Each row's name lines are on the page of its label, whole and in order.
    for (std::size_t row = 0; row < kRows; ++row) {
        const std::string tag = "r" + std::to_string(row + 1);
        for (const report::Page& page : pages) {
            std::string name;
            bool labelled = false;
            for (const auto& text : page.texts) {
                labelled = labelled || text.text == "IN" + std::to_string(row + 1);
                if (text.text.rfind(tag, 0) == 0)
                    name += (name.empty() ? "" : " ") + text.text;
            }
            if (labelled)
                EXPECT_EQ(name, settings.tabINPNazev[row]) << "page " << page.number;
            else
                EXPECT_EQ(name, "") << "page " << page.number;
        }
    }
}

} // namespace
