#pragma once
// The fields in which the window's settings differ from another
// configuration (a settings file, or what a station holds): one table row
// per field and table row, with the page, the row's label, the field's
// caption and both values. Activating a row (double-click or Enter) asks for
// its field, as the check panel does.

#include <QString>
#include <QWidget>

#include <vector>

#include "fields/compare_table.h"

class QLabel;
class QTableWidget;

namespace rm8::ui {

class CompareView : public QWidget {
    Q_OBJECT

public:
    explicit CompareView(QWidget* parent = nullptr);

    // otherHeading names the other side's column: "Ve stanici", "V souboru".
    void setRows(const std::vector<CompareRow>& rows, const QString& otherHeading);

    int rowCount() const;
    QString summary() const;

signals:
    // As CheckPanel::entryActivated: the field's name and its row 0..7, or -1.
    void entryActivated(const QString& field, int row);

private:
    QLabel* summary_;
    QTableWidget* table_;
};

} // namespace rm8::ui
