// The service programming code, the commit and the reset to factory settings, and what is fixed on these modules.

#include <string.h>

#include "api/OrvError.h"
#include "api/admission.h"
#include "api/device_reset.h"
#include "state/cdma_provisioning.h"
#include "talvek/cdma_provisioning.h"
#include "utility/format.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

constexpr ULONG kVendorTolerated = 1026; // does not end a commit
constexpr ULONG kActivationFailed = 0x3; // of the commit's error mask
constexpr ULONG kActivationItems = kPendingMdn | kPendingMin | kPendingHomeSidNid;

constexpr ULONG kActivationMask = 0x8004;
constexpr ULONG kMdnLength = 10;
constexpr ULONG kMaxMessageLength = 160;

ULONG CommitAccolc() { return Gobi().SetACCOLC(g_szSpc, static_cast<BYTE>(g_PstAccolc)); }

ULONG CommitActivation()
{
    char mdn[kMdnSize + 1] = {}, min[kMinSize + 1] = {};
    OV_TtoA(g_szPstMdn, mdn, kMdnSize);
    OV_TtoA(g_szPstMin, min, kMinSize);
    return Gobi().ActivateManual(g_szSpc, g_PstHomeSid, mdn, min, 0, nullptr, nullptr, nullptr);
}

// The guard of the functions that refuse an EV-DO user name or password, which has an order and a code of its own.
ORV_RCODE RequireTextThenCdma(const WCHAR* text)
{
    if (!text || !*text) return ORV_RCODE_BAD_PARAMETER;
    const ORV_RCODE refused = RequireCdma();
    return refused == ORV_RCODE_NOT_AVAILABLE ? ORV_RCODE_FAILED : refused;
}

} // namespace

// --- the code and the commit -----------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvPstUnlock(int32_t spc)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    char code[16] = {};
    const ULONG length = PrintNarrow(code, sizeof code, "%06d", spc);
    if (length == 0) {
        LOG_C("Fail to convert SubsidyLock to SPC");
        return ORV_RCODE_FAILED;
    }
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().ValidateSPC(code));
    if (result == ORV_RCODE_OK) {
        memset(g_szSpc, 0, sizeof g_szSpc);
        memcpy(g_szSpc, code, length < kSpcSize ? length : kSpcSize);
    }
    return result;
}

ORV_RCODE ORV_CALL OrvPstLock(ULONG, ULONG, BYTE* pbResetFollows, ULONG* puErrorMask)
{
    // Both come before the guard.
    if (pbResetFollows) *pbResetFollows = 0;
    if (puErrorMask) *puErrorMask = 0;
    if (g_PstPendingMask == 0) {
        LOG_C("No provisionning data to be commited. Return ORV_RCODE_FAILED");
        return ORV_RCODE_FAILED;
    }
    if (const ORV_RCODE refused = RequireCdma()) return refused;

    ORV_RCODE result = ORV_RCODE_OK; // of the last step that was taken
    if (g_PstPendingMask & kPendingAccolc) {
        const ULONG status = CommitAccolc();
        result = ConvertGobiError2OrvRcode(status);
        if (status == 0) {
            g_PstPendingMask &= ~kPendingAccolc;
        } else {
            LOG_C("OrvSetSecureCommitUpdate: failed at ACCOLC, status =%d", status);
            if (status != kVendorTolerated) return result;
        }
    }
    if ((g_PstPendingMask & kActivationItems) == kActivationItems) {
        const ULONG status = CommitActivation();
        result = ConvertGobiError2OrvRcode(status);
        if (status == 0) {
            g_PstPendingMask &= ~kActivationItems;
        } else {
            LOG_C("OrvSetSecureCommitUpdate: failed at ActivateManual");
            if (puErrorMask) *puErrorMask |= kActivationFailed;
            if (status != kVendorTolerated) return result;
        }
    }
    if (pbResetFollows) *pbResetFollows = 1;
    StartDeviceReset();
    return result;
}

ORV_RCODE ORV_CALL OrvRtnReset(ULONG eType)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (eType != ORV_RTN_FACTORY_DEFAULTS) {
        LOG_C("RTN reset type = %d not supported by Gobi", eType);
        return ORV_RCODE_NOT_SERVED;
    }
    return ConvertGobiError2OrvRcode(Gobi().ResetToFactoryDefaults(g_szSpc));
}

// --- what is fixed ---------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvPriGetActivationMask(ULONG* puMask)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!puMask) return ORV_RCODE_BAD_PARAMETER;
    *puMask = kActivationMask;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPriGetMDNLength(ULONG* puMin, ULONG* puMax)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!puMin || !puMax) return ORV_RCODE_BAD_PARAMETER;
    *puMin = *puMax = kMdnLength;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPriGetMaxMosmsLen(ULONG* puLength)
{
    if (puLength) *puLength = kMaxMessageLength; // before the guard
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return puLength ? ORV_RCODE_OK : ORV_RCODE_BAD_PARAMETER;
}

ORV_RCODE ORV_CALL OrvSetAKey(const char*)
{
    const ORV_RCODE refused = RequireCdma();
    return refused ? refused : ORV_RCODE_NOT_SERVED;
}

ORV_RCODE ORV_CALL OrvPstGetHdrUserId(WCHAR* text)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!text) return ORV_RCODE_BAD_PARAMETER;
    LOG_C("Gobi does allow to read HDR User Id, return blank");
    *text = 0;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstGetHdrPassword(WCHAR* text)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!text) return ORV_RCODE_BAD_PARAMETER;
    LOG_C("Gobi does allow to read HDR password, return blank");
    *text = 0;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstSetHdrUserId(const WCHAR* text)
{
    if (const ORV_RCODE refused = RequireTextThenCdma(text)) return refused;
    LOG_C("Gobi does allow to set HDR User ID, do nothing");
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstSetHdrPassword(const WCHAR* text)
{
    if (const ORV_RCODE refused = RequireTextThenCdma(text)) return refused;
    LOG_C("Gobi does allow to set HDR password, do nothing");
    return ORV_RCODE_OK;
}
