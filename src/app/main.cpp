// rm8config: the main window and its commands. Options:
//   --port "COM 1=/dev/ttyUSB0"  the device behind a port-list entry, for this
//                                run (repeatable); the port dialog remembers
//                                assignments between runs
//   --demo                       a simulated station (rm8sim) behind "COM 1"
//   --print-pdf OUT.pdf [FILE]   the settings report of FILE (*.eep or settings
//                                JSON), or of the start-up settings, into a PDF;
//                                no window is shown and no display is needed
//   FILE                         a settings file opened in the window

#include <cstdio>
#include <tuple>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QSettings>
#include <QTimer>

#include "app/command_line.h"
#include "ctl/configuration_input.h"
#include "platform/console.h"
#include "report/report_content.h"
#include "shell/application_info.h"
#include "shell/demo_station.h"
#include "shell/main_controller.h"
#include "shell/port_settings.h"
#include "shell/qt_interaction.h"
#include "shell/report_printer.h"
#include "ui/check_panel.h"
#include "ui/main_window.h"

namespace {

// What btTisk would print for one copy, the settings having passed through
// the window's fields as they would on screen.
int printPdf(const QString& target, const QStringList& files)
{
    if (files.size() > 1) {
        std::fprintf(stderr, "rm8config: --print-pdf: nejvýše jeden soubor nastavení, zadáno %lld\n",
                     static_cast<long long>(files.size()));
        return 2;
    }
    rm8::StationSettings settings;
    if (!files.isEmpty()) {
        auto loaded = rm8::ctl::loadConfiguration(files.front().toStdString());
        if (!loaded) {
            std::fprintf(stderr, "rm8config: %s\n", loaded.error().c_str());
            return 2;
        }
        settings = loaded->settings;
    }
    rm8::ui::MainWindow window;
    window.fillSettings(settings);
    window.readSettings(settings);
    if (auto written = rm8::shell::writeReportPdf(target, rm8::report::buildReport(settings)); !written) {
        std::fprintf(stderr, "rm8config: Soubor '%s' nelze zapsat: %s\n", qUtf8Printable(target),
                     qUtf8Printable(written.error()));
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    // What it prints (help, version, a refused argument) is UTF-8, as on Linux.
    rm8::platform::attachParentConsole();
    rm8::platform::useUtf8Console();
    const auto parsed = rm8::app::parseCommandLine(argc, argv);
    if (const int* status = std::get_if<int>(&parsed))
        return *status;
    const auto& line = std::get<rm8::app::CommandLine>(parsed);

    // The report needs fonts but no screen.
    if (line.printPdf) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef Q_OS_WIN
        // Off the screen Qt looks for fonts only in a folder of its own; the
        // report's fonts are the system's.
        if (qEnvironmentVariableIsEmpty("QT_QPA_FONTDIR"))
            qputenv("QT_QPA_FONTDIR", qgetenv("WINDIR") + "\\Fonts");
#endif
        // A script reads one line on failure, not Qt's remarks on its setup.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtCriticalMsg || type == QtFatalMsg)
                std::fprintf(stderr, "rm8config: %s\n", qUtf8Printable(text));
        });
    }
    QApplication app(argc, argv);
    rm8::shell::identifyApplication();
    if (line.printPdf)
        return printPdf(*line.printPdf, line.files);

    rm8::link::PortMap ports = rm8::link::PortMap::platformDefault();
    QSettings remembered;
    rm8::shell::loadPortAssignments(remembered, ports);
    for (const QString& assignment : line.portAssignments) {
        if (auto assigned = ports.assign(assignment.toStdString()); !assigned) {
            std::fprintf(stderr, "rm8config: --port %s: %s\n", qUtf8Printable(assignment), assigned.error().c_str());
            return 2;
        }
    }

    rm8::shell::DemoStation demo;
    if (line.demo) {
        const QString simulator = rm8::shell::DemoStation::findSimulator();
        auto device = simulator.isEmpty()
                          ? rm8::Expected<QString, QString>(rm8::unexpected(
                                QStringLiteral("Program rm8sim nebyl nalezen vedle programu ani v cestě PATH.")))
                          : demo.start(simulator);
        if (!device) {
            QMessageBox::critical(nullptr, rm8::shell::applicationTitle(), device.error());
            return 1;
        }
        ports.set(1, device->toStdString());
    }
    // However the event loop ends, the simulator goes with it.
    QObject::connect(&app, &QCoreApplication::aboutToQuit, [&demo] { demo.stop(); });

    rm8::ui::MainWindow window;
    if (line.demo)
        window.setWindowTitle(window.windowTitle() + QStringLiteral(" (demo)"));
    rm8::shell::QtInteraction interaction(&window);
    // The read-back box keeps the technician's last choice between runs.
    // So does the backup box.
    for (auto [name, key, initial] : {std::tuple{"CheckWrite", "checkWrite", true},
                                      std::tuple{"CheckBackup", "backupBeforeWrite", false}}) {
        auto* box = window.field<QAbstractButton>(QString::fromLatin1(name));
        const QString setting = QString::fromLatin1(key);
        box->setChecked(remembered.value(setting, initial).toBool());
        QObject::connect(box, &QAbstractButton::toggled, [setting](bool on) { QSettings().setValue(setting, on); });
    }

    rm8::shell::MainController::Options options;
    options.ports = ports;
    options.store = &remembered;
    options.remember = [](const rm8::link::PortMap& chosen) {
        QSettings store;
        rm8::shell::savePortAssignments(store, chosen);
    };
    rm8::shell::MainController controller(window, interaction, std::move(options));
    QObject::connect(&controller, &rm8::shell::MainController::exitRequested, &app, &QCoreApplication::quit,
                     Qt::QueuedConnection);

    // The window comes back where and as it was left.
    window.restoreGeometry(remembered.value(QStringLiteral("windowGeometry")).toByteArray());
    if (remembered.contains(QStringLiteral("checkPanelExpanded")))
        window.checkPanel()->setExpanded(remembered.value(QStringLiteral("checkPanelExpanded")).toBool());
    QObject::connect(&controller, &rm8::shell::MainController::exitRequested, [&window] {
        QSettings store;
        store.setValue(QStringLiteral("windowGeometry"), window.saveGeometry());
        store.setValue(QStringLiteral("checkPanelExpanded"), window.checkPanel()->isExpanded());
    });

    window.show();
    if (!line.files.isEmpty())
        QTimer::singleShot(0, &controller, [&controller, file = line.files.front()] { controller.openFile(file); });
    return QApplication::exec();
}
