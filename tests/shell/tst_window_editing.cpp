// What the real window and its commands add to the editing rules, the row
// dialogs and the check panel (each tested on its own): the message box of a
// field left with a bad text, the page and the focus after it, the texts the
// window replaces, the battery mirror, the row dialogs opened from the
// tables, the check panel after a load, the comparison with a station; the
// undo history over every kind of step, the recent files and the files
// dropped on the window. Every message box is answered with OK by a bounded watch.

#include <QUndoStack>

#include "controller_rig.h"
#include "editing/field_leave.h"
#include "fields/settings_json.h"
#include "flow/messages.h"
#include "modal_helpers.h"
#include "settings/image_encoder.h"
#include "shell/recent_files.h"
#include "ui/check_panel.h"
#include "ui/compare_view.h"
#include "ui/row_dialog.h"
#include "workbench/exit_guard.h"

using namespace rm8;
using rm8::shell::MainController;
using rm8::shell::test::onNextModal;
using rm8::shell::test::q;
using rm8::shell::test::Rig;
using rm8::test::qs;

namespace {

struct Box {
    QString title;
    QString text;
    QMessageBox::Icon icon;
};

// Runs act and answers with OK every message box that follows it, until
// none has come for a while; what the boxes said. Each watch arms the next
// before its box closes, so a second box cannot slip through.
QList<Box> boxesAfter(const std::function<void()>& act)
{
    QList<Box> boxes;
    std::shared_ptr<QString> watch;
    std::function<void()> arm = [&] {
        watch = onNextModal<QMessageBox>(QStringLiteral("a message box"), [&](QMessageBox* box) {
            boxes.append({ box->windowTitle(), box->text(), box->icon() });
            arm();
            box->button(QMessageBox::Ok)->click();
            // As a desktop does: the window behind the box is active again.
            if (box->parentWidget())
                box->parentWidget()->window()->activateWindow();
        });
    };
    arm();
    act();
    for (qsizetype seen = -1; seen != boxes.size() && boxes.size() < 4;) {
        seen = boxes.size();
        QTest::qWait(200);
    }
    return boxes;
}

QTabWidget* tabs(Rig& rig)
{
    return rig.widget<QTabWidget>("TabList");
}

int pageOf(Rig& rig, const QWidget* widget)
{
    for (int page = 0; page < tabs(rig)->count(); ++page)
        if (tabs(rig)->widget(page)->isAncestorOf(widget))
            return page;
    return -1;
}

// On the widget's page, as the technician sees it.
template <class W = QLineEdit> W* shown(Rig& rig, const QString& name)
{
    auto* widget = rig.window.findChild<W*>(name);
    if (widget)
        tabs(rig)->setCurrentIndex(pageOf(rig, widget));
    return widget;
}

// Near the indicator: a check or option button may be wider than its caption.
void tick(QAbstractButton* button)
{
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(6, button->height() / 2));
}

void typeInto(QLineEdit* edit, const QString& text)
{
    edit->setFocus(Qt::MouseFocusReason);
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

// Leaves the field for another page, which takes the focus with it.
QList<Box> leave(Rig& rig, QLineEdit* edit)
{
    return boxesAfter([&] { tabs(rig)->setCurrentIndex((pageOf(rig, edit) + 1) % tabs(rig)->count()); });
}

// A station whose EEPROM holds a configuration that breaks no rule (the
// names with diacritics of full.eep would be refused on a dialog's OK).
std::vector<std::uint8_t> cleanStationMemory()
{
    auto json = rm8::test::readJson(rm8::test::dataDir() / "editing/clean.json");
    json.erase("eepromSize");
    EepromImage image(0xFF);
    (void)encodeImage(settingsFromJson(json).value(), image);
    return { image.bytes().begin(),
        image.bytes().begin() + qsizetype(sim::memoryBytes(sim::StationProfile().memorySizeCode) + 64) };
}

QString dataPath(const std::string& file)
{
    // In Qt's form, with / on every system: the form the program names files in.
    return QDir::fromNativeSeparators(QString::fromStdString((rm8::test::dataDir() / file).string()));
}

QStringList menuTexts(Rig& rig)
{
    QStringList texts;
    for (const QAction* action : rig.window.findChild<QMenu*>(QStringLiteral("mnuNedavne"))->actions())
        texts << action->text();
    return texts;
}

// As the window system delivers a drag: entering, then the drop, both at
// the window's middle.
void dropOn(QWidget* window, const QString& path)
{
    QMimeData data;
    data.setUrls({ QUrl::fromLocalFile(path) });
    const QPoint middle = window->rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window->windowHandle(), &enter);
    QDropEvent drop(middle, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window->windowHandle(), &drop);
}

} // namespace

class TestWindowEditing : public QObject {
    Q_OBJECT
    std::unique_ptr<Rig> rig;
    QString chosenFile; // what the file dialog returns
    MainController::Options options()
    {
        MainController::Options options;
        options.fileChooser = [this](shell::FileDialogKind) { return std::optional(chosenFile); };
        return options;
    }

    // One action of an undo case: a field typed and left, a box clicked, a
    // row dialog confirmed, a file loaded or opened, the station read; the
    // message boxes it brought.
    QList<Box> perform(const nlohmann::json& action)
    {
        if (action.contains("type")) {
            auto* edit = shown(*rig, qs(action["type"]));
            typeInto(edit, qs(action["text"]));
            return leave(*rig, edit);
        }
        if (action.contains("tick"))
            return boxesAfter([&] { tick(shown<QAbstractButton>(*rig, qs(action["tick"]))); });
        if (action.contains("dialog")) {
            const auto wait = onNextModal<ui::RowDialog>(qs(action["dialog"]), [&](ui::RowDialog* dialog) {
                dialog->findChild<QLineEdit*>(qs(action["edit"]))->setText(qs(action["text"]));
                QTest::mouseClick(dialog->findChild<QPushButton*>("btOk"), Qt::LeftButton);
            });
            QTest::mouseClick(shown<QPushButton>(*rig, qs(action["dialog"])), Qt::LeftButton);
            return wait->isEmpty() ? QList<Box> {} : QList<Box> { { {}, *wait, QMessageBox::NoIcon } };
        }
        if (action.contains("load")) {
            chosenFile = dataPath(action["load"]);
            rig->click("btFileLoad");
        } else if (action.contains("open")) {
            rig->controller->openFile(dataPath(action["open"]));
        } else {
            rig->click("btEEPROMLoad");
        }
        return {};
    }

private slots:
    void init()
    {
        rig.reset(new Rig({}, options()));
        QVERIFY(QTest::qWaitForWindowActive(&rig->window));
    }
    void cleanup()
    {
        QVERIFY2(!rig->ui.unscripted, "a question came that the test did not expect");
        rig.reset();
    }

    void refusedFieldKeepsFocusAndText_data() { rm8::test::addJsonCases("ui/window_editing.json"); }
    // One stop box, titled with the program's name; then the field's page,
    // the focus in the field and its text, as typed, selected.
    void refusedFieldKeepsFocusAndText()
    {
        FETCH_CASE(c);
        const QString typed = qs(c["typed"]);
        auto* edit = shown(*rig, qs(c["field"]));
        QVERIFY(edit);
        typeInto(edit, typed);
        const QList<Box> boxes = leave(*rig, edit);
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes[0].title, QStringLiteral("RM8"));
        QCOMPARE(boxes[0].text, qs(c["message"]));
        QCOMPARE(boxes[0].icon, QMessageBox::Critical);
        QCOMPARE(tabs(*rig)->currentIndex(), pageOf(*rig, edit));
        QCOMPARE(rig->window.focusWidget(), edit); // the window's, whether or not it is active again
        QCOMPARE(edit->text(), typed);
        QCOMPARE(edit->selectedText(), typed);
    }

    // Texts the window replaces on leaving, without a message.
    void leavingReplacesClampedAndPrefixedTexts()
    {
        tick(shown<QAbstractButton>(*rig, QStringLiteral("opEnablePS1")));
        tick(shown<QAbstractButton>(*rig, QStringLiteral("tabUTOEnable")));
        const std::pair<const char*, QString> typed[]
            = { { "tabOUTimpulsLEN_0", "30" }, { "eePSOnH", "2" }, { "eePSOnM", "125" }, { "tabTC_0", "0601234567" } };
        for (const auto& [name, text] : typed) {
            auto* edit = shown(*rig, QString::fromLatin1(name));
            typeInto(edit, text);
            QVERIFY(leave(*rig, edit).isEmpty());
        }
        const StationSettings fields = rig->fields();
        QCOMPARE(fields.tabOUTimpulsLEN[0], "25.5");
        QCOMPARE(fields.eePSOnH, "4");
        QCOMPARE(fields.eePSOnM, "5");
        QCOMPARE(fields.tabTC[0], "+420601234567");
    }

    // A permission without a number is cleared with its message: when the
    // number is cleared, and when the box is clicked with none.
    void permissionNeedsANumber()
    {
        auto* number = shown(*rig, QStringLiteral("tabTC_2"));
        typeInto(number, QStringLiteral("+420601234567"));
        auto* receive = rig->widget<QCheckBox>("tabTCPrijem_2");
        const auto clickBox = [](QCheckBox* box) { return boxesAfter([box] { tick(box); }); };
        QVERIFY(clickBox(receive).isEmpty()); // the number is judged here too
        QVERIFY(receive->isChecked());
        typeInto(number, QString());
        QTest::keyClick(number, Qt::Key_Delete);
        auto boxes = leave(*rig, number);
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes[0].text,
            QStringLiteral("Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Příjem' nezaškrtnuté."));
        QCOMPARE(boxes[0].icon, QMessageBox::Warning);
        QVERIFY(!receive->isChecked());

        auto* event = shown<QCheckBox>(*rig, QStringLiteral("tabTCUdalost_4"));
        boxes = clickBox(event);
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes[0].text,
            QStringLiteral("Pokud není zadáno telefonní číslo musí být zaškrtávací pole 'Události' nezaškrtnuté."));
        QVERIFY(!event->isChecked());
    }

    // The battery text and the battery row's falling-level text are one:
    // each keystroke in either shows in the other, and a load leaves no
    // text of the configuration before it.
    void batteryTextFollowsTheBatteryRow()
    {
        const std::pair<const char*, const char*> pairs[]
            = { { "rtBattLow", "tabAINCL1Dn_7" }, { "tabAINCL1Dn_7", "rtBattLow" } };
        for (const auto& [typedName, mirrorName] : pairs) {
            auto* typed = shown(*rig, QString::fromLatin1(typedName));
            auto* mirror = rig->widget<QLineEdit>(mirrorName);
            typed->setFocus();
            typed->selectAll();
            const QString text = QStringLiteral("Slaba baterie ") + QLatin1String(typedName);
            for (qsizetype length = 1; length <= text.size(); ++length) {
                QTest::keyClick(typed, text[length - 1].toLatin1());
                QCOMPARE(mirror->text(), text.left(length));
            }
        }
        rig->widget<QLineEdit>("tabJmenoStanice")->setFocus(); // leaves the row's text, which is fine
        QTest::qWait(50);
        chosenFile = dataPath("full.eep");
        rig->click("btFileLoad");
        QCOMPARE(rig->widget<QLineEdit>("rtBattLow")->text(), rig->widget<QLineEdit>("tabAINCL1Dn_7")->text());
        QVERIFY(!rig->widget<QLineEdit>("rtBattLow")->text().contains(QStringLiteral("Slaba")));
    }

    // A command does not act on a refused text, and its box comes once.
    void commandStopsAtARefusedField()
    {
        QVERIFY(rig->activate());
        typeInto(shown(*rig, QStringLiteral("tabPIN")), QStringLiteral("12a4"));
        const QList<Box> boxes = boxesAfter([&] { rig->click("btEEPROMSave"); });
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes[0].text, QStringLiteral("PIN je špatně zadán."));
        QCOMPARE(rig->requests(5), std::size_t(0));
        QCOMPARE(rig->window.focusWidget(), rig->widget<QLineEdit>("tabPIN"));
    }

    void rowDialogsOpenFromTheTables_data() { rm8::test::addJsonCases("ui/row_dialogs_from_window.json"); }
    // A double-click on a row's field or the row's button opens the row's
    // dialog; OK brings an edited text into the table, Storno nothing.
    void rowDialogsOpenFromTheTables()
    {
        FETCH_CASE(c);
        const StationSettings before = rig->fields();
        QString opened;
        const auto wait = onNextModal<ui::RowDialog>(qs(c["dialog"]), [&](ui::RowDialog* dialog) {
            opened = dialog->objectName() + u'|' + dialog->windowTitle();
            dialog->findChild<QLineEdit*>(qs(c["edit"]))->setText(qs(c["text"]));
            QTest::mouseClick(dialog->findChild<QPushButton*>(c["confirm"] ? "btOk" : "btStorno"), Qt::LeftButton);
        });
        QWidget* opener = shown<QWidget>(*rig, qs(c["opener"]) + u'_' + QString::number(c["row"].get<int>()));
        if (qobject_cast<QPushButton*>(opener))
            QTest::mouseClick(opener, Qt::LeftButton);
        else
            QTest::mouseDClick(opener, Qt::LeftButton);
        QVERIFY2(wait->isEmpty(), qPrintable(*wait));
        QCOMPARE(opened, qs(c["dialog"]) + u'|' + qs(c["caption"]));
        StationSettings expected = before;
        if (c["confirm"])
            applyChange(expected, { c["field"], c["row"], c["text"].get<std::string>(), {} });
        QVERIFY(rig->fields() == expected);
        QCOMPARE(rig->window.isWindowModified(), c["confirm"].get<bool>());
    }

    // Read, every row dialog confirmed unchanged, written: not a byte of
    // the station changes.
    void everyDialogConfirmedChangesNoByte()
    {
        QTemporaryDir backups;
        auto withBackups = options();
        withBackups.backupFolder = backups.path();
        rig.reset(new Rig({}, std::move(withBackups), nullptr, cleanStationMemory()));
        QVERIFY(QTest::qWaitForWindowActive(&rig->window));
        const std::vector<std::uint8_t> stored = rig->station.eeprom();
        QVERIFY(rig->activate());
        rig->click("btEEPROMLoad");
        QCOMPARE(q(rig->ui.messages.back().text), q(messages::kStationReadDone));
        for (const char* button : { "tabINPbt", "tabOUTbt", "tabAINbt", "tabTCZmenit" }) {
            for (int row = 0; row < int(kRows); ++row) {
                const QString name = QString::fromLatin1(button) + u'_' + QString::number(row);
                QStringList refused;
                const auto wait = onNextModal<ui::RowDialog>(name, [&refused](ui::RowDialog* dialog) {
                    for (const Box& box : boxesAfter(
                             [dialog] { QTest::mouseClick(dialog->findChild<QPushButton*>("btOk"), Qt::LeftButton); }))
                        refused << box.text;
                });
                QTest::mouseClick(shown<QPushButton>(*rig, name), Qt::LeftButton);
                QVERIFY2(refused.isEmpty(), qPrintable(name + u' ' + refused.join(u'|')));
                QVERIFY2(wait->isEmpty(), qPrintable(*wait));
            }
        }
        QVERIFY(!rig->window.isWindowModified());
        // With the backup box ticked the station's content goes to a file
        // of the backup folder first, and the message names that file.
        rig->click("CheckBackup");
        rig->ui.answers = { Answer::Yes };
        rig->click("btEEPROMSave");
        QCOMPARE(q(rig->ui.messages.back().text), q(messages::kStationWriteDone));
        QVERIFY(rig->requests(5) > 0);
        QVERIFY(rig->station.eeprom() == stored);
        const QStringList kept = QDir(backups.path()).entryList({ QStringLiteral("*.eep") }, QDir::Files);
        QCOMPARE(kept.size(), 1);
        const QString backup = QDir(backups.path()).filePath(kept.front());
        const auto size = rig->window.eepromSize().value();
        QCOMPARE(QFileInfo(backup).size(), qint64(size));
        // Read through Qt: the name holds the station's Czech letters.
        QFile copy(backup);
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QVERIFY(copy.readAll() == QByteArray(reinterpret_cast<const char*>(stored.data()), qsizetype(size)));
        QVERIFY(std::any_of(rig->ui.messages.begin(), rig->ui.messages.end(),
            [&](const auto& shown) { return q(shown.text).endsWith(QDir::toNativeSeparators(backup)); }));
    }

    // A loaded file that breaks a rule unfolds the panel with its count; an
    // entry leads to its field. The caption marks edits until a save.
    void checkPanelAndModifiedMark()
    {
        chosenFile = dataPath("header_checksum_13.eep");
        rig->click("btFileLoad");
        auto* panel = rig->window.checkPanel();
        QCOMPARE(panel->title(), QStringLiteral("Kontrola nastavení: 1 chyba"));
        QVERIFY(panel->isExpanded());
        QVERIFY(!rig->window.isWindowModified());

        rig->type("tabJmenoStanice", QStringLiteral("Vodarna"));
        QVERIFY(rig->window.isWindowModified());
        QTemporaryDir scratch;
        chosenFile = scratch.filePath(QStringLiteral("ulozene.eep"));
        rig->click("btFileSave");
        QVERIFY(!rig->window.isWindowModified());

        auto* list = panel->findChild<QTreeWidget*>(QStringLiteral("lstKontrola"));
        tabs(*rig)->setCurrentIndex(0);
        emit list->itemActivated(list->topLevelItem(0), 0);
        auto* field = rig->widget<QLineEdit>("rtNotAuthorized");
        QCOMPARE(tabs(*rig)->currentIndex(), pageOf(*rig, field));
        QCOMPARE(rig->window.focusWidget(), field);
        QCOMPARE(field->selectedText(), field->text());
    }

    // The station is read apart: the comparison lists what differs and the
    // window's settings stay as they were.
    void comparisonWithTheStation()
    {
        rig.reset(new Rig({}, options(), nullptr, cleanStationMemory()));
        QVERIFY(rig->activate());
        rig->type("tabJmenoStanice", QStringLiteral("Vodarna"));
        const StationSettings before = rig->fields();
        rig->click("btPorovnatStanici");
        auto* comparison = rig->window.findChild<QDialog*>(QStringLiteral("Porovnani"));
        QVERIFY(comparison && comparison->isVisible());
        QVERIFY(comparison->findChild<ui::CompareView*>()->rowCount() > 0);
        QVERIFY(rig->fields() == before);
        QVERIFY(rig->window.isWindowModified());
    }

    void undoAndRedo_data() { rm8::test::addJsonCases("ui/undo_steps.json"); }
    // Each kind of step: done, taken back, done again, the step named in the
    // tooltips and the caption's mark at each point; a refused entry is no
    // step. The keys work from inside a text field, the buttons as well.
    void undoAndRedo()
    {
        FETCH_CASE(c);
        if (c["act"].contains("read")) {
            rig.reset(new Rig({}, options(), nullptr, cleanStationMemory()));
            QVERIFY(rig->activate());
        }
        const nlohmann::json before = c.value("before", nlohmann::json::array());
        for (const auto& action : before)
            QVERIFY(perform(action).isEmpty());
        const StationSettings start = rig->fields();
        const int steps = rig->controller->history()->count();
        QCOMPARE(perform(c["act"]).size(), c.value("boxes", 0));
        if (c["step"].is_null()) {
            QCOMPARE(rig->controller->history()->count(), steps);
            return;
        }
        const StationSettings done = rig->fields();
        QVERIFY(!(done == start));
        auto* undo = rig->widget("btZpet");
        auto* redo = rig->widget("btZnovu");
        QCOMPARE(undo->toolTip(), QStringLiteral("Zpět: ") + qs(c["step"]));
        const nlohmann::json shows = c.value("shows", nlohmann::json::object());
        for (const auto& [name, text] : shows.items())
            QCOMPARE(rig->widget<QLineEdit>(name.c_str())->text(), qs(text));
        const auto& marks = c["marks"];
        QCOMPARE(rig->window.isWindowModified(), marks[0].get<bool>());

        auto* field = shown(*rig, QStringLiteral("tabJmenoStanice"));
        field->setFocus();
        // As a desktop does after a dialog: the window is active again.
        rig->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&rig->window));
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(rig->fields() == start);
        QCOMPARE(rig->window.isWindowModified(), marks[1].get<bool>());
        QCOMPARE(redo->toolTip(), QStringLiteral("Znovu: ") + qs(c["step"]));
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(rig->fields() == done);
        QCOMPARE(rig->window.isWindowModified(), marks[2].get<bool>());

        QTest::mouseClick(undo, Qt::LeftButton);
        QVERIFY(rig->fields() == start);
        QTest::keyClick(field, Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(rig->fields() == done);
        QCOMPARE(rig->controller->history()->count(), steps + 1);
    }

    // The files loaded and saved come back in the next run, the latest
    // first; one gone since is offered for removal and nothing else changes.
    void recentFilesAcrossRuns()
    {
        QTemporaryDir scratch;
        QSettings store(scratch.filePath(QStringLiteral("rm8config.ini")), QSettings::IniFormat);
        const auto run = [&] {
            auto remembered = options();
            remembered.store = &store;
            rig.reset(new Rig({}, std::move(remembered)));
        };
        run();
        const QString loaded = QFileInfo(dataPath("full.eep")).absoluteFilePath();
        const QString saved = scratch.filePath(QStringLiteral("ulozene.eep"));
        chosenFile = loaded;
        rig->click("btFileLoad");
        chosenFile = saved;
        rig->click("btFileSave");
        run();
        QCOMPARE(menuTexts(*rig), (QStringList { QDir::toNativeSeparators(saved), QDir::toNativeSeparators(loaded) }));
        QVERIFY(QFile::remove(saved));
        const StationSettings before = rig->fields();
        rig->ui.answers = { Answer::Yes };
        rig->window.findChild<QMenu*>(QStringLiteral("mnuNedavne"))->actions().front()->trigger();
        QCOMPARE(rig->ui.questions.size(), std::size_t(1));
        QCOMPARE(q(rig->ui.questions[0].text),
            QStringLiteral("Soubor '%1' už neexistuje. Odebrat ho ze seznamu nedávných souborů?")
                .arg(QDir::toNativeSeparators(saved)));
        QVERIFY(rig->ui.messages.empty());
        QVERIFY(rig->fields() == before);
        QCOMPARE(menuTexts(*rig), QStringList { QDir::toNativeSeparators(loaded) });
        rig->window.findChild<QMenu*>(QStringLiteral("mnuNedavne"))->actions().front()->trigger();
        QVERIFY(!(rig->fields() == before));

        shell::RecentFiles recent(nullptr);
        for (int file = 0; file < 10; ++file)
            recent.add(QStringLiteral("/nastaveni/%1.eep").arg(file));
        recent.add(QStringLiteral("/nastaveni/5.eep"));
        QCOMPARE(recent.paths().size(), shell::RecentFiles::kLimit);
        // Kept absolute: on Windows with the current drive in front.
        const auto absolute = [](int file) { return QFileInfo(QStringLiteral("/nastaveni/%1.eep").arg(file)).absoluteFilePath(); };
        QCOMPARE(recent.paths().mid(0, 3), (QStringList { absolute(5), absolute(9), absolute(8) }));
    }

    void droppedFiles_data() { rm8::test::addJsonCases("ui/opening_files.json"); }
    // A file dropped on the window: the question about an edit not kept
    // first, then the load; a file that is no settings changes nothing.
    void droppedFiles()
    {
        FETCH_CASE(c);
        if (c["edit"] == true)
            rig->type("tabJmenoStanice", QStringLiteral("Vodarna"));
        const std::map<std::string, Answer> answers { { "No", Answer::No }, { "Cancel", Answer::Cancel } };
        if (!c["answer"].is_null())
            rig->ui.answers = { answers.at(c["answer"]) };
        const StationSettings before = rig->fields();
        const QString path = dataPath(c["file"]);
        dropOn(&rig->window, path);
        QCOMPARE(rig->ui.questions.size(), std::size_t(c["answer"].is_null() ? 0 : 1));
        for (const auto& question : rig->ui.questions)
            QCOMPARE(q(question.text), q(kUnsavedBeforeOpening));
        QCOMPARE(rig->fields() == before, !c["loads"].get<bool>());
        QCOMPARE(rig->window.isWindowModified(), !c["loads"].get<bool>() && c["edit"] == true);
        QCOMPARE(rig->ui.messages.size(), std::size_t(c["message"].is_null() ? 0 : 1));
        if (!c["message"].is_null())
            QCOMPARE(q(rig->ui.messages.back().text), qs(c["message"]).arg(path));
    }
};

QTEST_MAIN(TestWindowEditing)
#include "tst_window_editing.moc"
