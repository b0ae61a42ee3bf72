// The vendor's supplementary services and USSD.

#include "vendor/forward.h"

ULONG COrvGobiDll::OrigUSSD(USSInfo* request, WORD* failureCause, alphaIDInfo* alphaID, USSInfo* answer,
                            BYTE* controlResult, BYTE* callID, ccSUPSType* controlService)
{
    return Forward(m_entry.OrigUSSD, request, failureCause, alphaID, answer, controlResult, callID, controlService);
}

ULONG COrvGobiDll::AnswerUSSD(USSInfo* answer) { return Forward(m_entry.AnsUSSD, answer); }

ULONG COrvGobiDll::CancelUSSD() { return Forward(m_entry.AbortsUSSD); }

ULONG COrvGobiDll::ChangeBarringPwd(callBarringPwd* change, WORD* failureCause, alphaIDInfo* alphaID,
                                    BYTE* controlResult, BYTE* callID, ccSUPSType* controlService)
{
    return Forward(m_entry.SetCallBarringPassword, change, failureCause, alphaID, controlResult, callID,
                   controlService);
}

ULONG COrvGobiDll::GetCLIR(statusResp* status, WORD* failureCause, alphaIDInfo* alphaID, BYTE* controlResult,
                           BYTE* callID, ccSUPSType* controlService)
{
    return Forward(m_entry.GetCLIR, status, failureCause, alphaID, controlResult, callID, controlService);
}

ULONG COrvGobiDll::GetCallWaiting(BYTE* serviceClass, BYTE* activeClasses, WORD* failureCause, alphaIDInfo* alphaID,
                                  BYTE* controlResult, BYTE* callID, ccSUPSType* controlService)
{
    return Forward(m_entry.GetCallWaiting, serviceClass, activeClasses, failureCause, alphaID, controlResult, callID,
                   controlService);
}

ULONG COrvGobiDll::SetSUPS(voiceSetSUPSServiceReq* request, WORD* failureCause, alphaIDInfo* alphaID,
                           BYTE* controlResult, BYTE* callID, ccSUPSType* controlService)
{
    return Forward(m_entry.SetSupsService, request, failureCause, alphaID, controlResult, callID, controlService);
}

ULONG COrvGobiDll::GetCallBarring(BYTE* reason, BYTE* serviceClass, BYTE* activeClasses, WORD* failureCause,
                                  alphaIDInfo* alphaID, BYTE* controlResult, BYTE* callID, ccSUPSType* controlService)
{
    return Forward(m_entry.GetCallBarring, reason, serviceClass, activeClasses, failureCause, alphaID, controlResult,
                   callID, controlService);
}

ULONG COrvGobiDll::GetCallForwarding(BYTE* reason, BYTE* serviceClass, getCallFWInfo* info, BYTE* failureCause,
                                     alphaIDInfo* alphaID, BYTE* controlResult, BYTE* callID,
                                     ccSUPSType* controlService, getExtCallFWInfo* extendedInfo)
{
    return Forward(m_entry.GetCallForwarding, reason, serviceClass, info, failureCause, alphaID, controlResult, callID,
                   controlService, extendedInfo);
}
