// Mobile IP: the mode, the profile in use, the profiles.

#include <string.h>

#include "api/OrvError.h"
#include "api/admission.h"
#include "state/cdma_provisioning.h"
#include "talvek/cdma_provisioning.h"
#include "utility/text_writer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

constexpr BYTE kNaiRoom = 100; // where only the rest of a profile is wanted

void WarnOfReset()
{
    LOG_C("This API needs to modem reset, if any application uses this API it needs to reset the modem");
}

// A profile as the module gives it.
struct Profile {
    BYTE enabled = 0, reverse_tunneling = 0;
    ULONG address = 0, primary_ha = 0, secondary_ha = 0, ha_spi = 0, aaa_spi = 0;
    char nai[256] = {}; // terminated

    ORV_RCODE Query(BYTE index, BYTE nai_room)
    {
        return ConvertGobiError2OrvRcode(Gobi().GetMobileIPProfile(index, &enabled, &address, &primary_ha,
                                                                   &secondary_ha, &reverse_tunneling, nai_room, nai,
                                                                   &ha_spi, &aaa_spi));
    }
};

// A shared secret as the vendor library wants it: terminated. Wiped at the end.
class SecretText {
public:
    SecretText(const BYTE* octets, BYTE length) { memcpy(m_text, octets, length); }
    ~SecretText()
    {
        for (volatile char& character : m_text)
            character = 0;
    }
    SecretText(const SecretText&) = delete;
    SecretText& operator=(const SecretText&) = delete;

    char* Text() { return m_text; }

private:
    char m_text[256] = {};
};

} // namespace

// --- mode and profile in use -----------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvPstSetDsQcMip(ULONG mode)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().SetMobileIP(mode));
}

ORV_RCODE ORV_CALL OrvPstGetDsQcMip(ULONG* puMode)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!puMode) return ORV_RCODE_BAD_PARAMETER;
    ULONG mode = 0;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetMobileIP(&mode));
    if (result == ORV_RCODE_OK) *puMode = mode;
    return result;
}

ORV_RCODE ORV_CALL OrvPstSetDsMipActiveProf(BYTE index)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().SetActiveMobileIPProfile(g_szSpc, index));
    WarnOfReset();
    return result;
}

ORV_RCODE ORV_CALL OrvPstGetDsMipActiveProf(BYTE* pbIndex)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pbIndex) return ORV_RCODE_BAD_PARAMETER;
    BYTE index = 0;
    if (const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetActiveMobileIPProfile(&index))) return result;
    *pbIndex = index;
    LOG_C("Active MIP profile index = %u", index);
    return ORV_RCODE_OK;
}

// --- a profile -------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvPstSetDsMipGenUser(BYTE index, BYTE reverseTunneling, ULONG homeAddress, ULONG primaryHaAddress,
                                         ULONG secondaryHaAddress, const char* nai, BYTE mnHaSpiEnable, ULONG mnHaSpi,
                                         BYTE mnAaaSpiEnable, ULONG mnAaaSpi)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!nai) return ORV_RCODE_BAD_PARAMETER;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().SetMobileIPProfile(
        g_szSpc, index, nullptr, &homeAddress, &primaryHaAddress, &secondaryHaAddress, &reverseTunneling,
        const_cast<char*>(nai), // only read
        mnHaSpiEnable ? &mnHaSpi : nullptr, mnAaaSpiEnable ? &mnAaaSpi : nullptr, nullptr, nullptr));
    WarnOfReset();
    return result;
}

ORV_RCODE ORV_CALL OrvPstGetDsMipGenUser(BYTE index, BYTE* pReverseTunneling, ULONG* pHomeAddress,
                                         ULONG* pPrimaryHaAddress, ULONG* pSecondaryHaAddress, BYTE naiSize, char* nai,
                                         BYTE* pMnHaSpiEnable, ULONG* pMnHaSpi, BYTE* pMnAaaSpiEnable, ULONG* pMnAaaSpi)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pReverseTunneling || !pHomeAddress || !pPrimaryHaAddress || !pSecondaryHaAddress || !nai || !pMnHaSpiEnable ||
        !pMnHaSpi || !pMnAaaSpiEnable || !pMnAaaSpi) {
        return ORV_RCODE_BAD_PARAMETER;
    }
    Profile profile;
    const ORV_RCODE result = profile.Query(index, naiSize);
    if (result == ORV_RCODE_OK) {
        *pReverseTunneling = profile.reverse_tunneling;
        *pHomeAddress = profile.address;
        *pPrimaryHaAddress = profile.primary_ha;
        *pSecondaryHaAddress = profile.secondary_ha;
        const ULONG length = BoundedLength(profile.nai, naiSize);
        memcpy(nai, profile.nai, length < naiSize ? length + 1 : length);
        *pMnHaSpiEnable = profile.ha_spi != 0 ? 1 : 0;
        *pMnHaSpi = profile.ha_spi;
        *pMnAaaSpiEnable = profile.aaa_spi != 0 ? 1 : 0;
        *pMnAaaSpi = profile.aaa_spi;
        LOG_C("pReverseTunneling = %u, pHomeAddress = %lu, pPrimaryHaAddress = %lu , pSecondaryHaAddress = %lu",
              *pReverseTunneling, *pHomeAddress, *pPrimaryHaAddress, *pSecondaryHaAddress);
        LOG_C("nai =%s,pMnHaSpiEnable = %u , pMnHaSpi = %lu , pMnAaaSpiEnable = %u, pMnAaaSpi = %lu", profile.nai,
              *pMnHaSpiEnable, *pMnHaSpi, *pMnAaaSpiEnable, *pMnAaaSpi);
    }
    LOG_C("Gobi GetMobileIPProfile returning: %d", result);
    return result;
}

ORV_RCODE ORV_CALL OrvPstSetDsMipSsUserProf(BYTE index, BYTE mnHaSsLength, const BYTE* mnHaSs, BYTE mnAaaSsLength,
                                            const BYTE* mnAaaSs)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!mnHaSs || !mnAaaSs) return ORV_RCODE_BAD_PARAMETER;
    SecretText ha(mnHaSs, mnHaSsLength), aaa(mnAaaSs, mnAaaSsLength);
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().SetMobileIPProfile(
        g_szSpc, index, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, ha.Text(), aaa.Text()));
    WarnOfReset();
    return result;
}

ORV_RCODE ORV_CALL OrvPstGetDsMipSsUserProf(BYTE, BYTE* pMnHaSsLength, BYTE*, BYTE* pMnAaaSsLength, BYTE*)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pMnHaSsLength || !pMnAaaSsLength) return ORV_RCODE_BAD_PARAMETER;
    LOG_C("Gobi module does not allow to read mnHaSs and mnAaaSs, return blank");
    *pMnHaSsLength = *pMnAaaSsLength = 0;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstGetDsMipEnableProf(BYTE index, BYTE* pbEnabled)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pbEnabled) return ORV_RCODE_BAD_PARAMETER;
    Profile profile;
    const ORV_RCODE result = profile.Query(index, kNaiRoom);
    if (result != ORV_RCODE_OK) LOG_C("Assuming Mobile IP profile index = %d NOT Enabled", index);
    *pbEnabled = result == ORV_RCODE_OK && profile.enabled != 0 ? 1 : 0; // also after a failure
    LOG_C("OrvGetMobileIPProfile returning: %d  for index = %d", result, index);
    return result;
}

ORV_RCODE ORV_CALL OrvGetMipErrCode(ULONG* puError)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!puError) return ORV_RCODE_BAD_PARAMETER;
    ULONG error = 0;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetLastMobileIPError(&error));
    if (result == ORV_RCODE_OK) *puError = error;
    LOG_C("GetLastMobileIPError gets to rc = %d", result);
    return result;
}

// --- on a module of any kind -----------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvSetMobileIPProfile(BYTE index, BYTE* pEnabled, ULONG* pHomeAddress, ULONG* pPrimaryHaAddress,
                                         ULONG* pSecondaryHaAddress, BYTE* pReverseTunneling, char* nai,
                                         ULONG* pMnHaSpi, ULONG* pMnAaaSpi, char* mnHaSs, char* mnAaaSs)
{
    TRACE_ENTRY("OrvSetMobileIPProfile");
    if (const ORV_RCODE refused = RequireInitializedMisspelt()) return refused;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(
        Gobi().SetMobileIPProfile(g_szSpc, index, pEnabled, pHomeAddress, pPrimaryHaAddress, pSecondaryHaAddress,
                                  pReverseTunneling, nai, pMnHaSpi, pMnAaaSpi, mnHaSs, mnAaaSs));
    if (result != ORV_RCODE_OK) TRACE_ERROR(TXT("OrvSetMobileIPProfile returning: %d"), result);
    return result;
}

ORV_RCODE ORV_CALL OrvGetMobileIPProfile(BYTE index, BYTE* pEnabled, ULONG* pHomeAddress, ULONG* pPrimaryHaAddress,
                                         ULONG* pSecondaryHaAddress, BYTE* pReverseTunneling, BYTE naiSize, char* nai,
                                         ULONG* pMnHaSpi, ULONG* pMnAaaSpi)
{
    TRACE_ENTRY("OrvSetMobileIPProfile"); // the other one's name
    if (const ORV_RCODE refused = RequireInitializedMisspelt()) return refused;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(
        Gobi().GetMobileIPProfile(index, pEnabled, pHomeAddress, pPrimaryHaAddress, pSecondaryHaAddress,
                                  pReverseTunneling, naiSize, nai, pMnHaSpi, pMnAaaSpi));
    if (result != ORV_RCODE_OK) TRACE_ERROR(TXT("OrvGetMobileIPProfile returning: %d"), result);
    return result;
}
