// The operating mode.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("power.mode", g_module.power.mode),
    NumberField("power.settle-ms", g_module.power.settle_ms),
    NumberField("power.reset-ms", g_module.power.reset_ms),
};
const FieldTable kPowerFields = {kFields, std::size(kFields)};

void ResetPower() { TheModule().power = {0, 50, 3000}; }

constexpr ULONG kModeOnline = 0;
constexpr ULONG kModeReset = 5;

void ScheduleReset()
{
    const PowerState& power = TheModule().power;
    ScheduleModuleEvent(power.settle_ms, "module leaves");
    ScheduleModuleEvent(power.settle_ms + power.reset_ms, "module returns");
    ScheduleModuleEvent(power.settle_ms + power.reset_ms, "emit power 0");
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetPower(ULONG* mode)
{
    Call call(EntryPoint::GetPower);
    if (const ULONG refused = call.Refused()) return refused;
    call.Put(mode, TheModule().power.mode);
    return call.Done();
}

// The event follows after a while.
extern "C" ULONG SetPower(ULONG mode)
{
    Call call(EntryPoint::SetPower, mode);
    if (const ULONG refused = call.Refused()) return refused;
    PowerState& power = TheModule().power;
    power.mode = mode;
    if (mode != kModeOnline) LoseSession(TheModule().session.end_reason);
    Text<32> line;
    Writer(line).Add("emit power ").Unsigned(mode);
    ScheduleModuleEvent(power.settle_ms, line);
    if (mode == kModeReset) ScheduleReset();
    return call.Done();
}
