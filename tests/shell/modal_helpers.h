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

#include "window_tests.h"

namespace rm8::shell::test {

// Acts on the first visible modal window of type W, then waits for it to
// close. The result is empty once that has happened, else it says what went
// wrong; check it after the command returned:
//     QVERIFY2(wait->isEmpty(), qPrintable(*wait));
// The watch ends when the test drops the result, so a window that never
// came cannot be mistaken for the next test's window.
template <class W>
std::shared_ptr<QString> onNextModal(const QString& waitedFor, std::function<void(W*)> act, int timeoutMs = 5000)
{
    auto failure = std::make_shared<QString>(waitedFor + QStringLiteral(": did not open in time"));
    // Owned by the application, so that a watch whose deferred deletion
    // never came to run still goes with it (the leak checker counts it).
    auto* timer = new QTimer(QCoreApplication::instance());
    QObject::connect(timer, &QTimer::timeout, timer,
        [=, watched = std::weak_ptr<QString>(failure), window = QPointer<W>(), seen = false,
            deadline = QDeadlineTimer(timeoutMs)]() mutable {
            const std::shared_ptr<QString> result = watched.lock();
            auto* modal = qobject_cast<W*>(QApplication::activeModalWidget());
            if (result && !seen && modal && modal->isVisible()) {
                seen = true;
                window = modal;
                deadline.setRemainingTime(timeoutMs);
                *result = waitedFor + QStringLiteral(": still open after the test acted on it");
                act(modal);
            }
            if (result && seen && (window.isNull() || !window->isVisible()))
                result->clear();
            if (result && !result->isEmpty() && !deadline.hasExpired())
                return;
            timer->stop();
            timer->deleteLater();
            // Hiding a modal window ends its event loop.
            for (int guard = 0; result && !result->isEmpty() && QApplication::activeModalWidget() && guard < 16;
                 ++guard)
                QApplication::activeModalWidget()->hide();
        });
    timer->start(10);
    return failure;
}

} // namespace rm8::shell::test
