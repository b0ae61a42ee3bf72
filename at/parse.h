// Primitives that walk a modem reply held as a terminated 8-bit string. `rest` receives the position after what was
// consumed.
#pragma once

#include "platform/win32.h"

// Succeeds only if `expected` stands exactly at `text`; then *rest is behind it. Otherwise *rest is untouched.
bool MatchStringBeginning(const char* text, const char* expected, const char** rest);
// A leading "\r\n" is optional: always true.
bool ParseRspPrefix(const char* text, const char** rest);
// The trailing "\r\n" is required.
bool ParseRspSuffix(const char* text, const char** rest);
// Decimal digits with blanks before and after; the value wraps at 32 bits. With `allow_leading_zero` 0, "0" followed by
// a digit fails. On failure *rest = text.
bool ParseUInt(const char* text, int allow_leading_zero, ULONG* value, const char** rest);
