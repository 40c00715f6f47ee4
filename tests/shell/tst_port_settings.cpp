// The port assignments: what is remembered between runs, and the dialog in
// which the technician picks a device for each entry of the port list.

#include <QComboBox>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "shell/port_settings.h"
#include "shell/port_settings_dialog.h"

using rm8::link::PortMap;
using rm8::shell::PortSettingsDialog;
using rm8::shell::SystemPort;

namespace {

std::string deviceOf(const PortMap& ports, int number)
{
    const auto found = ports.entries().find(number);
    return found == ports.entries().end() ? std::string("<none>") : found->second;
}

} // namespace

class TestPortSettings : public QObject {
    Q_OBJECT

private slots:
    void init() { QVERIFY(scratch.isValid()); }

    void rememberedAssignmentsComeBackInTheNextRun()
    {
        const QString file = scratch.filePath(QStringLiteral("ports.ini"));
        PortMap chosen = PortMap::platformDefault();
        chosen.set(1, "/dev/ttyUSB0");
        chosen.set(3, "/tmp/rm8 station");
        {
            QSettings store(file, QSettings::IniFormat);
            rm8::shell::savePortAssignments(store, chosen);
        }
        QSettings store(file, QSettings::IniFormat);
        PortMap next = PortMap::platformDefault();
        rm8::shell::loadPortAssignments(store, next);
        QCOMPARE(deviceOf(next, 1), std::string("/dev/ttyUSB0"));
        QCOMPARE(deviceOf(next, 2), deviceOf(PortMap::platformDefault(), 2));
        QCOMPARE(deviceOf(next, 3), std::string("/tmp/rm8 station"));
        QCOMPARE(deviceOf(next, 4), deviceOf(PortMap::platformDefault(), 4));
    }

    // A port put back to the platform's device is forgotten, not stored as
    // a copy of today's default.
    void onlyDeviationsFromThePlatformAreStored()
    {
        const QString file = scratch.filePath(QStringLiteral("deviations.ini"));
        QSettings store(file, QSettings::IniFormat);
        PortMap chosen = PortMap::platformDefault();
        chosen.set(2, "/dev/ttyACM0");
        rm8::shell::savePortAssignments(store, chosen);
        QCOMPARE(store.allKeys(), QStringList{QStringLiteral("ports/COM2")});
        rm8::shell::savePortAssignments(store, PortMap::platformDefault());
        QVERIFY(store.allKeys().isEmpty());
    }

    void blankRememberedEntriesAreIgnored()
    {
        QSettings store(scratch.filePath(QStringLiteral("blank.ini")), QSettings::IniFormat);
        store.setValue(QStringLiteral("ports/COM1"), QStringLiteral("   "));
        PortMap ports = PortMap::platformDefault();
        rm8::shell::loadPortAssignments(store, ports);
        QCOMPARE(deviceOf(ports, 1), deviceOf(PortMap::platformDefault(), 1));
    }

    void dialogOffersTheSystemPortsWithTheirDescription()
    {
        const std::vector<SystemPort> system{{QStringLiteral("/dev/ttyUSB0"), QStringLiteral("FT232R USB UART (FTDI)")},
                                             {QStringLiteral("/dev/ttyS0"), QString()}};
        PortSettingsDialog dialog(PortMap::platformDefault(), system);
        QCOMPARE(dialog.objectName(), QStringLiteral("NastaveniPortu"));
        for (int number = 1; number <= 4; ++number) {
            QComboBox* editor = dialog.deviceEditor(number);
            QVERIFY(editor);
            QCOMPARE(editor->objectName(), QStringLiteral("portDevice_%1").arg(number));
            QCOMPARE(editor->count(), 2);
            QVERIFY(editor->itemText(0).contains(QStringLiteral("FT232R USB UART (FTDI)")));
            QVERIFY(editor->itemText(0).startsWith(QStringLiteral("/dev/ttyUSB0")));
            QCOMPARE(editor->itemText(1), QStringLiteral("/dev/ttyS0"));
            QCOMPARE(editor->currentText().toStdString(), deviceOf(PortMap::platformDefault(), number));
        }
        QVERIFY(!dialog.deviceEditor(0));
        QVERIFY(!dialog.deviceEditor(5));
    }

    // Picking a port from the list leaves only its path in the field, the
    // text that will be opened.
    void pickingASystemPortTakesItsPath()
    {
        const std::vector<SystemPort> system{{QStringLiteral("/dev/ttyS0"), QStringLiteral("Built-in")},
                                             {QStringLiteral("/dev/ttyUSB0"), QStringLiteral("CP2102 (Silicon Labs)")}};
        PortSettingsDialog dialog(PortMap::platformDefault(), system);
        dialog.show();
        QComboBox* editor = dialog.deviceEditor(2);
        editor->setFocus();
        // Down twice from the field: the second entry of the list.
        QTest::keyClick(editor, Qt::Key_Down);
        QTest::keyClick(editor, Qt::Key_Down);
        QCOMPARE(editor->currentText(), QStringLiteral("/dev/ttyUSB0"));
        QCOMPARE(deviceOf(dialog.ports(), 2), std::string("/dev/ttyUSB0"));
    }

    void typedDevicesAndBlankFields_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected"); // empty: the platform's own
        QTest::newRow("pseudo-terminal") << QStringLiteral("/dev/pts/7") << QStringLiteral("/dev/pts/7");
        QTest::newRow("blanks around") << QStringLiteral("  /dev/ttyACM0 ") << QStringLiteral("/dev/ttyACM0");
        QTest::newRow("blank is the platform's own") << QString() << QString();
    }
    void typedDevicesAndBlankFields()
    {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        PortMap start = PortMap::platformDefault();
        start.set(4, "/dev/ttyUSB3");
        PortSettingsDialog dialog(start, {});
        dialog.show();
        QLineEdit* edit = dialog.deviceEditor(4)->lineEdit();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Backspace);
        QTest::keyClicks(edit, typed);
        const std::string want =
            expected.isEmpty() ? deviceOf(PortMap::platformDefault(), 4) : expected.toStdString();
        QCOMPARE(deviceOf(dialog.ports(), 4), want);
        // The others are as they were given.
        QCOMPARE(deviceOf(dialog.ports(), 1), deviceOf(start, 1));
    }

private:
    QTemporaryDir scratch;
};

QTEST_MAIN(TestPortSettings)
#include "tst_port_settings.moc"
