#pragma once
// "TelCislo": one phone number and its two permissions. The number is
// judged on leaving like the main window's, with the UTO prefix of the
// settings; the rule that clears a permission without a number is the
// caller's, run after the dialog for the row.

#include <cstddef>

#include "settings/station_settings.h"
#include "ui/row_dialog.h"

namespace rm8::ui {

class PhoneDialog : public RowDialog {
    Q_OBJECT

public:
    explicit PhoneDialog(QWidget* parent = nullptr);

    // Shows phone row 0..7 modally; only when confirmed is the row stored
    // back into the settings, and then true is returned.
    bool edit(StationSettings& settings, std::size_t row);

protected:
    void storeInto(StationSettings& record) const override;
};

} // namespace rm8::ui
