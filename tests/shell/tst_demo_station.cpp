// The simulated station behind --demo: the real rm8sim started as a child
// process, spoken to on the pseudo-terminal it announces, and ended again.

#include <cerrno>
#include <csignal>

#include <QFileInfo>
#include <QTest>

#include "link/line_io.h"
#include "link/posix_serial_line.h"
#include "shell/demo_station.h"

using rm8::shell::DemoStation;

namespace {

// Nobody in front of the screen: no Storno, nothing shown.
class Silent : public rm8::Interaction {
public:
    void showProgress(std::string_view, bool) override {}
    void hideProgress() override {}
    bool cancelRequested() override { return false; }
    void message(rm8::MessageIcon, std::string_view, std::string_view) override {}
    rm8::Answer ask(rm8::MessageIcon, std::string_view, rm8::Buttons) override { return rm8::Answer::No; }
};

bool processExists(qint64 pid)
{
    return ::kill(static_cast<pid_t>(pid), 0) == 0 || errno != ESRCH;
}

} // namespace

class TestDemoStation : public QObject {
    Q_OBJECT

private slots:
    void simulatorAnswersOnTheAnnouncedDevice()
    {
        DemoStation demo;
        auto device = demo.start(QStringLiteral(RM8SIM_PATH));
        QVERIFY2(device, device ? "" : qPrintable(device.error()));
        QVERIFY(QFileInfo::exists(*device));
        QVERIFY(demo.running());

        rm8::link::PosixSerialLine line(device->toStdString());
        QVERIFY(line.open());
        Silent nobody;
        rm8::link::LineIo io(line, nobody);
        const std::uint8_t attention[] = {1};
        const auto reply = io.exchange(attention, 129, std::chrono::milliseconds(2000));
        QVERIFY(reply.has_value());
        QCOMPARE(int(reply->front()), 129);
    }

    void theChildEndsWithItsOwner()
    {
        qint64 pid = 0;
        {
            DemoStation demo;
            QVERIFY(demo.start(QStringLiteral(RM8SIM_PATH)));
            pid = demo.processId();
            QVERIFY(pid > 0);
            QVERIFY(processExists(pid));
        }
        QVERIFY(!processExists(pid));
    }

    void stopIsSafeTwice()
    {
        DemoStation demo;
        QVERIFY(demo.start(QStringLiteral(RM8SIM_PATH)));
        demo.stop();
        QVERIFY(!demo.running());
        demo.stop();
        QVERIFY(!demo.running());
    }

    void programsThatAnnounceNoDevice_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("errorPart");
        QTest::newRow("missing program") << QStringLiteral("/nonexistent/rm8sim") << QStringList()
                                         << QStringLiteral("nelze spustit");
        QTest::newRow("exits silently") << QStringLiteral("/bin/true") << QStringList()
                                        << QStringLiteral("neoznámila svůj port");
        QTest::newRow("stays silent") << QStringLiteral("/bin/sleep") << QStringList{QStringLiteral("30")}
                                      << QStringLiteral("neoznámila svůj port");
        QTest::newRow("empty first line") << QStringLiteral("/bin/echo") << QStringList()
                                          << QStringLiteral("neoznámila svůj port");
    }
    void programsThatAnnounceNoDevice()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        QFETCH(QString, errorPart);
        DemoStation demo;
        const auto device = demo.start(program, arguments, 500);
        QVERIFY(!device);
        QVERIFY2(device.error().contains(errorPart), qPrintable(device.error()));
        QVERIFY(device.error().contains(program));
        // A silent child is not left behind.
        QVERIFY(!demo.running());
    }
};

QTEST_MAIN(TestDemoStation)
#include "tst_demo_station.moc"
