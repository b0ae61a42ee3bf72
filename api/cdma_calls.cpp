// Activation, and the call functions that stand on the data session.

#include "api/OrvError.h"
#include "api/admission.h"
#include "state/cdma_provisioning.h"
#include "talvek/cdma_provisioning.h"
#include "talvek/core.h"
#include "utility/text_writer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

constexpr ULONG kCallDataSession = 257; // call types
constexpr ULONG kCallActivation = 0;
constexpr ULONG kLongestNumber = 255;

constexpr ULONG kSessionDisconnected = 1, kSessionConnected = 2;    // the vendor's
constexpr ULONG kDisconnected = 0, kConnecting = 1, kConnected = 2; // ours

ORV_RCODE OriginateDataSession()
{
    char empty[1] = {}; // the profile's own
    ULONG handle = 0, failure_reason = 0;
    const ORV_RCODE result = OrvStartDataSession(empty, empty, empty, &handle, &failure_reason);
    if (result == ORV_RCODE_OK) g_CdmaDataSessionId = static_cast<int32_t>(handle);
    return result;
}

ORV_RCODE OriginateActivation(const WCHAR* number)
{
    if (!number || BoundedLength(number, kLongestNumber + 1) > kLongestNumber) return ORV_RCODE_BAD_PARAMETER;
    char narrow[kLongestNumber + 1] = {};
    OV_TtoA(number, narrow, sizeof narrow);
    return OrvActivateAutomatic(narrow);
}

ULONG CallStatus(ULONG session_state)
{
    if (session_state == kSessionDisconnected) return kDisconnected;
    return session_state == kSessionConnected ? kConnected : kConnecting;
}

} // namespace

ORV_RCODE ORV_CALL OrvActivateAutomatic(char* activationCode)
{
    TRACE_ENTRY("OrvActivateAutomatic");
    if (const ORV_RCODE refused = RequireInitializedMisspelt()) return refused;
    if (!activationCode) return ORV_RCODE_BAD_PARAMETER;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().ActivateAutomatic(activationCode));
    if (result != ORV_RCODE_OK) TRACE_ERROR(TXT("OrvActivateAutomatic returning: %d"), result);
    return result;
}

ORV_RCODE ORV_CALL OrvGetActivationStatus(ULONG* puState)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!puState) return ORV_RCODE_BAD_PARAMETER;
    ULONG state = 0;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetActivationState(&state));
    if (result == ORV_RCODE_OK) *puState = state;
    return result;
}

ORV_RCODE ORV_CALL OrvSetCallOriginateCmd(ULONG callType, const WCHAR* callNumber)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    LOG_C("OrvSetCallOriginateCmd not officially supported. Trying OrvStartDataSession instead");
    if (callType == kCallDataSession) return OriginateDataSession();
    if (callType == kCallActivation) return OriginateActivation(callNumber);
    if (LogIsOn(OV_LOG_INFO)) {
        char narrow[kLongestNumber + 1] = {};
        OV_TtoA(callNumber, narrow, kLongestNumber);
        LOG_C("OrvSetCallOriginateCmd unhandle callType = %d, callNumber = %s", callType, narrow);
    }
    return ORV_RCODE_BAD_PARAMETER;
}

ORV_RCODE ORV_CALL OrvGetCallConnectionState(ULONG* puStatus, ULONG* puError)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!puStatus || !puError) return ORV_RCODE_BAD_PARAMETER;
    ULONG session_state = 0, error = 0;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetSessionState(&session_state));
    const ULONG status = result == ORV_RCODE_OK ? CallStatus(session_state) : kDisconnected;
    if (status != kConnected && Gobi().GetLastMobileIPError(&error) != 0) error = 0;
    // Written after a failure too.
    *puStatus = status;
    *puError = error;
    LOG_C("OrvGetCallConnectionState returns uStatus = %d, uError = %d", status, error);
    return result;
}

ORV_RCODE ORV_CALL OrvSetCallDisconnectCmd(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    LOG_C("OrvSetCallDisconnectCmd not officially supported. Trying OrvStopDataSession instead");
    if (g_CdmaDataSessionId <= 0) return ORV_RCODE_WRONG_STATE;
    const ORV_RCODE result = OrvStopDataSession(static_cast<ULONG>(g_CdmaDataSessionId));
    if (result == ORV_RCODE_OK) g_CdmaDataSessionId = 0;
    return result;
}
