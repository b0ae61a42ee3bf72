// Events of the serving network: roaming, radio frequency, network time, emergency mode.

#include "notify/adapters.h"
#include "notify/delivery.h"
#include "notify/record.h"
#include "queries/serving_network.h"
#include "state/globals.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

constexpr BYTE kInterfaceCdma = 1;
constexpr BYTE kInterfaceHdr = 2;

// The event's own value is not used: the serving network is read afresh.
struct RoamingEvent {
    ULONG value;
    ServingNetwork network = {};

    void Dispatch(COrvNotify& registry)
    {
        if (!registry.Admit(NotifySource::RoamingIndicator)) return;
        if (const ULONG status = network.Query(*registry.Gobi())) {
            LOG_C("RICB: GetServingNetwork failed, status = %d", status);
            return;
        }
        registry.Walk(NotifySource::RoamingIndicator, *this);
    }

    // The first identifier ends the walk, delivered or not.
    Outcome Fill(OrvNotifyRecord& record, const szNotifyItem& item)
    {
        const BYTE radio_interface = item.aNotify == ORV_NOTIFY_CdmaRoaming ? kInterfaceCdma : kInterfaceHdr;
        if (network.registration_state != ServingNetwork::kRegistered || !network.IsServedBy(radio_interface))
            return Outcome::Stop;
        record.uPayloadSize = sizeof(OrvValuePayload);
        record.payload.Value.uValue = network.RoamingIndicator();
        return Outcome::DeliverAndStop;
    }
};

// Enabling these only makes the module report, which is logged.
struct RFInfoEvent {
    ULONG radio_interface;

    void Dispatch(COrvNotify& registry)
    {
        LOG_C("COrvNotify::RFinfoCallback: radioInterface = %d", radio_interface);
        if (registry.Admit(NotifySource::RFInfo)) registry.Walk(NotifySource::RFInfo, *this);
    }

    Outcome Fill(OrvNotifyRecord&, const szNotifyItem&) { return Outcome::Nothing; }
};

} // namespace

void ORV_VENDOR_CALL GobiAPIRoamingIndicatorCallback(ULONG roaming)
{
    LOG_C("GobiAPIRoamingIndicatorCallback: roaming = %d", roaming);
    DeliverOnThread<RoamingEvent>(roaming);
}

void ORV_VENDOR_CALL RFInfoCallback(ULONG radioInterface, ULONG, ULONG)
{
    DeliverOnThread<RFInfoEvent>(radioInterface);
}

// Delivered directly, whether or not 116 was asked for.
void ORV_VENDOR_CALL NITZCallback(WORD year, BYTE month, BYTE day, BYTE hour, BYTE minute, BYTE second, BYTE dayOfWeek,
                                  BYTE timeZone, BYTE daylightSaving)
{
    const OrvNotifyCallback callback = g_ClientCallback;
    if (!callback) return;
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_NetworkTime, sizeof(OrvNetworkTimePayload));
    // The seventh value goes to the fourth place.
    record.payload.NetworkTime = {year, month, day, dayOfWeek, hour, minute, second, timeZone, daylightSaving, 0};
    callback(&record);
}

void ORV_VENDOR_CALL EmergencyModeCallback(BYTE* mode)
{
    LOG_C("Emergency Mode Callback");
    const OrvNotifyCallback callback = g_ClientCallback;
    if (!callback || !mode) return;
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_EmergencyMode, sizeof(OrvFlagPayload));
    record.payload.Flag.bFlag = *mode;
    callback(&record);
}
