#include "serial/qt_serial_line.h"

#include <algorithm>

namespace rm8::serial {
namespace {

// Errors that mean the device itself is gone or broken, as opposed to a wait
// that simply ran out.
bool isLineFailure(QSerialPort::SerialPortError error)
{
    switch (error) {
    case QSerialPort::NoError:
    case QSerialPort::TimeoutError:
        return false;
    default:
        return true;
    }
}

} // namespace

QtSerialLine::QtSerialLine(QString devicePath) : path_(std::move(devicePath))
{
    port_.setPortName(path_);
}

QtSerialLine::~QtSerialLine()
{
    close();
}

std::string QtSerialLine::describe(QSerialPort::SerialPortError error) const
{
    const QString text = port_.errorString();
    if (!text.isEmpty())
        return text.toStdString();
    return "chyba sériového portu " + std::to_string(static_cast<int>(error));
}

Expected<void, std::string> QtSerialLine::open()
{
    close();
    port_.setPortName(path_);
    // The line settings are given before opening so that they are applied as
    // the device is opened.
    port_.setBaudRate(QSerialPort::Baud9600);
    port_.setDataBits(QSerialPort::Data8);
    port_.setParity(QSerialPort::NoParity);
    port_.setStopBits(QSerialPort::OneStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
    if (!port_.open(QIODevice::ReadWrite))
        return unexpected(path_.toStdString() + ": " + describe(port_.error()));
    // A device without modem lines (a pseudo-terminal) refuses these; that
    // is no reason to give up the port.
    (void)port_.setDataTerminalReady(false);
    (void)port_.setRequestToSend(true);
    port_.clearError();
    return {};
}

void QtSerialLine::close()
{
    if (port_.isOpen())
        port_.close();
    port_.clearError();
}

bool QtSerialLine::isOpen() const
{
    return port_.isOpen();
}

Expected<void, std::string> QtSerialLine::write(std::span<const std::uint8_t> bytes)
{
    if (!port_.isOpen())
        return unexpected(std::string("port není otevřen"));
    const auto* data = reinterpret_cast<const char*>(bytes.data());
    const qint64 size = static_cast<qint64>(bytes.size());
    if (port_.write(data, size) != size)
        return unexpected(describe(port_.error()));
    // Without an event loop the bytes leave only when asked to.
    while (port_.bytesToWrite() > 0) {
        if (!port_.waitForBytesWritten(1000))
            return unexpected(describe(port_.error()));
    }
    return {};
}

Expected<std::vector<std::uint8_t>, std::string> QtSerialLine::read(rm8::link::Clock::time_point deadline)
{
    if (!port_.isOpen())
        return unexpected(std::string("port není otevřen"));
    for (;;) {
        if (port_.bytesAvailable() > 0) {
            const QByteArray chunk = port_.readAll();
            const auto* first = reinterpret_cast<const std::uint8_t*>(chunk.constData());
            return std::vector<std::uint8_t>(first, first + chunk.size());
        }
        // Rounded up, so that a wait never ends a fraction of a millisecond early.
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - rm8::link::Clock::now()).count();
        if (left <= 0)
            return std::vector<std::uint8_t>{};
        if (!port_.waitForReadyRead(static_cast<int>(std::min<long long>(left, 60000)))) {
            const auto error = port_.error();
            if (isLineFailure(error)) {
                std::string reason = describe(error);
                port_.clearError();
                return unexpected(reason);
            }
            port_.clearError();
        }
    }
}

void QtSerialLine::flushInput()
{
    if (!port_.isOpen())
        return;
    (void)port_.clear(QSerialPort::Input);
    // Bytes already taken into Qt's own buffer are dropped as well.
    (void)port_.readAll();
}

} // namespace rm8::serial
