#include <atomic>
#include <cstdio>

#include <io.h>
#include <windows.h>

#include "platform/console.h"

namespace rm8::platform {
namespace {

std::atomic<void (*)()> interruptHandler { nullptr };

BOOL WINAPI onConsoleEvent(DWORD event)
{
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        return FALSE;
    if (const auto handler = interruptHandler.load())
        handler();
    return TRUE;
}

} // namespace

void useUtf8Console()
{
    SetConsoleOutputCP(CP_UTF8);
}

bool errorStreamIsTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}

void onInterrupt(void (*handler)())
{
    interruptHandler = handler;
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

} // namespace rm8::platform
