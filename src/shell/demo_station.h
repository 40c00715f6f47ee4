#pragma once
// The simulated station for a demonstration without hardware: rm8sim runs
// as a child process and prints the pseudo-terminal it answers on. The child
// never outlives the program: it is ended on exit, and the system ends it if
// the program dies without cleaning up.

#include <QProcess>
#include <QString>
#include <QStringList>

#include "common/expected.h"

namespace rm8::shell {

class DemoStation {
public:
    DemoStation() = default;
    ~DemoStation() { stop(); }
    DemoStation(const DemoStation&) = delete;
    DemoStation& operator=(const DemoStation&) = delete;

    // rm8sim beside the running program, else on PATH; empty when neither.
    static QString findSimulator();

    // Starts the simulator and returns the device path from its first line
    // of output. The error is a Czech sentence for a message box.
    Expected<QString, QString> start(const QString& program, const QStringList& arguments = {},
                                     int timeoutMs = 10000);

    // Ends the child (terminate, then kill if it does not go). Safe to call
    // twice.
    void stop();

    bool running() const { return process_.state() != QProcess::NotRunning; }
    qint64 processId() const { return process_.processId(); }

private:
    QProcess process_;
};

} // namespace rm8::shell
