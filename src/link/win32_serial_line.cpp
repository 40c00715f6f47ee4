#include "link/win32_serial_line.h"

#include <algorithm>

#include <windows.h>

#include "link/com_port_name.h"
#include "link/win32_error_text.h"
#include "platform/win32_error_message.h"

namespace rm8::link {
namespace {

std::wstring widened(const std::string& utf8)
{
    if (utf8.empty())
        return {};
    const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(), size);
    return wide;
}

// The port's own Czech wording where there is one, else the system's text.
std::string errorText(DWORD code)
{
    if (const auto known = serialPortErrorText(code))
        return std::string(*known);
    return platform::win32ErrorMessage(code);
}

std::string lastError()
{
    return errorText(GetLastError());
}

// 9,600 baud, 8 data bits, no parity, 1 stop bit, no handshake, raw bytes;
// DTR off and RTS on, as the station's cable expects.
bool configure(HANDLE port)
{
    DCB mode {};
    mode.DCBlength = sizeof mode;
    if (!GetCommState(port, &mode))
        return false;
    mode.BaudRate = CBR_9600;
    mode.ByteSize = 8;
    mode.Parity = NOPARITY;
    mode.StopBits = ONESTOPBIT;
    mode.fBinary = TRUE;
    mode.fParity = FALSE;
    mode.fOutxCtsFlow = FALSE;
    mode.fOutxDsrFlow = FALSE;
    mode.fDsrSensitivity = FALSE;
    mode.fOutX = FALSE;
    mode.fInX = FALSE;
    mode.fNull = FALSE;
    mode.fErrorChar = FALSE;
    mode.fAbortOnError = FALSE;
    mode.fDtrControl = DTR_CONTROL_DISABLE;
    mode.fRtsControl = RTS_CONTROL_ENABLE;
    if (!SetCommState(port, &mode))
        return false;
    // No read timeouts: a read completes when its bytes are there. The
    // deadline is kept by the wait on the read's event instead, which under
    // Wine ends as exactly as on Windows, where a read's own total timeout
    // with its "return at the first byte" mode does not under Wine. A write
    // may take twice its time on the line and a second more, so that a stuck
    // adapter cannot hold the program.
    COMMTIMEOUTS timeouts {};
    timeouts.WriteTotalTimeoutMultiplier = 2;
    timeouts.WriteTotalTimeoutConstant = 1000;
    return SetCommTimeouts(port, &timeouts) != 0;
}

DWORD millisecondsUntil(Clock::time_point deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<DWORD>(std::clamp<long long>(left, 0, 60000));
}

} // namespace

Expected<void, std::string> Win32SerialLine::open()
{
    close();
    if (port_.empty())
        return unexpected(std::string("portu není přiřazeno žádné zařízení"));
    const std::wstring device = widened(win32DevicePath(port_));
    HANDLE port = CreateFileW(
        device.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
    if (port == INVALID_HANDLE_VALUE)
        return unexpected(port_ + ": " + lastError());
    if (!configure(port)) {
        const std::string reason = port_ + ": není to sériový port (" + lastError() + ")";
        CloseHandle(port);
        return unexpected(reason);
    }
    HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (event == nullptr) {
        const std::string reason = port_ + ": " + lastError();
        CloseHandle(port);
        return unexpected(reason);
    }
    PurgeComm(port, PURGE_RXCLEAR | PURGE_TXCLEAR);
    handle_ = port;
    event_ = event;
    return {};
}

void Win32SerialLine::close()
{
    if (handle_ != nullptr) {
        CloseHandle(handle_);
        CloseHandle(event_);
        handle_ = nullptr;
        event_ = nullptr;
    }
}

Expected<void, std::string> Win32SerialLine::write(std::span<const std::uint8_t> bytes)
{
    if (handle_ == nullptr)
        return unexpected(std::string("port není otevřen"));
    std::size_t done = 0;
    while (done < bytes.size()) {
        OVERLAPPED pending {};
        pending.hEvent = event_;
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 4096));
        if (!WriteFile(handle_, bytes.data() + done, size, nullptr, &pending) && GetLastError() != ERROR_IO_PENDING)
            return unexpected(lastError());
        if (!GetOverlappedResult(handle_, &pending, &written, TRUE))
            return unexpected(lastError());
        if (written == 0)
            return unexpected(std::string("port nepřijímá data"));
        done += written;
    }
    return {};
}

Expected<std::size_t, std::string> Win32SerialLine::waitForFirstByte(std::uint8_t& byte, Clock::time_point deadline)
{
    OVERLAPPED pending {};
    pending.hEvent = event_;
    ResetEvent(event_);
    if (!ReadFile(handle_, &byte, 1, nullptr, &pending) && GetLastError() != ERROR_IO_PENDING)
        return unexpected(lastError());
    // A wait is at most a minute long, and may end a little early: wait again
    // until the deadline has really passed.
    DWORD waited = WAIT_TIMEOUT;
    do
        waited = WaitForSingleObject(event_, millisecondsUntil(deadline));
    while (waited == WAIT_TIMEOUT && Clock::now() < deadline);
    if (waited != WAIT_OBJECT_0)
        CancelIoEx(handle_, &pending);
    // After a cancel the read may still have completed: its byte counts.
    DWORD got = 0;
    if (!GetOverlappedResult(handle_, &pending, &got, TRUE) && GetLastError() != ERROR_OPERATION_ABORTED)
        return unexpected(lastError());
    return std::size_t { got };
}

// What else has arrived by now: it is in the driver's queue, so reading it
// does not wait.
Expected<void, std::string> Win32SerialLine::readWaiting(std::vector<std::uint8_t>& into)
{
    DWORD errors = 0;
    COMSTAT status {};
    if (!ClearCommError(handle_, &errors, &status))
        return unexpected(lastError());
    if (status.cbInQue == 0)
        return {};
    const std::size_t before = into.size();
    into.resize(before + std::min<DWORD>(status.cbInQue, 4096));
    OVERLAPPED pending {};
    pending.hEvent = event_;
    DWORD got = 0;
    const auto size = static_cast<DWORD>(into.size() - before);
    if (!ReadFile(handle_, into.data() + before, size, nullptr, &pending) && GetLastError() != ERROR_IO_PENDING)
        return unexpected(lastError());
    if (!GetOverlappedResult(handle_, &pending, &got, TRUE))
        return unexpected(lastError());
    into.resize(before + got);
    return {};
}

Expected<std::vector<std::uint8_t>, std::string> Win32SerialLine::read(Clock::time_point deadline)
{
    if (handle_ == nullptr)
        return unexpected(std::string("port není otevřen"));
    std::uint8_t first = 0;
    const auto got = waitForFirstByte(first, deadline);
    if (!got)
        return unexpected(got.error());
    std::vector<std::uint8_t> bytes;
    if (*got == 0)
        return bytes;
    bytes.push_back(first);
    if (auto rest = readWaiting(bytes); !rest)
        return unexpected(rest.error());
    return bytes;
}

void Win32SerialLine::flushInput()
{
    if (handle_ != nullptr)
        PurgeComm(handle_, PURGE_RXCLEAR);
}

} // namespace rm8::link
