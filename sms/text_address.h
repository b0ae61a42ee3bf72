// Addresses of GSM messages as text: digits as semi-octets (3GPP TS 23.040, 9.1.2.3) and names in the GSM alphabet.
#pragma once

#include "sms/text_utf8.h"

constexpr BYTE kFillerDigit = 0x0F;

// The value of one of 0123456789*#abc, the letters also as capitals; kFillerDigit for any other character.
BYTE DigitValue(char character);

// Packs the digits of a terminated text, the first in the low half of the first octet. Returns false for a character
// that is no digit; `count` digits need not have fitted.
bool PackDigits(const char* digits, BYTE* octets, ULONG capacity, ULONG& count);

// Digits up to a filler, from semi-octets or from one octet a digit.
void PutPackedDigits(Utf8Output& out, const BYTE* octets, ULONG octet_count, ULONG digits);
void PutDigits(Utf8Output& out, const BYTE* values, ULONG count);

// An address as a received message's record has it, of at most ORV_GSM_SMS_MAX_DIGITS digits.
void PutGsmAddress(Utf8Output& out, ULONG type_of_number, const BYTE* values, ULONG count);
