#include "ui/compare_view.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include "fields/field_captions.h"
#include "ui/field_names.h"

namespace rm8::ui {
namespace {

constexpr int kFieldRole = Qt::UserRole;
constexpr int kRowRole = Qt::UserRole + 1;

QString qs(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QTableWidgetItem* cell(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setToolTip(text);
    return item;
}

} // namespace

CompareView::CompareView(QWidget* parent)
    : QWidget(parent)
    , summary_(new QLabel)
    , table_(new QTableWidget(0, 5))
{
    setObjectName(QStringLiteral("frmPorovnani"));
    auto* layout = new QVBoxLayout(this);
    summary_->setObjectName(QStringLiteral("lblPorovnani"));
    layout->addWidget(summary_);

    table_->setObjectName(QStringLiteral("tabPorovnani"));
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->verticalHeader()->setVisible(false);
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 8);
    table_->horizontalHeader()->setStretchLastSection(true);
    connect(table_, &QTableWidget::itemActivated, this, [this](QTableWidgetItem* item) {
        const QTableWidgetItem* first = table_->item(item->row(), 0);
        emit entryActivated(first->data(kFieldRole).toString(), first->data(kRowRole).toInt());
    });
    layout->addWidget(table_);

    setRows({}, QString());
}

void CompareView::setRows(const std::vector<CompareRow>& rows, const QString& otherHeading)
{
    table_->setHorizontalHeaderLabels({ QStringLiteral("Stránka"), QStringLiteral("Řádek"), QStringLiteral("Pole"),
        QStringLiteral("V okně"), otherHeading });
    table_->setRowCount(static_cast<int>(rows.size()));
    int at = 0;
    for (const auto& row : rows) {
        auto* page = cell(qs(pageCaption(row.page)));
        page->setData(kFieldRole, qs(row.field));
        page->setData(kRowRole, windowRowOf(row.row));
        table_->setItem(at, 0, page);
        table_->setItem(at, 1, cell(qs(row.rowLabel)));
        table_->setItem(at, 2, cell(qs(row.caption)));
        table_->setItem(at, 3, cell(qs(row.windowValue)));
        table_->setItem(at, 4, cell(qs(row.otherValue)));
        ++at;
    }
    table_->resizeColumnsToContents();
    summary_->setText(rows.empty() ? QStringLiteral("Nastavení se neliší.")
                                   : QStringLiteral("Počet rozdílných polí: %1").arg(rows.size()));
}

int CompareView::rowCount() const
{
    return table_->rowCount();
}

QString CompareView::summary() const
{
    return summary_->text();
}

} // namespace rm8::ui
