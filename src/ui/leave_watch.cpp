#include "ui/leave_watch.h"

#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QLineEdit>
#include <QTimer>
#include <QWidget>

#include "ui/notice_box.h"

namespace rm8::ui {

LeaveWatch::LeaveWatch(QWidget* owner)
    : QObject(owner)
    , owner_(owner)
{
}

void LeaveWatch::watch(QLineEdit* edit, Judge judge)
{
    judges_.insert(edit, std::move(judge));
    edit->installEventFilter(this);
    connect(edit, &QObject::destroyed, this, [this, edit] { judges_.remove(edit); });
}

void LeaveWatch::setSuspended(bool suspended)
{
    suspended_ = suspended;
    if (suspended)
        pending_ = nullptr;
}

bool LeaveWatch::eventFilter(QObject* watched, QEvent* event)
{
    auto* edit = qobject_cast<QLineEdit*>(watched);
    if (edit == nullptr)
        return false;
    if (event->type() == QEvent::FocusIn) {
        // Typing replaces the whole text. Selecting now would be undone by
        // the mouse press that gave the focus, so it waits for the loop.
        QTimer::singleShot(0, edit, [edit] {
            if (edit->hasFocus())
                edit->selectAll();
        });
    } else if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        // Another window (a message box, a menu) taking the focus does not
        // leave the field.
        if (judging_ || suspended_ || reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason)
            return false;
        pending_ = edit;
        QTimer::singleShot(0, this, [this] { settle(); });
    }
    return false;
}

bool LeaveWatch::settle()
{
    if (judging_ || suspended_)
        return true;
    QLineEdit* edit = pending_;
    pending_ = nullptr;
    if (edit == nullptr)
        edit = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    if (edit == nullptr || !judges_.contains(edit))
        return true;
    return judge(edit);
}

bool LeaveWatch::judge(QLineEdit* edit)
{
    judging_ = true;
    const std::optional<Notice> refusal = judges_.value(edit)(edit);
    if (refusal)
        refuse(edit, *refusal);
    judging_ = false;
    // A field left while the box was open is not judged in its place.
    pending_ = nullptr;
    return !refusal;
}

void LeaveWatch::refuse(QLineEdit* edit, const Notice& notice)
{
    showNotice(owner_, notice);
    if (reveal_)
        reveal_(edit);
    edit->setFocus(Qt::OtherFocusReason);
    edit->selectAll();
}

} // namespace rm8::ui
