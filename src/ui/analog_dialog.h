#pragma once
// "Analog": every setting of one analog input, with a drawing of its levels
// in the input's measuring range. OK checks the levels as a whole and keeps
// the dialog open when they do not fit together.

#include <cstddef>

#include "settings/station_settings.h"
#include "ui/row_dialog.h"

namespace rm8::ui {

class LevelGraph;

class AnalogDialog : public RowDialog {
    Q_OBJECT

public:
    explicit AnalogDialog(QWidget* parent = nullptr);

    // Shows analog row 0..7 modally; only when confirmed is the row stored
    // back into the settings (for the battery row the battery report text
    // too, which is the same text), and then true is returned.
    bool edit(StationSettings& settings, std::size_t row);

    // A send-at-once box can be ticked only for a reported crossing while
    // the modem may sleep (power saving on); a disabled box keeps its value.
    void checkEnabled();

protected:
    void storeInto(StationSettings& record) const override;
    bool confirmable() override;

private:
    void invertLevels();
    void redraw();

    LevelGraph* graph_;
};

} // namespace rm8::ui
