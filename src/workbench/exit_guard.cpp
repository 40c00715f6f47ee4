#include "workbench/exit_guard.h"

namespace rm8 {

bool savedOrLeftAlone(Workbench& bench, Interaction& ui, std::string_view question, const SaveFileChooser& chooseFile)
{
    if (!bench.modified())
        return true;
    switch (ui.ask(MessageIcon::Question, question, Buttons::YesNoCancel)) {
    case Answer::Yes: {
        const auto path = chooseFile();
        return path && bench.save(*path) == FlowOutcome::Done;
    }
    case Answer::No:
        return true;
    default:
        return false;
    }
}

bool clearToExit(Workbench& bench, Interaction& ui, ExitBy by, const SaveFileChooser& chooseFile)
{
    if (!savedOrLeftAlone(bench, ui, kUnsavedSettings, chooseFile))
        return false;
    if (!bench.sessionOpen())
        return true;
    const Buttons buttons = by == ExitBy::Command ? Buttons::YesNoCancel : Buttons::YesNo;
    switch (ui.ask(MessageIcon::Question, kStillProgramming, buttons)) {
    case Answer::Yes:
        // The program ends whatever the deactivation says.
        (void)bench.deactivate();
        return true;
    case Answer::No:
        return true;
    default:
        return by == ExitBy::ClosingWindow;
    }
}

} // namespace rm8
