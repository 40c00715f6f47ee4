#pragma once
// Everything a long flow needs from the person in front of the tool: a
// progress text, whether Storno was pressed, message boxes and yes/no
// questions. The GUI shows windows, rm8ctl prints and answers from its
// options, and the tests record and answer from a script.

#include <cstddef>
#include <string_view>

namespace rm8 {

enum class MessageIcon { Stop, Exclamation, Question, Information };
// YesNoDefaultNo: Ano and Ne with Ne the default, for a question whose Ano
// goes ahead with something the technician was warned about.
enum class Buttons { Ok, YesNo, YesNoCancel, YesNoDefaultNo };
enum class Answer { Ok, Yes, No, Cancel };

class Interaction {
public:
    virtual ~Interaction() = default;

    virtual void showProgress(std::string_view text, bool showCancel) = 0;
    virtual void hideProgress() = 0;
    // True once Storno was pressed since the progress was last shown. Also
    // the user interface's turn to handle its events.
    virtual bool cancelRequested() = 0;
    // The progress just shown is the search for the station, which has no
    // limit of its own; it lasts until the next progress or until the
    // progress is hidden. For a tool that gives the search a time limit.
    virtual void stationSearchStarted() {}
    // How far a transfer has come, in blocks; a hint for a progress bar that
    // the progress window itself does not show.
    virtual void progressBlocks(std::size_t done, std::size_t total)
    {
        (void)done;
        (void)total;
    }
    // A message box. The detail, when given, says more than the fixed text:
    // which file, which field, what the system reported.
    virtual void message(MessageIcon icon, std::string_view text, std::string_view detail = {}) = 0;
    virtual Answer ask(MessageIcon icon, std::string_view question, Buttons buttons) = 0;
};

} // namespace rm8
