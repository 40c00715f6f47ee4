#pragma once
// The part of a serial-line test double that every double shares: it is
// open or closed. The double itself decides what writing and reading do.

#include "link/serial_line.h"

namespace rm8::test {

class TestLine : public link::SerialLine {
public:
    Expected<void, std::string> open() override
    {
        open_ = true;
        return {};
    }
    void close() override { open_ = false; }
    bool isOpen() const override { return open_; }
    void flushInput() override {}

protected:
    bool open_ = true;
};

} // namespace rm8::test
