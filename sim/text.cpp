#include "sim/text.h"

namespace sim {

Writer::Writer(char* out, ULONG room) : m_out(out), m_room(out ? room : 0) { Clear(); }

void Writer::Clear()
{
    m_length = 0;
    m_cut = false;
    if (m_room > 0) m_out[0] = 0;
}

Writer& Writer::Character(char character)
{
    if (m_cut || m_length + 1 >= m_room) {
        m_cut = true;
        return *this;
    }
    m_out[m_length++] = character;
    m_out[m_length] = 0;
    return *this;
}

Writer& Writer::Add(const char* text)
{
    while (*text)
        Character(*text++);
    return *this;
}

Writer& Writer::Unsigned(ULONGLONG value)
{
    char digits[20];
    unsigned count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    while (count > 0)
        Character(digits[--count]);
    return *this;
}

Writer& Writer::Number(int64_t value)
{
    if (value >= 0) return Unsigned(static_cast<ULONGLONG>(value));
    Character('-');
    return Unsigned(ULONGLONG{0} - static_cast<ULONGLONG>(value));
}

Writer& Writer::Hex(ULONG value, unsigned digits)
{
    for (unsigned position = 8; position-- > 0;) {
        const ULONG rest = value >> (position * 4);
        if (rest != 0 || position < digits) Character("0123456789ABCDEF"[rest & 15]);
    }
    return *this;
}

void Writer::Escaped(char character)
{
    switch (character) {
    case '\r':
        Add("\\r");
        return;
    case '\n':
        Add("\\n");
        return;
    case '\t':
        Add("\\t");
        return;
    case '"':
        Add("\\\"");
        return;
    case '\\':
        Add("\\\\");
        return;
    default:
        break;
    }
    if (character >= ' ' && character <= '~') {
        Character(character);
        return;
    }
    Add("\\x").Hex(static_cast<BYTE>(character), 2);
}

Writer& Writer::Quoted(const char* text, ULONG limit)
{
    if (!text) return Add("null");
    Character('"');
    ULONG count = 0;
    while (count < limit && text[count])
        Escaped(text[count++]);
    if (count == limit) Add("...");
    return Character('"');
}

Writer& Writer::QuotedOctets(const BYTE* octets, ULONG count, ULONG limit)
{
    Character('"');
    for (ULONG i = 0; i < count && i < limit; ++i)
        Escaped(static_cast<char>(octets[i]));
    if (count > limit) Add("...");
    return Character('"');
}

Writer& Writer::HexOctets(const BYTE* octets, ULONG count)
{
    for (ULONG i = 0; i < count; ++i)
        Hex(octets[i], 2);
    return *this;
}

ULONG Length(const char* text)
{
    ULONG length = 0;
    while (text[length])
        ++length;
    return length;
}

ULONG BoundedLength(const char* text, ULONG limit)
{
    ULONG length = 0;
    while (length < limit && text[length])
        ++length;
    return length;
}

bool Equal(const char* a, const char* b)
{
    while (*a && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

static char Capital(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool EqualLetters(const char* a, const char* b)
{
    while (*a && Capital(*a) == Capital(*b)) {
        ++a;
        ++b;
    }
    return Capital(*a) == Capital(*b);
}

bool Copy(char* out, ULONG room, const char* text)
{
    const ULONG length = Length(text);
    if (length >= room) return false;
    for (ULONG i = 0; i <= length; ++i)
        out[i] = text[i];
    return true;
}

// The character at `*wide`, which is moved past it. Half a surrogate pair reads as U+FFFD.
static ULONG NextCharacter(const WCHAR** wide)
{
    const ULONG first = *(*wide)++;
    if (first < 0xD800 || first > 0xDFFF) return first;
    const ULONG second = **wide;
    if (first > 0xDBFF || second < 0xDC00 || second > 0xDFFF) return 0xFFFD;
    ++*wide;
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void Narrow(char* out, ULONG room, const WCHAR* wide)
{
    ULONG used = 0;
    while (*wide) {
        const ULONG character = NextCharacter(&wide);
        const unsigned more = character < 0x80 ? 0 : character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
        if (used + more + 1 >= room) break;
        constexpr BYTE kLead[4] = {0, 0xC0, 0xE0, 0xF0};
        out[used++] = static_cast<char>(kLead[more] | (character >> (6 * more)));
        for (unsigned i = more; i-- > 0;)
            out[used++] = static_cast<char>(0x80 | ((character >> (6 * i)) & 0x3F));
    }
    if (room > 0) out[used] = 0;
}

// The character at `*text`, which is moved past it.
static ULONG NextUtf8Character(const char** text)
{
    const BYTE lead = static_cast<BYTE>(*(*text)++);
    const unsigned more = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (more > 0 && (lead < 0xC2 || lead > 0xF4)) return 0xFFFD;
    constexpr BYTE kLeadBits[4] = {0x7F, 0x1F, 0x0F, 0x07};
    ULONG character = lead & kLeadBits[more];
    for (unsigned i = 0; i < more; ++i) {
        const BYTE octet = static_cast<BYTE>(**text);
        if ((octet & 0xC0) != 0x80) return 0xFFFD;
        character = (character << 6) | (octet & 0x3F);
        ++*text;
    }
    constexpr ULONG kLeast[4] = {0, 0x80, 0x800, 0x10000};
    const bool half_a_pair = character >= 0xD800 && character <= 0xDFFF;
    return character < kLeast[more] || half_a_pair || character > 0x10FFFF ? 0xFFFD : character;
}

void Widen(WCHAR* out, ULONG room, const char* text)
{
    ULONG used = 0;
    while (*text) {
        const ULONG character = NextUtf8Character(&text);
        const bool pair = character >= 0x10000;
        if (used + (pair ? 2 : 1) > room) return;
        if (pair) out[used++] = static_cast<WCHAR>(0xD800 + ((character - 0x10000) >> 10));
        out[used++] = static_cast<WCHAR>(pair ? 0xDC00 + ((character - 0x10000) & 0x3FF) : character);
    }
    if (used < room) out[used] = 0;
}

} // namespace sim
