#include "link/posix_serial_line.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace rm8::link {
namespace {

std::string systemError()
{
    return std::strerror(errno);
}

// 9,600 baud, 8 data bits, no parity, 1 stop bit, raw bytes both ways: every
// byte value passes unchanged.
bool configure(int fd)
{
    termios settings{};
    if (::tcgetattr(fd, &settings) != 0)
        return false;
    ::cfmakeraw(&settings);
    settings.c_cflag |= CLOCAL | CREAD;
    settings.c_cflag &= ~static_cast<tcflag_t>(PARENB | CSTOPB | CSIZE | CRTSCTS);
    settings.c_cflag |= CS8;
    settings.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 0;
    ::cfsetispeed(&settings, B9600);
    ::cfsetospeed(&settings, B9600);
    return ::tcsetattr(fd, TCSANOW, &settings) == 0;
}

// DTR off and RTS on. A device without modem lines (a pseudo-terminal)
// refuses this, which is not an error.
void setModemLines(int fd)
{
    int dtr = TIOCM_DTR;
    int rts = TIOCM_RTS;
    (void)::ioctl(fd, TIOCMBIC, &dtr);
    (void)::ioctl(fd, TIOCMBIS, &rts);
}

} // namespace

Expected<void, std::string> PosixSerialLine::open()
{
    close();
    if (path_.empty())
        return unexpected(std::string("portu není přiřazeno žádné zařízení"));
    const int fd = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return unexpected(path_ + ": " + systemError());
    if (!::isatty(fd) || !configure(fd)) {
        const std::string reason = path_ + ": není to sériový port (" + systemError() + ")";
        ::close(fd);
        return unexpected(reason);
    }
    setModemLines(fd);
    fd_ = fd;
    return {};
}

void PosixSerialLine::close()
{
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

Expected<void, std::string> PosixSerialLine::write(std::span<const std::uint8_t> bytes)
{
    if (fd_ < 0)
        return unexpected(std::string("port není otevřen"));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd_, bytes.data() + done, bytes.size() - done);
        if (n > 0) {
            done += static_cast<std::size_t>(n);
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && errno == EAGAIN) {
            pollfd waiting{fd_, POLLOUT, 0};
            (void)::poll(&waiting, 1, 100);
            continue;
        }
        return unexpected(systemError());
    }
    return {};
}

Expected<std::vector<std::uint8_t>, std::string> PosixSerialLine::read(Clock::time_point deadline)
{
    if (fd_ < 0)
        return unexpected(std::string("port není otevřen"));
    for (;;) {
        std::uint8_t buffer[256];
        const ssize_t n = ::read(fd_, buffer, sizeof buffer);
        if (n > 0)
            return std::vector<std::uint8_t>(buffer, buffer + n);
        // With no byte waiting a raw terminal reads 0 rather than failing.
        if (n < 0 && errno != EAGAIN && errno != EINTR && errno != EIO)
            return unexpected(systemError());
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0)
            return std::vector<std::uint8_t>{};
        pollfd waiting{fd_, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, static_cast<int>(std::min<long long>(left.count() + 1, 60000)));
        if (ready < 0 && errno != EINTR)
            return unexpected(systemError());
        if (ready > 0 && (waiting.revents & (POLLERR | POLLNVAL)) != 0)
            return unexpected(std::string("chyba sériového portu"));
        if (ready > 0 && (waiting.revents & POLLHUP) != 0 && (waiting.revents & POLLIN) == 0) {
            // A pseudo-terminal whose other side is not (yet) open reports a
            // hang-up; wait out the slice instead of spinning on it.
            const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
            if (rest.count() > 0)
                ::usleep(static_cast<useconds_t>(std::min<long long>(rest.count(), 50) * 1000));
        }
    }
}

void PosixSerialLine::flushInput()
{
    if (fd_ >= 0)
        (void)::tcflush(fd_, TCIFLUSH);
}

} // namespace rm8::link
