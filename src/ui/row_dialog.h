#pragma once
// What the four row dialogs share: they edit a copy of one table row, judge
// every field on leaving with the same rules as the main window, and hand
// the row back only when confirmed with OK.
//
// The cancel flag is set when a dialog opens and cleared only by OK, so
// "&Storno", Escape, closing by the frame and being hidden by anyone else
// all leave the record untouched.

#include <QDialog>
#include <QString>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "editing/field_leave.h"
#include "settings/station_settings.h"

class QCheckBox;
class QHBoxLayout;
class QLineEdit;

namespace rm8::ui {

class LeaveWatch;

// A text control of a dialog and the member of the row it shows.
template <class Row> struct TextBinding {
    const char* name;
    std::string Row::*member;
};

template <class Row> struct CheckBinding {
    const char* name;
    bool Row::*member;
};

class RowDialog : public QDialog {
    Q_OBJECT

public:
    LeaveWatch* leaveWatch() const { return watch_; }

protected:
    RowDialog(QWidget* parent, const char* objectName);

    // A text field named after its dialog control, with the length limit of
    // its main-window counterpart; judged on leaving.
    QLineEdit* textField(const char* name, const char* toolTip = nullptr);
    QCheckBox* checkBox(const char* name, const char* caption, const char* toolTip = nullptr);
    // btOk and btStorno, right-aligned.
    QHBoxLayout* buttonRow();

    // Keeps a copy of the record, for the judges and for the options that
    // depend on other settings, and sets the caption and the cancel flag.
    // The dialog then shows its row and runs modally; true when confirmed.
    void begin(const StationSettings& settings, std::size_t row, const QString& caption);
    bool runModal();

    // The dialog's values written into a record's row.
    virtual void storeInto(StationSettings& record) const = 0;
    // Runs on OK after the focused field was judged; false keeps the dialog
    // open.
    virtual bool confirmable() { return true; }

    const StationSettings& record() const { return record_; }
    std::size_t row() const { return row_; }

    template <class Row> using Texts = std::span<const TextBinding<std::type_identity_t<Row>>>;
    template <class Row> using Checks = std::span<const CheckBinding<std::type_identity_t<Row>>>;

    template <class Row> void showRow(const Row& value, Texts<Row> texts, Checks<Row> checks);
    template <class Row> void readRow(Row& value, Texts<Row> texts, Checks<Row> checks) const;

    // The changes that leave checks made outside the dialog's controls.
    void applyPending(StationSettings& settings) const;

    void reject() override;
    void closeEvent(QCloseEvent* event) override;

private:
    std::optional<Notice> judge(QLineEdit* edit);
    // A side effect of a leave check on this dialog's row lands in its
    // control; one elsewhere waits for the confirmation.
    void applyHere(const FieldChange& change);
    void setText(const char* name, const std::string& text);
    void setChecked(const char* name, bool checked);
    QString text(const char* name) const;
    bool checked(const char* name) const;

    void confirm();

    LeaveWatch* watch_;
    StationSettings record_;
    std::size_t row_ = 0;
    bool cancelled_ = true;
    std::vector<FieldChange> pending_;
};

template <class Row> void RowDialog::showRow(const Row& value, Texts<Row> texts, Checks<Row> checks)
{
    for (const auto& [name, member] : texts)
        setText(name, value.*member);
    for (const auto& [name, member] : checks)
        setChecked(name, value.*member);
}

template <class Row> void RowDialog::readRow(Row& value, Texts<Row> texts, Checks<Row> checks) const
{
    for (const auto& [name, member] : texts)
        value.*member = text(name).toStdString();
    for (const auto& [name, member] : checks)
        value.*member = checked(name);
}

} // namespace rm8::ui
