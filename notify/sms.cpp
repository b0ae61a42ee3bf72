// Short messages, cell broadcasts, voice mail: delivered directly, with no lock, through the exported interface's copy
// of the client callback.

#include <string.h>

#include "notify/OrvNotify.h"
#include "notify/adapters.h"
#include "notify/record.h"
#include "state/globals.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

constexpr ULONG kNewSmsSizeCdma = 16;
constexpr ULONG kNewSmsSizeGsm = 28;
constexpr BYTE kVoiceMail = 0;
constexpr BYTE kWaiting = 1;
constexpr int32_t kNumberUnknown = -1;

} // namespace

void ORV_VENDOR_CALL NewSMSCallback(ULONG storageType, ULONG)
{
    LOG_C("Gobi SMS CALLBACK Received, storageType = %lu, g_GsmSmsSource = %lu", storageType, g_GsmSmsSource.Load());
    if (!g_pOrvNotify.Load()->ClientCallback()) return; // and what the last event said stays
    g_GsmSmsSource = storageType;
    LOG_C("Gobi SMS CALLBACK Received, storage Type = %lu", storageType);
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_NewSMS, g_WirelessTech == ORV_TECH_CDMA ? kNewSmsSizeCdma : kNewSmsSizeGsm);
    if (const OrvNotifyCallback callback = g_ClientCallback) callback(&record);
}

void ORV_VENDOR_CALL NewSMSCBCallback(BYTE, ULONG, BYTE dataType, WORD length, BYTE* data)
{
    const OrvNotifyCallback callback = g_ClientCallback;
    if (!callback || !data) return;
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_CellBroadcast, sizeof(OrvCellBroadcastPayload));
    OrvCellBroadcastPayload& payload = record.payload.CellBroadcast;
    if (length > sizeof payload.aData)
        LOG_C("Cell broadcast of %d octets cut to %d", length, static_cast<ULONG>(sizeof payload.aData));
    payload.uDataType = dataType;
    payload.uLength = length < sizeof payload.aData ? length : static_cast<WORD>(sizeof payload.aData);
    memcpy(payload.aData, data, payload.uLength);
    callback(&record);
}

void ORV_VENDOR_CALL VoiceMessageCallback(BYTE count, BYTE* types, BYTE* active, BYTE* waiting)
{
    LOG_C("VoiceMessageCallback");
    const bool has_entries = types && active && waiting;
    if (!has_entries) LOG_C("VoiceMessageCallback with NULL pointer!!!!");
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_VoiceMail, sizeof(OrvVoiceMailPayload));
    record.payload.VoiceMail.bActive = 1;
    for (BYTE i = 0; has_entries && i < count; ++i) {
        if (types[i] != kVoiceMail || active[i] != kWaiting) continue;
        const bool is_number = waiting[i] != 0 && waiting[i] != 255;
        record.payload.VoiceMail.nWaiting = is_number ? waiting[i] : kNumberUnknown; // the last entry wins
    }
    if (const OrvNotifyCallback callback = g_ClientCallback) callback(&record);
}
