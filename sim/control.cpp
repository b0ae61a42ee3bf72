// The verb table, which serves scenario files, tests and the client alike.
#include "sim/control.h"

#include "sim/at_faults.h"
#include "sim/at_modem.h"
#include "sim/at_terminal.h"
#include "sim/calls.h"
#include "sim/clock.h"
#include "sim/command.h"
#include "sim/events.h"
#include "sim/faults.h"
#include "sim/fields.h"
#include "sim/journal.h"
#include "sim/module.h"
#include "sim/on_call.h"
#include "sim/phonebook.h"
#include "sim/progress.h"
#include "sim/session.h"
#include "sim/sms_verb.h"

namespace sim {

constexpr ULONG kProducts[] = {0x5101, 0x5111, 0x5120, 0x5141};

// "cdma", "umts", or one of them with ":PID", the product in hexadecimal.
static void ModelVerb(Command& command)
{
    const char* word = command.Word("model");
    command.End();
    if (command.Failed()) return;
    char kind[8] = {};
    ULONG length = 0;
    while (word[length] && word[length] != ':' && length + 1 < sizeof(kind)) {
        kind[length] = word[length];
        ++length;
    }
    const bool umts = Equal(kind, "umts");
    ULONG product = umts ? 0x5120 : 0x5101;
    bool known = umts || Equal(kind, "cdma");
    if (known && word[length] == ':') {
        char digits[16] = "0x";
        bool negative = false;
        ULONGLONG value = 0;
        known = Copy(digits + 2, sizeof(digits) - 2, word + length + 1) && ParseNumber(digits, &negative, &value);
        bool accepted = false;
        for (const ULONG candidate : kProducts)
            accepted = accepted || candidate == value;
        known = known && accepted;
        product = static_cast<ULONG>(value);
    } else {
        known = known && word[length] == 0;
    }
    if (known)
        ResetModule(umts, product);
    else
        command.Fail().Add("unknown model ").Quoted(word, 64);
}

static void ResetVerb(Command& command)
{
    command.End();
    if (!command.Failed()) ResetModule(TheModule().connection.umts, TheModule().connection.product);
}

static void ModuleVerb(Command& command)
{
    if (command.Take("proceeds")) return ProceedsVerb(command);
    const bool leaves = command.Take("leaves");
    if (!leaves && !command.Take("returns")) {
        const char* word = command.Word("leaves or returns");
        if (!command.Failed()) command.Fail().Add("a module leaves or returns, not ").Quoted(word, 64);
    }
    command.End();
    if (command.Failed()) return;
    if (leaves)
        ModuleLeaves();
    else
        ModuleReturns();
}

static void JournalVerb(Command& command)
{
    const bool clear = command.Take("clear");
    command.End();
    if (command.Failed()) return;
    if (clear)
        JournalClear();
    else
        JournalRead(command.Reply());
}

// Opens the line where it is needed, so that its name can be given.
static void SerialVerb(Command& command)
{
    const bool hang_up = command.Take("hangup");
    const bool name = !hang_up && command.Take("name");
    if (!hang_up && !name && !command.Take("restore")) {
        const char* word = command.Word("name, hangup or restore");
        if (!command.Failed()) command.Fail().Add("unknown verb \"serial ").Add(word).Add("\"");
    }
    command.End();
    if (command.Failed()) return;
    if (hang_up) {
        HangUpTerminal();
        return;
    }
    if (!OpenTerminal()) {
        command.Fail().Add("the host gives no line for the AT port, or its link cannot be made");
        return;
    }
    char text[64];
    TerminalName(text, sizeof(text));
    command.Reply().Add(text);
}

static void HelpVerb(Command& command);

struct Verb {
    const char* name;
    const char* usage;
    bool locked; // runs under the sim lock: it calls no client and waits for no thread
    void (*run)(Command& command);
};

constexpr Verb kVerbs[] = {
    // clang-format off
    {"model",      "cdma|umts[:PID]",                  true,  ModelVerb},
    {"reset",      "",                                 true,  ResetVerb},
    {"module",     "leaves|returns|proceeds ...",      true,  ModuleVerb},
    {"set",        "FIELD VALUE...",                   true,  SetField},
    {"get",        "FIELD",                            true,  GetField},
    {"fields",     "",                                 true,  ListFields},
    {"emit",       "EVENT ARGUMENT...",                false, EmitVerb},
    {"events",     "",                                 true,  EventsVerb},
    {"registered", "",                                 true,  RegisteredVerb},
    {"threads",    "on|off",                           true,  ThreadsVerb},
    {"settle",     "MS",                               false, SettleVerb},
    {"clock",      "virtual|live",                     true,  ClockVerb},
    {"advance",    "MS",                               false, AdvanceVerb},
    {"after",      "MS COMMAND...",                    true,  AfterVerb},
    {"queue",      "",                                 true,  QueueVerb},
    {"fail",       "ENTRY STATUS [from N] [times M]",  true,  FailVerb},
    {"hostile",    "ENTRY scribble|count N",           true,  HostileVerb},
    {"on",         "ENTRY COMMAND...",                 true,  OnVerb},
    {"clear",      "ENTRY|all",                        true,  ClearVerb},
    {"journal",    "[clear]",                          true,  JournalVerb},
    {"call",       "incoming|proceeds|ends|list ARGUMENT...", true, CallVerb},
    {"session",    "ends|carries ARGUMENT...",         true,  SessionVerb},
    {"phonebook",  "write|delete|list TYPE ARGUMENT...", true, PhonebookVerb},
    {"at",         "VERB ARGUMENT...",                 true,  AtVerb},
    {"sms",        "add|arrives|tag|list ARGUMENT...", true,  SmsVerb},
    {"serial",     "name|hangup|restore",              false, SerialVerb},
    {"help",       "",                                 true,  HelpVerb},
    // clang-format on
};

static void HelpVerb(Command& command)
{
    command.End();
    if (command.Failed()) return;
    for (const Verb& verb : kVerbs) {
        if (command.Reply().Length() > 0) command.Reply().Character('\n');
        command.Reply().Add(verb.name);
        if (*verb.usage) command.Reply().Character(' ').Add(verb.usage);
    }
}

static const Verb* FindVerb(const char* name)
{
    for (const Verb& verb : kVerbs) {
        if (Equal(verb.name, name)) return &verb;
    }
    return nullptr;
}

bool KnownVerb(const char* word) { return FindVerb(word) != nullptr; }

int RunLine(const char* line, Writer& reply)
{
    Command command(line, reply);
    if (!command.More()) return command.Failed() ? 1 : 0; // an empty line
    const char* name = command.Word("verb");
    const Verb* verb = FindVerb(name);
    if (!verb) {
        command.Fail().Add("unknown verb ").Quoted(name, 64);
    } else if (verb->locked) {
        Guard guard;
        verb->run(command);
    } else {
        verb->run(command);
    }
    return command.Failed() ? 1 : 0;
}

int RunScript(const char* text, Writer& reply)
{
    ULONG number = 0;
    while (*text) {
        ++number;
        char line[kMaxLine];
        ULONG length = 0;
        while (*text && *text != '\n') {
            if (length + 1 < sizeof(line)) line[length] = *text;
            ++length;
            ++text;
        }
        if (*text == '\n') ++text;
        const bool fits = length < sizeof(line);
        line[fits ? length : 0] = 0;
        char answer[256];
        Writer writer(answer, sizeof(answer));
        if (fits && RunLine(line, writer) == 0) continue;
        reply.Clear();
        reply.Add("line ").Unsigned(number).Add(": ").Add(fits ? answer : "the line is too long");
        return 1;
    }
    reply.Clear();
    return 0;
}

} // namespace sim

int TalvekSimCommand(const char* line, char* reply, ULONG size)
{
    sim::Writer writer(reply, size);
    if (line) return sim::RunLine(line, writer);
    writer.Add("no line");
    return 1;
}

int TalvekSimScript(const char* text, char* reply, ULONG size)
{
    sim::Writer writer(reply, size);
    if (text) return sim::RunScript(text, writer);
    writer.Add("no text");
    return 1;
}
