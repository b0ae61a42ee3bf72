// The vendor's voice service.

#include "vendor/forward.h"

ULONG COrvGobiDll::DialCall(tDialReqParam* request, BYTE* callID, alphaIDInfo* alphaID, BYTE* supplementaryKind,
                            ccSUPSType* supplementary)
{
    return Forward(m_entry.DialCall, request, callID, alphaID, supplementaryKind, supplementary);
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
