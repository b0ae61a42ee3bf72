// The scan for GSM/UMTS networks, and the reading of its result.

#include <string.h>

#include <iterator>

#include "api/admission.h"
#include "notify/direct.h"
#include "state/globals.h"
#include "state/gsm_network.h"
#include "state/sync_block.h"
#include "talvek/gsm_network.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

// Index: the vendor's radio access technology.
constexpr ULONG kRats[] = {ORV_PLMN_RAT_UNKNOWN, ORV_PLMN_RAT_UNKNOWN, ORV_PLMN_RAT_UNKNOWN,
                           ORV_PLMN_RAT_UNKNOWN, ORV_PLMN_RAT_GSM,     ORV_PLMN_RAT_UMTS};

// clang-format off
constexpr const char* kEntryText = "g_PlmnList.sNwInfo[Counter].MCC = %d, MNC = %d, g_RATInfoList.sRATInfo[Counter].MCC = %d, MNC= %d, RAT =%d ";
constexpr const char* kNothingFound = "GOBI API PerformNetworkScan/PerformNetworkRATScan return OK, but number of PLMN available is zero";
// clang-format on

constexpr BYTE kRoom = GOBI_MAX_SCANNED_NETWORKS;

BYTE Bounded(BYTE count) { return count < kRoom ? count : kRoom; }

// What one scan thread works with, so that two of them never meet.
struct Scan {
    PlmnList networks = {};
    RATInfoList rats = {};
    ULONG status = 0; // the vendor's, of the last air server

    // Networks alone.
    void Plain()
    {
        status = g_GobiDll.PerformNetworkScan(&networks.uListSize, reinterpret_cast<BYTE*>(networks.sNwInfo));
        if (status != 0)
            LOG_C("PerformNetworkScan failed, error = %d, Network info size = %d", status, networks.uListSize);
        networks.uListSize = status == 0 ? Bounded(networks.uListSize) : static_cast<BYTE>(0);
        rats.uListSize = 0;
    }

    // Networks and the technology of each.
    void WithTechnologies()
    {
        status = g_GobiDll.PerformNetworkRATScan(&networks.uListSize, reinterpret_cast<BYTE*>(networks.sNwInfo),
                                                 &rats.uListSize, reinterpret_cast<BYTE*>(rats.sRATInfo));
        if (status != 0) {
            LOG_C("PerformNetworkRATScan failed, error = %d", status);
            networks.uListSize = rats.uListSize = 0;
            return;
        }
        networks.uListSize = Bounded(networks.uListSize);
        rats.uListSize = Bounded(rats.uListSize);
        LOG_C("g_PlmnList.uListSize = %d, g_RATInfoList.uListSize = %d", networks.uListSize, rats.uListSize);
        for (BYTE i = 0; i < networks.uListSize; ++i)
            LOG_C(kEntryText, networks.sNwInfo[i].mcc, networks.sNwInfo[i].mnc, rats.sRATInfo[i].mcc,
                  rats.sRATInfo[i].mnc, rats.sRATInfo[i].rat);
    }
};

OrvAirServerList AirServers()
{
    const OrvSyncGuard guard;
    return g_AirServerList;
}

void TellResult(const Scan& scan)
{
    if (!IsEnabled(ORV_NOTIFY_PLMNSearchDone)) return;
    const bool found = scan.status == 0 && scan.networks.uListSize != 0;
    if (scan.status == 0 && !found) LOG_C(kNothingFound);
    DeliverValueDirectly(ORV_NOTIFY_PLMNSearchDone, found ? 1 : 0);
}

DWORD WINAPI PerformNetworkScanThread(LPVOID)
{
    LOG_C("Entering PerformNetworkScan thread");
    const OrvAirServerList servers = AirServers();
    if (servers.numAirServers == 0) {
        LOG_C("GobiPerformNetworkScan:: There are no AirServers available.");
        PublishNoScan();
        return 0;
    }
    Scan scan;
    for (ULONG i = 0; i < servers.numAirServers && i < ORV_MAX_AIR_SERVERS; ++i) {
        scan.networks.uListSize = scan.rats.uListSize = kRoom;
        if (servers.airServers[i].uDeviceID == ORV_DEVICE_5101)
            scan.Plain();
        else
            scan.WithTechnologies();
    }
    PublishScan(scan.networks, scan.rats);
    TellResult(scan);
    LOG_C("Leaving PerformNetworkScan thread");
    return 0;
}

// The technology of the entry that is read next.
ULONG CurrentRat()
{
    if (g_AirServerList.airServers[0].uDeviceID != ORV_DEVICE_5111) return ORV_PLMN_RAT_UNKNOWN;
    if (g_RATReadIndex >= g_RATInfoList.uListSize) return ORV_PLMN_RAT_UNKNOWN;
    const ULONG rat = g_RATInfoList.sRATInfo[g_RATReadIndex].rat;
    return rat < std::size(kRats) ? kRats[rat] : static_cast<ULONG>(ORV_PLMN_RAT_UNKNOWN);
}

BYTE Holds(ULONG property) { return property == 1 ? 1 : 0; }

} // namespace

ORV_RCODE ORV_CALL OrvStartPLMNSearch(void)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_UNSUPPORTED)) return refused;
    const HANDLE thread = CreateThread(nullptr, 0, PerformNetworkScanThread, nullptr, 0, nullptr);
    if (!thread) {
        LOG_C("Create thread failed forOrvStartPLMNSearch ");
        return ORV_RCODE_STARTUP_FAILED;
    }
    CloseHandle(thread);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetPLMNSelection(OrvPlmnRecord* record)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_UNSUPPORTED)) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    const OrvSyncGuard guard; // a scan may end meanwhile
    if (g_PlmnList.uListSize == 0) return ORV_RCODE_FAILED;
    if (g_PlmnReadIndex >= g_PlmnList.uListSize) return ORV_RCODE_VENDOR_1026;

    const GobiNetworkInfo& network = g_PlmnList.sNwInfo[g_PlmnReadIndex];
    constexpr size_t kNameLength = std::size(OrvPlmnRecord().szShortName) - 1;
    char name[kNameLength + 1] = {};
    memcpy(name, network.description, kNameLength);
    memset(record, 0, sizeof *record);
    record->sizeStruct = sizeof *record;
    record->eMode = ORV_PLMN_MANUAL_UMTS;
    OV_AtoT(name, record->szShortName, kNameLength + 1);
    record->nMCC = network.mcc;
    record->nMNC = network.mnc;
    record->eRat = CurrentRat();
    record->bInUse = Holds(network.inUse);
    record->bForbidden = Holds(network.forbidden);
    record->bRoaming = Holds(network.roaming);
    record->bPreferred = Holds(network.preferred);
    record->bMore = g_PlmnReadIndex + 1 < g_PlmnList.uListSize ? 1 : 0;
    ++g_PlmnReadIndex;
    ++g_RATReadIndex;
    return ORV_RCODE_OK;
}
