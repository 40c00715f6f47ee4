// The simulated station behind --demo: the real rm8sim, or a program that
// fails to be one, started as a child process that announces its
// pseudo-terminal, and ended again.

#include "shell/demo_station.h"
#include "window_tests.h"

class TestDemoStation : public QObject {
    Q_OBJECT

private slots:
    void start_data() { rm8::test::addJsonCases("ui/demo_station.json"); }
    // A failure names the program; a child that announces nothing is not
    // left behind.
    void start()
    {
        FETCH_CASE(c);
        rm8::shell::DemoStation demo;
        QStringList arguments = c["program"].is_null() ? QStringList { QStringLiteral(RM8SIM_PATH) }
                                                       : rm8::test::qs(c["program"]).split(u' ');
        const QString program = arguments.takeFirst();
        const auto device = demo.start(program, arguments, c["program"].is_null() ? 10000 : 500);
        if (c["error"].is_null()) {
            QVERIFY2(
                device && QFileInfo::exists(*device) && demo.running(), qPrintable(device ? *device : device.error()));
            demo.stop();
        } else {
            QVERIFY2(!device && device.error().contains(rm8::test::qs(c["error"])) && device.error().contains(program),
                qPrintable(device ? *device : device.error()));
        }
        QVERIFY(!demo.running());
    }
};

QTEST_MAIN(TestDemoStation)
#include "tst_demo_station.moc"
