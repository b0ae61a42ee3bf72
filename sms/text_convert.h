// Message texts between UTF-8 and what goes over the air: packed septets of the GSM alphabet, octets of UCS2.
#pragma once

#include "sms/text_alphabet.h"
#include "sms/text_utf8.h"

// --- septets ---------------------------------------------------------------------------------------------------------

constexpr ULONG SeptetOctets(ULONG septets) { return (septets * 7 + 7) / 8; }
// Septets that a user data header takes, its length octet and the fill bits included (3GPP TS 23.040, 9.2.3.24).
constexpr ULONG HeaderSeptets(ULONG header_length) { return ((header_length + 1) * 8 + 6) / 7; }

// Writes packed septets: the first in the least significant bits of the first octet (3GPP TS 23.038, 6.1.2.1). The
// octets must be clear.
class SeptetPacker {
public:
    SeptetPacker(BYTE* octets, ULONG capacity) : m_octets(octets), m_capacity(capacity) {}

    void Put(BYTE septet);
    // One or two septets, as GsmCode gives them.
    void PutCode(BYTE code)
    {
        if (code >= kGsmExtended) Put(kGsmEscape);
        Put(code & 0x7F);
    }
    // How many septets there are, those that have not fitted included.
    ULONG Septets() const { return m_septets; }

private:
    BYTE* m_octets;
    ULONG m_capacity;
    ULONG m_septets = 0;
};

// Septets into UTF-8, in as many pieces as they come. What an escape at the end of one refers to is the beginning of
// the next.
class GsmToUtf8 {
public:
    explicit GsmToUtf8(Utf8Output& out) : m_out(out) {}

    // `count` packed septets from the `first` one on; all of them lie in the octets.
    void FeedPacked(const BYTE* octets, ULONG first, ULONG count);
    // One septet an octet; bit 7 is ignored.
    void FeedOctets(const BYTE* septets, ULONG count);
    // An escape that nothing followed is a space.
    void Finish();

private:
    void Put(ULONG septet);

    Utf8Output& m_out;
    ULONG m_table = 0; // kGsmExtended behind an escape
};

// --- UCS2 ------------------------------------------------------------------------------------------------------------

enum class UnitOrder { BigEndian, Host };

// 16-bit units into UTF-8, in as many pieces as they come. Surrogates without a partner, and an octet without one,
// become U+FFFD.
class Ucs2ToUtf8 {
public:
    Ucs2ToUtf8(Utf8Output& out, UnitOrder order) : m_out(out), m_order(order) {}

    void Feed(const BYTE* octets, ULONG count);
    void Finish();

private:
    void Put(ULONG unit);

    Utf8Output& m_out;
    UnitOrder m_order;
    ULONG m_high = 0; // a high surrogate that waits for its partner
    BYTE m_octet = 0;
    bool m_has_octet = false;
};

constexpr ULONG Ucs2Units(ULONG character) { return character < 0x10000 ? 1 : 2; }

// Puts the one or two units of a character at `octets`, and returns the number of octets.
ULONG PutUcs2(ULONG character, UnitOrder order, BYTE* octets);
