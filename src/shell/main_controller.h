#pragma once
// The commands of the main window: the programming session, reading and
// writing the station, the settings file, the report, the about box, the
// port assignments and the way out. The window only draws; this object owns
// the serial line, the EEPROM image and the record the flows work on, and
// reaches the technician only through an Interaction.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QDialog>
#include <QObject>
#include <QPointer>
#include <QString>

#include "flow/file_flows.h"
#include "editing/row_labels.h"
#include "flow/interaction.h"
#include "link/line_io.h"
#include "link/port_map.h"
#include "link/serial_line.h"
#include "settings/eeprom_image.h"
#include "settings/station_settings.h"
#include "shell/port_settings.h"

namespace rm8::ui {
class MainWindow;
}

namespace rm8::shell {

enum class FileDialogKind { Open, Save };

class MainController : public QObject {
    Q_OBJECT
public:
    // Makes the line for a device path; the default is a QSerialPort line.
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
    };

    MainController(ui::MainWindow& window, Interaction& ui, Options options);
    ~MainController() override;
    MainController(const MainController&) = delete;
    MainController& operator=(const MainController&) = delete;

    const link::PortMap& ports() const { return ports_; }
    const EepromImage& image() const { return image_; }
    bool sessionOpen() const { return line_ != nullptr; }
    bool busy() const { return busy_; }

    // The commands, as their buttons start them.
    void activateOrDeactivate();
    void readFromStation();
    void writeToStation();
    void loadFromFile();
    void saveToFile();
    void print();
    void showAbout();
    // What the window's settings would change against a file or a station:
    // the other side is read apart and never reaches the fields.
    void compareWithFile();
    void compareWithStation();
    // The dialog of a table's row, as a double-click or the row's button
    // asks for it.
    void editRow(RowTable table, int row);
    void exitCommand();
    void editPortSettings();

signals:
    // The program is to end: btKonec decided so, or the window was closed.
    void exitRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class FlowInteraction;

    QString deaCaption() const;
    void activate();
    // True when the link is inactive afterwards.
    bool deactivate();
    void closeSession();
    void endProgram();
    // Around a flow that may decode settings: the fields are filled before
    // its success message, and from its result.
    void fillWhenDecoded();
    void finishDecoding(FlowOutcome outcome);

    // Runs one command unless another is still under way: while a flow waits
    // for the station the event loop runs, and a second command must not
    // start inside it.
    template <class F>
    void runCommand(F&& command);

    // The settings now count as kept: loaded, saved, read or written.
    void markKept();
    void showWhetherModified();
    // Asked before the program ends with settings that were never kept;
    // false when the technician chose to stay.
    bool offerToSaveFirst();
    // The check panel for the settings now in the fields.
    void refreshCheck();
    void showComparison(const StationSettings& other, const QString& otherHeading);
    // Before a write: settings that break the station's rules go only on
    // an explicit Ano. The output cross-check and the size check are the
    // write flow's own and come first.
    bool writeDespiteViolations(const StationSettings& settings);
    // With "Před zápisem zálohovat obsah stanice" ticked: the station read
    // into a new file of the backup folder; false when that failed.
    bool backUpBeforeWrite();

    ui::MainWindow& window_;
    Interaction& ui_;
    std::unique_ptr<FlowInteraction> flowUi_;
    link::PortMap ports_;
    LineFactory makeLine_;
    FileChooser chooseFile_;
    std::function<std::vector<SystemPort>()> systemPorts_;
    std::function<void(const link::PortMap&)> remember_;
    QString backupFolder_;

    std::unique_ptr<link::SerialLine> line_;
    std::unique_ptr<link::LineIo> io_;
    EepromImage image_;
    StationSettings settings_;
    StationSettings kept_; // what the last load, save, read or write left

    QPointer<QDialog> comparison_;
    bool busy_ = false;
    bool ending_ = false;
    bool closePending_ = false;
};

// The line the program uses on a real port.
std::unique_ptr<link::SerialLine> makeQtSerialLine(const std::string& device);

// The open or save dialog for settings files.
std::optional<QString> chooseSettingsFile(QWidget* owner, FileDialogKind kind);

} // namespace rm8::shell
