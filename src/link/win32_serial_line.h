#pragma once
// A serial port on Windows ("COM 3", "COM12", "\\.\COM12"). A wait is one
// overlapped read of the first byte and a wait on its event until the
// deadline: the thread sleeps in the system, nothing spins.

#include <string>

#include "link/serial_line.h"

namespace rm8::link {

class Win32SerialLine : public SerialLine {
public:
    explicit Win32SerialLine(std::string port)
        : port_(std::move(port))
    {
    }
    ~Win32SerialLine() override { close(); }
    Win32SerialLine(const Win32SerialLine&) = delete;
    Win32SerialLine& operator=(const Win32SerialLine&) = delete;

    Expected<void, std::string> open() override;
    void close() override;
    bool isOpen() const override { return handle_ != nullptr; }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override;
    Expected<std::vector<std::uint8_t>, std::string> read(Clock::time_point deadline) override;
    void flushInput() override;

    const std::string& port() const { return port_; }

private:
    Expected<std::size_t, std::string> waitForFirstByte(std::uint8_t& byte, Clock::time_point deadline);
    Expected<void, std::string> readWaiting(std::vector<std::uint8_t>& into);

    std::string port_;
    void* handle_ = nullptr; // HANDLE, kept out of the header with <windows.h>
    void* event_ = nullptr; // the overlapped reads' and writes' event
};

} // namespace rm8::link
