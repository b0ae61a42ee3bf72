// What the simulated module needs of its host beyond the platform's Win32 subset. It goes around that subset on
// purpose: a test that fails or counts the library's calls must not meet the module's own.
#pragma once

#include "talvek/types.h"

namespace sim {

// Runs `run(argument)` on a thread that nobody waits for. From the first one on, the library stays loaded until the
// process ends. Returns whether it started.
bool HostStartThread(void (*run)(void*), void* argument);
// Milliseconds of a clock that only goes forward.
ULONGLONG HostMilliseconds();
// Waits for HostWake, at most `timeout_ms`. May return early.
void HostPause(ULONG timeout_ms);
void HostWake();
void HostSleep(ULONG milliseconds);

// Copies a variable of the environment. Returns false, and an empty text, when it is absent, empty or does not fit.
bool HostEnvironment(const char* name, char* value, ULONG room);
// Reads a whole file, terminated. Returns false when it cannot be read or does not fit.
bool HostReadFile(const char* path, char* text, ULONG room);
// One line on standard error: "talvek-sim: WHERE: WHAT".
void HostComplain(const char* where, const char* what);

} // namespace sim
