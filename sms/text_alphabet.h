// The GSM 7 bit default alphabet and its extension table (3GPP TS 23.038, 6.2.1 and 6.2.1.1).
#pragma once

#include "platform/win32.h"

constexpr BYTE kGsmEscape = 0x1B;
// Added to a code of the extension table, which takes two septets: the escape, then the code.
constexpr BYTE kGsmExtended = 0x80;
constexpr BYTE kNotGsm = 0xFF;

// What a code stands for, as UTF-8: at most three octets.
struct GsmCharacter {
    char octets[3];
    BYTE count_and_table; // octets in bits 1 and 0; kGsmExtended where the next code is one of the extension table
};

struct GsmCharacters {
    // 128 codes of the default alphabet, then 128 that follow an escape. A code that the extension table lacks stands
    // for the character of the default alphabet, and a second escape for a space, as the standard has it.
    GsmCharacter by_code[256];
};

extern const GsmCharacters kGsmCharacters;

// The code of a character, kGsmExtended added where it is one of the extension table, or kNotGsm.
BYTE GsmCode(ULONG character);

constexpr ULONG GsmSeptets(BYTE code) { return code < kGsmExtended ? 1 : 2; }
