#include "sim/call.h"

#include "sim/journal.h"
#include "sim/on_call.h"

namespace sim {

// What an unterminated text is filled with: a text that is taken for a format shows at once.
static char Scribble(ULONG position) { return "%s%n"[position % 4]; }

void Call::Begin(const char* line)
{
    JournalLine(line);
    m_hostile = HostileRuleOf(m_entry);
    m_fault = FaultOf(m_entry);
    Text<kMaxKeptLine> later;
    if (!TakeOnCall(m_entry, later)) return;
    m_guard.Leave();
    RunOnCall(m_entry, later);
    m_guard.Enter();
}

ULONG Call::Refused() const
{
    if (m_fault != 0) return m_fault;
    return TheModule().connection.present ? kSuccess : kNoDevice;
}

void Call::PutLong(void* out, ULONGLONG value)
{
    if (!out) return Fail(kInvalidArgument);
    if (Scribbles()) value = ~ULONGLONG{0};
    memcpy(out, &value, sizeof(value));
}

void Call::PutText(char* out, ULONG room, const char* text)
{
    if (!out) return Fail(kInvalidArgument);
    if (Scribbles()) {
        for (ULONG i = 0; i < room; ++i)
            out[i] = Scribble(i);
        return;
    }
    for (ULONG i = 0; i < room; ++i) {
        out[i] = text[i];
        if (text[i] == 0) return;
    }
}

void Call::PutWideText(WCHAR* out, ULONG room, const char* text)
{
    if (!out) return Fail(kInvalidArgument);
    if (Scribbles()) {
        for (ULONG i = 0; i < room; ++i)
            out[i] = static_cast<WCHAR>(Scribble(i));
        return;
    }
    Widen(out, room, text);
}

void Call::PutCountedText(WORD* length, BYTE* out, const char* text)
{
    if (!length || !out) return Fail(kInvalidArgument);
    const ULONG room = *length;
    const ULONG available = Length(text);
    if (Scribbles()) {
        for (ULONG i = 0; i < room; ++i)
            out[i] = static_cast<BYTE>(Scribble(i));
    } else {
        memcpy(out, text, available < room ? available : room);
    }
    PutCount(length, available);
}

} // namespace sim
