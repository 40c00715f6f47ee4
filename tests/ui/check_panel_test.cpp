// What the check panel and the comparison view add to their core listings:
// the panel's title counts errors only, errors stand before adjustments
// whatever order they come in, the header folds the list away, and a
// double-click names the entry's field and row.

#include <QtTest>
#include <QtWidgets>

#include "ui/check_panel.h"
#include "ui/compare_view.h"

using rm8::ui::CheckPanel;
using rm8::ui::CompareView;

namespace {

void doubleClickRow(QAbstractItemView* view, int row)
{
    const QModelIndex index = view->model()->index(row, 0);
    const QPoint centre = view->visualRect(index).center();
    // As a real double-click arrives: a press and release, then the double
    // click; an item view ignores a double click on an item it saw no press on.
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, centre);
}

} // namespace

class CheckPanelTest : public QObject {
    Q_OBJECT

private slots:
    void panelCountsErrorsListsThemFirstAndNamesTheActivatedField()
    {
        CheckPanel panel;
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        QCOMPARE(panel.title(), QStringLiteral("Kontrola nastavení: bez chyb"));
        panel.setEntries({ { rm8::Page::Phones, "tabTC", 1, "T2: Telefonní číslo", "\"0601\" -> \"+420601\"", true },
            { rm8::Page::Outputs, "tabOUTNazev", 2, "OUT3: Název", "Název výstupu ...", false } });
        QCOMPARE(panel.title(), QStringLiteral("Kontrola nastavení: 1 chyba"));

        auto* list = panel.findChild<QTreeWidget*>(QStringLiteral("lstKontrola"));
        QVERIFY(list);
        QCOMPARE(list->topLevelItem(1)->text(1), QStringLiteral("úprava: \"0601\" -> \"+420601\""));
        QSignalSpy activated(&panel, &CheckPanel::entryActivated);
        doubleClickRow(list, 0);
        QCOMPARE(activated.count(), 1);
        QCOMPARE(activated.at(0).at(0).toString(), QStringLiteral("tabOUTNazev"));
        QCOMPARE(activated.at(0).at(1).toInt(), 2);

        QTest::mouseClick(panel.findChild<QToolButton*>(QStringLiteral("btKontrola")), Qt::LeftButton);
        QVERIFY(!panel.isExpanded());
        QVERIFY(!list->isVisible());
    }

    void compareViewNamesTheActivatedField()
    {
        CompareView view;
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.setRows({ { rm8::Page::General, "tabPIN", std::nullopt, "", "PIN SIM karty", "1234", "" },
                         { rm8::Page::Analog5To8, "tabAINNeg", 7, "BAT", "Negace", "ne", "ano" } },
            QStringLiteral("Ve stanici"));
        QCOMPARE(view.summary(), QStringLiteral("Počet rozdílných polí: 2"));
        auto* table = view.findChild<QTableWidget*>(QStringLiteral("tabPorovnani"));
        QVERIFY(table);
        QCOMPARE(table->horizontalHeaderItem(4)->text(), QStringLiteral("Ve stanici"));
        QSignalSpy activated(&view, &CompareView::entryActivated);
        doubleClickRow(table, 1);
        QCOMPARE(activated.count(), 1);
        QCOMPARE(activated.at(0).at(0).toString(), QStringLiteral("tabAINNeg"));
        QCOMPARE(activated.at(0).at(1).toInt(), 7);
    }
};

QTEST_MAIN(CheckPanelTest)
#include "check_panel_test.moc"
