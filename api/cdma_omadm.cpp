// Device management: features, sessions, and the network's requests for one.

#include "state/cdma_omadm.h"
#include "api/OrvError.h"
#include "api/admission.h"
#include "notify/OrvNotify.h"
#include "notify/omadm_alert.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

// Session states of the vendor library: below kWaiting there is none under way.
constexpr ULONG kDone = 0;
constexpr ULONG kFailed = 2;
constexpr ULONG kWaiting = 3;
constexpr ULONG kPrlLoaded = 9;
constexpr ULONG kClientPrl = ORV_OMADM_START_PRL_UPDATE; // a session type of the vendor library

// Whether the two masks switch a feature on (1) or off (0). False when they do neither.
bool ReadSwitch(ULONG feature, ULONG capability_mask, ULONG enable_mask, ULONG* on)
{
    const ULONG capable = capability_mask & feature, enabled = enable_mask & feature;
    *on = enabled == feature ? 1 : 0;
    if (enabled == feature) return capable == feature;
    return enabled == 0 && (capable == 0 || capable == feature);
}

// Remembers the identifier of a session that waits. Returns whether it is another one than before.
bool Remember(WORD* kept, WORD session_id)
{
    if (*kept == session_id) return false;
    *kept = session_id;
    return true;
}

// The identifier of the class that is the larger, of the one kept here and the one that the last alert had.
void BringUpToDate(WORD* kept, ULONG session_class)
{
    const WORD alerted = g_OrvNotify.PendingOmaDm(session_class);
    if (alerted > *kept) *kept = alerted;
}

// Answers the session of one class, if one waits.
ORV_RCODE Answer(WORD* kept, ULONG session_class, ULONG selection, OrvOMADMAlertResponse* response)
{
    if (*kept == 0) return ORV_RCODE_OK;
    if (const ULONG status = Gobi().OMADMSendSelection(selection, *kept)) {
        response->uStatus = ORV_OMADM_RESPONSE_FAILED;
        LOG_C("OMADMSendSelection failed with uStatus = %d", status);
        return ConvertGobiError2OrvRcode(status);
    }
    *kept = 0;
    g_OrvNotify.SetPendingOmaDm(session_class, 0);
    response->uStatus = selection ? ORV_OMADM_RESPONSE_ACCEPTED : ORV_OMADM_RESPONSE_REJECTED;
    return ORV_RCODE_OK;
}

} // namespace

// --- features --------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetOMADMConfig(OrvOMADMConfig* pConfig)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pConfig) return ORV_RCODE_BAD_PARAMETER;
    ULONG provisioning = 0, prl_update = 0;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().OMADMGetFeatureSettings(&provisioning, &prl_update));
    if (result != ORV_RCODE_OK) return result;
    ULONG mask = 0;
    if (provisioning) mask |= ORV_OMADM_FEATURE_DEVICE_CONFIGURATION;
    if (prl_update) mask |= ORV_OMADM_FEATURE_PRL_UPDATE;
    *pConfig = OrvOMADMConfig();
    pConfig->sizeStruct = sizeof *pConfig;
    pConfig->uReserved1 = 1;
    pConfig->bReserved2 = pConfig->bReserved3 = 1;
    pConfig->dwFeatureCapabilityMask = pConfig->dwFeatureEnableMask = mask;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSetOMADMConfig(ULONG dwFeatureCapabilityMask, ULONG dwFeatureEnableMask)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    // Both are read before the first is set.
    ULONG configuration = 0, prl_update = 0;
    const bool configuration_read = ReadSwitch(ORV_OMADM_FEATURE_DEVICE_CONFIGURATION, dwFeatureCapabilityMask,
                                               dwFeatureEnableMask, &configuration);
    const bool prl_update_read =
        ReadSwitch(ORV_OMADM_FEATURE_PRL_UPDATE, dwFeatureCapabilityMask, dwFeatureEnableMask, &prl_update);
    if (!configuration_read) {
        LOG_C("Cannot handle confused DCUpdate setting, dwFeatureCapabilityMask = 0x%x, dwFeatureEnableMask = 0x%x",
              dwFeatureCapabilityMask, dwFeatureEnableMask);
    }
    if (!prl_update_read) {
        LOG_C("Cannot handle confused PRLUpdate setting, dwFeatureCapabilityMask = 0x%x, dwFeatureEnableMask = 0x%x",
              dwFeatureCapabilityMask, dwFeatureEnableMask);
    }
    if (!configuration_read || !prl_update_read) return ORV_RCODE_BAD_PARAMETER;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().OMADMSetProvisioningFeature(configuration));
    if (result != ORV_RCODE_OK) return result;
    return ConvertGobiError2OrvRcode(Gobi().OMADMSetPRLUpdateFeature(prl_update));
}

// --- sessions --------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvStartOMADMSession(ULONG uSessionType)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    const ULONG status = Gobi().OMADMStartSession(uSessionType);
    if (status != 0) LOG_C("OMADMStartSession failed with uStatus = %d", status);
    return ConvertGobiError2OrvRcode(status);
}

ORV_RCODE ORV_CALL OrvCancelOMADMSession(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    const ULONG status = Gobi().OMADMCancelSession();
    if (status != 0) LOG_C("OMADMCancelSession failed, uStatus = %d", status);
    return ConvertGobiError2OrvRcode(status);
}

ORV_RCODE ORV_CALL OrvGetOMADMSessionState(OrvOMADMSessionState* pState)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pState) return ORV_RCODE_BAD_PARAMETER;
    pState->sizeStruct = sizeof *pState; // also when the module fails
    ULONG state = 0, type = 0, failure_reason = 0;
    BYTE retry_count = 0;
    WORD pause_seconds = 0, remaining_seconds = 0;
    const ULONG status =
        Gobi().OMADMGetSessionInfo(&state, &type, &failure_reason, &retry_count, &pause_seconds, &remaining_seconds);
    if (status != 0) {
        LOG_C("OMADMGetSessionInfo failed uStatus = %d", status);
        return ConvertGobiError2OrvRcode(status);
    }
    NKDbgPrintfW(TXT("OMADMGetSessionInfo::SessionState = %d, SessionType = %d\r\n"), state, type);
    OrvOMADMSessionState record = {};
    record.sizeStruct = sizeof record;
    record.bBusy = state >= kWaiting && !(state == kPrlLoaded && type == kClientPrl) ? 1 : 0;
    record.uPauseSeconds = pause_seconds;
    ConvertGobi2OrvSessionType(type, &record.eType, &record.eSource);
    if (state == kFailed && failure_reason > 0) {
        LOG_C("OMADM session error = %d", failure_reason);
        record.uError = ConvertGobi2OrvOMADMSessionState(failure_reason, state);
    }
    record.bIdle = state == kDone ? 1 : 0;
    *pState = record;
    return ORV_RCODE_OK;
}

// --- sessions that the network asks for ------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetOMADMNIAlert(OrvOMADMAlert* pAlert)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pAlert) return ORV_RCODE_BAD_PARAMETER;
    *pAlert = OrvOMADMAlert(); // stays so when none waits
    pAlert->sizeStruct = sizeof *pAlert;
    ULONG type = 0, session_class = 0, initiator = 0;
    WORD session_id = 0;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().OMADMGetPendingNIA(&type, &session_id));
    if (result != ORV_RCODE_OK) return result;
    ConvertGobi2OrvSessionType(type, &session_class, &initiator);
    if (session_class == ORV_OMADM_TYPE_PRL_UPDATE) {
        if (Remember(&g_OMADMPRLsessionID, session_id)) LOG_C("g_OMADMPRLsessionID changed to %d", session_id);
    } else if (session_class == ORV_OMADM_TYPE_DEVICE_CONFIGURATION) {
        if (Remember(&g_OMADMDCsessionID, session_id)) LOG_C("g_OMADMDCsessionID changed to %d", session_id);
    } else {
        LOG_C("Unhandled psAlert->nType = %d", session_class);
    }
    *pAlert = PendingOmadmAlert(session_class, session_id);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSetOMADMNIAlertResponse(ULONG uSelection, OrvOMADMAlertResponse* pResponse)
{
    if (const ORV_RCODE refused = RequireInitializedCdma()) return refused;
    if (!pResponse) return ORV_RCODE_BAD_PARAMETER;
    BringUpToDate(&g_OMADMDCsessionID, ORV_OMADM_TYPE_DEVICE_CONFIGURATION);
    BringUpToDate(&g_OMADMPRLsessionID, ORV_OMADM_TYPE_PRL_UPDATE);
    *pResponse = OrvOMADMAlertResponse();
    pResponse->sizeStruct = sizeof *pResponse;
    pResponse->uStatus = ORV_OMADM_RESPONSE_REJECTED; // stays so when nothing waits
    const ULONG selection = uSelection != 0 ? 1 : 0;
    const ORV_RCODE result = Answer(&g_OMADMPRLsessionID, ORV_OMADM_TYPE_PRL_UPDATE, selection, pResponse);
    if (result != ORV_RCODE_OK) return result;
    return Answer(&g_OMADMDCsessionID, ORV_OMADM_TYPE_DEVICE_CONFIGURATION, selection, pResponse);
}
