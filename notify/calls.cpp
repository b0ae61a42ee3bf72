// Voice calls and USSD: delivered directly, with no lock, whichever of their notifications were enabled.

#include <string.h>

#include "at/util.h"
#include "notify/adapters.h"
#include "notify/direct.h"
#include "notify/record.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

// The call type that clients know as kind 5.
constexpr BYTE kEmergencyCallType = 6;

constexpr ULONG kKindVoice = 0;
constexpr ULONG kKindEmergency = 5;
constexpr ULONG kKindWaiting = 256;

constexpr ULONG kStatusConnected = 2;
constexpr ULONG kEndReasonUnknown = 10;

constexpr BYTE kSignalTone = 0;
constexpr BYTE kCallWaitingTone = 9;

constexpr ULONG kDumpedPayload = 10;

// An array of the module begins with its own count, which may be anything.
template <class Array>
BYTE Count(const Array& array)
{
    return array.count < GOBI_MAX_CALLS ? array.count : static_cast<BYTE>(GOBI_MAX_CALLS);
}

// Copies as many digits as there are and as fit; the record is clear, so they are terminated.
void CopyNumber(OrvCallIncomingPayload& payload, const BYTE* digits, BYTE length)
{
    const size_t room = sizeof payload.szNumber - 1;
    memcpy(payload.szNumber, digits, length < room ? length : room);
}

void DeliverIncoming(OrvNotifyRecord& record)
{
    const OrvCallIncomingPayload& payload = record.payload.CallIncoming;
    LOG_W(TXT("send ring : callid: %d,number:%S"), payload.uCallId, payload.szNumber);
    DeliverDirectly(record);
}

// The arrays as they were when the event came, so that what is checked is what is used.
struct CallInfoEvent {
    arrCallInfo calls;
    arrRemotePartyNum numbers = {};
    arrSvcOption options = {};
    arrCallEndReason end_reasons = {};

    ULONG ServiceOption(BYTE call_id) const
    {
        for (BYTE i = 0; i < Count(options); ++i)
            if (options.options[i].callId == call_id) return options.options[i].option;
        return 0;
    }

    // The entry of the call's own place counts, if it is the call's.
    ULONG EndReason(BYTE i) const
    {
        if (i >= Count(end_reasons) || end_reasons.reasons[i].callId != calls.calls[i].callId) return kEndReasonUnknown;
        return static_cast<ULONG>(end_reasons.reasons[i].reasonHi << 8 | end_reasons.reasons[i].reasonLo);
    }

    void Deliver(BYTE i) const
    {
        const auto& call = calls.calls[i];
        OrvNotifyRecord record;
        switch (call.state) {
        case GOBI_CALL_WAITING:
            LOG_C("waiting ring");
            [[fallthrough]];
        case GOBI_CALL_INCOMING: {
            BeginRecord(record, ORV_NOTIFY_CallIncoming, sizeof(OrvCallIncomingPayload));
            const ULONG plain_kind = call.state == GOBI_CALL_WAITING ? kKindWaiting : kKindVoice;
            record.payload.CallIncoming.uKind = call.type == kEmergencyCallType ? kKindEmergency : plain_kind;
            record.payload.CallIncoming.uCallId = call.callId;
            // The number of the same place, whichever call it names.
            if (i < Count(numbers)) {
                const auto& number = numbers.numbers[i];
                CopyNumber(record.payload.CallIncoming, number.digits, number.length);
            }
            return DeliverIncoming(record);
        }
        case GOBI_CALL_CONVERSATION:
            LOG_C("Connected");
            BeginRecord(record, ORV_NOTIFY_CallConnected, sizeof(OrvCallStatusPayload));
            record.payload.CallStatus.uStatus = kStatusConnected;
            record.payload.CallStatus.uDetail = ServiceOption(call.callId);
            break;
        case GOBI_CALL_ENDED:
            LOG_C("Disconnected");
            BeginRecord(record, ORV_NOTIFY_CallDisconnected, sizeof(OrvCallStatusPayload));
            record.payload.CallStatus.uDetail = EndReason(i);
            break;
        case GOBI_CALL_HELD:
            LOG_C("Call on Hold");
            BeginRecord(record, ORV_NOTIFY_CallHold, sizeof(OrvCallStatusPayload));
            break;
        default:
            return;
        }
        record.payload.CallStatus.uCallId = call.callId;
        DeliverDirectly(record);
    }
};

} // namespace

void ORV_VENDOR_CALL CallInfoCallback(arrCallInfo* calls, arrRemotePartyNum* remoteNumbers, arrRemotePartyName*,
                                      arrAlertingType*, arrSvcOption* serviceOptions, arrCallEndReason* endReasons,
                                      arrAlphaIDInfo*, arrPeerNumInfo*, arrPeerNumInfo*, arrPeerNumInfo*)
{
    LOG_C("CallInfoCallback");
    if (!calls) return;
    CallInfoEvent event = {*calls};
    if (remoteNumbers) event.numbers = *remoteNumbers;
    if (serviceOptions) event.options = *serviceOptions;
    if (endReasons) event.end_reasons = *endReasons;
    for (BYTE i = 0; i < Count(event.calls); ++i) {
        LOG_C("CallInfoCallback : i:%d, callid %d, status %d", i, event.calls.calls[i].callId,
              event.calls.calls[i].state);
        event.Deliver(i);
    }
}

// Of the information records only the caller's number is delivered, and whether the call is waiting.
void ORV_VENDOR_CALL InfoRecCallback(BYTE* callID, signalInfo* signal, callerIDInfo* callerID, char*, BYTE*,
                                     peerNumInfo*, BYTE*, redirectNumInfo*, BYTE*, lineCtlInfo*, extDisplayInfo*)
{
    LOG_C("InfoRecCallback");
    if (!callerID) return;
    const bool waiting = signal && signal->signalType == kSignalTone && signal->signal == kCallWaitingTone;
    if (waiting) LOG_C("waiting ring");
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_CallIncoming, sizeof(OrvCallIncomingPayload));
    record.payload.CallIncoming.uKind = waiting ? kKindWaiting : kKindVoice;
    record.payload.CallIncoming.uCallId = callID ? *callID : 0;
    CopyNumber(record.payload.CallIncoming, callerID->digits, callerID->length);
    DeliverIncoming(record);
}

void ORV_VENDOR_CALL USSDCallback(BYTE* notificationType, USSInfo* info)
{
    LOG_C("USSDCallback");
    if (!notificationType || !info) return;
    LOG_C("b4 dump pUSSD");
    HexDump(info, sizeof *info);
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_USSD, sizeof(OrvUSSDPayload));
    OrvUSSDPayload& payload = record.payload.USSD;
    static_assert(sizeof info->data >= 255 && sizeof payload.aData >= 255, "any length of one octet is in bounds");
    payload.uType = *notificationType;
    payload.uDataCodingScheme = info->dcs;
    payload.uLength = info->length;
    memcpy(payload.aData, info->data, info->length);
    LOG_C("b4 dump sNotifyVariant._USSD");
    HexDump(&payload, kDumpedPayload);
    DeliverDirectly(record);
}
