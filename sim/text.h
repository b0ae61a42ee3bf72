// Text in fixed room: what the simulated module keeps, and what it writes to its callers.
#pragma once

#include "talvek/types.h"

namespace sim {

// A kept text of at most `kRoom - 1` octets, terminated.
template <ULONG kRoom>
struct Text {
    char octets[kRoom];

    static constexpr ULONG Room() { return kRoom; }
    operator const char*() const { return octets; }
};

// Appends to a caller's buffer, cuts what does not fit, and keeps the buffer terminated. No buffer, or no room: counts
// nothing and writes nothing.
class Writer {
public:
    Writer(char* out, ULONG room);
    template <ULONG kRoom>
    explicit Writer(Text<kRoom>& text) : Writer(text.octets, kRoom)
    {
    }

    Writer& Add(const char* text);
    Writer& Character(char character);
    Writer& Number(int64_t value);
    Writer& Unsigned(ULONGLONG value);
    // Capital digits, at least `digits` of them, no prefix.
    Writer& Hex(ULONG value, unsigned digits);
    // "text" with \r \n \t \" \\ and \xNN for what cannot be printed, cut after `limit` octets of it; null for a null
    // one.
    Writer& Quoted(const char* text, ULONG limit = 512);
    // The same of counted octets, which may hold zeros.
    Writer& QuotedOctets(const BYTE* octets, ULONG count, ULONG limit);
    Writer& HexOctets(const BYTE* octets, ULONG count);
    void Clear();

    bool Cut() const { return m_cut; }
    ULONG Length() const { return m_length; }

private:
    void Escaped(char character);

    char* m_out;
    ULONG m_room;
    ULONG m_length = 0;
    bool m_cut = false;
};

ULONG Length(const char* text);
// Length of a text that may lack its terminator.
ULONG BoundedLength(const char* text, ULONG limit);
bool Equal(const char* a, const char* b);
// Without regard to the case of letters.
bool EqualLetters(const char* a, const char* b);
// False, and nothing copied, when the text does not fit with its terminator.
bool Copy(char* out, ULONG room, const char* text);
template <ULONG kRoom>
bool Copy(Text<kRoom>& out, const char* text)
{
    return Copy(out.octets, kRoom, text);
}
// UTF-8 of a terminated 16-bit text, cut at a whole character.
void Narrow(char* out, ULONG room, const WCHAR* wide);
// 16-bit characters of a UTF-8 text: cut where the room ends, and terminated if there is room for that. An octet that
// begins no character reads as U+FFFD.
void Widen(WCHAR* out, ULONG room, const char* text);

} // namespace sim
