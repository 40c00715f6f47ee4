#pragma once
// Answering real modal windows from a test: a timer looks for the modal
// window a command opens inside its own event loop and acts on it as a
// person would.
//
// Every wait is bounded. A window that never comes, or that is still open
// after the act, is closed by force (every modal window is), so the
// command's event loop ends and the test fails at once with a message that
// names what it waited for, instead of hanging until the test runner's
// time-out.

#include <functional>
#include <memory>

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace rm8::shell::test {

struct ModalWait {
    QString waitedFor;
    bool seen = false; // the window came and the act ran
    QPointer<QWidget> window;
    QString failure;

    // The window came, the act ran, and the window went away by itself.
    bool ok() const { return seen && failure.isEmpty() && (window.isNull() || !window->isVisible()); }
    QString why() const
    {
        if (!failure.isEmpty())
            return failure;
        return waitedFor + (seen ? QStringLiteral(": still open after the test acted on it")
                                 : QStringLiteral(": did not open"));
    }
};

// Ends every modal event loop that is still running.
inline void closeAllModals()
{
    for (int guard = 0; guard < 16; ++guard) {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal)
            return;
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
        else
            modal->close();
        modal->hide();
    }
}

// Acts on the first visible modal window of type W, then waits for it to
// close. Check the result after the command returned:
//     QVERIFY2(wait->ok(), qPrintable(wait->why()));
// The watch ends when the test drops the result, so a window that never
// came cannot be mistaken for the next test's window.
template <class W>
std::shared_ptr<ModalWait> onNextModal(const QString& waitedFor, std::function<void(W*)> act, int timeoutMs = 5000)
{
    auto result = std::make_shared<ModalWait>();
    result->waitedFor = waitedFor;
    std::weak_ptr<ModalWait> watched = result;
    auto* timer = new QTimer;
    auto clock = std::make_shared<QElapsedTimer>();
    clock->start();
    const auto finish = [timer] {
        timer->stop();
        timer->deleteLater();
    };
    QObject::connect(timer, &QTimer::timeout, timer, [=, act = std::move(act)] {
        const std::shared_ptr<ModalWait> wait = watched.lock();
        if (!wait) {
            finish();
            return;
        }
        if (wait->seen) {
            if (wait->window.isNull() || !wait->window->isVisible()) {
                finish();
            } else if (clock->elapsed() > timeoutMs) {
                wait->failure = waitedFor + QStringLiteral(": still open after the test acted on it");
                finish();
                closeAllModals();
            }
            return;
        }
        if (auto* widget = qobject_cast<W*>(QApplication::activeModalWidget()); widget && widget->isVisible()) {
            wait->seen = true;
            wait->window = widget;
            clock->restart();
            act(widget);
            return;
        }
        if (clock->elapsed() > timeoutMs) {
            wait->failure = waitedFor + QStringLiteral(": did not open within ") + QString::number(timeoutMs)
                            + QStringLiteral(" ms");
            finish();
            closeAllModals();
        }
    });
    timer->start(10);
    return result;
}

} // namespace rm8::shell::test
