// The AT line as a pair of COM ports that are wired to each other: TALVEK_SIM_LINES names such pairs. One thread serves
// the module's end; it alone closes it.
#include "sim/at_terminal.h"

#include "platform/shared.h"
#include "sim/at_modem.h"
#include "sim/clock.h"
#include "sim/host.h"
#include "sim/host_windows.h"
#include "sim/module.h"

namespace sim {

static HANDLE g_thread;       // to be waited for, if any
static Shared<HANDLE> g_wake; // there is something to send, or to stop for; open from the first use on, as the next two
static HANDLE g_read, g_written;
static HANDLE g_modem = INVALID_HANDLE_VALUE;
static HANDLE g_claim; // held while the line is open: no other process takes the pair
static Text<16> g_name;
static ULONG g_next; // pairs are taken in turn, so that what was hung up is not taken again at once
static bool g_complained;
static Shared<ULONG> g_stop;
static Shared<ULONG> g_open;

// For a client to read a fragment: it cannot be told when it has.
constexpr ULONG kFragmentMs = 2;
// For the client's end to learn that the line was hung up. Until then it takes octets that nobody reads.
constexpr ULONG kHangUpMs = 5;
constexpr ULONG kLinesRoom = 1024;

// Waits for an operation that was begun. Returns false when it failed or the line is to be closed; nothing of it is
// under way then.
static bool Await(OVERLAPPED& operation, DWORD* count)
{
    while (!g_stop) {
        const HANDLE events[] = {operation.hEvent, g_wake};
        if (WaitForMultipleObjects(2, events, FALSE, INFINITE) == WAIT_OBJECT_0)
            return GetOverlappedResult(g_modem, &operation, count, FALSE) != FALSE;
    }
    CancelIoEx(g_modem, &operation);
    GetOverlappedResult(g_modem, &operation, count, TRUE);
    return false;
}

static bool Send(const BYTE* octets, ULONG count)
{
    while (count > 0 && !g_stop) {
        OVERLAPPED operation = {};
        operation.hEvent = g_written;
        DWORD sent = 0;
        if (!WriteFile(g_modem, octets, count, nullptr, &operation) && GetLastError() != ERROR_IO_PENDING) return false;
        if (!Await(operation, &sent)) return false;
        octets += sent;
        count -= sent;
    }
    return !g_stop;
}

// Sends what the modem has to send. Returns false when the line is to be hung up. What was sent before that stays in
// the client's end for it to read.
static bool SendAll()
{
    for (;;) {
        BYTE octets[1024];
        ULONG count = 0;
        AtStep step = AtStep::Idle;
        {
            Guard guard;
            step = AtTake(octets, sizeof(octets), &count);
        }
        if (!Send(octets, count)) return false;
        if (step == AtStep::Idle) return true;
        if (step == AtStep::Fragment) HostSleep(kFragmentMs);
        if (step == AtStep::HangUp) return false;
    }
}

// Exactly what waits, so that no read has to wait.
static bool ReceiveWaiting()
{
    BYTE octets[1024];
    for (;;) {
        COMSTAT status = {};
        DWORD errors = 0, count = 0;
        if (!ClearCommError(g_modem, &errors, &status)) return false;
        if (status.cbInQue == 0) return true;
        const DWORD waiting = status.cbInQue < sizeof(octets) ? status.cbInQue : sizeof(octets);
        OVERLAPPED operation = {};
        operation.hEvent = g_read;
        if (!ReadFile(g_modem, octets, waiting, nullptr, &operation) && GetLastError() != ERROR_IO_PENDING)
            return false;
        if (!Await(operation, &count) || count == 0) return false;
        Guard guard;
        AtReceive(octets, count);
    }
}

// A modem takes its time: a client that counts milliseconds must not see an answer in the one of its command.
static void TakeTimeForAnswer()
{
    ULONG answer_ms = 0;
    {
        Guard guard;
        if (IsLive()) answer_ms = TheModule().at.answer_ms;
    }
    if (answer_ms > 0) HostSleep(answer_ms);
}

// Sends, until one octet has come and then all that wait behind it. Returns false when the line is to be closed.
static bool Exchange()
{
    BYTE octet = 0;
    OVERLAPPED operation = {};
    operation.hEvent = g_read;
    DWORD count = 0;
    if (!ReadFile(g_modem, &octet, 1, nullptr, &operation) && GetLastError() != ERROR_IO_PENDING) return false;
    const HANDLE events[] = {g_read, g_wake};
    bool goes_on = true;
    do
        goes_on = SendAll();
    while (goes_on && WaitForMultipleObjects(2, events, FALSE, INFINITE) != WAIT_OBJECT_0);
    if (!goes_on) CancelIoEx(g_modem, &operation);
    // No octet: the driver has given the line up.
    if (!GetOverlappedResult(g_modem, &operation, &count, !goes_on) || count == 0 || !goes_on) return false;
    TakeTimeForAnswer();
    {
        Guard guard;
        AtReceive(&octet, 1);
    }
    return ReceiveWaiting();
}

static void CloseLine()
{
    g_open = 0; // first: whoever sees the line go down may ask for a new one at once
    CloseHandle(g_modem);
    g_modem = INVALID_HANDLE_VALUE;
    CloseHandle(g_claim);
    g_claim = nullptr;
}

static void ServeLine(void*)
{
    while (Exchange()) {
    }
    CloseLine();
    Guard guard;
    AtLineLost();
}

// Eight data bits without parity, one stop bit, no flow control, no time-outs. The speed is of no matter to a pair.
static bool Configure()
{
    DCB settings = {};
    settings.DCBlength = sizeof(settings);
    settings.fBinary = TRUE; // there is nothing else, and the two must differ even while nobody uses them
    settings.XonChar = 0x11;
    settings.XoffChar = 0x13;
    COMMTIMEOUTS none = {};
    return BuildCommDCBW(TXT("baud=115200 parity=n data=8 stop=1 xon=off octs=off odsr=off idsr=off dtr=on rts=on"),
                         &settings) &&
           SetCommState(g_modem, &settings) && SetCommTimeouts(g_modem, &none) && PurgeComm(g_modem, PURGE_RXCLEAR);
}

// Makes the wide name PREFIX NAME, where NAME is ASCII.
static void WideName(WCHAR (&out)[64], const char* prefix, const char* name)
{
    Text<64> narrow;
    Writer(narrow).Add(prefix).Add(name);
    Widen(out, sizeof(out) / sizeof(WCHAR), narrow);
}

// Opens the module's end of a pair that nobody holds.
static bool OpenPair(const char* module_end)
{
    WCHAR name[64];
    WideName(name, "Local\\talvek-line-", module_end);
    g_claim = CreateMutexW(nullptr, FALSE, name);
    if (!g_claim) return false;
    if (GetLastError() != ERROR_ALREADY_EXISTS) {
        WideName(name, "\\\\.\\", module_end);
        g_modem =
            CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
        if (g_modem != INVALID_HANDLE_VALUE && Configure()) return true;
        if (g_modem != INVALID_HANDLE_VALUE) CloseHandle(g_modem);
        g_modem = INVALID_HANDLE_VALUE;
    }
    CloseHandle(g_claim);
    g_claim = nullptr;
    return false;
}

// The word of a list up to the next `end`, or to its own end. Moves behind it. False when it does not fit.
static bool TakeWord(const char** list, char end, Text<16>& word)
{
    ULONG length = 0;
    for (; **list && **list != end; ++*list) {
        if (length + 1 < word.Room()) word.octets[length] = **list;
        ++length;
    }
    if (**list) ++*list;
    const bool fits = length > 0 && length < word.Room();
    word.octets[fits ? length : 0] = 0;
    return fits;
}

struct Pair {
    Text<16> module_end, client_end;
};
constexpr ULONG kPairs = 64;

// "COM11=COM21;COM12=COM22". Returns how many pairs there are, 0 when the list is no such list.
static ULONG ParsePairs(const char* list, Pair (&pairs)[kPairs])
{
    ULONG count = 0;
    while (*list && count < kPairs) {
        Pair& pair = pairs[count++];
        if (!TakeWord(&list, '=', pair.module_end) || !TakeWord(&list, ';', pair.client_end)) return 0;
    }
    return *list ? 0 : count;
}

static const char* OpenNextPair()
{
    char list[kLinesRoom];
    Pair pairs[kPairs];
    if (!HostEnvironment("TALVEK_SIM_LINES", list, sizeof(list))) return "not set: there is no AT port";
    const ULONG count = ParsePairs(list, pairs);
    if (count == 0) return "no list of pairs (COM11=COM21;COM12=COM22): there is no AT port";
    for (ULONG tried = 0; tried < count; ++tried) {
        const Pair& pair = pairs[g_next++ % count];
        if (!OpenPair(pair.module_end)) continue;
        g_name = pair.client_end;
        return nullptr;
    }
    return "no pair is free, or none can be opened: there is no AT port";
}

// Opening, hanging up and naming the line, from any thread. The line's own thread never takes it. When a process ends,
// its threads are gone before this library is unloaded: a mutex that one of them held is given up then, a critical
// section would stay taken.
class Locked {
public:
    Locked() { WaitForSingleObject(Mutex(), INFINITE); }
    ~Locked() { ReleaseMutex(Mutex()); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

private:
    static HANDLE Mutex()
    {
        static void* mutex;
        void* const made = InterlockedCompareExchangePointer(&mutex, nullptr, nullptr);
        return made ? made : Keep(&mutex, CreateMutexW(nullptr, FALSE, nullptr));
    }
};

static bool MakeEvents()
{
    if (!g_read) g_read = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!g_written) g_written = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!g_wake) g_wake = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    return g_read && g_written && g_wake;
}

static void JoinThread()
{
    if (!g_thread) return;
    WaitForSingleObject(g_thread, INFINITE);
    CloseHandle(g_thread);
    g_thread = nullptr;
}

bool OpenTerminal()
{
    Locked locked;
    if (g_open) return true;
    JoinThread();
    if (!MakeEvents()) return false;
    if (const char* missing = OpenNextPair()) {
        if (!g_complained) HostComplain("TALVEK_SIM_LINES", missing);
        g_complained = true;
        return false;
    }
    g_complained = false;
    g_stop = 0;
    g_open = 1;
    g_thread = StartHostThread(ServeLine, nullptr);
    if (!g_thread) CloseLine();
    return g_thread != nullptr;
}

void HangUpTerminal()
{
    Locked locked;
    if (!g_thread) return;
    g_stop = 1;
    WakeTerminal();
    JoinThread();
    HostSleep(kHangUpMs);
}

void TerminalName(char* name, ULONG room)
{
    Locked locked;
    Writer writer(name, room);
    if (g_open) writer.Add(g_name);
}

// The port has the name that the pair gives it.
bool LinkTerminal(const char*) { return false; }

void WakeTerminal()
{
    if (const HANDLE wake = g_wake) SetEvent(wake);
}

} // namespace sim
