#pragma once
// "Vstup": every setting of one digital input, including the two "odeslat
// ihned" flags that the main window does not show.

#include <cstddef>

#include "settings/station_settings.h"
#include "ui/row_dialog.h"

namespace rm8::ui {

class InputDialog : public RowDialog {
    Q_OBJECT

public:
    explicit InputDialog(QWidget* parent = nullptr);

    // Shows input row 0..7 modally; only when confirmed is the row stored
    // back into the settings, and then true is returned.
    bool edit(StationSettings& settings, std::size_t row);

    // A send-at-once box can be ticked only for a reported transition while
    // the modem may sleep (power saving on); a disabled box keeps its value.
    void checkEnabled();

protected:
    void storeInto(StationSettings& record) const override;
};

} // namespace rm8::ui
