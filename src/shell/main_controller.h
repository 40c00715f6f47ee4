#pragma once
// The wiring between the main window and the workbench: the window's
// commands go to the workbench's operations, what they leave goes back into
// the window. The window only draws and the workbench decides; what stays
// here is Qt's: the file dialogs, the printer, the row dialogs, the about
// box, the port dialog and the window's closing.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filesystem>

#include <QObject>
#include <QString>

#include "fields/table_rows.h"
#include "flow/interaction.h"
#include "link/port_map.h"
#include "link/serial_line.h"
#include "shell/comparison_window.h"
#include "shell/port_settings.h"
#include "shell/recent_files.h"
#include "ui/window_command.h"
#include "workbench/workbench.h"

class QSettings;
class QUndoStack;
class QWidget;

namespace rm8::ui {
class MainWindow;
}

namespace rm8::shell {

enum class FileDialogKind { Open, Save };

class MainController : public QObject {
    Q_OBJECT
public:
    // Makes the line for a device path; the default is makeSystemLine.
    using LineFactory = std::function<std::unique_ptr<link::SerialLine>(const std::string& device)>;
    // The path the technician chose, or nothing when the dialog was
    // cancelled. The default is a file dialog with the filter "EEPROM (*.eep)".
    using FileChooser = std::function<std::optional<QString>(FileDialogKind)>;

    struct Options {
        link::PortMap ports = link::PortMap::platformDefault();
        LineFactory lineFactory;
        FileChooser fileChooser;
        // The serial ports offered in the port dialog; the system's by default.
        std::function<std::vector<SystemPort>()> systemPorts;
        // Called with the new assignments after the port dialog was confirmed.
        std::function<void(const link::PortMap&)> remember;
        // Where backups of a station's previous content go; the user's
        // application data folder by default.
        QString backupFolder;
        // Where the recent files are kept between runs; nothing keeps them
        // for this run only.
        QSettings* store = nullptr;
    };

    MainController(ui::MainWindow& window, Interaction& ui, Options options);
    ~MainController() override;
    MainController(const MainController&) = delete;
    MainController& operator=(const MainController&) = delete;

    const link::PortMap& ports() const { return ports_; }
    bool sessionOpen() const { return bench_.sessionOpen(); }
    QUndoStack* history() const { return history_; }

    // A file given on the command line, dropped on the window or chosen
    // from the recent files: a settings file (*.eep) or settings JSON,
    // after the question about settings never kept.
    void openFile(const QString& path);

signals:
    // The program is to end: btKonec decided so, or the window was closed.
    void exitRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Runs one command unless another is still under way: while a flow waits
    // for the station the event loop runs, and a second command must not
    // start inside it.
    template <class F> void runCommand(F&& command);
    void run(ui::WindowCommand command);

    void activateOrDeactivate();
    void readFromStation();
    void writeToStation();
    void loadFromFile();
    void saveToFile();
    void print();
    void showAbout();
    void compareWithFile();
    void compareWithStation();
    void editRow(RowTable table, int row);
    void exitCommand();
    void editPortSettings();
    void undo();
    void redo();
    void printPreview();
    void openGivenFile(const QString& path);
    void loadJsonFile(const QString& path);
    bool offeredRemoval(const QString& path);
    void remember(const QString& path);

    // The settings now in the fields become a step named so, when they
    // differ from the last one.
    void recordStep(const std::string& name);
    // Undo and redo: a whole configuration into the window.
    void putSettings(const StationSettings& settings);
    // The settings as they are now are what was last kept.
    void markKept();
    void showHistory();
    void showModifiedMark();

    void showConnection();
    // The fields into the workbench, and the caption's asterisk and the
    // check panel from it.
    void takeEdits();
    void showWhetherModified();
    void refreshCheck();
    std::optional<std::filesystem::path> chooseSaveFile();
    void endProgram();

    ui::MainWindow& window_;
    Interaction& ui_;
    link::PortMap ports_;
    LineFactory makeLine_;
    FileChooser chooseFile_;
    std::function<std::vector<SystemPort>()> systemPorts_;
    std::function<void(const link::PortMap&)> remember_;
    QString backupFolder_;
    Workbench bench_;
    ComparisonWindow comparison_;
    QUndoStack* history_;
    StationSettings top_; // the settings after the history's last step
    RecentFiles recent_;

    bool busy_ = false;
    bool ending_ = false;
    bool closePending_ = false;
};

// The line the program uses on a real port: QSerialPort where Qt has it,
// else the core's line of the system (Windows builds without Qt Serial Port).
std::unique_ptr<link::SerialLine> makeSystemLine(const std::string& device);

// The open or save dialog for settings files.
std::optional<QString> chooseSettingsFile(QWidget* owner, FileDialogKind kind);

} // namespace rm8::shell
