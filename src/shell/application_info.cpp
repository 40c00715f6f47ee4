#include "shell/application_info.h"

#include <string_view>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#ifndef RM8_VERSION
#error "RM8_VERSION comes from the project version in CMake"
#endif

namespace rm8::shell {

QString applicationTitle()
{
    return QString::fromUtf8(kApplicationTitle);
}

QString programName()
{
    return QString::fromUtf8(kProgramName);
}

QString programVersion()
{
    return QStringLiteral(RM8_VERSION);
}

void identifyApplication()
{
    QCoreApplication::setOrganizationName(QString::fromUtf8(kOrganisationName));
    QCoreApplication::setApplicationName(QString::fromUtf8(kSettingsApplicationName));
    // No display name: the window manager would show it after every
    // window's own caption, and the main window's caption is the name.
    QCoreApplication::setApplicationVersion(programVersion());
    // The standard texts of Qt's own dialogs and buttons in Czech, as the
    // rest of the program speaks; without the translations they stay English.
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QLocale(QLocale::Czech), QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
}

QString fromCore(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace rm8::shell
