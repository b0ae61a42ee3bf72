#include "sms/gsm_deliver.h"

#include "sms/bits.h"
#include "sms/gsm_common.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\sms.cpp");

constexpr ULONG kTimeStampOctets = 7;

// From a step of decoding: there is no result yet. Every other result ends it.
constexpr ORV_RCODE kGoOn = ORV_RCODE_FORCE_32_BIT;
// Where the octets end, decoding does, with what has been read by then.
constexpr ORV_RCODE kEnd = ORV_RCODE_OK;

struct AddressFaults {
    const char* type;
    const char* digits;
};
constexpr AddressFaults kServiceCentreFaults = {"DecodTypeofAddr failed", "DecodeAddr failed"};
constexpr AddressFaults kSenderFaults = {"DecodTypeofAddr failed for sender number",
                                         "DecodeAddr for sender number failed"};

// A type-of-address octet and `octets` octets of digits. Too many digits are a fault even where they are not there.
SMS_INLINE ORV_RCODE TakeAddress(OctetReader& in, ULONG octets, ULONG* type_of_number, ULONG* plan, BYTE* digits,
                                 const AddressFaults& faults)
{
    if (in.Left() == 0) return kEnd;
    if (const ORV_RCODE failed = DecodTypeofAddr(in.Take(), type_of_number, plan)) {
        LOG_C("%s", faults.type);
        return failed;
    }
    if (octets == 0) return kGoOn;
    if (in.Left() == 0) return kEnd;
    ULONG digit_count = ORV_GSM_SMS_MAX_DIGITS;
    if (octets > in.Left() && 2 * octets <= digit_count) return kEnd;
    if (const ORV_RCODE failed = DecodeAddr(in.Rest(), octets, digits, &digit_count)) {
        LOG_C("%s", faults.digits);
        return failed;
    }
    in.Skip(octets);
    return kGoOn;
}

ORV_RCODE TakeServiceCentre(OctetReader& in, ORV_GSM_SMS_IN* record)
{
    const ULONG octets = in.Take();
    if (octets == 0) {
        LOG_C("SMSC information not present");
        return kGoOn;
    }
    return TakeAddress(in, octets - 1, &record->uSmscTypeOfNumber, &record->uSmscNumberingPlan, record->abSmscDigits,
                       kServiceCentreFaults);
}

ORV_RCODE TakeSender(OctetReader& in, ORV_GSM_SMS_IN* record)
{
    if (in.Left() == 0) return kEnd;
    const ULONG digits = in.Take();
    record->uSenderAddrLen = digits;
    return TakeAddress(in, (digits + 1) / 2, &record->uSenderTypeOfNumber, &record->uSenderNumberingPlan,
                       record->abSenderDigits, kSenderFaults);
}

// TP-PID, TP-DCS and TP-SCTS.
ORV_RCODE TakeParameters(OctetReader& in, ORV_GSM_SMS_IN* record)
{
    if (in.Left() == 0) return kEnd;
    if (const ORV_RCODE failed = DecodeProtocolId(in.Take(), &record->uPidGroup, &record->uPidValue)) {
        LOG_C("Error decoding Protocol and Protocol Id");
        return failed;
    }
    if (in.Left() == 0) return kEnd;
    const BYTE coding_scheme = in.Take();
    if (const ORV_RCODE failed =
            DecodeDataCodingScheme(coding_scheme, &record->eEncoding, &record->eMessageClass, &record->bCompressed)) {
        LOG_C("Error decoding coding scheme");
        return failed;
    }
    if (in.Left() < kTimeStampOctets) return kEnd;
    if (const ORV_RCODE failed =
            DecodeTimeStamp(in.Rest(), in.Left(), record->abTimeStamp, sizeof record->abTimeStamp)) {
        LOG_C("Error in DecodeTimeStamp");
        return failed;
    }
    in.Skip(kTimeStampOctets);
    return kGoOn;
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
bool TakeHeader(OctetReader& in, ORV_GSM_SMS_IN* record, ULONG& octets, ULONG& fill)
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
    if (const ORV_RCODE end = TakeServiceCentre(in, record); end != kGoOn) return end;
    if (in.Left() == 0) return kEnd;
    const BYTE first = in.Take();
    if ((first & kMtiMask) != kMtiDeliver) {
        LOG_C("Message is not of type deliver");
        return ORV_RCODE_FAILED;
    }
    if (const ORV_RCODE end = TakeSender(in, record); end != kGoOn) return end;
    if (const ORV_RCODE end = TakeParameters(in, record); end != kGoOn) return end;
    DecodeUserData(in, (first & kUserDataHeaderIndicator) != 0, record);
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeAddr(const BYTE* octets, ULONG count, BYTE* digits, ULONG* digit_count)
{
    if (*digit_count / 2 < count) return ORV_RCODE_VENDOR_5;
    BYTE* next = digits;
    for (; count >= 4; count -= 4, octets += 4, next += 8) {
        const ULONG word = LoadLittle32(octets);
        if (word & word << 1 & word << 2 & word << 3 & 0x80808080) break; // a filler among them
        StoreLittle(next, SpreadSemiOctets(word));
    }
    for (; count > 0; --count, ++octets) {
        *next++ = *octets & 0x0F;
        const BYTE high = *octets >> 4;
        if (high != 0xF) *next++ = high;
    }
    *digit_count = static_cast<ULONG>(next - digits);
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
