#pragma once
// Answering real modal windows from a test: a timer looks for the modal
// window a command opens inside its own event loop and acts on it as a
// person would.

#include <functional>
#include <memory>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

namespace rm8::shell::test {

// Calls act on the first active modal window of type W (other than skip),
// then stops. Returns a flag that tells whether it was found; a window that
// never came is reported by the test through that flag.
template <class W>
std::shared_ptr<bool> onNextModal(std::function<void(W*)> act, int timeoutMs = 10000)
{
    auto found = std::make_shared<bool>(false);
    auto* timer = new QTimer;
    auto clock = std::make_shared<QElapsedTimer>();
    clock->start();
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act), found, clock, timeoutMs] {
        if (auto* widget = qobject_cast<W*>(QApplication::activeModalWidget()); widget && widget->isVisible()) {
            timer->stop();
            timer->deleteLater();
            *found = true;
            act(widget);
            return;
        }
        if (clock->elapsed() > timeoutMs) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start(10);
    return found;
}

} // namespace rm8::shell::test
