#pragma once
// A step of the editing history on Qt's undo stack. The change it stands
// for has already happened when it is pushed (the technician made it in the
// fields, or a load put it there): its first redo does nothing, later ones
// put the settings after it back, an undo the settings before it.

#include <functional>

#include <QUndoCommand>

#include "workbench/settings_step.h"

namespace rm8::shell {

class SettingsCommand : public QUndoCommand {
public:
    // Puts a whole configuration into the window and the workbench.
    using Apply = std::function<void(const StationSettings&)>;

    SettingsCommand(SettingsStep step, Apply apply);

    void undo() override;
    void redo() override;

private:
    SettingsStep step_;
    Apply apply_;
    bool inPlace_ = true;
};

} // namespace rm8::shell
