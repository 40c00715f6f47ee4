#include "shell/demo_station.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#endif

namespace rm8::shell {
namespace {

const QString kSimulatorName = QStringLiteral("rm8sim");

} // namespace

QString DemoStation::findSimulator()
{
    const QString beside = QDir(QCoreApplication::applicationDirPath()).filePath(kSimulatorName);
    if (QFileInfo(beside).isExecutable())
        return beside;
    return QStandardPaths::findExecutable(kSimulatorName);
}

Expected<QString, QString> DemoStation::start(const QString& program, const QStringList& arguments, int timeoutMs)
{
    stop();
    process_.setProgram(program);
    process_.setArguments(arguments);
    // The simulator's diagnostics belong on the terminal the program was
    // started from; only its first line of output is read here.
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
#ifdef Q_OS_LINUX
    // Runs in the child between fork and exec: the kernel sends SIGTERM when
    // this program's thread that started it ends, however it ends.
    const pid_t parent = ::getpid();
    process_.setChildProcessModifier([parent] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        // The program may have died before the request was made.
        if (::getppid() != parent)
            ::_exit(1);
    });
#endif
    process_.start(QIODevice::ReadOnly);
    if (!process_.waitForStarted(timeoutMs))
        return unexpected(QStringLiteral("Simulovanou stanici '%1' nelze spustit: %2").arg(program, process_.errorString()));

    const QDeadlineTimer deadline(timeoutMs);
    while (!process_.canReadLine()) {
        if (process_.state() == QProcess::NotRunning || deadline.hasExpired()
            || !process_.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
            // A last look: the line may have come together with the exit.
            if (process_.canReadLine())
                break;
            stop();
            return unexpected(QStringLiteral("Simulovaná stanice '%1' neoznámila svůj port.").arg(program));
        }
    }
    const QString device = QString::fromLocal8Bit(process_.readLine()).trimmed();
    if (device.isEmpty()) {
        stop();
        return unexpected(QStringLiteral("Simulovaná stanice '%1' neoznámila svůj port.").arg(program));
    }
    return device;
}

void DemoStation::stop()
{
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.terminate();
    if (!process_.waitForFinished(3000)) {
        process_.kill();
        process_.waitForFinished(3000);
    }
}

} // namespace rm8::shell
