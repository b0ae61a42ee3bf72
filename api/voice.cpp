// Voice calls, handed to the vendor library as they are.

#include "api/OrvError.h"
#include "api/admission.h"

ORV_RCODE ORV_CALL OrvDialCall(tDialReqParam* pRequest, BYTE* pCallID, alphaIDInfo* pAlphaID, BYTE* pSupplementaryKind,
                               ccSUPSType* pSupplementary)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().DialCall(pRequest, pCallID, pAlphaID, pSupplementaryKind, pSupplementary));
}

ORV_RCODE ORV_CALL OrvEndCall(BYTE* pCallID, BYTE* pEndedCallID)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().EndCall(pCallID, pEndedCallID));
}

ORV_RCODE ORV_CALL OrvAnserCall(BYTE* pCallID, BYTE* pAnsweredCallID)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().AnserCall(pCallID, pAnsweredCallID));
}

ORV_RCODE ORV_CALL OrvManageCalls(BYTE* pKind, BYTE* pCallID, WORD* pFailureCause)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().ManageCalls(pKind, pCallID, pFailureCause));
}
