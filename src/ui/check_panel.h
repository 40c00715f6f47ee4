#pragma once
// The strip "Kontrola nastavení" below the pages: every violation of the
// window's settings, each with its field's label and the exact message, and
// apart after them what leaving the fields would adjust. Its header carries
// the count of errors and folds the list away, so that it never crowds the
// pages. Activating an entry (double-click or Enter) asks for its field; who
// owns the settings decides what to do with that.

#include <QString>
#include <QWidget>

#include <vector>

#include "editing/check_listing.h"

class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace rm8::ui {

class CheckPanel : public QWidget {
    Q_OBJECT

public:
    explicit CheckPanel(QWidget* parent = nullptr);

    // Replaces the list; the header's title follows the count of errors.
    void setEntries(const std::vector<CheckEntry>& entries);

    QString title() const;
    int errorCount() const { return errors_; }

    bool isExpanded() const;
    void setExpanded(bool expanded);

signals:
    // field: the catalogue name ("tabINPNazev"), or "lblInfoPamUsage" for the
    // size check; row: 0..7 for a field of a table, -1 for a single field.
    void entryActivated(const QString& field, int row);

private:
    void activate(QTreeWidgetItem* item);

    QToolButton* header_;
    QTreeWidget* list_;
    int errors_ = 0;
    int minimumLabelWidth_ = 0;
};

} // namespace rm8::ui
