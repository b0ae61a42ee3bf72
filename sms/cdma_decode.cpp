#include "sms/cdma_decode.h"

#include "sms/cdma_common.h"
#include "utility/heap_buffer.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\sms.cpp");

constexpr ULONG kVoiceMailTeleservice = 3; // the low octet of 4099

// Lengths that parameters must have.
constexpr ULONG kTeleserviceLength = 2, kAddressLength = 7, kReplyOptionLength = 1;
constexpr ULONG kMessageIdentifierLength = 3, kTimeStampLength = 6, kPriorityLength = 1, kLanguageLength = 1;

// Of the message identifier's first octet: MESSAGE_TYPE 1, deliver, and the one value in front of it.
constexpr BYTE kDeliverFirst = 15, kDeliverLast = 31;

// Checks a parameter's length. `fault` has one %d, for the length that is right.
bool LengthIs(const OctetReader& body, ULONG length, const char* fault)
{
    if (body.Left() == length) return true;
    LOG_C(fault, length);
    return false;
}

// The octet's upper-case hexadecimal digits read as a decimal number, up to the first that is no decimal digit.
BYTE YearOf(BYTE octet)
{
    const BYTE tens = octet >> 4, units = octet & 0x0F;
    if (tens > 9) return 0;
    if (units > 9) return tens;
    return static_cast<BYTE>(10 * tens + units);
}

ULONG PriorityOf(BYTE octet)
{
    const ULONG priority = octet >> kPriorityShift;
    return octet == priority << kPriorityShift ? priority : 0;
}

// How many of the `announced` fields of `width` bits are taken: those that are there, as far as the record holds them.
SMS_INLINE ULONG CountPresent(const BitReader& in, ULONG announced, ULONG width)
{
    ULONG count = announced;
    if (count > ORV_CDMA_SMS_MAX_DIGITS) count = ORV_CDMA_SMS_MAX_DIGITS;
    if (ULONGLONG{count} * width > in.BitsLeft()) count = static_cast<ULONG>(in.BitsLeft() / width);
    if (count < announced) LOG_C("Address of %d digits is cut to %d", announced, count);
    return count;
}

// NUM_FIELDS and that many digits of 4 bits. Returns how many there are in `number`.
SMS_INLINE BYTE TakeDigits(BitReader& in, WCHAR* number)
{
    // 10 is the digit 0; 11 and 12 are not made * and #.
    static constexpr char kCharacters[] = "01234567890;<=>?";
    const ULONG announced = in.Take(8);
    const ULONG count = CountPresent(in, announced, 4);
    BYTE digits[ORV_CDMA_SMS_MAX_DIGITS];
    char text[ORV_CDMA_SMS_MAX_DIGITS + 1];
    in.TakeSemiOctets(digits, count);
    for (ULONG i = 0; i < count; ++i)
        text[i] = kCharacters[digits[i]];
    text[count] = '\0';
    OV_AtoT(text, number, ORV_CDMA_SMS_MAX_DIGITS + 1);
    return static_cast<BYTE>(count);
}

// NUM_FIELDS and that many characters of 8 bits.
BYTE TakeCharacters(BitReader& in, WCHAR* number)
{
    const ULONG announced = in.Take(8);
    const ULONG count = CountPresent(in, announced, 8);
    BYTE characters[ORV_CDMA_SMS_MAX_DIGITS];
    char text[ORV_CDMA_SMS_MAX_DIGITS + 1];
    in.TakeOctets(characters, count);
    memcpy(text, characters, count);
    text[count] = '\0';
    OV_AtoT(text, number, ORV_CDMA_SMS_MAX_DIGITS + 1);
    return static_cast<BYTE>(count);
}

// Pairs of octets, the high one first, become characters in the host's order.
void SwapToHost(BYTE* octets, ULONG count)
{
    for (ULONG i = 0; i + 1 < count; i += 2) {
        const WORD character = static_cast<WORD>(octets[i] << 8 | octets[i + 1]);
        memcpy(octets + i, &character, sizeof character);
    }
}

} // namespace

ORV_RCODE SplitParamMTSms(const BYTE* message, ULONG length, MTSmsParameters* parameters)
{
    OctetReader in(message, length);
    if (in.Left() == 0) return ORV_RCODE_FAILED;
    if (in.Take() != kMsgPointToPoint) {
        LOG_C("Msg TYPE is NOT POINT_TO_POINT_MSG");
        return ORV_RCODE_UNSUPPORTED;
    }
    while (in.Left() > 0) {
        const BYTE id = in.Take();
        OctetReader body = in.Nested(in.Take());
        if (in.Failed()) return ORV_RCODE_FAILED;
        switch (id) {
        case kParamTeleservice:
            if (!LengthIs(body, kTeleserviceLength, "TELESERVICE IDENTIFIER LEN is not = %d")) return ORV_RCODE_FAILED;
            parameters->teleservice = body.Rest()[1];
            break;
        case kParamOriginatingAddress:
            LengthIs(body, kAddressLength, "ORIGADDR_HDR_LEN is not = %d");
            parameters->address = {true, body};
            break;
        case kParamBearerReplyOption:
            if (!LengthIs(body, kReplyOptionLength, "BEARER_REPLY_HDR_LEN is not = %d")) return ORV_RCODE_FAILED;
            parameters->reply_option = body.Take();
            break;
        case kParamBearerData:
            parameters->bearer_data = {true, body};
            break;
        case kParamServiceCategory:
        case kParamOriginatingSubaddress:
            LOG_C("Unhandled Identifier = %d of Len = %d .... Skipping it", id, body.Left());
            break;
        default:
            LOG_C("Unknown IDENTIFIER in MT SMS data = %d", id);
            return ORV_RCODE_FAILED;
        }
    }
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeBearerData(OctetReader bearer_data, MTSmsBearerData* data)
{
    OctetReader& in = bearer_data;
    while (in.Left() > 0) {
        const BYTE id = in.Take();
        OctetReader body = in.Nested(in.Take());
        if (in.Failed()) return ORV_RCODE_FAILED;
        switch (id) {
        case kSubMessageIdentifier: {
            if (!LengthIs(body, kMessageIdentifierLength, "MSG_SUB_IDENTIFIER_HDR_LEN is not = %d")) {
                return ORV_RCODE_FAILED;
            }
            // MESSAGE_TYPE 4, MESSAGE_ID 16, HEADER_IND 1 and 3 reserved bits.
            const ULONG first = body.Take(), second = body.Take();
            data->message_id = static_cast<WORD>(first << 12 | second << 4 | body.Take() >> 4);
            if (first < kDeliverFirst || first > kDeliverLast) {
                LOG_C("MSG TYPE != DELIVER_MT");
                return ORV_RCODE_FAILED;
            }
            break;
        }
        case kSubUserData:
            data->user_data = {true, body};
            break;
        case kSubTimeStamp:
            if (!LengthIs(body, kTimeStampLength, "MSG_TIMESTAMP_SUB_INDETIFIER_HDR_LEN is not = %d")) {
                return ORV_RCODE_FAILED;
            }
            data->year = YearOf(body.Take());
            data->month = body.Take();
            data->day = body.Take();
            data->hour = body.Take();
            data->minute = body.Take();
            data->second = body.Take();
            break;
        case kSubPriority:
            if (!LengthIs(body, kPriorityLength, "PRIORIY_SUB_IDENTIFIER_HDR_LEN is not = %d")) return ORV_RCODE_FAILED;
            data->priority = body.Take();
            break;
        case kSubNumberOfMessages:
            LOG_C("Callback Number Len = %d", body.Left()); // the text is the interface's own
            data->number_of_messages = {body.Left() > 0, body};
            break;
        case kSubLanguage:
            if (!LengthIs(body, kLanguageLength, "LANGUAGE_INDICATOR_SUB_INDETIFIER_HDR_LEN is not = %d")) {
                return ORV_RCODE_FAILED;
            }
            LOG_C("Language Indicator sub identifier found in bearer data...Ignoring it");
            break;
        case kSubCallback:
            LOG_C("Callback Number Len = %d", body.Left());
            data->callback = {true, body};
            break;
        default:
            if (id > kSubLastKnown) {
                LOG_C("Unknown subidentifier in bearer data = %d", id);
                return ORV_RCODE_FAILED;
            }
            LOG_C("Unhandled Identifier = %d of Len = %d .... Skipping it", id, body.Left());
        }
    }
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeOriginAddr(const OctetReader& body, ORV_CDMA_SMS* record)
{
    if (body.Left() < 2) return ORV_RCODE_FAILED;
    BitReader in(body);
    const BYTE digit_mode = in.Take(1), number_mode = in.Take(1);
    if (digit_mode != 0 || number_mode != 0) {
        LOG_C("Number mode or Digit mode is not zero, Such address encoding is not supported");
        return ORV_RCODE_UNSUPPORTED;
    }
    record->uParamMask |= ORV_CDMA_SMS_HAS_ADDRESS;
    record->uDigitMode = digit_mode;
    record->uNumberMode = number_mode;
    record->uNumberType = 0;
    record->uNumberPlan = 0;
    record->uAddrLen = TakeDigits(in, record->szAddress);
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeUserData(const OctetReader& body, ORV_CDMA_SMS* record)
{
    if (body.Left() < 2) return ORV_RCODE_FAILED;
    BitReader in(body);
    const ULONG encoding = in.Take(5);
    const ULONG characters = in.Take(8);
    const bool septets = encoding == ORV_CDMA_SMS_ENCODING_ASCII || encoding == ORV_CDMA_SMS_ENCODING_GSM;
    const bool wide = encoding == ORV_CDMA_SMS_ENCODING_UNICODE;
    if (!septets && !wide && encoding != ORV_CDMA_SMS_ENCODING_OCTET) {
        LOG_C("User data encondig %dis not support !!", encoding);
        return ORV_RCODE_UNSUPPORTED;
    }
    const ULONG length = wide ? 2 * characters : characters;
    HeapBuffer block(wide ? length + 2 : length);
    BYTE* const octets = block.As<BYTE>();
    if (!octets) {
        LOG_C("Failed to allocate memeory");
        return ORV_RCODE_FAILED;
    }
    if (septets) {
        in.TakeSeptets(octets, length);
    } else {
        in.TakeOctets(octets, length);
        if (wide) SwapToHost(octets, length);
    }
    if (in.Failed()) LOG_C("User data ends before its %d characters", characters);
    record->uEncoding = encoding;
    record->uReserved2 = 1;
    record->pUserData = block.Release<BYTE>();
    record->uUserDataLen = length;
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeCallbackAddr(const OctetReader& body, ORV_CDMA_SMS* record)
{
    if (body.Left() < 2) return ORV_RCODE_FAILED;
    BitReader in(body);
    if (in.Take(1) == 0) {
        record->uCallbackLen = TakeDigits(in, record->szCallback);
        return ORV_RCODE_OK;
    }
    LOG_C("DecodeCallbackAddr with DigitMode == 1!!!!");
    in.Take(3); // NUMBER_TYPE
    in.Take(4); // NUMBER_PLAN
    record->uCallbackLen = TakeCharacters(in, record->szCallback);
    return ORV_RCODE_OK;
}

namespace {

// What is left once the user data is at hand: the number to call back and the count of messages.
ORV_RCODE FinishRecord(const MTSmsBearerData& data, ORV_CDMA_SMS* record)
{
    if (data.callback.present) {
        if (const ORV_RCODE failed = DecodeCallbackAddr(data.callback.body, record)) {
            LOG_C("DecodeCallbackAddr failed for ");
            return failed;
        }
        record->uParamMask |= ORV_CDMA_SMS_HAS_CALLBACK;
    } else {
        LOG_C("Callback Number Not found");
    }
    if (data.number_of_messages.present) {
        record->uParamMask |= ORV_CDMA_SMS_HAS_MESSAGE_COUNT;
        record->uNumMsgs = *data.number_of_messages.body.Rest();
    } else {
        LOG_C("Number of Message Not found");
    }
    return ORV_RCODE_OK;
}

void StoreTimeAndPriority(const MTSmsBearerData& data, ORV_CDMA_SMS* record)
{
    if (data.year != MTSmsBearerData::kAbsent && data.month != MTSmsBearerData::kAbsent) {
        record->uParamMask |= ORV_CDMA_SMS_HAS_TIME_STAMP;
        record->uYear = data.year;
        record->uMonth = data.month;
        record->uDay = data.day;
        record->uHour = data.hour;
        record->uMinute = data.minute;
        record->uSecond = data.second;
    }
    if (data.priority != MTSmsBearerData::kAbsent) {
        record->uParamMask |= ORV_CDMA_SMS_HAS_PRIORITY;
        record->uPriority = PriorityOf(data.priority);
        TRACE_ENTRY("Priority = %d, uOrvSMSPriority = %d", data.priority, record->uPriority);
    }
}

// A record of a failed call has no block to free.
void ForgetUserData(ORV_CDMA_SMS* record)
{
    record->pUserData = nullptr;
    record->uUserDataLen = 0;
}

ORV_RCODE StoreBearerData(const OctetReader& bearer_data, ORV_CDMA_SMS* record)
{
    MTSmsBearerData data;
    if (const ORV_RCODE failed = DecodeBearerData(bearer_data, &data)) {
        LOG_C("DecodeBearerData failed");
        return failed;
    }
    record->uMsgId = data.message_id;
    StoreTimeAndPriority(data, record);
    if (data.user_data.present) {
        record->uParamMask |= ORV_CDMA_SMS_HAS_USER_DATA;
        ForgetUserData(record);
        if (const ORV_RCODE failed = DecodeUserData(data.user_data.body, record)) {
            LOG_C("DecodeUserData failed");
            return failed;
        }
    } else {
        LOG_C("User Data Not found");
    }
    const ORV_RCODE result = FinishRecord(data, record);
    if (result != ORV_RCODE_OK && data.user_data.present) {
        HeapBuffer::Free(record->pUserData);
        ForgetUserData(record);
    }
    return result;
}

} // namespace

ORV_RCODE DecodeCompleteMTSms(const BYTE* message, ULONG length, ORV_CDMA_SMS* record)
{
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    MTSmsParameters parameters;
    if (const ORV_RCODE failed = SplitParamMTSms(message, length, &parameters)) {
        LOG_C("SplitParamMTSms failed");
        return failed;
    }
    record->uStructSize = ORV_CDMA_SMS_STRUCT_SIZE;
    record->uParamMask = 0;
    if (parameters.reply_option != MTSmsParameters::kNoReplyOption) {
        record->uParamMask |= ORV_CDMA_SMS_HAS_REPLY_OPTION;
        record->uReplySeq = static_cast<BYTE>(parameters.reply_option >> 2);
    }
    record->uReserved1 = 0;
    record->uMsgCategory =
        parameters.teleservice == kVoiceMailTeleservice ? ORV_CDMA_SMS_CATEGORY_VOICE_MAIL : ORV_CDMA_SMS_CATEGORY_TEXT;
    record->uMsgType = ORV_CDMA_SMS_DELIVER;
    record->uReserved2 = 1;
    if (!parameters.address.present) {
        LOG_C("Originating Address not found");
        return ORV_RCODE_UNKNOWN;
    }
    if (const ORV_RCODE failed = DecodeOriginAddr(parameters.address.body, record)) {
        LOG_C("DecodeOriginAddr failed");
        return failed;
    }
    if (!parameters.bearer_data.present) {
        LOG_C("Bearer Data Not found");
        return ORV_RCODE_OK;
    }
    return StoreBearerData(parameters.bearer_data.body, record);
}
