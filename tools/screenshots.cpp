// rm8shots: photographs rm8config for the README. The window, its commands,
// its dialogs and the simulated station behind "COM 1" are the program's
// own, put together as `rm8config --demo` does; only the technician is a
// script, which answers every message box with OK or Yes and prints what it
// was shown. Run it on a real display (scripts/screenshots.sh uses Xvfb), so
// the pictures are drawn as a user sees them.
//
//   rm8shots --out DIR [--eeprom FILE.eep] [--size-code N] [--simulator PATH]

#include <cstdio>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>

#include "flow/interaction.h"
#include "link/port_map.h"
#include "shell/about_dialog.h"
#include "shell/application_info.h"
#include "shell/demo_station.h"
#include "shell/main_controller.h"
#include "shell/port_settings_dialog.h"
#include "ui/main_window.h"

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
    Answer ask(MessageIcon, std::string_view question, Buttons buttons) override
    {
        say(QStringLiteral("  otázka (odpověď Ano): %1").arg(rm8::shell::fromCore(question)));
        return buttons == Buttons::Ok ? Answer::Ok : Answer::Yes;
    }

    int messages() const { return messages_; }
    int complaints() const { return complaints_; }

private:
    int messages_ = 0;
    int complaints_ = 0;
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

// Presses the button, photographs the modal dialog it opens from inside the
// dialog's own event loop, and closes it as Escape would.
template <class Dialog> QString shootModal(QAbstractButton& button, Camera& camera, const QString& name)
{
    QString result = QStringLiteral("okno po stisku %1 se neotevřelo").arg(button.objectName());
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog && dialog->isVisible()) {
            poll.stop();
            result = camera.shoot(*dialog, name);
            dialog->reject();
        } else if (clock.elapsed() > 10000) {
            poll.stop();
        }
    });
    poll.start(20);
    button.click();
    poll.stop();
    return result;
}

QString numbered(int number, const QString& rest)
{
    return QStringLiteral("%1-%2.png").arg(number, 2, 10, QLatin1Char('0')).arg(rest);
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
    const QCommandLineOption sizeOption(QStringLiteral("size-code"),
        QStringLiteral("Kód velikosti paměti simulované stanice (0..9)."), QStringLiteral("N"), QStringLiteral("6"));
    const QCommandLineOption simulatorOption(
        QStringLiteral("simulator"), QStringLiteral("Program rm8sim."), QStringLiteral("CESTA"));
    parser.addOptions({ outOption, eepromOption, sizeOption, simulatorOption });
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
    const QString eeprom = scratch.filePath(QStringLiteral("station.eep"));
    if (!scratch.isValid() || !QFile::copy(parser.value(eepromOption), eeprom)) {
        std::fprintf(stderr, "rm8shots: soubor %s nelze zkopírovat\n", qPrintable(parser.value(eepromOption)));
        return 2;
    }
    const QString simulator
        = parser.isSet(simulatorOption) ? parser.value(simulatorOption) : rm8::shell::DemoStation::findSimulator();
    if (simulator.isEmpty()) {
        std::fprintf(stderr, "rm8shots: program rm8sim nebyl nalezen vedle programu ani v cestě PATH\n");
        return 2;
    }
    rm8::shell::DemoStation demo;
    const auto device = demo.start(
        simulator, { QStringLiteral("--eeprom"), eeprom, QStringLiteral("--size-code"), parser.value(sizeOption) });
    if (!device) {
        std::fprintf(stderr, "rm8shots: %s\n", qPrintable(device.error()));
        return 1;
    }
    say(QStringLiteral("simulovaná stanice: %1").arg(*device));

    // As rm8config --demo, except that the remembered port assignments are
    // not read: the pictures must not depend on whose machine made them.
    rm8::link::PortMap ports = rm8::link::PortMap::platformDefault();
    ports.set(1, device->toStdString());

    rm8::ui::MainWindow window;
    window.setWindowTitle(window.windowTitle() + QStringLiteral(" (demo)"));
    ScriptedTechnician technician;
    rm8::shell::MainController::Options options;
    options.ports = ports;
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
        std::fprintf(stderr, "rm8shots: the demo station was not activated\n");
        return 1;
    }
    const int complaintsBefore = technician.complaints();
    const int messagesBefore = technician.messages();
    read->click();
    // Every read ends with a message; a warning or an error means it failed.
    if (technician.messages() == messagesBefore || technician.complaints() != complaintsBefore) {
        std::fprintf(stderr, "rm8shots: reading the demo station failed\n");
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
