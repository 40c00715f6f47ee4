#pragma once
// The progress window "Info": what a long operation is doing, and a Storno
// button where the operation can be interrupted. It is shown without a
// nested event loop, so the operation keeps running, but it blocks input to
// every other window, so no second command can start meanwhile.

#include <QDialog>

class QLabel;
class QPushButton;

namespace rm8::shell {

class ProgressWindow : public QDialog {
    Q_OBJECT
public:
    explicit ProgressWindow(QWidget* owner = nullptr);

    // Clears the cancel flag, shows the text and Storno exactly when
    // showCancel is true.
    void present(const QString& text, bool showCancel);

    bool cancelled() const { return cancelled_; }

    QLabel* textLabel() const { return label_; }
    QPushButton* stornoButton() const { return storno_; }

signals:
    void stornoPressed();

protected:
    // Escape and the window's close button act as Storno where Storno is
    // offered; otherwise the window stays until the operation hides it.
    void reject() override;

private:
    void storno();

    QLabel* label_;
    QPushButton* storno_;
    bool cancelled_ = false;
};

} // namespace rm8::shell
