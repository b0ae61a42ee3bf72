// The default data profile of a GSM/UMTS module.

#include <string.h>

#include "api/OrvError.h"
#include "api/admission.h"
#include "notify/direct.h"
#include "notify/record.h"
#include "talvek/gsm_profile.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

constexpr ULONG kProfileType3gpp = 0;
constexpr ULONG kPdpTypeIpv4 = 0;
constexpr ULONG kAddressLength = 4;
constexpr ULONG kReservedWord = 127;

// The texts of a profile as the vendor library has them. One octet more each: a text that fills its room comes without
// a terminator.
struct VendorTexts {
    static constexpr BYTE kName = 31, kApn = 101, kUser = 128, kPassword = 128;
    char name[kName + 1] = {};
    char apn[kApn + 1] = {};
    char user[kUser + 1] = {};
    char password[kPassword + 1] = {};
};

// Fills a text field: terminated unless the text is as long as the field.
template <ULONG kSize>
void Widen(const char* text, WCHAR (&field)[kSize])
{
    OV_AtoT(text, field, kSize);
}

// Takes a text field, which may lack its terminator, into a cleared buffer; what is longer is cut.
template <ULONG kField, ULONG kSize>
void Narrow(const WCHAR (&field)[kField], char (&text)[kSize])
{
    constexpr ULONG kLength = kSize - 1 < kField ? kSize - 1 : kField;
    if (field[0]) OV_TtoA(field, text, kLength);
}

ULONG ReadAddress(const BYTE* octets)
{
    return ULONG{octets[0]} << 24 | ULONG{octets[1]} << 16 | ULONG{octets[2]} << 8 | octets[3];
}

void WriteAddress(BYTE* octets, ULONG address)
{
    for (ULONG i = 0; i < kAddressLength; ++i)
        octets[i] = static_cast<BYTE>(address >> (24 - 8 * i));
}

// 2035, while it is enabled. No row of the notification table has it, so that so far nobody can enable it.
void TellPacketAlert()
{
    if (!g_OrvNotify.IsActive(ORV_NOTIFY_GsmPacketAlert)) return;
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_GsmPacketAlert, sizeof(OrvGsmPacketAlertPayload));
    record.payload.GsmPacketAlert.uValue = 1;
    DeliverDirectly(record);
}

// What is kept for compatibility.
ORV_RCODE Unsupported()
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    return ORV_RCODE_UNSUPPORTED;
}

} // namespace

ORV_RCODE ORV_CALL OrvGetGsmProfileBasic(OrvGsmProfileBasic* profile)
{
    TRACE_ENTRY("OrvGetGsmProfileBasic");
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!profile) return ORV_RCODE_BAD_PARAMETER;
    VendorTexts texts;
    ULONG pdp_type = 0, address = 0, primary_dns = 0, secondary_dns = 0, authentication = 0;
    const ULONG status = Gobi().GetDefaultProfile(kProfileType3gpp, &pdp_type, &address, &primary_dns, &secondary_dns,
                                                  &authentication, VendorTexts::kName, texts.name, VendorTexts::kApn,
                                                  texts.apn, VendorTexts::kUser, texts.user);
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(status)) {
        LOG_C("Gobi API GetDefaultProfile Failed with GOBI error = %lu", status);
        return failed;
    }

    profile->sizeStruct = sizeof *profile;
    profile->bProfileId = 1;
    profile->bValid = 1;
    profile->ePdpType = pdp_type;
    profile->bHeaderCompression = 0;
    profile->bDataCompression = 0;
    profile->bDynamicAddress = address == 0 ? 1 : 0;
    profile->uAddressLen = address == 0 ? 0 : kAddressLength;
    if (address != 0) WriteAddress(profile->abAddress, address);
    Widen(texts.apn, profile->szAPN);
    profile->uZero = 0;
    profile->eAuthentication = authentication;
    Widen(texts.user, profile->szUserName);
    memset(profile->szPassword, 0, sizeof profile->szPassword);
    Widen(texts.name, profile->szProfileName);
    profile->uReserved1 = kReservedWord;
    profile->uReserved2 = kReservedWord;
    profile->uZero2 = 0;
    memset(profile->abZero, 0, sizeof profile->abZero);
    profile->uZero3 = 0;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSetGsmProfileBasic(OrvGsmProfileBasic profile)
{
    TRACE_ENTRY("OrvSetGsmProfileBasic");
    if (const ORV_RCODE refused = RequireInitialized()) return refused; // the technology is not looked at
    VendorTexts texts;
    Narrow(profile.szProfileName, texts.name);
    Narrow(profile.szAPN, texts.apn);
    Narrow(profile.szUserName, texts.user);
    Narrow(profile.szPassword, texts.password);

    const bool is_static = profile.bDynamicAddress == 0;
    if (is_static && profile.uAddressLen != kAddressLength) {
        LOG_C("PDP IP Address length should be 4 bytes only");
        return ORV_RCODE_BAD_PARAMETER;
    }
    ULONG pdp_type = kPdpTypeIpv4;
    ULONG address = ReadAddress(profile.abAddress);
    const ULONG status =
        Gobi().SetDefaultProfile(kProfileType3gpp, &pdp_type, is_static ? &address : nullptr, nullptr, nullptr,
                                 &profile.eAuthentication, texts.name, texts.apn, texts.user, texts.password);
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(status)) {
        LOG_C("Gobi API SetDefaultProfile Failed with GOBI error = %lu", status);
        return failed;
    }
    TellPacketAlert();
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetGsmProfileSummary(OrvGsmProfileSummary* summary)
{
    TRACE_ENTRY("OrvGetGsmProfileSummary");
    if (const ORV_RCODE refused = RequireInitialized()) return refused; // the technology is not looked at
    if (!summary) return ORV_RCODE_BAD_PARAMETER;
    summary->sizeStruct = sizeof *summary;
    for (ULONG& word : summary->uOne)
        word = 1;
    return ORV_RCODE_OK;
}

// --- kept for compatibility ------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGetProfile(void*) { return Unsupported(); }

ORV_RCODE ORV_CALL OrvSetProfile(void*) { return Unsupported(); }

ORV_RCODE ORV_CALL OrvGetProfileSummary(void*) { return Unsupported(); }

ORV_RCODE ORV_CALL OrvGetPktSessionStatus(void*) { return Unsupported(); }
