// rm8config as a program: its options, and the simulated station that
// --demo starts, which must end however the program ends.

#include <csignal>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

namespace {

const QString kProgram = QStringLiteral(RM8CONFIG_PATH);

// The children of a process, from /proc.
QList<qint64> childrenOf(qint64 pid)
{
    QList<qint64> children;
    QFile file(QStringLiteral("/proc/%1/task/%1/children").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return children;
    for (const QByteArray& word : file.readAll().split(' '))
        if (!word.trimmed().isEmpty())
            children << word.trimmed().toLongLong();
    return children;
}

QString commandOf(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/comm").arg(pid));
    return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()).trimmed() : QString();
}

// Gone, or a zombie waiting for whoever adopted it: either way it has ended.
bool ended(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return true;
    const QByteArray stat = file.readAll();
    const qsizetype close = stat.lastIndexOf(')');
    return close < 0 || stat.mid(close + 2, 1) == "Z";
}

QStringList offscreen(QStringList arguments)
{
    arguments << QStringLiteral("-platform") << QStringLiteral("offscreen");
    return arguments;
}

} // namespace

class TestRm8configProgram : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The remembered port assignments of this run stay out of the
        // user's own settings.
        qputenv("XDG_CONFIG_HOME", QDir::tempPath().toLocal8Bit() + "/rm8config-test-config");
    }

    void badPortOptionsEndWithUsageError_data()
    {
        QTest::addColumn<QString>("assignment");
        QTest::newRow("no equals sign") << QStringLiteral("COM 1");
        QTest::newRow("not a port name") << QStringLiteral("ttyUSB0=/dev/ttyUSB0");
        QTest::newRow("no device") << QStringLiteral("COM 2=");
    }
    void badPortOptionsEndWithUsageError()
    {
        QFETCH(QString, assignment);
        QProcess program;
        program.start(kProgram, offscreen({QStringLiteral("--port"), assignment}));
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 2);
        const QString error = QString::fromUtf8(program.readAllStandardError());
        QVERIFY2(error.contains(QStringLiteral("--port")), qPrintable(error));
    }

    void versionIsTheProjectVersion()
    {
        QProcess program;
        program.start(kProgram, offscreen({QStringLiteral("--version")}));
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(QString::fromUtf8(program.readAllStandardOutput()).contains(QStringLiteral(RM8_PROJECT_VERSION)));
    }

    // Killed outright, the program cannot clean up: the system must end the
    // simulator for it. Terminated, the program ends it itself.
    void demoStationEndsWithTheProgram_data()
    {
        QTest::addColumn<bool>("killed");
        QTest::newRow("killed") << true;
        QTest::newRow("terminated") << false;
    }
    void demoStationEndsWithTheProgram()
    {
        QFETCH(bool, killed);
        QProcess program;
        program.start(kProgram, offscreen({QStringLiteral("--demo")}));
        QVERIFY(program.waitForStarted(20000));
        qint64 simulator = 0;
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                for (const qint64 child : childrenOf(program.processId()))
                    if (commandOf(child) == QStringLiteral("rm8sim"))
                        simulator = child;
                return simulator != 0;
            }(),
            20000);
        QVERIFY(!ended(simulator));
        if (killed)
            ::kill(static_cast<pid_t>(program.processId()), SIGKILL);
        else
            program.terminate();
        QVERIFY(program.waitForFinished(20000));
        QTRY_VERIFY_WITH_TIMEOUT(ended(simulator), 10000);
    }
};

QTEST_MAIN(TestRm8configProgram)
#include "tst_rm8config_program.moc"
