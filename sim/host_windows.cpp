#include "sim/host.h"

#include "sim/host_windows.h"
#include "sim/text.h"

namespace sim {

struct Start {
    void (*run)(void*);
    void* argument;
};

static DWORD WINAPI Run(void* argument)
{
    const Start start = *static_cast<Start*>(argument);
    HeapFree(GetProcessHeap(), 0, argument);
    start.run(start.argument);
    return 0;
}

// A thread of this library must not outlive its code, and nobody can wait for a thread that may be in a client's
// callback.
static bool StayLoaded()
{
    HMODULE self = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                              reinterpret_cast<const WCHAR*>(&Run), &self) != FALSE;
}

HANDLE StartHostThread(void (*run)(void*), void* argument)
{
    if (!StayLoaded()) return nullptr;
    Start* start = static_cast<Start*>(HeapAlloc(GetProcessHeap(), 0, sizeof(Start)));
    if (!start) return nullptr;
    *start = {run, argument};
    const HANDLE thread = CreateThread(nullptr, 0, Run, start, 0, nullptr);
    if (!thread) HeapFree(GetProcessHeap(), 0, start);
    return thread;
}

bool HostStartThread(void (*run)(void*), void* argument)
{
    const HANDLE thread = StartHostThread(run, argument);
    if (thread) CloseHandle(thread);
    return thread != nullptr;
}

// The tick count goes by steps of up to 16 milliseconds.
ULONGLONG HostMilliseconds()
{
    LARGE_INTEGER frequency = {}, counter = {};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&counter);
    const ULONGLONG rate = static_cast<ULONGLONG>(frequency.QuadPart);
    const ULONGLONG count = static_cast<ULONGLONG>(counter.QuadPart);
    return count / rate * 1000 + count % rate * 1000 / rate;
}

// Set by HostWake, reset by the one that waited. Unlike a lock, it cannot be left taken by a thread that ended with the
// process.
static HANDLE WakeEvent()
{
    static void* event;
    void* const made = InterlockedCompareExchangePointer(&event, nullptr, nullptr);
    return made ? made : Keep(&event, CreateEventW(nullptr, FALSE, FALSE, nullptr));
}

void HostPause(ULONG timeout_ms) { WaitForSingleObject(WakeEvent(), timeout_ms); }

void HostWake() { SetEvent(WakeEvent()); }

void HostSleep(ULONG milliseconds) { Sleep(milliseconds); }

bool HostEnvironment(const char* name, char* value, ULONG room)
{
    if (room == 0) return false;
    value[0] = 0;
    WCHAR wide_name[64];
    WCHAR wide[1024];
    char narrow[3 * 1024 + 1]; // no UTF-16 unit takes more than three octets of UTF-8
    Widen(wide_name, sizeof(wide_name) / sizeof(WCHAR), name);
    const DWORD length = GetEnvironmentVariableW(wide_name, wide, sizeof(wide) / sizeof(WCHAR));
    if (length == 0 || length >= sizeof(wide) / sizeof(WCHAR)) return false;
    Narrow(narrow, sizeof(narrow), wide);
    return Copy(value, room, narrow);
}

bool HostReadFile(const char* path, char* text, ULONG room)
{
    WCHAR wide[1024];
    Widen(wide, sizeof(wide) / sizeof(WCHAR), path);
    if (Length(path) >= sizeof(wide) / sizeof(WCHAR)) return false;
    const HANDLE file =
        CreateFileW(wide, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    ULONG length = 0;
    DWORD got = 0;
    bool read = false;
    while ((read = ReadFile(file, text + length, room - length, &got, nullptr) != FALSE) && got > 0)
        length += got;
    CloseHandle(file);
    if (!read || length >= room) return false;
    text[length] = 0;
    return true;
}

void HostComplain(const char* where, const char* what)
{
    char line[512];
    Writer writer(line, sizeof(line) - 1);
    writer.Add("talvek-sim: ").Add(where).Add(": ").Add(what);
    line[writer.Length()] = '\n';
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), line, writer.Length() + 1, &written, nullptr);
}

} // namespace sim
