// What every file of the POSIX seam needs: how a call reports its failure, and how it asks the test hooks.
#pragma once

#include "platform/shared.h"
#include "platform/win32.h"

namespace seam {

// Each call of the seam, in the order of platform/win32.h. The names are in hooks.cpp.
enum class Call : unsigned {
    GetLastError,
    SetLastError,
    CreateThread,
    WaitForSingleObject,
    GetCurrentThreadId,
    Sleep,
    GetTickCount,
    TlsAlloc,
    TlsFree,
    TlsGetValue,
    TlsSetValue,
    InitializeCriticalSection,
    DeleteCriticalSection,
    EnterCriticalSection,
    TryEnterCriticalSection,
    LeaveCriticalSection,
    LoadLibraryW,
    GetProcAddressW,
    FreeLibrary,
    CreateFileW,
    CloseHandle,
    GetStdHandle,
    ReadFile,
    WriteFile,
    SetFilePointer,
    GetCommState,
    SetCommState,
    SetCommTimeouts,
    SetupComm,
    PurgeComm,
    RegOpenKeyExW,
    RegQueryValueExW,
    RegCloseKey,
    MultiByteToWideChar,
    GetProcessHeap,
    HeapAlloc,
    HeapFree,
    GetEnvironmentVariableW,
    NKDbgPrintfW,
    GetLocalTime,
    Count
};

// --- errors ---------------------------------------------------------------------------------------------------------

// The seam's own code sets the last error here; the exported SetLastError is counted as a use of that call.
void SetError(DWORD error);
DWORD CurrentError();
// Sets the last error and returns FALSE.
BOOL Fail(DWORD error);
// The Win32 error for an errno value; ERROR_GEN_FAILURE for one that has no row.
DWORD ErrorFromErrno(int host_error);

// --- hooks ----------------------------------------------------------------------------------------------------------

// True while a test has armed anything at all.
extern Shared<bool> g_armed;
inline bool Armed() { return __builtin_expect(g_armed, false); }

// Counts a use of `call` and tells whether a rule makes it fail; the last error is then set.
bool FaultedWhileArmed(Call call);
inline bool Faulted(Call call) { return Armed() && FaultedWhileArmed(call); }
// For the calls that cannot fail.
inline void Count(Call call)
{
    if (Armed()) FaultedWhileArmed(call);
}

// The function that a test put in the place of `call`. While it runs, its own uses of `call` on this thread reach the
// seam.
class StandIn {
public:
    explicit StandIn(Call call);
    ~StandIn();
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    explicit operator bool() const { return m_function != nullptr; }
    template <class Function>
    Function* As() const
    {
        return reinterpret_cast<Function*>(m_function);
    }

private:
    Call m_call;
    FARPROC m_function;
};

// Tells the watcher that `name` is looked up. Returns whether a test hides it.
bool LookedUpAndHidden(const char* name);
void SendToDebugSink(const WCHAR* text);

// For LastSerialSettings.
void NoteBlock(const DCB& block);
void NoteTimeouts(const COMMTIMEOUTS& timeouts);
void NoteQueues(DWORD in_queue, DWORD out_queue);
void NotePurge(DWORD flags);

} // namespace seam
