#include "at/parse.h"

#include <string.h>

namespace {

constexpr const char* kLineBreak = "\r\n";

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

const char* SkipBlanks(const char* text)
{
    while (*text == ' ')
        ++text;
    return text;
}

} // namespace

bool MatchStringBeginning(const char* text, const char* expected, const char** rest)
{
    const size_t length = strlen(expected);
    if (strncmp(text, expected, length) != 0) return false;
    *rest = text + length;
    return true;
}

bool ParseRspPrefix(const char* text, const char** rest)
{
    if (!MatchStringBeginning(text, kLineBreak, rest)) *rest = text;
    return true;
}

bool ParseRspSuffix(const char* text, const char** rest) { return MatchStringBeginning(text, kLineBreak, rest); }

bool ParseUInt(const char* text, int allow_leading_zero, ULONG* value, const char** rest)
{
    *value = 0;
    *rest = text;
    const char* const digits = SkipBlanks(text);
    if (!IsDigit(digits[0])) return false;
    if (!allow_leading_zero && digits[0] == '0' && IsDigit(digits[1])) return false;

    const char* walk = digits;
    for (; IsDigit(*walk); ++walk)
        *value = *value * 10 + static_cast<ULONG>(*walk - '0');
    *rest = SkipBlanks(walk);
    return true;
}
