// Hostile octets as septets, as UCS2, as a UTF-8 text to be split, and as the messages that a joiner gets. The first
// octet chooses, and seeds sizes.
#include <stdlib.h>
#include <string.h>

#include "talvek/sms_text.h"

namespace {

void Require(bool condition)
{
    if (!condition) abort();
}

// A block of the exact size, so that a step outside is found.
class Block {
public:
    explicit Block(size_t size) : m_octets(static_cast<char*>(malloc(size ? size : 1)))
    {
        Require(m_octets != nullptr);
    }
    Block(const BYTE* octets, size_t size) : Block(size)
    {
        if (size != 0) memcpy(m_octets, octets, size);
    }
    ~Block() { free(m_octets); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    char* Text() const { return m_octets; }
    BYTE* Octets() const { return reinterpret_cast<BYTE*>(m_octets); }

private:
    char* m_octets;
};

// What a function gives for a text, into a block of the length that it tells; and cut to half of it.
template <class Give, class Check>
void WithText(Give give, Check check)
{
    ULONG length = 0, again = 0;
    Require(give(nullptr, 0, &length) == ORV_RCODE_VENDOR_5);
    const Block text(length + 1), half(length / 2);
    Require(give(text.Text(), length + 1, &again) == ORV_RCODE_OK && again == length && text.Text()[length] == '\0');
    Require(give(half.Text(), length / 2, &again) == ORV_RCODE_VENDOR_5 && again == length);
    if (length >= 2) { // what is there is the beginning of the whole
        ULONG there = 0;
        while (half.Text()[there] != '\0')
            ++there;
        Require(there < length / 2 && memcmp(half.Text(), text.Text(), there) == 0);
    }
    check(text.Text(), length);
}

void CheckSeptets(BYTE seed, const BYTE* data, size_t size)
{
    const Block octets(data, size);
    const ULONG most = static_cast<ULONG>(size * 8 / 7), first = seed >> 2, septets = most > first ? most - first : 0;
    ULONG length = 0;
    Require(OrvGsmTextUnpack(octets.Octets(), static_cast<ULONG>(size), first, most + 1, nullptr, 0, &length) ==
            ORV_RCODE_FAILED);
    if (most < first) return;
    WithText(
        [&](char* text, ULONG capacity, ULONG* needed) {
            return OrvGsmTextUnpack(octets.Octets(), static_cast<ULONG>(size), first, septets, text, capacity, needed);
        },
        [&](const char* text, ULONG text_length) {
            // The same text from the septets that it gives, which are no more than there were.
            ULONG count = 0;
            Require(OrvGsmTextSeptets(text, text_length, &count) == ORV_RCODE_OK && count <= septets);
            const Block packed((count * 7 + 7) / 8), back(text_length + 1);
            Require(OrvGsmTextPack(text, text_length, packed.Octets(), (count * 7 + 7) / 8, &count) == ORV_RCODE_OK);
            Require(OrvGsmTextUnpack(packed.Octets(), (count * 7 + 7) / 8, 0, count, back.Text(), text_length + 1,
                                     &length) == ORV_RCODE_OK);
            Require(length == text_length && memcmp(back.Text(), text, length) == 0);
        });
}

void CheckUcs2(BYTE seed, const BYTE* data, size_t size)
{
    const Block octets(data, size);
    const ULONG order = seed >> 2 & 1;
    ULONG length = 0;
    Require(OrvUcs2ToText(octets.Octets(), static_cast<ULONG>(size), order, nullptr, 0, &length) == ORV_RCODE_VENDOR_5);
    const Block text(length + 1), again(length + 1), units(size + 1);
    Require(OrvUcs2ToText(octets.Octets(), static_cast<ULONG>(size), order, text.Text(), length + 1, &length) ==
            ORV_RCODE_OK);
    ULONG count = 0, back = 0;
    Require(OrvUcs2FromText(text.Text(), length, order, units.Octets(), static_cast<ULONG>(size + 1), &count) ==
            ORV_RCODE_OK);
    Require(OrvUcs2ToText(units.Octets(), count, order, again.Text(), length + 1, &back) == ORV_RCODE_OK);
    Require(back == length && memcmp(again.Text(), text.Text(), length) == 0);
}

// As it arrives, without going through a message.
ORV_GSM_SMS_IN Received(const ORV_GSM_SMS_OUT& sent)
{
    ORV_GSM_SMS_IN record = {};
    const ULONG header = sent.uUserDataHeaderLen;
    const bool septets = sent.eEncoding == ORV_GSM_ALPHABET_7BIT;
    record.eEncoding = sent.eEncoding;
    record.uUserDataLen = septets ? sent.uUserDataLen : sent.uUserDataLen * 2;
    if (header != 0) record.uUserDataLen += septets ? ((header + 1) * 8 + 6) / 7 : header + 1;
    record.uUserDataHeaderLen = header;
    memcpy(record.abUserDataHeader, sent.abUserDataHeader, sizeof record.abUserDataHeader);
    memcpy(record.abUserData, sent.abUserData, sizeof record.abUserData);
    return record;
}

void CheckSplitting(BYTE seed, const BYTE* data, size_t size)
{
    const Block text(data, size);
    const ULONG length = static_cast<ULONG>(size);
    ORV_SMS_OPTIONS options = ORV_SMS_OPTIONS_DEFAULT;
    options.bUcs2 = seed >> 2 & 1;
    options.bWideReference = seed >> 3 & 1;
    options.uReference = seed * 257u;
    const Block memory(ORV_SMS_MAX_PARTS * ORV_SMS_JOINER_PART);
    ORV_SMS_JOINER joiner;
    OrvSmsJoinStart(&joiner, memory.Octets(), ORV_SMS_MAX_PARTS * ORV_SMS_JOINER_PART);
    ULONG count = 1, outcome = 0;
    ORV_GSM_SMS_IN record = {};
    for (ULONG part = 0; part < count; ++part) {
        ORV_GSM_SMS_OUT sent;
        const ORV_RCODE result = OrvGsmSmsPart("+49", text.Text(), length, &options, part, &sent, &count);
        Require(result == ORV_RCODE_OK || (part == 0 && (result == ORV_RCODE_FAILED || result == ORV_RCODE_VENDOR_5)));
        if (result != ORV_RCODE_OK) return;
        record = Received(sent);
        Require(OrvSmsJoinAdd(&joiner, &record, &outcome) == ORV_RCODE_OK);
        Require(outcome == ULONG(count == 1         ? ORV_SMS_JOIN_SINGLE
                                 : part + 1 < count ? ORV_SMS_JOIN_ADDED
                                                    : ORV_SMS_JOIN_COMPLETE));
    }
    const Block back(size + 1);
    ULONG needed = 0;
    const ORV_RCODE result = count == 1 ? OrvGsmSmsToText(&record, back.Text(), length + 1, &needed)
                                        : OrvSmsJoinText(&joiner, back.Text(), length + 1, &needed);
    Require(result == ORV_RCODE_OK && needed == length && memcmp(back.Text(), text.Text(), size) == 0);
}

// Messages one after the other, each behind an octet with its length.
void CheckJoiner(BYTE seed, const BYTE* data, size_t size)
{
    const ULONG capacity = (seed >> 2) * 4u * ORV_SMS_JOINER_PART;
    const Block memory(capacity);
    ORV_SMS_JOINER joiner;
    OrvSmsJoinStart(&joiner, memory.Octets(), capacity);
    for (size_t at = 0; at < size;) {
        const size_t length = data[at] < size - at - 1 ? data[at] : size - at - 1;
        ORV_GSM_SMS_IN record = {};
        char sender[60];
        ULONG needed = 0, outcome = 0, missing = 0;
        OrvGsmSmsDecode(data + at + 1, static_cast<ULONG>(length), &record);
        OrvGsmSmsSender(&record, sender, sizeof sender, &needed);
        const ULONG before = joiner.uReceived;
        const ORV_RCODE result = OrvSmsJoinAdd(&joiner, &record, &outcome);
        const bool added =
            result == ORV_RCODE_OK && (outcome == ORV_SMS_JOIN_ADDED || outcome == ORV_SMS_JOIN_COMPLETE);
        Require(joiner.uReceived == before + added && joiner.uReceived <= joiner.message.uParts);
        Require(joiner.message.uParts * ORV_SMS_JOINER_PART <= capacity);
        BYTE parts[ORV_SMS_MAX_PARTS];
        Require(OrvSmsJoinMissing(&joiner, parts, sizeof parts, &missing) == ORV_RCODE_OK);
        Require(missing == joiner.message.uParts - joiner.uReceived);
        at += length + 1;
    }
    ULONG needed = 0;
    const bool whole = joiner.uReceived != 0 && joiner.uReceived == joiner.message.uParts;
    const ORV_RCODE result = OrvSmsJoinText(&joiner, nullptr, 0, &needed);
    Require(whole ? result == ORV_RCODE_VENDOR_5 || result == ORV_RCODE_UNSUPPORTED
                  : result == ORV_RCODE_NOT_AVAILABLE);
    if (result != ORV_RCODE_VENDOR_5) return;
    const Block text(needed + 1);
    Require(OrvSmsJoinText(&joiner, text.Text(), needed + 1, &needed) == ORV_RCODE_OK);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* data, size_t size)
{
    if (size == 0) return 0;
    constexpr void (*kChecks[])(BYTE, const BYTE*, size_t) = {CheckSeptets, CheckUcs2, CheckSplitting, CheckJoiner};
    kChecks[data[0] & 3](data[0], data + 1, size - 1);
    return 0;
}
