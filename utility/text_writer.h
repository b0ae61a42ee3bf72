// Writing text into a buffer of a fixed size, and the encodings that a text may have on its way.
#pragma once

#include "platform/win32.h"

// Never writes past the room it was given. Once something has not fitted, everything after it is dropped, so that a cut
// text is always the beginning of the whole one.
template <class Char>
class TextWriter {
public:
    // `room` is in characters and includes the terminator that Finish writes.
    TextWriter(Char* out, ULONG room) : m_out(out), m_room(room) {}

    bool Full() const { return m_full; }
    void Put(Char character) { PutWhole(&character, 1); }
    // All of the characters, or none.
    void PutWhole(const Char* text, ULONG length)
    {
        if (m_full || length >= m_room - m_used) {
            m_full = true;
            return;
        }
        for (ULONG i = 0; i < length; ++i)
            m_out[m_used++] = text[i];
    }
    // Terminates the text and returns its length.
    ULONG Finish()
    {
        if (m_room > 0) m_out[m_used] = 0;
        return m_used;
    }

private:
    Char* m_out;
    ULONG m_room;
    ULONG m_used = 0;
    bool m_full = false;
};

// The length of a text that may lack its terminator.
template <class Char>
ULONG BoundedLength(const Char* text, ULONG limit)
{
    ULONG length = 0;
    while (length < limit && text[length])
        ++length;
    return length;
}

constexpr ULONG kReplacementCharacter = 0xFFFD;

// Writes the UTF-8 form of a code point and returns its length, 1 to 4.
constexpr ULONG EncodeUtf8(ULONG code, char* out)
{
    const auto put = [out](ULONG at, ULONG octet) { out[at] = static_cast<char>(static_cast<BYTE>(octet)); };
    if (code < 0x80) {
        put(0, code);
        return 1;
    }
    if (code < 0x800) {
        put(0, 0xC0 | code >> 6);
        put(1, 0x80 | (code & 0x3F));
        return 2;
    }
    if (code < 0x10000) {
        put(0, 0xE0 | code >> 12);
        put(1, 0x80 | (code >> 6 & 0x3F));
        put(2, 0x80 | (code & 0x3F));
        return 3;
    }
    put(0, 0xF0 | code >> 18);
    put(1, 0x80 | (code >> 12 & 0x3F));
    put(2, 0x80 | (code >> 6 & 0x3F));
    put(3, 0x80 | (code & 0x3F));
    return 4;
}

// Calls visit(octets, count) with the UTF-8 form of each character of a UTF-16 text.
template <class Visit>
void ForEachUtf8(const WCHAR* text, ULONG length, Visit visit)
{
    for (ULONG i = 0; i < length; ++i) {
        ULONG code = text[i];
        if (code >= 0xD800 && code < 0xE000) {
            const ULONG low = i + 1 < length ? text[i + 1] : 0u;
            if (code < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
                code = 0x10000 + (code - 0xD800) * 0x400 + (low - 0xDC00);
                ++i;
            } else {
                code = kReplacementCharacter;
            }
        }
        char octets[4];
        const ULONG count = EncodeUtf8(code, octets);
        visit(octets, count);
    }
}

// The length of the well-formed UTF-8 character at the start of `text`, 1 to 4; 0 when there is none.
inline ULONG Utf8CharacterLength(const char* text, ULONG size)
{
    const auto octet = [text](ULONG at) { return static_cast<BYTE>(text[at]); };
    if (size == 0) return 0;
    const BYTE first = octet(0);
    if (first < 0x80) return 1;
    const ULONG length = first >= 0xC2 && first < 0xE0   ? 2
                         : first >= 0xE0 && first < 0xF0 ? 3
                         : first >= 0xF0 && first < 0xF5 ? 4
                                                         : 0;
    if (length == 0 || size < length) return 0;
    for (ULONG i = 1; i < length; ++i) {
        if ((octet(i) & 0xC0) != 0x80) return 0;
    }
    const BYTE second = octet(1);
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool outside = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
    return overlong || outside ? 0 : length;
}

// Puts a text of either width into a writer of either width: octet n widens to character n, and narrowing gives UTF-8.
template <class Char>
void PutText(TextWriter<Char>& out, const char* text, ULONG length)
{
    for (ULONG i = 0; i < length; ++i) {
        if constexpr (sizeof(Char) == 1) {
            out.Put(text[i]);
        } else {
            out.Put(static_cast<BYTE>(text[i]));
        }
    }
}
inline void PutText(TextWriter<WCHAR>& out, const WCHAR* text, ULONG length)
{
    for (ULONG i = 0; i < length; ++i)
        out.Put(text[i]);
}
inline void PutText(TextWriter<char>& out, const WCHAR* text, ULONG length)
{
    ForEachUtf8(text, length, [&out](const char* octets, ULONG count) { out.PutWhole(octets, count); });
}

// One octet, as \r, \n, \t or \xNN.
inline void PutEscaped(TextWriter<char>& out, char character)
{
    constexpr const char* kDigits = "0123456789ABCDEF";
    const BYTE octet = static_cast<BYTE>(character);
    switch (character) {
    case '\r':
        return out.PutWhole("\\r", 2);
    case '\n':
        return out.PutWhole("\\n", 2);
    case '\t':
        return out.PutWhole("\\t", 2);
    default:
        break;
    }
    const char text[] = {'\\', 'x', kDigits[octet >> 4], kDigits[octet & 15]};
    out.PutWhole(text, sizeof text);
}
