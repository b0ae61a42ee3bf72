#include "sim/clock.h"

#include "platform/shared.h"
#include "sim/host.h"
#include "sim/module.h"
#include "sim/reset.h"

namespace sim {

struct QueuedLine {
    bool used;
    bool by_module;
    ULONGLONG due_ms;
    ULONGLONG sequence;
    Text<kMaxKeptLine> line;
};

constexpr ULONG kQueueRoom = 64;
constexpr ULONGLONG kNever = ~ULONGLONG{0};

static QueuedLine g_queue[kQueueRoom];
static ULONGLONG g_sequence;
static bool g_virtual;
static ULONGLONG g_virtual_ms;
static ULONGLONG g_live_start_ms; // of the host's clock, when the sim clock read 0
static bool g_live_thread;
static Shared<ULONG> g_closing;

ULONGLONG Now() { return g_virtual ? g_virtual_ms : HostMilliseconds() - g_live_start_ms; }

bool IsLive() { return !g_virtual; }

void ClearQueue()
{
    for (QueuedLine& entry : g_queue)
        entry.used = false;
    g_virtual_ms = 0;
    g_live_start_ms = HostMilliseconds();
}

void DropModuleEvents()
{
    for (QueuedLine& entry : g_queue)
        entry.used = entry.used && !entry.by_module;
}

static bool RunsBefore(const QueuedLine& a, const QueuedLine& b)
{
    return a.due_ms != b.due_ms ? a.due_ms < b.due_ms : a.sequence < b.sequence;
}

// The next line to run, or null when none is queued. `after`: only among those that run after that one.
static QueuedLine* Earliest(const QueuedLine* after = nullptr)
{
    QueuedLine* earliest = nullptr;
    for (QueuedLine& entry : g_queue) {
        if (!entry.used || (after && !RunsBefore(*after, entry))) continue;
        if (!earliest || RunsBefore(entry, *earliest)) earliest = &entry;
    }
    return earliest;
}

static ULONGLONG NextDue()
{
    const QueuedLine* earliest = Earliest();
    const ULONGLONG line_ms = earliest ? earliest->due_ms : kNever;
    const ULONGLONG report_ms = NextReport() ? NextReport() : kNever;
    return line_ms < report_ms ? line_ms : report_ms;
}

// Takes what is next if it is due by `until_ms`. Moves the virtual clock there.
static bool TakeDue(ULONGLONG until_ms, Writer& line)
{
    const ULONGLONG due_ms = NextDue();
    if (due_ms > until_ms) return false;
    if (g_virtual && due_ms > g_virtual_ms) g_virtual_ms = due_ms;
    QueuedLine* earliest = Earliest();
    if (earliest && earliest->due_ms == due_ms) {
        line.Add(earliest->line);
        earliest->used = false;
    } else {
        StepReport();
        line.Add("emit bytes");
    }
    return true;
}

static bool Queue(ULONG delay_ms, const char* line, bool by_module)
{
    for (QueuedLine& entry : g_queue) {
        if (entry.used) continue;
        if (!Copy(entry.line, line)) return false;
        entry.used = true;
        entry.by_module = by_module;
        entry.due_ms = Now() + delay_ms;
        entry.sequence = g_sequence++;
        WakeClock();
        return true;
    }
    return false;
}

void ScheduleModuleEvent(ULONG delay_ms, const char* line) { Queue(delay_ms, line, true); }

// Runs what is due until nothing is left to come or the clock is no longer the live one.
static void RunLive(void*)
{
    while (!g_closing) {
        Text<kMaxKeptLine> line;
        Writer writer(line);
        ULONGLONG wait_ms = 0;
        {
            Guard guard;
            const ULONGLONG due_ms = NextDue();
            if (g_virtual || due_ms == kNever) {
                g_live_thread = false;
                return;
            }
            const ULONGLONG now_ms = Now();
            if (!TakeDue(now_ms, writer)) wait_ms = due_ms - now_ms;
        }
        if (wait_ms > 0) {
            HostPause(wait_ms < 1000 ? static_cast<ULONG>(wait_ms) : 1000);
            continue;
        }
        char text[256];
        Writer reply(text, sizeof(text));
        if (RunLine(line, reply) != 0) HostComplain(line, text);
    }
}

void WakeClock()
{
    if (g_virtual || g_closing || NextDue() == kNever) return;
    if (g_live_thread)
        HostWake();
    else
        g_live_thread = HostStartThread(RunLive, nullptr);
}

void WaitLive(ULONG duration_ms)
{
    constexpr ULONG kStep_ms = 10;
    const ULONGLONG until_ms = HostMilliseconds() + duration_ms;
    while (HostMilliseconds() < until_ms) {
        {
            Guard guard;
            const ConnectionState& connection = TheModule().connection;
            if (g_virtual || g_closing || !connection.connected || !connection.present) return;
        }
        HostSleep(kStep_ms);
    }
}

void CloseClock()
{
    g_closing = 1;
    HostWake();
}

void ClockVerb(Command& command)
{
    const bool is_virtual = command.Take("virtual");
    if (!is_virtual && !command.Take("live")) {
        const char* kind = command.Word("kind");
        if (!command.Failed()) command.Fail().Add("unknown clock ").Quoted(kind, 64);
    }
    command.End();
    if (command.Failed() || is_virtual == g_virtual) return;
    if (is_virtual)
        g_virtual_ms = Now();
    else
        g_live_start_ms = HostMilliseconds() - g_virtual_ms; // wraps together with the difference taken by Now()
    g_virtual = is_virtual;
    WakeClock();
    if (g_live_thread) HostWake();
}

void AfterVerb(Command& command)
{
    const ULONG delay_ms = static_cast<ULONG>(command.Unsigned("milliseconds", 0xFFFFFFFF));
    const char* line = command.LaterLine();
    if (!command.Failed() && !Queue(delay_ms, line, false)) command.Fail().Add("the queue is full");
}

// What is to come, in order: "DUE LINE" each.
void QueueVerb(Command& command)
{
    command.End();
    if (command.Failed()) return;
    for (const QueuedLine* entry = Earliest(); entry; entry = Earliest(entry)) {
        if (command.Reply().Length() > 0) command.Reply().Character('\n');
        command.Reply().Unsigned(entry->due_ms).Character(' ').Add(entry->line);
    }
}

void AdvanceVerb(Command& command)
{
    const ULONG step_ms = static_cast<ULONG>(command.Unsigned("milliseconds", 0xFFFFFFFF));
    command.End();
    if (command.Failed()) return;
    ULONGLONG until_ms = 0;
    {
        Guard guard;
        if (!g_virtual) {
            command.Fail().Add("the clock is live");
            return;
        }
        until_ms = g_virtual_ms + step_ms;
    }
    for (;;) {
        Text<kMaxKeptLine> line;
        Writer writer(line);
        {
            Guard guard;
            if (!TakeDue(until_ms, writer)) {
                if (g_virtual_ms < until_ms) g_virtual_ms = until_ms;
                return;
            }
        }
        char text[256];
        Writer reply(text, sizeof(text));
        if (RunLine(line, reply) == 0) continue;
        command.Fail().Quoted(line, 128).Add(": ").Add(text);
        return;
    }
}

} // namespace sim
