// The load and save flows as the technician meets them: every progress text,
// question and message in order, with its icon and detail, and what becomes
// of the settings, the image and the file. Cases in file_flows.json; a file
// named there is a data file, "foreign", "empty" and "old" are made here.

#include "fields/settings_json.h"
#include "flow/file_flows.h"
#include "settings/table_file.h"
#include "settings/used_size.h"
#include "support/recording_interaction.h"

namespace rm8 {
namespace {

namespace fs = std::filesystem;

TEST(FileFlows, CasesOfTheTable)
{
    for (const auto& c : test::readJson(test::dataDir() / "settings/file_flows.json")) {
        SCOPED_TRACE(c["name"].get<std::string>());
        const std::string kind = c["file"];
        test::ScratchDir dir;
        const fs::path path
            = kind.ends_with(".eep") ? test::dataDir() / kind : dir / (kind == "nofolder" ? "x/a.eep" : "a.eep");
        const std::map<std::string, std::vector<char>> made { { "foreign", std::vector<char>(500, 'x') },
            { "empty", {} }, { "old", { 'o', 'l', 'd' } } };
        if (made.contains(kind))
            test::writeBytes(path, made.at(kind));
        const auto file = fs::is_regular_file(path) ? test::readBytes(path) : std::vector<char>();
        StationSettings settings;
        settings.tabUTO = "+421";
        settings.rtSwitchOn = c.contains("unencodable") ? "✓ zapnuto" : "Čerpadlo zapnuto";
        const StationSettings before = settings;
        const EepromImage blank(0x20);
        EepromImage image = blank;
        test::RecordingInteraction ui;
        for (const auto& answer : c.value("answers", nlohmann::json::array()))
            ui.answers.push_back(answer == "Yes" ? Answer::Yes : Answer::No);
        const bool load = c["flow"] == "load";
        const FlowOutcome outcome
            = load ? loadSettingsFile(path, image, settings, ui) : saveSettingsFile(path, image, settings, ui);

        const char* outcomes[] = { "Done", "Declined", "Rejected", "Failed" };
        const char* icons[] = { "Stop", "Exclamation", "Question", "Information" };
        EXPECT_EQ(outcomes[static_cast<int>(outcome)], c["outcome"]);
        std::vector<std::string> events;
        for (std::string event : c["events"])
            events.push_back(event.find("{path}") == std::string::npos
                    ? event
                    : event.replace(event.find("{path}"), 6, path.string()));
        EXPECT_EQ(ui.events, events);
        std::vector<std::string> shown;
        for (const auto& m : ui.questions.empty() ? ui.messages : ui.questions)
            shown.push_back(icons[static_cast<int>(m.icon)]);
        EXPECT_EQ(nlohmann::json(shown), c["icons"]);
        const std::string detail = c.value("detail", "");
        EXPECT_EQ(test::likePattern(ui.messages.empty() ? "" : ui.messages[0].detail, detail), detail);

        // A load changes the settings only when the whole image decoded, and
        // then not those the file does not carry; the image takes the bytes
        // of any file it could read. A save writes one byte short of the used
        // size, and a failed encoding changes no byte of the image.
        StationSettings expected = before;
        if (load && outcome == FlowOutcome::Done) {
            expected = settingsFromJson(test::readJson(test::dataDir() / "full.json")).value();
            expected.tabUTO = before.tabUTO;
        }
        EXPECT_EQ(settings, expected);
        EepromImage read = blank;
        std::copy(file.begin(), file.end(), read.bytes().begin());
        read.putByte(0, kind == "empty" ? 0 : read.byte(0));
        const auto written = fs::is_regular_file(path) ? test::readBytes(path) : std::vector<char>();
        const std::vector<char> saved(
            image.bytes().begin(), image.bytes().begin() + static_cast<std::ptrdiff_t>(usedSize(settings) - 1));
        EXPECT_EQ(written, !load && outcome == FlowOutcome::Done ? saved : file);
        EXPECT_TRUE(load ? image == read : !c.contains("unencodable") || image == blank);
    }
}

} // namespace
} // namespace rm8
