// Reads BER-TLV elements (ISO/IEC 8825-1, definite lengths), one after another:
//
//     TlvReader elements(data, size);
//     while (elements.Next())
//         if (elements.Tag() == 0x82) ...
//
// What does not fit into the octets that the reader was given is not read, and ends it for good: Failed().
#pragma once

#include "platform/win32.h"

class TlvReader {
public:
    TlvReader(const BYTE* data, ULONG size) : m_rest(data), m_left(size) {}

    // Goes on to the next element. False behind the last one, and from the first that does not fit.
    bool Next()
    {
        m_tag = m_length = 0;
        if (m_failed || m_left == 0) return false;
        if (TakeTag() && TakeLength() && m_length <= m_left) {
            m_value = m_rest;
            m_rest += m_length;
            m_left -= m_length;
            return true;
        }
        m_tag = m_length = 0;
        m_failed = true;
        return false;
    }

    // Of the element that Next went on to; the identifier octets as one number.
    ULONG Tag() const { return m_tag; }
    ULONG Length() const { return m_length; }
    const BYTE* Value() const { return m_value; }
    // A reader for the elements within it.
    TlvReader Inside() const { return TlvReader(m_value, m_length); }
    bool Failed() const { return m_failed; }

private:
    bool Take(BYTE* octet)
    {
        if (m_left == 0) return false;
        *octet = *m_rest++;
        --m_left;
        return true;
    }

    // Identifiers of up to four octets.
    bool TakeTag()
    {
        BYTE octet = 0;
        if (!Take(&octet)) return false;
        m_tag = octet;
        if ((octet & 0x1F) != 0x1F) return true;
        for (int i = 0; i < 3 && Take(&octet); ++i) {
            m_tag = m_tag << 8 | octet;
            if (!(octet & 0x80)) return true;
        }
        return false;
    }

    // Lengths of up to four octets behind the first.
    bool TakeLength()
    {
        BYTE octet = 0;
        if (!Take(&octet)) return false;
        m_length = octet;
        if (octet < 0x80) return true;
        ULONG octets = octet & 0x7Fu;
        if (octets == 0 || octets > 4) return false; // the indefinite form, and what no card has
        for (m_length = 0; octets > 0 && Take(&octet); --octets)
            m_length = m_length << 8 | octet;
        return octets == 0;
    }

    const BYTE* m_rest;
    ULONG m_left;
    ULONG m_tag = 0;
    ULONG m_length = 0;
    const BYTE* m_value = nullptr;
    bool m_failed = false;
};
