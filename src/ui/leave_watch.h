#pragma once
// The focus handling that every edited field shares, in the main window and
// in the row dialogs: the whole text is selected when a field is entered,
// and when it is left its owner's judge runs. A refused field gets its
// message box and then the focus back with its text selected; the text stays
// as typed.
//
// The judge runs after the focus has moved (from the event loop, not inside
// the focus change), so that a message box never opens in the middle of one.
// While a judge or its message box is under way, or while the watch is
// suspended (loading, a running transfer), leaving a field judges nothing:
// the message box taking the focus must not start a second check.

#include <QHash>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

#include "editing/field_leave.h"

class QLineEdit;
class QWidget;

namespace rm8::ui {

class LeaveWatch : public QObject {
    Q_OBJECT
public:
    // Returns the refusal to show, or nothing when the field may be left.
    // The judge itself puts replacements and side effects into the widgets.
    using Judge = std::function<std::optional<Notice>(QLineEdit* edit)>;
    // Called after a refusal was shown, before the focus returns: the main
    // window switches to the field's page here.
    using Reveal = std::function<void(QLineEdit* edit)>;

    explicit LeaveWatch(QWidget* owner);

    void watch(QLineEdit* edit, Judge judge);
    void setReveal(Reveal reveal) { reveal_ = std::move(reveal); }

    // No judging while suspended; a field left in that time is not judged
    // later either.
    void setSuspended(bool suspended);
    bool suspended() const { return suspended_; }

    // Judges at once the field whose check is still pending, or the field
    // that has the focus now; true when nothing was refused. A command
    // button (OK, a write) calls this before it acts.
    bool settle();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool judge(QLineEdit* edit);
    void refuse(QLineEdit* edit, const Notice& notice);

    QWidget* owner_;
    QHash<QLineEdit*, Judge> judges_;
    Reveal reveal_;
    QPointer<QLineEdit> pending_;
    bool judging_ = false;
    bool suspended_ = false;
};

} // namespace rm8::ui
