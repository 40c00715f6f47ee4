// The four row dialogs as the technician meets them: what they show and
// allow, OK against Storno and the frame, the level check on OK, the
// negation of an analog input and a field refused on leaving. The rules
// behind the fields are the editing library's and are tested there; these
// cases cover what the widgets add. Each dialog runs modally, as it does
// over the window, and every wait on it is bounded. The cases of what a
// dialog shows and of its fields are in tests/data/ui/row_dialogs.json and
// row_dialog_fields.json.

#include "editing/level_check.h"
#include "editing/row_model.h"
#include "shell/modal_helpers.h"
#include "ui/analog_dialog.h"
#include "ui/input_dialog.h"
#include "ui/level_graph.h"
#include "ui/output_dialog.h"
#include "ui/phone_dialog.h"

using namespace rm8;
using rm8::shell::test::onNextModal;

namespace {

// [field, row, text or check box state] entries.
void prepare(StationSettings& settings, const nlohmann::json& setup)
{
    for (const auto& entry : setup) {
        FieldChange change { entry[0].get<std::string>(), entry[1].get<std::size_t>(), false, std::nullopt };
        if (entry[2].is_string())
            change.value = entry[2].get<std::string>();
        else
            change.value = entry[2].get<bool>();
        applyChange(settings, change);
    }
}

// Opens the dialog called name over a row and lets act work on it while it
// is open; true when it was confirmed.
bool runDialog(
    const QString& name, StationSettings& settings, std::size_t row, const std::function<void(ui::RowDialog*)>& act)
{
    const auto wait = onNextModal<ui::RowDialog>(name, [&act](ui::RowDialog* dialog) {
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        act(dialog);
    });
    bool confirmed = false;
    if (name == u"Vstup")
        confirmed = ui::InputDialog().edit(settings, row);
    else if (name == u"Vystup")
        confirmed = ui::OutputDialog().edit(settings, row);
    else if (name == u"Analog")
        confirmed = ui::AnalogDialog().edit(settings, row);
    else
        confirmed = ui::PhoneDialog().edit(settings, row);
    [&] { QVERIFY2(wait->isEmpty(), qPrintable(*wait)); }();
    return confirmed;
}

template <class W = QWidget> W* child(const QWidget* dialog, const QString& name)
{
    return dialog->findChild<W*>(name);
}

void click(const QWidget* dialog, const char* button)
{
    child<QAbstractButton>(dialog, QLatin1String(button))->click();
}

// Types into a field as a person would: the focus first, then the keys.
QLineEdit* type(const QWidget* dialog, const QString& field, const QString& text)
{
    auto* edit = child<QLineEdit>(dialog, field);
    edit->setFocus(Qt::TabFocusReason);
    edit->selectAll();
    QTest::keyClicks(edit, text);
    return edit;
}

// What a test changes in a row: its check boxes (and for an output, the
// modem-state function) and one text.
std::pair<std::vector<bool>, std::string> rowView(const QString& name, const StationSettings& s, std::size_t row)
{
    if (name == u"Vstup") {
        const InputRow r = inputRow(s, row);
        return { { r.zpr, r.lhEvent, r.hlEvent, r.neg, r.lhAlarm, r.hlAlarm }, r.nazev };
    }
    if (name == u"Vystup") {
        const OutputRow r = outputRow(s, row);
        return { { r.zpr, r.neg, r.function == OutputFunction::ModemState }, r.nazev };
    }
    if (name == u"Analog") {
        const AnalogRow r = analogRow(s, row);
        return { { r.zpr, r.prc, r.neg, r.cl1UpEvent, r.cl1DnEvent, r.cl2UpEvent, r.cl2DnEvent, r.sendCl1Up,
                     r.sendCl1Dn, r.sendCl2Up, r.sendCl2Dn },
            r.cl1Dn };
    }
    const PhoneRow r = phoneRow(s, row);
    return { { r.prijem, r.udalost }, r.number };
}

} // namespace

class RowDialogsTest : public QObject {
    Q_OBJECT

private slots:
    void shows_data() { test::addJsonCases("ui/row_dialogs.json"); }

    // "control.property=value"; without a control, the dialog's own.
    void shows()
    {
        FETCH_CASE(c);
        StationSettings settings;
        prepare(settings, c["setup"]);
        QStringList expected, seen;
        for (const auto& line : c["expected"])
            expected << test::qs(line);
        runDialog(test::qs(c["dialog"]), settings, c["row"].get<std::size_t>(), [&](ui::RowDialog* d) {
            for (const QString& line : expected) {
                const QString name = line.section(u'.', 0, 0);
                const QString property = line.section(u'.', 1).section(u'=', 0, 0);
                const QObject* control = name.isEmpty() ? d : child(d, name);
                seen << name + u'.' + property + u'='
                        + (control ? control->property(property.toLatin1()).toString() : QStringLiteral("missing"));
            }
            click(d, "btStorno");
        });
        QCOMPARE(seen, expected);
    }

    // With power saving on, ticking an event box enables its send-at-once
    // box at once, and clearing it disables the box again.
    void eventBoxEnablesAtOnce_data()
    {
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<QString>("event");
        QTest::addColumn<QString>("sendAtOnce");
        QTest::newRow("input") << "Vstup"
                               << "INPHLEvent"
                               << "eeMaskDInHLAlarm";
        QTest::newRow("analog") << "Analog"
                                << "AINCL2UpEvent"
                                << "eeCL2Up";
    }

    void eventBoxEnablesAtOnce()
    {
        QFETCH(QString, dialog);
        QFETCH(QString, event);
        QFETCH(QString, sendAtOnce);
        StationSettings settings;
        prepare(settings, R"([["opEnablePS1", 0, true]])"_json);
        QList<bool> enabled;
        runDialog(dialog, settings, 0, [&](ui::RowDialog* d) {
            for (int i = 0; i < 3; ++i) {
                enabled << child(d, sendAtOnce)->isEnabled();
                child<QCheckBox>(d, event)->click();
            }
            click(d, "btStorno");
        });
        QCOMPARE(enabled, (QList<bool> { false, true, false }));
    }

    void confirmOrCancel_data()
    {
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("end");
        const std::tuple<const char*, int, const char*, const char*> rows[] = {
            { "Vstup", 1, "INPNazev", "Cerpadlo" },
            { "Vystup", 0, "OUTNazev", "CERPADLO" },
            { "Analog", 7, "AINCL1Dn", "Baterie slaba" },
            { "TelCislo", 2, "TC", "+420777123456" },
        };
        for (const auto& [dialog, row, field, text] : rows)
            for (const char* end : { "btOk", "btStorno", "frame", "Escape" })
                QTest::addRow("%s %s", dialog, end) << dialog << row << field << text << end;
    }

    void confirmOrCancel()
    {
        QFETCH(QString, dialog);
        QFETCH(int, row);
        QFETCH(QString, field);
        QFETCH(QString, text);
        QFETCH(QString, end);
        StationSettings settings;
        prepare(settings, R"([["opEnablePS1", 0, true]])"_json);
        const StationSettings before = settings;
        const bool confirmed = runDialog(dialog, settings, std::size_t(row), [&](ui::RowDialog* d) {
            for (QCheckBox* box : d->findChildren<QCheckBox*>())
                box->setChecked(!box->isChecked());
            if (auto* modem = child<QRadioButton>(d, QStringLiteral("eeMaskDOutFnc2")))
                modem->setChecked(true);
            type(d, field, text);
            if (end == u"frame")
                d->close();
            else if (end == u"Escape")
                QTest::keyClick(d, Qt::Key_Escape);
            else
                click(d, end.toLatin1());
        });
        QCOMPARE(confirmed, end == u"btOk");
        if (!confirmed) {
            QVERIFY(settings == before);
            return;
        }
        auto [flags, typed] = rowView(dialog, before, std::size_t(row));
        flags.flip();
        QCOMPARE(rowView(dialog, settings, std::size_t(row)), std::pair(flags, text.toStdString()));
        if (dialog == u"Analog") // the battery row's falling text is the battery report
            QCOMPARE(settings.rtBattLow, text.toStdString());
    }

    // A click is a press, a turn of the event loop (where a field left for
    // the button would be judged) and a release.
    void stornoOverRefusedText()
    {
        StationSettings settings;
        const StationSettings before = settings;
        QString shown;
        const bool confirmed = runDialog(QStringLiteral("Vstup"), settings, 0, [&](ui::RowDialog* d) {
            const auto box = onNextModal<QMessageBox>(QStringLiteral("refusal"), [&](QMessageBox* b) {
                shown = b->text();
                b->button(QMessageBox::Ok)->click();
            });
            type(d, QStringLiteral("INPNazev"), QStringLiteral("st"));
            auto* storno = child(d, QStringLiteral("btStorno"));
            QTest::mousePress(storno, Qt::LeftButton);
            QTest::qWait(50);
            QTest::mouseRelease(storno, Qt::LeftButton);
        });
        QVERIFY(!confirmed);
        QCOMPARE(shown, QString());
        QVERIFY(settings == before);
    }

    void analogLevels_data()
    {
        QTest::addColumn<QStringList>("levels"); // CL1, HCL1, CL2, HCL2 on 0..100
        QTest::addColumn<bool>("accepted");
        QTest::newRow("bands touch") << QStringList { "20", "5", "30", "5" } << true;
        QTest::newRow("decimal comma") << QStringList { "2,5", "0,5", "50", "2" } << true;
        QTest::newRow("CL2 below CL1") << QStringList { "50", "0", "40", "0" } << false;
        QTest::newRow("band below the range") << QStringList { "2", "3", "50", "0" } << false;
        QTest::newRow("band above the range") << QStringList { "50", "0", "98", "3" } << false;
    }

    void analogLevels()
    {
        QFETCH(QStringList, levels);
        QFETCH(bool, accepted);
        StationSettings settings;
        QString message;
        bool stopIcon = false;
        bool stayedOpen = false;
        QString focus;
        std::optional<ui::LevelGraph::Level> drawn;
        const bool confirmed = runDialog(QStringLiteral("Analog"), settings, 0, [&](ui::RowDialog* d) {
            const char* fields[] = { "AINCL1Level", "AINHCL1Level", "AINCL2Level", "AINHCL2Level" };
            for (int i = 0; i < 4; ++i)
                type(d, QLatin1String(fields[i]), levels[i]);
            drawn = child<ui::LevelGraph>(d, QStringLiteral("Graph"))->level1();
            const auto box = onNextModal<QMessageBox>(QStringLiteral("level message"), [&](QMessageBox* b) {
                message = b->text();
                stopIcon = b->icon() == QMessageBox::Critical;
                b->button(QMessageBox::Ok)->click();
            });
            click(d, "btOk");
            QVERIFY(QTest::qWaitFor([&] { return !d->isVisible() || box->isEmpty(); }, 5000));
            stayedOpen = d->isVisible();
            focus = d->focusWidget() ? d->focusWidget()->objectName() : QString();
            if (stayedOpen)
                click(d, "btStorno");
        });
        QCOMPARE(confirmed, accepted);
        QCOMPARE(stayedOpen, !accepted);
        QCOMPARE(message, accepted ? QString() : QString::fromUtf8(kLevelCheckMessage.data()));
        QCOMPARE(stopIcon, !accepted);
        if (!accepted)
            QCOMPARE(focus, QStringLiteral("AINCL1Level"));
        QString cl1 = levels[0];
        QString hcl1 = levels[1];
        QCOMPARE(
            drawn, (ui::LevelGraph::Level { cl1.replace(u',', u'.').toDouble(), hcl1.replace(u',', u'.').toDouble() }));
    }

    void analogNegationTwiceRestores()
    {
        StationSettings settings;
        prepare(settings, R"([["tabAINCL1Level", 3, "20"], ["tabAINHCL1Level", 3, "2"], ["tabAINCL2Level", 3, "70"],
                            ["tabAINHCL2Level", 3, "5"]])"_json);
        QStringList original, negated, restored;
        std::optional<ui::LevelGraph::Level> drawn;
        runDialog(QStringLiteral("Analog"), settings, 3, [&](ui::RowDialog* d) {
            const auto texts = [d] {
                QStringList all;
                for (const char* f : { "AINCL1Level", "AINHCL1Level", "AINCL2Level", "AINHCL2Level" })
                    all << child<QLineEdit>(d, QLatin1String(f))->text();
                return all;
            };
            original = texts();
            click(d, "AINNeg");
            negated = texts();
            drawn = child<ui::LevelGraph>(d, QStringLiteral("Graph"))->level1();
            click(d, "AINNeg");
            restored = texts();
            click(d, "btStorno");
        });
        QCOMPARE(original, (QStringList { "20", "2", "70", "5" }));
        QVERIFY(negated != original);
        QCOMPARE(drawn, (ui::LevelGraph::Level { negated[0].toDouble(), negated[1].toDouble() }));
        QCOMPARE(restored, original);
    }

    void leaveField_data() { test::addJsonCases("ui/row_dialog_fields.json"); }

    // An empty message: the text is accepted, or replaced by after.
    void leaveField()
    {
        FETCH_CASE(c);
        const QString message = test::qs(c["message"]);
        const QString after = test::qs(c["after"]);
        StationSettings settings;
        prepare(settings, c["setup"]);
        QString shown, text;
        bool keptFocus = false;
        runDialog(test::qs(c["dialog"]), settings, 0, [&](ui::RowDialog* d) {
            const auto box = onNextModal<QMessageBox>(QStringLiteral("refusal"), [&](QMessageBox* b) {
                shown = b->text();
                b->button(QMessageBox::Ok)->click();
            });
            QLineEdit* edit = type(d, test::qs(c["field"]), test::qs(c["typed"]));
            QTest::keyClick(edit, Qt::Key_Tab);
            QVERIFY(QTest::qWaitFor([&] { return message.isEmpty() ? edit->text() == after : box->isEmpty(); }, 3000));
            keptFocus = d->focusWidget() == edit; // the dialog's, whether or not it is active again
            text = edit->text();
            click(d, "btStorno");
        });
        QCOMPARE(shown, message);
        QCOMPARE(text, after);
        QCOMPARE(keptFocus, !message.isEmpty());
    }
};

QTEST_MAIN(RowDialogsTest)
#include "row_dialogs_test.moc"
