// The progress window Info and the message boxes behind the flows, shown
// for real (offscreen) and answered by clicks.

#include <QAbstractButton>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "modal_helpers.h"
#include "shell/progress_window.h"
#include "shell/qt_interaction.h"

Q_DECLARE_METATYPE(rm8::MessageIcon)
Q_DECLARE_METATYPE(rm8::Buttons)
Q_DECLARE_METATYPE(rm8::Answer)

using rm8::Answer;
using rm8::Buttons;
using rm8::MessageIcon;
using rm8::shell::ProgressWindow;
using rm8::shell::QtInteraction;
using rm8::shell::test::onNextModal;

class TestQtInteraction : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        owner = std::make_unique<QMainWindow>();
        owner->setObjectName(QStringLiteral("Hlavni"));
        owner->show();
        ui = std::make_unique<QtInteraction>(owner.get());
    }
    void cleanup()
    {
        ui.reset();
        owner.reset();
    }

    void progressShowsTextAndStornoAsAsked_data()
    {
        QTest::addColumn<bool>("showCancel");
        QTest::newRow("with Storno") << true;
        QTest::newRow("without Storno") << false;
    }
    void progressShowsTextAndStornoAsAsked()
    {
        QFETCH(bool, showCancel);
        ProgressWindow& info = ui->progressWindow();
        ui->showProgress("Načítám data z EEPROM do PC.", showCancel);
        QVERIFY(info.isVisible());
        QCOMPARE(info.objectName(), QStringLiteral("Info"));
        QCOMPARE(info.windowTitle(), QStringLiteral("RM8"));
        QCOMPARE(info.textLabel()->text(), QStringLiteral("Načítám data z EEPROM do PC."));
        QCOMPARE(info.stornoButton()->objectName(), QStringLiteral("Storno"));
        QCOMPARE(info.stornoButton()->text(), QStringLiteral("Storno"));
        QCOMPARE(info.stornoButton()->isVisible(), showCancel);
        // Shown without a nested loop (we got here) but blocking the rest.
        QCOMPARE(info.windowModality(), Qt::ApplicationModal);
        QCOMPARE(info.parentWidget(), owner.get());
        ui->hideProgress();
        QVERIFY(!info.isVisible());
    }

    void stornoSetsTheFlagAndHidesTheWindow()
    {
        ui->showProgress("Program se pokouší navázat komunikaci ...", true);
        QVERIFY(!ui->cancelRequested());
        QTest::mouseClick(ui->progressWindow().stornoButton(), Qt::LeftButton);
        QVERIFY(!ui->progressWindow().isVisible());
        QVERIFY(ui->cancelRequested());
        QVERIFY(ui->cancelRequested()); // stays set until the next progress
    }

    void showingTheProgressClearsAnEarlierStorno_data()
    {
        QTest::addColumn<bool>("showCancel");
        QTest::newRow("next window with Storno") << true;
        QTest::newRow("next window without Storno") << false;
    }
    void showingTheProgressClearsAnEarlierStorno()
    {
        QFETCH(bool, showCancel);
        ui->showProgress("první", true);
        QTest::mouseClick(ui->progressWindow().stornoButton(), Qt::LeftButton);
        QVERIFY(ui->cancelRequested());
        ui->showProgress("druhý", showCancel);
        QVERIFY(!ui->cancelRequested());
        QVERIFY(ui->progressWindow().isVisible());
    }

    void escapeIsStornoOnlyWhereStornoIsOffered_data()
    {
        QTest::addColumn<bool>("showCancel");
        QTest::newRow("offered") << true;
        QTest::newRow("not offered") << false;
    }
    void escapeIsStornoOnlyWhereStornoIsOffered()
    {
        QFETCH(bool, showCancel);
        ui->showProgress("Převádím data ...", showCancel);
        QTest::keyClick(&ui->progressWindow(), Qt::Key_Escape);
        QCOMPARE(ui->cancelRequested(), showCancel);
        QCOMPARE(ui->progressWindow().isVisible(), !showCancel);
    }

    // The flows see Storno only through cancelRequested(): a click that is
    // still in the event queue must be delivered by it.
    void cancelRequestedDeliversPendingEvents()
    {
        ui->showProgress("Ukládám data z PC do EEPROM.", true);
        QMetaObject::invokeMethod(ui->progressWindow().stornoButton(), "click", Qt::QueuedConnection);
        QVERIFY(!ui->progressWindow().cancelled());
        QVERIFY(ui->cancelRequested());
    }

    void messageBoxCarriesTitleIconAndText_data()
    {
        QTest::addColumn<MessageIcon>("icon");
        QTest::addColumn<int>("boxIcon");
        QTest::addColumn<QString>("detail");
        QTest::newRow("stop") << MessageIcon::Stop << int(QMessageBox::Critical) << QStringLiteral("No such file");
        QTest::newRow("exclamation") << MessageIcon::Exclamation << int(QMessageBox::Warning) << QString();
        QTest::newRow("question") << MessageIcon::Question << int(QMessageBox::Question) << QString();
        QTest::newRow("information") << MessageIcon::Information << int(QMessageBox::Information) << QString();
    }
    void messageBoxCarriesTitleIconAndText()
    {
        QFETCH(MessageIcon, icon);
        QFETCH(int, boxIcon);
        QFETCH(QString, detail);
        QString title, text, detailed;
        int shownIcon = -1;
        int offered = 0;
        auto seen = onNextModal<QMessageBox>(QStringLiteral("the message box"), [&](QMessageBox* box) {
            title = box->windowTitle();
            text = box->text();
            detailed = box->detailedText();
            shownIcon = box->icon();
            offered = int(box->standardButtons());
            box->button(QMessageBox::Ok)->click();
        });
        ui->message(icon, "Data byla úspěšně načtena z EEPROM.", detail.toStdString());
        QVERIFY2(seen->ok(), qPrintable(seen->why()));
        QCOMPARE(title, QStringLiteral("RM8"));
        QCOMPARE(text, QStringLiteral("Data byla úspěšně načtena z EEPROM."));
        QCOMPARE(shownIcon, boxIcon);
        QCOMPARE(detailed, detail);
        QCOMPARE(offered, int(QMessageBox::Ok));
    }

    void lineBreaksOfTheStationTextsShowAsLines()
    {
        QString text;
        auto seen = onNextModal<QMessageBox>(QStringLiteral("the message box"), [&](QMessageBox* box) {
            text = box->text();
            box->button(QMessageBox::Ok)->click();
        });
        ui->message(MessageIcon::Information, "první řádek\r\ndruhý řádek");
        QVERIFY2(seen->ok(), qPrintable(seen->why()));
        QCOMPARE(text, QStringLiteral("první řádek\ndruhý řádek"));
    }

    void questionsAnswerWithTheButtonClicked_data()
    {
        QTest::addColumn<Buttons>("buttons");
        QTest::addColumn<int>("click"); // a standard button, or 0 for Escape
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<int>("expectedButtons");
        const int yesNo = QMessageBox::Yes | QMessageBox::No;
        const int yesNoCancel = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        QTest::newRow("yes/no: yes") << Buttons::YesNo << int(QMessageBox::Yes) << Answer::Yes << yesNo;
        QTest::newRow("yes/no: no") << Buttons::YesNo << int(QMessageBox::No) << Answer::No << yesNo;
        QTest::newRow("yes/no: escape") << Buttons::YesNo << 0 << Answer::No << yesNo;
        QTest::newRow("yes/no/cancel: yes") << Buttons::YesNoCancel << int(QMessageBox::Yes) << Answer::Yes
                                            << yesNoCancel;
        QTest::newRow("yes/no/cancel: no") << Buttons::YesNoCancel << int(QMessageBox::No) << Answer::No
                                           << yesNoCancel;
        QTest::newRow("yes/no/cancel: cancel") << Buttons::YesNoCancel << int(QMessageBox::Cancel)
                                               << Answer::Cancel << yesNoCancel;
        QTest::newRow("yes/no/cancel: escape") << Buttons::YesNoCancel << 0 << Answer::Cancel << yesNoCancel;
    }
    void questionsAnswerWithTheButtonClicked()
    {
        QFETCH(Buttons, buttons);
        QFETCH(int, click);
        QFETCH(Answer, answer);
        QFETCH(int, expectedButtons);
        int offered = 0;
        int shownIcon = -1;
        QString title;
        auto seen = onNextModal<QMessageBox>(QStringLiteral("the question box"), [&](QMessageBox* box) {
            offered = int(box->standardButtons());
            shownIcon = box->icon();
            title = box->windowTitle();
            if (click == 0)
                QTest::keyClick(box, Qt::Key_Escape);
            else
                box->button(QMessageBox::StandardButton(click))->click();
        });
        const Answer given = ui->ask(MessageIcon::Question, "Tento soubor již existuje. Mám ho přepsat?", buttons);
        QVERIFY2(seen->ok(), qPrintable(seen->why()));
        QCOMPARE(given, answer);
        QCOMPARE(offered, expectedButtons);
        QCOMPARE(shownIcon, int(QMessageBox::Question));
        QCOMPARE(title, QStringLiteral("RM8"));
    }

private:
    std::unique_ptr<QMainWindow> owner;
    std::unique_ptr<QtInteraction> ui;
};

QTEST_MAIN(TestQtInteraction)
#include "tst_qt_interaction.moc"
