// rm8config as a program: its options, and the simulated station that
// --demo starts, which must end even when the program is killed.

#include <csignal>

#include <QDir>
#include <QFile>
#include <QProcess>

#include "json_cases.h"

namespace {

QByteArray fromProc(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestRm8configProgram : public QObject {
    Q_OBJECT
    QProcess program;

    void start(QStringList arguments)
    {
        // The remembered port assignments of a run stay out of the user's own settings.
        qputenv("XDG_CONFIG_HOME", QDir::tempPath().toLocal8Bit() + "/rm8config-test-config");
        program.start(QStringLiteral(RM8CONFIG_PATH), arguments << QStringLiteral("-platform") << QStringLiteral("offscreen"));
    }

private slots:
    void options_data() { rm8::test::addJsonCases("rm8config_options.json"); }
    void options()
    {
        FETCH_CASE(c);
        QStringList arguments;
        for (const auto& argument : c["arguments"])
            arguments << rm8::test::qs(argument);
        start(arguments);
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), c["exit"].get<int>());
        const bool error = c.contains("stderr");
        const QString said = QString::fromUtf8(error ? program.readAllStandardError() : program.readAllStandardOutput());
        const QString expected = rm8::test::qs(c[error ? "stderr" : "stdout"])
                                     .replace(QLatin1String("@PROJECT_VERSION@"), QLatin1String(RM8_PROJECT_VERSION));
        QVERIFY2(said.contains(expected), qPrintable(said));
    }

    // Killed outright, the program cannot end the simulator itself: the
    // system must do it. It is found among the program's children; once
    // ended it is gone, or a zombie waiting for whoever adopted it.
    void demoStationEndsWithAKilledProgram()
    {
        start({QStringLiteral("--demo")});
        QVERIFY(program.waitForStarted(20000));
        const QString children = QStringLiteral("/proc/%1/task/%1/children").arg(program.processId());
        QTRY_VERIFY_WITH_TIMEOUT(!fromProc(children).trimmed().isEmpty(), 20000);
        const QString simulator = QString::fromLatin1(fromProc(children).trimmed().split(' ').front());
        QCOMPARE(fromProc(QStringLiteral("/proc/%1/comm").arg(simulator)).trimmed(), QByteArray("rm8sim"));
        ::kill(pid_t(program.processId()), SIGKILL);
        QVERIFY(program.waitForFinished(20000));
        const auto ended = [&] {
            const QByteArray stat = fromProc(QStringLiteral("/proc/%1/stat").arg(simulator));
            return stat.isEmpty() || stat.mid(stat.lastIndexOf(')') + 2, 1) == "Z";
        };
        QTRY_VERIFY_WITH_TIMEOUT(ended(), 10000);
    }
};

QTEST_MAIN(TestRm8configProgram)
#include "tst_rm8config_program.moc"
