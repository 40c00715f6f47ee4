#include "shell/progress_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "shell/application_info.h"

namespace rm8::shell {

ProgressWindow::ProgressWindow(QWidget* owner)
    : QDialog(owner), label_(new QLabel(this)), storno_(new QPushButton(QStringLiteral("Storno"), this))
{
    setObjectName(QStringLiteral("Info"));
    setWindowTitle(applicationTitle());
    setWindowModality(Qt::ApplicationModal);
    // No help button; a close button only means something while Storno is
    // offered, and reject() sees to that.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);

    label_->setObjectName(QStringLiteral("lblInfo"));
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    label_->setMinimumWidth(320);
    storno_->setObjectName(QStringLiteral("Storno"));
    storno_->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(storno_);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label_);
    layout->addLayout(buttons);

    connect(storno_, &QPushButton::clicked, this, &ProgressWindow::storno);
}

void ProgressWindow::present(const QString& text, bool showCancel)
{
    cancelled_ = false;
    setWindowTitle(applicationTitle());
    storno_->setVisible(showCancel);
    label_->setText(text);
    if (!isVisible())
        show();
    raise();
}

void ProgressWindow::reject()
{
    if (isVisible() && storno_->isVisible())
        storno();
}

void ProgressWindow::storno()
{
    cancelled_ = true;
    hide();
    emit stornoPressed();
}

} // namespace rm8::shell
