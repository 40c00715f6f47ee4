// rm8config as a program: the simulated station that --demo starts must end
// even when the program is killed.

#include <csignal>

#include "window_tests.h"

namespace {

QByteArray fromProc(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestRm8configProgram : public QObject {
    Q_OBJECT

private slots:
    // Killed outright, the program cannot end the simulator itself: the
    // system must do it. It is found among the program's children; once
    // ended it is gone, or a zombie waiting for whoever adopted it.
    void demoStationEndsWithAKilledProgram()
    {
        // The remembered port assignments of the run stay out of the user's own settings.
        qputenv("XDG_CONFIG_HOME", QDir::tempPath().toLocal8Bit() + "/rm8config-test-config");
        QProcess program;
        program.start(QStringLiteral(RM8CONFIG_PATH), { "--demo", "-platform", "offscreen" });
        // Until the child has started the simulator it is still a copy of the program.
        const auto child = [&] {
            return QString::fromLatin1(fromProc(QStringLiteral("/proc/%1/task/%1/children").arg(program.processId())))
                .section(u' ', 0, 0);
        };
        QTRY_COMPARE_WITH_TIMEOUT(fromProc("/proc/" + child() + "/comm").trimmed(), QByteArray("rm8sim"), 20000);
        const QString simulator = child();
        ::kill(pid_t(program.processId()), SIGKILL);
        QVERIFY(program.waitForFinished(20000));
        const auto stat = [&] { return fromProc(QStringLiteral("/proc/%1/stat").arg(simulator)); };
        QTRY_VERIFY_WITH_TIMEOUT(stat().isEmpty() || stat().contains("(rm8sim) Z"), 10000);
    }
};

QTEST_MAIN(TestRm8configProgram)
#include "tst_rm8config_program.moc"
