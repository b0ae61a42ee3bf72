// Signal strength and data capabilities.

#include <stdlib.h>

#include "api/OrvError.h"
#include "notify/adapters.h"
#include "notify/delivery.h"
#include "queries/gsm_system_status.h"
#include "queries/serving_network.h"
#include "queries/signal_strengths.h"
#include "state/globals.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

// Radio interfaces as the module numbers them.
constexpr ULONG kInterfaceNone = 0;
constexpr ULONG kInterfaceCdma = 1;
constexpr ULONG kInterfaceHdr = 2;
constexpr ULONG kInterfaceGsm = 4;
constexpr ULONG kInterfaceUmts = 5;
constexpr ULONG kInterfaceThirdKind = 8;

// Bits of the data capability mask.
constexpr ULONG DataSystem_NO_SERVICE = 0;
constexpr ULONG kCapability1x = 0x20;
constexpr ULONG kCapabilityHdr0 = 0x40;
constexpr ULONG kCapabilityHdrA = 0x80;

// What the signal values become when the serving system offers nothing.
constexpr int32_t kStrengthWithoutService = 6;

constexpr ULONG kService = 2;
constexpr ULONG kServiceHdrA = 4;

void ResetCdmaSignal()
{
    g_CdmaRssi = kNoSignal;
    g_CdmaEcio = kNoEcio;
}

void ResetHdrSignal()
{
    g_HdrRssi = kNoSignal;
    g_HdrEcio = kNoEcio;
}

int16_t Low16(int32_t value) { return static_cast<int16_t>(value); }

struct SignalEvent {
    int32_t strength;
    ULONG radio_interface; // the event's, then the one that is reported
    bool has_system_status = false;
    OrvGsmSystemStatus system_status = {};
    ULONG session_state = 0;

    void Dispatch(COrvNotify& registry)
    {
        if (!registry.Admit(NotifySource::SignalStrength)) return;
        COrvGobiDll& gobi = *registry.Gobi();
        if (g_WirelessTech == ORV_TECH_UMTS) has_system_status = QueryGsmSystemStatus(gobi, &system_status) == 0;
        ChooseInterface(gobi);
        UpdateCapabilities(gobi);
        if (has_system_status && gobi.GetSessionState(&session_state) != 0) session_state = 0;
        registry.Walk(NotifySource::SignalStrength, *this);
    }

    // Reads the strength of each interface that is in use and settles which one is reported.
    void ChooseInterface(COrvGobiDll& gobi)
    {
        SignalStrengths signal;
        bool cdma = false, hdr = false, third = false;
        signal.Query(gobi); // what cannot be read is not there
        for (ULONG i = 0; i < signal.count; ++i) {
            const int32_t strength_dbm = -static_cast<int32_t>(signal.Magnitude(i));
            if (signal.radio_interfaces[i] == kInterfaceHdr) {
                g_HdrRssi = strength_dbm;
                hdr = true;
            } else if (signal.radio_interfaces[i] == kInterfaceCdma) {
                g_CdmaRssi = strength_dbm;
                cdma = true;
            } else if (signal.radio_interfaces[i] == kInterfaceThirdKind && g_WirelessTech == ORV_TECH_UMTS) {
                third = true;
            }
        }
        if (third)
            radio_interface = kInterfaceThirdKind;
        else if (hdr)
            radio_interface = kInterfaceHdr;
        else if (cdma)
            radio_interface = kInterfaceCdma;
        // The CDMA values are those of the pairs alone: a kind that is missing has no signal, whatever the event said.
        const bool is_cdma_system = radio_interface == kInterfaceCdma || radio_interface == kInterfaceHdr;
        if (is_cdma_system && !cdma) ResetCdmaSignal();
        if (is_cdma_system && !hdr) ResetHdrSignal();
    }

    // Brings g_DataCapsMask up to date with the serving network.
    void UpdateCapabilities(COrvGobiDll& gobi)
    {
        ServingNetworkCaps caps;
        if (caps.Query(gobi) == 0) g_DataCapsMask = g_DataCapsMask | BandListToMask(caps.count, caps.list);
        if (radio_interface == kInterfaceNone) {
            TBD_ASSERT(g_DataCapsMask == DataSystem_NO_SERVICE,
                       "ASSERTION FAILURE: ===>g_DataCapsMask == DataSystem_NO_SERVICE");
            g_DataCapsMask = DataSystem_NO_SERVICE;
            return;
        }
        if (g_DataCapsMask != DataSystem_NO_SERVICE) return;
        if (const ULONG status = caps.Query(gobi)) {
            LOG_C("GetServingNetworkCaps returns status = %d", status);
            return;
        }
        const ULONG mask = BandListToMask(caps.count, caps.list);
        if (mask == DataSystem_NO_SERVICE) return;
        g_DataCapsMask = mask;
        LOG_C("Received radioInterface = %d, SS = %d, but g_DataCapsMask was NO SERVICE and now updated to %d",
              radio_interface, strength, mask);
    }

    Outcome Fill(OrvNotifyRecord& record, const szNotifyItem& item)
    {
        const bool is_cdma_system = radio_interface == kInterfaceCdma || radio_interface == kInterfaceHdr;
        const bool is_gsm_system = radio_interface == kInterfaceGsm || radio_interface == kInterfaceUmts ||
                                   radio_interface == kInterfaceThirdKind;
        const ULONG mask = g_DataCapsMask;
        OrvNotifyPayload& payload = record.payload;
        switch (item.aNotify) {
        case ORV_NOTIFY_SignalStrength:
            if (!is_cdma_system && !is_gsm_system) return Outcome::Nothing;
            record.uPayloadSize = sizeof payload.SignalStrength;
            payload.SignalStrength.nRssi = is_cdma_system ? g_CdmaRssi.Load() : -abs(strength);
            payload.SignalStrength.nEcio = is_cdma_system ? g_CdmaEcio.Load() : kNoEcio;
            return Outcome::Deliver;
        case ORV_NOTIFY_HdrSignalStrength:
            if (!is_cdma_system) return Outcome::Nothing;
            record.uPayloadSize = sizeof payload.HdrSignalStrength;
            payload.HdrSignalStrength.nRssi = g_HdrRssi;
            return Outcome::Deliver;
        case ORV_NOTIFY_CdmaSignalQuality:
            if (!is_cdma_system) return Outcome::Nothing;
            record.uPayloadSize = sizeof payload.CdmaSignalQuality;
            payload.CdmaSignalQuality = {Low16(g_CdmaEcio), Low16(g_CdmaRssi), Low16(g_HdrEcio), Low16(g_HdrRssi), 0};
            return Outcome::Deliver;
        case ORV_NOTIFY_CdmaService:
            if (mask != 0 && !(mask & kCapability1x)) return Outcome::Nothing;
            record.uPayloadSize = sizeof payload.Value;
            payload.Value.uValue = mask != 0 ? kService : 0;
            return Outcome::Deliver;
        case ORV_NOTIFY_HdrService:
            if (mask != 0 && !(mask & (kCapabilityHdr0 | kCapabilityHdrA))) return Outcome::Nothing;
            record.uPayloadSize = sizeof payload.Value;
            if (mask != 0) payload.Value.uValue = mask & kCapabilityHdr0 ? kService : kServiceHdrA;
            return Outcome::Deliver;
        case ORV_NOTIFY_GsmSystemStatus:
            if (!has_system_status) return Outcome::Nothing;
            record.uPayloadSize = sizeof payload.GsmSystemStatus;
            payload.GsmSystemStatus = system_status;
            return Outcome::Deliver;
        case ORV_NOTIFY_GsmPacketState:
            if (!has_system_status) return Outcome::Nothing;
            record.uPayloadSize = sizeof payload.GsmPacketState;
            payload.GsmPacketState.uSessionState = session_state;
            if (is_gsm_system) payload.GsmPacketState.uTechnology = radio_interface == kInterfaceGsm ? 1 : 3;
            return Outcome::Deliver;
        default:
            return Outcome::Nothing;
        }
    }
};

// Reads the last strength when it runs, so two quick events may both deliver the later one.
DWORD WINAPI SignalThread(LPVOID)
{
    DispatchLastSignalStrength();
    return 0;
}

} // namespace

void DispatchLastSignalStrength() { DeliverUnderLock(SignalEvent{g_LastSignalStrength, g_LastRadioInterface}); }

void ORV_VENDOR_CALL GobiAPISignalStrengthCallback(ORV_INT8 strength, ULONG radioInterface)
{
    g_LastSignalStrength = strength;
    g_LastRadioInterface = radioInterface;
    LOG_C("GobiAPISignalStrengthCallback: signalStrength = %d, radioInterface = %d", strength, radioInterface);
    StartDelivery(SignalThread, nullptr);
}

void ORV_VENDOR_CALL GobiAPIDataCapabilities(BYTE count, BYTE* capabilities)
{
    const ULONG mask = BandListToMask(count, capabilities);
    g_DataCapsMask = mask;
    LOG_C("GobiAPIDataCapabilities: g_DataCapsMask = %d", mask);
    if (mask == DataSystem_NO_SERVICE) {
        g_LastSignalStrength = kStrengthWithoutService;
        g_LastRadioInterface = kInterfaceNone;
        ResetCdmaSignal();
        ResetHdrSignal();
    }
    StartDelivery(SignalThread, nullptr);
}
