#include "shell/application_info.h"

#include <string_view>

#include <QCoreApplication>
#include <QGuiApplication>

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
    QGuiApplication::setApplicationDisplayName(programName());
    QCoreApplication::setApplicationVersion(programVersion());
}

QString fromCore(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace rm8::shell
