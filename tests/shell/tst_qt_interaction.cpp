// The progress window Info and the message boxes behind the flows, shown
// for real (offscreen) and answered by clicks and keys.

#include "modal_helpers.h"
#include "shell/progress_window.h"
#include "shell/qt_interaction.h"
#include "window_tests.h"

using namespace rm8;

class TestQtInteraction : public QObject {
    Q_OBJECT
    QMainWindow owner;
    shell::QtInteraction ui { &owner };

private slots:
    void progressWindow_data() { rm8::test::addJsonCases("ui/progress_window.json"); }
    // An earlier Storno is forgotten when the next progress shows; a Storno
    // stays until then. The flows see Storno only through cancelRequested().
    void progressWindow()
    {
        FETCH_CASE(c);
        shell::ProgressWindow& info = ui.progressWindow();
        ui.showProgress("první", true);
        QTest::mouseClick(info.stornoButton(), Qt::LeftButton);
        ui.showProgress("Načítám data z EEPROM do PC.", c["storno"] == true);
        QVERIFY(!ui.cancelRequested());
        // Shown without a nested loop (we got here), but blocking the rest.
        QCOMPARE((QVariantList { info.isVisible(), info.objectName(), info.windowTitle(), info.textLabel()->text(),
                     info.stornoButton()->text(), info.stornoButton()->isVisible(),
                     info.windowModality() == Qt::ApplicationModal, info.parentWidget() == &owner }),
            (QVariantList {
                true, "Info", "RM8", "Načítám data z EEPROM do PC.", "Storno", c["storno"] == true, true, true }));

        if (c["act"] == "click")
            QTest::mouseClick(info.stornoButton(), Qt::LeftButton);
        else if (c["act"] == "queued")
            QMetaObject::invokeMethod(info.stornoButton(), "click", Qt::QueuedConnection);
        else if (c["act"] == "escape")
            QTest::keyClick(&info, Qt::Key_Escape);
        QCOMPARE(ui.cancelRequested(), c["cancelled"] == true);
        QCOMPARE(ui.cancelRequested(), c["cancelled"] == true);
        QCOMPARE(info.isVisible(), c["cancelled"] == false);
        ui.hideProgress();
        QVERIFY(!info.isVisible());
    }

    void boxes_data() { rm8::test::addJsonCases("ui/message_boxes.json"); }
    // Titled with the application's title; the station's CR LF line breaks
    // shown as lines; what the system said kept as the details of a message.
    void boxes()
    {
        FETCH_CASE(c);
        const auto standard = QMetaEnum::fromType<QMessageBox::StandardButtons>();
        QStringList seen;
        const auto wait = shell::test::onNextModal<QMessageBox>(
            QStringLiteral("the message box"), [&](QMessageBox* box) {
                seen << box->windowTitle() << box->text() << box->detailedText()
                     << QMetaEnum::fromType<QMessageBox::Icon>().valueToKey(box->icon())
                     << QString::number(box->standardButtons().toInt());
                if (c["press"] == "Escape")
                    QTest::keyClick(box, Qt::Key_Escape);
                else
                    box->button(QMessageBox::StandardButton(standard.keyToValue(c["press"].get<std::string>().c_str())))
                        ->click();
            });
        const auto icon
            = rm8::test::named<MessageIcon>(c["icon"], { "Stop", "Exclamation", "Question", "Information" });
        const std::string_view text = "první řádek\r\ndruhý řádek";
        if (c["buttons"].is_null())
            ui.message(icon, text, "No such file");
        else
            QCOMPARE(ui.ask(icon, text, rm8::test::named<Buttons>(c["buttons"], { "Ok", "YesNo", "YesNoCancel" })),
                rm8::test::named<Answer>(c["answer"], { "Ok", "Yes", "No", "Cancel" }));
        QVERIFY2(wait->isEmpty(), qPrintable(*wait));
        QCOMPARE(seen,
            (QStringList { QStringLiteral("RM8"), QStringLiteral("první řádek\ndruhý řádek"),
                c["buttons"].is_null() ? QStringLiteral("No such file") : QString(), rm8::test::qs(c["box"]),
                QString::number(standard.keysToValue(c["offered"].get<std::string>().c_str())) }));
    }
};

QTEST_MAIN(TestQtInteraction)
#include "tst_qt_interaction.moc"
