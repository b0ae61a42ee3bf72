#include "platform/posix/text.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "platform/posix/seam.h"

using seam::Call;

namespace seam {

namespace {

// How a sequence goes on after its first octet. The second octet's range excludes long forms, surrogates and characters
// above U+10FFFF.
struct Utf8Row {
    BYTE first_low, first_high;
    BYTE second_low, second_high;
    unsigned length;
    BYTE first_mask;
};
constexpr Utf8Row kUtf8Rows[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 2, 0x1F}, {0xE0, 0xE0, 0xA0, 0xBF, 3, 0x0F}, {0xE1, 0xEC, 0x80, 0xBF, 3, 0x0F},
    {0xED, 0xED, 0x80, 0x9F, 3, 0x0F}, {0xEE, 0xEF, 0x80, 0xBF, 3, 0x0F}, {0xF0, 0xF0, 0x90, 0xBF, 4, 0x07},
    {0xF1, 0xF3, 0x80, 0xBF, 4, 0x07}, {0xF4, 0xF4, 0x80, 0x8F, 4, 0x07},
};

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Writes a character as one to four octets; returns how many.
unsigned PutUtf8(char32_t character, char (&out)[4])
{
    if (character < 0x80) {
        out[0] = static_cast<char>(character);
        return 1;
    }
    const unsigned length = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
    for (unsigned i = length - 1; i > 0; --i) {
        out[i] = static_cast<char>(0x80 | (character & 0x3F));
        character >>= 6;
    }
    constexpr BYTE kFirstOctet[] = {0, 0, 0xC0, 0xE0, 0xF0}; // by length
    out[0] = static_cast<char>(kFirstOctet[length] | character);
    return length;
}

} // namespace

char32_t TakeUtf8(const BYTE*& at, const BYTE* end, bool* malformed)
{
    const BYTE first = *at++;
    if (first < 0x80) return first;
    for (const Utf8Row& row : kUtf8Rows) {
        if (first < row.first_low || first > row.first_high) continue;
        char32_t character = first & row.first_mask;
        for (unsigned i = 1; i < row.length; ++i) {
            const BYTE low = i == 1 ? row.second_low : BYTE{0x80};
            const BYTE high = i == 1 ? row.second_high : BYTE{0xBF};
            if (at == end || *at < low || *at > high) {
                *malformed = true;
                return kReplacementCharacter;
            }
            character = character << 6 | (*at++ & 0x3Fu);
        }
        return character;
    }
    *malformed = true;
    return kReplacementCharacter;
}

unsigned PutUtf16(char32_t character, WCHAR (&out)[2])
{
    if (character < 0x10000) {
        out[0] = static_cast<WCHAR>(character);
        return 1;
    }
    out[0] = static_cast<WCHAR>(0xD800 + ((character - 0x10000) >> 10));
    out[1] = static_cast<WCHAR>(0xDC00 + ((character - 0x10000) & 0x3FF));
    return 2;
}

bool ToUtf8(const WCHAR* wide, char* text, SIZE_T room)
{
    SIZE_T length = 0;
    while (*wide) {
        char32_t character = *wide++;
        if (IsHighSurrogate(character) && IsLowSurrogate(*wide)) {
            character = 0x10000 + ((character - 0xD800) << 10) + (*wide++ - 0xDC00u);
        } else if (IsHighSurrogate(character) || IsLowSurrogate(character)) {
            character = kReplacementCharacter;
        }
        char octets[4];
        const unsigned count = PutUtf8(character, octets);
        if (count >= room - length) return false; // leaves room for the terminator
        memcpy(text + length, octets, count);
        length += count;
    }
    if (room == 0) return false;
    text[length] = 0;
    return true;
}

size_t LengthOf(const WCHAR* text)
{
    size_t length = 0;
    while (text[length])
        ++length;
    return length;
}

bool SameText(const WCHAR* one, size_t one_length, const WCHAR* other, size_t other_length)
{
    if (one_length != other_length) return false;
    for (size_t i = 0; i < one_length; ++i) {
        if (ToLower(one[i]) != ToLower(other[i])) return false;
    }
    return true;
}

const char* Environment(const char* name)
{
    const char* value = secure_getenv(name);
    return value && *value ? value : nullptr;
}

} // namespace seam

namespace {

// Writes at most `room` characters and returns how many the whole text needs.
size_t Widen(UINT code_page, const char* text, size_t size, WCHAR* wide, size_t room)
{
    const BYTE* at = reinterpret_cast<const BYTE*>(text);
    const BYTE* const end = at + size;
    size_t needed = 0;
    bool malformed = false;
    while (at != end) {
        WCHAR units[2];
        const char32_t character = code_page == CP_UTF8 ? seam::TakeUtf8(at, end, &malformed) : *at++;
        const unsigned count = seam::PutUtf16(character, units);
        for (unsigned i = 0; i < count; ++i, ++needed) {
            if (needed < room) wide[needed] = units[i];
        }
    }
    return needed;
}

constexpr DWORD kPrecomposed = 1; // MB_PRECOMPOSED, which is the default

constexpr size_t kVariableNameRoom = 256;

} // namespace

namespace talvek_platform {

int MultiByteToWideChar(UINT code_page, DWORD flags, const char* text, int size, WCHAR* wide, int room)
{
    if (seam::Faulted(Call::MultiByteToWideChar)) return 0;
    const bool known_page = code_page == CP_ACP || code_page == CP_UTF8;
    if (!known_page || (flags & ~kPrecomposed) || !text || size < -1 || size == 0 || room < 0 || (room > 0 && !wide)) {
        return seam::Fail(ERROR_INVALID_PARAMETER);
    }
    const size_t length = size == -1 ? strlen(text) + 1 : static_cast<size_t>(size);
    const size_t needed = Widen(code_page, text, length, nullptr, 0);
    if (needed > INT_MAX) return seam::Fail(ERROR_INVALID_PARAMETER);
    if (room == 0) return static_cast<int>(needed);
    if (needed > static_cast<size_t>(room)) return seam::Fail(ERROR_INSUFFICIENT_BUFFER);
    Widen(code_page, text, length, wide, static_cast<size_t>(room));
    return static_cast<int>(needed);
}

DWORD GetEnvironmentVariableW(const WCHAR* name, WCHAR* buffer, DWORD room)
{
    if (seam::Faulted(Call::GetEnvironmentVariableW)) return 0;
    if (!name || (room > 0 && !buffer)) return static_cast<DWORD>(seam::Fail(ERROR_INVALID_PARAMETER));
    char host_name[kVariableNameRoom];
    const char* value = seam::ToUtf8(name, host_name, sizeof host_name) ? secure_getenv(host_name) : nullptr;
    if (!value) return static_cast<DWORD>(seam::Fail(ERROR_ENVVAR_NOT_FOUND));

    const size_t length = strlen(value);
    const size_t needed = Widen(CP_UTF8, value, length, nullptr, 0);
    if (needed >= MAXDWORD) return static_cast<DWORD>(seam::Fail(ERROR_NOT_ENOUGH_MEMORY));
    if (needed >= room) return static_cast<DWORD>(needed + 1);
    Widen(CP_UTF8, value, length, buffer, room);
    buffer[needed] = 0;
    if (needed == 0) seam::SetError(ERROR_SUCCESS); // tells an empty variable from a missing one
    return static_cast<DWORD>(needed);
}

} // namespace talvek_platform
