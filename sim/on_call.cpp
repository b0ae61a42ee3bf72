#include "sim/on_call.h"

#include "sim/host.h"
#include "sim/module.h"

namespace sim {

struct OnCall {
    bool used;
    bool running;
    EntryPoint entry;
    Text<kMaxKeptLine> line;
};
static OnCall g_on_call[16];

static OnCall* Find(EntryPoint entry)
{
    for (OnCall& rule : g_on_call) {
        if (rule.used && rule.entry == entry) return &rule;
    }
    return nullptr;
}

bool TakeOnCall(EntryPoint entry, Text<kMaxKeptLine>& line)
{
    OnCall* rule = Find(entry);
    if (!rule || rule->running) return false;
    rule->running = true;
    line = rule->line;
    return true;
}

void RunOnCall(EntryPoint entry, const char* line)
{
    char text[256];
    Writer reply(text, sizeof(text));
    if (RunLine(line, reply) != 0) HostComplain(line, text);
    Guard guard;
    if (OnCall* rule = Find(entry)) rule->running = false;
}

void ClearOnCall(EntryPoint entry)
{
    if (OnCall* rule = Find(entry)) rule->used = false;
}

void ClearAllOnCall()
{
    for (OnCall& rule : g_on_call)
        rule.used = false;
}

void OnVerb(Command& command)
{
    const char* name = command.Word("entry point");
    EntryPoint entry{};
    if (!command.Failed() && !FindEntryPoint(name, &entry)) {
        command.Fail().Add("unknown entry point ").Quoted(name, 64);
    }
    const char* line = command.LaterLine();
    if (command.Failed()) return;
    OnCall* rule = Find(entry);
    for (OnCall& candidate : g_on_call) {
        if (!rule && !candidate.used) rule = &candidate;
    }
    if (!rule) {
        command.Fail().Add("too many lines wait for a call");
        return;
    }
    rule->used = true;
    rule->running = false;
    rule->entry = entry;
    Copy(rule->line, line);
}

} // namespace sim
