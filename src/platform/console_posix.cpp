#include <atomic>
#include <csignal>

#include <unistd.h>

#include "platform/console.h"

namespace rm8::platform {
namespace {

std::atomic<void (*)()> interruptHandler { nullptr };

void onSignal(int)
{
    if (const auto handler = interruptHandler.load())
        handler();
}

} // namespace

void attachParentConsole() { }

void useUtf8Console()
{
}

bool errorStreamIsTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

void onInterrupt(void (*handler)())
{
    interruptHandler = handler;
    std::signal(SIGINT, onSignal);
}

} // namespace rm8::platform
