// The decisions behind the main window, without the window: the session,
// the read and the write with each of its gates, the modified state, the
// decoded callback. Against the simulated station in process.

#include <filesystem>

#include <gtest/gtest.h>

#include "bench_rig.h"
#include "editing/check_listing.h"
#include "flow/messages.h"
#include "platform/utf8_path.h"
#include "settings/image_encoder.h"
#include "support/test_data.h"

namespace rm8::test {
namespace {

using link::ConnectionState;

struct ActivationCase {
    const char* name;
    sim::StationProfile profile;
    const char* port;
    ConnectionState state;
    std::optional<std::size_t> eepromSize;
    const char* product;
    bool sessionOpen;
};

const ActivationCase kActivations[] = {
    { "an RM8 1.0 is active", {}, "COM 1", ConnectionState::Active, 8128, "RM8", true },
    { "a memory code of 9", { 2151298, 1, 0, 9, 4 }, "COM 1", ConnectionState::Active, 65472, "RM8", true },
    { "a memory code no row has", { 2151298, 1, 0, 10, 4 }, "COM 1", ConnectionState::Active, std::nullopt, "RM8",
        true },
    { "too old a version", { 2151298, 0, 9, 6, 4 }, "COM 1", ConnectionState::WrongVersion, 8128, "RM8", true },
    { "a port without a device", {}, "COM 2", ConnectionState::Inactive, std::nullopt, "?", false },
};

TEST(Workbench, ActivationGivesTheStateAndTheSizeAsANumber)
{
    for (const auto& c : kActivations) {
        SCOPED_TRACE(c.name);
        BenchRig rig(c.profile);
        rig.bench.activateOrDeactivate(c.port);
        EXPECT_EQ(rig.bench.connection(), c.state);
        EXPECT_EQ(rig.bench.eepromSize(), c.eepromSize);
        EXPECT_EQ(rig.bench.identity().product, c.product);
        EXPECT_EQ(rig.bench.sessionOpen(), c.sessionOpen);
        if (!c.sessionOpen) {
            EXPECT_EQ(rig.ui.messageTexts().back(), std::string("Nelze otevřít port ") + c.port);
            continue;
        }
        // The same command closes what it opened.
        rig.bench.activateOrDeactivate(c.port);
        EXPECT_EQ(rig.requests(6), 1u);
        EXPECT_EQ(rig.bench.connection(), ConnectionState::Inactive);
        EXPECT_EQ(rig.bench.identity().memorySize, "?");
        EXPECT_FALSE(rig.bench.eepromSize());
        EXPECT_FALSE(rig.line.isOpen());
    }
}

TEST(Workbench, AStationOfAWrongVersionIsNeitherReadNorWritten)
{
    BenchRig rig({ 2151298, 0, 9, 6, 4 });
    rig.bench.activate("COM 1");
    const std::size_t asked = rig.line.transcript.size();
    EXPECT_EQ(rig.bench.read(), FlowOutcome::Declined);
    EXPECT_EQ(rig.bench.write(false, std::nullopt), FlowOutcome::Declined);
    EXPECT_FALSE(rig.bench.settingsInStation());
    EXPECT_EQ(rig.line.transcript.size(), asked);
}

// A configuration written into the station and read back: the decoded
// callback comes after "Převádím data ..." has gone and before the success
// message, with the settings the workbench now holds, which count as kept.
TEST(Workbench, ReadTellsWhenDecodedAndKeepsWhatItRead)
{
    StationSettings stored;
    stored.tabJmenoStanice = "Vodarna";
    EepromImage image;
    ASSERT_TRUE(encodeImage(stored, image));
    BenchRig rig({}, Bytes(image.bytes().begin(), image.bytes().begin() + 8192));
    std::vector<std::string> seen;
    rig.bench.setDecodeWatch({ [&] { seen.push_back("converting"); },
        [&](const StationSettings& settings) {
            seen.push_back("decoded " + settings.tabJmenoStanice);
            seen.insert(seen.end(), rig.ui.events.end() - 2, rig.ui.events.end());
        } });
    rig.bench.activate("COM 1");
    StationSettings edited;
    edited.tabPIN = "1234";
    rig.bench.edit(edited);
    EXPECT_TRUE(rig.bench.modified());
    ASSERT_EQ(rig.bench.read(), FlowOutcome::Done);
    EXPECT_EQ(seen,
        (std::vector<std::string> {
            "converting", "decoded Vodarna", "progress:" + std::string(messages::kConvertingData), "hide" }));
    EXPECT_EQ(rig.ui.messageTexts().back(), messages::kStationReadDone);
    EXPECT_EQ(rig.bench.settings().tabJmenoStanice, "Vodarna");
    EXPECT_FALSE(rig.bench.modified());
}

TEST(Workbench, AnEepromNeverProgrammedLeavesTheSettings)
{
    BenchRig rig({}, Bytes(8192, 0xFF));
    bool decoded = false;
    rig.bench.setDecodeWatch({ nullptr, [&](const StationSettings&) { decoded = true; } });
    rig.bench.activate("COM 1");
    StationSettings edited;
    edited.tabPIN = "1234";
    rig.bench.edit(edited);
    EXPECT_EQ(rig.bench.read(), FlowOutcome::Rejected);
    EXPECT_FALSE(decoded);
    EXPECT_EQ(rig.bench.settings(), edited);
    EXPECT_TRUE(rig.bench.modified());
}

void conflictingOutputs(StationSettings& settings)
{
    settings.tabOUTNazev[0] = "SVETLO";
    settings.tabOUTNazev[1] = "SVETLOVOD";
}
void brokenPin(StationSettings& settings)
{
    settings.tabPIN = "12a";
}
void asTheyStart(StationSettings&)
{
}

struct WriteCase {
    const char* name;
    void (*shape)(StationSettings&);
    std::uint8_t sizeCode;
    std::deque<Answer> answers;
    bool stornoWhileWriting;
    FlowOutcome outcome;
    std::size_t questions;
    bool backedUp;
    bool written;
    std::string lastMessage; // its beginning
};

const WriteCase kWrites[] = {
    { "an output conflict stops it first", conflictingOutputs, 0, {}, false, FlowOutcome::Rejected, 0, false, false,
        "Název výstupu 'OUT1'" },
    { "too big for the memory", asTheyStart, 0, {}, false, FlowOutcome::Rejected, 0, false, false,
        "Velikost dat v nastavení (430)" },
    { "a broken rule and Ne", brokenPin, 6, { Answer::No }, false, FlowOutcome::Declined, 1, false, false, "" },
    { "a broken rule and Ano", brokenPin, 6, { Answer::Yes }, false, FlowOutcome::Done, 1, true, true,
        std::string(messages::kStationWriteDone) },
    { "clean settings", asTheyStart, 6, {}, false, FlowOutcome::Done, 0, true, true,
        std::string(messages::kStationWriteDone) },
    { "Storno while writing", asTheyStart, 6, {}, true, FlowOutcome::Failed, 0, true, true,
        std::string(messages::kStationWriteFailed) },
};

TEST(Workbench, WriteTakesItsGatesInOrderAndBacksUpOnlyAWriteThatGoesAhead)
{
    for (const auto& c : kWrites) {
        for (const bool backup : { false, true }) {
            SCOPED_TRACE(std::string(c.name) + (backup ? ", with a backup" : ""));
            const auto folder = std::filesystem::temp_directory_path() / "rm8-workbench-backups";
            std::filesystem::remove_all(folder);
            sim::StationProfile profile;
            profile.memorySizeCode = c.sizeCode;
            BenchRig rig(profile);
            rig.bench.activate("COM 1");
            StationSettings before;
            before.tabJmenoStanice = "Puvodni";
            rig.bench.startFrom(before);
            StationSettings settings;
            c.shape(settings);
            rig.bench.edit(settings);
            rig.ui.answers = c.answers;
            // Storno once the first block has gone out, not during the backup.
            rig.ui.onTurn
                = [&](std::size_t) { rig.ui.cancel = rig.ui.cancel || (c.stornoWhileWriting && rig.requests(5) > 0); };
            const std::size_t shown = rig.ui.messages.size();

            EXPECT_EQ(rig.bench.write(false, backup ? std::optional(folder) : std::nullopt), c.outcome);

            EXPECT_EQ(rig.ui.questions.size(), c.questions);
            for (const auto& question : rig.ui.questions)
                EXPECT_EQ(question.buttons, Buttons::YesNoDefaultNo);
            const bool backedUp = std::filesystem::exists(folder) && !std::filesystem::is_empty(folder);
            EXPECT_EQ(backedUp, backup && c.backedUp);
            EXPECT_EQ(std::ranges::count_if(rig.ui.messages,
                          [](const auto& message) {
                              return message.text.starts_with("Dosavadní obsah stanice byl uložen do souboru");
                          }),
                backedUp ? 1 : 0);
            EXPECT_EQ(rig.requests(5) > 0, c.written);
            EXPECT_EQ(rig.bench.modified(), c.outcome != FlowOutcome::Done);
            if (c.lastMessage.empty())
                EXPECT_EQ(rig.ui.messages.size(), shown);
            else
                EXPECT_TRUE(rig.ui.messages.back().text.starts_with(c.lastMessage)) << rig.ui.messages.back().text;
            std::filesystem::remove_all(folder);
        }
    }
}

// The backup's file name carries the station's name, Czech letters and all,
// on Windows too, and the message names that very file.
TEST(Workbench, BackupFileKeepsTheStationsCzechName)
{
    const auto folder = std::filesystem::temp_directory_path() / "rm8-workbench-czech-backup";
    std::filesystem::remove_all(folder);
    sim::StationProfile profile;
    profile.memorySizeCode = 6;
    BenchRig rig(profile);
    rig.bench.activate("COM 1");
    StationSettings settings;
    settings.tabJmenoStanice = "Čerpací stanice Žďár";
    rig.bench.startFrom(settings);

    ASSERT_EQ(rig.bench.write(false, folder), FlowOutcome::Done);

    ASSERT_TRUE(std::filesystem::is_directory(folder));
    const auto entry = *std::filesystem::directory_iterator(folder);
    EXPECT_TRUE(platform::utf8FromPath(entry.path().filename()).ends_with(" Čerpací stanice Žďár.eep"))
        << platform::utf8FromPath(entry.path().filename());
    EXPECT_TRUE(std::ranges::any_of(rig.ui.messages, [&](const auto& message) {
        return message.text.ends_with(platform::utf8FromPath(entry.path()));
    }));
    std::filesystem::remove_all(folder);
}

TEST(Workbench, SavedAndLoadedSettingsCountAsKept)
{
    const auto file = std::filesystem::temp_directory_path() / "rm8-workbench.eep";
    std::filesystem::remove(file);
    BenchRig rig;
    StationSettings settings;
    settings.tabJmenoStanice = "Cerpadlo";
    rig.bench.startFrom({});
    EXPECT_FALSE(rig.bench.modified());
    rig.bench.edit(settings);
    EXPECT_TRUE(rig.bench.modified());
    ASSERT_EQ(rig.bench.save(file), FlowOutcome::Done);
    EXPECT_FALSE(rig.bench.modified());

    rig.bench.edit({});
    EXPECT_TRUE(rig.bench.modified());
    ASSERT_EQ(rig.bench.load(file), FlowOutcome::Done);
    EXPECT_EQ(rig.bench.settings().tabJmenoStanice, "Cerpadlo");
    EXPECT_FALSE(rig.bench.modified());

    // A comparison reads apart: the settings and what was kept stay.
    rig.bench.edit({});
    const auto other = rig.bench.settingsInFile(file);
    ASSERT_TRUE(other);
    EXPECT_EQ(other->tabJmenoStanice, "Cerpadlo");
    EXPECT_EQ(rig.bench.settings(), StationSettings {});
    EXPECT_TRUE(rig.bench.modified());
    std::filesystem::remove(file);
}

} // namespace
} // namespace rm8::test
