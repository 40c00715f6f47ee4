// rm8shots: photographs rm8config for the README. The window, its commands,
// its dialogs and the simulated station behind "COM 1" are the program's
// own, put together as `rm8config --demo` does; only the technician is a
// script, which answers every message box with OK or Yes and prints what it
// was shown, except for the one question it is to photograph. Run it on a
// real display (scripts/screenshots.sh uses Xvfb), so the pictures are drawn
// as a user sees them.
//
// After the read from the station it opens each row dialog, refuses a typed
// PIN, compares the slightly edited window with the station, loads a file
// with faults (--faulty) for the check panel and starts a write of it,
// answering Ne to the question before the write.
//
//   rm8shots --out DIR [--eeprom FILE.eep] [--faulty FILE.eep] [--size-code N]
//            [--simulator PATH | --device PORT]
//
// With --device the station is whatever answers on that port (on Windows,
// where rm8sim cannot run, a COM port that Wine maps onto rm8sim's
// pseudo-terminal): the pictures then show the real serial line at work.

#include <cstdio>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QCommandLineParser>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QPointer>
#include <QPrintPreviewDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolTip>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

#include "flow/interaction.h"
#include "link/port_map.h"
#include "shell/about_dialog.h"
#include "shell/application_info.h"
#include "shell/demo_station.h"
#include "shell/main_controller.h"
#include "shell/port_settings_dialog.h"
#include "shell/qt_interaction.h"
#include "ui/analog_dialog.h"
#include "ui/check_panel.h"
#include "ui/input_dialog.h"
#include "ui/main_window.h"
#include "ui/output_dialog.h"
#include "ui/phone_dialog.h"

namespace {

using rm8::Answer;
using rm8::Buttons;
using rm8::MessageIcon;

// File names follow the tab strip's order; the count is checked against it.
constexpr const char* kPageSlugs[] = {
    "vseobecne",
    "sms-zpravy",
    "dig-vstupy",
    "dig-vystupy",
    "analog-vstupy-1-4",
    "analog-vstupy-5-8",
    "tel-cisla",
};
constexpr int kPageCount = static_cast<int>(std::size(kPageSlugs));

void say(const QString& line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

// Layouts are activated and widgets repainted through posted events; a few
// rounds of the event loop let a page that was just shown settle.
void settle()
{
    for (int round = 0; round < 5; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

// Answers like a technician who agrees to everything, and keeps count of the
// warnings and errors: a picture "after a successful read" must not be taken
// after a failed one.
class ScriptedTechnician : public rm8::Interaction {
public:
    void showProgress(std::string_view text, bool) override
    {
        say(QStringLiteral("  průběh: %1").arg(rm8::shell::fromCore(text)));
        QCoreApplication::processEvents();
    }
    void hideProgress() override { QCoreApplication::processEvents(); }
    bool cancelRequested() override
    {
        // The flows wait for the station here; the window keeps painting.
        QCoreApplication::processEvents();
        return false;
    }
    void message(MessageIcon icon, std::string_view text, std::string_view detail) override
    {
        QString line = QStringLiteral("  zpráva: %1").arg(rm8::shell::fromCore(text));
        if (!detail.empty())
            line += QStringLiteral(" (%1)").arg(rm8::shell::fromCore(detail));
        say(line);
        ++messages_;
        if (icon == MessageIcon::Stop || icon == MessageIcon::Exclamation)
            ++complaints_;
    }
    Answer ask(MessageIcon icon, std::string_view question, Buttons buttons) override
    {
        if (shownQuestion_ != nullptr) {
            // Whoever is waiting for this box photographs and answers it.
            rm8::Interaction* shown = std::exchange(shownQuestion_, nullptr);
            say(QStringLiteral("  otázka (v okně): %1").arg(rm8::shell::fromCore(question)));
            ++questionsShown_;
            return shown->ask(icon, question, buttons);
        }
        say(QStringLiteral("  otázka (odpověď Ano): %1").arg(rm8::shell::fromCore(question)));
        return buttons == Buttons::Ok ? Answer::Ok : Answer::Yes;
    }

    // The next question goes to the program's own message box instead.
    void showNextQuestionIn(rm8::Interaction* boxes) { shownQuestion_ = boxes; }

    int messages() const { return messages_; }
    int complaints() const { return complaints_; }
    int questionsShown() const { return questionsShown_; }

private:
    rm8::Interaction* shownQuestion_ = nullptr;
    int messages_ = 0;
    int complaints_ = 0;
    int questionsShown_ = 0;
};

class Camera {
public:
    explicit Camera(QDir folder)
        : folder_(std::move(folder))
    {
    }

    // An empty result when the picture was saved, else why not.
    QString shoot(QWidget& widget, const QString& name)
    {
        settle();
        const QImage picture = widget.grab().toImage();
        const QString path = folder_.filePath(name);
        // Quality 0 is the strongest zlib compression: the files are committed.
        if (picture.isNull() || !picture.save(path, "PNG", 0))
            return QStringLiteral("%1 nelze uložit").arg(path);
        say(QStringLiteral("%1  %2x%3").arg(path).arg(picture.width()).arg(picture.height()));
        reportCrowding(widget);
        return {};
    }

    // The screen where the window is, with whatever lies over it (a message
    // box is a window of its own and not in the window's grab).
    QString shootScreenOver(QWidget& window, const QString& name)
    {
        settle();
        const QRect area = window.frameGeometry();
        QScreen* screen = window.screen();
        const QImage picture = screen == nullptr
            ? QImage()
            : screen->grabWindow(0, area.x(), area.y(), area.width(), area.height()).toImage();
        const QString path = folder_.filePath(name);
        if (picture.isNull() || !picture.save(path, "PNG", 0))
            return QStringLiteral("%1 nelze uložit").arg(path);
        say(QStringLiteral("%1  %2x%3").arg(path).arg(picture.width()).arg(picture.height()));
        return {};
    }

    // The whole screen the window is on, for a window of the system's own.
    QString shootScreen(QWidget& window, const QString& name)
    {
        QScreen* screen = window.screen();
        const QImage picture = screen == nullptr ? QImage() : screen->grabWindow(0).toImage();
        const QString path = folder_.filePath(name);
        if (picture.isNull() || !picture.save(path, "PNG", 0))
            return QStringLiteral("%1 nelze uložit").arg(path);
        say(QStringLiteral("%1  %2x%3").arg(path).arg(picture.width()).arg(picture.height()));
        return {};
    }

private:
    // What a picture may show without anyone noticing at first sight: a
    // caption narrower than its text, or a page that has to scroll.
    static void reportCrowding(QWidget& root)
    {
        const auto tooNarrow = [](QWidget* widget) {
            return widget->isVisibleTo(widget->window()) && widget->width() < widget->minimumSizeHint().width();
        };
        for (auto* label : root.findChildren<QLabel*>()) {
            if (!label->wordWrap() && !label->text().isEmpty() && tooNarrow(label))
                say(QStringLiteral("  ! popisek '%1' (%2) je užší než jeho text")
                        .arg(label->text(), label->objectName()));
        }
        for (auto* button : root.findChildren<QAbstractButton*>()) {
            if (!button->text().isEmpty() && tooNarrow(button))
                say(QStringLiteral("  ! tlačítko '%1' (%2) je užší než jeho text")
                        .arg(button->text(), button->objectName()));
        }
        for (auto* area : root.findChildren<QScrollArea*>()) {
            if (!area->isVisibleTo(&root))
                continue;
            if (area->horizontalScrollBar()->isVisible())
                say(QStringLiteral("  ! stránka se posouvá vodorovně"));
            if (area->verticalScrollBar()->isVisible())
                say(QStringLiteral("  ! stránka se posouvá svisle"));
        }
    }

    QDir folder_;
};

constexpr int kOpenWaitMs = 10000;
constexpr int kCloseWaitMs = 3000;

// Does what opens a modal window (open may return at once when the window
// comes later from the event loop, as a leave check's message box does),
// waits a bounded time for a window of the kind, runs `inside` from within
// that window's own event loop, and closes it with `close`; a window that
// is still open a while later is closed as Escape would. An empty result
// when the window was there and `inside` succeeded, else why not.
template <class Dialog>
QString duringModal(const QString& what, const std::function<void()>& open,
    const std::function<QString(Dialog&)>& inside, const std::function<void(Dialog&)>& close)
{
    QString result = QStringLiteral("%1: okno se neotevřelo").arg(what);
    QPointer<Dialog> shown;
    bool closing = false;
    QEventLoop waiting;
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    const auto finish = [&] {
        poll.stop();
        waiting.quit();
    };
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (closing) {
            if (!shown || !shown->isVisible()) {
                finish();
            } else if (clock.elapsed() > kCloseWaitMs) {
                result = QStringLiteral("%1: okno se nezavřelo").arg(what);
                static_cast<QDialog*>(shown.data())->reject();
                finish();
            }
            return;
        }
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog && dialog->isVisible()) {
            shown = dialog;
            result = inside(*dialog);
            closing = true;
            clock.restart();
            close(*dialog);
        } else if (clock.elapsed() > kOpenWaitMs) {
            finish();
        }
    });
    poll.start(20);
    open();
    if (poll.isActive())
        waiting.exec();
    poll.stop();
    return result;
}

// Presses the button, photographs the modal dialog it opens, and closes it
// as Escape would.
template <class Dialog> QString shootModal(QAbstractButton& button, Camera& camera, const QString& name)
{
    return duringModal<Dialog>(
        QStringLiteral("stisk %1").arg(button.objectName()), [&button] { button.click(); },
        [&](Dialog& dialog) { return camera.shoot(dialog, name); }, [](Dialog& dialog) { dialog.reject(); });
}

// A row dialog is closed as the technician leaves one without a change.
void clickStorno(QDialog& dialog)
{
    if (auto* storno = dialog.findChild<QAbstractButton*>(QStringLiteral("btStorno")))
        storno->click();
    else
        dialog.reject();
}

// Any modal window that nobody here waits for (an unforeseen message) would
// stop the run for good: it is named and closed after a while.
class Watchdog : public QObject {
public:
    explicit Watchdog(std::vector<QString>& failures)
        : failures_(failures)
    {
        connect(&timer_, &QTimer::timeout, this, [this] { look(); });
        timer_.start(500);
    }

private:
    void look()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal != seen_) {
            seen_ = modal;
            since_.start();
            return;
        }
        if (modal == nullptr || since_.elapsed() < 2 * kOpenWaitMs)
            return;
        QString text = modal->windowTitle();
        if (auto* box = qobject_cast<QMessageBox*>(modal))
            text += QStringLiteral(": ") + box->text();
        const QString failure = QStringLiteral("nečekané okno zavřeno: %1").arg(text);
        say(QStringLiteral("  CHYBA: %1").arg(failure));
        failures_.push_back(failure);
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
        else
            modal->close();
        seen_ = nullptr;
    }

    std::vector<QString>& failures_;
    QPointer<QWidget> seen_;
    QElapsedTimer since_;
    QTimer timer_;
};

QString numbered(int number, const QString& rest)
{
    return QStringLiteral("%1-%2.png").arg(number, 2, 10, QLatin1Char('0')).arg(rest);
}

// A message box is left with the given button, as the technician answers it.
std::function<void(QMessageBox&)> answerWith(QMessageBox::StandardButton answer)
{
    return [answer](QMessageBox& box) {
        if (QAbstractButton* button = box.button(answer))
            button->click();
        else
            box.reject();
    };
}

// Opens a row's dialog by its button on the row's page, photographs it
// (for an analog row optionally after ticking AINNeg, which reworks the
// levels and the drawing) and leaves it with Storno.
template <class Dialog>
QString shootRowDialog(rm8::ui::MainWindow& window, Camera& camera, const char* buttonName, int row,
    const QString& name, bool negate = false)
{
    auto* button = window.field<QAbstractButton>(QString::fromLatin1(buttonName), row);
    if (button == nullptr)
        return QStringLiteral("okno nemá tlačítko %1 řádku %2").arg(QLatin1String(buttonName)).arg(row + 1);
    if (auto* tabs = window.findChild<QTabWidget*>(QStringLiteral("TabList"))) {
        for (int page = 0; page < tabs->count(); ++page)
            if (tabs->widget(page)->isAncestorOf(button))
                tabs->setCurrentIndex(page);
    }
    settle();
    return duringModal<Dialog>(
        QStringLiteral("stisk %1").arg(button->objectName()), [button] { button->click(); },
        [&](Dialog& dialog) -> QString {
            if (negate) {
                auto* negation = dialog.template findChild<QAbstractButton*>(QStringLiteral("AINNeg"));
                if (negation == nullptr)
                    return QStringLiteral("dialog %1 nemá AINNeg").arg(dialog.objectName());
                negation->click();
            }
            return camera.shoot(dialog, name);
        },
        clickStorno);
}

// What the station's settings look like while they are edited: the four
// row dialogs, a refused field, the comparison with the station, the check
// panel after a faulty file and the question before writing it.
void shootEditing(rm8::ui::MainWindow& window, ScriptedTechnician& technician, Camera& camera, int& number,
    const std::function<void(const QString&)>& keep)
{
    using namespace rm8::ui;
    auto* tabs = window.findChild<QTabWidget*>(QStringLiteral("TabList"));
    const auto button
        = [&window](const char* name) { return window.field<QAbstractButton>(QString::fromLatin1(name)); };

    say(QStringLiteral("dialogy řádků"));
    keep(
        shootRowDialog<InputDialog>(window, camera, "tabINPbt", 0, numbered(number++, QStringLiteral("dialog-vstup"))));
    keep(shootRowDialog<OutputDialog>(
        window, camera, "tabOUTbt", 0, numbered(number++, QStringLiteral("dialog-vystup"))));
    keep(shootRowDialog<AnalogDialog>(
        window, camera, "tabAINbt", 0, numbered(number++, QStringLiteral("dialog-analog"))));
    keep(shootRowDialog<PhoneDialog>(
        window, camera, "tabTCZmenit", 0, numbered(number++, QStringLiteral("dialog-tel-cislo"))));
    keep(shootRowDialog<AnalogDialog>(
        window, camera, "tabAINbt", 7, numbered(number++, QStringLiteral("dialog-analog-baterie"))));
    keep(shootRowDialog<AnalogDialog>(
        window, camera, "tabAINbt", 1, numbered(number++, QStringLiteral("dialog-analog-negace")), true));

    say(QStringLiteral("odmítnutý PIN"));
    tabs->setCurrentIndex(0);
    auto* pin = window.field<QLineEdit>(QStringLiteral("tabPIN"));
    if (pin == nullptr) {
        keep(QStringLiteral("okno nemá tabPIN"));
    } else {
        const QString original = pin->text();
        const QString name = numbered(number++, QStringLiteral("odmitnute-pole"));
        keep(duringModal<QMessageBox>(
            QStringLiteral("tabPIN \"12a4\" a Tab"),
            [&] {
                window.activateWindow();
                pin->setFocus(Qt::MouseFocusReason);
                settle();
                pin->selectAll();
                pin->insert(QStringLiteral("12a4"));
                QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
                QApplication::sendEvent(pin, &tab);
            },
            [&](QMessageBox& box) {
                say(QStringLiteral("  zpráva: %1").arg(box.text()));
                return camera.shootScreenOver(window, name);
            },
            answerWith(QMessageBox::Ok)));
        settle();
        pin->setText(original);
    }

    say(QStringLiteral("porovnání se stanicí po několika úpravách"));
    struct Edit {
        const char* field;
        int row;
        const char* text;
    };
    const Edit edits[] = {
        { "tabDobaPlatnostiSMS", -1, "14" },
        { "tabOUTimpulsLEN", 0, "1.5" },
        { "tabTC", 2, "+420604555666" },
    };
    for (const Edit& edit : edits) {
        if (auto* field = window.field<QLineEdit>(QString::fromLatin1(edit.field), edit.row))
            field->setText(QString::fromUtf8(edit.text));
        else
            keep(QStringLiteral("okno nemá %1").arg(QLatin1String(edit.field)));
    }
    auto* compare = button("btPorovnatStanici");
    if (compare == nullptr || !compare->isEnabled()) {
        keep(QStringLiteral("btPorovnatStanici chybí nebo není povoleno"));
    } else {
        compare->click();
        settle();
        auto* comparison = window.findChild<QDialog*>(QStringLiteral("Porovnani"));
        if (comparison == nullptr || !comparison->isVisible()) {
            keep(QStringLiteral("okno Porovnani se neotevřelo"));
        } else {
            keep(camera.shoot(*comparison, numbered(number++, QStringLiteral("porovnani-se-stanici"))));
            comparison->close();
        }
    }

    say(QStringLiteral("soubor s chybami"));
    const int complaints = technician.complaints();
    if (auto* load = button("btFileLoad"))
        load->click();
    settle();
    if (technician.complaints() != complaints) {
        keep(QStringLiteral("soubor s chybami se nenačetl"));
        return;
    }
    const CheckPanel* panel = window.checkPanel();
    say(QStringLiteral("  %1").arg(panel->title()));
    if (panel->errorCount() == 0) {
        keep(QStringLiteral("soubor s chybami je bez chyb"));
        return;
    }
    keep(camera.shoot(window, numbered(number++, QStringLiteral("kontrola-nastaveni"))));

    say(QStringLiteral("zápis nastavení s chybami, odpověď Ne"));
    auto* write = button("btEEPROMSave");
    if (write == nullptr) {
        keep(QStringLiteral("okno nemá btEEPROMSave"));
        return;
    }
    rm8::shell::QtInteraction boxes(&window);
    const QString name = numbered(number++, QStringLiteral("otazka-pred-zapisem"));
    keep(duringModal<QMessageBox>(
        QStringLiteral("otázka před zápisem"),
        [&] {
            technician.showNextQuestionIn(&boxes);
            write->click();
        },
        [&](QMessageBox&) { return camera.shootScreenOver(window, name); }, answerWith(QMessageBox::No)));
    technician.showNextQuestionIn(nullptr);
}

// Ends the print dialog as a user's Storno would. On Windows it is the
// system's own window, not a Qt widget: the foreground window is asked to close.
void closePrintDialog(QWidget& window)
{
#ifdef Q_OS_WIN
    HWND dialog = GetForegroundWindow();
    if (dialog != nullptr && dialog != reinterpret_cast<HWND>(window.winId()))
        PostMessageW(dialog, WM_CLOSE, 0, 0);
#else
    (void)window;
    if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
        dialog->reject();
#endif
}

// The print dialog, photographed from the screen while it is open.
void shootPrintDialog(
    rm8::ui::MainWindow& window, Camera& camera, int& number, const std::function<void(const QString&)>& keep)
{
    auto* print = window.field<QAbstractButton>(QStringLiteral("btTisk"));
    if (print == nullptr) {
        keep(QStringLiteral("okno nemá btTisk"));
        return;
    }
    say(QStringLiteral("tiskový dialog"));
    bool shot = false;
    // The dialog runs its own event loop; Qt's timers go on inside it.
    QTimer::singleShot(2000, &window, [&] {
        keep(camera.shootScreen(window, numbered(number++, QStringLiteral("tiskovy-dialog"))));
        shot = true;
        closePrintDialog(window);
    });
    print->click();
    settle();
    if (!shot)
        keep(QStringLiteral("tiskový dialog se neotevřel"));
}

// What a desktop editor adds: the step Zpět would take back, named in its
// tooltip; the recent files; the print preview.
void shootDesktopEditor(rm8::ui::MainWindow& window, rm8::shell::MainController& controller,
    const QStringList& settingsFiles, Camera& camera, int& number, const std::function<void(const QString&)>& keep)
{
    say(QStringLiteral("nedávné soubory a krok zpět"));
    for (const QString& file : settingsFiles) {
        controller.openFile(file);
        settle();
    }
    auto* name = window.field<QLineEdit>(QStringLiteral("tabJmenoStanice"));
    auto* undo = window.field<QAbstractButton>(QStringLiteral("btZpet"));
    auto* recent = window.field<QAbstractButton>(QStringLiteral("btNedavne"));
    auto* preview = window.field<QAbstractButton>(QStringLiteral("btNahled"));
    if (!name || !undo || !recent || !preview) {
        keep(QStringLiteral("okno nemá tabJmenoStanice, btZpet, btNedavne nebo btNahled"));
        return;
    }
    window.findChild<QTabWidget*>(QStringLiteral("TabList"))->setCurrentIndex(0);
    window.activateWindow();
    name->setFocus(Qt::MouseFocusReason);
    settle();
    name->setText(QStringLiteral("Vodárna Žďár"));
    // Leaving the field makes it a step.
    window.field<QLineEdit>(QStringLiteral("tabPIN"))->setFocus(Qt::TabFocusReason);
    settle();
    // Left of the button: beside it the tooltip would leave the window's picture.
    QToolTip::showText(undo->mapToGlobal(QPoint(-160, undo->height())), undo->toolTip(), undo);
    say(QStringLiteral("  %1").arg(undo->toolTip()));
    keep(camera.shootScreenOver(window, numbered(number++, QStringLiteral("krok-zpet"))));
    QToolTip::hideText();

    auto* menu = recent->findChild<QMenu*>(QStringLiteral("mnuNedavne"));
    if (menu == nullptr || menu->actions().isEmpty()) {
        keep(QStringLiteral("seznam nedávných souborů je prázdný"));
    } else {
        menu->popup(recent->mapToGlobal(recent->rect().bottomLeft()));
        keep(camera.shootScreenOver(window, numbered(number++, QStringLiteral("nedavne-soubory"))));
        menu->hide();
    }

    say(QStringLiteral("náhled tisku"));
    keep(duringModal<QPrintPreviewDialog>(
        QStringLiteral("stisk btNahled"), [preview] { preview->click(); },
        [&](QPrintPreviewDialog& dialog) {
            dialog.resize(900, 760);
            return camera.shoot(dialog, numbered(number++, QStringLiteral("nahled-tisku")));
        },
        [](QPrintPreviewDialog& dialog) { dialog.reject(); }));

    shootPrintDialog(window, camera, number, keep);
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    rm8::shell::identifyApplication();

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Snímky obrazovky programu rm8config v režimu demo."));
    parser.addHelpOption();
    const QCommandLineOption outOption(
        QStringLiteral("out"), QStringLiteral("Složka pro obrázky PNG."), QStringLiteral("SLOŽKA"));
    const QCommandLineOption eepromOption(QStringLiteral("eeprom"),
        QStringLiteral("Nastavení v EEPROM simulované stanice (kopie souboru)."), QStringLiteral("SOUBOR.eep"),
        QStringLiteral(RM8_SAMPLE_EEPROM));
    const QCommandLineOption faultyOption(QStringLiteral("faulty"),
        QStringLiteral("Soubor nastavení s chybami pro panel Kontrola nastavení a otázku před zápisem."),
        QStringLiteral("SOUBOR.eep"),
        QFileInfo(QStringLiteral(RM8_SAMPLE_EEPROM)).dir().filePath(QStringLiteral("faulty_station.eep")));
    const QCommandLineOption sizeOption(QStringLiteral("size-code"),
        QStringLiteral("Kód velikosti paměti simulované stanice (0..9)."), QStringLiteral("N"), QStringLiteral("6"));
    const QCommandLineOption simulatorOption(
        QStringLiteral("simulator"), QStringLiteral("Program rm8sim."), QStringLiteral("CESTA"));
    const QCommandLineOption deviceOption(QStringLiteral("device"),
        QStringLiteral("Port se stanicí místo simulátoru (např. COM5)."), QStringLiteral("PORT"));
    parser.addOptions({ outOption, eepromOption, faultyOption, sizeOption, simulatorOption, deviceOption });
    parser.process(app);
    if (!parser.isSet(outOption)) {
        std::fprintf(stderr, "rm8shots: --out SLOŽKA je povinná\n");
        return 2;
    }
    QDir out(parser.value(outOption));
    if (!out.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "rm8shots: složku %s nelze vytvořit\n", qPrintable(out.path()));
        return 2;
    }

    // The simulator writes its EEPROM back into the file on exit; the sample
    // itself stays as it is.
    QTemporaryDir scratch;
    rm8::shell::DemoStation demo;
    QString device = parser.value(deviceOption);
    if (device.isEmpty()) {
        const QString eeprom = scratch.filePath(QStringLiteral("station.eep"));
        if (!scratch.isValid() || !QFile::copy(parser.value(eepromOption), eeprom)) {
            std::fprintf(stderr, "rm8shots: soubor %s nelze zkopírovat\n", qPrintable(parser.value(eepromOption)));
            return 2;
        }
        const QString simulator = parser.isSet(simulatorOption) ? parser.value(simulatorOption)
                                                                : rm8::shell::DemoStation::findSimulator();
        if (simulator.isEmpty()) {
            std::fprintf(stderr, "rm8shots: program rm8sim nebyl nalezen vedle programu ani v cestě PATH\n");
            return 2;
        }
        const auto started = demo.start(
            simulator, { QStringLiteral("--eeprom"), eeprom, QStringLiteral("--size-code"), parser.value(sizeOption) });
        if (!started) {
            std::fprintf(stderr, "rm8shots: %s\n", qPrintable(started.error()));
            return 1;
        }
        device = *started;
        say(QStringLiteral("simulovaná stanice: %1").arg(device));
    } else {
        say(QStringLiteral("stanice na portu %1").arg(device));
    }

    // As rm8config --demo, except that the remembered port assignments are
    // not read: the pictures must not depend on whose machine made them.
    rm8::link::PortMap ports = rm8::link::PortMap::platformDefault();
    ports.set(1, device.toStdString());

    rm8::ui::MainWindow window;
    if (!parser.isSet(deviceOption))
        window.setWindowTitle(window.windowTitle() + QStringLiteral(" (demo)"));
    ScriptedTechnician technician;
    rm8::shell::MainController::Options options;
    options.ports = ports;
    // "Načíst nastavení ze souboru" takes the faulty file without a dialog.
    const QString faulty = parser.value(faultyOption);
    options.fileChooser = [&faulty](rm8::shell::FileDialogKind kind) -> std::optional<QString> {
        if (kind == rm8::shell::FileDialogKind::Open)
            return faulty;
        return std::nullopt;
    };
    rm8::shell::MainController controller(window, technician, std::move(options));
    window.show();
    settle();

    auto* tabs = window.findChild<QTabWidget*>(QStringLiteral("TabList"));
    auto* activate = window.findChild<QAbstractButton*>(QStringLiteral("btDEA"));
    auto* read = window.findChild<QAbstractButton*>(QStringLiteral("btEEPROMLoad"));
    auto* about = window.findChild<QAbstractButton*>(QStringLiteral("btInformace"));
    auto* portSettings = window.findChild<QAbstractButton*>(QStringLiteral("btPortSettings"));
    if (!tabs || !activate || !read || !about || !portSettings) {
        std::fprintf(stderr, "rm8shots: the main window lacks a widget it is driven through\n");
        return 2;
    }
    if (tabs->count() != kPageCount) {
        std::fprintf(stderr, "rm8shots: the tab strip has %d pages, the tool names %d\n", tabs->count(), kPageCount);
        return 2;
    }

    std::vector<QString> failures;
    const auto keep = [&failures](const QString& result) {
        if (!result.isEmpty()) {
            say(QStringLiteral("  CHYBA: %1").arg(result));
            failures.push_back(result);
        }
    };
    const Watchdog watchdog(failures);
    Camera camera(out);
    int number = 1;
    const auto shootPages = [&](const QString& prefix) {
        for (int page = 0; page < kPageCount; ++page) {
            tabs->setCurrentIndex(page);
            keep(camera.shoot(window, numbered(number++, prefix + QLatin1String(kPageSlugs[page]))));
        }
    };

    say(QStringLiteral("okno %1x%2, stránky po spuštění").arg(window.width()).arg(window.height()));
    shootPages({});
    tabs->setCurrentIndex(0);
    keep(shootModal<rm8::shell::AboutDialog>(*about, camera, numbered(number++, QStringLiteral("informace"))));
    keep(shootModal<rm8::shell::PortSettingsDialog>(
        *portSettings, camera, numbered(number++, QStringLiteral("nastaveni-portu"))));

    say(QStringLiteral("aktivace a načtení z EEPROM"));
    activate->click();
    settle();
    if (activate->text() != QStringLiteral("Deaktivovat")) {
        std::fprintf(stderr, "rm8shots: the station was not activated\n");
        return 1;
    }
    const int complaintsBefore = technician.complaints();
    const int messagesBefore = technician.messages();
    read->click();
    // Every read ends with a message; a warning or an error means it failed.
    if (technician.messages() == messagesBefore || technician.complaints() != complaintsBefore) {
        std::fprintf(stderr, "rm8shots: reading the station failed\n");
        return 1;
    }
    keep(camera.shoot(window, numbered(number++, QStringLiteral("nacteno"))));

    // A small screen's whole desktop, on the pages as they are after the read.
    window.resize(1024, 768);
    settle();
    if (window.size() != QSize(1024, 768)) {
        keep(QStringLiteral("okno nejde zmenšit na 1024x768 (nejmenší %1x%2)")
                 .arg(window.minimumSizeHint().width())
                 .arg(window.minimumSizeHint().height()));
    }
    say(QStringLiteral("okno %1x%2, stránky po načtení").arg(window.width()).arg(window.height()));
    shootPages(QStringLiteral("1024x768-"));
    tabs->setCurrentIndex(0);

    // 18 is the first page of the settings report, which the script adds.
    number = 19;
    shootEditing(window, technician, camera, number, keep);
    const QDir examples = QFileInfo(QStringLiteral(RM8_SAMPLE_EEPROM)).dir();
    shootDesktopEditor(window, controller,
        { examples.filePath(QStringLiteral("pumping_station.eep")), parser.value(eepromOption) }, camera, number,
        keep);

    // Out of programming mode, as a technician would leave the station.
    activate->click();
    settle();
    demo.stop();

    if (!failures.empty()) {
        std::fprintf(stderr, "rm8shots: %zu of the pictures failed\n", failures.size());
        return 1;
    }
    return 0;
}
