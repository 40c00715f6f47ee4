// The port assignments that are remembered between runs. (The dialog that
// edits them is tested through the command that opens it.)

#include "shell/port_settings.h"
#include "window_tests.h"

using rm8::link::PortMap;

class TestPortSettings : public QObject {
    Q_OBJECT

private slots:
    // Only what differs from the platform's own is stored, so that a later
    // change of the default reaches the others; blank entries are ignored.
    void rememberedAssignmentsComeBackInTheNextRun()
    {
        QTemporaryDir scratch;
        QSettings store(scratch.filePath(QStringLiteral("ports.ini")), QSettings::IniFormat);
        PortMap chosen = PortMap::platformDefault();
        chosen.set(1, "/dev/ttyUSB0");
        chosen.set(3, "/tmp/rm8 station");
        rm8::shell::savePortAssignments(store, chosen);
        QCOMPARE(store.allKeys(), (QStringList { QStringLiteral("ports/COM1"), QStringLiteral("ports/COM3") }));
        store.setValue(QStringLiteral("ports/COM4"), QStringLiteral("   "));
        PortMap loaded = PortMap::platformDefault();
        rm8::shell::loadPortAssignments(store, loaded);
        QCOMPARE(loaded.entries(), chosen.entries());
        rm8::shell::savePortAssignments(store, PortMap::platformDefault());
        QVERIFY(store.allKeys().isEmpty());
    }
};

QTEST_MAIN(TestPortSettings)
#include "tst_port_settings.moc"
