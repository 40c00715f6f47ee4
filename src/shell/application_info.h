#pragma once
// The names the program shows and stores under. Message boxes carry the
// short title "RM8", as the progress window does; the main window keeps its
// long caption.

#include <string_view>

#include <QString>

namespace rm8::shell {

inline constexpr char kApplicationTitle[] = "RM8";
inline constexpr char kProgramName[] = "Inicializační program pro zařízení RM8";

// Where QSettings keeps the port assignments.
inline constexpr char kOrganisationName[] = "RM8";
inline constexpr char kSettingsApplicationName[] = "rm8config";

QString applicationTitle();
QString programName();
// The project version the build was made from, e.g. "0.1.0".
QString programVersion();

// Names the running application as rm8config: where its settings are kept,
// the name dialogs show, the version --version prints. Call it right after
// the QApplication is made.
void identifyApplication();

// A core text (UTF-8) for a widget.
QString fromCore(std::string_view text);

} // namespace rm8::shell
