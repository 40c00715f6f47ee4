// rm8config: the main window and its commands. Options:
//   --port "COM 1=/dev/ttyUSB0"  the device behind a port-list entry, for this
//                                run (repeatable); the port dialog remembers
//                                assignments between runs
//   --demo                       a simulated station (rm8sim) behind "COM 1"

#include <cstdio>

#include <QAbstractButton>
#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QSettings>

#include "shell/application_info.h"
#include "shell/demo_station.h"
#include "shell/main_controller.h"
#include "shell/port_settings.h"
#include "shell/qt_interaction.h"
#include "ui/main_window.h"

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    rm8::shell::identifyApplication();

    QCommandLineParser parser;
    parser.setApplicationDescription(rm8::shell::programName());
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption portOption(
        QStringLiteral("port"), QStringLiteral("Zařízení pro port ze seznamu, např. \"COM 1=/dev/ttyUSB0\" (lze opakovat)."),
        QStringLiteral("COM n=zařízení"));
    const QCommandLineOption demoOption(QStringLiteral("demo"),
                                        QStringLiteral("Simulovaná stanice (rm8sim) na portu COM 1."));
    parser.addOption(portOption);
    parser.addOption(demoOption);
    parser.process(app);

    rm8::link::PortMap ports = rm8::link::PortMap::platformDefault();
    QSettings remembered;
    rm8::shell::loadPortAssignments(remembered, ports);
    for (const QString& assignment : parser.values(portOption)) {
        if (auto assigned = ports.assign(assignment.toStdString()); !assigned) {
            std::fprintf(stderr, "rm8config: --port %s: %s\n", qPrintable(assignment), assigned.error().c_str());
            return 2;
        }
    }

    rm8::shell::DemoStation demo;
    if (parser.isSet(demoOption)) {
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
    if (parser.isSet(demoOption))
        window.setWindowTitle(window.windowTitle() + QStringLiteral(" (demo)"));
    rm8::shell::QtInteraction interaction(&window);
    // The read-back box keeps the technician's last choice between runs.
    if (auto* checkWrite = window.field<QAbstractButton>(QStringLiteral("CheckWrite"))) {
        checkWrite->setChecked(remembered.value(QStringLiteral("checkWrite"), true).toBool());
        QObject::connect(checkWrite, &QAbstractButton::toggled,
                         [](bool on) { QSettings().setValue(QStringLiteral("checkWrite"), on); });
    }

    rm8::shell::MainController::Options options;
    options.ports = ports;
    options.remember = [](const rm8::link::PortMap& chosen) {
        QSettings store;
        rm8::shell::savePortAssignments(store, chosen);
    };
    rm8::shell::MainController controller(window, interaction, std::move(options));
    QObject::connect(&controller, &rm8::shell::MainController::exitRequested, &app, &QCoreApplication::quit,
                     Qt::QueuedConnection);

    window.show();
    return QApplication::exec();
}
