#pragma once
// The window side of the flows: the progress window Info, message boxes and
// questions titled with the application's title, and the event loop's turn
// while the flows wait for the station.

#include <QPointer>

#include "flow/interaction.h"
#include "shell/progress_window.h"

class QWidget;

namespace rm8::shell {

class QtInteraction : public Interaction {
public:
    // The owner is the main window: it owns the progress window and the
    // message boxes, and comes back to the front when the progress hides.
    explicit QtInteraction(QWidget* owner = nullptr);
    ~QtInteraction() override;
    QtInteraction(const QtInteraction&) = delete;
    QtInteraction& operator=(const QtInteraction&) = delete;

    void showProgress(std::string_view text, bool showCancel) override;
    void hideProgress() override;
    bool cancelRequested() override;
    void message(MessageIcon icon, std::string_view text, std::string_view detail = {}) override;
    Answer ask(MessageIcon icon, std::string_view question, Buttons buttons) override;

    ProgressWindow& progressWindow() { return *progress_; }

private:
    QPointer<QWidget> owner_;
    QPointer<ProgressWindow> progress_;
};

} // namespace rm8::shell
