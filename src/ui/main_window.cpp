#include "ui/main_window.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QLabel>
#include <QAction>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPalette>
#include <QPushButton>
#include <QMouseEvent>
#include <QRadioButton>
#include <QTabWidget>

#include <algorithm>
#include <array>
#include <cassert>
#include <type_traits>
#include <variant>

#include "fields/field_catalogue.h"
#include "settings/used_size.h"
#include "ui/field_names.h"
#include "ui/check_panel.h"
#include "ui/leave_watch.h"
#include "ui/notice_box.h"
#include "workbench/connection_look.h"

namespace rm8::ui {
namespace {

const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);

const QString kUnknown = QStringLiteral("?");

constexpr std::array kServiceCentrePresets = { "+420602909909", "+420603052000", "+420608005681" };

template <class T> struct RowElement {
    using type = void;
};
template <class T> struct RowElement<Row8<T>> {
    using type = T;
};

std::string textOf(const QWidget* widget)
{
    if (const auto* edit = qobject_cast<const QLineEdit*>(widget))
        return edit->text().toStdString();
    if (const auto* list = qobject_cast<const QComboBox*>(widget))
        return list->currentText().toStdString();
    assert(false && "a text field is a line edit or an editable list");
    return {};
}

// A loaded text may be longer than a field accepts while typing (a file
// written by something else, or bytes the encoder never produces). The field
// then holds it whole, so that saving it again loses nothing, and its limit
// returns as soon as the text fits (see textField).
void setTextOf(QWidget* widget, const std::string& text, int limit)
{
    const QString value = QString::fromStdString(text);
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        if (limit > 0)
            edit->setMaxLength(std::max<int>(limit, static_cast<int>(value.size())));
        edit->setText(value);
        // A text longer than its field shows its beginning, not its end.
        edit->setCursorPosition(0);
    } else if (auto* list = qobject_cast<QComboBox*>(widget)) {
        list->setEditText(value);
        if (list->lineEdit())
            list->lineEdit()->setCursorPosition(0);
    } else {
        assert(false && "a text field is a line edit or an editable list");
    }
}

bool checkedOf(const QWidget* widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    assert(button);
    return button && button->isChecked();
}

// opEnablePS1 stands for the pair opEnablePS0/opEnablePS1. An exclusive
// option button cannot be cleared by itself: its partner is selected instead.
QString optionPartner(const QString& name)
{
    assert(name.endsWith(QLatin1Char('1')));
    return name.chopped(1) + QLatin1Char('0');
}

void setLabelColour(QLabel* label, const QColor& colour)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, colour);
    label->setPalette(palette);
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("Hlavni"));
    // [*]: the caption shows an asterisk while the settings differ from
    // the last file or station they were loaded from or written to.
    setWindowTitle(QStringLiteral("Inicializační program pro zařízení RM8[*]"));
    leaveWatch_ = new LeaveWatch(this);
    leaveWatch_->setReveal([this](QLineEdit*) {
        if (refusedPage_)
            field<QTabWidget>(QStringLiteral("TabList"))->setCurrentIndex(static_cast<int>(*refusedPage_));
    });
    buildWindow();
    connectRowCommands();
    connectCommands();
    addHistoryCommands();
    connectEditSteps();
    showRecentFiles({});
    // A settings file dropped on the window is opened.
    setAcceptDrops(true);

    fillTables();
    updateMemoryDisplay();
    // Only these two, as the station tool always did: rtNotAuthorized starts
    // enabled until its option is first clicked or settings are filled.
    applySwitchReport();
    applyPowerReport();
    setConnectionState(link::ConnectionState::Inactive);
}

MainWindow::~MainWindow()
{
    // A text field ends its editing when it loses the focus as the window's
    // children go; by then this is no longer a MainWindow to tell.
    for (QWidget* child : findChildren<QWidget*>())
        child->blockSignals(true);
}

QWidget* MainWindow::field(const QString& name, int row) const
{
    return named_.value(fieldName(name, row), nullptr);
}

void MainWindow::fillTables()
{
    // The lookup tables of station codes live with the link; here only what
    // the window shows at start.
    field<QComboBox>(QStringLiteral("tabPort"))->setCurrentIndex(0);

    auto* centre = field<QComboBox>(QStringLiteral("tabTCcentra"));
    const QString typed = centre->currentText();
    for (const char* number : kServiceCentrePresets)
        centre->addItem(QString::fromLatin1(number));
    // The list only offers the presets: adding them must not choose one.
    centre->setCurrentIndex(-1);
    centre->setEditText(typed);
    checkEnabled();
}

void MainWindow::readSettings(StationSettings& settings) const
{
    for (const FieldInfo& info : fieldCatalogue()) {
        const QString name = QString::fromUtf8(info.name.data(), static_cast<qsizetype>(info.name.size()));
        const auto copyIn = [&](auto member) {
            using Value = std::remove_cvref_t<decltype(settings.*member)>;
            using Element = typename RowElement<Value>::type;
            // Fields without a widget (the dialog-only lists, whole bytes)
            // come from the window's copy of the record.
            const auto valueOf = [&]<class T>(const QWidget* widget, const T& kept) -> T {
                if constexpr (std::is_same_v<T, std::string>)
                    return widget ? textOf(widget) : kept;
                else if constexpr (std::is_same_v<T, bool>)
                    return widget ? checkedOf(widget) : kept;
                else
                    return kept;
            };
            if constexpr (std::is_void_v<Element>) {
                settings.*member = valueOf(field(name), record_.*member);
            } else {
                for (std::size_t row = 0; row < kRows; ++row)
                    (settings.*member)[row] = valueOf(field(name, static_cast<int>(row)), (record_.*member)[row]);
            }
        };
        std::visit(copyIn, info.member);
    }
    settings.ranges = record_.ranges;
}

void MainWindow::fillSettings(const StationSettings& settings)
{
    loading_ = true;
    leaveWatch_->setSuspended(true);
    record_ = settings;
    for (const FieldInfo& info : fieldCatalogue()) {
        const QString name = QString::fromUtf8(info.name.data(), static_cast<qsizetype>(info.name.size()));
        const auto copyOut = [&](auto member) {
            using Value = std::remove_cvref_t<decltype(settings.*member)>;
            using Element = typename RowElement<Value>::type;
            const auto put = [&]<class T>(QWidget* widget, const QString& widgetName, const T& value) {
                if (!widget)
                    return; // record_ holds it
                if constexpr (std::is_same_v<T, std::string>) {
                    setTextOf(widget, value, info.maxLength);
                } else if constexpr (std::is_same_v<T, bool>) {
                    if (info.shape == FieldShape::OptionPair && !value) {
                        if (auto* partner = qobject_cast<QAbstractButton*>(field(optionPartner(widgetName))))
                            partner->setChecked(true);
                    } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
                        button->setChecked(value);
                    }
                }
            };
            if constexpr (std::is_void_v<Element>) {
                put(field(name), name, settings.*member);
            } else {
                for (std::size_t row = 0; row < kRows; ++row) {
                    const int r = static_cast<int>(row);
                    put(field(name, r), rowName(name, r), (settings.*member)[row]);
                }
            }
        };
        std::visit(copyOut, info.member);
    }
    loading_ = false;
    leaveWatch_->setSuspended(flowRunning_);

    // The option handlers react to the new values as if they had been
    // clicked; the text handlers were silent, so the display is redone once.
    applySwitchReport();
    applyPowerReport();
    applyNotAuthorized();
    checkEnabled();
    updateMemoryDisplay();
    emit settingsFilled();
}

void MainWindow::setConnectionState(link::ConnectionState state)
{
    const ConnectionLook& look = connectionLook(state);
    auto* stateLabel = field<QLabel>(QStringLiteral("tabDeAktivNapis"));
    stateLabel->setText(QString::fromUtf8(look.stateText.data(), static_cast<qsizetype>(look.stateText.size())));
    setLabelColour(stateLabel, QColor(look.stateColour.red, look.stateColour.green, look.stateColour.blue));
    field(QStringLiteral("tabPort"))->setEnabled(look.portChoosable);
    field(QStringLiteral("btPortSettings"))->setEnabled(look.portChoosable);
    field<QPushButton>(QStringLiteral("btDEA"))
        ->setText(QString::fromUtf8(look.linkCommand.data(), static_cast<qsizetype>(look.linkCommand.size())));
    if (look.eepromCommands) {
        field(QStringLiteral("btEEPROMSave"))->setEnabled(*look.eepromCommands);
        field(QStringLiteral("btEEPROMLoad"))->setEnabled(*look.eepromCommands);
    }
    field(QStringLiteral("btPorovnatStanici"))->setEnabled(look.compareWithStation);
    if (look.identityUnknown) {
        for (const char* name : { "lblInfoModem", "lblInfoProdukt", "lblInfoVerze", "lblInfoPamSize" })
            field<QLabel>(QString::fromLatin1(name))->setText(kUnknown);
        eepromSize_.reset();
    }
    updateMemoryDisplay();
}

void MainWindow::showIdentity(const link::StationIdentity& identity)
{
    field<QLabel>(QStringLiteral("lblInfoProdukt"))->setText(QString::fromStdString(identity.product));
    field<QLabel>(QStringLiteral("lblInfoVerze"))->setText(QString::fromStdString(identity.version));
    field<QLabel>(QStringLiteral("lblInfoPamSize"))->setText(QString::fromStdString(identity.memorySize));
    field<QLabel>(QStringLiteral("lblInfoModem"))->setText(QString::fromStdString(identity.modem));
    updateMemoryDisplay();
}

void MainWindow::setEepromSize(std::optional<std::size_t> size)
{
    eepromSize_ = size;
    updateMemoryDisplay();
}

std::string MainWindow::portName() const
{
    return field<QComboBox>(QStringLiteral("tabPort"))->currentText().toStdString();
}

bool MainWindow::checkWrite() const
{
    return field<QAbstractButton>(QStringLiteral("CheckWrite"))->isChecked();
}

bool MainWindow::backupWanted() const
{
    return field<QAbstractButton>(QStringLiteral("CheckBackup"))->isChecked();
}

void MainWindow::showFirstPage()
{
    field<QTabWidget>(QStringLiteral("TabList"))->setCurrentIndex(0);
}

void MainWindow::showPageOf(const std::string& name, std::optional<std::size_t> row)
{
    if (const FieldInfo* info = findField(name))
        field<QTabWidget>(QStringLiteral("TabList"))->setCurrentIndex(static_cast<int>(info->pageOfRow(row.value_or(0))));
}

void MainWindow::focusField(const std::string& name, std::optional<std::size_t> row)
{
    if (QWidget* widget = field(QString::fromStdString(name), row ? static_cast<int>(*row) : -1))
        widget->setFocus(Qt::OtherFocusReason);
}

void MainWindow::connectCommands()
{
    struct CommandButton {
        const char* name;
        WindowCommand command;
    };
    static constexpr CommandButton kButtons[] = {
        {"btDEA", WindowCommand::ActivateOrDeactivate},
        {"btEEPROMLoad", WindowCommand::ReadStation},
        {"btEEPROMSave", WindowCommand::WriteStation},
        {"btFileLoad", WindowCommand::LoadFile},
        {"btFileSave", WindowCommand::SaveFile},
        {"btTisk", WindowCommand::Print},
        {"btInformace", WindowCommand::About},
        {"btKonec", WindowCommand::Exit},
        {"btPortSettings", WindowCommand::PortSettings},
        {"btPorovnatSoubor", WindowCommand::CompareWithFile},
        {"btPorovnatStanici", WindowCommand::CompareWithStation},
        {"btNahled", WindowCommand::PrintPreview},
    };
    for (const auto& button : kButtons)
        connect(field<QAbstractButton>(QString::fromLatin1(button.name)), &QAbstractButton::clicked, this,
                [this, command = button.command] { emit commandRequested(command); });
}

void MainWindow::updateMemoryDisplay()
{
    StationSettings current = record_;
    readSettings(current);
    const std::size_t used = usedSize(current);

    auto* usage = field<QLabel>(QStringLiteral("lblInfoPamUsage"));
    auto* freeRoom = field<QLabel>(QStringLiteral("lblInfoPamFree"));
    usage->setText(QString::number(used) + QStringLiteral(" byte"));
    if (const auto size = eepromSize_) {
        const long long room = static_cast<long long>(*size) - static_cast<long long>(used);
        freeRoom->setText(QString::number(room) + QStringLiteral(" byte"));
        setLabelColour(freeRoom, room >= 0 ? kBlue : kRed);
    } else {
        freeRoom->setText(kUnknown);
        setLabelColour(freeRoom, kBlue);
    }
}

void MainWindow::checkEnabled()
{
    const bool on = field<QRadioButton>(QStringLiteral("opEnablePS1"))->isChecked();
    for (const char* name : { "lblPSOn1", "lblPSOn2", "lblPSOn3", "eePSOnH", "eePSOnM", "lblPSOff1", "lblPSOff2",
             "lblPSOff3", "eePSOffH", "eePSOffM", "opSuperPS", "opPSOutOff" })
        field(QString::fromLatin1(name))->setEnabled(on);
}

void MainWindow::applyReportOption(const char* option, std::initializer_list<const char*> dependents)
{
    // The texts of disabled fields are kept.
    const bool on = field<QCheckBox>(QString::fromLatin1(option))->isChecked();
    for (const char* name : dependents)
        field(QString::fromLatin1(name))->setEnabled(on);
}

void MainWindow::applySwitchReport()
{
    applyReportOption("opSwitchReport", { "rtSwitchOn", "rtSwitchOff", "txtSwitchOn", "txtSwitchOff" });
}

void MainWindow::applyPowerReport()
{
    applyReportOption("opPowerReport", { "rtPowerUp", "rtPowerDown", "txtPowerUp", "txtPowerDown" });
}

void MainWindow::applyNotAuthorized()
{
    applyReportOption("opNotAuthorized", { "rtNotAuthorized", "txtNotAuthorized" });
}

void MainWindow::onFieldTextChanged(const char* name, int row, const QString& text)
{
    if (loading_)
        return;
    if (name != nullptr && !mirroring_) {
        if (auto mirror = batteryMirror(name, fieldRowOf(row), text.toStdString())) {
            mirroring_ = true;
            setFieldValue(*mirror);
            mirroring_ = false;
        }
    }
    updateMemoryDisplay();
    emit settingsEdited();
}

StationSettings MainWindow::currentSettings() const
{
    StationSettings settings = record_;
    readSettings(settings);
    return settings;
}

void MainWindow::setEditingSuspended(bool suspended)
{
    flowRunning_ = suspended;
    leaveWatch_->setSuspended(suspended || loading_);
}

bool MainWindow::settleEdits()
{
    return leaveWatch_->settle();
}

void MainWindow::watchField(QLineEdit* edit, const char* name, int row)
{
    leaveWatch_->watch(edit, [this, name, row](QLineEdit* left) { return judgeField(name, row, left); });
}

std::optional<Notice> MainWindow::judgeField(const char* name, int row, QLineEdit* edit)
{
    const LeaveOutcome outcome
        = leaveField(currentSettings(), name, fieldRowOf(row), edit->text().toStdString());
    if (outcome.verdict == LeaveVerdict::Refuse) {
        refusedPage_ = outcome.page;
        return outcome.refusal;
    }
    if (outcome.verdict == LeaveVerdict::Replace)
        edit->setText(QString::fromStdString(outcome.text));
    applyFieldChanges(outcome.changes);
    emit editFinished(name, fieldRowOf(row));
    return std::nullopt;
}

void MainWindow::setFieldValue(const FieldChange& change)
{
    const FieldInfo* info = findField(change.field);
    if (info == nullptr)
        return;
    QWidget* widget = field(QString::fromStdString(change.field), windowRowOf(change.row));
    if (widget == nullptr) {
        applyChange(record_, change);
        return;
    }
    if (const auto* text = std::get_if<std::string>(&change.value))
        setTextOf(widget, *text, info->maxLength);
    else if (auto* button = qobject_cast<QAbstractButton*>(widget))
        button->setChecked(std::get<bool>(change.value));
}

void MainWindow::applyFieldChanges(const std::vector<FieldChange>& changes)
{
    for (const FieldChange& change : changes) {
        if (change.notice)
            showNotice(this, *change.notice);
        setFieldValue(change);
    }
}

void MainWindow::showCheck(const std::vector<CheckEntry>& entries)
{
    checkPanel_->setEntries(entries);
}

bool MainWindow::revealField(const QString& name, int row)
{
    const FieldInfo* info = findField(name.toStdString());
    if (info == nullptr)
        return false;
    QWidget* widget = field(name, row);
    if (widget == nullptr && row >= 0) {
        // Shown only by the row's dialog: its button leads there.
        const Page page = info->pageOfRow(static_cast<std::size_t>(row));
        const char* button = page == Page::DigitalInputs ? "tabINPbt"
                             : page == Page::Outputs      ? "tabOUTbt"
                                                          : "tabAINbt";
        widget = field(QString::fromLatin1(button), row);
    }
    if (widget == nullptr)
        return false;
    field<QTabWidget>(QStringLiteral("TabList"))
        ->setCurrentIndex(static_cast<int>(info->pageOfRow(fieldRowOf(row).value_or(0))));
    widget->setFocus(Qt::OtherFocusReason);
    if (auto* edit = qobject_cast<QLineEdit*>(widget))
        edit->selectAll();
    return true;
}

void MainWindow::connectRowCommands()
{
    struct TableFields {
        RowTable table;
        const char* button;
        std::initializer_list<const char*> fields;
    };
    const TableFields tables[] = {
        {RowTable::Inputs, "tabINPbt", {"tabINPNazev", "tabINPZap", "tabINPVyp", "tabINPLH", "tabINPHL"}},
        {RowTable::Outputs, "tabOUTbt", {"tabOUTNazev", "tabOUTZap", "tabOUTVyp", "tabOUTimpuls", "tabOUTimpulsLEN"}},
        {RowTable::Analog, "tabAINbt",
         {"tabAINNazev", "tabAINStateL", "tabAINStateM", "tabAINStateH", "tabAINCL1Level", "tabAINHCL1Level",
          "tabAINCL2Level", "tabAINHCL2Level", "tabAINCL1Up", "tabAINCL1Dn", "tabAINCL2Up", "tabAINCL2Dn"}},
        {RowTable::Phones, "tabTCZmenit", {"tabTC"}},
    };
    for (const auto& spec : tables) {
        for (int row = 0; row < static_cast<int>(kRows); ++row) {
            if (auto* button = field<QAbstractButton>(QString::fromLatin1(spec.button), row))
                connect(button, &QAbstractButton::clicked, this,
                        [this, table = spec.table, row] { emit rowDialogRequested(table, row); });
            for (const char* name : spec.fields) {
                if (QWidget* widget = field(QString::fromLatin1(name), row)) {
                    rowOf_.insert(widget, {spec.table, row});
                    widget->installEventFilter(this);
                }
            }
        }
    }
    // A permission needs a number: a click on either box is judged at once.
    for (int row = 0; row < static_cast<int>(kRows); ++row)
        for (const char* name : {"tabTCPrijem", "tabTCUdalost"})
            connect(field<QAbstractButton>(QString::fromLatin1(name), row), &QAbstractButton::clicked, this,
                    [this, row] { applyFieldChanges(phoneTableRule(currentSettings(), static_cast<std::size_t>(row))); });
}

void MainWindow::addHistoryCommands()
{
    undo_ = new QAction(QStringLiteral("Zpět"), this);
    undo_->setObjectName(QStringLiteral("actZpet"));
    undo_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    redo_ = new QAction(QStringLiteral("Znovu"), this);
    redo_->setObjectName(QStringLiteral("actZnovu"));
    redo_->setShortcuts({ QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z) });
    const std::pair<QAction*, WindowCommand> commands[]
        = { { undo_, WindowCommand::Undo }, { redo_, WindowCommand::Redo } };
    for (const auto& [action, command] : commands) {
        addAction(action);
        connect(action, &QAction::triggered, this, [this, command = command] { emit commandRequested(command); });
    }
    connect(field<QAbstractButton>(QStringLiteral("btZpet")), &QAbstractButton::clicked, undo_, &QAction::trigger);
    connect(field<QAbstractButton>(QStringLiteral("btZnovu")), &QAbstractButton::clicked, redo_, &QAction::trigger);
    // A text field would take the keys for its own typing history; the
    // window's steps are whole fields, and the field being typed in becomes
    // one when the command settles it.
    for (auto* edit : findChildren<QLineEdit*>())
        edit->installEventFilter(this);
    showHistory(std::nullopt, std::nullopt);
}

void MainWindow::connectEditSteps()
{
    // Connected after the row commands: a click's own rule (a permission
    // without a number) has acted before the step is taken.
    for (const FieldInfo& info : fieldCatalogue()) {
        if (info.shape != FieldShape::CheckBox && info.shape != FieldShape::CheckRow
            && info.shape != FieldShape::OptionPair)
            continue;
        const QString name = QString::fromUtf8(info.name.data(), static_cast<qsizetype>(info.name.size()));
        const std::string fieldName(info.name);
        const int rows = info.perRow() ? static_cast<int>(kRows) : 1;
        for (int row = 0; row < rows; ++row) {
            const QString widgetName = info.perRow() ? rowName(name, row) : name;
            const FieldRow at = rowOfField(info, static_cast<std::size_t>(row));
            QStringList buttons { widgetName };
            if (info.shape == FieldShape::OptionPair)
                buttons << optionPartner(widgetName);
            for (const QString& button : buttons)
                if (auto* clickable = qobject_cast<QAbstractButton*>(named_.value(button)))
                    connect(clickable, &QAbstractButton::clicked, this,
                        [this, fieldName, at] { emit editFinished(fieldName, at); });
        }
    }
    auto* centre = field<QComboBox>(QStringLiteral("tabTCcentra"));
    const auto centreDone = [this] { emit editFinished("tabTCcentra", std::nullopt); };
    connect(centre, &QComboBox::activated, this, centreDone);
    connect(centre->lineEdit(), &QLineEdit::editingFinished, this, centreDone);
}

void MainWindow::showHistoryStep(
    QAction* action, const char* button, const QString& verb, const std::optional<QString>& step)
{
    const QString tip = step ? verb + QStringLiteral(": ") + *step : verb;
    action->setEnabled(step.has_value());
    action->setToolTip(tip);
    auto* shown = field(QString::fromLatin1(button));
    shown->setEnabled(step.has_value());
    shown->setToolTip(tip);
}

void MainWindow::showHistory(const std::optional<QString>& undoStep, const std::optional<QString>& redoStep)
{
    showHistoryStep(undo_, "btZpet", QStringLiteral("Zpět"), undoStep);
    showHistoryStep(redo_, "btZnovu", QStringLiteral("Znovu"), redoStep);
}

void MainWindow::showRecentFiles(const QStringList& paths)
{
    recentMenu_->clear();
    for (const QString& path : paths)
        connect(recentMenu_->addAction(QDir::toNativeSeparators(path)), &QAction::triggered, this,
            [this, path] { emit fileOpenRequested(path); });
    field(QStringLiteral("btNedavne"))->setEnabled(!paths.isEmpty());
}

namespace {

QString droppedFile(const QMimeData* data)
{
    const QList<QUrl> urls = data->urls();
    return urls.size() == 1 && urls.front().isLocalFile() ? urls.front().toLocalFile() : QString();
}

} // namespace

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!flowRunning_ && !droppedFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const QString path = droppedFile(event->mimeData());
    if (path.isEmpty())
        return;
    event->acceptProposedAction();
    emit fileOpenRequested(path);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const QKeySequence keys(static_cast<QKeyEvent*>(event)->keyCombination());
        if (undo_->shortcuts().contains(keys) || redo_->shortcuts().contains(keys))
            return true; // not accepted: the window's shortcut fires
    }
    if (event->type() == QEvent::MouseButtonDblClick && !flowRunning_) {
        const auto found = rowOf_.constFind(watched);
        if (found != rowOf_.constEnd()) {
            emit rowDialogRequested(found->first, found->second);
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

} // namespace rm8::ui
