#pragma once
// The about box InfoProgram: the program's name, version and purpose.

#include <QDialog>

namespace rm8::shell {

class AboutDialog : public QDialog {
    Q_OBJECT
public:
    explicit AboutDialog(QWidget* owner = nullptr);
};

} // namespace rm8::shell
