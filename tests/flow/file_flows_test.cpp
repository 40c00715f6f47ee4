// The load and save flows as the technician meets them: every progress text,
// question and message in order, with its icon and detail, and what becomes
// of the settings, the image and the file. Cases in file_flows.json; the data
// file a case names is copied into a scratch folder first.

#include "fields/settings_json.h"
#include "flow/file_flows.h"
#include "platform/utf8_path.h"
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
        const std::string name = kind == "nofolder" ? "x/a.eep" : c.value("as", "a.eep");
        const fs::path path = dir.path() / platform::pathFromUtf8(name);
        if (kind.ends_with(".eep"))
            fs::copy_file(test::dataDir() / kind, path);
        const auto file = fs::is_regular_file(path) ? test::readBytes(path) : std::vector<char>();
        StationSettings settings;
        settings.tabUTO = "+421";
        settings.rtSwitchOn = c.contains("unencodable") ? "✓ zapnuto" : "Čerpadlo zapnuto";
        StationSettings expected = settings;
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
        for (auto& event : ui.events)
            if (const auto at = event.find(platform::utf8FromPath(path)); at != std::string::npos)
                event.replace(at, platform::utf8FromPath(path).size(), "{path}");
        EXPECT_EQ(nlohmann::json(ui.events), c["events"]);
        EXPECT_FALSE(ui.stornoOffered) << "neither flow offers Storno";
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
        if (load && outcome == FlowOutcome::Done) {
            expected = settingsFromJson(test::readJson(test::dataDir() / "full.json")).value();
            expected.tabUTO = "+421"; // not carried by the file
        }
        EXPECT_EQ(settings, expected);
        EepromImage read = blank;
        std::copy(file.begin(), file.end(), read.bytes().begin());
        read.putByte(0, kind.ends_with("empty.eep") ? 0 : read.byte(0));
        const auto written = fs::is_regular_file(path) ? test::readBytes(path) : std::vector<char>();
        const std::vector<char> saved(
            image.bytes().begin(), image.bytes().begin() + static_cast<std::ptrdiff_t>(usedSize(settings) - 1));
        EXPECT_EQ(written, !load && outcome == FlowOutcome::Done ? saved : file);
        EXPECT_TRUE(load ? image == read : !c.contains("unencodable") || image == blank);
    }
}

} // namespace
} // namespace rm8
