#include "shell/qt_interaction.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QWidget>

#include "shell/application_info.h"
#include "shell/progress_window.h"

namespace rm8::shell {
namespace {

QMessageBox::Icon boxIcon(MessageIcon icon)
{
    switch (icon) {
    case MessageIcon::Stop:
        return QMessageBox::Critical;
    case MessageIcon::Exclamation:
        return QMessageBox::Warning;
    case MessageIcon::Question:
        return QMessageBox::Question;
    case MessageIcon::Information:
        return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

// The station tool's texts break lines with CR LF; a label wants LF alone.
QString boxText(std::string_view text)
{
    QString shown = fromCore(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return shown;
}

} // namespace

QtInteraction::QtInteraction(QWidget* owner) : owner_(owner), progress_(new ProgressWindow(owner)) {}

QtInteraction::~QtInteraction()
{
    // Without an owner nobody else deletes the window.
    if (!owner_ && progress_)
        delete progress_.data();
}

void QtInteraction::showProgress(std::string_view text, bool showCancel)
{
    progress_->present(fromCore(text), showCancel);
    // One turn so that the window is painted before the work goes on.
    QCoreApplication::processEvents();
}

void QtInteraction::hideProgress()
{
    progress_->hide();
    if (owner_) {
        owner_->raise();
        owner_->activateWindow();
    }
    QCoreApplication::processEvents();
}

bool QtInteraction::cancelRequested()
{
    QCoreApplication::processEvents();
    return progress_->cancelled();
}

void QtInteraction::message(MessageIcon icon, std::string_view text, std::string_view detail)
{
    QMessageBox box(boxIcon(icon), applicationTitle(), boxText(text), QMessageBox::Ok, owner_);
    box.setTextFormat(Qt::PlainText);
    // The fixed text stays as the station tool words it; what the system
    // said is there for whoever asks for it.
    if (!detail.empty())
        box.setDetailedText(fromCore(detail));
    box.exec();
}

Answer QtInteraction::ask(MessageIcon icon, std::string_view question, Buttons buttons)
{
    QMessageBox::StandardButtons shown = QMessageBox::Ok;
    QMessageBox::StandardButton escape = QMessageBox::Ok;
    switch (buttons) {
    case Buttons::Ok:
        break;
    case Buttons::YesNo:
    case Buttons::YesNoDefaultNo:
        shown = QMessageBox::Yes | QMessageBox::No;
        escape = QMessageBox::No;
        break;
    case Buttons::YesNoCancel:
        shown = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        escape = QMessageBox::Cancel;
        break;
    }
    QMessageBox box(boxIcon(icon), applicationTitle(), boxText(question), shown, owner_);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(buttons == Buttons::Ok               ? QMessageBox::Ok
                         : buttons == Buttons::YesNoDefaultNo ? QMessageBox::No
                                                              : QMessageBox::Yes);
    box.setEscapeButton(escape);
    box.exec();
    switch (box.standardButton(box.clickedButton())) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    case QMessageBox::Ok:
        return Answer::Ok;
    default:
        // Closed some other way: what Escape would have answered.
        return buttons == Buttons::YesNoCancel ? Answer::Cancel : buttons == Buttons::Ok ? Answer::Ok : Answer::No;
    }
}

} // namespace rm8::shell
