#pragma once
// The console the command-line program talks to, on either system.

namespace rm8::platform {

// The program's texts are UTF-8. A Windows console shows them so only when
// told; a POSIX terminal takes the bytes as they are.
void useUtf8Console();

// A window program has no console of its own; started from one (cmd), it
// writes its help, version and refusals there. Output sent to a file or a
// pipe stays where it goes. Nothing to do on POSIX.
void attachParentConsole();

// Whether the error stream goes to a person's terminal rather than a file or
// a pipe.
bool errorStreamIsTerminal();

// Ctrl-C calls the handler instead of ending the program. On Windows the
// system calls it on a thread of its own: it should only set a flag.
void onInterrupt(void (*handler)());

} // namespace rm8::platform
