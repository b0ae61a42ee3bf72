// Events of the packet data session. They are delivered on the vendor library's own thread.

#include <string.h>

#include "notify/adapters.h"
#include "notify/delivery.h"
#include "state/globals.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

constexpr ULONG kStateDisconnected = 1;
constexpr ULONG kStateConnected = 2;
constexpr ULONG kStateAuthenticating = 4;
constexpr ULONG kDataCallType = 257;
constexpr ULONG kDataServiceOption = 33;
constexpr ULONG kSessionEnded = 30;
constexpr WCHAR kDataCallNumber[] = TXT("Gobi Number");

struct SessionStateEvent {
    ULONG state;
    ULONG end_reason;
    bool packet_session_told = false;

    void Dispatch(COrvNotify& registry)
    {
        LOG_C("COrvNotify::SessionStateCallback: state = %d, sessionEndReason = %d", state, end_reason);
        if (!registry.Admit(NotifySource::SessionState)) return;
        LOG_C("COrvNotify::HandleSessionStateCallback LOOP");
        registry.Walk(NotifySource::SessionState, *this);
        if (packet_session_told) LOG_C("HandleSessionStateCallback just notify ORV_NOTIFY_PktSessionCall");
    }

    Outcome Fill(OrvNotifyRecord& record, const szNotifyItem& item)
    {
        LOG_C("(*orvNotifyIter).aNotify =%d (*orvNotifyIter).dwCount = %d", item.aNotify, item.dwCount);
        switch (item.aNotify) {
        case ORV_NOTIFY_CallDisconnected:
            record.uPayloadSize = sizeof(OrvCallStatusPayload);
            return state == kStateDisconnected ? Outcome::Deliver : Outcome::Nothing;
        case ORV_NOTIFY_CallConnected:
            record.uPayloadSize = sizeof(OrvCallStatusPayload);
            record.payload.CallStatus.uStatus = 4;
            record.payload.CallStatus.uDetail = kDataServiceOption;
            return state == kStateConnected ? Outcome::Deliver : Outcome::Nothing;
        case ORV_NOTIFY_CallOriginating:
            record.uPayloadSize = sizeof(OrvCallOriginatingPayload);
            record.payload.CallOriginating.uCallType = kDataCallType;
            record.payload.CallOriginating.uStatus = 1;
            memcpy(record.payload.CallOriginating.szNumber, kDataCallNumber, sizeof kDataCallNumber);
            return state == kStateAuthenticating ? Outcome::Deliver : Outcome::Nothing;
        case ORV_NOTIFY_PktSessionCall:
            record.uPayloadSize = sizeof(OrvPktSessionPayload);
            record.payload.PktSession.bConnected = state == kStateDisconnected ? 0 : 1;
            if (state == kStateDisconnected) {
                g_PktSessionHandle = 0;
                record.payload.PktSession.uEndReason = kSessionEnded; // whatever the module's reason was
            }
            packet_session_told = true;
            return Outcome::DeliverAndStop; // identifiers enabled after it get nothing for this event
        default:
            return Outcome::Nothing;
        }
    }
};

struct ByteTotalsEvent {
    ULONG sent;
    ULONG received;

    void Dispatch(COrvNotify& registry)
    {
        LOG_C("COrvNotify::ByteTotalsCallback: totalBytesTX = %d, totalBytesRX = %d", sent, received);
        if (registry.Admit(NotifySource::ByteTotals)) registry.Walk(NotifySource::ByteTotals, *this);
    }

    Outcome Fill(OrvNotifyRecord& record, const szNotifyItem&)
    {
        record.uPayloadSize = sizeof(OrvByteTotalsPayload);
        record.payload.ByteTotals.uBytesSent = sent;
        record.payload.ByteTotals.uBytesReceived = received;
        return Outcome::DeliverAndStop; // only the first identifier of the two
    }
};

} // namespace

void ORV_VENDOR_CALL SessionStateCallback(ULONG state, ULONG sessionEndReason)
{
    DeliverUnderLock(SessionStateEvent{state, sessionEndReason});
}

void ORV_VENDOR_CALL ByteTotalsCallback(ULONGLONG bytesSent, ULONGLONG bytesReceived)
{
    DeliverUnderLock(ByteTotalsEvent{static_cast<ULONG>(bytesSent), static_cast<ULONG>(bytesReceived)});
}
