// Decodes a hostile SMS-DELIVER. Whatever it is, the record holds what its fields can hold.
#include <stdlib.h>
#include <string.h>

#include "sms/gsm_deliver.h"

namespace {

constexpr BYTE kUntouched = 0xEE;

void Require(bool condition)
{
    if (!condition) abort();
}

void CheckDigits(const BYTE (&digits)[ORV_GSM_SMS_MAX_DIGITS])
{
    for (const BYTE digit : digits)
        Require(digit <= 15 || digit == kUntouched);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* data, size_t size)
{
    // Blocks of the exact sizes, so that a step outside is found.
    BYTE* const pdu = static_cast<BYTE*>(malloc(size ? size : 1));
    ORV_GSM_SMS_IN* const record = static_cast<ORV_GSM_SMS_IN*>(malloc(sizeof(ORV_GSM_SMS_IN)));
    if (!pdu || !record) abort();
    memcpy(pdu, data, size);
    memset(record, kUntouched, sizeof *record);

    const ORV_RCODE result = DecodeCompletePDU(pdu, static_cast<ULONG>(size), record);
    Require(result == ORV_RCODE_OK || result == ORV_RCODE_VENDOR_5 || result == ORV_RCODE_FAILED ||
            (result == ORV_RCODE_BAD_PARAMETER && size == 0));
    CheckDigits(record->abSmscDigits);
    CheckDigits(record->abSenderDigits);
    for (const BYTE digit : record->abTimeStamp)
        Require(digit <= 15 || digit == kUntouched);
    const ULONG untouched = 0xEEEEEEEE;
    Require(record->eEncoding <= ORV_GSM_ALPHABET_RESERVED || record->eEncoding == untouched);
    Require(record->eMessageClass <= ORV_GSM_CLASS_NONE || record->eMessageClass == untouched);
    Require(record->uUserDataLen <= 255 || record->uUserDataLen == untouched);
    Require(record->uUserDataHeaderLen <= 255 || record->uUserDataHeaderLen == untouched);
    Require(record->abUserData[255] == kUntouched && record->abUserDataHeader[255] == kUntouched);
    Require(record->sizeStruct == untouched && record->bMoreMessages == kUntouched);

    free(record);
    free(pdu);
    return 0;
}
