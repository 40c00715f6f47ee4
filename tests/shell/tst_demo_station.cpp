// The simulated station behind --demo: the real rm8sim started as a child
// process, announcing its pseudo-terminal, and ended again.

#include <cerrno>
#include <csignal>

#include <QFileInfo>

#include "json_cases.h"
#include "shell/demo_station.h"

using rm8::shell::DemoStation;

class TestDemoStation : public QObject {
    Q_OBJECT

private slots:
    void simulatorAnnouncesItsDeviceAndEndsWithItsOwner()
    {
        qint64 pid = 0;
        {
            DemoStation demo;
            const auto device = demo.start(QStringLiteral(RM8SIM_PATH));
            QVERIFY2(device && QFileInfo::exists(*device), qPrintable(device ? *device : device.error()));
            pid = demo.processId();
        }
        QVERIFY(pid > 0 && ::kill(pid_t(pid), 0) != 0 && errno == ESRCH);
    }

    void programsThatAnnounceNoDevice_data() { rm8::test::addJsonCases("demo_station_errors.json"); }
    // The error names the program; a silent child is not left behind.
    void programsThatAnnounceNoDevice()
    {
        FETCH_CASE(c);
        DemoStation demo;
        const QString program = rm8::test::qs(c["program"]);
        QStringList arguments;
        for (const auto& argument : c["arguments"])
            arguments << rm8::test::qs(argument);
        const auto device = demo.start(program, arguments, 500);
        QVERIFY(!device && !demo.running());
        QVERIFY2(device.error().contains(rm8::test::qs(c["error"])) && device.error().contains(program),
                 qPrintable(device.error()));
    }
};

QTEST_MAIN(TestDemoStation)
#include "tst_demo_station.moc"
