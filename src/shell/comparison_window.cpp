#include "shell/comparison_window.h"

#include <QDialog>
#include <QVBoxLayout>

#include "fields/compare_table.h"
#include "ui/compare_view.h"
#include "ui/main_window.h"

namespace rm8::shell {

void ComparisonWindow::build()
{
    dialog_ = new QDialog(&window_);
    dialog_->setObjectName(QStringLiteral("Porovnani"));
    dialog_->setWindowTitle(QStringLiteral("Porovnání nastavení"));
    auto* layout = new QVBoxLayout(dialog_);
    auto* view = new ui::CompareView;
    layout->addWidget(view);
    QObject::connect(view, &ui::CompareView::entryActivated, &window_, &ui::MainWindow::revealField);
    dialog_->resize(760, 420);
    view_ = view;
}

void ComparisonWindow::show(const StationSettings& ours, const StationSettings& other, const QString& otherHeading)
{
    if (!dialog_)
        build();
    qobject_cast<ui::CompareView*>(view_.data())->setRows(compareTable(ours, other), otherHeading);
    dialog_->show();
    dialog_->raise();
}

} // namespace rm8::shell
