// GSM/UMTS modules: registration, identity, system status. The scan is in gsm_scan.cpp, the SIM's preferred operators
// in gsm_operators.cpp.

#include "talvek/gsm_network.h"

#include <string.h>

#include <iterator>

#include "api/OrvError.h"
#include "api/admission.h"
#include "notify/direct.h"
#include "queries/gsm_system_status.h"
#include "queries/serving_network.h"
#include "state/gsm_network.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

constexpr ULONG kVendorModeRadioOff = 6;
constexpr ULONG kAttach = 1;
constexpr ULONG kDetach = 2;
constexpr ULONG kRefusedAsNoEffect = 1026;
constexpr ULONG kRanUmts = 2;

// What the module is asked for, by mode.
struct Selection {
    ULONG type; // 1 automatic, 2 manual
    ULONG rat;  // 4 GSM, 5 UMTS; what the module takes for automatic, too
};
constexpr Selection kSelections[] = {{1, 4}, {2, 5}, {2, 4}};

ORV_RCODE Detach()
{
    const ULONG status = Gobi().InitiateDomainAttach(kDetach);
    if (status != 0) LOG_C("InitiateDomainAttach failed with Gobi error = %d", status);
    return ConvertGobiError2OrvRcode(status);
}

// A module that refuses a manual selection may be where it is to go. Returns the status that the request has then.
ULONG ExamineManualRefusal(WORD mcc, WORD mnc)
{
    LOG_C(" OrvSetPLMNMode eMode is Manual");
    ServingNetwork network;
    if (const ULONG failed = network.Query(Gobi(), kMaxServingInterfaces)) {
        LOG_C("Gobi API GetServingNetwork failed with error = %d", failed);
        return kRefusedAsNoEffect;
    }
    if (network.ran == kRanUmts && network.mcc == mcc && network.mnc == mnc) {
        LOG_C("Already on the same network");
        return 0;
    }
    LOG_C("Currently registered network is different, MCC=%d, MNC=%d", network.mcc, network.mnc);
    LOG_C("Gobi API InitiateNetworkRegistration failed with error = 1026");
    return kRefusedAsNoEffect;
}

// The decimal digits at the beginning, at most `width` of them.
ULONG DecimalPrefix(const char* text, ULONG width)
{
    ULONG value = 0;
    for (; width != 0 && *text >= '0' && *text <= '9'; --width, ++text)
        value = value * 10 + static_cast<ULONG>(*text - '0');
    return value;
}

void RaiseIfEnabled(ORV_NOTIFY id, ULONG value)
{
    if (IsEnabled(id)) DeliverValueDirectly(id, value);
}

} // namespace

// --- registration ----------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvSetPLMNMode(OrvPlmnRecord record)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_UNSUPPORTED)) return refused;
    if (record.eMode == ORV_PLMN_DETACH) return Detach();
    if (record.eMode >= std::size(kSelections)) return ORV_RCODE_BAD_PARAMETER;

    const Selection& selection = kSelections[record.eMode];
    const WORD mcc = static_cast<WORD>(record.nMCC);
    const WORD mnc = static_cast<WORD>(record.nMNC);
    ULONG status = Gobi().InitiateNetworkRegistration(selection.type, mcc, mnc, selection.rat);
    if (status == kRefusedAsNoEffect && record.eMode == ORV_PLMN_AUTOMATIC) {
        LOG_C(" OrvSetPLMNMode eMode is Automatic");
        status = 0;
    } else if (status == kRefusedAsNoEffect) {
        status = ExamineManualRefusal(mcc, mnc);
    }
    const ORV_RCODE result = ConvertGobiError2OrvRcode(status);
    if (result != ORV_RCODE_OK) {
        LOG_C("OrvSetPLMNMode failed Gobi error = %d", status);
        return result;
    }
    g_PlmnMode = record.eMode;
    RaiseIfEnabled(ORV_NOTIFY_PLMNModeSet, 0);
    if (record.eMode != ORV_PLMN_AUTOMATIC) RaiseIfEnabled(ORV_NOTIFY_PLMNManual, 1);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetPLMNMode(ULONG* mode)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_UNSUPPORTED)) return refused;
    if (!mode) return ORV_RCODE_BAD_PARAMETER;
    *mode = g_PlmnMode;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSetHostStartup(ULONG)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_UNSUPPORTED)) return refused;
    const ULONG status = Gobi().SetPower(kVendorModeRadioOff);
    LOG_C("OrvSetHostStartup->SetPower(GobiPowerMode_Off) returns uStatus = %d", status);
    if (const ULONG failed = Gobi().InitiateDomainAttach(kAttach))
        LOG_C("Sorry, couldn't help. InitiateDomainAttach returns uStatus = %d. Ignore it", failed);
    return ConvertGobiError2OrvRcode(status);
}

// --- identity --------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetNetworkProviderID(WCHAR* buffer, ULONG size)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!buffer || size == 0) return ORV_RCODE_VENDOR_5;
    ServingNetwork network;
    const ORV_RCODE result =
        ConvertGobiError2OrvRcode(network.Query(Gobi(), kMaxServingInterfaces, static_cast<BYTE>(size)));
    if (result == ORV_RCODE_OK && network.name[0] != 0) OV_AtoT(network.name, buffer, size);
    return result;
}

ORV_RCODE ORV_CALL OrvGetGsmIMSI(WCHAR* buffer, ULONG size, ULONG* mcc, ULONG* mnc)
{
    constexpr ULONG kImsiSize = 16;
    constexpr ULONG kPartLength = 3;
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!buffer || size == 0) return ORV_RCODE_VENDOR_5;
    if (!mcc || !mnc) return ORV_RCODE_BAD_PARAMETER;
    char imsi[kImsiSize + 1] = {};
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetIMSI(kImsiSize, imsi));
    if (result != ORV_RCODE_OK) return result;
    imsi[kImsiSize] = 0;

    const ULONG length = static_cast<ULONG>(strlen(imsi));
    const char* const rest = imsi + (length < 2 * kPartLength ? length : 2 * kPartLength);
    if (size < strlen(rest)) return ORV_RCODE_VENDOR_5;
    *mcc = DecimalPrefix(imsi, kPartLength);
    *mnc = length > kPartLength ? DecimalPrefix(imsi + kPartLength, kPartLength) : 0;
    OV_AtoT(rest, buffer, size);
    return result;
}

ORV_RCODE ORV_CALL OrvGetImei(ORV_IMEI* record)
{
    constexpr BYTE kEsnSize = 16, kImeiSize = 16, kMeidSize = 32;
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    char esn[kEsnSize + 1] = {}, imei[kImeiSize + 1] = {}, meid[kMeidSize + 1] = {};
    const ORV_RCODE result =
        ConvertGobiError2OrvRcode(Gobi().GetSerialNumbers(kEsnSize, esn, kImeiSize, imei, kMeidSize, meid));
    imei[kImeiSize] = 0;
    if (result != ORV_RCODE_OK || imei[0] == 0) return result;
    record->sizeStruct = sizeof *record;
    OV_AtoT(imei, record->szImei, static_cast<ULONG>(std::size(record->szImei)));
    return result;
}

// --- status ----------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetGsmSystemStatus(OrvGsmSystemStatus* status)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_UNSUPPORTED)) return refused;
    if (!status) return ORV_RCODE_BAD_PARAMETER;
    return ConvertGobiError2OrvRcode(QueryGsmSystemStatus(Gobi(), status));
}
