// Text messages on GSM/UMTS modules: the unread ones of the SIM and of the module, the one that is held for sending,
// and the service centre's address.

#include "talvek/gsm_sms.h"

#include <string.h>

#include <initializer_list>

#include "api/OrvError.h"
#include "api/sms.h"
#include "sms/gsm_deliver.h"
#include "sms/gsm_submit.h"
#include "state/messages.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

constexpr BYTE kProtocolGsm = 1;
constexpr BYTE kBroadcastGsm = 1, kOn = 1;
constexpr ULONG kFormatGsm = 6;
constexpr BYTE kMultipartLinkTimer_s = 3;
constexpr BYTE kAddressSize = 50;
constexpr BYTE kAddressTypeSize = 40;
constexpr ULONG kCountedMessages = 100; // in the status record, whatever the stores have room for

// Types of an address, as the module spells them (3GPP TS 24.011, 8.2.5.2).
constexpr const char* kInternational = "145";
constexpr const char* kUnknownType = "129";
// What is answered where the module does not tell its service centre.
constexpr const char* kSubstituteAddress = "+7";

void UseGsmProtocol()
{
    if (Gobi().SetSMSProtocol(kProtocolGsm) != 0) LOG_C("Gobi SMS Set Protocol failed!");
}

// Every message goes to the module's store, and the client is told.
void PrepareDelivery()
{
    LOG_C("SetSMSRoute");
    GobiSMSRoute route = {GOBI_SMS_POINT_TO_POINT, GOBI_SMS_ANY_CLASS, kModuleStore, GOBI_SMS_STORE_AND_NOTIFY};
    if (const ULONG failed = Gobi().SetSMSRoute(1, reinterpret_cast<BYTE*>(&route)))
        LOG_C("SetSMSRoute failed, ret = 0x%x", failed);
    if (const ULONG failed = Gobi().SetSMSBroadcastActivation(kBroadcastGsm, kOn))
        LOG_C("SetSMSBroadcastActivation failed, ret = 0x%x", failed);
    UseGsmProtocol();
}

// The unread messages of both stores, those of the SIM first, as many as the table has room for. Returns the vendor's
// status.
ULONG ListBothStores(ULONG* on_sim, ULONG* in_all)
{
    ULONG on_module = 0;
    if (const ULONG failed = ListUnread(kSimStore, g_SmsList, GOBI_MAX_LISTED_SMS, on_sim)) return failed;
    const ULONG room = GOBI_MAX_LISTED_SMS - *on_sim;
    if (room != 0) {
        if (const ULONG failed = ListUnread(kModuleStore, g_SmsList + *on_sim, room, &on_module)) return failed;
    }
    *in_all = *on_sim + on_module;
    return 0;
}

ORV_RCODE RetrieveUnread(ORV_GSM_SMS_IN* record)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    UseGsmProtocol();
    ULONG on_sim = 0, count = 0;
    if (const ULONG failed = ListBothStores(&on_sim, &count)) return ConvertGobiError2OrvRcode(failed);
    LOG_C("Total UNREAD msgs = %lu, Sim Msgs = %lu", count, on_sim);
    record->uMsgPresent = 0;
    const ORV_GSM_SMS_IN untouched = *record;
    for (ULONG i = 0; i < count; ++i) {
        const ULONG storage = i < on_sim ? kSimStore : kModuleStore;
        const ULONG index = g_SmsList[i].index;
        LOG_C("Gobi GetSMS Loop index i = %d, Msg Index = %lu Msg TAG = %d, Storage type = %d", i, index,
              g_SmsList[i].tag, storage);
        StoredSms message;
        if (const ULONG failed = message.Read(storage, index)) {
            LOG_C("Gobi Api GetSMS failed with error = %d", failed);
            return ConvertGobiError2OrvRcode(failed);
        }
        if (LogIsOn(OV_LOG_TRACE)) DisplayRawData("Gobi GetSMS rcvd info: ", message.octets, message.size);
        LOG_C("uMsgTag = %d, uMsgFormat = %d, uMsgIndex = %d, uMsgLen = %d", message.tag, message.format, index,
              message.size);
        if (message.tag != kUnread) {
            LOG_C(" Msg Tag = %d is incorrect", message.format); // the format it is that is printed
            continue;
        }
        record->bMoreMessages = i + 1 < count ? 1 : 0;
        record->uMsgIndex = index;
        if (const ORV_RCODE result = DecodeCompletePDU(message.octets, message.size, record)) {
            LOG_C("DecodeCompletePDU failed with error = %d", result);
            if (!record->bMoreMessages) return result;
            *record = untouched; // it stays where it is, and nothing of it in the record
            continue;
        }
        record->uMsgPresent = 1;
        DeleteStored(kLogSource, storage, index);
        return ORV_RCODE_OK;
    }
    return ORV_RCODE_OK;
}

void DropHeldMessage()
{
    g_GsmSmsStored = 0;
    g_GsmSmsLen = 0;
    g_GsmSmsLinkTimer = 0;
}

} // namespace

// --- received messages -----------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetSMSMessageStatus(ORV_GSM_SMS_STATUS* status)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!status) return ORV_RCODE_BAD_PARAMETER;
    PrepareDelivery();
    ULONG counts[2] = {};
    for (const ULONG storage : {kSimStore, kModuleStore}) {
        const ORV_RCODE result =
            ConvertGobiError2OrvRcode(ListUnread(storage, g_SmsList, GOBI_MAX_LISTED_SMS, &counts[storage]));
        if (result != ORV_RCODE_OK) return result;
    }
    status->sizeStruct = sizeof *status;
    status->bFlag = 0;
    status->uReserved2 = 0;
    status->uUnreadCount = counts[kSimStore] + counts[kModuleStore];
    status->uHundred = kCountedMessages;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvRetrieveSMSMessageGobi(ORV_GSM_SMS_IN* record) { return RetrieveUnread(record); }

ORV_RCODE ORV_CALL OrvRetrieveCBSMSMessageGobi(ORV_GSM_SMS_IN* record) { return RetrieveUnread(record); }

// --- the message that is held ----------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvStoreSMSMessageGobi(const ORV_GSM_SMS_OUT* record)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    if (g_GsmSmsStored) LOG_C("One Msg already stored in the modem, overwriting it");
    DropHeldMessage();
    WORD length = sizeof g_GsmSmsPdu;
    if (const ORV_RCODE result = EncodeMOPDU(record, g_GsmSmsPdu, &length)) {
        LOG_C("EncodeMOPDU function failed with rc = %d", result);
        return result;
    }
    if (record->uUserDataHeaderLen != 0) {
        g_GsmSmsLinkTimer = kMultipartLinkTimer_s;
        LOG_C("For Multipart SMS, set link timer to be 3 seconds");
    }
    g_GsmSmsLen = length;
    g_GsmSmsStored = 1;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSendSMS(void)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!g_GsmSmsStored) {
        LOG_C("No SMS Msg is stored in the modem");
        return ORV_RCODE_FAILED;
    }
    if (g_GsmSmsLen == 0) LOG_C("Length of SMS Msg stored in the modem is zero");
    // Only for the log: the module adds its own service centre where the message names none.
    char address[kAddressSize + 1] = {}, type[kAddressSize + 1] = {};
    if (const ULONG failed = Gobi().GetSMSCAddress(kAddressSize, address, kAddressSize, type))
        LOG_C("Gobi GetSMSCAddress failed with error code = %ld ", failed);
    const ULONG status = SendMessage(kLogSource, kFormatGsm, g_GsmSmsLen, g_GsmSmsPdu, g_GsmSmsLinkTimer);
    if (status == 0) DropHeldMessage(); // a message that failed stays, to be sent again
    NotifySendStatus(kLogSource);
    return ConvertGobiError2OrvRcode(status);
}

// --- service centre --------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetGsmSMSCAddr(ULONG size, char* address, BYTE* international)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    const BYTE vendor_size = static_cast<BYTE>(size); // the vendor counts sizes in 8 bits
    if (vendor_size == 0) return ORV_RCODE_VENDOR_5;
    if (!address || !international) return ORV_RCODE_BAD_PARAMETER;
    char type[kAddressTypeSize + 1] = {};
    if (const ULONG failed = Gobi().GetSMSCAddress(vendor_size, address, kAddressTypeSize, type)) {
        LOG_C("OrvGetGsmSMSCAddrfailed with error code = %d ", failed);
        LOG_C("OrvGetGsmSMSCAddr faking OK");
        const ULONG length = static_cast<ULONG>(strlen(kSubstituteAddress)) + 1;
        memcpy(address, kSubstituteAddress, length < size ? length : size);
        return ORV_RCODE_OK; // clients must be able to go on: the required rule
    }
    if (!memchr(address, 0, vendor_size)) address[size > vendor_size ? vendor_size : vendor_size - 1] = 0;
    *international = strcmp(type, kInternational) == 0 ? 1 : 0;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSetGsmSMSCAddr(const char* address, BYTE international)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!address) return ORV_RCODE_BAD_PARAMETER;
    const char* const type = international == 1 ? kInternational : kUnknownType;
    const ULONG status = Gobi().SetSMSCAddress(const_cast<char*>(address), const_cast<char*>(type)); // only read
    if (status != 0) LOG_C("OrvSetGsmSMSCAddr failed with error code = %d ", status);
    return ConvertGobiError2OrvRcode(status);
}
