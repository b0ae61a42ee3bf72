// What the parts of the simulated module that are for Windows share.
#pragma once

#include "platform/win32.h"

namespace sim {

// A handle that stays until the process ends, made by whoever needs it first: keeps `fresh`, or closes it when another
// thread was faster. Returns what is kept.
inline HANDLE Keep(void** kept, HANDLE fresh)
{
    void* const before = InterlockedCompareExchangePointer(kept, fresh, nullptr);
    if (!before) return fresh;
    if (fresh) CloseHandle(fresh);
    return before;
}

// As HostStartThread. Returns the thread's handle, for the caller to close; null when it did not start.
HANDLE StartHostThread(void (*run)(void*), void* argument);

} // namespace sim
