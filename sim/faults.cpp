#include "sim/faults.h"

#include <string.h>

#include "sim/on_call.h"

namespace sim {

struct FaultRule {
    ULONG status; // 0: no rule
    ULONG from;   // the first call that fails, counted from 1
    ULONG times;  // how many fail; 0: all from then on
    ULONG calls;  // since the rule was made
    HostileRule hostile;
};

static FaultRule g_rules[kEntryPoints];

static FaultRule& RuleOf(EntryPoint entry) { return g_rules[static_cast<ULONG>(entry)]; }

ULONG FaultOf(EntryPoint entry)
{
    FaultRule& rule = RuleOf(entry);
    if (rule.status == 0) return 0;
    ++rule.calls;
    if (rule.calls < rule.from) return 0;
    if (rule.times > 0 && rule.calls - rule.from >= rule.times) return 0;
    return rule.status;
}

HostileRule HostileRuleOf(EntryPoint entry) { return RuleOf(entry).hostile; }

void ClearFaults()
{
    memset(g_rules, 0, sizeof(g_rules));
    ClearAllOnCall();
}

static bool EntryPointWord(Command& command, EntryPoint* entry)
{
    const char* name = command.Word("entry point");
    if (command.Failed()) return false;
    if (FindEntryPoint(name, entry)) return true;
    command.Fail().Add("unknown entry point ").Quoted(name, 64);
    return false;
}

void FailVerb(Command& command)
{
    EntryPoint entry{};
    if (!EntryPointWord(command, &entry)) return;
    FaultRule rule = {};
    rule.status = static_cast<ULONG>(command.Signed("status", 1, 0xFFFFFFFF));
    rule.from = command.Take("from") ? static_cast<ULONG>(command.Signed("from", 1, 0xFFFFFFFF)) : 1;
    rule.times = command.Take("times") ? static_cast<ULONG>(command.Signed("times", 1, 0xFFFFFFFF)) : 0;
    command.End();
    if (command.Failed()) return;
    rule.hostile = RuleOf(entry).hostile;
    RuleOf(entry) = rule;
}

void HostileVerb(Command& command)
{
    EntryPoint entry{};
    if (!EntryPointWord(command, &entry)) return;
    HostileRule rule = {};
    if (command.Take("scribble")) {
        rule.kind = Hostility::Scribble;
    } else if (command.Take("count")) {
        rule.kind = Hostility::Count;
        rule.count = static_cast<ULONG>(command.Unsigned("count", 0xFFFFFFFF));
    } else {
        const char* kind = command.Word("kind");
        if (!command.Failed()) command.Fail().Add("unknown hostility ").Quoted(kind, 64);
    }
    command.End();
    if (!command.Failed()) RuleOf(entry).hostile = rule;
}

void ClearVerb(Command& command)
{
    if (command.Take("all")) {
        command.End();
        if (!command.Failed()) ClearFaults();
        return;
    }
    EntryPoint entry{};
    if (!EntryPointWord(command, &entry)) return;
    command.End();
    if (command.Failed()) return;
    RuleOf(entry) = {};
    ClearOnCall(entry);
}

} // namespace sim
