// The formats that NKDbgPrintfW knows: %s (16-bit), %d, %x and %%. Another conversion is copied as it stands.
#pragma once

#include <stdarg.h>

#include "talvek/types.h"

namespace debug_text {

constexpr ULONG kRoom = 512;

class Writer {
public:
    explicit Writer(WCHAR (&text)[kRoom]) : m_text(text) {}

    void Put(WCHAR character)
    {
        if (m_length < kRoom - 1) m_text[m_length++] = character;
    }
    void PutString(const WCHAR* string)
    {
        for (string = string ? string : ORV_TEXT("(null)"); *string; ++string)
            Put(*string);
    }
    void PutNumber(ULONG number, ULONG base)
    {
        WCHAR digits[10];
        ULONG count = 0;
        do {
            digits[count++] = static_cast<WCHAR>(ORV_TEXT("0123456789abcdef")[number % base]);
            number /= base;
        } while (number != 0);
        while (count > 0)
            Put(digits[--count]);
    }
    void PutSigned(int32_t number)
    {
        if (number < 0) Put(ORV_TEXT('-'));
        PutNumber(number < 0 ? 0u - static_cast<ULONG>(number) : static_cast<ULONG>(number), 10);
    }
    void Finish() { m_text[m_length] = 0; }

private:
    WCHAR (&m_text)[kRoom];
    ULONG m_length = 0;
};

// Cut at the room; always terminated.
inline void Format(WCHAR (&text)[kRoom], const WCHAR* format, va_list arguments)
{
    Writer writer(text);
    for (const WCHAR* at = format; *at; ++at) {
        if (*at != ORV_TEXT('%') || at[1] == 0) {
            writer.Put(*at);
            continue;
        }
        switch (*++at) {
        case ORV_TEXT('%'):
            writer.Put(*at);
            break;
        case ORV_TEXT('s'):
            writer.PutString(va_arg(arguments, const WCHAR*));
            break;
        case ORV_TEXT('d'):
            writer.PutSigned(va_arg(arguments, int32_t));
            break;
        case ORV_TEXT('x'):
            writer.PutNumber(va_arg(arguments, ULONG), 16);
            break;
        default:
            writer.Put(ORV_TEXT('%'));
            writer.Put(*at);
        }
    }
    writer.Finish();
}

} // namespace debug_text
