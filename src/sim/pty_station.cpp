#include "sim/pty_station.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <deque>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/prctl.h>
#include <termios.h>
#include <unistd.h>

namespace rm8::sim {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// How often the stop flag is looked at while nothing happens.
constexpr auto kStopCheck = 50ms;
// A tool that stops reading must not stall the station for ever.
constexpr auto kLongestWriteStall = 1s;

struct Scheduled {
    Clock::time_point due;
    std::vector<std::uint8_t> bytes;
};

const char* describe(ReplyFault fault)
{
    switch (fault) {
    case ReplyFault::Dropped:
        return "reply dropped";
    case ReplyFault::BadChecksum:
        return "reply with a wrong checksum";
    case ReplyFault::Late:
        return "reply held back past the tool's timeout";
    case ReplyFault::None:
        break;
    }
    return "";
}

// ppoll rather than poll: a millisecond timeout would add up to a
// millisecond to every emulated reply, several per cent of an exchange.
int waitReadable(int fd, Clock::duration timeout)
{
    const auto ns = std::chrono::duration_cast<std::chrono::nanoseconds>(std::max(timeout, Clock::duration::zero()));
    timespec ts{};
    ts.tv_sec = static_cast<time_t>(ns.count() / 1'000'000'000);
    ts.tv_nsec = static_cast<long>(ns.count() % 1'000'000'000);
    pollfd waiting{fd, POLLIN, 0};
    const int ready = ::ppoll(&waiting, 1, &ts, nullptr);
    return ready > 0 ? waiting.revents : 0;
}

} // namespace

PtyStation::PtyStation(StationSimulator simulator) : simulator_(std::move(simulator))
{
    char name[256] = {};
    termios raw{};
    ::cfmakeraw(&raw);
    if (::openpty(&master_, &slave_, name, &raw, nullptr) != 0)
        throw std::runtime_error(std::string("openpty: ") + std::strerror(errno));
    // Writes must never block the station for good; see writeReply.
    (void)::fcntl(master_, F_SETFL, ::fcntl(master_, F_GETFL) | O_NONBLOCK);
    (void)::fcntl(master_, F_SETFD, FD_CLOEXEC);
    (void)::fcntl(slave_, F_SETFD, FD_CLOEXEC);
    path_ = name;
}

PtyStation::~PtyStation()
{
    stop_ = true;
    if (thread_.joinable())
        thread_.join();
    if (master_ >= 0)
        ::close(master_);
    if (slave_ >= 0)
        ::close(slave_);
}

void PtyStation::start()
{
    thread_ = std::thread([this] { serve(stop_); });
}

bool PtyStation::writeReply(const std::vector<std::uint8_t>& bytes)
{
    const auto giveUp = Clock::now() + kLongestWriteStall;
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t w = ::write(master_, bytes.data() + done, bytes.size() - done);
        if (w > 0) {
            done += static_cast<std::size_t>(w);
            continue;
        }
        if (w < 0 && errno == EINTR)
            continue;
        if (w < 0 && errno == EAGAIN && Clock::now() < giveUp) {
            pollfd waiting{master_, POLLOUT, 0};
            (void)::poll(&waiting, 1, 10);
            continue;
        }
        return false;
    }
    return true;
}

void PtyStation::hangUp()
{
    // Closing the master hangs the slave up: the tool's reads and writes fail.
    ::close(master_);
    master_ = -1;
    ::close(slave_);
    slave_ = -1;
    hungUp_ = true;
    if (log_ != nullptr)
        log_->note("line hung up after " + std::to_string(blockRequests()) + " block requests");
}

void PtyStation::serve(const std::atomic<bool>& stop)
{
    // The default 50 us of timer slack would be added to every emulated
    // reply; the station's timing is the point of the emulation.
    (void)::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    std::deque<Scheduled> queue;
    Clock::time_point lastDue{};
    const LineEmulation line = simulator_.behaviour().line;
    while (!stop) {
        auto now = Clock::now();
        while (!queue.empty() && queue.front().due <= now) {
            if (log_ != nullptr)
                log_->record(link::FrameDirection::FromStation, queue.front().bytes);
            if (!writeReply(queue.front().bytes) && log_ != nullptr)
                log_->note("reply could not be written: " + std::string(std::strerror(errno)));
            queue.pop_front();
            now = Clock::now();
        }
        bool hangingUp = false;
        {
            const std::lock_guard lock(mutex_);
            hangingUp = simulator_.hungUp();
        }
        if (hangingUp && queue.empty()) {
            hangUp();
            return;
        }

        const auto timeout = queue.empty() ? Clock::duration(kStopCheck)
                                           : std::min<Clock::duration>(kStopCheck, queue.front().due - now);
        const int events = waitReadable(master_, timeout);
        if ((events & POLLIN) == 0)
            continue;
        std::uint8_t buffer[512];
        const ssize_t n = ::read(master_, buffer, sizeof buffer);
        if (n <= 0)
            continue;
        // The emulated delays count from here: the request's last byte has arrived.
        const auto arrived = Clock::now();
        const std::span chunk(buffer, static_cast<std::size_t>(n));
        if (log_ != nullptr)
            log_->record(link::FrameDirection::ToStation, chunk);
        std::vector<Reply> replies;
        {
            const std::lock_guard lock(mutex_);
            if (simulator_.behaviour().keepRequests)
                received_.insert(received_.end(), chunk.begin(), chunk.end());
            replies = simulator_.respond(chunk);
        }
        for (auto& reply : replies) {
            if (reply.fault != ReplyFault::None && log_ != nullptr)
                log_->note(describe(reply.fault));
            if (!reply.sent())
                continue;
            // One line, one reply at a time: a held-back reply holds back
            // those after it, and on an emulated line each of them still
            // takes its own time on the wire.
            const auto onTheWire = std::chrono::duration_cast<Clock::duration>(line.wireTime(reply.bytes.size()));
            const auto due = std::max(arrived + std::chrono::duration_cast<Clock::duration>(reply.delay),
                                      lastDue + onTheWire);
            lastDue = due;
            queue.push_back({due, std::move(reply.bytes)});
        }
    }
}

std::vector<std::uint8_t> PtyStation::eeprom() const
{
    const std::lock_guard lock(mutex_);
    return simulator_.eeprom();
}

std::size_t PtyStation::framesHandled() const
{
    const std::lock_guard lock(mutex_);
    return simulator_.framesHandled();
}

std::size_t PtyStation::blockRequests() const
{
    const std::lock_guard lock(mutex_);
    return simulator_.blockRequests();
}

std::vector<std::vector<std::uint8_t>> PtyStation::requests() const
{
    const std::lock_guard lock(mutex_);
    return simulator_.requests();
}

std::vector<std::uint8_t> PtyStation::received() const
{
    const std::lock_guard lock(mutex_);
    return received_;
}

} // namespace rm8::sim
