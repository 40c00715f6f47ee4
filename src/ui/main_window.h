#pragma once
// The main window "Hlavni": every station setting as an editable field on
// seven tab pages, the link panel, the memory display and the command
// buttons. The window holds the settings while the technician edits them;
// the commands behind the buttons belong to the shell, which finds the
// buttons by name.

#include <QHash>
#include <QMainWindow>
#include <QString>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>

#include "editing/row_labels.h"
#include "link/session.h"
#include "settings/station_settings.h"

class QCheckBox;
class QLineEdit;

namespace rm8::ui {

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    // Copies every field into the record. The per-row lists that only the
    // row dialogs edit, and the measuring ranges, come from the window's own
    // copy of the last filled record.
    void readSettings(StationSettings& settings) const;

    // Fills every field from the record with the loading flag set, so that
    // the change handlers stay silent; then brings the enabled states and
    // the memory display in line with the new contents.
    void fillSettings(const StationSettings& settings);

    // True while fillSettings is writing into the fields.
    bool loading() const { return loading_; }

    // "Neaktivni", "Aktivni" or "Aktivni-spatna verze"; any other word
    // (also one with diacritics) changes nothing.
    void showConnectionState(std::string_view stateWord);

    // Puts what the identification found into the information panel.
    void showIdentity(const link::StationIdentity& identity);

    // lblInfoPamUsage and lblInfoPamFree for the settings now in the fields.
    void updateMemoryDisplay();

    // The settings area of the identified station, from lblInfoPamSize;
    // nullopt while it shows "?".
    std::optional<std::size_t> eepromSize() const;

    // The power-saving controls are enabled exactly when opEnablePS1 is
    // selected. Values are left as they are.
    void checkEnabled();

    // The field called name, or name_row for a member of a group of eight.
    QWidget* field(const QString& name, int row = -1) const;

    template <class W> W* field(const QString& name, int row = -1) const { return qobject_cast<W*>(field(name, row)); }

signals:
    // The wrong-version state is shown once the identification has ended;
    // the progress window the activation left open must go now.
    void hideProgressRequested();

    // After a known state word was applied.
    void connectionStateShown(const QString& stateWord);

private:
    void buildWindow();
    QWidget* buildGeneralPage();
    QWidget* buildSmsPage();
    QWidget* buildInputsPage();
    QWidget* buildOutputsPage();
    QWidget* buildAnalogPage(int firstRow);
    QWidget* buildPhonesPage();
    struct TableColumn;
    // A table of rows firstRow..firstRow+rowCount-1 under column headers: the
    // row label (named labelName_row, or unnamed when labelName is null), the
    // columns, and the row button when buttonName is given.
    QWidget* buildTable(RowTable table, const char* labelName, std::span<const TableColumn> columns, int firstRow,
        int rowCount, const char* buttonName = nullptr, const QString& buttonCaption = {});
    QWidget* buildLinkPanel();
    QWidget* buildTransferPanel();
    QWidget* buildInformationPanel();
    QWidget* buildProgramPanel();

    // Sets the object name and makes the widget findable by field().
    template <class W> W* named(W* widget, const QString& name)
    {
        widget->setObjectName(name);
        named_.insert(name, widget);
        return widget;
    }

    // Widgets of catalogue fields, named, limited and with their initial
    // text; row -1 for a single field.
    QLineEdit* textField(const char* name, int row = -1);
    QCheckBox* checkField(const char* name, int row = -1, const QString& caption = {});

    void fillTables();
    void applyReportOption(const char* option, std::initializer_list<const char*> dependents);
    void applySwitchReport();
    void applyPowerReport();
    void applyNotAuthorized();
    void onFieldTextChanged();

    StationSettings kept_; // the dialog-only lists and the measuring ranges
    QHash<QString, QWidget*> named_;
    bool loading_ = false;
};

} // namespace rm8::ui
