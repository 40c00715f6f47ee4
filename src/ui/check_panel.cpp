#include "ui/check_panel.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QPalette>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

#include "ui/field_names.h"

namespace rm8::ui {
namespace {

constexpr int kFieldRole = Qt::UserRole;
constexpr int kRowRole = Qt::UserRole + 1;

// Rows the open list shows before it scrolls: enough to see that there is
// more, little enough to leave the pages their height at 1024×768.
constexpr int kVisibleRows = 5;
constexpr int kWidestLabel = 420;

QString qs(const std::string& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

CheckPanel::CheckPanel(QWidget* parent)
    : QWidget(parent)
    , header_(new QToolButton)
    , list_(new QTreeWidget)
{
    setObjectName(QStringLiteral("frmKontrola"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);

    header_->setObjectName(QStringLiteral("btKontrola"));
    header_->setCheckable(true);
    header_->setChecked(true);
    header_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    header_->setArrowType(Qt::DownArrow);
    header_->setAutoRaise(true);
    QFont bold = header_->font();
    bold.setBold(true);
    header_->setFont(bold);
    connect(header_, &QToolButton::toggled, this, [this](bool open) {
        header_->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
        list_->setVisible(open);
    });
    layout->addWidget(header_, 0, Qt::AlignLeft);

    list_->setObjectName(QStringLiteral("lstKontrola"));
    list_->setColumnCount(2);
    list_->setHeaderLabels({ QStringLiteral("Pole"), QStringLiteral("Zpráva") });
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->header()->setStretchLastSection(true);
    const QFontMetrics metrics(list_->font());
    minimumLabelWidth_ = metrics.horizontalAdvance(QStringLiteral("AIN8: Přechod nahoru přes CL1")) + 40;
    list_->setFixedHeight(list_->header()->sizeHint().height() + kVisibleRows * (metrics.height() + 6) + 4);
    connect(list_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { activate(item); });
    layout->addWidget(list_);

    setEntries({});
}

void CheckPanel::setEntries(const std::vector<CheckEntry>& entries)
{
    list_->clear();
    errors_ = 0;
    const QIcon errorIcon = style()->standardIcon(QStyle::SP_MessageBoxCritical);
    const QIcon adjustmentIcon = style()->standardIcon(QStyle::SP_MessageBoxInformation);
    const QBrush quiet = palette().brush(QPalette::Disabled, QPalette::Text);
    // The report lists violations before adjustments; kept so, whatever the
    // caller hands in, so that the errors are always seen first.
    for (const bool adjustments : { false, true }) {
        for (const auto& entry : entries) {
            if (entry.isAdjustment != adjustments)
                continue;
            const QString message = adjustments ? QStringLiteral("úprava: ") + qs(entry.message) : qs(entry.message);
            auto* item = new QTreeWidgetItem(list_, { qs(entry.label), message });
            item->setIcon(0, adjustments ? adjustmentIcon : errorIcon);
            item->setToolTip(0, qs(entry.label));
            item->setToolTip(1, message);
            item->setData(0, kFieldRole, qs(entry.field));
            item->setData(0, kRowRole, windowRowOf(entry.row));
            if (adjustments) {
                item->setForeground(0, quiet);
                item->setForeground(1, quiet);
            } else {
                ++errors_;
            }
        }
    }
    // As wide as the longest label, but never so wide that the messages,
    // which matter more, lose their room.
    list_->resizeColumnToContents(0);
    list_->setColumnWidth(0, std::clamp(list_->columnWidth(0), minimumLabelWidth_, kWidestLabel));
    header_->setText(qs(checkPanelTitle(static_cast<std::size_t>(errors_))));
    QPalette colours = header_->palette();
    colours.setColor(
        QPalette::ButtonText, errors_ > 0 ? QColor(0xb0, 0x00, 0x00) : palette().color(QPalette::ButtonText));
    header_->setPalette(colours);
}

QString CheckPanel::title() const
{
    return header_->text();
}

bool CheckPanel::isExpanded() const
{
    return header_->isChecked();
}

void CheckPanel::setExpanded(bool expanded)
{
    header_->setChecked(expanded);
}

void CheckPanel::activate(QTreeWidgetItem* item)
{
    if (item == nullptr)
        return;
    emit entryActivated(item->data(0, kFieldRole).toString(), item->data(0, kRowRole).toInt());
}

} // namespace rm8::ui
