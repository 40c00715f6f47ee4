#pragma once
// A serial device on a POSIX system: a real port, a USB adapter or a
// pseudo-terminal, by its path. Waiting blocks in poll() until data or the
// deadline; nothing spins.

#include <string>

#include "link/serial_line.h"

namespace rm8::link {

class PosixSerialLine : public SerialLine {
public:
    explicit PosixSerialLine(std::string devicePath) : path_(std::move(devicePath)) {}
    ~PosixSerialLine() override { close(); }
    PosixSerialLine(const PosixSerialLine&) = delete;
    PosixSerialLine& operator=(const PosixSerialLine&) = delete;

    Expected<void, std::string> open() override;
    void close() override;
    bool isOpen() const override { return fd_ >= 0; }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override;
    Expected<std::vector<std::uint8_t>, std::string> read(Clock::time_point deadline) override;
    void flushInput() override;

    const std::string& path() const { return path_; }

private:
    std::string path_;
    int fd_ = -1;
};

} // namespace rm8::link
