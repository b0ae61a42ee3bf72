#include "queries/gsm_system_status.h"

#include <iterator>

#include "api/OrvError.h"
#include "queries/rf_info.h"
#include "queries/serving_network.h"
#include "state/gsm_network.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

// clang-format off
constexpr const char* kRoamingOnly = "GetRFInfo returns error but GetSerrvingNetwork returns roaming = %d [Roaming = 0, Home, Roaming partner, operator defined value]";
// clang-format on

constexpr ULONG kRadioOff = 1;
constexpr ULONG kRadioOn = 2;
constexpr ULONG kRegistered = 1;
constexpr ULONG kAttached = 1;
constexpr ULONG kDataTechnologyEdge = 2;
constexpr ULONG kDataTechnologyHspa = 6;

// UMTS before GSM; null when the module uses neither.
const GobiRFInfo* ChooseInstance(const RFInfo& rf)
{
    ULONG technology = GOBI_RADIO_UMTS;
    const GobiRFInfo* instance = rf.Find(technology);
    if (!instance) instance = rf.Find(technology = GOBI_RADIO_GSM);
    if (!instance) LOG_C("FindRFInfoIndex (RadioTech = %d) fail with rfInfoSize = %d", technology, rf.count);
    return instance;
}

// The bearer, or without a session the best that the serving radio interfaces can do.
ULONG DataTechnology(COrvGobiDll& gobi, const ServingNetwork& network)
{
    ULONG bearer = 0;
    if (gobi.GetDataBearerTechnology(&bearer) == 0) return ConvertGobi2OrvDataBearerTech(bearer);
    if (network.IsServedBy(GOBI_RADIO_LTE) || network.IsServedBy(GOBI_RADIO_UMTS)) return kDataTechnologyHspa;
    return network.IsServedBy(GOBI_RADIO_GSM) ? kDataTechnologyEdge : 0;
}

} // namespace

ULONG QueryGsmSystemStatus(COrvGobiDll& gobi, OrvGsmSystemStatus* status)
{
    status->sizeStruct = sizeof *status;
    OrvGsmSystemStatus found = {};
    found.sizeStruct = sizeof found;

    ULONG operating_mode = 0;
    if (const ULONG failed = gobi.GetPower(&operating_mode)) {
        LOG_C("OrvGetGsmSystemStatus: GetPower failed uStatus = %d", failed);
        return failed;
    }
    found.eRadioState = ConvertGobi2OrvOperatingMode(operating_mode) == 0 ? kRadioOn : kRadioOff;

    RFInfo rf;
    const ULONG rf_failed = rf.Query(gobi);
    if (rf_failed != 0) {
        LOG_C("OrvGetGsmSystemStatus: GetRFInfo failed uStatus = %d", rf_failed);
    } else if (const GobiRFInfo* const instance = ChooseInstance(rf)) {
        found.eRadioInterface = instance->uRadioInterface;
        found.uBandClass = instance->uBandClass;
        found.uChannel = instance->uChannel;
    }

    ServingNetwork network;
    if (const ULONG failed = network.Query(gobi, kMaxServingInterfaces)) {
        LOG_C("OrvGetGsmSystemStatus: GetServingNetwork failed uStatus = %d", failed);
        return failed;
    }
    if (rf_failed != 0) {
        LOG_C(kRoamingOnly, network.roaming);
        if (network.registration_state == kRegistered)
            LOG_C("GetRFInfo returns error but GetSerrvingNetwork returns registrationState = Home");
    }
    found.eServiceStatus = ConvertGobi2OrvGSMServiceStatus(network.registration_state);
    found.eServiceDomain = ConvertGobi2OrvRoamFlags(network.cs_domain == kAttached, network.ps_domain == kAttached);
    found.eRegistration = network.registration_state;
    found.eRoaming = network.roaming;
    found.eSelectionMode = g_PlmnMode < 2 ? g_PlmnMode.Load() : 1;
    found.eDataTechnology = DataTechnology(gobi, network);
    found.uRan = network.ran;
    // Where the band is not known, the network still tells of a radio interface.
    if (found.eRadioInterface == GOBI_RADIO_NONE && network.radio_interface_count != 0)
        found.eRadioInterface = network.radio_interfaces[0];
    found.uCsState = network.cs_domain;
    found.uPsState = network.ps_domain;
    found.uMCC = network.mcc;
    found.uMNC = network.mnc;
    OV_AtoT(network.name, found.szNetworkName, static_cast<ULONG>(std::size(found.szNetworkName) - 1));
    *status = found;
    return 0;
}
