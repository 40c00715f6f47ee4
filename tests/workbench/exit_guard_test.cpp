// The questions before the program ends, for both ways out, as the window's
// exit cases list them.

#include <gtest/gtest.h>

#include "bench_rig.h"
#include "support/test_data.h"
#include "workbench/exit_guard.h"

namespace rm8::test {
namespace {

TEST(ExitGuard, QuestionsOfTheExitCases)
{
    for (const auto& c : readJson(dataDir() / "ui/exit_questions.json")) {
        SCOPED_TRACE(c["case"].get<std::string>());
        BenchRig rig;
        if (c["session"] == true)
            rig.bench.activate("COM 1");
        const std::map<std::string, Answer> answers { { "Yes", Answer::Yes }, { "No", Answer::No },
            { "Cancel", Answer::Cancel } };
        if (!c["answer"].is_null())
            rig.ui.answers.push_back(answers.at(c["answer"]));
        const ExitBy by = c["by"] == "btKonec" ? ExitBy::Command : ExitBy::ClosingWindow;

        EXPECT_EQ(clearToExit(rig.bench, rig.ui, by, [] { return std::nullopt; }), c["ends"] == true);

        ASSERT_EQ(rig.ui.questions.size(), c["buttons"].is_null() ? 0u : 1u);
        for (const auto& question : rig.ui.questions) {
            EXPECT_EQ(question.text, kStillProgramming);
            EXPECT_EQ(question.icon, MessageIcon::Question);
            EXPECT_EQ(question.buttons, c["buttons"] == "YesNo" ? Buttons::YesNo : Buttons::YesNoCancel);
        }
        EXPECT_EQ(rig.requests(6), c["leaves"] == true ? 1u : 0u);
        EXPECT_EQ(rig.bench.sessionOpen(), c["session"] == true && c["leaves"] == false);
    }
}

struct UnsavedCase {
    const char* name;
    ExitBy by;
    Answer answer;
    bool fileChosen;
    bool ends;
    bool saved;
};

const UnsavedCase kUnsaved[] = {
    { "Ano saves and ends", ExitBy::Command, Answer::Yes, true, true, true },
    { "Ano with the dialog cancelled stays", ExitBy::ClosingWindow, Answer::Yes, false, false, false },
    { "Ne ends unsaved", ExitBy::ClosingWindow, Answer::No, true, true, false },
    { "Storno stays, also when closing", ExitBy::ClosingWindow, Answer::Cancel, true, false, false },
};

TEST(ExitGuard, ModifiedSettingsAreOfferedForSavingFirst)
{
    for (const auto& c : kUnsaved) {
        SCOPED_TRACE(c.name);
        const auto file = std::filesystem::temp_directory_path() / "rm8-exit-guard.eep";
        std::filesystem::remove(file);
        BenchRig rig;
        StationSettings edited;
        edited.tabPIN = "1234";
        rig.bench.edit(edited);
        rig.ui.answers = { c.answer };
        const bool ends = clearToExit(rig.bench, rig.ui, c.by, [&]() -> std::optional<std::filesystem::path> {
            return c.fileChosen ? std::optional(file) : std::nullopt;
        });
        EXPECT_EQ(ends, c.ends);
        ASSERT_EQ(rig.ui.questions.size(), 1u);
        EXPECT_EQ(rig.ui.questions[0].text, kUnsavedSettings);
        EXPECT_EQ(rig.ui.questions[0].buttons, Buttons::YesNoCancel);
        EXPECT_EQ(std::filesystem::exists(file), c.saved);
        EXPECT_EQ(rig.bench.modified(), !c.saved);
        std::filesystem::remove(file);
    }
}

} // namespace
} // namespace rm8::test
