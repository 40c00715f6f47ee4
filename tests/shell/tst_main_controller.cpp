// What the main window's commands add to the core flows (which have their
// own tests): the window shows what the flows found and fills its fields at
// the right moment. Driven by clicks against a simulated station on a
// pseudo-terminal, through the program's own serial line; questions are
// answered by a script, or by clicks on the real windows where those are
// what is tested.

#include "editing/check_listing.h"
#include "flow/messages.h"
#include "controller_rig.h"
#include "modal_helpers.h"
#include "shell/port_settings_dialog.h"
#include "shell/qt_interaction.h"

using namespace rm8;
using rm8::shell::MainController;
using rm8::shell::test::onNextModal;
using rm8::shell::test::q;
using rm8::shell::test::Rig;
using rm8::test::qs;

namespace {

const QString kStillProgramming = QStringLiteral("Zařízení nebylo deaktivováno a je zřejmě stále v programovacím módu. "
                                                 "Má se zařízení před ukončením programu deaktivovat?");

const QString kUnsavedSettings = QStringLiteral("Nastavení bylo změněno a nebylo uloženo do souboru ani do EEPROM. "
                                                "Uložit je před ukončením programu do souboru?");

} // namespace

class TestMainController : public QObject {
    Q_OBJECT
    std::unique_ptr<Rig> rig;

private slots:
    void cleanup()
    {
        // A question nobody scripted was answered No or Cancel: the test
        // may have passed on the wrong path.
        QVERIFY2(!rig || !rig->ui.unscripted, "a question came that the test did not expect");
        rig.reset();
    }

    void activationShowsTheVerdict_data() { rm8::test::addJsonCases("ui/activation.json"); }
    // Then deactivation, where the session opened.
    void activationShowsTheVerdict()
    {
        FETCH_CASE(c);
        const auto version = c["version"].get<std::vector<std::uint8_t>>();
        rig.reset(new Rig({ c["signature"].get<std::uint32_t>(), version[0], version[1], 6, 32 }));
        rig->widget<QComboBox>("tabPort")->setCurrentText(qs(c["port"]));
        const bool opened = rig->activate();
        const auto shown = rig->ui.messageTexts();
        QVERIFY2(std::vector(shown.begin() + opened, shown.end()) == c["verdict"], shown.back().c_str());
        QCOMPARE(rig->text("tabDeAktivNapis"), qs(c["state"]));
        QCOMPARE(rig->text("lblInfoProdukt"), qs(c["product"]));
        QCOMPARE(rig->widget("btEEPROMSave")->isEnabled(), c["state"] == "Aktivní");
        QVERIFY(!rig->ui.progressVisible);
        QCOMPARE(rig->controller->sessionOpen(), opened);
        if (!opened)
            return;
        rig->click("btDEA");
        QCOMPARE(rig->station.requests().back(), (std::vector<std::uint8_t> { 6, 170, 85 }));
        QCOMPARE(rig->text("tabDeAktivNapis"), QStringLiteral("Neaktivní"));
        QVERIFY(!rig->controller->sessionOpen());
    }

    // Through the program's own file dialog a golden file is loaded (after
    // a cancelled dialog that does nothing) and saved again byte for byte;
    // it is written into the station without and with reading back, and
    // read back into the fields, which show it (on the first page) before
    // the success message does. The name goes into the dialog's name field:
    // selectFile() leaves that field alone once it has the focus.
    void fileAndStationRoundTrip()
    {
#ifdef Q_OS_WIN
        QSKIP("on Windows the file dialog is the system's own window, which a Qt test cannot drive");
#endif
        MainController::Options options;
        options.fileChooser
            = [this](shell::FileDialogKind kind) { return shell::chooseSettingsFile(&rig->window, kind); };
        rig.reset(new Rig({}, std::move(options)));
        QTemporaryDir scratch;
        // Outputs that pass the cross-check, in the form the encoder writes.
        const QString golden = QString::fromStdString((rm8::test::dataDir() / "header_checksum_13.eep").string());
        const QString saved = scratch.filePath(QStringLiteral("uložené.eep"));
        for (const auto& [command, path] :
            { std::pair { "btFileLoad", QString() }, { "btFileLoad", golden }, { "btFileSave", saved } }) {
            const bool opening = command == std::string("btFileLoad");
            const auto seen = onNextModal<QFileDialog>(QStringLiteral("the file dialog"), [&](QFileDialog* dialog) {
                QCOMPARE(dialog->objectName(), QStringLiteral("CommonDialog"));
                QCOMPARE(dialog->nameFilters(), QStringList { QStringLiteral("EEPROM (*.eep)") });
                QCOMPARE(dialog->acceptMode(), opening ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
                // The save flow asks about replacing a file itself.
                QCOMPARE(dialog->testOption(QFileDialog::DontConfirmOverwrite), !opening);
                if (path.isEmpty())
                    return dialog->reject();
                dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
                dialog->findChild<QDialogButtonBox*>()
                    ->button(opening ? QDialogButtonBox::Open : QDialogButtonBox::Save)
                    ->click();
            });
            rig->click(command);
            QVERIFY2(seen->isEmpty(), qPrintable(*seen));
            QCOMPARE(rig->ui.messages.size(), std::size_t(path.isEmpty() ? 0 : 1)); // a good save says nothing
        }
        QCOMPARE(q(rig->ui.messages.back().text), q(messages::loadSucceeded(golden.toStdString())));
        QCOMPARE(rm8::test::readBytes(saved.toStdString()), rm8::test::readBytes(golden.toStdString()));

        const StationSettings loaded = rig->fields();
        QVERIFY(rig->activate());
        // The file breaks one rule (a character in rtNotAuthorized): a
        // write goes only on an explicit Ano, and Ne sends nothing.
        rig->ui.answers = { Answer::No };
        rig->click("btEEPROMSave");
        QCOMPARE(q(rig->ui.questions.back().text), q(writeQuestion(1)));
        QCOMPARE(rig->ui.questions.back().buttons, Buttons::YesNoDefaultNo);
        QCOMPARE(rig->requests(5), std::size_t(0));
        rig->click("CheckWrite"); // read-back is on by default
        rig->ui.answers = { Answer::Yes };
        rig->click("btEEPROMSave");
        QVERIFY(rig->requests(5) > 0);
        QCOMPARE(rig->requests(4), std::size_t(0));
        rig->click("CheckWrite");
        rig->ui.answers = { Answer::Yes };
        rig->click("btEEPROMSave");
        QCOMPARE(q(rig->ui.messages.back().text), q(messages::kStationWriteDone));
        QVERIFY(rig->requests(4) > 0);
        rig->type("tabJmenoStanice", QStringLiteral("jiny nazev"));
        rig->widget<QTabWidget>("TabList")->setCurrentIndex(3);
        std::optional<StationSettings> behindTheMessage;
        int pageBehindTheMessage = -1;
        rig->ui.onMessage = [&](const test::RecordingInteraction::Shown&) {
            behindTheMessage = rig->fields();
            pageBehindTheMessage = rig->widget<QTabWidget>("TabList")->currentIndex();
        };
        rig->click("btEEPROMLoad");
        QCOMPARE(q(rig->ui.messages.back().text), q(messages::kStationReadDone));
        QVERIFY(rig->fields() == loaded && behindTheMessage == loaded);
        QCOMPARE(pageBehindTheMessage, 0);

        // A write stops at the first conflicting output cell: its page shows
        // before the message, the cell has the focus after it, nothing is sent.
        const std::size_t written = rig->requests(5);
        rig->type("tabOUTNazev_1", QStringLiteral("SVETLO"));
        rig->type("tabOUTNazev_2", QStringLiteral("SVETLOVOD"));
        rig->click("btEEPROMSave");
        QVERIFY2(
            rig->ui.messages.back().text.starts_with("Název výstupu 'OUT2'"), rig->ui.messages.back().text.c_str());
        QCOMPARE(pageBehindTheMessage, 3);
        QCOMPARE(rig->window.focusWidget(), rig->widget<QLineEdit>("tabOUTNazev_1"));
        QCOMPARE(rig->requests(5), written);
    }

    // The real progress window and message boxes while a read runs. The
    // progress window blocks the rest; commands clicked meanwhile start
    // nothing, and closing the window waits for the read's end. Storno ends
    // the read with the cancel message, the fields keep what was typed, and
    // then the closing asks its question.
    void stornoInTheProgressWindow()
    {
        shell::QtInteraction real;
        rig.reset(new Rig({}, {}, &real));
        QSignalSpy exits(rig->controller, &MainController::exitRequested);
        QStringList shown;
        bool blocksTheRest = false;
        QTimer clicker;
        connect(&clicker, &QTimer::timeout, this, [&] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                shown << box->text();
                // The edited name is not to be saved on the way out.
                if (box->text() == kUnsavedSettings)
                    box->button(QMessageBox::No)->click();
                else
                    (box->defaultButton() ? box->defaultButton() : box->button(QMessageBox::Ok))->click();
            } else if (auto& info = real.progressWindow();
                       !blocksTheRest && info.isVisible() && info.textLabel()->text() == q(messages::kReadingEeprom)) {
                blocksTheRest = QApplication::activeModalWidget() == &info;
                for (const char* name : { "btDEA", "btEEPROMLoad", "btKonec" })
                    rig->click(name);
                rig->window.close();
                QTest::mouseClick(info.stornoButton(), Qt::LeftButton);
            }
        });
        clicker.start(20);
        // Bounded: whatever is still open then is closed by force, and the test fails.
        QTimer::singleShot(20000, &clicker, [] {
            while (QWidget* modal = QApplication::activeModalWidget())
                modal->hide();
        });
        QVERIFY(rig->activate());
        rig->type("tabJmenoStanice", QStringLiteral("Vodarna"));
        const StationSettings before = rig->fields();
        rig->click("btEEPROMLoad");
        clicker.stop();
        QVERIFY(blocksTheRest && !real.progressWindow().isVisible());
        QCOMPARE(shown.mid(1), (QStringList { q(messages::kStationReadCancelled), kUnsavedSettings, kStillProgramming }));
        QVERIFY(rig->fields() == before);
        QCOMPARE(rig->requests(6), std::size_t(1)); // the question's Yes
        QCOMPARE(exits.count(), 1);
        rig.reset(); // before the interaction it uses
    }

    void exitAndCloseQuestions_data() { rm8::test::addJsonCases("ui/exit_questions.json"); }
    void exitAndCloseQuestions()
    {
        FETCH_CASE(c);
        rig.reset(new Rig);
        QSignalSpy exits(rig->controller, &MainController::exitRequested);
        if (c["session"] == true)
            QVERIFY(rig->activate());
        if (!c["answer"].is_null())
            rig->ui.answers.push_back(rm8::test::named<Answer>(c["answer"], { "Ok", "Yes", "No", "Cancel" }));
        if (c["by"] == "btKonec")
            rig->click("btKonec");
        else
            rig->window.close();
        // Asked once at most: the closing that ends the program asks no more.
        // The questions themselves are the exit guard's (its own tests); here
        // only that both ways out reach it and end or not as it says.
        QCOMPARE(rig->ui.questions.size(), std::size_t(c["buttons"].is_null() ? 0 : 1));
        QCOMPARE(rig->requests(6), std::size_t(c["leaves"] == true ? 1 : 0));
        QCOMPARE(exits.count(), c["ends"] == true ? 1 : 0);
        QCOMPARE(rig->window.isVisible(), c["ends"] == false);
        QCOMPARE(rig->controller->sessionOpen(), c["session"] == true && c["ends"] == false);
    }

    // The about box, modal and owned by the window. The port dialog chooses
    // what an entry of the port list opens: not after Storno, after OK, and
    // remembered for the next run. Its lists show what each system port is,
    // the field keeps only the path that will be opened; blanks around a
    // typed path go, and an empty field is the platform's own device again.
    void aboutBoxAndPortDialog()
    {
        std::vector<link::PortMap> remembered;
        MainController::Options options;
        options.remember = [&](const link::PortMap& ports) { remembered.push_back(ports); };
        options.systemPorts = [] {
            return std::vector<shell::SystemPort> { { "/dev/ttyS0", "" }, { "/dev/ttyUSB0", "CP2102 (Silicon Labs)" } };
        };
        rig.reset(new Rig({}, std::move(options)));
        QStringList texts;
        auto seen = onNextModal<QDialog>(QStringLiteral("the about box"), [&](QDialog* dialog) {
            for (auto* label : dialog->findChildren<QLabel*>())
                texts << label->text();
            texts << QString::number(dialog->parentWidget() == &rig->window);
            dialog->accept();
        });
        rig->click("btInformace");
        QVERIFY2(seen->isEmpty(), qPrintable(*seen));
        QVERIFY2(texts.join(u'|').contains(
                     QStringLiteral("Inicializační program pro zařízení RM8|Verze " RM8_PROJECT_VERSION))
                && texts.back() == QStringLiteral("1"),
            qPrintable(texts.join(u'|')));

        const QString station = QString::fromStdString(rig->station.path());
        rig->widget<QComboBox>("tabPort")->setCurrentText(QStringLiteral("COM 3"));
        for (const char* button : { "btStorno", "btOk" }) {
            seen = onNextModal<shell::PortSettingsDialog>(
                QStringLiteral("the port dialog"), [&](shell::PortSettingsDialog* dialog) {
                    QCOMPARE(
                        dialog->deviceEditor(1)->itemText(1), QStringLiteral("/dev/ttyUSB0 – CP2102 (Silicon Labs)"));
                    QTest::keyClick(dialog->deviceEditor(2), Qt::Key_Down); // the list's first entry
                    QTest::keyClick(dialog->deviceEditor(2), Qt::Key_Down);
                    for (int number : { 3, 4 }) {
                        dialog->deviceEditor(number)->lineEdit()->selectAll();
                        QTest::keyClick(dialog->deviceEditor(number)->lineEdit(), Qt::Key_Backspace);
                    }
                    QTest::keyClicks(dialog->deviceEditor(3)->lineEdit(), QLatin1String("  ") + station + u' ');
                    QTest::mouseClick(dialog->findChild<QPushButton*>(button), Qt::LeftButton);
                });
            rig->click("btPortSettings");
            QVERIFY2(seen->isEmpty(), qPrintable(*seen));
            QCOMPARE(rig->activate(), button == std::string("btOk"));
        }
        link::PortMap expected;
        expected.set(4, link::PortMap::platformDefault().device("COM 4").value());
        expected.set(1, rig->station.path());
        expected.set(2, "/dev/ttyUSB0");
        expected.set(3, rig->station.path());
        QCOMPARE(remembered.size(), std::size_t(1));
        QVERIFY(remembered[0].entries() == expected.entries());
        QCOMPARE(rig->controller->ports().device("COM 2"), std::optional<std::string>("/dev/ttyUSB0"));
    }
};

QTEST_MAIN(TestMainController)
#include "tst_main_controller.moc"
