#include "sim/progress.h"

#include "sim/clock.h"

namespace sim {

struct Service {
    const char* name;
    void (*step)();
    void (*abandon)();
};

constexpr ULONG kServices = static_cast<ULONG>(Progress::Count);
constexpr Service kService[kServices] = {
    {"activation", StepActivation, AbandonActivation},
    {"registration", StepRegistration, AbandonRegistration},
    {"omadm", StepManagement, AbandonManagement},
    {"omaex", StepExtendedManagement, AbandonExtendedManagement},
};

struct Plan {
    ULONG number; // of the step that was planned last
    bool valid;
};
static Plan g_plans[kServices];

void ResetProgress()
{
    for (Plan& plan : g_plans)
        plan = {};
}

void PlanStep(Progress what, ULONG delay_ms)
{
    const ULONG index = static_cast<ULONG>(what);
    Plan& plan = g_plans[index];
    plan.valid = true;
    ++plan.number;
    Text<48> line;
    Writer(line).Add("module proceeds ").Add(kService[index].name).Character(' ').Unsigned(plan.number);
    ScheduleModuleEvent(delay_ms, line);
}

void ForgetStep(Progress what) { g_plans[static_cast<ULONG>(what)].valid = false; }

void AbandonProgress()
{
    for (ULONG i = 0; i < kServices; ++i) {
        if (!g_plans[i].valid) continue;
        g_plans[i].valid = false;
        kService[i].abandon();
    }
}

void ProceedsVerb(Command& command)
{
    const char* name = command.Word("service");
    ULONG index = 0;
    while (index < kServices && !Equal(kService[index].name, name))
        ++index;
    if (index == kServices && !command.Failed()) command.Fail().Add("unknown service ").Quoted(name, 64);
    const ULONGLONG number = command.Unsigned("step", 0xFFFFFFFF);
    command.End();
    if (command.Failed() || !g_plans[index].valid || g_plans[index].number != number) return;
    g_plans[index].valid = false;
    kService[index].step();
}

} // namespace sim
