#include "shell/main_controller.h"

#include <stdexcept>
#include <utility>

#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUndoStack>

#include "editing/check_listing.h"
#include "editing/configuration_check.h"
#include "editing/field_leave.h"
#include "fields/settings_json.h"
#include "flow/messages.h"
#include "report/report_content.h"
#ifdef RM8_QT_SERIALPORT
#include "serial/qt_serial_line.h"
#else
#include "link/serial_line_factory.h"
#endif
#include "shell/about_dialog.h"
#include "shell/application_info.h"
#include "shell/port_settings_dialog.h"
#include "shell/report_printer.h"
#include "shell/settings_command.h"
#include "ui/analog_dialog.h"
#include "ui/check_panel.h"
#include "ui/field_names.h"
#include "ui/input_dialog.h"
#include "ui/main_window.h"
#include "ui/output_dialog.h"
#include "ui/phone_dialog.h"
#include "workbench/connection_look.h"
#include "workbench/exit_guard.h"
#include "workbench/settings_step.h"

namespace rm8::shell {
namespace {

std::filesystem::path toPath(const QString& path)
{
#ifdef Q_OS_WIN
    return std::filesystem::path(path.toStdWString());
#else
    return std::filesystem::path(QFile::encodeName(path).toStdString());
#endif
}

// Beyond any settings file: not read into memory.
constexpr qint64 kMaxJsonBytes = 1 << 20;

bool isJsonFile(const QString& path)
{
    return QFileInfo(path).suffix().compare(QStringLiteral("json"), Qt::CaseInsensitive) == 0;
}

QString missingFileQuestion(const QString& path)
{
    return QStringLiteral("Soubor '%1' už neexistuje. Odebrat ho ze seznamu nedávných souborů?").arg(path);
}

} // namespace

std::unique_ptr<link::SerialLine> makeSystemLine(const std::string& device)
{
#ifdef RM8_QT_SERIALPORT
    return std::make_unique<serial::QtSerialLine>(QString::fromStdString(device));
#else
    return link::makeSerialLine(device);
#endif
}

std::optional<QString> chooseSettingsFile(QWidget* owner, FileDialogKind kind)
{
    // The folder of the last file chosen during this run.
    static QString lastFolder;
    const bool opening = kind == FileDialogKind::Open;
    QFileDialog dialog(owner,
        opening ? QStringLiteral("Načíst nastavení ze souboru") : QStringLiteral("Uložit nastavení do souboru"),
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
    : QObject(&window)
    , window_(window)
    , ui_(ui)
    , ports_(std::move(options.ports))
    , makeLine_(options.lineFactory ? std::move(options.lineFactory) : LineFactory(makeSystemLine))
    , chooseFile_(options.fileChooser ? std::move(options.fileChooser) : FileChooser([this](FileDialogKind kind) {
        return chooseSettingsFile(&window_, kind);
    }))
    , systemPorts_(options.systemPorts ? std::move(options.systemPorts) : systemSerialPorts)
    , remember_(std::move(options.remember))
    , backupFolder_(options.backupFolder.isEmpty()
              ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/zalohy")
              : std::move(options.backupFolder))
    , bench_(ui,
          [this](std::string_view portName) -> std::unique_ptr<link::SerialLine> {
              const auto device = ports_.device(std::string(portName));
              return device ? makeLine_(*device) : nullptr;
          })
    , comparison_(window)
    , history_(new QUndoStack(this))
    , recent_(options.store)
{
    // The fields show a decoded configuration before its success message
    // does, and from the first page.
    bench_.setDecodeWatch({ [this] { window_.showFirstPage(); },
        [this](const StationSettings& settings) { window_.fillSettings(settings); } });
    connect(&window_, &ui::MainWindow::commandRequested, this,
        [this](ui::WindowCommand command) { runCommand([this, command] { run(command); }); });
    connect(&window_, &ui::MainWindow::rowDialogRequested, this,
        [this](RowTable table, int row) { runCommand([this, table, row] { editRow(table, row); }); });
    connect(&window_, &ui::MainWindow::settingsEdited, this, &MainController::showWhetherModified);
    connect(&window_, &ui::MainWindow::editFinished, this,
        [this](const std::string& field, FieldRow row) { recordStep(fieldStepName(field, row)); });
    connect(&window_, &ui::MainWindow::fileOpenRequested, this, &MainController::openFile);
    connect(history_, &QUndoStack::indexChanged, this, &MainController::showHistory);
    connect(history_, &QUndoStack::cleanChanged, this, &MainController::showModifiedMark);
    window_.showRecentFiles(recent_.paths());
    connect(&window_, &ui::MainWindow::settingsFilled, this, [this] {
        refreshCheck();
        // A configuration that came in with faults shows them at once.
        if (window_.checkPanel()->errorCount() > 0)
            window_.checkPanel()->setExpanded(true);
    });
    bench_.startFrom(window_.currentSettings());
    top_ = bench_.settings();
    refreshCheck();
    window_.installEventFilter(this);
}

MainController::~MainController() = default;

template <class F> void MainController::runCommand(F&& command)
{
    if (busy_)
        return;
    // A field just left is judged before anything else happens: a refused
    // text stops the command.
    if (!window_.settleEdits())
        return;
    // A change no field named yet is a step of its own before the command.
    recordStep(changeStepName(top_, window_.currentSettings()));
    busy_ = true;
    window_.setEditingSuspended(true);
    try {
        bench_.edit(window_.currentSettings());
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

void MainController::run(ui::WindowCommand command)
{
    using Command = ui::WindowCommand;
    struct Handler {
        Command command;
        void (MainController::*run)();
    };
    static constexpr Handler kHandlers[] = {
        { Command::ActivateOrDeactivate, &MainController::activateOrDeactivate },
        { Command::ReadStation, &MainController::readFromStation },
        { Command::WriteStation, &MainController::writeToStation },
        { Command::LoadFile, &MainController::loadFromFile },
        { Command::SaveFile, &MainController::saveToFile },
        { Command::Print, &MainController::print },
        { Command::About, &MainController::showAbout },
        { Command::Exit, &MainController::exitCommand },
        { Command::PortSettings, &MainController::editPortSettings },
        { Command::CompareWithFile, &MainController::compareWithFile },
        { Command::CompareWithStation, &MainController::compareWithStation },
        { Command::Undo, &MainController::undo },
        { Command::Redo, &MainController::redo },
        { Command::PrintPreview, &MainController::printPreview },
    };
    for (const Handler& handler : kHandlers)
        if (handler.command == command)
            (this->*handler.run)();
}

void MainController::activateOrDeactivate()
{
    bench_.activateOrDeactivate(window_.portName());
    showConnection();
}

void MainController::showConnection()
{
    window_.showIdentity(bench_.identity());
    window_.setEepromSize(bench_.eepromSize());
    window_.setConnectionState(bench_.connection());
    if (connectionLook(bench_.connection()).hidesProgress)
        ui_.hideProgress();
    refreshCheck();
}

void MainController::takeEdits()
{
    bench_.edit(window_.currentSettings());
    showModifiedMark();
}

void MainController::showModifiedMark()
{
    // A text being typed counts before it becomes a step.
    window_.setWindowModified(!history_->isClean() || bench_.settings() != top_);
}

void MainController::recordStep(const std::string& name)
{
    takeEdits();
    if (auto step = settingsStep(name, top_, bench_.settings())) {
        top_ = bench_.settings();
        history_->push(
            new SettingsCommand(std::move(*step), [this](const StationSettings& settings) { putSettings(settings); }));
    }
    showModifiedMark();
}

void MainController::putSettings(const StationSettings& settings)
{
    window_.fillSettings(settings);
    bench_.edit(settings);
    top_ = settings;
    showModifiedMark();
}

void MainController::markKept()
{
    history_->setClean();
    showModifiedMark();
}

void MainController::showHistory()
{
    const auto step = [](bool can, const QString& text) { return can ? std::optional(text) : std::nullopt; };
    window_.showHistory(
        step(history_->canUndo(), history_->undoText()), step(history_->canRedo(), history_->redoText()));
}

void MainController::undo()
{
    history_->undo();
}

void MainController::redo()
{
    history_->redo();
}

void MainController::showWhetherModified()
{
    takeEdits();
    refreshCheck();
}

void MainController::refreshCheck()
{
    window_.showCheck(listCheckReport(checkConfiguration(window_.currentSettings(), window_.eepromSize())));
}

std::optional<std::filesystem::path> MainController::chooseSaveFile()
{
    const auto path = chooseFile_(FileDialogKind::Save);
    return path ? std::optional(toPath(*path)) : std::nullopt;
}

void MainController::compareWithFile()
{
    const auto path = chooseFile_(FileDialogKind::Open);
    if (!path)
        return;
    if (const auto other = bench_.settingsInFile(toPath(*path)))
        comparison_.show(window_.currentSettings(), *other, QStringLiteral("V souboru"));
}

void MainController::compareWithStation()
{
    if (const auto other = bench_.settingsInStation())
        comparison_.show(window_.currentSettings(), *other, QStringLiteral("Ve stanici"));
}

void MainController::editRow(RowTable table, int row)
{
    const FieldRow tableRow = ui::fieldRowOf(row);
    if (!tableRow || *tableRow >= kRows)
        return;
    const std::size_t index = *tableRow;
    StationSettings settings = window_.currentSettings();
    bool confirmed = false;
    switch (table) {
    case RowTable::Inputs:
        confirmed = ui::InputDialog(&window_).edit(settings, index);
        break;
    case RowTable::Outputs:
        confirmed = ui::OutputDialog(&window_).edit(settings, index);
        break;
    case RowTable::Analog:
        confirmed = ui::AnalogDialog(&window_).edit(settings, index);
        break;
    case RowTable::Phones:
        confirmed = ui::PhoneDialog(&window_).edit(settings, index);
        break;
    }
    if (confirmed) {
        window_.fillSettings(settings);
        showWhetherModified();
    }
    // Whatever the dialog did, a permission may not outlive its number.
    if (table == RowTable::Phones)
        window_.applyFieldChanges(phoneTableRule(window_.currentSettings(), index));
    // All the dialog changed is one step.
    recordStep(rowLabel(table, index));
}

void MainController::readFromStation()
{
    if (bench_.read() != FlowOutcome::Done)
        return;
    recordStep(std::string(kReadStepName));
    markKept();
}

void MainController::writeToStation()
{
    // The flow names the first conflicting output cell in its message; the
    // technician is taken to that cell, its page shown before the message.
    const auto conflict = bench_.writePlan().conflict;
    if (conflict)
        window_.showPageOf(conflict->field, conflict->row);
    const auto backupFolder = window_.backupWanted() ? std::optional(toPath(backupFolder_)) : std::nullopt;
    const FlowOutcome outcome = bench_.write(window_.checkWrite(), backupFolder);
    if (outcome == FlowOutcome::Rejected && conflict)
        window_.focusField(conflict->field, conflict->row);
    if (outcome == FlowOutcome::Done) {
        takeEdits();
        markKept();
    }
}

void MainController::loadFromFile()
{
    const auto path = chooseFile_(FileDialogKind::Open);
    if (!path || bench_.load(toPath(*path)) != FlowOutcome::Done)
        return;
    recordStep(std::string(kLoadStepName));
    markKept();
    remember(*path);
}

void MainController::saveToFile()
{
    const auto path = chooseFile_(FileDialogKind::Save);
    if (!path || bench_.save(toPath(*path)) != FlowOutcome::Done)
        return;
    takeEdits();
    markKept();
    remember(*path);
}

void MainController::remember(const QString& path)
{
    recent_.add(path);
    window_.showRecentFiles(recent_.paths());
}

void MainController::openFile(const QString& path)
{
    runCommand([this, path] { openGivenFile(path); });
}

void MainController::openGivenFile(const QString& path)
{
    if (offeredRemoval(path))
        return;
    if (!savedOrLeftAlone(bench_, ui_, kUnsavedBeforeOpening, [this] { return chooseSaveFile(); }))
        return;
    if (!bench_.modified())
        markKept();
    if (isJsonFile(path)) {
        loadJsonFile(path);
        return;
    }
    if (bench_.load(toPath(path)) != FlowOutcome::Done)
        return;
    recordStep(std::string(kLoadStepName));
    markKept();
    remember(path);
}

bool MainController::offeredRemoval(const QString& path)
{
    if (!recent_.paths().contains(path) || QFileInfo::exists(path))
        return false;
    if (ui_.ask(
            MessageIcon::Question, missingFileQuestion(QDir::toNativeSeparators(path)).toStdString(), Buttons::YesNo)
        == Answer::Yes) {
        recent_.remove(path);
        window_.showRecentFiles(recent_.paths());
    }
    return true;
}

void MainController::loadJsonFile(const QString& path)
{
    const std::string name = toPath(path).string();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMaxJsonBytes) {
        ui_.message(MessageIcon::Stop, messages::loadFailed(name),
            file.isOpen() ? "soubor je příliš velký na nastavení" : file.errorString().toStdString());
        return;
    }
    const auto settings = parseSettingsJson(file.readAll().toStdString());
    if (!settings) {
        ui_.message(MessageIcon::Stop, messages::loadFailed(name), settings.error());
        return;
    }
    window_.showFirstPage();
    window_.fillSettings(*settings);
    recordStep(std::string(kLoadStepName));
    bench_.startFrom(bench_.settings());
    markKept();
    remember(path);
    ui_.message(MessageIcon::Information, messages::loadSucceeded(name));
}

void MainController::print()
{
    printSettingsReport(&window_, report::buildReport(bench_.settings()), ui_);
}

void MainController::printPreview()
{
    previewSettingsReport(&window_, report::buildReport(bench_.settings()));
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
    if (!clearToExit(bench_, ui_, ExitBy::Command, [this] { return chooseSaveFile(); })) {
        if (!bench_.modified())
            markKept();
        return;
    }
    endProgram();
}

void MainController::endProgram()
{
    // Ends without the closing question: it was asked already, or there was
    // nothing to ask.
    ending_ = true;
    bench_.closeSession();
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
    bench_.edit(window_.currentSettings());
    const bool clear = clearToExit(bench_, ui_, ExitBy::ClosingWindow, [this] { return chooseSaveFile(); });
    busy_ = false;
    if (!clear) {
        if (!bench_.modified())
            markKept();
        event->ignore();
        return true;
    }
    // The window cannot refuse to close.
    ending_ = true;
    bench_.closeSession();
    emit exitRequested();
    return QObject::eventFilter(watched, event);
}

} // namespace rm8::shell
