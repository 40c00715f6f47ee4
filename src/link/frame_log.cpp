#include "link/frame_log.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "platform/calendar.h"

namespace rm8::link {

Expected<std::unique_ptr<FrameLog>, std::string> FrameLog::toFile(const std::string& path)
{
    std::unique_ptr<FrameLog> log(new FrameLog());
    log->file_.open(path, std::ios::binary | std::ios::trunc);
    if (!log->file_)
        return unexpected(path + ": " + std::strerror(errno));
    log->out_ = &log->file_;
    return log;
}

std::string FrameLog::formatTime(TimePoint at)
{
    using namespace std::chrono;
    const auto sinceEpoch = duration_cast<microseconds>(at.time_since_epoch());
    auto seconds = duration_cast<std::chrono::seconds>(sinceEpoch);
    auto micros = sinceEpoch - seconds;
    if (micros.count() < 0) { // before 1970: borrow a second so the fraction stays positive
        seconds -= std::chrono::seconds(1);
        micros += std::chrono::seconds(1);
    }
    const std::time_t whole = static_cast<std::time_t>(seconds.count());
    const std::tm utc = platform::utcTime(whole);
    char text[64];
    const std::size_t n = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &utc);
    char fraction[32];
    std::snprintf(fraction, sizeof fraction, ".%06lld", static_cast<long long>(micros.count()));
    return std::string(text, n) + fraction;
}

std::string FrameLog::formatLine(FrameDirection direction, std::span<const std::uint8_t> bytes, TimePoint at)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string line = formatTime(at);
    line += direction == FrameDirection::ToStation ? " >" : " <";
    line.reserve(line.size() + 3 * bytes.size() + 1);
    for (const std::uint8_t b : bytes) {
        line += ' ';
        line += kDigits[b / 16];
        line += kDigits[b % 16];
    }
    line += '\n';
    return line;
}

void FrameLog::record(FrameDirection direction, std::span<const std::uint8_t> bytes)
{
    record(direction, bytes, std::chrono::system_clock::now());
}

void FrameLog::record(FrameDirection direction, std::span<const std::uint8_t> bytes, TimePoint at)
{
    if (bytes.empty())
        return;
    writeLine(formatLine(direction, bytes, at));
}

void FrameLog::note(std::string_view text)
{
    note(text, std::chrono::system_clock::now());
}

void FrameLog::note(std::string_view text, TimePoint at)
{
    std::string line = formatTime(at) + " # ";
    // A note is one line whatever it holds.
    for (const char c : text)
        line += c == '\n' || c == '\r' ? ' ' : c;
    line += '\n';
    writeLine(line);
}

bool FrameLog::good() const
{
    const std::lock_guard lock(mutex_);
    return out_ != nullptr && out_->good();
}

void FrameLog::writeLine(const std::string& line)
{
    const std::lock_guard lock(mutex_);
    if (out_ == nullptr || !out_->good())
        return;
    // Flushed per line: the log matters most when the program does not end well.
    out_->write(line.data(), static_cast<std::streamsize>(line.size()));
    out_->flush();
}

} // namespace rm8::link
