// Voice calls and USSD. The events are reported to the log; their records are not delivered yet.

#include "notify/adapters.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

} // namespace

void ORV_VENDOR_CALL CallInfoCallback(arrCallInfo*, arrRemotePartyNum*, arrRemotePartyName*, arrAlertingType*,
                                      arrSvcOption*, arrCallEndReason*, arrAlphaIDInfo*, arrPeerNumInfo*,
                                      arrPeerNumInfo*, arrPeerNumInfo*)
{
    LOG_C("CallInfoCallback");
}

void ORV_VENDOR_CALL InfoRecCallback(BYTE*, signalInfo*, callerIDInfo*, char*, BYTE*, peerNumInfo*, BYTE*,
                                     redirectNumInfo*, BYTE*, lineCtlInfo*, extDisplayInfo*)
{
    LOG_C("InfoRecCallback");
}

void ORV_VENDOR_CALL USSDCallback(BYTE*, USSInfo*) { LOG_C("USSDCallback"); }
