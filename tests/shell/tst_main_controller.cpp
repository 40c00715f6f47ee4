// The main window's commands driven as a technician would: clicks on the
// buttons, text typed into the fields, questions answered by a script,
// against a simulated station on a pseudo-terminal.

#include <algorithm>
#include <filesystem>

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include "fields/settings_diff.h"
#include "modal_helpers.h"
#include "settings/eeprom_image.h"
#include "settings/image_decoder.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "shell/port_settings_dialog.h"
#include "shell/qt_interaction.h"
#include "station_rig.h"

Q_DECLARE_METATYPE(rm8::Answer)

using rm8::Answer;
using rm8::Buttons;
using rm8::MessageIcon;
using rm8::StationSettings;
using namespace rm8::shell::test;

namespace {

const std::string kInstructions = "Uveďte zařízení do vypnutého stavu (CPU LED svítí trvale).\r\n"
                                  "Pokud zařízení není vypnuto, vypnete jej stiskem tlačítka 'GSM OFF'.\r\n"
                                  "Poté připojte konfigurační kabel a potvrďte 'OK'.";
const std::string kStillProgramming = "Zařízení nebylo deaktivováno a je zřejmě stále v programovacím módu. Má se "
                                      "zařízení před ukončením programu deaktivovat?";
const std::string kReadDone = "Data byla úspěšně načtena z EEPROM.";
const std::string kReadCancelled = "Načtítání dat z EEPROM do PC bylo stornováno.";
const std::string kNotProgrammed = "Data nebyla úspěšně načtena z EEPROM. EEPROM zřejmě není naprogramována.";
const std::string kWriteDone = "Data byla úspěšně uložena do EEPROM.";
const std::string kActivationFailed = "Při pokusu aktivovat spojení nastala chyba.";

constexpr std::uint32_t kRm8 = 2151298;
constexpr std::uint32_t kRma8 = 2216834;

StationSettings decodedFile(const Bytes& file)
{
    rm8::EepromImage image;
    std::copy(file.begin(), file.end(), image.bytes().begin());
    StationSettings settings;
    const auto decoded = rm8::decodeImage(image, settings);
    if (!decoded)
        qFatal("a golden file does not decode");
    return settings;
}

// QTest::keyClicks knows only ASCII; Czech letters come as key events that
// carry their text, as a keyboard with a Czech layout sends them.
void typeText(QWidget* widget, const QString& text)
{
    for (const QChar c : text) {
        if (c.unicode() < 128)
            QTest::keyClick(widget, char(c.unicode()));
        else
            QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
}

QString differences(const StationSettings& left, const StationSettings& right)
{
    QStringList lines;
    for (const auto& d : rm8::diffSettings(left, right))
        lines << QStringLiteral("%1[%2]: \"%3\" -> \"%4\"")
                     .arg(QString::fromUtf8(d.field.data(), qsizetype(d.field.size())))
                     .arg(d.row)
                     .arg(QString::fromStdString(d.left), QString::fromStdString(d.right));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

class TestMainController : public QObject {
    Q_OBJECT

    Rig* rig = nullptr;

    template <class W = QAbstractButton>
    W* widget(const char* name) const
    {
        auto* found = rig->window->findChild<W*>(QString::fromLatin1(name));
        if (!found)
            qFatal("no widget %s", name);
        return found;
    }
    void click(const char* name) { QTest::mouseClick(widget(name), Qt::LeftButton); }
    QString text(const char* name) const { return widget<QLabel>(name)->text(); }
    QString caption() const { return widget("btDEA")->text(); }
    StationSettings fields() const
    {
        StationSettings settings;
        rig->window->readSettings(settings);
        return settings;
    }
    QLineEdit* edit(const char* name, int row = -1) const
    {
        auto* field = rig->window->field<QLineEdit>(QString::fromLatin1(name), row);
        if (!field)
            qFatal("no text field %s", name);
        return field;
    }
    void type(const char* name, int row, const QString& typed)
    {
        QLineEdit* field = edit(name, row);
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        typeText(field, typed);
    }
    bool activate()
    {
        click("btDEA");
        return caption() == QStringLiteral("Deaktivovat");
    }

private slots:
    void init() { rig = new Rig; }
    void cleanup()
    {
        // A question nobody scripted would have been answered No or Cancel
        // and the test could pass on the wrong path.
        QVERIFY2(!rig->ui.unscripted, "a question came that the test did not expect");
        delete rig;
        rig = nullptr;
    }

    // ---- session ----

    void activationShowsTheIdentifiedStation_data()
    {
        QTest::addColumn<uint>("signature");
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<QString>("stateText");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("eepromCommands");
        QTest::addColumn<QString>("judgement"); // the message after the instructions, if any
        QTest::newRow("RM8 1.0") << uint(kRm8) << 1 << 0 << QStringLiteral("Aktivní") << QStringLiteral("RM8")
                                 << QStringLiteral("1.0") << true << QString();
        QTest::newRow("RM8 1.10") << uint(kRm8) << 1 << 10 << QStringLiteral("Aktivní") << QStringLiteral("RM8")
                                  << QStringLiteral("1.10") << true << QString();
        QTest::newRow("RM8 0.9") << uint(kRm8) << 0 << 9 << QStringLiteral("Chybné zařízení")
                                 << QStringLiteral("RM8") << QStringLiteral("0.9") << false
                                 << QStringLiteral("Touto verzí programu lze naprogramovat pouze zařízení s "
                                                   "procesorem verze 1.0 a vyšší.");
        QTest::newRow("RMA8") << uint(kRma8) << 2 << 0 << QStringLiteral("Chybné zařízení")
                              << QStringLiteral("RMA8") << QStringLiteral("2.0") << false
                              << QStringLiteral("Touto verzí programu lze naprogramovat pouze zařízení RM8.");
        QTest::newRow("unknown device") << uint(0x11D382) << 1 << 0 << QStringLiteral("Aktivní")
                                        << QStringLiteral("?") << QStringLiteral("1.0") << true
                                        << QStringLiteral("Připojené zařízení není známo. Je sice povoleno ho "
                                                          "naprogramovat, ale za způsobené chyby není ručeno.");
    }
    void activationShowsTheIdentifiedStation()
    {
        QFETCH(uint, signature);
        QFETCH(int, major);
        QFETCH(int, minor);
        QFETCH(QString, stateText);
        QFETCH(QString, product);
        QFETCH(QString, version);
        QFETCH(bool, eepromCommands);
        QFETCH(QString, judgement);
        rm8::sim::StationProfile profile;
        profile.signature = signature;
        profile.versionMajor = std::uint8_t(major);
        profile.versionMinor = std::uint8_t(minor);
        profile.memorySizeCode = 6;
        profile.modemCode = 32;
        rig->startStation(profile);
        rig->build();

        QVERIFY(activate());
        QCOMPARE(text("tabDeAktivNapis"), stateText);
        QCOMPARE(text("lblInfoProdukt"), product);
        QCOMPARE(text("lblInfoVerze"), version);
        QCOMPARE(text("lblInfoPamSize"), QStringLiteral("  8128 byte"));
        QCOMPARE(text("lblInfoModem"), QStringLiteral("GM12 Ericsson"));
        QCOMPARE(widget("btEEPROMLoad")->isEnabled(), eepromCommands);
        QCOMPARE(widget("btEEPROMSave")->isEnabled(), eepromCommands);
        QVERIFY(!widget<QComboBox>("tabPort")->isEnabled());

        std::vector<std::string> expected{kInstructions};
        if (!judgement.isEmpty())
            expected.push_back(judgement.toStdString());
        QCOMPARE(rig->ui.messageTexts(), expected);
        QCOMPARE(rig->ui.messages.front().icon, MessageIcon::Information);
        // Attention answered at once: three exchanges in all.
        QCOMPARE(rig->requests(), (std::vector<Bytes>{{1}, {2}, {3}}));
        QCOMPARE(rig->opened, std::vector<std::string>{rig->station->path()});
        QVERIFY(!rig->ui.progressVisible);
    }

    void deactivationTakesTheStationOutOfProgrammingMode()
    {
        rig->startStation();
        rig->build();
        QVERIFY(activate());
        click("btDEA");
        QCOMPARE(caption(), QStringLiteral("Aktivovat"));
        QCOMPARE(text("tabDeAktivNapis"), QStringLiteral("Neaktivní"));
        QCOMPARE(text("lblInfoProdukt"), QStringLiteral("?"));
        QCOMPARE(text("lblInfoPamSize"), QStringLiteral("?"));
        QVERIFY(!widget("btEEPROMLoad")->isEnabled());
        QVERIFY(widget<QComboBox>("tabPort")->isEnabled());
        QCOMPARE(rig->requests().back(), (Bytes{6, 170, 85}));
        QVERIFY(!rig->controller->sessionOpen());
        // And it can be activated again.
        QVERIFY(activate());
    }

    void stornoWhileSearchingForTheStation()
    {
        // A pseudo-terminal nobody answers on.
        rm8::sim::PtyStation silent(rm8::sim::StationSimulator(rm8::sim::StationProfile{}));
        rig->ports.set(1, silent.path());
        rig->build();
        rig->ui.stornoAfterTurns = 30;
        click("btDEA");
        QCOMPARE(caption(), QStringLiteral("Aktivovat"));
        QCOMPARE(text("tabDeAktivNapis"), QStringLiteral("Neaktivní"));
        QCOMPARE(rig->ui.messageTexts(), (std::vector<std::string>{kInstructions, kActivationFailed}));
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Stop);
        QVERIFY(rig->requestsWithCode(1) >= 1);
        QCOMPARE(rig->requestsWithCode(2), std::size_t(0));
        QVERIFY(!rig->controller->sessionOpen());
    }

    void portsWithoutAUsableDevice_data()
    {
        QTest::addColumn<int>("listIndex");
        QTest::addColumn<QString>("device"); // given to COM 1; empty: COM 2 has none
        QTest::addColumn<bool>("lineMade");
        QTest::newRow("no device for the entry") << 1 << QString() << false;
        QTest::newRow("device that cannot be opened") << 0 << QStringLiteral("/nonexistent/ttyRM8") << true;
    }
    void portsWithoutAUsableDevice()
    {
        QFETCH(int, listIndex);
        QFETCH(QString, device);
        QFETCH(bool, lineMade);
        rig->ports = rm8::link::PortMap();
        if (!device.isEmpty())
            rig->ports.set(1, device.toStdString());
        rig->build();
        auto* port = widget<QComboBox>("tabPort");
        QCOMPARE(port->currentText(), QStringLiteral("COM 1"));
        for (int i = 0; i < listIndex; ++i)
            QTest::keyClick(port, Qt::Key_Down);
        const QString portText = port->currentText();
        click("btDEA");
        QCOMPARE(rig->ui.messages.size(), std::size_t(1));
        QCOMPARE(rig->ui.messages[0].text, "Nelze otevřít port " + portText.toStdString());
        QCOMPARE(rig->ui.messages[0].icon, MessageIcon::Stop);
        QCOMPARE(!rig->opened.empty(), lineMade);
        QCOMPARE(caption(), QStringLiteral("Aktivovat"));
        QCOMPARE(text("tabDeAktivNapis"), QStringLiteral("Neaktivní"));
        QVERIFY(!rig->controller->sessionOpen());
    }

    // The command follows the caption, and a caption that is neither
    // command does nothing at all.
    void otherCaptionsOfTheSessionButtonDoNothing()
    {
        rig->startStation();
        rig->build();
        widget("btDEA")->setText(QStringLiteral("aktivovat"));
        click("btDEA");
        QVERIFY(rig->opened.empty());
        QVERIFY(rig->ui.events.empty());
        QCOMPARE(text("tabDeAktivNapis"), QStringLiteral("Neaktivní"));
    }

    // The production line (QSerialPort) on the device the port list maps.
    void defaultLineOpensTheMappedDevice()
    {
        rig->startStation();
        rm8::shell::MainController::Options options;
        options.lineFactory = rm8::shell::makeQtSerialLine;
        rig->build(std::move(options));
        QVERIFY(activate());
        QCOMPARE(text("lblInfoProdukt"), QStringLiteral("RM8"));
        click("btDEA");
        QCOMPARE(caption(), QStringLiteral("Aktivovat"));
    }

    // ---- leaving the program ----

    void exitCommand_data()
    {
        QTest::addColumn<bool>("sessionOpen");
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<bool>("leaveSent");
        QTest::addColumn<bool>("ends");
        QTest::newRow("open session, Cancel") << true << Answer::Cancel << false << false;
        QTest::newRow("open session, No") << true << Answer::No << false << true;
        QTest::newRow("open session, Yes") << true << Answer::Yes << true << true;
        QTest::newRow("no session") << false << Answer::Ok << false << true;
    }
    void exitCommand()
    {
        QFETCH(bool, sessionOpen);
        QFETCH(Answer, answer);
        QFETCH(bool, leaveSent);
        QFETCH(bool, ends);
        rig->startStation();
        rig->build();
        QSignalSpy exits(rig->controller, &rm8::shell::MainController::exitRequested);
        if (sessionOpen) {
            QVERIFY(activate());
            rig->ui.answers.push_back(answer);
        }
        click("btKonec");
        if (sessionOpen) {
            QCOMPARE(rig->ui.questions.size(), std::size_t(1));
            QCOMPARE(rig->ui.questions[0].text, kStillProgramming);
            QCOMPARE(rig->ui.questions[0].icon, MessageIcon::Question);
            QCOMPARE(*rig->ui.questions[0].buttons, Buttons::YesNoCancel);
        } else {
            QVERIFY(rig->ui.questions.empty());
        }
        QCOMPARE(rig->leaveRequestSent(), leaveSent);
        QCOMPARE(exits.count(), ends ? 1 : 0);
        QCOMPARE(rig->window->isVisible(), !ends);
        if (!ends) {
            // Cancel: the session goes on.
            QCOMPARE(caption(), QStringLiteral("Deaktivovat"));
            QVERIFY(rig->controller->sessionOpen());
        }
        // The closing of the window that ends the program asks nothing more.
        QCOMPARE(rig->ui.questions.size(), std::size_t(sessionOpen ? 1 : 0));
    }

    void closingTheWindow_data()
    {
        QTest::addColumn<bool>("sessionOpen");
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<bool>("leaveSent");
        QTest::newRow("open session, Yes") << true << Answer::Yes << true;
        QTest::newRow("open session, No") << true << Answer::No << false;
        QTest::newRow("no session") << false << Answer::Ok << false;
    }
    void closingTheWindow()
    {
        QFETCH(bool, sessionOpen);
        QFETCH(Answer, answer);
        QFETCH(bool, leaveSent);
        rig->startStation();
        rig->build();
        QSignalSpy exits(rig->controller, &rm8::shell::MainController::exitRequested);
        if (sessionOpen) {
            QVERIFY(activate());
            rig->ui.answers.push_back(answer);
        }
        QVERIFY(rig->window->close());
        QCOMPARE(rig->ui.questions.size(), std::size_t(sessionOpen ? 1 : 0));
        if (sessionOpen) {
            QCOMPARE(rig->ui.questions[0].text, kStillProgramming);
            QCOMPARE(rig->ui.questions[0].icon, MessageIcon::Question);
            QCOMPARE(*rig->ui.questions[0].buttons, Buttons::YesNo);
        }
        QCOMPARE(rig->leaveRequestSent(), leaveSent);
        QVERIFY(!rig->window->isVisible());
        QCOMPARE(exits.count(), 1);
        QVERIFY(!rig->controller->sessionOpen());
    }

    // ---- reading and writing the station ----

    void readFillsTheFieldsFromTheStation()
    {
        const Bytes file = readFile(goldenFile("full.eep"));
        rig->startStation({}, eepromWith(file));
        rig->build();
        QVERIFY(activate());
        widget<QTabWidget>("TabList")->setCurrentIndex(3);
        // What the technician sees behind the success message.
        std::optional<StationSettings> behindTheMessage;
        rig->ui.onMessage = [&](const rm8::test::RecordingInteraction::Shown& shown) {
            if (shown.text == kReadDone)
                behindTheMessage = fields();
        };
        click("btEEPROMLoad");
        QCOMPARE(rig->ui.messages.back().text, kReadDone);
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Information);
        QCOMPARE(widget<QTabWidget>("TabList")->currentIndex(), 0);
        const StationSettings expected = decodedFile(file);
        QVERIFY2(fields() == expected, qPrintable(differences(expected, fields())));
        QVERIFY(behindTheMessage && *behindTheMessage == expected);
        QCOMPARE(edit("tabJmenoStanice")->text().toStdString(), expected.tabJmenoStanice);
        // The whole settings area, block by block.
        QCOMPARE(rig->requestsWithCode(4), std::size_t(8128 / 8));
        QCOMPARE(caption(), QStringLiteral("Deaktivovat"));
    }

    void readOfAnUnprogrammedStationChangesNothing()
    {
        rig->startStation();
        rig->build();
        QVERIFY(activate());
        type("tabJmenoStanice", -1, QStringLiteral("Vodárna"));
        const StationSettings before = fields();
        click("btEEPROMLoad");
        QCOMPARE(rig->ui.messages.back().text, kNotProgrammed);
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Exclamation);
        QVERIFY(fields() == before);
    }

    void stornoDuringTheReadLeavesTheFieldsAlone()
    {
        rig->startStation({}, eepromWith(readFile(goldenFile("full.eep"))));
        rig->build();
        QVERIFY(activate());
        type("tabJmenoStanice", -1, QStringLiteral("Vodárna"));
        const StationSettings before = fields();
        rig->ui.stornoAfterTurns = rig->ui.turns + 60;
        click("btEEPROMLoad");
        QCOMPARE(rig->ui.messages.back().text, kReadCancelled);
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Information);
        QVERIFY(fields() == before);
        QCOMPARE(edit("tabJmenoStanice")->text(), QStringLiteral("Vodárna"));
        const std::size_t blocks = rig->requestsWithCode(4);
        QVERIFY(blocks > 0);
        QVERIFY(blocks < 8128 / 8);
        // The session stays open.
        QCOMPARE(caption(), QStringLiteral("Deaktivovat"));
    }

    // The cable pulled out (or the station switched off) in the middle of a
    // read: the block retries run out, the fields stay, and the session can
    // still be ended by the technician's choice.
    void stationDisappearingMidReadLeavesTheFieldsAlone()
    {
        rm8::sim::StationBehaviour behaviour;
        behaviour.faults.hangUpAfterBlocks = 30;
        rig->startStation({}, eepromWith(readFile(goldenFile("full.eep"))), behaviour);
        rig->build();
        QVERIFY(activate());
        type("tabJmenoStanice", -1, QStringLiteral("Vodárna"));
        const StationSettings before = fields();
        click("btEEPROMLoad");
        QCOMPARE(rig->ui.messages.back().text,
                 std::string("Data nebyla úspěšně načtena z EEPROM. Došlo k chybě při načítání bloku dat."));
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Stop);
        QVERIFY(fields() == before);

        rig->ui.answers.push_back(Answer::Yes);
        click("btDEA");
        QCOMPARE(rig->ui.questions.size(), std::size_t(1));
        QVERIFY(rig->ui.questions[0].text.rfind("Při deaktivaci spojení došlo k chybě.", 0) == 0);
        QCOMPARE(caption(), QStringLiteral("Aktivovat"));
        QVERIFY(!rig->controller->sessionOpen());
        // The window goes on working: a file still loads.
        rig->nextFile = QString::fromStdString(goldenFile("empty.eep").string());
        click("btFileLoad");
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Information);
    }

    // While a transfer waits for the station the event loop runs; a click
    // on another command then must not start a second exchange inside it.
    void commandsWaitWhileATransferRuns()
    {
        rig->startStation({}, eepromWith(readFile(goldenFile("full.eep"))));
        rig->build();
        QVERIFY(activate());
        bool clicked = false;
        rig->ui.onTurn = [&](std::size_t) {
            if (!clicked && rig->requestsWithCode(4) == 20) {
                clicked = true;
                click("btDEA");
                click("btEEPROMLoad");
                click("btKonec");
            }
        };
        click("btEEPROMLoad");
        rig->ui.onTurn = nullptr;
        QVERIFY(clicked);
        QCOMPARE(rig->ui.messages.back().text, kReadDone);
        QCOMPARE(rig->requestsWithCode(4), std::size_t(8128 / 8));
        QVERIFY(!rig->leaveRequestSent());
        QVERIFY(rig->ui.questions.empty());
        QCOMPARE(caption(), QStringLiteral("Deaktivovat"));
    }

    void closingDuringATransferWaitsForItsEnd()
    {
        rig->startStation({}, eepromWith(readFile(goldenFile("full.eep"))));
        rig->build();
        QVERIFY(activate());
        QSignalSpy exits(rig->controller, &rm8::shell::MainController::exitRequested);
        bool closed = false;
        rig->ui.onTurn = [&](std::size_t) {
            if (!closed && rig->requestsWithCode(4) == 20) {
                closed = true;
                rig->window->close();
            }
        };
        rig->ui.answers.push_back(Answer::Yes);
        click("btEEPROMLoad");
        rig->ui.onTurn = nullptr;
        QVERIFY(closed);
        QCOMPARE(rig->requestsWithCode(4), std::size_t(8128 / 8));
        // Then the closing question, and the deactivation it asked for.
        QCOMPARE(rig->ui.questions.size(), std::size_t(1));
        QVERIFY(rig->leaveRequestSent());
        QCOMPARE(exits.count(), 1);
        QVERIFY(!rig->window->isVisible());
    }

    void writeProgramsTheStation_data()
    {
        QTest::addColumn<bool>("checkWrite");
        QTest::newRow("without read-back") << false;
        QTest::newRow("with read-back") << true;
    }
    void writeProgramsTheStation()
    {
        QFETCH(bool, checkWrite);
        rig->startStation();
        rig->build();
        QVERIFY(activate());
        type("tabJmenoStanice", -1, QStringLiteral("Čerpací stanice"));
        type("tabOUTNazev", 0, QStringLiteral("CERPADLO"));
        type("tabOUTNazev", 1, QStringLiteral("SVETLO"));
        if (widget<QCheckBox>("CheckWrite")->isChecked() != checkWrite)
            click("CheckWrite");
        QCOMPARE(widget<QCheckBox>("CheckWrite")->isChecked(), checkWrite);
        click("btEEPROMSave");
        QCOMPARE(rig->ui.messages.back().text, kWriteDone);
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Information);
        QCOMPARE(rig->requestsWithCode(4) > 0, checkWrite);

        // What the station now holds is what the window shows.
        rm8::EepromImage stored;
        const auto eeprom = rig->station->eeprom();
        std::copy(eeprom.begin(), eeprom.end(), stored.bytes().begin());
        QVERIFY(rm8::imageHeaderValid(stored));
        StationSettings back;
        QVERIFY(rm8::decodeImage(stored, back));
        QCOMPARE(back.tabJmenoStanice, std::string("Čerpací stanice"));
        QCOMPARE(back.tabOUTNazev[1], std::string("SVETLO"));
        // Everything else as the fields encode (the start-up texts " 0" and
        // " 100" come back as the decoder writes numbers).
        rm8::EepromImage encoded;
        QVERIFY(rm8::encodeImage(fields(), encoded));
        StationSettings expected;
        QVERIFY(rm8::decodeImage(encoded, expected));
        QVERIFY2(back == expected, qPrintable(differences(expected, back)));
    }

    void writeThenReadGivesTheSameFields()
    {
        rig->startStation();
        // A configuration whose outputs pass the cross-check, in the form the
        // encoder writes (no inverted analog input, whose level texts change
        // places on every round through the image).
        rig->nextFile = QString::fromStdString(goldenFile("header_checksum_13.eep").string());
        rig->build();
        click("btFileLoad");
        const StationSettings loaded = fields();
        QVERIFY(activate());
        click("btEEPROMSave");
        QVERIFY2(rig->ui.messages.back().text == kWriteDone, rig->ui.messages.back().text.c_str());
        type("tabJmenoStanice", -1, QStringLiteral("jiný název"));
        click("btEEPROMLoad");
        QCOMPARE(rig->ui.messages.back().text, kReadDone);
        QVERIFY2(fields() == loaded, qPrintable(differences(loaded, fields())));
    }

    void outputConflictStopsTheWriteAtItsCell_data()
    {
        QTest::addColumn<QStringList>("typed"); // field, row, text, ...
        QTest::addColumn<QString>("cell");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("messageStart");
        QTest::newRow("name begins another name")
            << QStringList{QStringLiteral("tabOUTNazev"), QStringLiteral("1"), QStringLiteral("SVETLO"),
                           QStringLiteral("tabOUTNazev"), QStringLiteral("2"), QStringLiteral("SVETLOVOD")}
            << QStringLiteral("tabOUTNazev") << 1 << QStringLiteral("Název výstupu '");
        QTest::newRow("on-command begins the off-command")
            << QStringList{QStringLiteral("tabOUTZap"), QStringLiteral("4"), QStringLiteral("ZAP"),
                           QStringLiteral("tabOUTVyp"), QStringLiteral("4"), QStringLiteral("ZAPVYP")}
            << QStringLiteral("tabOUTZap") << 4 << QStringLiteral("Název 'Zapnuto' výstupu '");
    }
    void outputConflictStopsTheWriteAtItsCell()
    {
        QFETCH(QStringList, typed);
        QFETCH(QString, cell);
        QFETCH(int, row);
        QFETCH(QString, messageStart);
        rig->startStation();
        rig->build();
        QVERIFY(activate());
        for (qsizetype i = 0; i + 2 < typed.size(); i += 3)
            type(typed[i].toLatin1().constData(), typed[i + 1].toInt(), typed[i + 2]);
        widget<QTabWidget>("TabList")->setCurrentIndex(0);
        QWidget* offending = rig->window->field(cell, row);
        QVERIFY(offending);
        int tabWhenShown = -1;
        rig->ui.onMessage = [&](const rm8::test::RecordingInteraction::Shown&) {
            tabWhenShown = widget<QTabWidget>("TabList")->currentIndex();
        };
        click("btEEPROMSave");
        QCOMPARE(rig->ui.messages.size(), std::size_t(2));
        QVERIFY2(QString::fromStdString(rig->ui.messages.back().text).startsWith(messageStart),
                 rig->ui.messages.back().text.c_str());
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Stop);
        // The outputs' page before the message, the cell after it.
        QCOMPARE(tabWhenShown, 3);
        QCOMPARE(widget<QTabWidget>("TabList")->currentIndex(), 3);
        QCOMPARE(rig->window->focusWidget(), offending);
        QCOMPARE(rig->requestsWithCode(5), std::size_t(0));
    }

    // ---- the settings file ----

    void loadingAGoldenFileFillsTheFields_data()
    {
        QTest::addColumn<QString>("name");
        // Whether the file is already in the form a save writes: the others
        // carry texts and numbers that the decoder normalises.
        QTest::addColumn<bool>("savedAsIs");
        QTest::newRow("full") << QStringLiteral("full.eep") << false;
        QTest::newRow("empty") << QStringLiteral("empty.eep") << true;
        QTest::newRow("long texts") << QStringLiteral("long_texts.eep") << false;
        QTest::newRow("header checksum 13") << QStringLiteral("header_checksum_13.eep") << true;
    }
    void loadingAGoldenFileFillsTheFields()
    {
        QFETCH(QString, name);
        QFETCH(bool, savedAsIs);
        const auto golden = goldenFile(name.toStdString());
        QTemporaryDir scratch;
        const QString first = scratch.filePath(QStringLiteral("první.eep"));
        const QString second = scratch.filePath(QStringLiteral("druhý.eep"));
        rig->build();
        widget<QTabWidget>("TabList")->setCurrentIndex(6);

        rig->nextFile = QString::fromStdString(golden.string());
        int tabBehindTheMessage = -1;
        std::string nameBehindTheMessage;
        rig->ui.onMessage = [&](const rm8::test::RecordingInteraction::Shown&) {
            tabBehindTheMessage = widget<QTabWidget>("TabList")->currentIndex();
            nameBehindTheMessage = edit("tabJmenoStanice")->text().toStdString();
        };
        click("btFileLoad");
        rig->ui.onMessage = nullptr;
        QCOMPARE(tabBehindTheMessage, 0);
        QCOMPARE(nameBehindTheMessage, decodedFile(readFile(golden)).tabJmenoStanice);
        QCOMPARE(rig->chosenKinds, std::vector<rm8::shell::FileDialogKind>{rm8::shell::FileDialogKind::Open});
        QCOMPARE(rig->ui.messages.back().text, "Data ze souboru '" + golden.string() + "' byla úspěšně načtena.");
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Information);
        QCOMPARE(widget<QTabWidget>("TabList")->currentIndex(), 0);
        const StationSettings expected = decodedFile(readFile(golden));
        QVERIFY2(fields() == expected, qPrintable(differences(expected, fields())));

        rig->nextFile = first;
        click("btFileSave");
        QCOMPARE(rig->ui.messages.size(), std::size_t(1)); // a good save says nothing
        const Bytes saved = readFile(first.toStdString());
        QVERIFY(!saved.empty());
        if (savedAsIs)
            QCOMPARE(saved, readFile(golden));

        // The saved file loads back into the fields as it decodes. Where the
        // golden file is in the saved form already, that is the same fields
        // and a second save gives the same bytes; elsewhere the decoder's
        // normalising (numbers; the level texts of inverted inputs, which
        // change places) makes them differ, as they would on the station.
        type("tabJmenoStanice", -1, QStringLiteral("něco jiného"));
        rig->nextFile = first;
        click("btFileLoad");
        const StationSettings reloaded = decodedFile(saved);
        QVERIFY2(fields() == reloaded, qPrintable(differences(reloaded, fields())));
        if (!savedAsIs)
            return;
        QVERIFY(reloaded == expected);
        rig->nextFile = second;
        click("btFileSave");
        QCOMPARE(readFile(second.toStdString()), saved);
    }

    void aFileThatIsNotAConfigurationChangesNoField_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("zeros") << QByteArray(200, '\0');
        QByteArray badCheck = QByteArray(60, '\0');
        badCheck[46] = char(0x82);
        badCheck[47] = char(0x25);
        badCheck[48] = char(0x55); // the right check byte would be 0xA8
        QTest::newRow("layout mark, wrong check byte") << badCheck;
    }
    void aFileThatIsNotAConfigurationChangesNoField()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir scratch;
        const QString path = scratch.filePath(QStringLiteral("cizí.eep"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        rig->build();
        type("tabJmenoStanice", -1, QStringLiteral("Vodárna"));
        widget<QTabWidget>("TabList")->setCurrentIndex(2);
        const StationSettings before = fields();
        rig->nextFile = path;
        click("btFileLoad");
        QCOMPARE(rig->ui.messages.size(), std::size_t(1));
        QCOMPARE(rig->ui.messages[0].text, "Data v souboru '" + path.toStdString()
                                               + "' nejsou v pořádku - neodpovídají formátu EEPROM.");
        QCOMPARE(rig->ui.messages[0].icon, MessageIcon::Information);
        QVERIFY(fields() == before);
        QCOMPARE(widget<QTabWidget>("TabList")->currentIndex(), 2);
    }

    // A file that passes the header test but whose texts run off the end of
    // the image: the decoder stops part-way. The window reports it, keeps
    // every field as it was, and stays usable.
    void aDamagedImageIsReportedAndChangesNoField()
    {
        QByteArray content = QByteArray::fromStdString(
            std::string(reinterpret_cast<const char*>(readFile(goldenFile("empty.eep")).data()),
                        readFile(goldenFile("empty.eep")).size()));
        content.resize(65536, '\0');
        content[20] = char(65530 % 256); // the analog names point at the very end
        content[21] = char(65530 / 256);
        for (int a = 65530; a < 65536; ++a)
            content[a] = 'A';
        unsigned sum = 0;
        for (int a = 0; a < 48; ++a)
            sum += static_cast<unsigned char>(content[a]);
        const unsigned check = (sum + 1) % 256;
        content[48] = char(check == 13 ? 12 : check);

        QTemporaryDir scratch;
        const QString path = scratch.filePath(QStringLiteral("poškozený.eep"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        rig->build();
        type("tabAINNazev", 0, QStringLiteral("Hladina"));
        const StationSettings before = fields();
        rig->nextFile = path;
        click("btFileLoad");
        QCOMPARE(rig->ui.messages.size(), std::size_t(1));
        QCOMPARE(rig->ui.messages[0].text,
                 "Při načítání nastavení programu ze souboru '" + path.toStdString() + "' nastala chyba.");
        QCOMPARE(rig->ui.messages[0].icon, MessageIcon::Stop);
        QVERIFY(fields() == before);

        rig->nextFile = QString::fromStdString(goldenFile("empty.eep").string());
        click("btFileLoad");
        QCOMPARE(rig->ui.messages.back().icon, MessageIcon::Information);
        QCOMPARE(edit("tabAINNazev", 0)->text(), QString());
    }

    void cancelledFileDialogsDoNothing()
    {
        rig->build();
        rig->nextFile.reset();
        const StationSettings before = fields();
        click("btFileLoad");
        click("btFileSave");
        QCOMPARE(rig->chosenKinds, (std::vector<rm8::shell::FileDialogKind>{rm8::shell::FileDialogKind::Open,
                                                                             rm8::shell::FileDialogKind::Save}));
        QVERIFY(rig->ui.events.empty());
        QVERIFY(fields() == before);
    }

    void savingOverAFileAsksFirst_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("Yes") << Answer::Yes << true;
        QTest::newRow("No") << Answer::No << false;
    }
    void savingOverAFileAsksFirst()
    {
        QFETCH(Answer, answer);
        QFETCH(bool, replaced);
        QTemporaryDir scratch;
        const QString path = scratch.filePath(QStringLiteral("stará.eep"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("old");
        file.close();
        rig->build();
        rig->nextFile = path;
        rig->ui.answers.push_back(answer);
        click("btFileSave");
        QCOMPARE(rig->ui.questions.size(), std::size_t(1));
        QCOMPARE(rig->ui.questions[0].text, std::string("Tento soubor již existuje. Mám ho přepsat?"));
        QCOMPARE(readFile(path.toStdString()) != (Bytes{'o', 'l', 'd'}), replaced);
        QVERIFY(rig->ui.messages.empty());
    }

    // The real file dialog, as the program opens it.
    void fileDialogOffersSettingsFiles()
    {
        QTemporaryDir scratch;
        const QString path = scratch.filePath(QStringLiteral("stanice.eep"));
        QVERIFY(QFile::copy(QString::fromStdString(goldenFile("full.eep").string()), path));
        rm8::shell::MainController::Options options;
        options.fileChooser = [this](rm8::shell::FileDialogKind kind) {
            return rm8::shell::chooseSettingsFile(rig->window.get(), kind);
        };
        rig->build(std::move(options));

        QStringList filters;
        QString objectName;
        int acceptMode = -1;
        auto seen = onNextModal<QFileDialog>(QStringLiteral("the file dialog of btFileLoad"), [&](QFileDialog* dialog) {
            filters = dialog->nameFilters();
            objectName = dialog->objectName();
            acceptMode = dialog->acceptMode();
            // Typed as a person would: selectFile() leaves the name field
            // alone once it has the focus, and whether it has the focus yet
            // depends on how busy the machine is.
            auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            QVERIFY(name);
            name->setFocus();
            name->selectAll();
            QTest::keyClicks(name, path);
            QTest::keyClick(name, Qt::Key_Return);
        });
        click("btFileLoad");
        QVERIFY2(seen->ok(), qPrintable(seen->why()));
        QCOMPARE(filters, QStringList{QStringLiteral("EEPROM (*.eep)")});
        QCOMPARE(objectName, QStringLiteral("CommonDialog"));
        QCOMPARE(acceptMode, int(QFileDialog::AcceptOpen));
        QCOMPARE(rig->ui.messages.back().text, "Data ze souboru '" + path.toStdString() + "' byla úspěšně načtena.");

        // The save dialog leaves the overwrite question to the save itself.
        bool confirms = true;
        seen = onNextModal<QFileDialog>(QStringLiteral("the file dialog of btFileSave"), [&](QFileDialog* dialog) {
            confirms = !dialog->testOption(QFileDialog::DontConfirmOverwrite);
            acceptMode = dialog->acceptMode();
            dialog->reject();
        });
        click("btFileSave");
        QVERIFY2(seen->ok(), qPrintable(seen->why()));
        QVERIFY(!confirms);
        QCOMPARE(acceptMode, int(QFileDialog::AcceptSave));
        QVERIFY(rig->ui.questions.empty());
    }

    // ---- the other commands ----

    void printingSaysItIsNotAvailable()
    {
        rig->build();
        click("btTisk");
        QCOMPARE(rig->ui.messages.size(), std::size_t(1));
        QCOMPARE(rig->ui.messages[0].icon, MessageIcon::Information);
        QVERIFY(QString::fromStdString(rig->ui.messages[0].text).startsWith(QStringLiteral("Tisk nastavení")));
    }

    void aboutBoxNamesTheProgramAndItsVersion()
    {
        rig->build();
        QStringList texts;
        bool modal = false;
        QWidget* owner = nullptr;
        auto seen = onNextModal<QDialog>(QStringLiteral("the about box"), [&](QDialog* dialog) {
            modal = dialog->isModal();
            owner = dialog->parentWidget();
            for (auto* label : dialog->findChildren<QLabel*>())
                texts << label->text();
            dialog->accept();
        });
        click("btInformace");
        QVERIFY2(seen->ok(), qPrintable(seen->why()));
        QVERIFY(modal);
        QCOMPARE(owner, rig->window.get());
        const QString all = texts.join(QLatin1Char('\n'));
        QVERIFY2(all.contains(QStringLiteral("Inicializační program pro zařízení RM8")), qPrintable(all));
        QVERIFY2(all.contains(QStringLiteral(RM8_PROJECT_VERSION)), qPrintable(all));
    }

    void portSettingsChangeWhatAPortOpens_data()
    {
        QTest::addColumn<bool>("confirm");
        QTest::newRow("OK") << true;
        QTest::newRow("Storno") << false;
    }
    void portSettingsChangeWhatAPortOpens()
    {
        QFETCH(bool, confirm);
        rig->startStation();
        const std::string stationPath = rig->station->path();
        rig->ports = rm8::link::PortMap::platformDefault();
        std::vector<rm8::link::PortMap> remembered;
        rm8::shell::MainController::Options options;
        options.remember = [&](const rm8::link::PortMap& ports) { remembered.push_back(ports); };
        options.systemPorts = [] {
            return std::vector<rm8::shell::SystemPort>{{QStringLiteral("/dev/ttyUSB0"), QStringLiteral("FTDI")}};
        };
        rig->build(std::move(options));

        auto seen = onNextModal<rm8::shell::PortSettingsDialog>(QStringLiteral("the port settings dialog"), [&](rm8::shell::PortSettingsDialog* dialog) {
            QLineEdit* device = dialog->deviceEditor(3)->lineEdit();
            device->selectAll();
            typeText(device, QString::fromStdString(stationPath));
            if (confirm)
                dialog->accept();
            else
                dialog->reject();
        });
        click("btPortSettings");
        QVERIFY2(seen->ok(), qPrintable(seen->why()));
        QCOMPARE(remembered.size(), std::size_t(confirm ? 1 : 0));
        QCOMPARE(rig->controller->ports().device("COM 3").value_or(""),
                 confirm ? stationPath : *rm8::link::PortMap::platformDefault().device("COM 3"));
        if (!confirm)
            return;
        QCOMPARE(remembered[0].device("COM 3").value_or(""), stationPath);
        auto* port = widget<QComboBox>("tabPort");
        QTest::keyClick(port, Qt::Key_Down);
        QTest::keyClick(port, Qt::Key_Down);
        QCOMPARE(port->currentText(), QStringLiteral("COM 3"));
        QVERIFY(activate());
        QCOMPARE(rig->opened, std::vector<std::string>{stationPath});
    }

    // ---- with the real progress window and message boxes ----

    // Storno in the progress window Info, clicked while the read runs: the
    // read ends with the cancel message and the fields keep their contents.
    void stornoInTheProgressWindow()
    {
        rig->startStation({}, eepromWith(readFile(goldenFile("full.eep"))));
        rig->build();
        rm8::shell::QtInteraction real(rig->window.get());
        delete rig->controller;
        rig->controller = nullptr;
        rm8::shell::MainController::Options options;
        options.ports = rig->ports;
        const std::unique_ptr<rm8::shell::MainController> controller(
            new rm8::shell::MainController(*rig->window, real, std::move(options)));

        // Every message box is read and confirmed; Storno is clicked once the
        // read has shown its progress.
        QStringList shown;
        QTimer clicker;
        bool stornoClicked = false;
        bool blockedWhileReading = false;
        connect(&clicker, &QTimer::timeout, this, [&] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                shown << box->text();
                box->button(QMessageBox::Ok)->click();
                return;
            }
            auto& info = real.progressWindow();
            if (!stornoClicked && info.isVisible()
                && info.findChild<QLabel*>()->text() == QStringLiteral("Načítám data z EEPROM do PC.")) {
                // The rest of the window takes no input meanwhile.
                blockedWhileReading = QApplication::activeModalWidget() == &info;
                stornoClicked = true;
                QTest::mouseClick(info.stornoButton(), Qt::LeftButton);
            }
        });
        clicker.start(20);

        click("btDEA");
        QCOMPARE(caption(), QStringLiteral("Deaktivovat"));
        type("tabJmenoStanice", -1, QStringLiteral("Vodárna"));
        const StationSettings before = fields();
        click("btEEPROMLoad");
        clicker.stop();
        QVERIFY(stornoClicked);
        QVERIFY(blockedWhileReading);
        QVERIFY(!real.progressWindow().isVisible());
        QCOMPARE(shown.size(), 2);
        QCOMPARE(shown.back(), QString::fromStdString(kReadCancelled));
        QVERIFY(fields() == before);
    }
};

QTEST_MAIN(TestMainController)
#include "tst_main_controller.moc"
