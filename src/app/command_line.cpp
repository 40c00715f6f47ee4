#include "app/command_line.h"

#include <cstdio>

#include <QCommandLineParser>
#include <QCoreApplication>

#include "shell/application_info.h"

namespace rm8::app {
namespace {

// The options that QGuiApplication and QApplication take for themselves;
// parsed here only so that they are not mistaken for mistakes.
const char* const kQtOptionsWithValue[]
    = { "platform", "platformpluginpath", "platformtheme", "plugin", "qwindowgeometry", "qwindowicon", "qwindowtitle",
          "style", "stylesheet", "session", "display", "geometry", "title" };
const char* const kQtFlags[] = { "reverse", "widgetcount", "nograb", "dograb", "sync" };

void addQtOptions(QCommandLineParser& parser)
{
    for (const char* name : kQtOptionsWithValue) {
        QCommandLineOption option(QString::fromLatin1(name), QString(), QStringLiteral("value"));
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
    for (const char* name : kQtFlags) {
        QCommandLineOption option(QString::fromLatin1(name));
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
}

} // namespace

std::variant<CommandLine, int> parseCommandLine(int argc, char* argv[])
{
    // A core application reads the arguments and the translations without
    // asking for a display; the window's application comes after it.
    const QCoreApplication probe(argc, argv);
    shell::identifyApplication();

    QCommandLineParser parser;
    // Qt's own options are written with one dash: -platform offscreen.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(shell::programName());
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption port(QStringLiteral("port"),
        QStringLiteral("Zařízení pro port ze seznamu, např. \"COM 1=/dev/ttyUSB0\" (lze opakovat)."),
        QStringLiteral("COM n=zařízení"));
    const QCommandLineOption demo(
        QStringLiteral("demo"), QStringLiteral("Simulovaná stanice (rm8sim) na portu COM 1."));
    const QCommandLineOption pdf(QStringLiteral("print-pdf"),
        QStringLiteral("Tiskovou sestavu nastavení (ze SOUBORU, jinak výchozích) uloží do PDF a skončí."),
        QStringLiteral("VÝSTUP.pdf"));
    parser.addOptions({ port, demo, pdf });
    addQtOptions(parser);
    parser.addPositionalArgument(QStringLiteral("SOUBOR"),
        QStringLiteral("Soubor nastavení (*.eep) nebo nastavení JSON: otevře se v okně, s --print-pdf se vytiskne."),
        QStringLiteral("[SOUBOR]"));

    if (!parser.parse(QCoreApplication::arguments())) {
        std::fprintf(stderr, "rm8config: %s (viz rm8config --help)\n", qUtf8Printable(parser.errorText()));
        return 2;
    }
    if (parser.isSet(help)) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.isSet(version)) {
        std::printf("%s %s\n", qUtf8Printable(shell::programName()), qUtf8Printable(shell::programVersion()));
        return 0;
    }
    CommandLine line;
    line.portAssignments = parser.values(port);
    line.demo = parser.isSet(demo);
    if (parser.isSet(pdf))
        line.printPdf = parser.value(pdf);
    line.files = parser.positionalArguments();
    // One window holds one configuration.
    if (!line.printPdf && line.files.size() > 1) {
        std::fprintf(stderr, "rm8config: v okně lze otevřít nejvýše jeden soubor nastavení, zadáno %lld\n",
            static_cast<long long>(line.files.size()));
        return 2;
    }
    return line;
}

} // namespace rm8::app
