#include "sms/text_joiner.h"

#include "sms/text_convert.h"
#include "sms/text_parts.h"

#include <string.h>

namespace {

// A part in the joiner's memory.
struct StoredPart {
    BYTE state; // 0: missing; 1 and the alphabet
    BYTE count; // septets or octets
    BYTE octets[ORV_SMS_JOINER_PART - 2];
};
static_assert(sizeof(StoredPart) == ORV_SMS_JOINER_PART && alignof(StoredPart) == 1);
static_assert(sizeof StoredPart::octets == kUserDataOctets - 6, "what the shortest header leaves");

StoredPart& PartAt(const ORV_SMS_JOINER& joiner, ULONG part)
{
    return reinterpret_cast<StoredPart*>(joiner.pMemory)[part - 1];
}

ULONG OctetsOf(const ReceivedText& text)
{
    return text.alphabet == ORV_GSM_ALPHABET_7BIT ? SeptetOctets(text.count) : text.count;
}

// Decodes one stretch of user data after the other, so that what belongs together may lie in two of them.
class TextDecoder {
public:
    explicit TextDecoder(Utf8Output& out) : m_gsm(out), m_ucs2(out, UnitOrder::BigEndian) {}

    bool Feed(const ReceivedText& text)
    {
        switch (text.alphabet) {
        case ORV_GSM_ALPHABET_7BIT:
            m_ucs2.Finish();
            m_gsm.FeedPacked(text.octets, 0, text.count);
            return true;
        case ORV_GSM_ALPHABET_UCS2:
            m_gsm.Finish();
            m_ucs2.Feed(text.octets, text.count);
            return true;
        default:
            return false;
        }
    }
    void Finish()
    {
        m_gsm.Finish();
        m_ucs2.Finish();
    }

private:
    GsmToUtf8 m_gsm;
    Ucs2ToUtf8 m_ucs2;
};

bool SameMessage(const ORV_SMS_JOINER& joiner, const ORV_SMS_CONCATENATION& other, const ORV_GSM_SMS_IN& record)
{
    const ORV_SMS_CONCATENATION& own = joiner.message;
    return own.uReference == other.uReference && own.bWideReference == other.bWideReference &&
           own.uParts == other.uParts && joiner.uSenderTypeOfNumber == record.uSenderTypeOfNumber &&
           joiner.uSenderNumberingPlan == record.uSenderNumberingPlan &&
           joiner.uSenderAddrLen == record.uSenderAddrLen &&
           memcmp(joiner.abSenderDigits, record.abSenderDigits, sizeof joiner.abSenderDigits) == 0;
}

void BeginMessage(ORV_SMS_JOINER& joiner, const ORV_SMS_CONCATENATION& message, const ORV_GSM_SMS_IN& record)
{
    joiner.message = message;
    joiner.uSenderTypeOfNumber = record.uSenderTypeOfNumber;
    joiner.uSenderNumberingPlan = record.uSenderNumberingPlan;
    joiner.uSenderAddrLen = record.uSenderAddrLen;
    memcpy(joiner.abSenderDigits, record.abSenderDigits, sizeof joiner.abSenderDigits);
    memset(joiner.pMemory, 0, joiner.uNeeded);
}

} // namespace

ORV_RCODE TakeText(const ORV_GSM_SMS_IN& record, ReceivedText& out)
{
    // Compressed text is counted in octets, whatever it was before.
    out.alphabet = record.bCompressed || record.eEncoding > ORV_GSM_ALPHABET_RESERVED ? ULONG{ORV_GSM_ALPHABET_RESERVED}
                                                                                      : record.eEncoding;
    const bool septets = out.alphabet == ORV_GSM_ALPHABET_7BIT;
    const ULONG header = record.uUserDataHeaderLen;
    if (header > ORV_GSM_SMS_HEADER_ROOM || record.uUserDataLen > ORV_GSM_SMS_IN_ROOM) return ORV_RCODE_FAILED;
    ULONG before = 0;
    if (header != 0) before = septets ? HeaderSeptets(header) : header + 1;
    if (before > record.uUserDataLen) return ORV_RCODE_FAILED;
    out.count = record.uUserDataLen - before;
    out.octets = record.abUserData;
    return ORV_RCODE_OK;
}

ORV_RCODE PutText(Utf8Output& out, const ReceivedText& text)
{
    TextDecoder decoder(out);
    if (!decoder.Feed(text)) return ORV_RCODE_UNSUPPORTED;
    decoder.Finish();
    return ORV_RCODE_OK;
}

ORV_RCODE AddPart(ORV_SMS_JOINER& joiner, const ORV_GSM_SMS_IN& record, ULONG& outcome)
{
    ORV_SMS_CONCATENATION message = {};
    ReceivedText text = {};
    if (const ORV_RCODE refused = TakeText(record, text)) return refused;
    if (!FindConcatenation(record.abUserDataHeader, record.uUserDataHeaderLen, message)) {
        outcome = ORV_SMS_JOIN_SINGLE;
        return ORV_RCODE_OK;
    }
    const bool first = joiner.message.uParts == 0;
    if (!first && !SameMessage(joiner, message, record)) {
        outcome = ORV_SMS_JOIN_FOREIGN;
        return ORV_RCODE_OK;
    }
    if (OctetsOf(text) > sizeof StoredPart::octets) return ORV_RCODE_FAILED;
    if (first) {
        joiner.uNeeded = message.uParts * ORV_SMS_JOINER_PART;
        if (joiner.uNeeded > joiner.uCapacity) return ORV_RCODE_VENDOR_5;
        BeginMessage(joiner, message, record);
    }
    if (!PartIsMissing(joiner, message.uPart)) {
        outcome = ORV_SMS_JOIN_DUPLICATE;
        return ORV_RCODE_OK;
    }
    StoredPart& part = PartAt(joiner, message.uPart);
    part.state = static_cast<BYTE>(1 + text.alphabet);
    part.count = static_cast<BYTE>(text.count);
    memcpy(part.octets, text.octets, OctetsOf(text));
    outcome = ++joiner.uReceived == message.uParts ? ORV_SMS_JOIN_COMPLETE : ORV_SMS_JOIN_ADDED;
    return ORV_RCODE_OK;
}

bool PartIsMissing(const ORV_SMS_JOINER& joiner, ULONG part) { return PartAt(joiner, part).state == 0; }

ORV_RCODE PutJoinedText(Utf8Output& out, const ORV_SMS_JOINER& joiner)
{
    TextDecoder decoder(out);
    for (ULONG i = 1; i <= joiner.message.uParts; ++i) {
        const StoredPart& part = PartAt(joiner, i);
        if (!decoder.Feed({part.state - 1u, part.count, part.octets})) return ORV_RCODE_UNSUPPORTED;
    }
    decoder.Finish();
    return ORV_RCODE_OK;
}
