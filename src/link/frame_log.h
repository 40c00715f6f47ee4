#pragma once
// A timestamped hexadecimal log of what crossed the serial line, for support:
// one line per chunk or frame, for example
//   2026-11-22 21:05:03.123456 > 01 02 0D
// where '>' is tool to station and '<' station to tool. Times are UTC, so
// that the logs of a tool and a station on different machines line up.
// Several threads may write to one log; each line is written whole.

#include <chrono>
#include <cstdint>
#include <fstream>
#include <memory>
#include <mutex>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

#include "common/expected.h"

namespace rm8::link {

enum class FrameDirection { ToStation, FromStation };

class FrameLog {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    // Writes to a stream the caller keeps alive.
    explicit FrameLog(std::ostream& out) : out_(&out) {}

    // Creates (or empties) the file; the error names the file and the reason.
    static Expected<std::unique_ptr<FrameLog>, std::string> toFile(const std::string& path);

    FrameLog(const FrameLog&) = delete;
    FrameLog& operator=(const FrameLog&) = delete;

    // An empty chunk writes nothing.
    void record(FrameDirection direction, std::span<const std::uint8_t> bytes);
    void record(FrameDirection direction, std::span<const std::uint8_t> bytes, TimePoint at);

    // A line of text instead of bytes, marked '#': what the log alone cannot
    // show, such as a reply held back on purpose or a line that hung up.
    void note(std::string_view text);
    void note(std::string_view text, TimePoint at);

    // False once writing failed (a full disk); the log then stays silent.
    bool good() const;

    static std::string formatTime(TimePoint at);
    static std::string formatLine(FrameDirection direction, std::span<const std::uint8_t> bytes, TimePoint at);

private:
    FrameLog() = default;
    void writeLine(const std::string& line);

    std::ofstream file_;
    std::ostream* out_ = nullptr;
    mutable std::mutex mutex_;
};

} // namespace rm8::link
