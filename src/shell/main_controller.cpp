#include "shell/main_controller.h"

#include <ctime>
#include <filesystem>
#include <utility>
#include <stdexcept>

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QStandardPaths>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QTabWidget>
#include <QVBoxLayout>

#include "editing/check_listing.h"
#include "editing/configuration_check.h"
#include "editing/field_leave.h"
#include "editing/output_cross_check.h"
#include "fields/compare_table.h"
#include "fields/field_catalogue.h"
#include "flow/file_flows.h"
#include "flow/messages.h"
#include "link/session.h"
#include "link/station_backup.h"
#include "link/station_flows.h"
#include "report/report_content.h"
#include "serial/qt_serial_line.h"
#include "shell/about_dialog.h"
#include "shell/application_info.h"
#include "shell/port_settings_dialog.h"
#include "shell/report_printer.h"
#include "ui/analog_dialog.h"
#include "ui/check_panel.h"
#include "ui/compare_view.h"
#include "ui/input_dialog.h"
#include "ui/main_window.h"
#include "ui/output_dialog.h"
#include "ui/phone_dialog.h"

namespace rm8::shell {
namespace {

constexpr std::string_view kActivateCaption = "Aktivovat";
constexpr std::string_view kDeactivateCaption = "Deaktivovat";
constexpr std::string_view kStillProgramming =
    "Zařízení nebylo deaktivováno a je zřejmě stále v programovacím módu. Má se zařízení před ukončením "
    "programu deaktivovat?";
constexpr std::string_view kUnsavedSettings =
    "Nastavení bylo změněno a nebylo uloženo do souboru ani do EEPROM. Uložit je před ukončením programu do souboru?";

template <class W>
W* required(const QObject& root, const char* name)
{
    auto* widget = root.findChild<W*>(QString::fromLatin1(name));
    if (!widget)
        throw std::logic_error(std::string("the main window has no ") + name);
    return widget;
}

std::filesystem::path toPath(const QString& path)
{
#ifdef Q_OS_WIN
    return std::filesystem::path(path.toStdWString());
#else
    return std::filesystem::path(QFile::encodeName(path).toStdString());
#endif
}

} // namespace

// What the flows are given instead of the plain interaction. It keeps the
// order the technician sees when settings are decoded (from the station or a
// file): the tab strip turns to its first page before "Převádím data ...",
// and the fields show the new settings before the success message does.
class MainController::FlowInteraction : public Interaction {
public:
    FlowInteraction(Interaction& target, QTabWidget& tabs) : target_(target), tabs_(tabs) {}

    // Called once per decoding, before its success message; the flows have
    // put the decoded settings into their record by then.
    void onDecoded(std::function<void()> fill)
    {
        fill_ = std::move(fill);
        converting_ = false;
    }

    void showProgress(std::string_view text, bool showCancel) override
    {
        if (text == messages::kConvertingData) {
            tabs_.setCurrentIndex(0);
            converting_ = true;
        }
        target_.showProgress(text, showCancel);
    }
    void hideProgress() override { target_.hideProgress(); }
    bool cancelRequested() override { return target_.cancelRequested(); }
    void progressBlocks(std::size_t done, std::size_t total) override { target_.progressBlocks(done, total); }
    void message(MessageIcon icon, std::string_view text, std::string_view detail) override
    {
        if (converting_ && icon == MessageIcon::Information && fill_) {
            converting_ = false;
            std::exchange(fill_, nullptr)();
        }
        target_.message(icon, text, detail);
    }
    Answer ask(MessageIcon icon, std::string_view question, Buttons buttons) override
    {
        return target_.ask(icon, question, buttons);
    }

private:
    Interaction& target_;
    QTabWidget& tabs_;
    std::function<void()> fill_;
    bool converting_ = false;
};

std::unique_ptr<link::SerialLine> makeQtSerialLine(const std::string& device)
{
    return std::make_unique<serial::QtSerialLine>(QString::fromStdString(device));
}

std::optional<QString> chooseSettingsFile(QWidget* owner, FileDialogKind kind)
{
    // The folder of the last file chosen during this run.
    static QString lastFolder;
    const bool opening = kind == FileDialogKind::Open;
    QFileDialog dialog(owner,
                       opening ? QStringLiteral("Načíst nastavení ze souboru")
                               : QStringLiteral("Uložit nastavení do souboru"),
                       lastFolder, QStringLiteral("EEPROM (*.eep)"));
    dialog.setObjectName(QStringLiteral("CommonDialog"));
    dialog.setAcceptMode(opening ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(opening ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    // The save flow asks about replacing a file itself, with its own words.
    if (!opening) {
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
        // A name typed without an extension is a settings file all the same.
        dialog.setDefaultSuffix(QStringLiteral("eep"));
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    const QString path = dialog.selectedFiles().constFirst();
    lastFolder = QFileInfo(path).absolutePath();
    return path;
}

MainController::MainController(ui::MainWindow& window, Interaction& ui, Options options)
    : QObject(&window),
      window_(window),
      ui_(ui),
      flowUi_(std::make_unique<FlowInteraction>(ui, *required<QTabWidget>(window, "TabList"))),
      ports_(std::move(options.ports)),
      makeLine_(options.lineFactory ? std::move(options.lineFactory) : LineFactory(makeQtSerialLine)),
      chooseFile_(options.fileChooser ? std::move(options.fileChooser)
                                      : FileChooser([this](FileDialogKind kind) {
                                            return chooseSettingsFile(&window_, kind);
                                        })),
      systemPorts_(options.systemPorts ? std::move(options.systemPorts) : systemSerialPorts),
      remember_(std::move(options.remember)),
      backupFolder_(options.backupFolder.isEmpty()
                        ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/zalohy")
                        : std::move(options.backupFolder))
{
    const auto connectButton = [this](const char* name, void (MainController::*command)()) {
        connect(required<QAbstractButton>(window_, name), &QAbstractButton::clicked, this,
                [this, command] { runCommand([this, command] { (this->*command)(); }); });
    };
    connectButton("btDEA", &MainController::activateOrDeactivate);
    connectButton("btEEPROMLoad", &MainController::readFromStation);
    connectButton("btEEPROMSave", &MainController::writeToStation);
    connectButton("btFileLoad", &MainController::loadFromFile);
    connectButton("btFileSave", &MainController::saveToFile);
    connectButton("btTisk", &MainController::print);
    connectButton("btInformace", &MainController::showAbout);
    connectButton("btKonec", &MainController::exitCommand);
    connectButton("btPortSettings", &MainController::editPortSettings);
    connectButton("btPorovnatSoubor", &MainController::compareWithFile);
    connectButton("btPorovnatStanici", &MainController::compareWithStation);
    (void)required<QComboBox>(window_, "tabPort");
    (void)required<QAbstractButton>(window_, "CheckWrite");
    (void)required<QAbstractButton>(window_, "CheckBackup");

    connect(&window_, &ui::MainWindow::hideProgressRequested, this, [this] { ui_.hideProgress(); });
    connect(&window_, &ui::MainWindow::rowDialogRequested, this,
            [this](RowTable table, int row) { runCommand([this, table, row] { editRow(table, row); }); });
    connect(&window_, &ui::MainWindow::settingsEdited, this, &MainController::showWhetherModified);
    connect(&window_, &ui::MainWindow::settingsFilled, this, [this] {
        refreshCheck();
        // A configuration that came in with faults shows them at once.
        if (window_.checkPanel()->errorCount() > 0)
            window_.checkPanel()->setExpanded(true);
    });
    connect(&window_, &ui::MainWindow::connectionStateShown, this, &MainController::refreshCheck);
    kept_ = window_.currentSettings();
    refreshCheck();
    window_.installEventFilter(this);
}

MainController::~MainController() = default;

template <class F>
void MainController::runCommand(F&& command)
{
    if (busy_)
        return;
    // A field just left is judged before anything else happens: a refused
    // text stops the command.
    if (!window_.settleEdits())
        return;
    busy_ = true;
    window_.setEditingSuspended(true);
    try {
        command();
    } catch (const std::exception& error) {
        // A fault the flows did not foresee must not take the program and
        // the open session down with it.
        ui_.hideProgress();
        ui_.message(MessageIcon::Stop, "Nastala neočekávaná chyba.", error.what());
    }
    window_.setEditingSuspended(false);
    busy_ = false;
    if (closePending_ && !ending_) {
        closePending_ = false;
        window_.close();
    }
}

QString MainController::deaCaption() const
{
    return required<QAbstractButton>(window_, "btDEA")->text();
}

void MainController::activateOrDeactivate()
{
    const QString caption = deaCaption();
    if (caption == fromCore(kActivateCaption))
        activate();
    else if (caption == fromCore(kDeactivateCaption))
        (void)deactivate();
}

void MainController::activate()
{
    const QString portText = required<QComboBox>(window_, "tabPort")->currentText();
    closeSession();
    const auto device = ports_.device(portText.toStdString());
    if (device)
        line_ = makeLine_(*device);
    if (!line_) {
        ui_.message(MessageIcon::Stop, "Nelze otevřít port " + portText.toStdString());
        return;
    }
    io_ = std::make_unique<link::LineIo>(*line_, *flowUi_);
    const link::Activation activation = link::activateLink(*io_, portText.toStdString());
    if (activation.state == link::ConnectionState::Inactive) {
        window_.showConnectionState(link::stateWord(link::ConnectionState::Inactive));
        closeSession();
        return;
    }
    window_.showIdentity(activation.identity);
    window_.showConnectionState(link::stateWord(activation.state));
}

bool MainController::deactivate()
{
    if (io_ && !link::deactivateLink(*io_))
        return false;
    window_.showConnectionState(link::stateWord(link::ConnectionState::Inactive));
    closeSession();
    return true;
}

void MainController::closeSession()
{
    io_.reset();
    if (line_)
        line_->close();
    line_.reset();
}

void MainController::fillWhenDecoded()
{
    flowUi_->onDecoded([this] { window_.fillSettings(settings_); });
}

void MainController::finishDecoding(FlowOutcome outcome)
{
    flowUi_->onDecoded(nullptr);
    // Filled once more from the record as the flow left it: the early fill
    // is for the order on the screen, this one is what counts.
    if (outcome == FlowOutcome::Done) {
        window_.fillSettings(settings_);
        markKept();
    }
}

void MainController::markKept()
{
    kept_ = window_.currentSettings();
    window_.setWindowModified(false);
}

void MainController::showWhetherModified()
{
    window_.setWindowModified(window_.currentSettings() != kept_);
    refreshCheck();
}

void MainController::refreshCheck()
{
    window_.showCheck(listCheckReport(checkConfiguration(window_.currentSettings(), window_.eepromSize())));
}

bool MainController::writeDespiteViolations(const StationSettings& settings)
{
    const auto size = window_.eepromSize();
    if (!outputCrossCheck(settings).empty() || (size && sizeCheck(settings, *size)))
        return true; // the write flow refuses these with its own messages
    const std::size_t violations = checkConfiguration(settings, size).violations.size();
    return violations == 0
           || ui_.ask(MessageIcon::Question, writeQuestion(violations), Buttons::YesNoDefaultNo) == Answer::Yes;
}

bool MainController::backUpBeforeWrite()
{
    if (!required<QAbstractButton>(window_, "CheckBackup")->isChecked())
        return true;
    if (!QDir().mkpath(backupFolder_)) {
        ui_.message(MessageIcon::Stop, "Nelze vytvořit složku záloh " + backupFolder_.toStdString());
        return false;
    }
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const QString file
        = QDir(backupFolder_).filePath(QString::fromStdString(link::backupFileName(local, settings_.tabJmenoStanice)));
    if (link::backupStation(*io_, window_.eepromSize().value_or(0), toPath(file)) != FlowOutcome::Done)
        return false;
    ui_.message(MessageIcon::Information, "Dosavadní obsah stanice byl uložen do souboru " + file.toStdString());
    return true;
}

void MainController::compareWithFile()
{
    const auto path = chooseFile_(FileDialogKind::Open);
    if (!path)
        return;
    EepromImage image;
    StationSettings other;
    if (loadSettingsFile(toPath(*path), image, other, *flowUi_) == FlowOutcome::Done)
        showComparison(other, QStringLiteral("V souboru"));
}

void MainController::compareWithStation()
{
    if (!io_)
        return;
    EepromImage image;
    StationSettings other;
    if (link::readStation(*io_, image, other, window_.eepromSize().value_or(0)) == FlowOutcome::Done)
        showComparison(other, QStringLiteral("Ve stanici"));
}

void MainController::showComparison(const StationSettings& other, const QString& otherHeading)
{
    // One window, kept open beside the pages while the technician looks
    // through the differences; a new comparison replaces its table.
    if (!comparison_) {
        comparison_ = new QDialog(&window_);
        comparison_->setObjectName(QStringLiteral("Porovnani"));
        comparison_->setWindowTitle(QStringLiteral("Porovnání nastavení"));
        auto* layout = new QVBoxLayout(comparison_);
        auto* view = new ui::CompareView;
        layout->addWidget(view);
        connect(view, &ui::CompareView::entryActivated, this,
                [this](const QString& field, int row) { window_.revealField(field, row - 1); });
        comparison_->resize(760, 420);
    }
    comparison_->findChild<ui::CompareView*>()->setRows(compareTable(window_.currentSettings(), other), otherHeading);
    comparison_->show();
    comparison_->raise();
}

bool MainController::offerToSaveFirst()
{
    if (!window_.isWindowModified())
        return true;
    switch (ui_.ask(MessageIcon::Question, kUnsavedSettings, Buttons::YesNoCancel)) {
    case Answer::Yes: {
        const auto path = chooseFile_(FileDialogKind::Save);
        if (!path)
            return false;
        window_.readSettings(settings_);
        if (saveSettingsFile(toPath(*path), image_, settings_, *flowUi_) != FlowOutcome::Done)
            return false;
        markKept();
        return true;
    }
    case Answer::No:
        return true;
    default:
        return false;
    }
}

void MainController::editRow(RowTable table, int row)
{
    if (row < 0 || row >= static_cast<int>(kRows))
        return;
    const auto index = static_cast<std::size_t>(row);
    StationSettings settings = window_.currentSettings();
    bool confirmed = false;
    switch (table) {
    case RowTable::Inputs: confirmed = ui::InputDialog(&window_).edit(settings, index); break;
    case RowTable::Outputs: confirmed = ui::OutputDialog(&window_).edit(settings, index); break;
    case RowTable::Analog: confirmed = ui::AnalogDialog(&window_).edit(settings, index); break;
    case RowTable::Phones: confirmed = ui::PhoneDialog(&window_).edit(settings, index); break;
    }
    if (confirmed) {
        window_.fillSettings(settings);
        showWhetherModified();
    }
    // Whatever the dialog did, a permission may not outlive its number.
    if (table == RowTable::Phones)
        window_.applyFieldChanges(phoneTableRule(window_.currentSettings(), index));
}

void MainController::readFromStation()
{
    if (!io_)
        return;
    window_.readSettings(settings_);
    fillWhenDecoded();
    finishDecoding(link::readStation(*io_, image_, settings_, window_.eepromSize().value_or(0)));
}

void MainController::writeToStation()
{
    if (!io_)
        return;
    window_.readSettings(settings_);
    // The flow names the first conflicting output cell in its message; the
    // technician is taken to that cell, its page shown before the message.
    const auto conflicts = outputCrossCheck(settings_);
    QWidget* conflictCell = nullptr;
    if (!conflicts.empty()) {
        const OutputConflict& first = conflicts.front();
        const int row = static_cast<int>(first.row);
        if (const FieldInfo* info = findField(first.field))
            required<QTabWidget>(window_, "TabList")->setCurrentIndex(static_cast<int>(info->pageOfRow(first.row)));
        conflictCell = window_.field(QString::fromStdString(first.field), row);
    }
    if (!writeDespiteViolations(settings_))
        return;
    // Only a write that will go ahead is worth a backup.
    const auto size = window_.eepromSize();
    if (conflicts.empty() && !(size && sizeCheck(settings_, *size)) && !backUpBeforeWrite())
        return;
    const auto checkWrite = required<QAbstractButton>(window_, "CheckWrite")->isChecked();
    const FlowOutcome outcome =
        link::writeStation(*io_, image_, settings_, window_.eepromSize().value_or(0), checkWrite);
    if (outcome == FlowOutcome::Rejected && conflictCell)
        conflictCell->setFocus(Qt::OtherFocusReason);
    if (outcome == FlowOutcome::Done)
        markKept();
}

void MainController::loadFromFile()
{
    const auto path = chooseFile_(FileDialogKind::Open);
    if (!path)
        return;
    window_.readSettings(settings_);
    fillWhenDecoded();
    finishDecoding(loadSettingsFile(toPath(*path), image_, settings_, *flowUi_));
}

void MainController::saveToFile()
{
    const auto path = chooseFile_(FileDialogKind::Save);
    if (!path)
        return;
    window_.readSettings(settings_);
    if (saveSettingsFile(toPath(*path), image_, settings_, *flowUi_) == FlowOutcome::Done)
        markKept();
}

void MainController::print()
{
    window_.readSettings(settings_);
    printSettingsReport(&window_, report::buildReport(settings_), ui_);
}

void MainController::showAbout()
{
    AboutDialog about(&window_);
    about.exec();
}

void MainController::editPortSettings()
{
    PortSettingsDialog dialog(ports_, systemPorts_(), &window_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    ports_ = dialog.ports();
    if (remember_)
        remember_(ports_);
}

void MainController::exitCommand()
{
    if (!offerToSaveFirst())
        return;
    if (deaCaption() == fromCore(kDeactivateCaption)) {
        switch (ui_.ask(MessageIcon::Question, kStillProgramming, Buttons::YesNoCancel)) {
        case Answer::Yes:
            // The program ends whatever the deactivation says.
            (void)deactivate();
            break;
        case Answer::No:
            break;
        case Answer::Cancel:
        case Answer::Ok:
            return;
        }
    }
    endProgram();
}

void MainController::endProgram()
{
    // Ends without the closing question: it was asked already, or there was
    // nothing to ask.
    ending_ = true;
    closeSession();
    window_.close();
    emit exitRequested();
}

bool MainController::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != &window_ || event->type() != QEvent::Close || ending_)
        return QObject::eventFilter(watched, event);
    if (busy_) {
        // A flow is waiting for the station inside the event loop; the
        // window closes as soon as it has ended.
        closePending_ = true;
        event->ignore();
        return true;
    }
    busy_ = true;
    if (!offerToSaveFirst()) {
        busy_ = false;
        event->ignore();
        return true;
    }
    if (deaCaption() == fromCore(kDeactivateCaption)
        && ui_.ask(MessageIcon::Question, kStillProgramming, Buttons::YesNo) == Answer::Yes)
        (void)deactivate();
    busy_ = false;
    // The window cannot refuse to close.
    ending_ = true;
    closeSession();
    emit exitRequested();
    return QObject::eventFilter(watched, event);
}

} // namespace rm8::shell
