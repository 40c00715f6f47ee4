// The port assignments: what is remembered between runs, and the dialog in
// which the technician picks or types a device for each entry of the list.

#include <QComboBox>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "shell/port_settings.h"
#include "shell/port_settings_dialog.h"

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
        QCOMPARE(store.allKeys(), (QStringList{QStringLiteral("ports/COM1"), QStringLiteral("ports/COM3")}));
        store.setValue(QStringLiteral("ports/COM4"), QStringLiteral("   "));
        PortMap loaded = PortMap::platformDefault();
        rm8::shell::loadPortAssignments(store, loaded);
        QCOMPARE(loaded.entries(), chosen.entries());
        rm8::shell::savePortAssignments(store, PortMap::platformDefault());
        QVERIFY(store.allKeys().isEmpty());
    }

    // The list shows what each system port is; the field keeps only the
    // path that will be opened. Blanks around a typed path go, and an empty
    // field is the platform's own device again.
    void dialogPicksAndTakesTypedDevices()
    {
        PortMap start = PortMap::platformDefault();
        start.set(4, "/dev/ttyUSB3");
        rm8::shell::PortSettingsDialog dialog(start, {{QStringLiteral("/dev/ttyS0"), QString()},
                                                      {QStringLiteral("/dev/ttyUSB0"), QStringLiteral("CP2102 (Silicon Labs)")}});
        dialog.show();
        QVERIFY(!dialog.deviceEditor(0) && !dialog.deviceEditor(5));
        QCOMPARE(dialog.deviceEditor(1)->objectName(), QStringLiteral("portDevice_1"));
        QCOMPARE(dialog.deviceEditor(1)->currentText().toStdString(), start.device("COM 1").value());
        QCOMPARE(dialog.deviceEditor(1)->itemText(0), QStringLiteral("/dev/ttyS0"));
        QCOMPARE(dialog.deviceEditor(1)->itemText(1), QStringLiteral("/dev/ttyUSB0 – CP2102 (Silicon Labs)"));
        QTest::keyClick(dialog.deviceEditor(2), Qt::Key_Down); // the list's first entry
        QTest::keyClick(dialog.deviceEditor(2), Qt::Key_Down);
        for (int number : {3, 4}) {
            dialog.deviceEditor(number)->lineEdit()->selectAll();
            QTest::keyClicks(dialog.deviceEditor(number)->lineEdit(), number == 3 ? QStringLiteral("  /dev/pts/7  ") : QString());
            QTest::keyClick(dialog.deviceEditor(number)->lineEdit(), Qt::Key_Backspace);
        }
        QCOMPARE(dialog.deviceEditor(2)->currentText(), QStringLiteral("/dev/ttyUSB0"));
        PortMap expected = PortMap::platformDefault();
        expected.set(2, "/dev/ttyUSB0");
        expected.set(3, "/dev/pts/7");
        QCOMPARE(dialog.ports().entries(), expected.entries());
    }
};

QTEST_MAIN(TestPortSettings)
#include "tst_port_settings.moc"
