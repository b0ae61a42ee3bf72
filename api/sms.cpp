#include "api/sms.h"

#include "notify/OrvNotify.h"
#include "notify/record.h"
#include "state/globals.h"
#include "state/messages.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

// So long that the client has the result of the sending before it is told of the outcome.
constexpr DWORD kHeadStart_ms = 100;

constexpr ULONG kSizeOnCdma = 16, kSizeOnUmts = 44;
constexpr ULONG kSent = 0, kNotSentOnCdma = 2, kNotSentOnUmts = 1;

// Logs under the source module of the caller's caller.
template <class... Arguments>
void LogFor(const WCHAR* source, int line, const char* format, Arguments... arguments)
{
    if (!LogIsOn(OV_LOG_INFO)) return;
    LogStoreFileLine(source, line);
    LogC(format, arguments...);
}

bool LastOneWasSent()
{
    const bool sent = g_bSmsSent == 1;
    if (sent)
        LOG_C("Global flag says msg sent successfully");
    else
        LOG_C("Global flag says msg not sent");
    return sent;
}

DWORD WINAPI SendNotifyThread(LPVOID)
{
    LOG_C("Send SMS Notification Thread");
    Sleep(kHeadStart_ms);
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_SMSSendStatus, 0);
    OrvSMSSendStatusPayload& payload = record.payload.SMSSendStatus;
    const ULONG technology = g_WirelessTech;
    if (technology == ORV_TECH_CDMA) {
        record.uPayloadSize = kSizeOnCdma;
        payload.uMsgId = g_SmsStoredMsgId;
        payload.uStatus = LastOneWasSent() ? kSent : kNotSentOnCdma;
    } else if (technology == ORV_TECH_UMTS) {
        record.uPayloadSize = kSizeOnUmts;
        payload.uStatus = LastOneWasSent() ? kSent : kNotSentOnUmts;
    }
    if (const OrvNotifyCallback callback = g_ClientCallback) callback(&record);
    return 0;
}

} // namespace

ULONG ListUnread(ULONG storage, GobiSMSListEntry* list, ULONG room, ULONG* count)
{
    ULONG tag = kUnread;
    *count = room;
    const ULONG status = Gobi().GetSMSList(storage, &tag, count, reinterpret_cast<BYTE*>(list));
    if (status != 0) *count = 0;
    if (*count > room) *count = room;
    return status;
}

ULONG StoredSms::Read(ULONG storage, ULONG index)
{
    size = sizeof octets;
    const ULONG status = Gobi().GetSMS(storage, index, &tag, &format, &size, octets);
    if (size > sizeof octets) size = sizeof octets;
    return status;
}

void DeleteStored(const WCHAR* log_source, ULONG storage, ULONG index, int line)
{
    const ULONG status = Gobi().DeleteSMS(storage, &index, nullptr);
    if (status != 0) LogFor(log_source, line, "Gobi Api DeleteSMS failed with error = %d", status);
}

ULONG SendMessage(const WCHAR* log_source, ULONG format, ULONG size, BYTE* message, BYTE link_timer, int line)
{
    ULONG failure_code = 0;
    const ULONG status = Gobi().SendSMS(format, size, message, link_timer, &failure_code);
    if (status != 0) {
        LogFor(log_source, line, "Gobi SendSMS failed with error code = %ld and Failure code = %ld", status,
               failure_code);
    }
    g_bSmsSent = status == 0 ? 1 : 0;
    return status;
}

void NotifySendStatus(const WCHAR* log_source, int line)
{
    if (!g_OrvNotify.IsActive(ORV_NOTIFY_SMSSendStatus)) return;
    if (g_hSmsSendNotifyThread) {
        LogFor(log_source, line, "Previous SmsSendNotifyThread Handle Open.....closing now...");
        CloseHandle(g_hSmsSendNotifyThread);
        g_hSmsSendNotifyThread = nullptr;
    }
    g_hSmsSendNotifyThread = CreateThread(nullptr, 0, SendNotifyThread, nullptr, 0, nullptr);
    if (!g_hSmsSendNotifyThread) LogFor(log_source, line, "Error Sending SMS notification, Thread Create failed");
}
