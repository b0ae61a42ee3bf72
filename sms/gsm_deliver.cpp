#include "sms/gsm_deliver.h"

#include "sms/bits.h"
#include "sms/gsm_common.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\sms.cpp");

constexpr ULONG kTimeStampOctets = 7;

// Whether to go on behind a step. If not, `result` is what decoding gives.
using GoOn = bool;

// A type-of-address octet and `octets` octets of digits.
inline GoOn TakeAddress(OctetReader& in, ULONG octets, ULONG* type_of_number, ULONG* plan, BYTE* digits,
                        const char* type_fault, const char* digits_fault, ORV_RCODE& result)
{
    if (in.Left() == 0) return false;
    result = DecodTypeofAddr(in.Take(), type_of_number, plan);
    if (result != ORV_RCODE_OK) {
        LOG_C("%s", type_fault);
        return false;
    }
    if (octets == 0) return true;
    if (in.Left() == 0) return false;
    ULONG digit_count = ORV_GSM_SMS_MAX_DIGITS;
    if (octets > in.Left() && 2 * octets <= digit_count) return false;
    result = DecodeAddr(in.Rest(), octets, digits, &digit_count);
    if (result != ORV_RCODE_OK) {
        LOG_C("%s", digits_fault);
        return false;
    }
    in.Skip(octets);
    return true;
}

GoOn TakeServiceCentre(OctetReader& in, ORV_GSM_SMS_IN* record, ORV_RCODE& result)
{
    const ULONG octets = in.Take();
    if (octets == 0) {
        LOG_C("SMSC information not present");
        return true;
    }
    return TakeAddress(in, octets - 1, &record->uSmscTypeOfNumber, &record->uSmscNumberingPlan, record->abSmscDigits,
                       "DecodTypeofAddr failed", "DecodeAddr failed", result);
}

GoOn TakeSender(OctetReader& in, ORV_GSM_SMS_IN* record, ORV_RCODE& result)
{
    if (in.Left() == 0) return false;
    const ULONG digits = in.Take();
    record->uSenderAddrLen = digits;
    return TakeAddress(in, (digits + 1) / 2, &record->uSenderTypeOfNumber, &record->uSenderNumberingPlan,
                       record->abSenderDigits, "DecodTypeofAddr failed for sender number",
                       "DecodeAddr for sender number failed", result);
}

// TP-PID, TP-DCS and TP-SCTS.
GoOn TakeParameters(OctetReader& in, ORV_GSM_SMS_IN* record, ORV_RCODE& result)
{
    if (in.Left() == 0) return false;
    result = DecodeProtocolId(in.Take(), &record->uPidGroup, &record->uPidValue);
    if (result != ORV_RCODE_OK) {
        LOG_C("Error decoding Protocol and Protocol Id");
        return false;
    }
    if (in.Left() == 0) return false;
    result = DecodeDataCodingScheme(in.Take(), &record->eEncoding, &record->eMessageClass, &record->bCompressed);
    if (result != ORV_RCODE_OK) {
        LOG_C("Error decoding coding scheme");
        return false;
    }
    if (in.Left() < kTimeStampOctets) return false;
    result = DecodeTimeStamp(in.Rest(), in.Left(), record->abTimeStamp, sizeof record->abTimeStamp);
    if (result != ORV_RCODE_OK) {
        LOG_C("Error in DecodeTimeStamp");
        return false;
    }
    in.Skip(kTimeStampOctets);
    return true;
}

// Copies what is there of `count` octets, and zeros for the rest.
void CopyPresent(const OctetReader& in, BYTE* out, ULONG count, ULONG shift)
{
    const ULONG present = count < in.Left() ? count : in.Left();
    if (shift) {
        ShiftRightBits(out, in.Rest(), present, shift);
    } else if (present) {
        memcpy(out, in.Rest(), present);
    }
    if (present < count) memset(out + present, 0, count - present);
}

// The octets of UDHL and of the header, and the fill bits behind them. False when the message ends in front of UDHL.
GoOn TakeHeader(OctetReader& in, ORV_GSM_SMS_IN* record, ULONG& octets, ULONG& fill)
{
    if (in.Left() == 0) return false;
    const ULONG length = in.Take();
    static_assert(ORV_GSM_SMS_HEADER_ROOM > 0xFF, "any UDHL fits");
    CopyPresent(in, record->abUserDataHeader, length, 0);
    record->uUserDataHeaderLen = length;
    if (LogIsOn(OV_LOG_INFO)) {
        LOG_C("DEBUG: User data header length = %d", length);
        for (ULONG i = 0; i < length && i < in.Left(); ++i)
            LOG_C("DEBUG: IE: %d", record->abUserDataHeader[i]);
    }
    in.Skip(length < in.Left() ? length : in.Left());
    if (record->eEncoding == ORV_GSM_ALPHABET_7BIT) fill = FillBits(length);
    octets = octets > length + 1 ? octets - (length + 1) : 0;
    return true;
}

void DecodeUserData(OctetReader& in, bool has_header, ORV_GSM_SMS_IN* record)
{
    if (in.Left() == 0) return;
    const ULONG length = in.Take();
    const ULONG alphabet = record->eEncoding;
    record->uUserDataLen = length;
    LOG_C("User data chars = %d", length);
    ULONG octets = length;
    if (alphabet == ORV_GSM_ALPHABET_7BIT) {
        octets = OctetsOfSeptets(length);
    } else {
        LOG_C("DEBUG: Number of bytes needed to encode these chars, Bytes = %d, data coding scheme = %d", octets,
              alphabet);
    }
    LOG_C("DEBUG: bMultipart = %d", has_header);
    ULONG fill = 0;
    if (!has_header) {
        record->uUserDataHeaderLen = 0;
    } else if (!TakeHeader(in, record, octets, fill)) {
        return;
    }
    LOG_C("DEBUG: FINAL Number of bytes needed to encode these chars, Bytes = %d, data coding scheme = %d", octets,
          alphabet);
    CopyPresent(in, record->abUserData, octets, fill);
}

} // namespace

ORV_RCODE DecodeCompletePDU(const BYTE* pdu, ULONG length, ORV_GSM_SMS_IN* record)
{
    if (!pdu || length == 0 || !record) return ORV_RCODE_BAD_PARAMETER;
    OctetReader in(pdu, length);
    ORV_RCODE result = ORV_RCODE_OK;
    if (!TakeServiceCentre(in, record, result)) return result;

    if (in.Left() == 0) return ORV_RCODE_OK;
    const BYTE first = in.Take();
    if ((first & kMtiMask) != kMtiDeliver) {
        LOG_C("Message is not of type deliver");
        return ORV_RCODE_FAILED;
    }
    if (!TakeSender(in, record, result) || !TakeParameters(in, record, result)) return result;
    DecodeUserData(in, (first & kUserDataHeaderIndicator) != 0, record);
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeAddr(const BYTE* octets, ULONG count, BYTE* digits, ULONG* digit_count)
{
    if (*digit_count / 2 < count) return ORV_RCODE_VENDOR_5;
    ULONG found = 0;
    for (ULONG i = 0; i < count; ++i) {
        digits[found++] = octets[i] & 0x0F;
        const BYTE high = octets[i] >> 4;
        if (high != 0xF) digits[found++] = high;
    }
    *digit_count = found;
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeProtocolId(BYTE octet, ULONG* group, ULONG* value)
{
    if (!group || !value) return ORV_RCODE_BAD_PARAMETER;
    *group = octet & 0xF0;
    *value = octet & 0x0F;
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeDataCodingScheme(BYTE octet, ULONG* alphabet, ULONG* message_class, ULONG* compressed)
{
    if (!alphabet || !message_class || !compressed) return ORV_RCODE_BAD_PARAMETER;
    const bool general = (octet & 0xC0) == 0;
    *compressed = general ? octet >> 5 & 1 : 0;
    *alphabet = general ? octet >> 2 & 3 : octet >> 2 & 1;
    *message_class = !general || octet & 0x10 ? octet & 3 : ORV_GSM_CLASS_NONE;
    LOG_C("Incoming SMS: peDataCodingClass = %d", *message_class);
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeTimeStamp(const BYTE* octets, ULONG count, BYTE* out, ULONG room)
{
    if (count < kTimeStampOctets || room < 2 * kTimeStampOctets) return ORV_RCODE_VENDOR_5;
    for (ULONG i = 0; i < kTimeStampOctets; ++i)
        out[i] = octets[i] >> 4;
    return ORV_RCODE_OK;
}
