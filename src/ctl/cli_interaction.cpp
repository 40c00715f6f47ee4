#include "ctl/cli_interaction.h"

namespace rm8::ctl {

std::string ShownMessage::line() const
{
    return detail.empty() ? text : text + " (" + detail + ")";
}

void CliInteraction::message(MessageIcon icon, std::string_view text, std::string_view detail)
{
    messages_.push_back({icon, std::string(text), std::string(detail)});
}

Answer CliInteraction::ask(MessageIcon icon, std::string_view question, Buttons)
{
    const Answer answer = answerYes_ ? Answer::Yes : Answer::No;
    messages_.push_back({icon, std::string(question), answer == Answer::Yes ? "Ano" : "Ne"});
    return answer;
}

} // namespace rm8::ctl
