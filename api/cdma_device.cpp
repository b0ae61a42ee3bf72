// Power, counters and the fixed answers of the CDMA interface.

#include "api/OrvError.h"
#include "api/admission.h"
#include "talvek/cdma.h"
#include "talvek/core.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

constexpr ULONG kVendorMode5 = 5; // resets the module, and serves as its power-down

constexpr WORD kHybridOn = 1;
constexpr ULONG kGeneralFeatures = 2;
constexpr ULONG kIotaDisabled = 1;

template <class T>
ORV_RCODE GiveFixed(ORV_RCODE refused, T* out, T value)
{
    if (refused) return refused;
    if (!out) return ORV_RCODE_BAD_PARAMETER;
    *out = value;
    return ORV_RCODE_OK;
}

} // namespace

// --- power -----------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetPower(ULONG* mode)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!mode) return ORV_RCODE_BAD_PARAMETER;
    ULONG vendor_mode = 0;
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(Gobi().GetPower(&vendor_mode))) return failed;
    *mode = ConvertGobi2OrvOperatingMode(vendor_mode);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSetPower(ULONG mode)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().SetPower(ConvertOrv2GobiOperatingMode(mode)));
}

ORV_RCODE ORV_CALL OrvSetPowerDown(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().SetPower(kVendorMode5));
}

ORV_RCODE ORV_CALL OrvPowerSaveExit(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    LOG_C("OrvPowerSaveExit not supported by Gobi.");
    return ORV_RCODE_NOT_SERVED;
}

ORV_RCODE ORV_CALL OrvResetModem(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return OrvModemReset();
}

ORV_RCODE ORV_CALL OrvSetDormant(void) { return RequireCdma(); }

// --- counters --------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetByteCounter(ULONG* transmitted, ULONG* received)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    ULONG transmit_rate = 0, receive_rate = 0, max_transmit_rate = 0, max_receive_rate = 0;
    ULONGLONG duration_ms = 0;
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(
            Gobi().GetConnectionRate(&transmit_rate, &receive_rate, &max_transmit_rate, &max_receive_rate)))
        return failed;
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(Gobi().GetSessionDuration(&duration_ms))) return failed;
    const ULONGLONG duration_s = duration_ms / 1000;
    if (transmitted) *transmitted = static_cast<ULONG>(transmit_rate * duration_s);
    if (received) *received = static_cast<ULONG>(receive_rate * duration_s);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvResetByteCounter(void) { return RequireCdma(); }

// --- fixed answers ---------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetGeneralFeatureSupport(ULONG* features)
{
    return GiveFixed(RequireInitializedCdma(), features, kGeneralFeatures);
}

ORV_RCODE ORV_CALL OrvGetIOTADisable(ULONG* disabled) { return GiveFixed(RequireCdma(), disabled, kIotaDisabled); }

ORV_RCODE ORV_CALL OrvGetHdrHybrPref(ULONG* preference)
{
    return GiveFixed(RequireCdma(), preference, ULONG{kHybridOn});
}

ORV_RCODE ORV_CALL OrvSetHdrHybrPref(WORD preference)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (preference == kHybridOn) return ORV_RCODE_OK;
    LOG_C("OrvSetHdrHybrPref doesn't allow Hdr Hybrid Off");
    return ORV_RCODE_BAD_PARAMETER;
}

ORV_RCODE ORV_CALL OrvGetNDISMode(void) { return ORV_RCODE_OK; }

ORV_RCODE ORV_CALL OrvSetNDISPrefMode(void)
{
    LOG_C("OrvSetNDISPrefMode noop. Always return OK");
    return ORV_RCODE_OK;
}
