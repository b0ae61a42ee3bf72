// Device management: sessions that the client or the network begins.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/management_session.h"
#include "sim/progress.h"
#include "sim/reset.h"
#include "sim/settings.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("omadm.state", g_module.management.session.state),
    NumberField("omadm.type", g_module.management.session.type, kNetworkConfiguration),
    NumberField("omadm.failure-reason", g_module.management.session.failure_reason),
    NumberField("omadm.retry-count", g_module.management.session.retry_count),
    NumberField("omadm.max-retries", g_module.management.session.max_retries),
    NumberField("omadm.has-update", g_module.management.session.has_update, 1),
    NumberField("omadm.pause-seconds", g_module.management.session.pause_seconds),
    NumberField("omadm.limit-seconds", g_module.management.session.limit_seconds),
    NumberField("omadm.step-ms", g_module.management.session.step_ms),
    NumberField("omadm.fail-at", g_module.management.session.fail_at),
    NumberField("omadm.fail-reason", g_module.management.session.fail_reason),
    NumberField("omadm.fail-times", g_module.management.session.fail_times),
    NumberField("omadm.provisioning", g_module.management.provisioning, 1),
    NumberField("omadm.prl-update", g_module.management.prl_update, 1),
    NumberField("omadm.pending-prl", g_module.management.pending_prl),
    NumberField("omadm.pending-configuration", g_module.management.pending_configuration),
};
const FieldTable kManagementFields = {kFields, std::size(kFields)};

enum ClientType : ULONG { kConfiguration = 0, kPrl = 1, kActivation = 2 };

void ResetManagement()
{
    ManagementState& management = TheModule().management;
    management = {};
    FreshSession(management.session);
    management.provisioning = 1;
    management.prl_update = 1;
    management.next_type = kNoSessionType;
}

static void Tell()
{
    const ManagementSession& session = TheModule().management.session;
    Text<64> line;
    Writer(line).Add("emit omadm-state ").Unsigned(session.state).Character(' ').Unsigned(session.failure_reason);
    ScheduleModuleEvent(0, line);
}

static void Begin(ULONG type)
{
    ManagementSession& session = TheModule().management.session;
    BeginSession(session, type);
    Tell();
    PlanStep(Progress::Management, session.step_ms);
}

// The session that the network asked for meanwhile.
static void BeginNext()
{
    ManagementState& management = TheModule().management;
    const ULONG type = management.next_type;
    management.next_type = kNoSessionType;
    if (type != kNoSessionType) Begin(type);
}

void StepManagement()
{
    ManagementSession& session = TheModule().management.session;
    if (!IsRunning(session)) return;
    const ULONG delay_ms = ProceedSession(session);
    if (session.state == kPrlLoaded) ++TheModule().cdma.prl_version;
    Tell();
    if (delay_ms != kNoStep)
        PlanStep(Progress::Management, delay_ms);
    else
        BeginNext();
}

void AbandonManagement()
{
    FailSession(TheModule().management.session, kCancelled);
    TheModule().management.next_type = kNoSessionType;
}

} // namespace sim

using namespace sim;

extern "C" ULONG OMADMGetFeatureSettings(ULONG* provisioning, ULONG* prl_update)
{
    return Give(EntryPoint::OMADMGetFeatureSettings, Given{provisioning, TheModule().management.provisioning},
                Given{prl_update, TheModule().management.prl_update});
}

extern "C" ULONG OMADMSetProvisioningFeature(ULONG enabled)
{
    return Keep(EntryPoint::OMADMSetProvisioningFeature, Kept<ULONG>{TheModule().management.provisioning, enabled, 1});
}

extern "C" ULONG OMADMSetPRLUpdateFeature(ULONG enabled)
{
    return Keep(EntryPoint::OMADMSetPRLUpdateFeature, Kept<ULONG>{TheModule().management.prl_update, enabled, 1});
}

extern "C" ULONG OMADMGetSessionInfo(ULONG* state, ULONG* type, ULONG* failure_reason, BYTE* retry_count,
                                     WORD* pause_seconds, WORD* remaining_seconds)
{
    Call call(EntryPoint::OMADMGetSessionInfo);
    if (const ULONG refused = call.Refused()) return refused;
    const ManagementSession& session = TheModule().management.session;
    call.Put(state, session.state);
    call.Put(type, session.type);
    call.Put(failure_reason, session.failure_reason);
    call.Put(retry_count, session.retry_count);
    call.Put(pause_seconds, session.pause_seconds);
    call.Put(remaining_seconds, static_cast<WORD>(PauseLeft(session)));
    return call.Done();
}

// The network's types, and the module's own, cannot be asked for.
extern "C" ULONG OMADMStartSession(ULONG type)
{
    Call call(EntryPoint::OMADMStartSession, type);
    if (const ULONG refused = call.Refused()) return refused;
    if (type > kActivation) return kInvalidArgument;
    const ManagementState& management = TheModule().management;
    if ((type == kConfiguration && !management.provisioning) || (type == kPrl && !management.prl_update)) {
        return kSwitchedOff;
    }
    if (TheModule().power.mode != 0) return kNoNetwork;
    if (IsRunning(management.session)) return kNoEffect;
    Begin(type);
    return call.Done();
}

extern "C" ULONG OMADMCancelSession()
{
    Call call(EntryPoint::OMADMCancelSession);
    if (const ULONG refused = call.Refused()) return refused;
    ManagementSession& session = TheModule().management.session;
    if (!IsRunning(session)) return kNoSession;
    ForgetStep(Progress::Management);
    FailSession(session, kCancelled);
    Tell();
    BeginNext();
    return call.Done();
}

// Of two alerts, the roaming list's before the configuration's.
extern "C" ULONG OMADMGetPendingNIA(ULONG* type, WORD* session_id)
{
    Call call(EntryPoint::OMADMGetPendingNIA);
    if (const ULONG refused = call.Refused()) return refused;
    const ManagementState& management = TheModule().management;
    const bool prl = management.pending_prl != 0;
    call.Put(type, prl ? ULONG{kNetworkPrl} : ULONG{kNetworkConfiguration});
    call.Put(session_id, prl ? management.pending_prl : management.pending_configuration);
    if (const ULONG status = call.Done()) return status;
    return prl || management.pending_configuration != 0 ? kSuccess : kNotFound;
}

// An accepted session begins at once, or when the one under way has ended.
extern "C" ULONG OMADMSendSelection(ULONG selection, WORD session_id)
{
    Call call(EntryPoint::OMADMSendSelection, selection, session_id);
    if (const ULONG refused = call.Refused()) return refused;
    if (selection > 1 || session_id == 0) return kInvalidArgument;
    ManagementState& management = TheModule().management;
    const bool prl = management.pending_prl == session_id;
    if (!prl && management.pending_configuration != session_id) return kNotFound;
    const ULONG type = prl ? ULONG{kNetworkPrl} : ULONG{kNetworkConfiguration};
    const bool waits = selection == 1 && IsRunning(management.session);
    if (waits && management.next_type != kNoSessionType) return kNoRoom;
    (prl ? management.pending_prl : management.pending_configuration) = 0;
    if (waits)
        management.next_type = type;
    else if (selection == 1)
        Begin(type);
    return call.Done();
}
