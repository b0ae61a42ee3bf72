// Reads the hexadecimal numbers that a module gives as text, with one result on every host: the C library's strtoul has
// as many bits as the host's unsigned long.
#pragma once

#include "api/scan.h"

// The number at the beginning of the text: optional blanks, a sign, "0x", then digits up to the first other character.
// 0 when there is no digit; 0xFFFFFFFF when the number needs more than 32 bits, whatever its sign.
inline ULONG HexNumber(const char* text)
{
    while (*text == ' ' || (*text >= '\t' && *text <= '\r'))
        ++text;
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && scan::Digit(text[2]) < 16) text += 2;
    ULONG number = 0;
    for (; scan::Digit(*text) < 16; ++text) {
        if (number > 0xFFFFFFFF >> 4) return 0xFFFFFFFF;
        number = number << 4 | scan::Digit(*text);
    }
    return negative ? 0 - number : number;
}
