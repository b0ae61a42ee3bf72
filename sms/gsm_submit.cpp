#include "sms/gsm_submit.h"

#include "sms/bits.h"
#include "sms/gsm_common.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\sms.cpp");

// TP-DCS of the general data coding group.
enum : BYTE { kCompressed = 0x20, kHasClass = 0x10 };

ORV_RCODE TooLong(ULONG length)
{
    LOG_C("Very large message of len = %d", length);
    return ORV_RCODE_VENDOR_5;
}

// What the record's own fields do not bound.
ORV_RCODE CheckFields(const ORV_GSM_SMS_OUT& record)
{
    const bool wide = record.eEncoding == ORV_GSM_ALPHABET_UCS2;
    if (record.uUserDataLen > ORV_GSM_SMS_MAX_USER_DATA ||
        (wide && record.uUserDataLen > sizeof record.abUserData / 2)) {
        return TooLong(record.uUserDataLen);
    }
    if (record.uUserDataHeaderLen > 0xFF) return TooLong(record.uUserDataHeaderLen);
    if (record.uSmscAddrLen > 2 * sizeof record.abSmscAddr || record.uDestAddrLen > 2 * sizeof record.abDestAddr ||
        record.eEncoding > ORV_GSM_ALPHABET_UCS2 || record.eMessageClass > ORV_GSM_CLASS_NONE) {
        LOG_C("Bad field: SMSC digits %d, destination digits %d, alphabet %d, class %d", record.uSmscAddrLen,
              record.uDestAddrLen, record.eEncoding, record.eMessageClass);
        return ORV_RCODE_BAD_PARAMETER;
    }
    return ORV_RCODE_OK;
}

void PutServiceCentre(OctetWriter& out, const ORV_GSM_SMS_OUT& record)
{
    const ULONG octets = (record.uSmscAddrLen + 1) / 2;
    if (octets == 0) return out.Put(0);
    out.Put(octets + 1);
    out.Put(EncodeTypeOfAddr(record.uSmscTypeOfNumber, record.uSmscNumberingPlan));
    out.Put(record.abSmscAddr, octets);
}

ULONG DataCodingScheme(const ORV_GSM_SMS_OUT& record)
{
    ULONG scheme = record.eEncoding << 2;
    if (record.bCompressed == 1) scheme |= kCompressed;
    if (record.eMessageClass != ORV_GSM_CLASS_NONE) scheme |= kHasClass | record.eMessageClass;
    LOG_C("Outgoing SMS: Message class bit:%d   Message class: %d", scheme & kHasClass, record.eMessageClass);
    return scheme;
}

// TP-UDL: characters for the 7-bit alphabet, octets else, the header included.
ULONG UserDataLength(const ORV_GSM_SMS_OUT& record)
{
    ULONG length = record.uUserDataLen;
    if (record.eEncoding == ORV_GSM_ALPHABET_UCS2) length *= 2;
    if (const ULONG header = record.uUserDataHeaderLen) {
        length += record.eEncoding == ORV_GSM_ALPHABET_7BIT ? ((header + 1) * 8 + 6) / 7 : header + 1;
    }
    return length;
}

void PutHeader(OctetWriter& out, const ORV_GSM_SMS_OUT& record)
{
    out.Put(record.uUserDataHeaderLen);
    LOG_C("Length with user data header length field = %d", out.Length());
    out.Put(record.abUserDataHeader, record.uUserDataHeaderLen);
    LOG_C("Length with user HEADER field = %d", out.Length());
}

void PutUserData(OctetWriter& out, const ORV_GSM_SMS_OUT& record)
{
    const ULONG length = record.uUserDataLen;
    if (record.eEncoding == ORV_GSM_ALPHABET_8BIT) return out.Put(record.abUserData, length);
    if (record.eEncoding == ORV_GSM_ALPHABET_UCS2) return out.Put(record.abUserData, 2 * length);
    const ULONG octets = OctetsOfSeptets(length);
    const ULONG fill = record.uUserDataHeaderLen ? FillBits(record.uUserDataHeaderLen) : 0;
    if (fill == 0) return out.Put(record.abUserData, octets);
    const ULONG shifted = (length * 7 + 7 + fill) / 8; // as many octets, or one more
    if (BYTE* const place = out.Reserve(shifted)) ShiftLeftBits(place, shifted, record.abUserData, octets, fill);
}

} // namespace

ORV_RCODE EncodeMOPDU(const ORV_GSM_SMS_OUT* record, BYTE* pdu, WORD* length)
{
    if (!record || !pdu || !length) return ORV_RCODE_BAD_PARAMETER;
    OctetWriter out(pdu, *length);
    *length = 0;
    if (const ORV_RCODE refused = CheckFields(*record)) return refused;

    PutServiceCentre(out, *record);
    ULONG first = kMtiSubmit;
    if (record->uUserDataHeaderLen) first |= kUserDataHeaderIndicator;
    out.Put(first);
    out.Put(0); // TP-MR: the module counts
    if (record->uDestAddrLen == 0) {
        LOG_C("Destionation addr length is %d", record->uDestAddrLen);
        return ORV_RCODE_BAD_PARAMETER;
    }
    out.Put(record->uDestAddrLen);
    out.Put(EncodeTypeOfAddr(record->uDestTypeOfNumber, record->uDestNumberingPlan));
    out.Put(record->abDestAddr, (record->uDestAddrLen + 1) / 2);
    out.Put(0); // TP-PID
    out.Put(DataCodingScheme(*record));
    LOG_C("DEBUG: Length with data coding scheme = %d ", out.Length());
    out.Put(UserDataLength(*record));
    LOG_C("Length with user data length field = %d", out.Length());
    if (record->uUserDataHeaderLen) PutHeader(out, *record);
    PutUserData(out, *record);
    if (out.Failed()) return TooLong(record->uUserDataLen);
    LOG_C("Overall byte array size =%d", out.Length());
    *length = static_cast<WORD>(out.Length());
    return ORV_RCODE_OK;
}
