// Decodes a hostile CDMA message. Whatever it is, the record's parts are what they can be, and there is a block to free
// exactly when the record says so.
#include <stdlib.h>
#include <string.h>

#include "sms/cdma_decode.h"
#include "utility/heap_buffer.h"

namespace {

void Require(bool condition)
{
    if (!condition) abort();
}

void CheckNumber(const WCHAR (&number)[ORV_CDMA_SMS_MAX_DIGITS + 1], BYTE length)
{
    Require(length <= ORV_CDMA_SMS_MAX_DIGITS);
    ULONG characters = 0;
    while (characters < length && number[characters]) // a character of 8 bits may be 0
        ++characters;
    Require(number[characters] == 0);
}

void CheckRecord(const ORV_CDMA_SMS& record, ORV_RCODE result)
{
    Require(record.uStructSize == ORV_CDMA_SMS_STRUCT_SIZE && record.uReplySeq <= 63);
    if (record.uParamMask & ORV_CDMA_SMS_HAS_ADDRESS) CheckNumber(record.szAddress, record.uAddrLen);
    if (record.uParamMask & ORV_CDMA_SMS_HAS_CALLBACK) CheckNumber(record.szCallback, record.uCallbackLen);
    Require(record.uPriority <= ORV_CDMA_SMS_PRIORITY_EMERGENCY && record.uYear <= 99);
    Require((record.pUserData != nullptr) ==
            (result == ORV_RCODE_OK && (record.uParamMask & ORV_CDMA_SMS_HAS_USER_DATA) != 0));
    const bool septets =
        record.uEncoding == ORV_CDMA_SMS_ENCODING_ASCII || record.uEncoding == ORV_CDMA_SMS_ENCODING_GSM;
    for (ULONG i = 0; i < record.uUserDataLen; ++i)
        Require(record.pUserData[i] <= (septets ? 0x7F : 0xFF));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* data, size_t size)
{
    // Blocks of the exact sizes, so that a step outside is found.
    BYTE* const message = static_cast<BYTE*>(malloc(size ? size : 1));
    ORV_CDMA_SMS* const record = static_cast<ORV_CDMA_SMS*>(calloc(1, sizeof(ORV_CDMA_SMS)));
    if (!message || !record) abort();
    memcpy(message, data, size);

    const ORV_RCODE result = DecodeCompleteMTSms(message, static_cast<ULONG>(size), record);
    Require(result == ORV_RCODE_OK || result == ORV_RCODE_UNSUPPORTED || result == ORV_RCODE_FAILED ||
            result == ORV_RCODE_UNKNOWN);
    if (record->uStructSize) CheckRecord(*record, result);
    HeapBuffer::Free(record->pUserData);

    free(record);
    free(message);
    return 0;
}
