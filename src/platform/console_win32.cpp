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

void attachParentConsole()
{
    if (GetFileType(GetStdHandle(STD_ERROR_HANDLE)) != FILE_TYPE_UNKNOWN)
        return;
    if (!AttachConsole(ATTACH_PARENT_PROCESS))
        return;
    (void)std::freopen("CONOUT$", "w", stdout);
    (void)std::freopen("CONOUT$", "w", stderr);
}

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
