// Message texts: the additions to the interface that need neither a module nor a start-up.

#include "talvek/sms_text.h"

#include "sms/cdma_decode.h"
#include "sms/cdma_encode.h"
#include "sms/gsm_deliver.h"
#include "sms/gsm_submit.h"
#include "sms/text_address.h"
#include "sms/text_convert.h"
#include "sms/text_joiner.h"
#include "sms/text_parts.h"
#include "utility/heap_buffer.h"

#include <string.h>

namespace {

// A text as a client gives it.
struct GivenText {
    const char* text = nullptr;
    ULONG length = 0;

    // False for a null pointer and for a text that is too long.
    bool Take(const char* given, ULONG given_length)
    {
        if (!given) return false;
        text = given;
        length = given_length == ORV_TEXT_TERMINATED ? BoundedLength(given, ORV_TEXT_MAX + 1) : given_length;
        return length <= ORV_TEXT_MAX;
    }
};

// A buffer may be null where its capacity is 0.
bool IsBuffer(const void* buffer, ULONG capacity) { return buffer || capacity == 0; }
bool IsInput(const BYTE* octets, ULONG count) { return IsBuffer(octets, count) && count <= ORV_TEXT_MAX; }

// Makes a text into the client's buffer with `put`, which gives a result, and terminates it.
template <class Put>
ORV_RCODE GiveText(char* text, ULONG capacity, ULONG* length, Put put)
{
    if (!IsBuffer(text, capacity) || !length) return ORV_RCODE_BAD_PARAMETER;
    Utf8Output out(text, capacity);
    const ORV_RCODE result = put(out);
    if (result == ORV_RCODE_OK) return out.Finish(length);
    if (capacity > 0) text[0] = '\0';
    return result;
}

bool TakeOrder(ULONG given, UnitOrder& order)
{
    order = given == ORV_UCS2_HOST ? UnitOrder::Host : UnitOrder::BigEndian;
    return given <= ORV_UCS2_HOST;
}

// Measures a text that has to go in the GSM alphabet.
ORV_RCODE MeasureGsm(const char* text, ULONG textLength, TextToSend& out)
{
    GivenText given;
    if (!given.Take(text, textLength)) return ORV_RCODE_BAD_PARAMETER;
    if (const ORV_RCODE refused = MeasureText(given.text, given.length, false, out)) return refused;
    return out.ucs2 ? ORV_RCODE_UNSUPPORTED : ORV_RCODE_OK;
}

const ORV_SMS_OPTIONS kDefaultOptions = ORV_SMS_OPTIONS_DEFAULT;

// The destination, the service centre and the class of a message to be sent.
ORV_RCODE FillAddresses(const char* destination, const ORV_SMS_OPTIONS& options, ORV_GSM_SMS_OUT& record)
{
    if (options.eMessageClass > ORV_GSM_CLASS_NONE) return ORV_RCODE_BAD_PARAMETER;
    record.eMessageClass = options.eMessageClass;
    ORV_RCODE result = OrvGsmAddressFromText(destination, &record.uDestTypeOfNumber, &record.uDestNumberingPlan,
                                             &record.uDestAddrLen, record.abDestAddr, sizeof record.abDestAddr);
    if (result == ORV_RCODE_OK && options.pSmsc) {
        result = OrvGsmAddressFromText(options.pSmsc, &record.uSmscTypeOfNumber, &record.uSmscNumberingPlan,
                                       &record.uSmscAddrLen, record.abSmscAddr, sizeof record.abSmscAddr);
    }
    return result == ORV_RCODE_OK ? ORV_RCODE_OK : ORV_RCODE_BAD_PARAMETER;
}

// The digits of a CDMA address. False for more than the record holds, and for characters that are not ASCII.
bool NarrowDigits(const WCHAR* digits, ULONG count, char (&out)[ORV_CDMA_SMS_MAX_DIGITS])
{
    if (count > ORV_CDMA_SMS_MAX_DIGITS) return false;
    for (ULONG i = 0; i < count; ++i) {
        if (digits[i] >= 0x80) return false;
        out[i] = static_cast<char>(digits[i]);
    }
    return true;
}

bool IsAscii(const char* text, ULONG length)
{
    for (ULONG i = 0; i < length; ++i) {
        if (static_cast<BYTE>(text[i]) >= 0x80) return false;
    }
    return true;
}

} // namespace

// --- the GSM 7 bit default alphabet ----------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGsmTextSeptets(const char* text, ULONG textLength, ULONG* septets)
{
    if (!septets) return ORV_RCODE_BAD_PARAMETER;
    TextToSend measured = {};
    if (const ORV_RCODE refused = MeasureGsm(text, textLength, measured)) return refused;
    *septets = measured.units;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGsmTextPack(const char* text, ULONG textLength, BYTE* octets, ULONG capacity, ULONG* septets)
{
    if (!septets || !IsBuffer(octets, capacity)) return ORV_RCODE_BAD_PARAMETER;
    TextToSend measured = {};
    if (const ORV_RCODE refused = MeasureGsm(text, textLength, measured)) return refused;
    *septets = measured.units;
    const ULONG needed = SeptetOctets(measured.units);
    if (needed > capacity) return ORV_RCODE_VENDOR_5;
    if (needed == 0) return ORV_RCODE_OK;
    memset(octets, 0, needed);
    SeptetPacker packer(octets, needed);
    Utf8Reader reader(measured.text, measured.length);
    for (ULONG character = 0; reader.Next(character);)
        packer.PutCode(GsmCode(character));
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGsmTextUnpack(const BYTE* octets, ULONG octetCount, ULONG first, ULONG septets, char* text,
                                    ULONG capacity, ULONG* length)
{
    if (!IsInput(octets, octetCount) || first > ORV_TEXT_MAX || septets > ORV_TEXT_MAX) return ORV_RCODE_BAD_PARAMETER;
    return GiveText(text, capacity, length, [=](Utf8Output& out) {
        if (SeptetOctets(first + septets) > octetCount) return ORV_RCODE_FAILED;
        GsmToUtf8 decoder(out);
        decoder.FeedPacked(octets, first, septets);
        decoder.Finish();
        return ORV_RCODE_OK;
    });
}

// --- UCS2 ------------------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvUcs2FromText(const char* text, ULONG textLength, ULONG order, BYTE* octets, ULONG capacity,
                                   ULONG* octetCount)
{
    GivenText given;
    UnitOrder units = UnitOrder::BigEndian;
    if (!octetCount || !IsBuffer(octets, capacity) || !given.Take(text, textLength) || !TakeOrder(order, units))
        return ORV_RCODE_BAD_PARAMETER;
    TextToSend measured = {};
    if (const ORV_RCODE refused = MeasureText(given.text, given.length, true, measured)) return refused;
    *octetCount = measured.units * 2;
    if (*octetCount > capacity) return ORV_RCODE_VENDOR_5;
    Utf8Reader reader(given.text, given.length);
    for (ULONG character = 0, at = 0; reader.Next(character);)
        at += PutUcs2(character, units, octets + at);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvUcs2ToText(const BYTE* octets, ULONG octetCount, ULONG order, char* text, ULONG capacity,
                                 ULONG* length)
{
    UnitOrder units = UnitOrder::BigEndian;
    if (!IsInput(octets, octetCount) || !TakeOrder(order, units)) return ORV_RCODE_BAD_PARAMETER;
    return GiveText(text, capacity, length, [=](Utf8Output& out) {
        Ucs2ToUtf8 decoder(out, units);
        decoder.Feed(octets, octetCount);
        decoder.Finish();
        return ORV_RCODE_OK;
    });
}

// --- digits and addresses --------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvSemiOctetsFromText(const char* digits, BYTE* octets, ULONG capacity, ULONG* digitCount)
{
    if (!digits || !digitCount || !IsBuffer(octets, capacity)) return ORV_RCODE_BAD_PARAMETER;
    ULONG count = 0;
    if (!PackDigits(digits, octets, capacity, count)) return ORV_RCODE_BAD_PARAMETER;
    *digitCount = count;
    return (count + 1) / 2 <= capacity ? ORV_RCODE_OK : ORV_RCODE_VENDOR_5;
}

ORV_RCODE ORV_CALL OrvSemiOctetsToText(const BYTE* octets, ULONG octetCount, ULONG digitCount, char* text,
                                       ULONG capacity, ULONG* length)
{
    if (!IsInput(octets, octetCount)) return ORV_RCODE_BAD_PARAMETER;
    return GiveText(text, capacity, length, [=](Utf8Output& out) {
        PutPackedDigits(out, octets, octetCount, digitCount);
        return ORV_RCODE_OK;
    });
}

ORV_RCODE ORV_CALL OrvGsmAddressFromText(const char* number, ULONG* typeOfNumber, ULONG* numberingPlan,
                                         ULONG* digitCount, BYTE* octets, ULONG capacity)
{
    if (!number || !typeOfNumber || !numberingPlan) return ORV_RCODE_BAD_PARAMETER;
    const bool international = *number == '+';
    const char* const digits = international ? number + 1 : number;
    if (*digits == '\0') return ORV_RCODE_BAD_PARAMETER;
    const ORV_RCODE result = OrvSemiOctetsFromText(digits, octets, capacity, digitCount);
    if (result != ORV_RCODE_OK) return result;
    *typeOfNumber = international ? ORV_GSM_TON_INTERNATIONAL : ORV_GSM_TON_UNKNOWN;
    *numberingPlan = ORV_GSM_PLAN_ISDN;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGsmAddressToText(ULONG typeOfNumber, const BYTE* digits, ULONG digitCount, char* text,
                                       ULONG capacity, ULONG* length)
{
    if (!IsBuffer(digits, digitCount)) return ORV_RCODE_BAD_PARAMETER;
    const ULONG count = digitCount < ORV_GSM_SMS_MAX_DIGITS ? digitCount : ULONG{ORV_GSM_SMS_MAX_DIGITS};
    return GiveText(text, capacity, length, [=](Utf8Output& out) {
        PutGsmAddress(out, typeOfNumber, digits, count);
        return ORV_RCODE_OK;
    });
}

// --- whole records ---------------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGsmSmsToText(const ORV_GSM_SMS_IN* record, char* text, ULONG capacity, ULONG* length)
{
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    return GiveText(text, capacity, length, [=](Utf8Output& out) {
        ReceivedText received = {};
        if (const ORV_RCODE refused = TakeText(*record, received)) return refused;
        return PutText(out, received);
    });
}

ORV_RCODE ORV_CALL OrvGsmSmsSender(const ORV_GSM_SMS_IN* record, char* text, ULONG capacity, ULONG* length)
{
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    return OrvGsmAddressToText(record->uSenderTypeOfNumber, record->abSenderDigits, record->uSenderAddrLen, text,
                               capacity, length);
}

ORV_RCODE ORV_CALL OrvCdmaSmsToText(const ORV_CDMA_SMS* record, char* text, ULONG capacity, ULONG* length)
{
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    const bool has_text = (record->uParamMask & ORV_CDMA_SMS_HAS_USER_DATA) != 0 && record->pUserData;
    const BYTE* const data = record->pUserData;
    const ULONG count = has_text ? record->uUserDataLen : 0;
    if (count > ORV_TEXT_MAX) return ORV_RCODE_BAD_PARAMETER;
    return GiveText(text, capacity, length, [=](Utf8Output& out) {
        if (count == 0) return ORV_RCODE_OK;
        switch (record->uEncoding) {
        case ORV_CDMA_SMS_ENCODING_ASCII:
            for (ULONG i = 0; i < count; ++i)
                out.PutCharacter(data[i] & 0x7Fu);
            return ORV_RCODE_OK;
        case ORV_CDMA_SMS_ENCODING_GSM: {
            GsmToUtf8 decoder(out);
            decoder.FeedOctets(data, count);
            decoder.Finish();
            return ORV_RCODE_OK;
        }
        case ORV_CDMA_SMS_ENCODING_UNICODE: {
            Ucs2ToUtf8 decoder(out, UnitOrder::Host);
            decoder.Feed(data, count);
            decoder.Finish();
            return ORV_RCODE_OK;
        }
        default:
            return ORV_RCODE_UNSUPPORTED;
        }
    });
}

ORV_RCODE ORV_CALL OrvGsmSmsPart(const char* destination, const char* text, ULONG textLength,
                                 const ORV_SMS_OPTIONS* options, ULONG part, ORV_GSM_SMS_OUT* record, ULONG* count)
{
    const ORV_SMS_OPTIONS& chosen = options ? *options : kDefaultOptions;
    const bool wide = chosen.bWideReference != 0;
    GivenText given;
    if (!record || !count || !given.Take(text, textLength)) return ORV_RCODE_BAD_PARAMETER;
    TextToSend whole = {};
    TextPart piece = {};
    if (const ORV_RCODE refused = MeasureText(given.text, given.length, chosen.bUcs2 != 0, whole)) return refused;
    if (const ORV_RCODE refused = FindPart(whole, wide, part, piece)) return refused;

    ORV_GSM_SMS_OUT filled = {};
    if (const ORV_RCODE refused = FillAddresses(destination, chosen, filled)) return refused;
    filled.sizeStruct = sizeof filled;
    filled.eEncoding = whole.ucs2 ? ORV_GSM_ALPHABET_UCS2 : ORV_GSM_ALPHABET_7BIT;
    filled.uUserDataLen = PutPart(piece, whole.ucs2, filled.abUserData);
    if (piece.parts > 1) {
        filled.uUserDataHeaderLen =
            PutConcatenation({chosen.uReference, wide, piece.parts, part + 1}, filled.abUserDataHeader);
    }
    *record = filled;
    *count = piece.parts;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGsmSmsFromText(const char* destination, const char* text, ULONG textLength,
                                     const ORV_SMS_OPTIONS* options, ORV_GSM_SMS_OUT* record)
{
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    ORV_GSM_SMS_OUT first;
    ULONG count = 0;
    if (const ORV_RCODE refused = OrvGsmSmsPart(destination, text, textLength, options, 0, &first, &count))
        return refused;
    if (count > 1) return ORV_RCODE_VENDOR_5;
    *record = first;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvCdmaSmsFromText(const char* destination, const char* text, ULONG textLength,
                                      ORV_CDMA_SMS_SEND* record, BYTE* userData, ULONG capacity)
{
    GivenText given;
    if (!destination || !record || !userData || !given.Take(text, textLength) || given.length == 0)
        return ORV_RCODE_BAD_PARAMETER;
    ORV_CDMA_SMS_SEND filled = {};
    ULONG digits = 0;
    for (; destination[digits] != '\0'; ++digits) {
        if (digits == ORV_CDMA_SMS_MAX_DIGITS || DigitValue(destination[digits]) > 9) return ORV_RCODE_BAD_PARAMETER;
        filled.szAddress[digits] = static_cast<WCHAR>(destination[digits]);
    }
    if (digits == 0) return ORV_RCODE_BAD_PARAMETER;

    const ULONG room = capacity < ORV_CDMA_SMS_MAX_USER_DATA ? capacity : ULONG{ORV_CDMA_SMS_MAX_USER_DATA};
    ULONG octets = given.length;
    if (IsAscii(given.text, given.length)) {
        if (octets > room) return ORV_RCODE_VENDOR_5;
        memcpy(userData, given.text, octets);
        filled.uEncoding = ORV_CDMA_SMS_ENCODING_ASCII;
    } else {
        const ORV_RCODE refused =
            OrvUcs2FromText(given.text, given.length, ORV_UCS2_BIG_ENDIAN, userData, room, &octets);
        if (refused != ORV_RCODE_OK) return refused;
        filled.uEncoding = ORV_CDMA_SMS_ENCODING_UNICODE;
    }
    filled.sizeStruct = sizeof filled;
    filled.uMsgType = ORV_CDMA_SMS_SUBMIT;
    filled.uAddrLen = static_cast<BYTE>(digits);
    filled.uPriority = ORV_CDMA_SMS_PRIORITY_NORMAL;
    filled.pUserData = userData;
    filled.uUserDataLen = octets;
    *record = filled;
    return ORV_RCODE_OK;
}

// --- joining the parts of a long message -----------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGsmSmsConcatenation(const ORV_GSM_SMS_IN* record, ORV_SMS_CONCATENATION* concatenation)
{
    if (!record || !concatenation) return ORV_RCODE_BAD_PARAMETER;
    ORV_SMS_CONCATENATION found = {};
    if (record->uUserDataHeaderLen > ORV_GSM_SMS_HEADER_ROOM ||
        !FindConcatenation(record->abUserDataHeader, record->uUserDataHeaderLen, found))
        return ORV_RCODE_UNSUPPORTED;
    *concatenation = found;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSmsJoinStart(ORV_SMS_JOINER* joiner, BYTE* memory, ULONG capacity)
{
    if (!joiner || !IsBuffer(memory, capacity)) return ORV_RCODE_BAD_PARAMETER;
    *joiner = {};
    joiner->sizeStruct = sizeof *joiner;
    joiner->pMemory = memory;
    joiner->uCapacity = capacity;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSmsJoinAdd(ORV_SMS_JOINER* joiner, const ORV_GSM_SMS_IN* record, ULONG* outcome)
{
    if (!joiner || !record || !outcome) return ORV_RCODE_BAD_PARAMETER;
    return AddPart(*joiner, *record, *outcome);
}

ORV_RCODE ORV_CALL OrvSmsJoinMissing(const ORV_SMS_JOINER* joiner, BYTE* parts, ULONG capacity, ULONG* count)
{
    if (!joiner || !count || !IsBuffer(parts, capacity)) return ORV_RCODE_BAD_PARAMETER;
    ULONG missing = 0;
    for (ULONG part = 1; part <= joiner->message.uParts; ++part) {
        if (!PartIsMissing(*joiner, part)) continue;
        if (missing < capacity) parts[missing] = static_cast<BYTE>(part);
        ++missing;
    }
    *count = missing;
    return missing <= capacity ? ORV_RCODE_OK : ORV_RCODE_VENDOR_5;
}

ORV_RCODE ORV_CALL OrvSmsJoinText(const ORV_SMS_JOINER* joiner, char* text, ULONG capacity, ULONG* length)
{
    if (!joiner) return ORV_RCODE_BAD_PARAMETER;
    return GiveText(text, capacity, length, [=](Utf8Output& out) {
        if (joiner->uReceived == 0 || joiner->uReceived != joiner->message.uParts) return ORV_RCODE_NOT_AVAILABLE;
        return PutJoinedText(out, *joiner);
    });
}

// --- messages without a module ---------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvGsmSmsDecode(const BYTE* pdu, ULONG length, ORV_GSM_SMS_IN* record)
{
    return DecodeCompletePDU(pdu, length, record);
}

ORV_RCODE ORV_CALL OrvGsmSmsEncode(const ORV_GSM_SMS_OUT* record, BYTE* pdu, ULONG* length)
{
    if (!length) return ORV_RCODE_BAD_PARAMETER;
    WORD octets = static_cast<WORD>(*length < 0xFFFF ? *length : 0xFFFF);
    if (const ORV_RCODE refused = EncodeMOPDU(record, pdu, &octets)) return refused;
    *length = octets;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvCdmaSmsDecode(const BYTE* message, ULONG length, ORV_CDMA_SMS* record)
{
    if (!record || !IsBuffer(message, length)) return ORV_RCODE_BAD_PARAMETER;
    return DecodeCompleteMTSms(message, length, record);
}

ORV_RCODE ORV_CALL OrvCdmaSmsEncode(const ORV_CDMA_SMS_SEND* record, BYTE* message, ULONG* length)
{
    if (!record || !length || !IsBuffer(message, *length)) return ORV_RCODE_BAD_PARAMETER;
    char destination[ORV_CDMA_SMS_MAX_DIGITS], callback[ORV_CDMA_SMS_MAX_DIGITS];
    if (!NarrowDigits(record->szAddress, record->uAddrLen, destination) ||
        !NarrowDigits(record->szCallback, record->uCallbackLen, callback))
        return ORV_RCODE_BAD_PARAMETER;
    BYTE* block = nullptr;
    ULONG octets = 0;
    const ORV_RCODE refused = EncodeCompleteMoSms(
        &block, &octets, destination, record->uAddrLen, callback, record->uCallbackLen, record->uEncoding,
        record->pUserData, record->uUserDataLen, record->uMsgType, record->uMsgId, record->uPriority);
    if (refused != ORV_RCODE_OK) return refused;
    const bool fits = octets <= *length;
    if (fits) memcpy(message, block, octets);
    HeapBuffer::Free(block);
    *length = octets;
    return fits ? ORV_RCODE_OK : ORV_RCODE_VENDOR_5;
}
