#include "platform/hooks.h"

#include <array>
#include <iterator>
#include <stdint.h>
#include <string.h>

#include "platform/posix/seam.h"
#include "platform/posix/sync.h"

using seam::Call;
using seam::Lock;

namespace {

constexpr unsigned kFails = 1;        // has a failure of its own
constexpr unsigned kReturnsError = 2; // the error is the result, so a failure cannot have error 0
constexpr unsigned kReplaceable = 4;

struct Row {
    const char* name;
    Call call;
    unsigned traits;
};

constexpr Row kRows[] = {
    {"GetLastError", Call::GetLastError, 0},
    {"SetLastError", Call::SetLastError, 0},
    {"CreateThread", Call::CreateThread, kFails | kReplaceable},
    {"WaitForSingleObject", Call::WaitForSingleObject, kFails},
    {"GetCurrentThreadId", Call::GetCurrentThreadId, 0},
    {"Sleep", Call::Sleep, kReplaceable},
    {"GetTickCount", Call::GetTickCount, kReplaceable},
    {"TlsAlloc", Call::TlsAlloc, kFails},
    {"TlsFree", Call::TlsFree, kFails},
    {"TlsGetValue", Call::TlsGetValue, kFails},
    {"TlsSetValue", Call::TlsSetValue, kFails},
    {"InitializeCriticalSection", Call::InitializeCriticalSection, 0},
    {"DeleteCriticalSection", Call::DeleteCriticalSection, 0},
    {"EnterCriticalSection", Call::EnterCriticalSection, 0},
    {"TryEnterCriticalSection", Call::TryEnterCriticalSection, kFails},
    {"LeaveCriticalSection", Call::LeaveCriticalSection, 0},
    {"LoadLibraryW", Call::LoadLibraryW, kFails},
    {"GetProcAddressW", Call::GetProcAddressW, kFails},
    {"FreeLibrary", Call::FreeLibrary, kFails},
    {"CreateFileW", Call::CreateFileW, kFails},
    {"CloseHandle", Call::CloseHandle, kFails},
    {"GetStdHandle", Call::GetStdHandle, kFails},
    {"ReadFile", Call::ReadFile, kFails | kReplaceable},
    {"WriteFile", Call::WriteFile, kFails | kReplaceable},
    {"SetFilePointer", Call::SetFilePointer, kFails},
    {"GetCommState", Call::GetCommState, kFails},
    {"SetCommState", Call::SetCommState, kFails},
    {"SetCommTimeouts", Call::SetCommTimeouts, kFails},
    {"SetupComm", Call::SetupComm, kFails},
    {"PurgeComm", Call::PurgeComm, kFails},
    {"RegOpenKeyExW", Call::RegOpenKeyExW, kFails | kReturnsError},
    {"RegQueryValueExW", Call::RegQueryValueExW, kFails | kReturnsError},
    {"RegCloseKey", Call::RegCloseKey, kFails | kReturnsError},
    {"MultiByteToWideChar", Call::MultiByteToWideChar, kFails},
    {"GetProcessHeap", Call::GetProcessHeap, kFails},
    {"HeapAlloc", Call::HeapAlloc, kFails},
    {"HeapFree", Call::HeapFree, kFails},
    {"GetEnvironmentVariableW", Call::GetEnvironmentVariableW, kFails},
    {"NKDbgPrintfW", Call::NKDbgPrintfW, 0},
    {"GetLocalTime", Call::GetLocalTime, 0},
};

constexpr bool RowsAreInOrder()
{
    for (size_t i = 0; i < std::size(kRows); ++i) {
        if (static_cast<size_t>(kRows[i].call) != i) return false;
    }
    return std::size(kRows) == static_cast<size_t>(Call::Count);
}
static_assert(RowsAreInOrder(), "a row for each call, in the order of the calls");
static_assert(std::size(kRows) <= 64, "StandIn keeps a bit for each call");

// What a test asked of one call.
struct Rule {
    bool counting;
    unsigned uses;
    unsigned nth;
    unsigned times;
    DWORD error;
    FARPROC stand_in;
};

constexpr size_t kHiddenNames = 8;
constexpr size_t kHiddenNameRoom = 128;

struct Hooks {
    std::array<Rule, std::size(kRows)> rules;
    std::array<char[kHiddenNameRoom], kHiddenNames> hidden;
    size_t hidden_count;
    void (*lookup_watcher)(const char* name, void* context);
    void* lookup_context;
    void (*debug_sink)(const WCHAR* text, void* context);
    void* debug_context;
    platform_hooks::SerialSettings serial;
};

seam::Mutex g_mutex;
Hooks g_hooks; // guarded by g_mutex

thread_local uint64_t t_standing_in = 0; // a bit for each call whose stand-in runs on this thread

uint64_t BitOf(Call call) { return uint64_t{1} << static_cast<unsigned>(call); }

Rule& RuleOf(Call call) { return g_hooks.rules[static_cast<size_t>(call)]; }

const Row* FindRow(const char* name)
{
    if (!name) return nullptr;
    for (const Row& row : kRows) {
        if (strcmp(row.name, name) == 0) return &row;
    }
    return nullptr;
}

// The caller holds g_mutex.
void RefreshArmed()
{
    bool armed = g_hooks.hidden_count > 0 || g_hooks.lookup_watcher || g_hooks.debug_sink;
    for (const Rule& rule : g_hooks.rules)
        armed = armed || rule.counting || rule.stand_in;
    seam::g_armed = armed;
}

} // namespace

namespace seam {

Shared<bool> g_armed(false);

bool FaultedWhileArmed(Call call)
{
    if (t_standing_in & BitOf(call)) return false; // already counted as a use of the stand-in
    DWORD error;
    {
        const Lock lock(g_mutex);
        Rule& rule = RuleOf(call);
        if (!rule.counting) return false;
        ++rule.uses;
        if (rule.uses < rule.nth || rule.uses - rule.nth >= rule.times) return false;
        error = rule.error;
    }
    SetError(error);
    return true;
}

StandIn::StandIn(Call call) : m_call(call), m_function(nullptr)
{
    if (t_standing_in & BitOf(call)) return;
    {
        const Lock lock(g_mutex);
        m_function = RuleOf(call).stand_in;
    }
    if (m_function) t_standing_in |= BitOf(call);
}

StandIn::~StandIn()
{
    if (m_function) t_standing_in &= ~BitOf(m_call);
}

bool LookedUpAndHidden(const char* name)
{
    void (*watcher)(const char*, void*);
    void* context;
    bool hidden = false;
    {
        const Lock lock(g_mutex);
        watcher = g_hooks.lookup_watcher;
        context = g_hooks.lookup_context;
        for (size_t i = 0; i < g_hooks.hidden_count; ++i) {
            hidden = hidden || strcmp(g_hooks.hidden[i], name) == 0;
        }
    }
    if (watcher) watcher(name, context);
    return hidden;
}

void SendToDebugSink(const WCHAR* text)
{
    void (*sink)(const WCHAR*, void*);
    void* context;
    {
        const Lock lock(g_mutex);
        sink = g_hooks.debug_sink;
        context = g_hooks.debug_context;
    }
    if (sink) sink(text, context);
}

void NoteBlock(const DCB& block)
{
    const Lock lock(g_mutex);
    g_hooks.serial.block = block;
}

void NoteTimeouts(const COMMTIMEOUTS& timeouts)
{
    const Lock lock(g_mutex);
    g_hooks.serial.timeouts = timeouts;
}

void NoteQueues(DWORD in_queue, DWORD out_queue)
{
    const Lock lock(g_mutex);
    g_hooks.serial.in_queue = in_queue;
    g_hooks.serial.out_queue = out_queue;
}

void NotePurge(DWORD flags)
{
    const Lock lock(g_mutex);
    g_hooks.serial.purge_flags = flags;
    ++g_hooks.serial.purges;
}

} // namespace seam

namespace platform_hooks {

bool FailCall(const char* call, unsigned nth, unsigned times, DWORD error)
{
    const Row* row = FindRow(call);
    if (!row || !(row->traits & kFails) || nth == 0) return false;
    if ((row->traits & kReturnsError) && error == ERROR_SUCCESS) return false;

    const Lock lock(g_mutex);
    Rule& rule = RuleOf(row->call);
    rule.counting = true;
    rule.uses = 0;
    rule.nth = nth;
    rule.times = times;
    rule.error = error;
    RefreshArmed();
    return true;
}

void CountCall(const char* call)
{
    const Row* row = FindRow(call);
    if (!row) return;
    const Lock lock(g_mutex);
    RuleOf(row->call).counting = true;
    RefreshArmed();
}

unsigned CallCount(const char* call)
{
    const Row* row = FindRow(call);
    if (!row) return 0;
    const Lock lock(g_mutex);
    return RuleOf(row->call).uses;
}

bool ReplaceCall(const char* call, FARPROC function)
{
    const Row* row = FindRow(call);
    if (!row || !(row->traits & kReplaceable)) return false;
    const Lock lock(g_mutex);
    RuleOf(row->call).stand_in = function;
    RefreshArmed();
    return true;
}

bool HideSymbol(const char* name)
{
    const size_t size = name ? strlen(name) + 1 : 0;
    if (size == 0 || size > kHiddenNameRoom) return false;
    const Lock lock(g_mutex);
    if (g_hooks.hidden_count == kHiddenNames) return false;
    memcpy(g_hooks.hidden[g_hooks.hidden_count++], name, size);
    RefreshArmed();
    return true;
}

void WatchLookups(void (*watcher)(const char* name, void* context), void* context)
{
    const Lock lock(g_mutex);
    g_hooks.lookup_watcher = watcher;
    g_hooks.lookup_context = context;
    RefreshArmed();
}

void SetDebugSink(void (*sink)(const WCHAR* text, void* context), void* context)
{
    const Lock lock(g_mutex);
    g_hooks.debug_sink = sink;
    g_hooks.debug_context = context;
    RefreshArmed();
}

SerialSettings LastSerialSettings()
{
    const Lock lock(g_mutex);
    return g_hooks.serial;
}

void Reset()
{
    const Lock lock(g_mutex);
    g_hooks = Hooks{};
    RefreshArmed();
}

} // namespace platform_hooks
