#include "ui/notice_box.h"

#include <QMessageBox>
#include <QString>

namespace rm8::ui {

void showNotice(QWidget* parent, const Notice& notice)
{
    const QMessageBox::Icon icon = notice.icon == MessageIcon::Stop ? QMessageBox::Critical
                                   : notice.icon == MessageIcon::Exclamation ? QMessageBox::Warning
                                   : notice.icon == MessageIcon::Question ? QMessageBox::Question
                                                                          : QMessageBox::Information;
    QMessageBox box(icon, QString::fromUtf8(kApplicationTitle), QString::fromStdString(notice.text), QMessageBox::Ok,
                    parent);
    box.exec();
}

} // namespace rm8::ui
