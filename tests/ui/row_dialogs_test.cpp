// The four row dialogs as the technician meets them: what they show and
// allow, OK against Storno and the frame, the level check on OK, the
// negation of an analog input and a field refused on leaving. The rules
// behind the fields are the editing library's and are tested there; these
// cases cover what the widgets add. Each dialog runs modally, as it does
// over the window, and every wait on it is bounded.

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

// "field:row=value" entries; true and false set a check box.
void apply(StationSettings& settings, const QStringList& setup)
{
    for (const QString& entry : setup) {
        const QString field = entry.section(u':', 0, 0);
        const QString value = entry.section(u'=', 1);
        const auto row = entry.section(u':', 1).section(u'=', 0, 0).toULong();
        FieldChange change { field.toStdString(), row, value.toStdString(), std::nullopt };
        if (value == u"true" || value == u"false")
            change.value = value == u"true";
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
    void shows_data()
    {
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<int>("row");
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QStringList>("expected"); // "control.property=value"; no control: the dialog
        const QStringList powerSaving { "opEnablePS1:0=true" };
        QTest::newRow("input")
            << "Vstup" << 2 << QStringList { "tabINPNazev:2=Cerpadlo" }
            << QStringList { ".windowTitle=Vstup IN3", ".objectName=Vstup", "INPNazev.text=Cerpadlo",
                   "INPNazev.maxLength=100", "INPZpr.text=Uvádět tento vstup ve zprávě o stavu",
                   "eeMaskDInHLAlarm.text=odeslat ihned",
                   "INPNeg.text=Negace vstupu (neguje se ihned po vzorkování - teprve poté se analyzuje)",
                   "btStorno.text=&Storno" };
        QTest::newRow("input, power saving off")
            << "Vstup" << 0 << QStringList { "tabINPLHEvent:0=true", "tabINPHLEvent:0=true" }
            << QStringList { "eeMaskDInLHAlarm.enabled=false", "eeMaskDInHLAlarm.enabled=false" };
        QTest::newRow("input, power saving on")
            << "Vstup" << 0 << QStringList { "opEnablePS1:0=true", "tabINPLHEvent:0=true" }
            << QStringList { "eeMaskDInLHAlarm.enabled=true", "eeMaskDInHLAlarm.enabled=false" };
        QTest::newRow("output 1") << "Vystup" << 0 << QStringList {}
                                  << QStringList { ".windowTitle=Vystup OUT1",
                                         "OUTZpr.text=Uvádět tento vstup ve zprávě o stavu",
                                         "eeMaskDOutFnc1.text=Standartní výstup", "eeMaskDOutFnc1.checked=true",
                                         "eeMaskDOutFnc2.enabled=true", "eeMaskDOutFnc3.enabled=false" };
        QTest::newRow("output 2") << "Vystup" << 1 << QStringList {}
                                  << QStringList { "eeMaskDOutFnc2.enabled=false", "eeMaskDOutFnc3.enabled=true",
                                         "eeMaskDOutFnc3.text=Indikace stavu šetřícího režimu" };
        QTest::newRow("output 6") << "Vystup" << 5 << QStringList {}
                                  << QStringList { "eeMaskDOutFnc2.enabled=false", "eeMaskDOutFnc3.enabled=false" };
        QTest::newRow("battery") << "Analog" << 7 << QStringList {}
                                 << QStringList { ".windowTitle=Analog BAT",
                                        "AINHCL1Level.toolTip=Hodnota  hystereze CL1",
                                        "AINStateM.toolTip=Název stavu MEDIUM (normální)",
                                        "AINCL2DnEvent.text=Hlásit přechod dolu přes CL2", "Graph.objectName=Graph" };
        const QStringList events { "tabAINCL1UpEvent:3=true", "tabAINCL2DnEvent:3=true" };
        QTest::newRow("analog, power saving off")
            << "Analog" << 3 << events << QStringList { "eeCL1Up.enabled=false", "eeCL2Down.enabled=false" };
        QTest::newRow("analog, power saving on") << "Analog" << 3 << events + powerSaving
                                                 << QStringList { "eeCL1Up.enabled=true", "eeCL1Down.enabled=false",
                                                        "eeCL2Up.enabled=false", "eeCL2Down.enabled=true" };
        QTest::newRow("phone") << "TelCislo" << 4 << QStringList { "tabTC:4=+420601234567" }
                               << QStringList { ".windowTitle=Telefonní číslo T5", "TC.text=+420601234567",
                                      "TC.toolTip=Telefonní číslo", "TCPrijem.text=Přijímat příkazy",
                                      "TCUdalost.toolTip=Odesílat zprávy o událostech na toto tel. číslo" };
    }

    void shows()
    {
        QFETCH(QString, dialog);
        QFETCH(int, row);
        QFETCH(QStringList, setup);
        QFETCH(QStringList, expected);
        StationSettings settings;
        apply(settings, setup);
        QStringList seen;
        runDialog(dialog, settings, std::size_t(row), [&](ui::RowDialog* d) {
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
        apply(settings, { "opEnablePS1:0=true" });
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
        apply(settings, { "opEnablePS1:0=true" });
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
        apply(settings, { "tabAINCL1Level:3=20", "tabAINHCL1Level:3=2", "tabAINCL2Level:3=70", "tabAINHCL2Level:3=5" });
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

    void leaveField_data()
    {
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("message"); // empty: accepted
        QTest::addColumn<QString>("after");
        QTest::newRow("input keyword") << "Vstup" << QStringList {} << "INPNazev"
                                       << "st"
                                       << "Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): "
                                          "STATE;STAV;BACK;NOBACK;RESET;SHUTDOWN;NAME;ZPET;NEZPET;JMENO"
                                       << "st";
        QTest::newRow("output states equal") << "Vystup" << QStringList { "tabOUTZap:0=on" } << "OUTVyp"
                                             << "ON"
                                             << "Název 'Vypnuto' nesmí být stejný jako název 'Zapnuto'."
                                             << "ON";
        QTest::newRow("output states prefix") << "Vystup" << QStringList { "tabOUTZap:0=ON1" } << "OUTVyp"
                                              << "ON"
                                              << ""
                                              << "ON";
        QTest::newRow("impulse clamped") << "Vystup" << QStringList {} << "OUTimpulsLEN"
                                         << "30"
                                         << ""
                                         << "25.5";
        QTest::newRow("analog level") << "Analog" << QStringList {} << "AINCL1Level"
                                      << "-5"
                                      << "Číslo je chybně zadáno."
                                      << "-5";
        QTest::newRow("phone characters") << "TelCislo" << QStringList {} << "TC"
                                          << "06abc"
                                          << "Telefonní číslo je špatně zadáno."
                                          << "06abc";
        QTest::newRow("phone UTO") << "TelCislo" << QStringList { "tabUTOEnable:0=true" } << "TC"
                                   << "0601234567"
                                   << ""
                                   << "+420601234567";
    }

    void leaveField()
    {
        QFETCH(QString, dialog);
        QFETCH(QStringList, setup);
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QFETCH(QString, message);
        QFETCH(QString, after);
        StationSettings settings;
        apply(settings, setup);
        QString shown, text;
        bool keptFocus = false;
        runDialog(dialog, settings, 0, [&](ui::RowDialog* d) {
            const auto box = onNextModal<QMessageBox>(QStringLiteral("refusal"), [&](QMessageBox* b) {
                shown = b->text();
                b->button(QMessageBox::Ok)->click();
            });
            QLineEdit* edit = type(d, field, typed);
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
