// Extended device management: it is begun and ended, reports by events, and updates firmware, too.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/inputs.h"
#include "sim/management_session.h"
#include "sim/progress.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("omaex.begun", g_module.extended.begun, 1),
    NumberField("omaex.reports", g_module.extended.reports, 1),
    NumberField("omaex.provisioning", g_module.extended.settings[0], 1),
    NumberField("omaex.prl-update", g_module.extended.settings[1], 1),
    NumberField("omaex.firmware-update", g_module.extended.settings[2], 1),
    NumberField("omaex.client-initiated", g_module.extended.settings[3], 1),
    NumberField("omaex.network-initiated", g_module.extended.settings[4], 1),
    NumberField("omaex.auto-accept", g_module.extended.settings[5], 1),
    NumberField("omaex.alert", g_module.extended.alert, kFirmwareUpdate),
    NumberField("omaex.package-size", g_module.extended.package_size),
    NumberField("omaex.state", g_module.extended.session.state),
    NumberField("omaex.type", g_module.extended.session.type, kFirmwareUpdate),
    NumberField("omaex.failure-reason", g_module.extended.session.failure_reason),
    NumberField("omaex.retry-count", g_module.extended.session.retry_count),
    NumberField("omaex.max-retries", g_module.extended.session.max_retries),
    NumberField("omaex.has-update", g_module.extended.session.has_update, 1),
    NumberField("omaex.pause-seconds", g_module.extended.session.pause_seconds),
    NumberField("omaex.limit-seconds", g_module.extended.session.limit_seconds),
    NumberField("omaex.step-ms", g_module.extended.session.step_ms),
    NumberField("omaex.fail-at", g_module.extended.session.fail_at),
    NumberField("omaex.fail-reason", g_module.extended.session.fail_reason),
    NumberField("omaex.fail-times", g_module.extended.session.fail_times),
};
const FieldTable kExtendedManagementFields = {kFields, std::size(kFields)};

enum Setting { kProvisioning, kPrlUpdate, kFirmware, kClientInitiated, kNetworkInitiated, kAutoAccept, kSettings };

void ResetExtendedManagement()
{
    ExtendedManagementState& extended = TheModule().extended;
    extended = {};
    FreshSession(extended.session);
    for (BYTE& setting : extended.settings)
        setting = 1;
    extended.settings[kAutoAccept] = 0;
    extended.package_size = 0x40000;
}

// A step of a firmware update is an event of its own kind.
static void Tell()
{
    const ExtendedManagementState& extended = TheModule().extended;
    const ManagementSession& session = extended.session;
    if (!extended.reports) return;
    Text<64> line;
    if (session.type == kFirmwareUpdate)
        Writer(line).Add("emit oma-fumo ").Unsigned(session.state);
    else
        Writer(line).Add("emit oma-event ").Unsigned(session.state).Character(' ').Unsigned(session.failure_reason);
    ScheduleModuleEvent(0, line);
}

static void Begin(ULONG type)
{
    ManagementSession& session = TheModule().extended.session;
    BeginSession(session, type);
    Tell();
    PlanStep(Progress::ExtendedManagement, session.step_ms);
}

void StepExtendedManagement()
{
    ExtendedManagementState& extended = TheModule().extended;
    ManagementSession& session = extended.session;
    if (!IsRunning(session)) return;
    const ULONG delay_ms = ProceedSession(session);
    if (session.state == kPrlLoaded) ++TheModule().cdma.prl_version;
    Tell();
    const bool asks = session.state == kPackageFound && !extended.settings[kAutoAccept];
    if (delay_ms != kNoStep && !asks) PlanStep(Progress::ExtendedManagement, delay_ms);
}

void AbandonExtendedManagement() { FailSession(TheModule().extended.session, kCancelled); }

static bool IsAllowed(ULONG type)
{
    const BYTE* settings = TheModule().extended.settings;
    switch (type) {
    case 1:
    case kNetworkPrl:
        return settings[kPrlUpdate] != 0;
    case kFirmwareUpdate:
        return settings[kFirmware] != 0;
    default:
        return settings[kProvisioning] != 0;
    }
}

static void Cancel()
{
    ForgetStep(Progress::ExtendedManagement);
    FailSession(TheModule().extended.session, kCancelled);
    Tell();
}

} // namespace sim

using namespace sim;

extern "C" ULONG ORVOMAEXInitApi()
{
    Call call(EntryPoint::ORVOMAEXInitApi);
    if (const ULONG refused = call.Refused()) return refused;
    if (TheModule().extended.begun) return kNoEffect;
    TheModule().extended.begun = 1;
    return call.Done();
}

// What is under way ends without a word.
extern "C" ULONG ORVOMAEXShutdownApi()
{
    Call call(EntryPoint::ORVOMAEXShutdownApi);
    if (const ULONG refused = call.Refused()) return refused;
    ExtendedManagementState& extended = TheModule().extended;
    if (!extended.begun) return kNotBegun;
    extended.begun = 0;
    extended.reports = 0;
    if (IsRunning(extended.session)) Cancel();
    return call.Done();
}

extern "C" ULONG ORVOMAEXSetEventReport()
{
    Call call(EntryPoint::ORVOMAEXSetEventReport);
    if (const ULONG refused = call.Refused()) return refused;
    if (!TheModule().extended.begun) return kNotBegun;
    TheModule().extended.reports = 1;
    return call.Done();
}

// Of the client's own types and a firmware update.
extern "C" ULONG ORVOMAEXSessionStart(BYTE* type)
{
    Call call(EntryPoint::ORVOMAEXSessionStart, At(type));
    if (const ULONG refused = call.Refused()) return refused;
    if (!type || (*type > 2 && *type != kFirmwareUpdate)) return kInvalidArgument;
    const ExtendedManagementState& extended = TheModule().extended;
    if (!extended.begun) return kNotBegun;
    if (!extended.settings[kClientInitiated] || !IsAllowed(*type)) return kSwitchedOff;
    if (TheModule().power.mode != 0) return kNoNetwork;
    if (IsRunning(extended.session)) return kNoEffect;
    Begin(*type);
    return call.Done();
}

extern "C" ULONG ORVOMAEXSessionCancel()
{
    Call call(EntryPoint::ORVOMAEXSessionCancel);
    if (const ULONG refused = call.Refused()) return refused;
    if (!TheModule().extended.begun) return kNotBegun;
    if (!IsRunning(TheModule().extended.session)) return kNoSession;
    Cancel();
    return call.Done();
}

// Answers a firmware package that was found, or else an alert of the network.
extern "C" ULONG ORVOMAEXSelection(BYTE* selection)
{
    Call call(EntryPoint::ORVOMAEXSelection, At(selection));
    if (const ULONG refused = call.Refused()) return refused;
    if (!selection || *selection > 1) return kInvalidArgument;
    ExtendedManagementState& extended = TheModule().extended;
    if (!extended.begun) return kNotBegun;
    const bool accepts = *selection == 1;
    if (extended.session.state == kPackageFound) {
        if (accepts)
            PlanStep(Progress::ExtendedManagement, extended.session.step_ms);
        else
            Cancel();
        return call.Done();
    }
    if (extended.alert == 0) return kNotFound;
    if (accepts && (!extended.settings[kNetworkInitiated] || !IsAllowed(extended.alert))) return kSwitchedOff;
    if (accepts && IsRunning(extended.session)) return kNoEffect;
    if (accepts) Begin(extended.alert);
    extended.alert = 0;
    return call.Done();
}

extern "C" ULONG ORVOMAEXGetSettings(BYTE* provisioning, BYTE* prl_update, BYTE* firmware_update,
                                     BYTE* client_initiated, BYTE* network_initiated, BYTE* auto_accept)
{
    Call call(EntryPoint::ORVOMAEXGetSettings);
    if (const ULONG refused = call.Refused()) return refused;
    if (!TheModule().extended.begun) return kNotBegun;
    BYTE* const outputs[kSettings] = {provisioning,     prl_update,        firmware_update,
                                      client_initiated, network_initiated, auto_accept};
    for (ULONG i = 0; i < kSettings; ++i)
        call.Put(outputs[i], TheModule().extended.settings[i]);
    return call.Done();
}

// Null leaves a value as it is. Nothing is kept unless all of it can be.
extern "C" ULONG ORVOMAEXSetSettings(BYTE* provisioning, BYTE* prl_update, BYTE* firmware_update,
                                     BYTE* client_initiated, BYTE* network_initiated, BYTE* auto_accept)
{
    Call call(EntryPoint::ORVOMAEXSetSettings, At(provisioning), At(prl_update), At(firmware_update),
              At(client_initiated), At(network_initiated), At(auto_accept));
    if (const ULONG refused = call.Refused()) return refused;
    if (!TheModule().extended.begun) return kNotBegun;
    const BYTE* const inputs[kSettings] = {provisioning,     prl_update,        firmware_update,
                                           client_initiated, network_initiated, auto_accept};
    ExtendedManagementState extended = TheModule().extended;
    for (ULONG i = 0; i < kSettings; ++i) {
        if (!Take(extended.settings[i], inputs[i], BYTE{1})) return kInvalidArgument;
    }
    TheModule().extended = extended;
    return call.Done();
}

extern "C" ULONG ORVOMAEXSessionGetInfo(omaSessionInfo* info)
{
    Call call(EntryPoint::ORVOMAEXSessionGetInfo);
    if (const ULONG refused = call.Refused()) return refused;
    const ExtendedManagementState& extended = TheModule().extended;
    if (!extended.begun) return kNotBegun;
    const ManagementSession& session = extended.session;
    omaSessionInfo record = {};
    record.state = session.state;
    record.type = session.type;
    record.failureReason = session.failure_reason;
    record.retryCount = session.retry_count;
    record.pauseSeconds = PauseLeft(session);
    record.remainingSeconds = LimitLeft(session);
    record.packageSize = session.state >= kPackageFound ? extended.package_size : 0;
    call.PutRecord(info, record);
    return call.Done();
}
