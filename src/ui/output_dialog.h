#pragma once
// "Vystup": every setting of one output, including its function (a standard
// output, or a display of the modem's or the power-saving state), which the
// main window does not show.

#include <cstddef>

#include "settings/station_settings.h"
#include "ui/row_dialog.h"

namespace rm8::ui {

class OutputDialog : public RowDialog {
    Q_OBJECT

public:
    explicit OutputDialog(QWidget* parent = nullptr);

    // Shows output row 0..7 modally; only when confirmed is the row stored
    // back into the settings, and then true is returned.
    bool edit(StationSettings& settings, std::size_t row);

protected:
    void storeInto(StationSettings& record) const override;
};

} // namespace rm8::ui
