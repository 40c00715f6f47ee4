#include "platform/win32_error_message.h"

#include <windows.h>

namespace rm8::platform {

std::string win32ErrorMessage(unsigned long code)
{
    wchar_t* text = nullptr;
    const DWORD length
        = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
            nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::string described;
    if (length > 0) {
        const int size = WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
        described.resize(static_cast<std::size_t>(size));
        WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), described.data(), size, nullptr, nullptr);
    }
    LocalFree(text);
    while (!described.empty() && (described.back() == '\n' || described.back() == '\r' || described.back() == '.'))
        described.pop_back();
    return described + (described.empty() ? "" : " ") + "(chyba " + std::to_string(code) + ")";
}

} // namespace rm8::platform
