#pragma once
// The main window "Hlavni": every station setting as an editable field on
// seven tab pages, the link panel, the memory display and the command
// buttons. The window holds the settings while the technician edits them;
// the commands behind the buttons belong to the shell, which hears of them
// as typed commands and answers with typed values.

#include <QHash>
#include <QMainWindow>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "editing/check_listing.h"
#include "editing/field_leave.h"
#include "fields/table_rows.h"
#include "link/session.h"
#include "settings/station_settings.h"
#include "ui/window_command.h"

class QAction;
class QCheckBox;
class QLineEdit;
class QMenu;

namespace rm8::ui {

class CheckPanel;
class LeaveWatch;

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

    // The record as the fields hold it now.
    StationSettings currentSettings() const;

    // While a transfer runs, leaving a field judges nothing.
    void setEditingSuspended(bool suspended);
    // Judges the field just left (or the one with the focus) at once; false
    // when it was refused. Commands call this before they act.
    bool settleEdits();

    // Puts consequences of an edit into the fields, each with its message.
    void applyFieldChanges(const std::vector<FieldChange>& changes);

    // Shows the field's page and puts the focus into the field, its text
    // selected; a value that only a row dialog shows is revealed by the
    // row's button. row -1 for a single field. False when there is no such
    // field on any page.
    bool revealField(const QString& name, int row = -1);

    // The violations and adjustments of the settings now in the fields.
    void showCheck(const std::vector<CheckEntry>& entries);
    CheckPanel* checkPanel() const { return checkPanel_; }

    // The link panel and the EEPROM commands as the state's row of the
    // connection look has them.
    void setConnectionState(link::ConnectionState state);

    // Puts what the identification found into the information panel.
    void showIdentity(const link::StationIdentity& identity);
    // The settings area of the identified station, for the free room;
    // nothing while no size is known ("?").
    void setEepromSize(std::optional<std::size_t> size);
    std::optional<std::size_t> eepromSize() const { return eepromSize_; }

    // lblInfoPamUsage and lblInfoPamFree for the settings now in the fields.
    void updateMemoryDisplay();

    // What the technician chose beside the commands.
    std::string portName() const;
    bool checkWrite() const;
    bool backupWanted() const;

    // The first page, where a decoded configuration is shown from.
    void showFirstPage();
    // The page of a field (of its row for a table's field), without the focus.
    void showPageOf(const std::string& name, std::optional<std::size_t> row);
    // The input focus into a field, its text left as it is.
    void focusField(const std::string& name, std::optional<std::size_t> row);

    // The power-saving controls are enabled exactly when opEnablePS1 is
    // selected. Values are left as they are.
    void checkEnabled();

    // The steps Zpět and Znovu would take back or do again, by name;
    // nothing where there is none.
    void showHistory(const std::optional<QString>& undoStep, const std::optional<QString>& redoStep);
    // The files offered under "Nedávné soubory", the latest first.
    void showRecentFiles(const QStringList& paths);

    // The field called name, or name_row for a member of a group of eight.
    QWidget* field(const QString& name, int row = -1) const;

    template <class W> W* field(const QString& name, int row = -1) const { return qobject_cast<W*>(field(name, row)); }

signals:
    // A command button was clicked.
    void commandRequested(rm8::ui::WindowCommand command);

    // A double-click into a row's field, or the row's button: its dialog is
    // wanted. row 0..7.
    void rowDialogRequested(rm8::RowTable table, int row);

    // The technician changed a field (never while settings are filled in).
    void settingsEdited();
    // fillSettings has put a whole configuration into the fields.
    void settingsFilled();
    // An edit is complete: a field was left and accepted, a box or an
    // option clicked, an entry of a list chosen. Its consequences are in
    // the fields already.
    void editFinished(const std::string& field, rm8::FieldRow row);
    // A file chosen from the recent files or dropped on the window.
    void fileOpenRequested(const QString& path);

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
    void onFieldTextChanged(const char* name = nullptr, int row = -1, const QString& text = {});
    void watchField(QLineEdit* edit, const char* name, int row);
    std::optional<Notice> judgeField(const char* name, int row, QLineEdit* edit);
    void setFieldValue(const FieldChange& change);
    void connectRowCommands();
    void connectCommands();
    void connectEditSteps();
    void addHistoryCommands();
    void showHistoryStep(QAction* action, const char* button, const QString& verb, const std::optional<QString>& step);
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    StationSettings record_; // the dialog-only lists and the measuring ranges
    std::optional<std::size_t> eepromSize_;
    QHash<QString, QWidget*> named_;
    LeaveWatch* leaveWatch_ = nullptr;
    CheckPanel* checkPanel_ = nullptr;
    // Which table a double-click on a row's field opens.
    QHash<QObject*, std::pair<RowTable, int>> rowOf_;
    std::optional<Page> refusedPage_;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    QMenu* recentMenu_ = nullptr;
    bool loading_ = false;
    bool flowRunning_ = false;
    bool mirroring_ = false;
};

} // namespace rm8::ui
