// The vendor's two services for device management over the air. Their methods log the status of each call.

#include "vendor/forward.h"

ULONG COrvGobiDll::OMADMGetFeatureSettings(ULONG* provisioning, ULONG* prlUpdate)
{
    return ForwardAndLog("OMADMGetFeatureSettings returns status = %d", m_entry.OMADMGetFeatureSettings, provisioning,
                         prlUpdate);
}

ULONG COrvGobiDll::OMADMGetSessionInfo(ULONG* state, ULONG* type, ULONG* failureReason, BYTE* retryCount,
                                       WORD* pauseSeconds, WORD* remainingSeconds)
{
    return ForwardAndLog("OMADMGetSessionInfo returns status = %d", m_entry.OMADMGetSessionInfo, state, type,
                         failureReason, retryCount, pauseSeconds, remainingSeconds);
}

ULONG COrvGobiDll::OMADMSetProvisioningFeature(ULONG enabled)
{
    return ForwardAndLog("OMADMSetProvisioningFeature returns status = %d", m_entry.OMADMSetProvisioningFeature,
                         enabled);
}

ULONG COrvGobiDll::OMADMSetPRLUpdateFeature(ULONG enabled)
{
    return ForwardAndLog("OMADMSetPRLUpdateFeature returns status = %d", m_entry.OMADMSetPRLUpdateFeature, enabled);
}

ULONG COrvGobiDll::OMADMStartSession(ULONG type)
{
    return ForwardAndLog("OMADMStartSession returns status = %d", m_entry.OMADMStartSession, type);
}

ULONG COrvGobiDll::OMADMCancelSession()
{
    return ForwardAndLog("OMADMCancelSession returns status = %d", m_entry.OMADMCancelSession);
}

ULONG COrvGobiDll::OMADMGetPendingNIA(ULONG* type, WORD* sessionID)
{
    return ForwardAndLog("OMADMGetPendingNIA returns status = %d", m_entry.OMADMGetPendingNIA, type, sessionID);
}

ULONG COrvGobiDll::OMADMSendSelection(ULONG selection, WORD sessionID)
{
    return ForwardAndLog("OMADMSendSelection returns status = %d", m_entry.OMADMSendSelection, selection, sessionID);
}

ULONG COrvGobiDll::OMAEXSetEventReport()
{
    return ForwardAndLog("OMAEXSetEventReport returns status = %d", m_entry.ORVOMAEXSetEventReport);
}

ULONG COrvGobiDll::OMAEXSessionStart(BYTE* type)
{
    return ForwardAndLog("OMAEXSessionStart returns status = %d", m_entry.ORVOMAEXSessionStart, type);
}

ULONG COrvGobiDll::OMAEXSessionCancel()
{
    return ForwardAndLog("OMAEXSessionCancel returns status = %d", m_entry.ORVOMAEXSessionCancel);
}

ULONG COrvGobiDll::OMAEXSelection(BYTE* selection)
{
    return ForwardAndLog("OMAEXSelection returns status = %d", m_entry.ORVOMAEXSelection, selection);
}

ULONG COrvGobiDll::OMAEXGetSettings(BYTE* provisioning, BYTE* prlUpdate, BYTE* firmwareUpdate, BYTE* clientInitiated,
                                    BYTE* networkInitiated, BYTE* autoAccept)
{
    return ForwardAndLog("OMAEXGetSettings returns status = %d", m_entry.ORVOMAEXGetSettings, provisioning, prlUpdate,
                         firmwareUpdate, clientInitiated, networkInitiated, autoAccept);
}

ULONG COrvGobiDll::OMAEXSetSettings(BYTE* provisioning, BYTE* prlUpdate, BYTE* firmwareUpdate, BYTE* clientInitiated,
                                    BYTE* networkInitiated, BYTE* autoAccept)
{
    return ForwardAndLog("OMAEXSetSettings returns status = %d", m_entry.ORVOMAEXSetSettings, provisioning, prlUpdate,
                         firmwareUpdate, clientInitiated, networkInitiated, autoAccept);
}

ULONG COrvGobiDll::OMAEXSessionGetInfo(omaSessionInfo* info)
{
    return ForwardAndLog("OMAEXSessionGetInfo returns status = %d", m_entry.ORVOMAEXSessionGetInfo, info);
}

ULONG COrvGobiDll::OMAEXInit() { return ForwardAndLog("OMAEXInit returns status = %d", m_entry.ORVOMAEXInitApi); }

ULONG COrvGobiDll::OMAEXShutdown()
{
    return ForwardAndLog("OMAEXShutdown returns status = %d", m_entry.ORVOMAEXShutdownApi);
}
