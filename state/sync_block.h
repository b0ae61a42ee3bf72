// The API-wide lock. It serialises OrvApiShutdown, the notification registry's bookkeeping and every
// registry-dispatched delivery, and guards the list of air servers and the result of the last network scan, which a
// scan thread reads and writes; nothing else takes it.
#pragma once

#include "platform/win32.h"

// One critical section, so the thread that holds it may take it again.
class ORVSYNCBLOCK {
public:
    ORVSYNCBLOCK() { InitializeCriticalSection(&m_section); }
    ~ORVSYNCBLOCK() { DeleteCriticalSection(&m_section); }
    ORVSYNCBLOCK(const ORVSYNCBLOCK&) = delete;
    ORVSYNCBLOCK& operator=(const ORVSYNCBLOCK&) = delete;

    void Enter() { EnterCriticalSection(&m_section); }
    // False when another thread holds it. The library always waits; tests ask.
    bool TryEnter() { return TryEnterCriticalSection(&m_section) != FALSE; }
    void Leave() { LeaveCriticalSection(&m_section); }

private:
    CRITICAL_SECTION m_section;
};

extern ORVSYNCBLOCK g_OrvSyncBlock;

// Holds the lock for the life of a scope.
class OrvSyncGuard {
public:
    OrvSyncGuard() { g_OrvSyncBlock.Enter(); }
    ~OrvSyncGuard() { g_OrvSyncBlock.Leave(); }
    OrvSyncGuard(const OrvSyncGuard&) = delete;
    OrvSyncGuard& operator=(const OrvSyncGuard&) = delete;
};
