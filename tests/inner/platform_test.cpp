// The platform seam: threads, sections, handles and hooks.
#include <gtest/gtest.h>

#include <atomic>
#include <pthread.h>
#include <signal.h>
#include <string>
#include <vector>

#include "platform/hooks.h"
#include "platform/win32.h"

namespace {

constexpr DWORD kSoon = 20000; // ms; only a failing test waits that long

class Section {
public:
    Section() { InitializeCriticalSection(&m_section); }
    ~Section() { DeleteCriticalSection(&m_section); }
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;
    CRITICAL_SECTION* operator&() { return &m_section; }

private:
    CRITICAL_SECTION m_section;
};

DWORD Store7(LPVOID target)
{
    *static_cast<std::atomic<int>*>(target) = 7;
    return 0;
}

// Holds its thread back until the section is left.
DWORD PassThrough(LPVOID section)
{
    EnterCriticalSection(static_cast<CRITICAL_SECTION*>(section));
    LeaveCriticalSection(static_cast<CRITICAL_SECTION*>(section));
    return 0;
}

HANDLE Start(LPTHREAD_START_ROUTINE routine, LPVOID argument)
{
    return CreateThread(nullptr, 0, routine, argument, 0, nullptr);
}

class ThreadsPlatform : public testing::Test {
protected:
    void TearDown() override
    {
        EXPECT_TRUE(platform_hooks::DrainThreads(kSoon));
        platform_hooks::Reset();
    }
};

class PlatformHooks : public testing::Test {
protected:
    void TearDown() override { platform_hooks::Reset(); }
};

} // namespace

// --- threads --------------------------------------------------------------------------------------------------------

TEST_F(ThreadsPlatform, AHandleTellsTheEndOfItsThread)
{
    Section gate;
    EnterCriticalSection(&gate);
    const HANDLE thread = Start(PassThrough, &gate);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_TIMEOUT);
    EXPECT_EQ(WaitForSingleObject(thread, 5), WAIT_TIMEOUT);
    EXPECT_FALSE(platform_hooks::DrainThreads(5));
    LeaveCriticalSection(&gate);
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(platform_hooks::RunningThreads(), 0u);
    EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_OBJECT_0);
    EXPECT_TRUE(CloseHandle(thread));
}

TEST_F(ThreadsPlatform, AThreadGoesOnWithoutItsHandle)
{
    Section gate;
    EnterCriticalSection(&gate);
    const HANDLE thread = Start(PassThrough, &gate);
    ASSERT_TRUE(CloseHandle(thread));
    EXPECT_FALSE(CloseHandle(thread));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_FAILED);
    EXPECT_EQ(platform_hooks::RunningThreads(), 1u);
    LeaveCriticalSection(&gate);
    EXPECT_TRUE(platform_hooks::DrainThreads(kSoon));
}

TEST_F(ThreadsPlatform, MoreThreadsThanThePoolHoldsRunAtOnceAndTheirSlotsComeBack)
{
    Section gate;
    for (int round = 0; round < 3; ++round) {
        EnterCriticalSection(&gate);
        std::vector<HANDLE> threads;
        for (int i = 0; i < 80; ++i)
            threads.push_back(Start(PassThrough, &gate));
        EXPECT_EQ(platform_hooks::RunningThreads(), 80u);
        for (const HANDLE thread : threads)
            EXPECT_TRUE(CloseHandle(thread));
        LeaveCriticalSection(&gate);
        EXPECT_TRUE(platform_hooks::DrainThreads(kSoon));
    }
}

TEST_F(ThreadsPlatform, RefusesWhatCreateThreadDoesNotOffer)
{
    DWORD id = 0;
    std::atomic<int> target{0};
    EXPECT_EQ(CreateThread(&id, 0, Store7, &target, 0, nullptr), nullptr);
    EXPECT_EQ(CreateThread(nullptr, 65536, Store7, &target, 0, nullptr), nullptr);
    EXPECT_EQ(CreateThread(nullptr, 0, nullptr, &target, 0, nullptr), nullptr);
    EXPECT_EQ(CreateThread(nullptr, 0, Store7, &target, 4, nullptr), nullptr);
    EXPECT_EQ(CreateThread(nullptr, 0, Store7, &target, 0, &id), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(platform_hooks::RunningThreads(), 0u);
    EXPECT_EQ(target, 0);
}

TEST_F(ThreadsPlatform, LastErrorIdentifierAndThreadWordsBelongToTheirThread)
{
    struct Shared {
        DWORD slot, error, id;
        LPVOID word;
    } seen = {TlsAlloc(), 1, 0, &seen};
    ASSERT_NE(seen.slot, TLS_OUT_OF_INDEXES);
    ASSERT_TRUE(TlsSetValue(seen.slot, &seen));
    SetLastError(77);
    const HANDLE thread = Start(
        [](LPVOID context) -> DWORD {
            auto* shared = static_cast<Shared*>(context);
            shared->error = GetLastError();
            shared->word = TlsGetValue(shared->slot);
            shared->id = GetCurrentThreadId();
            SetLastError(78);
            return 0;
        },
        &seen);
    ASSERT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_EQ(GetLastError(), 77u);
    EXPECT_EQ(seen.error, 0u);
    EXPECT_EQ(seen.word, nullptr);
    EXPECT_NE(seen.id, GetCurrentThreadId());
    EXPECT_EQ(TlsGetValue(seen.slot), &seen);
    EXPECT_EQ(GetLastError(), 0u) << "a successful TlsGetValue clears it";
    EXPECT_TRUE(TlsFree(seen.slot));
}

TEST_F(ThreadsPlatform, ThreadWordsStartEmptyAndRunOut)
{
    std::vector<DWORD> slots;
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) {
        EXPECT_EQ(TlsGetValue(slot), nullptr);
        EXPECT_TRUE(TlsSetValue(slot, &slots));
        slots.push_back(slot);
        ASSERT_LT(slots.size(), 1000u);
    }
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
    for (const DWORD slot : slots)
        EXPECT_TRUE(TlsFree(slot));
    EXPECT_FALSE(TlsFree(slots[0]));
    EXPECT_FALSE(TlsSetValue(slots[0], &slots));
    EXPECT_EQ(TlsGetValue(TLS_OUT_OF_INDEXES), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    const DWORD again = TlsAlloc();
    EXPECT_EQ(TlsGetValue(again), nullptr) << "a slot that is used again reads null";
    EXPECT_TRUE(TlsFree(again));
}

TEST_F(ThreadsPlatform, ASectionIsReentrantAndKeepsOthersOut)
{
    struct Counter {
        Section section;
        int plain = 0; // ThreadSanitizer sees an access without the section
        bool got_in = true;
    } counter;
    const auto count = [](LPVOID context) -> DWORD {
        auto* shared = static_cast<Counter*>(context);
        for (int i = 0; i < 1000; ++i) {
            EnterCriticalSection(&shared->section);
            EnterCriticalSection(&shared->section);
            ++shared->plain;
            LeaveCriticalSection(&shared->section);
            LeaveCriticalSection(&shared->section);
        }
        return 0;
    };
    for (int i = 0; i < 4; ++i)
        CloseHandle(Start(count, &counter));
    ASSERT_TRUE(platform_hooks::DrainThreads(kSoon));
    EXPECT_EQ(counter.plain, 4000);

    ASSERT_TRUE(TryEnterCriticalSection(&counter.section));
    EXPECT_TRUE(TryEnterCriticalSection(&counter.section));
    LeaveCriticalSection(&counter.section);
    const auto try_enter = [](LPVOID context) -> DWORD {
        auto* shared = static_cast<Counter*>(context);
        shared->got_in = TryEnterCriticalSection(&shared->section);
        return 0;
    };
    CloseHandle(Start(try_enter, &counter));
    ASSERT_TRUE(platform_hooks::DrainThreads(kSoon));
    EXPECT_FALSE(counter.got_in);
    LeaveCriticalSection(&counter.section);
}

TEST_F(ThreadsPlatform, ThreadsLeaveTheClientsSignalsAlone)
{
    bool interrupt_blocked = false;
    const HANDLE thread = Start(
        [](LPVOID context) -> DWORD {
            sigset_t mask;
            pthread_sigmask(SIG_SETMASK, nullptr, &mask);
            *static_cast<bool*>(context) = sigismember(&mask, SIGINT) == 1 && sigismember(&mask, SIGSEGV) == 0;
            return 0;
        },
        &interrupt_blocked);
    ASSERT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    CloseHandle(thread);
    EXPECT_TRUE(interrupt_blocked);
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    EXPECT_EQ(sigismember(&mask, SIGINT), 0);
}

TEST_F(ThreadsPlatform, ARuleFailsItsUsesOnceHoweverManyThreadsShareThem)
{
    struct Tries {
        Section section;
        int failed = 0;
    } tries;
    ASSERT_TRUE(platform_hooks::FailCall("HeapAlloc", 100, 50, ERROR_NOT_ENOUGH_MEMORY));
    const auto allocate = [](LPVOID context) -> DWORD {
        auto* shared = static_cast<Tries*>(context);
        for (int i = 0; i < 100; ++i) {
            const LPVOID block = HeapAlloc(GetProcessHeap(), 0, 8);
            EnterCriticalSection(&shared->section);
            if (!block) ++shared->failed;
            LeaveCriticalSection(&shared->section);
            HeapFree(GetProcessHeap(), 0, block);
        }
        return 0;
    };
    for (int i = 0; i < 4; ++i)
        CloseHandle(Start(allocate, &tries));
    ASSERT_TRUE(platform_hooks::DrainThreads(kSoon));
    EXPECT_EQ(tries.failed, 50);
    EXPECT_EQ(platform_hooks::CallCount("HeapAlloc"), 400u);
}

TEST_F(ThreadsPlatform, AFailedCreateThreadStartsNothing)
{
    std::atomic<int> target{0};
    ASSERT_TRUE(platform_hooks::FailCall("CreateThread", 1, 1, ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_EQ(Start(Store7, &target), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(platform_hooks::RunningThreads(), 0u);
    const HANDLE thread = Start(Store7, &target);
    ASSERT_NE(thread, nullptr);
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_TRUE(platform_hooks::DrainThreads(kSoon));
    EXPECT_EQ(target, 7);
}

// --- handles --------------------------------------------------------------------------------------------------------

TEST(PlatformHandles, AreRefusedUnlessOpenAndOfTheRightKind)
{
    const HANDLE closed = CreateFileW(TXT("/dev/null"), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(closed, INVALID_HANDLE_VALUE);
    ASSERT_TRUE(CloseHandle(closed));
    int here = 0;
    std::atomic<int> target{0};
    const HANDLE thread = Start(Store7, &target);
    const HANDLE file = CreateFileW(TXT("/dev/null"), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(WaitForSingleObject(file, 0), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_TRUE(CloseHandle(file));

    const struct {
        const char* name;
        HANDLE handle;
    } rows[] = {{"null", nullptr},
                {"INVALID_HANDLE_VALUE", INVALID_HANDLE_VALUE},
                {"closed", closed},
                {"somewhere", reinterpret_cast<HANDLE>(&here)},
                {"a thread", thread}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        BYTE octet = 0;
        DWORD moved = 1;
        DCB block = {};
        COMMTIMEOUTS timeouts = {};
        const auto refused = [](BOOL result) {
            const bool right = !result && GetLastError() == ERROR_INVALID_HANDLE;
            SetLastError(0);
            return right;
        };
        EXPECT_TRUE(refused(ReadFile(row.handle, &octet, 1, &moved, nullptr)));
        EXPECT_TRUE(refused(WriteFile(row.handle, &octet, 1, &moved, nullptr)));
        EXPECT_TRUE(refused(GetCommState(row.handle, &block)));
        EXPECT_TRUE(refused(SetCommState(row.handle, &block)));
        EXPECT_TRUE(refused(SetCommTimeouts(row.handle, &timeouts)));
        EXPECT_TRUE(refused(SetupComm(row.handle, 1, 1)));
        EXPECT_TRUE(refused(PurgeComm(row.handle, PURGE_RXCLEAR)));
        EXPECT_TRUE(refused(SetFilePointer(row.handle, 0, nullptr, FILE_END) != INVALID_SET_FILE_POINTER));
        if (row.handle == thread) continue;
        EXPECT_EQ(WaitForSingleObject(row.handle, 0), WAIT_FAILED);
        EXPECT_TRUE(refused(CloseHandle(row.handle)));
    }
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_TRUE(platform_hooks::DrainThreads(kSoon));
}

// --- hooks ----------------------------------------------------------------------------------------------------------

TEST_F(PlatformHooks, FailTheNthUseAndAsManyAsAsked)
{
    const LPVOID block = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, 4);
    ASSERT_TRUE(platform_hooks::FailCall("HeapFree", 2, 2, 4711));
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, nullptr));
    for (int i = 0; i < 2; ++i) {
        SetLastError(0);
        EXPECT_FALSE(HeapFree(GetProcessHeap(), 0, block));
        EXPECT_EQ(GetLastError(), 4711u);
    }
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, block));
    EXPECT_EQ(platform_hooks::CallCount("HeapFree"), 4u);
    platform_hooks::Reset();
    EXPECT_EQ(platform_hooks::CallCount("HeapFree"), 0u);
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, nullptr));
    EXPECT_EQ(platform_hooks::CallCount("HeapFree"), 0u) << "nothing is counted while nothing is armed";
}

// Each failing call gives its own kind of failure. The arguments would do for a success, or for another error.
TEST_F(PlatformHooks, EachCallFailsInItsOwnWay)
{
    static char text[] = "x";
    static WCHAR wide[8];
    static CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    const struct {
        const char* call;
        bool (*failed)();
    } rows[] = {
        {"CreateThread", [] { return Start(Store7, wide) == nullptr; }},
        {"WaitForSingleObject", [] { return WaitForSingleObject(nullptr, 0) == WAIT_FAILED; }},
        {"TlsAlloc", [] { return TlsAlloc() == TLS_OUT_OF_INDEXES; }},
        {"TlsFree", [] { return !TlsFree(0); }},
        {"TlsGetValue", [] { return TlsGetValue(0) == nullptr; }},
        {"TlsSetValue", [] { return !TlsSetValue(0, nullptr); }},
        {"TryEnterCriticalSection", [] { return !TryEnterCriticalSection(&section); }},
        {"LoadLibraryW", [] { return LoadLibraryW(TXT("talvek_platform.dll")) == nullptr; }},
        {"GetProcAddressW", [] { return GetProcAddressW(nullptr, TXT("x")) == nullptr; }},
        {"FreeLibrary", [] { return !FreeLibrary(nullptr); }},
        {"CreateFileW",
         [] {
             return CreateFileW(TXT("/dev/null"), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr) ==
                    INVALID_HANDLE_VALUE;
         }},
        {"CloseHandle", [] { return !CloseHandle(nullptr); }},
        {"GetStdHandle", [] { return GetStdHandle(STD_ERROR_HANDLE) == INVALID_HANDLE_VALUE; }},
        {"ReadFile", [] { return !ReadFile(nullptr, nullptr, 0, nullptr, nullptr); }},
        {"WriteFile", [] { return !WriteFile(nullptr, nullptr, 0, nullptr, nullptr); }},
        {"SetFilePointer", [] { return SetFilePointer(nullptr, 0, nullptr, FILE_END) == INVALID_SET_FILE_POINTER; }},
        {"GetCommState", [] { return !GetCommState(nullptr, nullptr); }},
        {"SetCommState", [] { return !SetCommState(nullptr, nullptr); }},
        {"SetCommTimeouts", [] { return !SetCommTimeouts(nullptr, nullptr); }},
        {"SetupComm", [] { return !SetupComm(nullptr, 0, 0); }},
        {"PurgeComm", [] { return !PurgeComm(nullptr, 0); }},
        {"RegOpenKeyExW", [] { return RegOpenKeyExW(nullptr, nullptr, 0, KEY_READ, nullptr) == 4711; }},
        {"RegQueryValueExW",
         [] { return RegQueryValueExW(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr) == 4711; }},
        {"RegCloseKey", [] { return RegCloseKey(nullptr) == 4711; }},
        {"MultiByteToWideChar", [] { return MultiByteToWideChar(CP_ACP, 0, text, -1, wide, 8) == 0; }},
        {"GetProcessHeap", [] { return GetProcessHeap() == nullptr; }},
        {"HeapAlloc", [] { return HeapAlloc(GetProcessHeap(), 0, 1) == nullptr; }},
        {"HeapFree", [] { return !HeapFree(GetProcessHeap(), 0, nullptr); }},
        {"GetEnvironmentVariableW", [] { return GetEnvironmentVariableW(TXT("PATH"), wide, 8) == 0; }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.call);
        SetLastError(0);
        ASSERT_TRUE(platform_hooks::FailCall(row.call, 1, 1, 4711));
        EXPECT_TRUE(row.failed());
        EXPECT_EQ(GetLastError(), 4711u);
        EXPECT_EQ(platform_hooks::CallCount(row.call), 1u);
    }
    platform_hooks::Reset();
    DeleteCriticalSection(&section);
}

TEST_F(PlatformHooks, RefuseWhatTheyCannotDo)
{
    EXPECT_FALSE(platform_hooks::FailCall("NoSuchCall", 1, 1, 5));
    EXPECT_FALSE(platform_hooks::FailCall(nullptr, 1, 1, 5));
    EXPECT_FALSE(platform_hooks::FailCall("GetTickCount", 1, 1, 5)) << "cannot fail";
    EXPECT_FALSE(platform_hooks::FailCall("ReadFile", 0, 1, 5));
    EXPECT_FALSE(platform_hooks::FailCall("RegOpenKeyExW", 1, 1, ERROR_SUCCESS)) << "would be a success";
    EXPECT_FALSE(platform_hooks::ReplaceCall("CloseHandle", nullptr));
    EXPECT_FALSE(platform_hooks::HideSymbol(std::string(200, 'x').c_str()));
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(platform_hooks::HideSymbol("SetPower"));
    EXPECT_FALSE(platform_hooks::HideSymbol("SetPower"));
}

TEST_F(PlatformHooks, ReplaceTheClockAndCountIt)
{
    static DWORD slept;
    platform_hooks::CountCall("Sleep");
    ASSERT_TRUE(
        platform_hooks::ReplaceCall("GetTickCount", reinterpret_cast<FARPROC>(+[]() -> DWORD { return 0xFFFFFFF0u; })));
    ASSERT_TRUE(platform_hooks::ReplaceCall(
        "Sleep", reinterpret_cast<FARPROC>(+[](DWORD milliseconds) { slept = milliseconds; })));
    Sleep(3600000);
    EXPECT_EQ(slept, 3600000u);
    EXPECT_EQ(GetTickCount(), 0xFFFFFFF0u);
    EXPECT_EQ(platform_hooks::CallCount("Sleep"), 1u);
    ASSERT_TRUE(platform_hooks::ReplaceCall("GetTickCount", nullptr));
    const DWORD start = GetTickCount();
    EXPECT_LT(GetTickCount() - start, kSoon);
}

TEST_F(PlatformHooks, AReplacementMayCallWhatItReplaces)
{
    static std::atomic<int> starts;
    starts = 0;
    const auto counting = [](void* security, SIZE_T stack, LPTHREAD_START_ROUTINE routine, LPVOID argument, DWORD flags,
                             DWORD* id) -> HANDLE {
        ++starts;
        return CreateThread(security, stack, routine, argument, flags, id);
    };
    ASSERT_TRUE(platform_hooks::ReplaceCall("CreateThread", reinterpret_cast<FARPROC>(+counting)));
    platform_hooks::CountCall("CreateThread");
    std::atomic<int> target{0};
    const HANDLE thread = Start(Store7, &target);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    CloseHandle(thread);
    EXPECT_EQ(target, 7);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(platform_hooks::CallCount("CreateThread"), 1u);
}

TEST_F(PlatformHooks, DebugOutputReachesTheSinkBounded)
{
    static std::u16string shown;
    NKDbgPrintfW(TXT("to nobody"));
    platform_hooks::SetDebugSink([](const WCHAR* text, void*) { shown = text; }, nullptr);
    NKDbgPrintfW(TXT("%s is %d, 0x%x; 100%% %q%"), TXT("it"), -5, 0xABu);
    EXPECT_EQ(shown, u"it is -5, 0xab; 100% %q%");
    NKDbgPrintfW(TXT("%s"), static_cast<const WCHAR*>(nullptr));
    EXPECT_EQ(shown, u"(null)");
    NKDbgPrintfW(TXT("%s"), std::u16string(2000, u'x').c_str());
    EXPECT_EQ(shown.size(), 511u);
}
