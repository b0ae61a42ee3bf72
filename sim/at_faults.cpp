#include "sim/at_faults.h"

#include <string.h>

#include "sim/at_modem.h"
#include "sim/at_terminal.h"
#include "sim/module.h"

namespace sim {

struct CannedReply {
    bool used;
    Text<256> command;
    ULONG length;
    char reply[4096];
};

static AtFaults g_faults;
static CannedReply g_canned[32];
static char g_log[8192]; // each line ends with a line feed; what does not fit is not kept
static ULONG g_log_used;
static ULONG g_log_lost;

AtFaults& AtFaultsInForce() { return g_faults; }

static void ClearLog()
{
    g_log_used = 0;
    g_log_lost = 0;
}

void ClearAtFaults()
{
    g_faults = {};
    for (CannedReply& canned : g_canned)
        canned.used = false;
    ClearLog();
}

void AtLogCommand(const char* line)
{
    const ULONG length = Length(line);
    if (g_log_used + length + 1 > sizeof(g_log)) {
        ++g_log_lost;
        return;
    }
    memcpy(g_log + g_log_used, line, length);
    g_log_used += length;
    g_log[g_log_used++] = '\n';
}

static void ReadLog(Writer& reply)
{
    for (ULONG i = 0; i + 1 < g_log_used; ++i)
        reply.Character(g_log[i]);
    if (g_log_lost > 0) reply.Add("\n# ").Unsigned(g_log_lost).Add(" later lines not kept");
}

static CannedReply* FindCanned(const char* line)
{
    for (CannedReply& canned : g_canned) {
        if (canned.used && EqualLetters(canned.command, line)) return &canned;
    }
    return nullptr;
}

const char* AtCannedReply(const char* line, ULONG* length)
{
    const CannedReply* canned = FindCanned(line);
    if (!canned) return nullptr;
    *length = canned->length;
    return canned->reply;
}

// --- the verbs
// --------------------------------------------------------------------------------------------------------

static void EchoVerb(Command& command)
{
    const bool on = command.Switch("echo");
    command.End();
    if (!command.Failed()) SetEcho(on);
}

static void SilenceVerb(Command& command)
{
    const bool on = command.Switch("silence");
    command.End();
    if (!command.Failed()) g_faults.silence = on;
}

static void FragmentVerb(Command& command)
{
    const ULONG octets = static_cast<ULONG>(command.Unsigned("octets", 4096));
    command.End();
    if (!command.Failed()) g_faults.fragment = octets;
}

static void InsertVerb(Command& command)
{
    const ULONG offset = static_cast<ULONG>(command.Unsigned("offset", 0xFFFF));
    const char* text = command.Word("text");
    const ULONG length = command.WordLength();
    command.End();
    if (command.Failed()) return;
    if (length > sizeof(g_faults.inserted.octets)) {
        command.Fail().Add("at most ").Unsigned(sizeof(g_faults.inserted.octets)).Add(" octets can be inserted");
        return;
    }
    g_faults.insert_armed = true;
    g_faults.insert_offset = offset;
    g_faults.inserted_length = length;
    memcpy(g_faults.inserted.octets, text, length);
}

static void ReplyVerb(Command& command)
{
    const char* line = command.Word("command");
    const char* reply = command.Word("reply");
    const ULONG length = command.WordLength();
    command.End();
    if (command.Failed()) return;
    CannedReply* canned = FindCanned(line);
    for (CannedReply& candidate : g_canned) {
        if (!canned && !candidate.used) canned = &candidate;
    }
    if (!canned) {
        command.Fail().Add("too many canned replies");
    } else if (length > sizeof(canned->reply)) {
        command.Fail().Add("a reply has at most ").Unsigned(sizeof(canned->reply)).Add(" octets");
    } else if (!Copy(canned->command, line)) {
        command.Fail().Add("a command has at most ").Unsigned(canned->command.Room() - 1).Add(" octets");
    } else {
        canned->used = true;
        canned->length = length;
        memcpy(canned->reply, reply, length);
    }
}

static void HangUpVerb(Command& command)
{
    AtHangUp when = AtHangUp::None;
    if (command.Take("before"))
        when = AtHangUp::Before;
    else if (command.Take("during"))
        when = AtHangUp::During;
    else if (command.Take("after"))
        when = AtHangUp::After;
    const char* word = when == AtHangUp::None ? command.Word("time") : "";
    if (when == AtHangUp::None && !command.Failed()) command.Fail().Add("unknown time ").Quoted(word, 64);
    command.End();
    if (!command.Failed()) g_faults.hang_up = when;
}

static void UnsolicitedVerb(Command& command)
{
    const char* text = command.Word("text");
    const ULONG length = command.WordLength();
    command.End();
    if (command.Failed()) return;
    AtSendUnasked(text, length);
    WakeTerminal();
}

static void LogVerb(Command& command)
{
    const bool clear = command.Take("clear");
    command.End();
    if (command.Failed()) return;
    if (clear)
        ClearLog();
    else
        ReadLog(command.Reply());
}

static void ClearVerbOfAt(Command& command)
{
    command.End();
    if (!command.Failed()) ClearAtFaults();
}

struct AtVerbRow {
    const char* name;
    void (*run)(Command& command);
};
constexpr AtVerbRow kAtVerbs[] = {
    {"echo", EchoVerb},       {"silence", SilenceVerb}, {"fragment", FragmentVerb},       {"insert", InsertVerb},
    {"reply", ReplyVerb},     {"hangup", HangUpVerb},   {"unsolicited", UnsolicitedVerb}, {"log", LogVerb},
    {"clear", ClearVerbOfAt},
};

void AtVerb(Command& command)
{
    const char* name = command.Word("verb");
    if (command.Failed()) return;
    for (const AtVerbRow& row : kAtVerbs) {
        if (!Equal(row.name, name)) continue;
        row.run(command);
        return;
    }
    command.Fail().Add("unknown verb \"at ").Add(name).Add("\"");
}

} // namespace sim
