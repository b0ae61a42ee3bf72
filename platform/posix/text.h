// Conversion between the library's 16-bit text and the host's UTF-8.
#pragma once

#include "platform/win32.h"

namespace seam {

constexpr char32_t kReplacementCharacter = 0xFFFD;

// Takes one character from UTF-8 text that is not empty. A malformed sequence gives U+FFFD, once for its longest
// beginning that could have gone on well, and sets `*malformed`.
char32_t TakeUtf8(const BYTE*& at, const BYTE* end, bool* malformed);

// Writes a character as one or two 16-bit ones; returns how many.
unsigned PutUtf16(char32_t character, WCHAR (&out)[2]);

// Writes `wide` as UTF-8 with a terminator; half a surrogate pair becomes U+FFFD. Returns false when it does not fit.
bool ToUtf8(const WCHAR* wide, char* text, SIZE_T room);

size_t LengthOf(const WCHAR* text);

constexpr WCHAR ToLower(WCHAR character)
{
    return character >= u'A' && character <= u'Z' ? static_cast<WCHAR>(character + (u'a' - u'A')) : character;
}
// Compares without regard to the case of the ASCII letters.
bool SameText(const WCHAR* one, size_t one_length, const WCHAR* other, size_t other_length);

// The host's environment variable, or null when it is unset or empty, or when this process runs with more rights than
// its caller has.
const char* Environment(const char* name);

} // namespace seam
