// The serial line of the AT modem: where the host has pseudo-terminals, one whose other end a client opens.
#pragma once

#include "talvek/types.h"

namespace sim {

// Opens the line if it is not open, and points the link at it. Returns false when the host refuses. The lock is not
// held, here and below unless stated.
bool OpenTerminal();
// Closes it as a module does that vanishes; nothing if it is not open.
void HangUpTerminal();
// The name that a client opens; empty while the line is closed.
void TerminalName(char* name, ULONG room);
// A symbolic link that names the line while it is open. Before it is first opened. False when the path is too long.
bool LinkTerminal(const char* path);
// There is something to send. The lock may be held.
void WakeTerminal();

} // namespace sim
