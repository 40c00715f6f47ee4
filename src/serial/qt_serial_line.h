#pragma once
// A serial device through QSerialPort: real ports, USB adapters and
// pseudo-terminals alike, on every platform Qt supports. Waiting blocks in
// QSerialPort::waitForReadyRead until data or the deadline.

#include <QSerialPort>
#include <QString>

#include "link/serial_line.h"

namespace rm8::serial {

class QtSerialLine : public rm8::link::SerialLine {
public:
    explicit QtSerialLine(QString devicePath);
    ~QtSerialLine() override;
    QtSerialLine(const QtSerialLine&) = delete;
    QtSerialLine& operator=(const QtSerialLine&) = delete;

    Expected<void, std::string> open() override;
    void close() override;
    bool isOpen() const override;
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override;
    Expected<std::vector<std::uint8_t>, std::string> read(rm8::link::Clock::time_point deadline) override;
    void flushInput() override;

    const QString& devicePath() const { return path_; }

private:
    std::string describe(QSerialPort::SerialPortError error) const;

    QString path_;
    QSerialPort port_;
};

} // namespace rm8::serial
