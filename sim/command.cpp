#include "sim/command.h"

namespace sim {

static bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

static int HexDigit(char character)
{
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

Command::Command(const char* line, Writer& reply) : m_reply(reply), m_line(line)
{
    m_reply.Clear();
    if (BoundedLength(line, kMaxLine) == kMaxLine) {
        Fail().Add("the line has ").Unsigned(kMaxLine).Add(" octets or more");
        return;
    }
    Split(line);
}

Writer& Command::Fail()
{
    m_reply.Clear();
    m_failed = true;
    return m_reply;
}

// The quoted word whose opening quote is at `at`, unescaped into the storage from `*used` on. Returns what follows the
// closing quote.
const char* Command::QuotedWord(const char* at, ULONG* used)
{
    ++at;
    while (*at && *at != '"') {
        char character = *at++;
        if (character == '\\') {
            const char escape = *at ? *at++ : '\0';
            switch (escape) {
            case 'r':
                character = '\r';
                break;
            case 'n':
                character = '\n';
                break;
            case 't':
                character = '\t';
                break;
            case '"':
            case '\\':
                character = escape;
                break;
            case 'x': {
                const int high = HexDigit(at[0]);
                const int low = high < 0 ? -1 : HexDigit(at[1]);
                if (low < 0) {
                    Fail().Add("\\x needs two hexadecimal digits");
                    return at;
                }
                character = static_cast<char>(high * 16 + low);
                at += 2;
                break;
            }
            default: {
                const char text[2] = {escape, 0};
                Fail().Add("unknown escape \\").Add(text);
                return at;
            }
            }
        }
        m_storage[(*used)++] = character;
    }
    if (*at != '"') {
        Fail().Add("a quoted word has no end");
        return at;
    }
    ++at;
    if (*at && !IsBlank(*at)) Fail().Add("a blank must follow a quoted word");
    return at;
}

void Command::Split(const char* line)
{
    ULONG used = 0;
    const char* at = line;
    for (;;) {
        while (IsBlank(*at))
            ++at;
        if (*at == 0 || *at == '#') return;
        if (m_count == kMaxWords) {
            Fail().Add("more than ").Unsigned(kMaxWords).Add(" words");
            return;
        }
        m_sources[m_count] = static_cast<WORD>(at - line);
        m_starts[m_count] = static_cast<WORD>(used);
        if (*at == '"') {
            at = QuotedWord(at, &used);
            if (m_failed) return;
        } else {
            while (*at && !IsBlank(*at))
                m_storage[used++] = *at++;
        }
        m_lengths[m_count] = static_cast<WORD>(used - m_starts[m_count]);
        m_storage[used++] = 0;
        ++m_count;
    }
}

const char* Command::Word(const char* what)
{
    if (m_failed) return "";
    if (m_next == m_count) {
        Fail().Add("missing ").Add(what);
        return "";
    }
    return m_storage + m_starts[m_next++];
}

bool Command::Take(const char* word)
{
    if (!More() || !Equal(m_storage + m_starts[m_next], word)) return false;
    ++m_next;
    return true;
}

bool ParseNumber(const char* text, bool* negative, ULONGLONG* magnitude)
{
    *negative = *text == '-';
    if (*negative) ++text;
    const bool hexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    if (hexadecimal) text += 2;
    const ULONGLONG base = hexadecimal ? 16 : 10;
    ULONGLONG value = 0;
    if (*text == 0) return false;
    for (; *text; ++text) {
        const int digit = HexDigit(*text);
        if (digit < 0 || static_cast<ULONGLONG>(digit) >= base) return false;
        const ULONGLONG next = static_cast<ULONGLONG>(digit);
        if (value > (~ULONGLONG{0} - next) / base) return false;
        value = value * base + next;
    }
    *magnitude = value;
    return true;
}

int64_t Command::Signed(const char* what, int64_t low, int64_t high)
{
    const char* word = Word(what);
    if (m_failed) return 0;
    bool negative = false;
    ULONGLONG magnitude = 0;
    if (!ParseNumber(word, &negative, &magnitude)) {
        Fail().Add(what).Add(" ").Quoted(word, 64).Add(" is not a number");
        return 0;
    }
    const bool fits = magnitude <= ULONGLONG{0x7FFFFFFFFFFFFFFF};
    const int64_t value = fits ? (negative ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude)) : 0;
    if (fits && value >= low && value <= high) return value;
    Fail().Add(what).Add(" ").Add(word).Add(" is not within ").Number(low).Add(" and ").Number(high);
    return 0;
}

ULONGLONG Command::Unsigned(const char* what, ULONGLONG high)
{
    const char* word = Word(what);
    if (m_failed) return 0;
    bool negative = false;
    ULONGLONG magnitude = 0;
    if (!ParseNumber(word, &negative, &magnitude)) {
        Fail().Add(what).Add(" ").Quoted(word, 64).Add(" is not a number");
        return 0;
    }
    if (magnitude <= high && (!negative || magnitude == 0)) return magnitude;
    Fail().Add(what).Add(" ").Add(word).Add(" is not within 0 and ").Unsigned(high);
    return 0;
}

bool Command::Switch(const char* what)
{
    if (Take("on")) return true;
    if (Take("off")) return false;
    const char* word = Word(what);
    if (!m_failed) Fail().Add(what).Add(" ").Quoted(word, 64).Add(" is neither on nor off");
    return false;
}

ULONG Command::HexOctets(const char* what, BYTE* octets, ULONG room)
{
    const char* word = Word(what);
    ULONG count = 0;
    while (!m_failed && *word) {
        const int high = HexDigit(word[0]);
        const int low = high < 0 ? -1 : HexDigit(word[1]);
        if (low < 0) {
            Fail().Add(what).Add(" is not a row of octets, two hexadecimal digits each");
        } else if (count == room) {
            Fail().Add(what).Add(" has more than ").Unsigned(room).Add(" octets");
        } else {
            octets[count++] = static_cast<BYTE>(high * 16 + low);
            word += 2;
        }
    }
    return m_failed ? 0 : count;
}

const char* Command::LaterLine()
{
    const char* verb = Word("command");
    if (m_failed) return "";
    const char* line = m_line + m_sources[m_next - 1];
    m_next = m_count;
    if (!KnownVerb(verb))
        Fail().Add("unknown verb ").Quoted(verb, 64);
    else if (Length(line) >= kMaxKeptLine)
        Fail().Add("a command that runs later has ").Unsigned(kMaxKeptLine).Add(" octets or more");
    return m_failed ? "" : line;
}

void Command::End()
{
    if (More()) Fail().Add("unexpected ").Quoted(m_storage + m_starts[m_next], 64);
}

} // namespace sim
