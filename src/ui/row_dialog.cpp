#include "ui/row_dialog.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include "fields/field_catalogue.h"
#include "ui/leave_watch.h"
#include "ui/notice_box.h"

namespace rm8::ui {

RowDialog::RowDialog(QWidget* parent, const char* objectName)
    : QDialog(parent)
    , watch_(new LeaveWatch(this))
{
    setObjectName(QString::fromLatin1(objectName));
    setModal(true);
}

QLineEdit* RowDialog::textField(const char* name, const char* toolTip)
{
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString::fromLatin1(name));
    if (const FieldInfo* info = findField(recordFieldOf(name)); info && info->maxLength > 0)
        edit->setMaxLength(info->maxLength);
    if (toolTip)
        edit->setToolTip(QString::fromUtf8(toolTip));
    watch_->watch(edit, [this](QLineEdit* left) { return judge(left); });
    return edit;
}

QCheckBox* RowDialog::checkBox(const char* name, const char* caption, const char* toolTip)
{
    auto* box = new QCheckBox(QString::fromUtf8(caption), this);
    box->setObjectName(QString::fromLatin1(name));
    if (toolTip)
        box->setToolTip(QString::fromUtf8(toolTip));
    return box;
}

QHBoxLayout* RowDialog::buttonRow()
{
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("btOk"));
    ok->setDefault(true);
    auto* storno = new QPushButton(QStringLiteral("&Storno"), this);
    storno->setObjectName(QStringLiteral("btStorno"));
    // Clicking Storno leaves no field: a text about to be thrown away is
    // not judged first (Escape does the same from the keyboard).
    storno->setFocusPolicy(Qt::NoFocus);
    connect(ok, &QPushButton::clicked, this, &RowDialog::confirm);
    connect(storno, &QPushButton::clicked, this, &RowDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(storno);
    return buttons;
}

void RowDialog::begin(const StationSettings& settings, std::size_t row, const QString& caption)
{
    record_ = settings;
    row_ = row;
    pending_.clear();
    cancelled_ = true;
    setWindowTitle(caption);
}

bool RowDialog::runModal()
{
    watch_->setSuspended(false);
    exec();
    // Nothing the dialog left behind may be judged once it is gone.
    watch_->setSuspended(true);
    return !cancelled_;
}

void RowDialog::applyPending(StationSettings& settings) const
{
    for (const FieldChange& change : pending_)
        applyChange(settings, change);
}

void RowDialog::confirm()
{
    if (!watch_->settle() || !confirmable())
        return;
    cancelled_ = false;
    hide();
}

void RowDialog::reject()
{
    // A field left for the Storno button is not judged any more: its text
    // is thrown away with the rest.
    watch_->setSuspended(true);
    cancelled_ = true;
    QDialog::reject();
}

void RowDialog::closeEvent(QCloseEvent* event)
{
    watch_->setSuspended(true);
    cancelled_ = true;
    QDialog::closeEvent(event);
}

std::optional<Notice> RowDialog::judge(QLineEdit* edit)
{
    // The rules read the other fields of the row (the two state names must
    // differ), so they see the dialog's values, not the record's.
    StationSettings current = record_;
    storeInto(current);
    const LeaveOutcome outcome
        = leaveField(current, edit->objectName().toStdString(), row_, edit->text().toStdString());
    if (outcome.verdict == LeaveVerdict::Refuse)
        return outcome.refusal;
    if (outcome.verdict == LeaveVerdict::Replace)
        edit->setText(QString::fromStdString(outcome.text));
    for (const FieldChange& change : outcome.changes)
        applyHere(change);
    return std::nullopt;
}

void RowDialog::applyHere(const FieldChange& change)
{
    QWidget* control = nullptr;
    for (auto* child : findChildren<QWidget*>()) {
        const std::string name = child->objectName().toStdString();
        if (!name.empty() && change.row == row_ && recordFieldOf(name) == change.field
            && (qobject_cast<QLineEdit*>(child) || qobject_cast<QCheckBox*>(child))) {
            control = child;
            break;
        }
    }
    if (!control) {
        applyChange(record_, change);
        pending_.push_back(change);
    } else if (const auto* text = std::get_if<std::string>(&change.value)) {
        if (auto* edit = qobject_cast<QLineEdit*>(control))
            edit->setText(QString::fromStdString(*text));
    } else if (auto* box = qobject_cast<QCheckBox*>(control)) {
        box->setChecked(std::get<bool>(change.value));
    }
    if (change.notice)
        showNotice(this, *change.notice);
}

void RowDialog::setText(const char* name, const std::string& text)
{
    if (auto* edit = findChild<QLineEdit*>(QString::fromLatin1(name)))
        edit->setText(QString::fromStdString(text));
}

void RowDialog::setChecked(const char* name, bool checked)
{
    if (auto* box = findChild<QCheckBox*>(QString::fromLatin1(name)))
        box->setChecked(checked);
}

QString RowDialog::text(const char* name) const
{
    const auto* edit = findChild<QLineEdit*>(QString::fromLatin1(name));
    return edit ? edit->text() : QString();
}

bool RowDialog::checked(const char* name) const
{
    const auto* box = findChild<QCheckBox*>(QString::fromLatin1(name));
    return box && box->isChecked();
}

} // namespace rm8::ui
