#include "sms/cdma_encode.h"

#include "sms/cdma_common.h"
#include "utility/heap_buffer.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\sms.cpp");

constexpr ULONG kTeleserviceCmt95 = 4098;
constexpr ULONG kMaxDigits = 255;      // NUM_FIELDS is one octet
constexpr ULONG kMessageTypes = 7;     // one more than the highest
constexpr ULONG kPriorityCheck = 7;    // one more than the highest that is looked at further
constexpr ULONG kUserDataBuffer = 200; // octets for the user data subparameter
constexpr ULONG kHeaderBits = 16;      // identifier and length of any parameter
constexpr ULONG kNumberBuffer = (kHeaderBits + 10 + 4 * kMaxDigits + 7) / 8;

constexpr ULONG OctetsOf(ULONG bits) { return (bits + 7) / 8; }

ORV_RCODE ResultOf(const BitWriter& out) { return out.Failed() ? ORV_RCODE_VENDOR_5 : ORV_RCODE_OK; }

// NUM_FIELDS, the digits, and bits 0 up to the next octet.
void PutDigits(BitWriter& out, const char* digits, ULONG count)
{
    out.Put(count, 8);
    for (ULONG i = 0; i < count; ++i) {
        const ULONG digit = static_cast<ULONG>(digits[i] - '0');
        out.Put(digit == 0 ? 10 : digit, 4);
    }
    out.Pad();
}

} // namespace

ORV_RCODE EncodeTeleServiceHdr(BitWriter& out)
{
    out.Put(kMsgPointToPoint, 8);
    out.Put(kParamTeleservice, 8);
    out.Put(2, 8);
    out.Put(kTeleserviceCmt95 >> 8, 8);
    out.Put(kTeleserviceCmt95 & 0xFF, 8);
    return ResultOf(out);
}

ORV_RCODE EncodeDestAddrHdr(BitWriter& out, const char* digits, ULONG count)
{
    const ULONG octets = OctetsOf(kHeaderBits + 10 + 4 * count);
    LOG_C("Len of Destination Header is %lu", octets);
    out.Put(kParamDestinationAddress, 8);
    out.Put(octets - 2, 8);
    out.Put(0, 1); // DIGIT_MODE
    out.Put(0, 1); // NUMBER_MODE
    PutDigits(out, digits, count);
    return ResultOf(out);
}

ORV_RCODE EncodeCallbackAddrHdr(BitWriter& out, const char* digits, ULONG count)
{
    out.Put(kSubCallback, 8);
    out.Put(OctetsOf(kHeaderBits + 9 + 4 * count) - 2, 8);
    out.Put(0, 1); // DIGIT_MODE
    PutDigits(out, digits, count);
    return ResultOf(out);
}

ORV_RCODE EncodeMsgIdenfier(BitWriter& out, ULONG message_type, WORD message_id)
{
    if (message_type >= kMessageTypes) return ORV_RCODE_BAD_PARAMETER;
    out.Put(kSubMessageIdentifier, 8);
    out.Put(3, 8);
    out.Put(message_type, 4);
    out.Put(message_id >> 8u, 8);
    out.Put(message_id & 0xFFu, 8);
    out.Put(0, 4); // HEADER_IND and reserved bits
    return ResultOf(out);
}

ORV_RCODE EncodeUserDataHdr(BitWriter& out, ULONG encoding, const BYTE* user_data, ULONG length)
{
    const bool wide = encoding == ORV_CDMA_SMS_ENCODING_UNICODE;
    const ULONG width = wide ? 8 : 7;
    const ULONG end = out.Length() + OctetsOf(kHeaderBits + 13 + width * length);
    out.Put(kSubUserData, 8);
    out.Put(OctetsOf(13 + width * length), 8);
    out.Put(encoding, 5);
    out.Put(wide ? length / 2 : length, 8);
    if (wide || encoding == ORV_CDMA_SMS_ENCODING_ASCII) {
        for (ULONG i = 0; i < length; ++i)
            out.Put(user_data[i], width);
    } else {
        NKDbgPrintfW(TXT("EncoderUserDataHdr:encoding type unknown %d\r\n"), encoding);
    }
    out.Pad();
    while (out.Length() < end && !out.Failed())
        out.Put(0, 8);
    return ResultOf(out);
}

ORV_RCODE EncodePrioriyHdr(BitWriter& out, ULONG priority)
{
    if (priority >= kPriorities) return ORV_RCODE_BAD_PARAMETER;
    out.Put(kSubPriority, 8);
    out.Put(1, 8);
    out.Put(priority << kPriorityShift, 8);
    return ResultOf(out);
}

ORV_RCODE EncodeBearerData(BitWriter& out, ULONG length)
{
    out.Put(kParamBearerData, 8);
    out.Put(length & 0xFF, 8);
    return ResultOf(out);
}

ORV_RCODE EncodeCompleteMoSms(BYTE** message, ULONG* length, const char* destination, ULONG destination_length,
                              const char* callback, ULONG callback_length, ULONG encoding, const BYTE* user_data,
                              ULONG user_data_length, ULONG message_type, WORD message_id, ULONG priority)
{
    if (!message || !length || !destination || destination_length == 0 || destination_length > kMaxDigits ||
        (!callback && callback_length > 0) || callback_length > kMaxDigits || !user_data ||
        user_data_length > ORV_CDMA_SMS_MAX_USER_DATA || priority >= kPriorityCheck) {
        return ORV_RCODE_BAD_PARAMETER;
    }
    BYTE teleservice_octets[5], address_octets[kNumberBuffer], callback_octets[kNumberBuffer], header_octets[2];
    BYTE identifier_octets[5], user_data_octets[kUserDataBuffer], priority_octets[3];
    BitWriter teleservice(teleservice_octets, sizeof teleservice_octets);
    BitWriter address(address_octets, sizeof address_octets);
    BitWriter header(header_octets, sizeof header_octets);
    BitWriter identifier(identifier_octets, sizeof identifier_octets);
    BitWriter text(user_data_octets, sizeof user_data_octets);
    BitWriter urgency(priority_octets, sizeof priority_octets);
    BitWriter number(callback_octets, sizeof callback_octets);

    if (const ORV_RCODE failed = EncodeTeleServiceHdr(teleservice)) {
        LOG_C("EncodeTeleServiceHdr failed");
        return failed;
    }
    if (const ORV_RCODE failed = EncodeDestAddrHdr(address, destination, destination_length)) {
        LOG_C("EncodeDestAddrHdr failed");
        return failed;
    }
    if (callback_length == 0) {
        LOG_C("Length of callback number is zero");
    } else if (const ORV_RCODE failed = EncodeCallbackAddrHdr(number, callback, callback_length)) {
        LOG_C("EncodeCallbackAddrHdr failed");
        return failed;
    }
    if (const ORV_RCODE failed = EncodeMsgIdenfier(identifier, message_type, message_id)) {
        LOG_C("EncodeMsgIdenfier failed");
        return failed;
    }
    if (const ORV_RCODE failed = EncodeUserDataHdr(text, encoding, user_data, user_data_length)) {
        LOG_C("EncodeUserDataHdr failed");
        return failed;
    }
    if (const ORV_RCODE failed = EncodePrioriyHdr(urgency, priority)) {
        LOG_C("EncodePrioriyHdr failed");
        return failed;
    }
    const ULONG bearer = identifier.Length() + text.Length() + urgency.Length() + number.Length();
    if (const ORV_RCODE failed = EncodeBearerData(header, bearer)) {
        LOG_C("EncodeBearerData failed");
        return failed;
    }

    const ULONG total = teleservice.Length() + address.Length() + header.Length() + bearer;
    HeapBuffer block(total);
    if (!block.As<BYTE>()) {
        LOG_C("Failed to allocate memory");
        return ORV_RCODE_FAILED;
    }
    OctetWriter whole(block.As<BYTE>(), total);
    whole.Put(teleservice_octets, teleservice.Length());
    whole.Put(address_octets, address.Length());
    whole.Put(header_octets, header.Length());
    whole.Put(identifier_octets, identifier.Length());
    whole.Put(user_data_octets, text.Length());
    whole.Put(priority_octets, urgency.Length());
    whole.Put(callback_octets, number.Length());
    *message = block.Release<BYTE>();
    *length = total;
    return ORV_RCODE_OK;
}
