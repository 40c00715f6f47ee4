// rm8config as a program: its answers on a machine without a display, and the
// simulated station that --demo starts must end even when the program is
// killed.

#include <csignal>

#include "window_tests.h"

namespace {

#ifdef Q_OS_LINUX
QByteArray fromProc(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
#endif

} // namespace

class TestRm8configProgram : public QObject {
    Q_OBJECT

private slots:
    void answersWithoutADisplay_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        QTest::newRow("help") << QStringList { "--help" } << 0 << "--print-pdf <VÝSTUP.pdf>" << "";
        QTest::newRow("short help") << QStringList { "-h" } << 0 << "--demo" << "";
        QTest::newRow("version") << QStringList { "--version" } << 0 << "Inicializační program pro zařízení RM8 "
                                 << "";
        // Qt's own words, in Czech where its translations are installed.
        QTest::newRow("unknown option") << QStringList { "--dmeo" } << 2 << ""
                                        << "'dmeo'. (viz rm8config --help)";
        QTest::newRow("missing value") << QStringList { "--port" } << 2 << "" << "'--port'. (viz rm8config --help)";
        QTest::newRow("two files without --print-pdf")
            << QStringList { "a.eep", "b.eep" } << 2 << ""
            << "rm8config: v okně lze otevřít nejvýše jeden soubor nastavení, zadáno 2\n";
    }
    // Help, the version and a mistyped argument need no window: each prints
    // and ends, with no platform plugin asked for a display.
    void answersWithoutADisplay()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" })
            environment.remove(QString::fromLatin1(name));
        environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(RM8CONFIG_PATH), arguments);
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), status);
        // A Windows program ends its printed lines with \r\n.
        const auto text = [](const QByteArray& bytes) { return QString::fromUtf8(bytes).replace(QStringLiteral("\r\n"), QStringLiteral("\n")); };
        const QString printed = text(program.readAllStandardOutput());
        const QString errors = text(program.readAllStandardError());
        QVERIFY2(out.isEmpty() ? printed.isEmpty() : printed.contains(out), qPrintable(printed));
        QVERIFY2(err.isEmpty() ? errors.isEmpty() : errors.contains(err), qPrintable(errors));
        if (status != 0)
            QCOMPARE(errors.count(QLatin1Char('\n')), 1);
    }

    // Killed outright, the program cannot end the simulator itself: the
    // system must do it. It is found among the program's children; once
    // ended it is gone, or a zombie waiting for whoever adopted it.
    void demoStationEndsWithAKilledProgram()
    {
#ifndef Q_OS_LINUX
        QSKIP("the demo station needs a pseudo-terminal, which only Linux gives it");
#else
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
#endif
    }
};

QTEST_MAIN(TestRm8configProgram)
#include "tst_rm8config_program.moc"
