// Text messages on CDMA modules: the unread ones of the module's store, and the one that is held for sending.

#include "talvek/cdma_sms.h"

#include <string.h>

#include "api/OrvError.h"
#include "api/sms.h"
#include "notify/record.h"
#include "sms/cdma_decode.h"
#include "sms/cdma_encode.h"
#include "state/globals.h"
#include "state/messages.h"
#include "utility/heap_buffer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

constexpr ULONG kFormatCdma = 0;
constexpr ULONG kFormatWaiting = 8; // message waiting indication: one octet, the number of messages
constexpr BYTE kNoLinkTimer = 0;

ORV_RCODE Decode(const StoredSms& message, ORV_CDMA_SMS* record)
{
    const ORV_RCODE result = DecodeCompleteMTSms(message.octets, message.size, record);
    if (result != ORV_RCODE_OK) LOG_C("DecodeCompleteMTSms failed with error = %d", result);
    return result;
}

// Tells the client that messages wait for it elsewhere.
ORV_RCODE DeliverWaiting(const StoredSms& message)
{
    if (message.size != 1) {
        LOG_C("Unexpected data lenght for MWI");
        return ORV_RCODE_UNSUPPORTED;
    }
    const OrvNotifyCallback callback = g_ClientCallback;
    if (!callback) return ORV_RCODE_OK;
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_VoiceMail, sizeof(OrvVoiceMailPayload));
    record.payload.VoiceMail.bActive = 1;
    record.payload.VoiceMail.nWaiting = message.octets[0];
    callback(&record);
    return ORV_RCODE_OK;
}

void DropHeldMessage()
{
    g_bSmsStored = 0;
    g_SmsStoredLen = 0;
    g_SmsStoredMsgId = 0;
    g_bSmsSent = 0;
}

// A number of a record that is to be sent. False when its field or its text is shorter than its length says.
template <size_t Room>
bool NarrowDigits(const WCHAR (&digits)[Room], ULONG length, char (&narrow)[Room])
{
    memset(narrow, 0, Room);
    if (length >= Room) return false;
    OV_TtoA(digits, narrow, length);
    return length == 0 || narrow[length - 1] != 0;
}

} // namespace

ORV_RCODE ORV_CALL OrvGetCdmaSMSMessageStatus(ORV_CDMA_SMS_STATUS* status)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!status) return ORV_RCODE_BAD_PARAMETER;
    ULONG count = 0;
    const ORV_RCODE result =
        ConvertGobiError2OrvRcode(ListUnread(kModuleStore, g_SmsList, GOBI_MAX_LISTED_SMS, &count));
    if (result == ORV_RCODE_OK) *status = {sizeof *status, 0, count, 0};
    return result;
}

ORV_RCODE ORV_CALL OrvRetrieveCdmaSMSMessage(ORV_CDMA_SMS* record)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    ULONG count = 0;
    if (const ULONG status = ListUnread(kModuleStore, g_SmsList, GOBI_MAX_LISTED_SMS, &count)) {
        LOG_C("Gobi Api GetSMSList failed with error = %d", status);
        return ConvertGobiError2OrvRcode(status);
    }
    LOG_C("Gobi SMS List size for UNREAD msgs = %lu", count);
    for (ULONG i = 0; i < count; ++i) {
        const ULONG index = g_SmsList[i].index;
        LOG_C("Gobi GetSMS Loop Loop index i = %d, Msg Index = %lu Msg TAG = %d", i, index, g_SmsList[i].tag);
        StoredSms message;
        if (const ULONG status = message.Read(kModuleStore, index)) {
            LOG_C("Gobi Api GetSMS failed with error = %d", status);
            return ConvertGobiError2OrvRcode(status);
        }
        const bool waiting = message.format == kFormatWaiting;
        if (message.tag != kUnread || (message.format != kFormatCdma && !waiting)) {
            LOG_C("Msg Format = %d, Msg Tag = %d. One of them is incorrect", message.format, message.tag);
            continue;
        }
        record->uMsgsRemaining = count - i - 1;
        const ORV_RCODE result = waiting ? DeliverWaiting(message) : Decode(message, record);
        if (result == ORV_RCODE_OK) {
            DeleteStored(kLogSource, kModuleStore, index);
            return ORV_RCODE_OK;
        }
        if (record->uMsgsRemaining == 0) return result;
        record->uParamMask = 0; // it stays where it is, and nothing of it in the record; the next one is looked at
    }
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvStoreCdmaSMSMessage(const ORV_CDMA_SMS_SEND* record)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    if (g_bSmsStored) {
        LOG_C("One Msg already stored in the modem, overwriting it");
        g_bSmsStored = 0;
    }
    if (record->uUserDataLen > ORV_CDMA_SMS_MAX_USER_DATA) {
        LOG_C("SMS MSg body is longer than 160 characters");
        return ORV_RCODE_BAD_PARAMETER;
    }
    char destination[ORV_CDMA_SMS_MAX_DIGITS + 1], callback[ORV_CDMA_SMS_MAX_DIGITS + 1];
    if (!NarrowDigits(record->szAddress, record->uAddrLen, destination) ||
        !NarrowDigits(record->szCallback, record->uCallbackLen, callback)) {
        LOG_C("A number has fewer digits than its length says: %d, %d", record->uAddrLen, record->uCallbackLen);
        return ORV_RCODE_BAD_PARAMETER;
    }
    BYTE* encoded = nullptr;
    ULONG length = 0;
    ORV_RCODE result = EncodeCompleteMoSms(&encoded, &length, destination, record->uAddrLen, callback,
                                           record->uCallbackLen, record->uEncoding, record->pUserData,
                                           record->uUserDataLen, record->uMsgType, record->uMsgId, record->uPriority);
    if (result == ORV_RCODE_OK && length > sizeof g_SmsStoredPdu) result = ORV_RCODE_VENDOR_5;
    if (result == ORV_RCODE_OK) {
        memcpy(g_SmsStoredPdu, encoded, length);
        g_SmsStoredLen = length;
        g_SmsStoredMsgId = record->uMsgId;
        g_bSmsSent = 0;
        g_bSmsStored = 1;
    } else {
        LOG_C("EncodeCompleteMoSms failed \n");
        DropHeldMessage();
    }
    HeapBuffer::Free(encoded);
    return result;
}

ORV_RCODE ORV_CALL OrvSendCdmaSMS(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!g_bSmsStored) {
        LOG_C("No SMS Msg is stored in the modem");
        return ORV_RCODE_FAILED;
    }
    const ULONG status = SendMessage(kLogSource, kFormatCdma, g_SmsStoredLen, g_SmsStoredPdu, kNoLinkTimer);
    if (status == 0) g_bSmsStored = 0; // a message that failed stays, to be sent again
    NotifySendStatus(kLogSource);
    return ConvertGobiError2OrvRcode(status);
}
