#include "sim/pty_station.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace rm8::sim {

PtyStation::PtyStation(StationSimulator simulator) : simulator_(std::move(simulator))
{
    char name[256] = {};
    termios raw{};
    ::cfmakeraw(&raw);
    if (::openpty(&master_, &slave_, name, &raw, nullptr) != 0)
        throw std::runtime_error(std::string("openpty: ") + std::strerror(errno));
    path_ = name;
}

PtyStation::~PtyStation()
{
    stop_ = true;
    if (thread_.joinable())
        thread_.join();
    ::close(master_);
    ::close(slave_);
}

void PtyStation::start()
{
    thread_ = std::thread([this] { serve(stop_); });
}

void PtyStation::serve(const std::atomic<bool>& stop)
{
    while (!stop) {
        pollfd waiting{master_, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, 50);
        if (ready <= 0 || (waiting.revents & POLLIN) == 0)
            continue;
        std::uint8_t buffer[512];
        const ssize_t n = ::read(master_, buffer, sizeof buffer);
        if (n <= 0)
            continue;
        std::vector<std::uint8_t> reply;
        {
            const std::lock_guard lock(mutex_);
            reply = simulator_.receive(std::span(buffer, static_cast<std::size_t>(n)));
        }
        std::size_t done = 0;
        while (done < reply.size()) {
            const ssize_t w = ::write(master_, reply.data() + done, reply.size() - done);
            if (w <= 0 && errno != EINTR && errno != EAGAIN)
                break;
            if (w > 0)
                done += static_cast<std::size_t>(w);
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

} // namespace rm8::sim
