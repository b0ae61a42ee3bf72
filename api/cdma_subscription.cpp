// The items of the number assignment module: subscription, home system, registration and preferences.

#include <string.h>

#include "api/OrvError.h"
#include "api/admission.h"
#include "state/cdma_provisioning.h"
#include "talvek/cdma_provisioning.h"
#include "utility/text_writer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

// There is one NAM; readers and writers say so in words of their own.
void NoteNamOfReader(ULONG nam)
{
    if (nam != 0) LOG_C("Gobi doesn't support NAM = %d. Treated as Nam = 0", nam);
}

void NoteNamOfWriter(ULONG nam)
{
    if (nam != 0) LOG_C("Gobi only handles one Nam. Treated (Nam = %d) as 0", nam);
}

struct HomeNetwork {
    WORD mcc = 0, mnc = 0, sid = 0, nid = 0;
    char name[50] = {};

    ORV_RCODE Query()
    {
        return ConvertGobiError2OrvRcode(Gobi().GetHomeNetwork(&mcc, &mnc, sizeof name, name, &sid, &nid));
    }
};

// Puts a number of the home network into `out`, with its text.
ORV_RCODE GiveHomeNumber(ULONG nam, WORD* out, WORD HomeNetwork::*number, const char* text)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!out) return ORV_RCODE_BAD_PARAMETER;
    NoteNamOfReader(nam);
    HomeNetwork home;
    if (const ORV_RCODE result = home.Query()) return result;
    *out = home.*number;
    LOG_C(text, home.*number);
    return ORV_RCODE_OK;
}

// Puts one of the values that OrvIsModemReady read into `out`, with its text.
ORV_RCODE GiveRegistration(ULONG nam, BYTE* out, BYTE value, const char* text)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!out) return ORV_RCODE_BAD_PARAMETER;
    NoteNamOfReader(nam);
    *out = value;
    LOG_C(text, value);
    return ORV_RCODE_OK;
}

// --- the subscription records ----------------------------------------------------------------------------------------

struct Subscription {
    MinBasedImsi min_based = {};
    TrueImsi true_imsi = {};

    // Returns the vendor's status, which is logged when it is a failure.
    ULONG Read()
    {
        BYTE nam = kCurrentNam, mdn[kMdnSize] = {}, length = sizeof mdn;
        const ULONG status = Gobi().Get3Gpp2SubscriptionInfo(&nam, &min_based, &true_imsi, &length, mdn);
        if (status != 0) LOG_C("Get3Gpp2SubscriptionInfo failed, ret = %d", status);
        return status;
    }
    void Write() { Write(&min_based, &true_imsi, nullptr, nullptr); }
    static void WriteMdn(BYTE* length, BYTE* mdn) { Write(nullptr, nullptr, length, mdn); }

private:
    static constexpr BYTE kCurrentNam = 0xFF;

    static void Write(MinBasedImsi* min_based, TrueImsi* true_imsi, BYTE* length, BYTE* mdn)
    {
        BYTE nam = kCurrentNam;
        const ULONG status = Gobi().Set3Gpp2SubscriptionInfo(&nam, min_based, true_imsi, length, mdn);
        if (status != 0) LOG_C("Set3Gpp2SubscriptionInfo failed, ret = %d", status);
    }
};

// The first three digits of the MIN are S2, the others S1.
template <class Record>
void PutMin(Record& record, const char* min, ULONG length)
{
    constexpr ULONG kS2 = sizeof record.s2;
    memcpy(record.s2, min, length < kS2 ? length : kS2);
    if (length > kS2) memcpy(record.s1, min + kS2, length - kS2);
}

// At most `size` characters, and a terminator behind them.
void KeepText(WCHAR* kept, const WCHAR* text, ULONG size)
{
    const ULONG length = BoundedLength(text, size);
    memcpy(kept, text, length * sizeof *kept);
    kept[length] = 0;
}

// The vendor's roaming preference as the interface has it: the index is the vendor's.
constexpr ULONG kSystemPreferences[] = {3, 2, 10, 4};

} // namespace

// --- subscription ----------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvSetMobileDirNum(ULONG nam, const WCHAR* mdn)
{
    const ORV_RCODE refused = RequireCdma();
    if (refused == ORV_RCODE_OK) {
        if (!mdn) return ORV_RCODE_BAD_PARAMETER;
        NoteNamOfWriter(nam);
        KeepText(g_szPstMdn, mdn, kMdnSize);
        g_PstPendingMask |= kPendingMdn;
    }
    // A refused call writes too, what was kept before: the required rule.
    char narrow[kMdnSize + 1] = {};
    OV_TtoA(g_szPstMdn, narrow, kMdnSize);
    BYTE length = static_cast<BYTE>(strlen(narrow));
    Subscription::WriteMdn(&length, reinterpret_cast<BYTE*>(narrow));
    return refused;
}

ORV_RCODE ORV_CALL OrvSetIMSI(ULONG nam, const WCHAR* min)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!min) return ORV_RCODE_BAD_PARAMETER;
    NoteNamOfWriter(nam);
    KeepText(g_szPstMin, min, kMinSize);
    g_PstPendingMask |= kPendingMin;
    char narrow[kMinSize + 1] = {};
    OV_TtoA(g_szPstMin, narrow, kMinSize);
    const ULONG length = static_cast<ULONG>(strlen(narrow));

    Subscription subscription;
    subscription.Read(); // records that cannot be read are written as zeros with the new digits: the required rule
    PutMin(subscription.min_based, narrow, length);
    PutMin(subscription.true_imsi, narrow, length);
    subscription.Write();
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetCdmaIMSI(WCHAR* min)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!min) return ORV_RCODE_BAD_PARAMETER;
    Subscription subscription;
    if (const ULONG status = subscription.Read()) return ConvertGobiError2OrvRcode(status);
    const MinBasedImsi& record = subscription.min_based;
    char text[kMinSize + 1] = {};
    const ULONG length = BoundedLength(record.s2, sizeof record.s2);
    memcpy(text, record.s2, length);
    memcpy(text + length, record.s1, sizeof record.s1);
    LOG_C("CDMA IMSI (MIN) = %s", text);
    OV_AtoT(text, min, sizeof text);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstGetImsiMcc(ULONG nam, WORD* pwMcc)
{
    return GiveHomeNumber(nam, pwMcc, &HomeNetwork::mcc, "ImsiMcc = %d");
}

ORV_RCODE ORV_CALL OrvPstGetImsi1112(ULONG nam, WORD* pwDigits)
{
    return GiveHomeNumber(nam, pwDigits, &HomeNetwork::mnc, "Digits112 = %d");
}

ORV_RCODE ORV_CALL OrvPstSetImsiMcc(ULONG nam, WORD)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    NoteNamOfWriter(nam);
    LOG_C("Gobi module does not support SetIMSIMcc");
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstSetImsi1112(ULONG nam, WORD)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    NoteNamOfWriter(nam);
    LOG_C("Gobi module does not support SetImsi1112");
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstSetCurrentNam(ULONG nam)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    NoteNamOfWriter(nam);
    return ORV_RCODE_OK;
}

// --- home system, overload class, registration -----------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvPstGetHomeSidNid(ULONG nam, BYTE* sidNid)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!sidNid) return ORV_RCODE_BAD_PARAMETER;
    NoteNamOfReader(nam);
    HomeNetwork home;
    const ORV_RCODE result = home.Query();
    LOG_C("Home Sid = %u  and Home NID = %u, rc = %d", home.sid, home.nid, result);
    if (result != ORV_RCODE_OK) return result;
    const WORD words[] = {home.sid, home.nid};
    for (const WORD word : words) {
        *sidNid++ = static_cast<BYTE>(word);
        *sidNid++ = static_cast<BYTE>(word >> 8);
    }
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstSetHomeSidNid(ULONG nam, const BYTE* sidNid)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!sidNid) return ORV_RCODE_BAD_PARAMETER;
    NoteNamOfWriter(nam);
    g_PstHomeSid = static_cast<WORD>(sidNid[0] | sidNid[1] << 8);
    g_PstHomeNid = static_cast<WORD>(sidNid[2] | sidNid[3] << 8);
    g_PstPendingMask |= kPendingHomeSidNid;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstGetAccolc(ULONG nam, BYTE* pbAccolc)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pbAccolc) return ORV_RCODE_BAD_PARAMETER;
    NoteNamOfReader(nam);
    BYTE accolc = 0;
    if (const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetACCOLC(&accolc))) return result;
    *pbAccolc = accolc;
    LOG_C("Accolc = %d", accolc);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstSetAccolc(ULONG nam, WORD accolc)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    NoteNamOfWriter(nam);
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().SetACCOLC(g_szSpc, static_cast<BYTE>(accolc)));
    g_PstAccolc = accolc; // for the commit, also when the module refuses it now
    g_PstPendingMask |= kPendingAccolc;
    return result;
}

ORV_RCODE ORV_CALL OrvPstGetSci(BYTE* pbSci)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pbSci) return ORV_RCODE_BAD_PARAMETER;
    *pbSci = g_CdmaNetworkParameters.slot_cycle_index;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstSetSci(BYTE)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    LOG_C("Gobi module does not allo to set Slot cycle index");
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvPstGetTermHome(ULONG nam, BYTE* pbEnabled)
{
    return GiveRegistration(nam, pbEnabled, g_CdmaNetworkParameters.home_only, "TermHomeEnable = %d");
}

ORV_RCODE ORV_CALL OrvPstGetTermSid(ULONG nam, BYTE* pbEnabled)
{
    return GiveRegistration(nam, pbEnabled, g_CdmaNetworkParameters.sid_registration, "TermSidEnable = %d");
}

ORV_RCODE ORV_CALL OrvPstGetTermNid(ULONG nam, BYTE* pbEnabled)
{
    return GiveRegistration(nam, pbEnabled, g_CdmaNetworkParameters.nid_registration, "TermNidEnable = %d");
}

// --- preferences -----------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvPstGetPrefMode(ULONG nam, ULONG* puMode)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!puMode) return ORV_RCODE_BAD_PARAMETER;
    NoteNamOfReader(nam);
    ULONG technology = 0, duration = 0, permanent = 0;
    ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetNetworkPreference(&technology, &duration, &permanent));
    if (result == ORV_RCODE_OK) {
        LOG_C("Gobi GetNetworkPreference : uTechPref = %lu, uDuration = %lu, uPermanentTechPref = %lu", technology,
              duration, permanent);
        BYTE rejected = 0;
        *puMode = ConvertGobi2OrvNvPrefOpMode(technology, &rejected); // a rejected one reads 0
        if (rejected) result = ORV_RCODE_UNKNOWN;
    }
    LOG_C("Orv PrefMode = %d", *puMode); // after a failure too
    return result;
}

ORV_RCODE ORV_CALL OrvPstSetPrefMode(ULONG nam, WORD mode)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    NoteNamOfWriter(nam);
    BYTE rejected = 0;
    const ULONG technology = ConvertOrv2GobiNvPrefOpMode(mode, &rejected);
    if (rejected) return ORV_RCODE_UNSUPPORTED;
    return ConvertGobiError2OrvRcode(Gobi().SetNetworkPreference(technology, 0));
}

ORV_RCODE ORV_CALL OrvPstGetSystemPref(ULONG nam, ULONG* puPref)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!puPref) return ORV_RCODE_BAD_PARAMETER;
    NoteNamOfReader(nam);
    CdmaNetworkParameters read = {};
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetCDMANetworkParameters(
        &read.slot_cycle_index, &read.station_class_mark, &read.home_only, &read.sid_registration,
        &read.nid_registration, &read.force_rev0, &read.custom_scp, &read.protocol, &read.broadcast, &read.application,
        &read.roaming));
    if (result != ORV_RCODE_OK) return result;
    TBD_ASSERT(g_CdmaNetworkParameters.roaming == read.roaming, "ASSERTION FAILURE: ===>g_ulRoaming == ulNewRoaming");
    if (read.roaming >= sizeof kSystemPreferences / sizeof kSystemPreferences[0]) {
        LOG_C("OrvPstGetSystemPref fail: Out of range ulNewRoaming = %d", read.roaming);
        return ORV_RCODE_UNKNOWN;
    }
    *puPref = kSystemPreferences[read.roaming];
    return ORV_RCODE_OK;
}

namespace {

constexpr ULONG kAnyRoaming = 255; // of the roaming preferences that a client asks for
constexpr ULONG kAutomatic = 0, kHomeOnly = 1, kAffiliated = 2, kHomeAndAffiliated = 3; // of the vendor's

// False for a combination that means nothing.
bool ChooseRoaming(ULONG roam, ULONG band, ULONG* chosen)
{
    switch (roam) {
    case kHomeOnly:
    case kAffiliated:
        *chosen = roam;
        return true;
    case kAnyRoaming:
        *chosen = band == 1 || band == 2 ? kHomeAndAffiliated : kAutomatic;
        return band == 1 || band == 2 || band == 65535 || band == 65536;
    default:
        return false;
    }
}

} // namespace

ORV_RCODE ORV_CALL OrvSetTempModePref(ULONG mode, ULONG term, ULONG duration, ULONG band, ULONG roam)
{
    // These come before the guard.
    TBD_ASSERT(mode == CM_MODE_PREF_NO_CHANGE, "ASSERTION FAILURE: ===>nModePref == CM_MODE_PREF_NO_CHANGE");
    TBD_ASSERT(term == CNS_MODE_TERM_PERMANENT, "ASSERTION FAILURE: ===>nModeTerm == CNS_MODE_TERM_PERMANENT");
    TBD_ASSERT(duration == 0, "ASSERTION FAILURE: ===>nModeDur == 0");
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    ULONG roaming = 0;
    if (!ChooseRoaming(roam, band, &roaming)) {
        LOG_C("OrvSetTempModePref cannot interpret nRoamPref = %d, nBandPref = %d", roam, band);
        return ORV_RCODE_BAD_PARAMETER;
    }
    CdmaNetworkParameters others = g_CdmaNetworkParameters;
    const bool known = g_CdmaNetworkParametersRead != 0; // else null: zeros must not reach the module
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().SetCDMANetworkParameters(
        g_szSpc, known ? &others.force_rev0 : nullptr, known ? &others.custom_scp : nullptr,
        known ? &others.protocol : nullptr, known ? &others.broadcast : nullptr, known ? &others.application : nullptr,
        &roaming));
    if (result != ORV_RCODE_OK) return result;
    g_CdmaNetworkParameters.roaming = roaming;
    LOG_C("This action needs modem reset.If this API was not called as part of phone utility...please reset modem");
    return ORV_RCODE_OK;
}
