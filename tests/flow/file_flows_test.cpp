#include <deque>

#include <gtest/gtest.h>

#include "flow/file_flows.h"
#include "settings/image_encoder.h"
#include "settings/used_size.h"
#include "support/test_data.h"

namespace rm8 {
namespace {

using test::ScratchDir;

// Records what the technician would see and answers questions from a script.
class RecordingInteraction : public Interaction {
public:
    struct Event {
        std::string kind;
        std::string text;
        MessageIcon icon = MessageIcon::Information;
    };

    void showProgress(std::string_view text, bool) override { events.push_back({"progress", std::string(text)}); }
    void hideProgress() override { events.push_back({"hide", ""}); }
    bool cancelRequested() override { return false; }
    void message(MessageIcon icon, std::string_view text, std::string_view) override
    {
        events.push_back({"message", std::string(text), icon});
    }
    Answer ask(MessageIcon icon, std::string_view question, Buttons) override
    {
        events.push_back({"ask", std::string(question), icon});
        EXPECT_FALSE(answers.empty()) << "unexpected question: " << question;
        if (answers.empty())
            return Answer::Cancel;
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }

    std::vector<Event> messages() const
    {
        std::vector<Event> shown;
        for (const auto& e : events)
            if (e.kind == "message" || e.kind == "ask")
                shown.push_back(e);
        return shown;
    }

    std::vector<Event> events;
    std::deque<Answer> answers;
};

StationSettings edited()
{
    StationSettings s;
    s.tabJmenoStanice = "Čerpací stanice";
    s.tabINPNazev[0] = "DVERE";
    s.tabTC[0] = "+420602123456";
    return s;
}

TEST(LoadFlow, GoodFileFillsTheSettings)
{
    const auto path = test::dataDir() / "full.eep";
    EepromImage image;
    StationSettings settings;
    settings.tabUTO = "+421";
    RecordingInteraction ui;
    EXPECT_EQ(loadSettingsFile(path, image, settings, ui), FlowOutcome::Done);
    ASSERT_GE(ui.events.size(), 3u);
    EXPECT_EQ(ui.events[0].text, "Načítám nastavení ze souboru '" + path.string() + "'.");
    EXPECT_EQ(ui.events[1].text, "Převádím data ...");
    const auto shown = ui.messages();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].icon, MessageIcon::Information);
    EXPECT_EQ(shown[0].text, "Data ze souboru '" + path.string() + "' byla úspěšně načtena.");
    EXPECT_EQ(ui.events.back().kind, "hide");
    EXPECT_NE(settings.tabJmenoStanice, "");
    EXPECT_EQ(settings.tabUTO, "+421") << "not carried by the file";
}

TEST(LoadFlow, ForeignFileChangesNoSetting)
{
    ScratchDir dir;
    test::writeBytes(dir / "foreign.eep", std::vector<char>(500, 'x'));
    EepromImage image;
    StationSettings settings = edited();
    RecordingInteraction ui;
    EXPECT_EQ(loadSettingsFile(dir / "foreign.eep", image, settings, ui), FlowOutcome::Rejected);
    const auto shown = ui.messages();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].icon, MessageIcon::Information);
    EXPECT_EQ(shown[0].text,
              "Data v souboru '" + (dir / "foreign.eep").string() + "' nejsou v pořádku - neodpovídají formátu EEPROM.");
    EXPECT_EQ(settings, edited());
    EXPECT_EQ(image.byte(499), 'x') << "the image keeps the file's bytes";
}

TEST(LoadFlow, UnreadableFileShowsTheLoadError)
{
    ScratchDir dir;
    EepromImage image(0x10);
    StationSettings settings = edited();
    RecordingInteraction ui;
    EXPECT_EQ(loadSettingsFile(dir / "none.eep", image, settings, ui), FlowOutcome::Failed);
    const auto shown = ui.messages();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].icon, MessageIcon::Stop);
    EXPECT_EQ(shown[0].text,
              "Při načítání nastavení programu ze souboru '" + (dir / "none.eep").string() + "' nastala chyba.");
    EXPECT_EQ(settings, edited());
    EXPECT_EQ(image, EepromImage(0x10));
}

TEST(LoadFlow, ImageThatStopsTheDecoderChangesNoSetting)
{
    ScratchDir dir;
    EepromImage bad(0x41); // no byte 0 anywhere: every text runs off the end
    ASSERT_TRUE(encodeImage(StationSettings(), bad));
    bad.putWord(0, 65000);
    bad.putByte(48, 0);
    std::vector<char> bytes(bad.bytes().begin(), bad.bytes().end());
    // Recompute the check byte by the header rule so that only the decoder fails.
    unsigned sum = 1;
    for (int i = 0; i < 48; ++i)
        sum += static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)]);
    bytes[48] = static_cast<char>(sum % 256 == 13 ? 12 : sum % 256);
    test::writeBytes(dir / "bad.eep", bytes);

    EepromImage image;
    StationSettings settings = edited();
    RecordingInteraction ui;
    EXPECT_EQ(loadSettingsFile(dir / "bad.eep", image, settings, ui), FlowOutcome::Failed);
    EXPECT_EQ(settings, edited());
    ASSERT_EQ(ui.messages().size(), 1u);
    EXPECT_EQ(ui.messages()[0].icon, MessageIcon::Stop);
}

TEST(SaveFlow, NewFileIsWrittenWithoutAMessage)
{
    ScratchDir dir;
    EepromImage image;
    RecordingInteraction ui;
    EXPECT_EQ(saveSettingsFile(dir / "new.eep", image, edited(), ui), FlowOutcome::Done);
    EXPECT_TRUE(ui.messages().empty());
    EXPECT_EQ(ui.events.front().text, "Ukládám nastavení do souboru '" + (dir / "new.eep").string() + "'.");
    EXPECT_EQ(std::filesystem::file_size(dir / "new.eep"), usedSize(edited()) - 1);

    // And it loads back into the same settings, levels written as the
    // decoder writes them.
    StationSettings expected = edited();
    expected.tabAINCL1Level.fill("0");
    expected.tabAINCL2Level = {"100", "100", "100", "100", "100", "100", "100", "27"};
    EepromImage again;
    StationSettings loaded;
    RecordingInteraction quiet;
    EXPECT_EQ(loadSettingsFile(dir / "new.eep", again, loaded, quiet), FlowOutcome::Done);
    EXPECT_EQ(loaded, expected);
}

TEST(SaveFlow, ExistingFileIsReplacedOnlyOnYes)
{
    ScratchDir dir;
    test::writeBytes(dir / "old.eep", {'o', 'l', 'd'});
    EepromImage image;
    RecordingInteraction no;
    no.answers = {Answer::No};
    EXPECT_EQ(saveSettingsFile(dir / "old.eep", image, edited(), no), FlowOutcome::Declined);
    ASSERT_EQ(no.messages().size(), 1u);
    EXPECT_EQ(no.messages()[0].text, "Tento soubor již existuje. Mám ho přepsat?");
    EXPECT_EQ(no.messages()[0].icon, MessageIcon::Question);
    EXPECT_EQ(test::readBytes(dir / "old.eep"), (std::vector<char>{'o', 'l', 'd'}));

    RecordingInteraction yes;
    yes.answers = {Answer::Yes};
    EXPECT_EQ(saveSettingsFile(dir / "old.eep", image, edited(), yes), FlowOutcome::Done);
    EXPECT_EQ(std::filesystem::file_size(dir / "old.eep"), usedSize(edited()) - 1);
}

TEST(SaveFlow, ConversionErrorWritesNothing)
{
    ScratchDir dir;
    StationSettings settings = edited();
    settings.rtSwitchOn = "✓ zapnuto";
    EepromImage image(0x20);
    RecordingInteraction ui;
    EXPECT_EQ(saveSettingsFile(dir / "x.eep", image, settings, ui), FlowOutcome::Failed);
    ASSERT_EQ(ui.messages().size(), 1u);
    EXPECT_EQ(ui.messages()[0].text, "Nastala chyba při převodu dat.");
    EXPECT_EQ(ui.messages()[0].icon, MessageIcon::Stop);
    EXPECT_FALSE(std::filesystem::exists(dir / "x.eep"));
    EXPECT_EQ(image, EepromImage(0x20));
}

TEST(SaveFlow, UnwritableFileShowsTheSaveError)
{
    ScratchDir dir;
    const auto path = dir / "no-such-folder" / "x.eep";
    EepromImage image;
    RecordingInteraction ui;
    EXPECT_EQ(saveSettingsFile(path, image, edited(), ui), FlowOutcome::Failed);
    ASSERT_EQ(ui.messages().size(), 1u);
    EXPECT_EQ(ui.messages()[0].text,
              "Při ukládání nastavení programu do souboru '" + path.string() + "' nastala chyba.");
}

} // namespace
} // namespace rm8
