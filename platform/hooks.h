// What tests may do to the platform: replace a call by name, fail it on its nth use, and watch what passes through.
//
// The hooks cost one relaxed load a call while nothing is armed. They exist on the POSIX seam only, and may be used
// from any thread. A use of a call is counted first, then fails if a rule says so, and else reaches the replacement or
// the seam.
#pragma once

#include "platform/win32.h"

namespace platform_hooks {

// Makes uses `nth` to `nth + times - 1` of `call` (counted from 1, from now on) fail with `error`, as the call's own
// kind of failure (FALSE, null, INVALID_HANDLE_VALUE, a registry result), without doing anything. `call` is the Win32
// name. A later rule for the same call takes the place of the earlier one. Returns false for a name that the seam does
// not have or that cannot fail, for an `nth` of 0, and for error 0 where the error is the result.
PLATFORM_API bool FailCall(const char* call, unsigned nth, unsigned times, DWORD error);
// How often `call` has been used since the last Reset or FailCall of it; counts only while it is armed by FailCall or
// CountCall.
PLATFORM_API void CountCall(const char* call);
PLATFORM_API unsigned CallCount(const char* call);

// Replacements by name: "GetTickCount", "Sleep", "CreateThread", "ReadFile" and "WriteFile". Null puts the seam's own
// back. `function` must have the call's exact type. While it runs, its own uses of that call on the same thread reach
// the seam's own and are not counted. Returns false for another name.
PLATFORM_API bool ReplaceCall(const char* call, FARPROC function);

// GetProcAddressW behaves as if the library lacked `name`, until Reset. At most eight names.
PLATFORM_API bool HideSymbol(const char* name);
// Called with each name that GetProcAddressW looks up; null to stop.
PLATFORM_API void WatchLookups(void (*watcher)(const char* name, void* context), void* context);
// Receives each NKDbgPrintfW text, formatted; null to stop.
PLATFORM_API void SetDebugSink(void (*sink)(const WCHAR* text, void* context), void* context);

// What was last asked of any serial port; a pseudo-terminal cannot show most of it.
struct SerialSettings {
    DCB block;
    COMMTIMEOUTS timeouts;
    DWORD in_queue;
    DWORD out_queue;
    DWORD purge_flags;
    unsigned purges;
};
PLATFORM_API SerialSettings LastSerialSettings();

// Threads that CreateThread started and that have not ended.
PLATFORM_API unsigned RunningThreads();
// Waits until RunningThreads() is 0, at most `timeout_ms` of real time. Returns whether it is.
PLATFORM_API bool DrainThreads(unsigned timeout_ms);

// Removes every rule, replacement, hidden symbol and sink, and forgets the counts and the serial settings.
PLATFORM_API void Reset();

} // namespace platform_hooks
