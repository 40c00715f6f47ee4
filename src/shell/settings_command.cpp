#include "shell/settings_command.h"

#include <utility>

namespace rm8::shell {

SettingsCommand::SettingsCommand(SettingsStep step, Apply apply)
    : QUndoCommand(QString::fromStdString(step.name))
    , step_(std::move(step))
    , apply_(std::move(apply))
{
}

void SettingsCommand::undo()
{
    apply_(step_.before);
}

void SettingsCommand::redo()
{
    if (!inPlace_)
        apply_(step_.after);
    inPlace_ = false;
}

} // namespace rm8::shell
