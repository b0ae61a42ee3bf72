// Reads a text as the C library's scanf does, for either width of character, without a locale: the first part that does
// not match ends the scan, and what it would have filled keeps its value.
#pragma once

#include "talvek/types.h"

template <class Char>
class Scanner {
public:
    explicit Scanner(const Char* text) : m_text(text) {}

    // The very characters of `literal`.
    Scanner& Literal(const char* literal)
    {
        for (; m_ok && *literal; ++literal, ++m_text)
            if (*m_text != static_cast<Char>(*literal)) m_ok = false;
        return *this;
    }

    // %x: optional blanks, sign and "0x", then hexadecimal digits. Wraps at 32 bits.
    Scanner& Hex(ULONG* value) { return Integer(16, ~static_cast<ULONG>(0), value); }

    // %<width>d: optional blanks, then at most `width` characters of sign and digits.
    Scanner& Decimal(ULONG width, ULONG* value) { return Integer(10, width, value); }

private:
    static ULONG Digit(Char c)
    {
        if (c >= '0' && c <= '9') return static_cast<ULONG>(c - '0');
        if (c >= 'a' && c <= 'f') return static_cast<ULONG>(c - 'a' + 10);
        if (c >= 'A' && c <= 'F') return static_cast<ULONG>(c - 'A' + 10);
        return 99;
    }

    Scanner& Integer(ULONG base, ULONG width, ULONG* value)
    {
        if (!m_ok) return *this;
        while (*m_text == ' ' || (*m_text >= '\t' && *m_text <= '\r'))
            ++m_text;
        const bool negative = *m_text == '-';
        if (width && (*m_text == '-' || *m_text == '+')) ++m_text, --width;
        if (base == 16 && m_text[0] == '0' && (m_text[1] == 'x' || m_text[1] == 'X') && Digit(m_text[2]) < base)
            m_text += 2;
        ULONG result = 0;
        m_ok = false;
        for (; width && Digit(*m_text) < base; ++m_text, --width, m_ok = true)
            result = result * base + Digit(*m_text);
        if (m_ok) *value = negative ? 0 - result : result;
        return *this;
    }

    const Char* m_text;
    bool m_ok = true;
};
