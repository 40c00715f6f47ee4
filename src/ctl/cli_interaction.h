#pragma once
// The command line's side of the flows: no windows and no waiting for input.
// Messages are collected so that the command decides what reaches the
// terminal; a question takes the answer given by option, or else No.

#include <string>
#include <vector>

#include "flow/interaction.h"

namespace rm8::ctl {

struct ShownMessage {
    MessageIcon icon;
    std::string text;
    std::string detail;

    // "text (detail)" on one line.
    std::string line() const;
};

class CliInteraction : public Interaction {
public:
    explicit CliInteraction(bool answerYes) : answerYes_(answerYes) {}

    void showProgress(std::string_view, bool) override {}
    void hideProgress() override {}
    bool cancelRequested() override { return false; }
    void message(MessageIcon icon, std::string_view text, std::string_view detail) override;
    Answer ask(MessageIcon icon, std::string_view question, Buttons buttons) override;

    const std::vector<ShownMessage>& messages() const { return messages_; }

private:
    bool answerYes_;
    std::vector<ShownMessage> messages_;
};

} // namespace rm8::ctl
