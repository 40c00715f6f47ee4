#include "ctl/progress_bar.h"

#include <cstdio>

namespace rm8::ctl {
namespace {

constexpr std::size_t kWidth = 30;
constexpr auto kRedraw = std::chrono::milliseconds(200);

std::string minutesAndSeconds(long long seconds)
{
    char text[32];
    std::snprintf(text, sizeof text, "%lld:%02lld", seconds / 60, seconds % 60);
    return text;
}

} // namespace

void ProgressBar::start(Clock::time_point now)
{
    started_ = now;
    everDrawn_ = false;
}

std::string ProgressBar::update(std::size_t done, std::size_t total, Clock::time_point now)
{
    if (!enabled_ || total == 0)
        return {};
    if (everDrawn_ && done < total && now - drawn_ < kRedraw)
        return {};
    drawn_ = now;
    everDrawn_ = true;
    return render(done, total, now - started_);
}

std::string ProgressBar::render(std::size_t done, std::size_t total, Clock::duration elapsed)
{
    if (done > total)
        done = total;
    const std::size_t filled = total == 0 ? kWidth : done * kWidth / total;
    std::string line = "[" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] ";
    char counts[48];
    std::snprintf(counts, sizeof counts, "%zu/%zu bloků", done, total);
    line += counts;
    if (done == 0)
        return line + ", zbývá ?:??";
    const auto elapsedMs = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count();
    const auto leftMs = elapsedMs * static_cast<long long>(total - done) / static_cast<long long>(done);
    return line + ", zbývá " + minutesAndSeconds((leftMs + 999) / 1000);
}

} // namespace rm8::ctl
