// How a CDMA module is served: signal, channel, band, service and roaming.

#include "api/OrvError.h"
#include "api/admission.h"
#include "queries/rf_info.h"
#include "queries/serving_network.h"
#include "queries/signal_strengths.h"
#include "state/globals.h"
#include "talvek/cdma.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

// The kind of network that serves.
constexpr ULONG kRanUnknown = 0;
constexpr ULONG kRanCdma = 1;

constexpr ULONG kNoService = 0;
constexpr ULONG kService = 2;
constexpr ULONG kHdrService = 4;

constexpr ULONG kCdmaBaseStation = 6;
constexpr ULONG kOtherBaseStation = 0;

// Whether OrvGetRssi reports that radio interface, on the module that is selected.
bool IsReported(ULONG radio_interface)
{
    const ULONG technology = g_WirelessTech;
    if (technology == ORV_TECH_CDMA) return radio_interface == GOBI_RADIO_CDMA_1XRTT;
    if (technology == ORV_TECH_UMTS) return radio_interface == GOBI_RADIO_GSM || radio_interface == GOBI_RADIO_UMTS;
    return false;
}

// The guards and the question of a function with one output. `default_value` is written before them.
ORV_RCODE ReadRFInfo(ULONG* out, ULONG default_value, RFInfo& info)
{
    if (out) *out = default_value;
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!out) return ORV_RCODE_BAD_PARAMETER;
    return ConvertGobiError2OrvRcode(info.Query(Gobi()));
}

ORV_RCODE ReadServingNetwork(const ULONG* out, ServingNetwork& network)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!out) return ORV_RCODE_BAD_PARAMETER;
    return ConvertGobiError2OrvRcode(network.Query(Gobi()));
}

// 18, with `text` in the log, unless CDMA serves over that radio interface.
ORV_RCODE RequireServedBy(const ServingNetwork& network, BYTE radio_interface, const char* text)
{
    const BYTE index = network.IndexOf(radio_interface);
    if (network.ran == kRanCdma && index != ServingNetwork::kNotListed) return ORV_RCODE_OK;
    LOG_C(text, network.ran, index);
    return ORV_RCODE_NOT_SERVED;
}

ORV_RCODE GiveService(ULONG* out, BYTE radio_interface, ULONG registered, const char* text)
{
    ServingNetwork network;
    if (const ORV_RCODE failed = ReadServingNetwork(out, network)) return failed;
    if (network.ran != kRanUnknown) {
        if (const ORV_RCODE refused = RequireServedBy(network, radio_interface, text)) return refused;
    }
    *out = network.registration_state == ServingNetwork::kRegistered ? registered : kNoService;
    return ORV_RCODE_OK;
}

ORV_RCODE GiveRoaming(ULONG* out, BYTE radio_interface, const char* text)
{
    ServingNetwork network;
    if (const ORV_RCODE failed = ReadServingNetwork(out, network)) return failed;
    if (const ORV_RCODE refused = RequireServedBy(network, radio_interface, text)) return refused;
    *out = static_cast<WORD>(network.RoamingIndicator());
    return ORV_RCODE_OK;
}

ORV_RCODE GiveBaseStation(ULONG* out)
{
    ServingNetwork network;
    if (const ORV_RCODE failed = ReadServingNetwork(out, network)) return failed;
    *out = network.ran == kRanCdma ? kCdmaBaseStation : kOtherBaseStation;
    return ORV_RCODE_OK;
}

} // namespace

// --- signal ----------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetRssi(ULONG* rssi)
{
    if (rssi) *rssi = ORV_RSSI_NO_SIGNAL; // before the guard
    if (const ORV_RCODE refused = RequireAvailable()) return refused;
    if (!rssi) return ORV_RCODE_BAD_PARAMETER;
    SignalStrengths signal;
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(signal.Query(Gobi()))) return failed;
    for (ULONG i = 0; i < signal.count; ++i) {
        if (!IsReported(signal.radio_interfaces[i])) continue;
        *rssi = signal.Magnitude(i);
        break; // the first one counts
    }
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetRssiEcio(ORV_RSSI_ECIO* record)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    SignalStrengths signal;
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(signal.Query(Gobi()))) return failed;
    *record = {sizeof *record, ORV_RSSI_NO_SIGNAL, ORV_RSSI_NO_SIGNAL};
    for (ULONG i = 0; i < signal.count; ++i) { // of each kind the last one counts
        if (signal.radio_interfaces[i] == GOBI_RADIO_CDMA_1XRTT) record->u1xRssi = signal.Magnitude(i);
        if (signal.radio_interfaces[i] == GOBI_RADIO_CDMA_1XEVDO) record->uHdrRssi = signal.Magnitude(i);
    }
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetECIO(WORD* ecio)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!ecio) return ORV_RCODE_BAD_PARAMETER;
    *ecio = 0;
    return ORV_RCODE_OK;
}

// --- channel and band ------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetChannelNumber(ULONG* channel)
{
    RFInfo info;
    if (const ORV_RCODE failed = ReadRFInfo(channel, 0, info)) return failed;
    if (const GobiRFInfo* const instance = info.Find(GOBI_RADIO_CDMA_1XRTT)) *channel = instance->uChannel;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetTechBandClass(ULONG* bandClass)
{
    RFInfo info;
    if (const ORV_RCODE failed = ReadRFInfo(bandClass, 0, info)) return failed;
    const GobiRFInfo* const instance = info.Find(GOBI_RADIO_CDMA_1XRTT);
    if (!instance) {
        LOG_C("OrvGetTechBandClass failed, FindRFInfoIndex couldn't find any 1X interface, rfInfoSize = %d",
              info.count);
        return ORV_RCODE_UNKNOWN;
    }
    *bandClass = instance->uBandClass;
    return ORV_RCODE_OK;
}

// --- service and roaming ---------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetServiceIndication(ULONG* service)
{
    return GiveService(service, GOBI_RADIO_CDMA_1XRTT, kService,
                       "OrvGetServiceIndication detects incompatible RAN = %d, ifIndex = %d");
}

ORV_RCODE ORV_CALL OrvGetHdrSrvState(ULONG* state)
{
    return GiveService(state, GOBI_RADIO_CDMA_1XEVDO, kHdrService,
                       "OrvGetHdrSrvState detects incompatible RAN = %d, ifIndex = %d");
}

ORV_RCODE ORV_CALL OrvGetRoamingStatus(ULONG* status)
{
    return GiveRoaming(status, GOBI_RADIO_CDMA_1XRTT,
                       "OrvGetRoamingStatus detects incompatible RAN = %d, ifIndex = %d");
}

ORV_RCODE ORV_CALL OrvGetHdrRoamStatus(ULONG* status)
{
    return GiveRoaming(status, GOBI_RADIO_CDMA_1XEVDO,
                       "OrvGetHdrRoamStatus detects incompatible RAN = %d, ifIndex = %d");
}

ORV_RCODE ORV_CALL OrvGetCurrentBaseStation(ULONG* station)
{
    const ORV_RCODE result = GiveBaseStation(station);
    if (station) LOG_C("Current Base Station = %u", *station); // whatever the result
    return result;
}
