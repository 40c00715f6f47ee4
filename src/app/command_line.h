#pragma once
// rm8config's arguments, read before any window exists: --help, --version and
// a mistyped option answer on a machine without a display, and a script gets
// one line and status 2 for a bad argument instead of a window.

#include <optional>
#include <variant>

#include <QString>
#include <QStringList>

namespace rm8::app {

struct CommandLine {
    QStringList portAssignments; // "COM n=device", each --port
    bool demo = false;
    std::optional<QString> printPdf; // the PDF to write, then end
    QStringList files;
};

// The arguments, or the exit status once help, the version or an error was
// printed. Qt's own window options (-platform, -style, ...) are let through
// for the application object that comes next.
std::variant<CommandLine, int> parseCommandLine(int argc, char* argv[]);

} // namespace rm8::app
