// The vendor's voice service.

#include "vendor/forward.h"

ULONG COrvGobiDll::DialCall(tDialReqParam* request, BYTE* callID, alphaIDInfo* alphaID, BYTE* controlResult,
                            ccSUPSType* controlService)
{
    return Forward(m_entry.DialCall, request, callID, alphaID, controlResult, controlService);
}

ULONG COrvGobiDll::EndCall(BYTE* callID, BYTE* endedCallID) { return Forward(m_entry.EndCall, callID, endedCallID); }

ULONG COrvGobiDll::AnserCall(BYTE* callID, BYTE* answeredCallID)
{
    return Forward(m_entry.AnswerCall, callID, answeredCallID);
}

ULONG COrvGobiDll::ManageCalls(BYTE* kind, BYTE* callID, WORD* failureCause)
{
    return Forward(m_entry.ManageCalls, kind, callID, failureCause);
}

ULONG COrvGobiDll::GetAllCallInfo(arrCallInfo* calls, arrRemotePartyNum* remoteNumbers, arrRemotePartyName* remoteNames,
                                  arrAlertingType* alertingTypes, arrUUSInfo* uusInfos, arrSvcOption* serviceOptions,
                                  BYTE* voicePrivacy, BYTE* otaspStatus, arrCallEndReason* endReasons,
                                  arrAlphaIDInfo* alphaIDs, arrPeerNumInfo* connectedNumbers, arrDiagInfo* diagnostics,
                                  arrPeerNumInfo* calledNumbers, arrPeerNumInfo* redirectingNumbers,
                                  arrAlertingPattern* alertingPatterns)
{
    return Forward(m_entry.GetAllCallInfo, calls, remoteNumbers, remoteNames, alertingTypes, uusInfos, serviceOptions,
                   voicePrivacy, otaspStatus, endReasons, alphaIDs, connectedNumbers, diagnostics, calledNumbers,
                   redirectingNumbers, alertingPatterns);
}

ULONG COrvGobiDll::SendFlash(BYTE* callID, char* digits, BYTE* kind, BYTE* flashedCallID)
{
    return Forward(m_entry.SendFlash, callID, digits, kind, flashedCallID);
}

ULONG COrvGobiDll::StartDTMF(BYTE* callID, BYTE* key, BYTE* startedCallID)
{
    return Forward(m_entry.StartContDTMF, callID, key, startedCallID);
}

ULONG COrvGobiDll::StopDTMF(BYTE* callID, BYTE* stoppedCallID)
{
    return Forward(m_entry.StopContDTMF, callID, stoppedCallID);
}
