// Reads a text as the C library's scanf does, for either width of character, without a locale.
#pragma once

#include <initializer_list>

#include "talvek/types.h"

namespace scan {

template <class Char>
ULONG Digit(Char c)
{
    if (c >= '0' && c <= '9') return static_cast<ULONG>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<ULONG>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<ULONG>(c - 'A' + 10);
    return 99;
}

// Optional blanks, then at most `width` characters of sign, "0x" (base 16) and digits; wraps at 32 bits. Returns where
// the text goes on, or null, with *value untouched, when there is no digit.
template <class Char>
const Char* Number(const Char* text, ULONG base, ULONG width, ULONG* value)
{
    while (*text == ' ' || (*text >= '\t' && *text <= '\r'))
        ++text;
    const bool negative = *text == '-';
    if (width && (*text == '-' || *text == '+')) ++text, --width;
    if (base == 16 && width > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && Digit(text[2]) < base)
        text += 2, width -= 2;
    const Char* const first = text;
    ULONG result = 0;
    for (; width && Digit(*text) < base; ++text, --width)
        result = result * base + Digit(*text);
    if (text == first) return nullptr;
    *value = negative ? 0 - result : result;
    return text;
}

} // namespace scan

// Walks `format`: %x takes a hexadecimal number, %<width>d a decimal one, any other character itself. The first part
// that does not match ends the scan; the values that are left keep what they hold.
template <class Char>
void Scan(const Char* text, const char* format, std::initializer_list<ULONG*> values)
{
    ULONG* const* value = values.begin();
    for (; text && *format; ++format) {
        if (*format != '%') {
            text = *text == static_cast<Char>(*format) ? text + 1 : nullptr;
            continue;
        }
        ULONG width = 0;
        while (*++format >= '0' && *format <= '9')
            width = width * 10 + static_cast<ULONG>(*format - '0');
        if (value == values.end()) return;
        text = scan::Number(text, *format == 'x' ? 16 : 10, width ? width : ~width, *value++);
    }
}
