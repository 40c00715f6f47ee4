#pragma once
// The technician as a script: records every progress text, message and
// question the commands show, answers questions from a queue, and presses
// Storno when told to. It never shows a window, so a test runs without
// anyone clicking message boxes away.

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "flow/interaction.h"

namespace rm8::test {

class RecordingInteraction : public Interaction {
public:
    struct Shown {
        MessageIcon icon;
        std::string text;
        std::string detail;
        std::optional<Buttons> buttons; // set for questions
    };

    void showProgress(std::string_view text, bool showCancel) override
    {
        events.push_back("progress:" + std::string(text));
        progress.emplace_back(text);
        progressVisible = true;
        stornoOffered = showCancel;
        cancel = false;
    }
    void hideProgress() override
    {
        events.push_back("hide");
        progressVisible = false;
    }
    bool cancelRequested() override
    {
        ++turns;
        if (stornoAfterTurns && progressVisible && stornoOffered && turns >= *stornoAfterTurns) {
            stornoAfterTurns.reset();
            cancel = true;
            progressVisible = false; // Storno hides the window
        }
        if (onTurn)
            onTurn(turns);
        return cancel;
    }
    void progressBlocks(std::size_t done, std::size_t total) override
    {
        blocks.emplace_back(done, total);
    }
    void message(MessageIcon icon, std::string_view text, std::string_view detail) override
    {
        events.push_back("message:" + std::string(text));
        messages.push_back({icon, std::string(text), std::string(detail), std::nullopt});
        if (onMessage)
            onMessage(messages.back());
    }
    Answer ask(MessageIcon icon, std::string_view question, Buttons buttons) override
    {
        events.push_back("ask:" + std::string(question));
        questions.push_back({icon, std::string(question), {}, buttons});
        if (answers.empty()) {
            unscripted = true;
            return buttons == Buttons::YesNoCancel ? Answer::Cancel : Answer::No;
        }
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }

    std::vector<std::string> messageTexts() const
    {
        std::vector<std::string> texts;
        for (const auto& shown : messages)
            texts.push_back(shown.text);
        return texts;
    }

    std::vector<std::string> events;
    std::vector<std::string> progress;
    std::vector<std::pair<std::size_t, std::size_t>> blocks; // done, total
    std::vector<Shown> messages;
    std::vector<Shown> questions;
    std::deque<Answer> answers;
    bool unscripted = false; // a question came that the script had no answer for
    bool cancel = false;
    bool progressVisible = false;
    bool stornoOffered = false;
    std::size_t turns = 0;
    // Storno is pressed on this turn (counted from the start) while the
    // progress window offers it.
    std::optional<std::size_t> stornoAfterTurns;
    std::function<void(std::size_t)> onTurn;
    std::function<void(const Shown&)> onMessage;
};

} // namespace rm8::test
