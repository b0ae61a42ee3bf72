// The phone book of GSM/UMTS modules: the own voice number is all that the vendor library serves.

#include <iterator>

#include "api/OrvError.h"
#include "api/admission.h"
#include "talvek/gsm_sms.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

constexpr ULONG kNotProvisioned = 1016; // the module has no number: no failure
constexpr BYTE kNumberSize = 32, kMinSize = 20;

} // namespace

ORV_RCODE ORV_CALL OrvGetPhonebookEntry(ULONG eType, ULONG uIndex, ORV_PHONEBOOK_ENTRY* entry)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!entry) return ORV_RCODE_BAD_PARAMETER;
    if (eType != ORV_PHONEBOOK_VOICE_NUMBER) {
        LOG_C("PhoneBookType = %d is not supported", eType);
        return ORV_RCODE_UNSUPPORTED;
    }
    char number[kNumberSize + 1] = {}, min[kMinSize + 1] = {};
    const ULONG status = Gobi().GetVoiceNumber(kNumberSize, number, kMinSize, min);
    if (status == kNotProvisioned) {
        LOG_C("GetVoiceNumber returns acceptable error, uStatus = %d", status);
        number[0] = 0;
    } else if (status != 0) {
        return ConvertGobiError2OrvRcode(status);
    }
    number[kNumberSize] = 0;
    *entry = ORV_PHONEBOOK_ENTRY();
    entry->sizeStruct = sizeof *entry;
    entry->eType = eType;
    entry->uIndex = uIndex;
    OV_AtoT(number, entry->szNumber, static_cast<ULONG>(std::size(entry->szNumber)));
    return ORV_RCODE_OK;
}
