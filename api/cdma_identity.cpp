// Who a CDMA module is: serial numbers, voice number, network parameters, home system, carrier, time.

#include <string.h>

#include "api/OrvError.h"
#include "api/admission.h"
#include "api/hex_number.h"
#include "queries/cdma_carrier.h"
#include "state/cdma_provisioning.h"
#include "state/globals.h"
#include "talvek/cdma.h"
#include "utility/heap_buffer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

constexpr ULONG kMaxVendorSize = 255; // the vendor counts sizes in 8 bits
constexpr BYTE kHomeNameSize = 50;

// The serial numbers, terminated whatever the vendor wrote.
template <BYTE EsnSize, BYTE ImeiSize, BYTE MeidSize>
struct SerialNumbers {
    char esn[EsnSize + 1] = {};
    char imei[ImeiSize + 1] = {};
    char meid[MeidSize + 1] = {};

    ORV_RCODE Query()
    {
        return ConvertGobiError2OrvRcode(Gobi().GetSerialNumbers(EsnSize, esn, ImeiSize, imei, MeidSize, meid));
    }
};

// What strtoul gives for a text that it cannot read, or that needs more than 32 bits.
bool IsNoNumber(ULONG number) { return number == 0 || number == 0xFFFFFFFF; }

// The number that at most `digits` characters of `text` from `begin` on stand for; 0 where the text is shorter.
ULONG PartialHexNumber(const char* text, size_t begin, size_t digits)
{
    constexpr size_t kMostDigits = 8; // of 32 bits
    char part[kMostDigits + 1] = {};
    const size_t length = strlen(text);
    if (begin < length) memcpy(part, text + begin, length - begin < digits ? length - begin : digits);
    return HexNumber(part);
}

// Neither the state of the library nor the selected technology is looked at: the module itself is asked, and an API
// that has not been started finds none.
ORV_RCODE RequireLiveCdma()
{
    return Gobi().GetWirelessTech() == ORV_TECH_CDMA ? ORV_RCODE_OK : ORV_RCODE_NOT_AVAILABLE;
}

ORV_RCODE ReadHomeNetwork(WORD* sid, WORD* nid)
{
    WORD mcc = 0, mnc = 0;
    char name[kHomeNameSize] = {};
    return ConvertGobiError2OrvRcode(Gobi().GetHomeNetwork(&mcc, &mnc, sizeof name, name, sid, nid));
}

ORV_RCODE GiveBannerName(WCHAR* banner, ULONG size)
{
    CdmaCarrier carrier;
    const ORV_RCODE result = carrier.Query(Gobi());
    ULONG length = 0;
    for (; carrier.name[length] && length < size && !carrier.is_kt52; ++length)
        banner[length] = carrier.name[length];
    char name[32] = {};
    OV_TtoA(carrier.name, name, sizeof name - 1);
    LOG_C("Display banner Name = %s and return code = %d", name, result);
    return result;
}

} // namespace

// --- serial numbers and numbers --------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetESN(void) { return ORV_RCODE_UNSUPPORTED; }

ORV_RCODE ORV_CALL OrvGetESNGobi(ULONG* esn)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!esn) return ORV_RCODE_BAD_PARAMETER;
    SerialNumbers<16, 32, 32> numbers;
    if (const ORV_RCODE failed = numbers.Query()) return failed;
    if (numbers.esn[0] == 0) return ORV_RCODE_OK;
    const ULONG number = HexNumber(numbers.esn);
    *esn = number;
    if (!IsNoNumber(number)) return ORV_RCODE_OK;
    LOG_C("strtoul failed and returned value = %ld", number);
    return ORV_RCODE_FAILED;
}

ORV_RCODE ORV_CALL OrvGetMEIDESN(ORV_MEID_ESN* record)
{
    if (const ORV_RCODE refused = RequireAvailable()) return refused; // serves either technology
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    SerialNumbers<50, 50, 50> numbers;
    if (const ORV_RCODE failed = numbers.Query()) return failed;

    constexpr size_t kHighDigits = 6, kLowDigits = 8;
    record->bMeidValid = record->bEsnValid = numbers.meid[0] != 0; // both from the MEID
    record->wReserved = 0;
    record->uReserved = 0;
    record->uMeidHigh = PartialHexNumber(numbers.meid, 0, kHighDigits);
    record->uMeidLow = PartialHexNumber(numbers.meid, kHighDigits, kLowDigits);
    record->uPesn = HexNumber(numbers.esn);
    ORV_RCODE result = ORV_RCODE_OK;
    if (IsNoNumber(record->uMeidHigh) || IsNoNumber(record->uMeidLow) || IsNoNumber(record->uPesn)) {
        LOG_C("strtoul failed on either meid or esn");
        result = ORV_RCODE_FAILED;
    }
    LOG_C("Meid_High = %X  Meid_Low = %X PESN = %X", record->uMeidHigh, record->uMeidLow, record->uPesn);
    return result;
}

ORV_RCODE ORV_CALL OrvGetPhoneNumber(WCHAR* number, ULONG size)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!number || size == 0) return ORV_RCODE_BAD_PARAMETER;
    const ULONG room = size < kMaxVendorSize ? size : kMaxVendorSize;
    const HeapBuffer text(room + 1);
    if (!text.As<char>()) return ORV_RCODE_OK; // nothing is written
    char min[20] = {};
    const ORV_RCODE result =
        ConvertGobiError2OrvRcode(Gobi().GetVoiceNumber(static_cast<BYTE>(room), text.As<char>(), sizeof min, min));
    if (result == ORV_RCODE_OK) OV_AtoT(text.As<char>(), number, size);
    return result;
}

// --- network parameters ----------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetCDMANetworkParameters(BYTE* slotCycleIndex, BYTE* stationClassMark, BYTE* homeOnly,
                                               BYTE* sidRegistration, BYTE* nidRegistration, BYTE* forceRev0,
                                               BYTE* customScp, ULONG* protocol, ULONG* broadcast, ULONG* application,
                                               ULONG* roaming)
{
    if (const ORV_RCODE refused = RequireLiveCdma()) return refused;
    Gobi().GetCDMANetworkParameters(slotCycleIndex, stationClassMark, homeOnly, sidRegistration, nidRegistration,
                                    forceRev0, customScp, protocol, broadcast, application, roaming);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvIsModemReady(void)
{
    if (const ORV_RCODE refused = RequireLiveCdma()) return refused;
    CdmaNetworkParameters read = {};
    const ULONG status = Gobi().GetCDMANetworkParameters(
        &read.slot_cycle_index, &read.station_class_mark, &read.home_only, &read.sid_registration,
        &read.nid_registration, &read.force_rev0, &read.custom_scp, &read.protocol, &read.broadcast, &read.application,
        &read.roaming);
    if (status == 0) {
        g_CdmaNetworkParameters = read;
        g_CdmaNetworkParametersRead = 1;
    }
    g_PstPendingMask = 0;
    memset(g_szSpc, 0, sizeof g_szSpc);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetPRLVersion(WORD* version)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!version) return ORV_RCODE_BAD_PARAMETER;
    WORD read = 0;
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(Gobi().GetPRLVersion(&read))) return failed;
    *version = read;
    LOG_C("PRL Version = %u", read);
    return ORV_RCODE_OK;
}

// --- home network and carrier ----------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetTechSID(WORD* sid)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!sid) return ORV_RCODE_BAD_PARAMETER;
    WORD nid = 0;
    return ReadHomeNetwork(sid, &nid); // straight into the caller's variable
}

ORV_RCODE ORV_CALL OrvGetTechNID(WORD* nid)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!nid) return ORV_RCODE_BAD_PARAMETER;
    WORD sid = 0;
    return ReadHomeNetwork(&sid, nid); // straight into the caller's variable
}

ORV_RCODE ORV_CALL OrvGetCarrierID(int32_t* carrier)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!carrier) return ORV_RCODE_BAD_PARAMETER;
    CdmaCarrier found;
    if (const ORV_RCODE failed = found.Query(Gobi())) return failed;
    *carrier = found.id;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstGetDisplayBannerName(WCHAR* banner, ULONG size)
{
    if (banner) memset(banner, 0, size_t{size} * sizeof *banner); // before the guards
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!banner || size == 0) return ORV_RCODE_BAD_PARAMETER;
    return GiveBannerName(banner, size);
}

// --- time ------------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetSystemTime(ULONGLONG*, ULONG*)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    ULONGLONG time_stamp = 0;
    ULONG time_source = 0;
    return ConvertGobiError2OrvRcode(Gobi().GetNetworkTime(&time_stamp, &time_source)); // the outputs stay as they are
}
