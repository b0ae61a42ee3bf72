#include "platform/posix/reg_file.h"

#include "platform/posix/text.h"

namespace seam {

namespace {

constexpr WCHAR kHeader[] = u"Windows Registry Editor Version 5.00";

struct RootRow {
    const WCHAR* name;
    uintptr_t root; // 0 for the ones that the library does not use
};
constexpr RootRow kRoots[] = {
    {u"HKEY_CLASSES_ROOT", 0x80000000u},  {u"HKEY_CURRENT_USER", 0x80000001u},
    {u"HKEY_LOCAL_MACHINE", 0x80000002u}, {u"HKEY_USERS", 0},
    {u"HKEY_CURRENT_CONFIG", 0},
};

bool IsBlank(WCHAR character) { return character == u' ' || character == u'\t'; }

// The value of a hex digit, or 16.
unsigned HexValue(WCHAR character)
{
    if (character >= u'0' && character <= u'9') return static_cast<unsigned>(character - u'0');
    const WCHAR lower = ToLower(character);
    return lower >= u'a' && lower <= u'f' ? static_cast<unsigned>(lower - u'a') + 10 : 16;
}

class RegParser {
public:
    RegParser(WCHAR* text, size_t length, RegVisitor& visitor)
        : m_next(text), m_text_end(text + length), m_visitor(visitor)
    {
    }

    RegResult Run(RegFault* fault)
    {
        if (Header()) {
            while (NextLine() && Line()) {
            }
        }
        if (m_reason) *fault = {m_line, m_reason};
        return m_reason ? RegResult::Malformed : m_stopped ? RegResult::Stopped : RegResult::Ok;
    }

private:
    bool Fault(const char* reason)
    {
        m_reason = reason;
        return false;
    }
    bool Give(bool go_on)
    {
        m_stopped = !go_on;
        return go_on;
    }

    // --- the current line, from m_at to m_end

    bool NextLine()
    {
        if (m_next == m_text_end) return false;
        ++m_line;
        m_at = m_next;
        while (m_next != m_text_end && *m_next != u'\n')
            ++m_next;
        m_end = m_next;
        if (m_next != m_text_end) ++m_next;
        if (m_end != m_at && m_end[-1] == u'\r') --m_end;
        for (const WCHAR* character = m_at; character != m_end; ++character) {
            if (*character < u' ' && *character != u'\t') return Fault("a control character");
        }
        return true;
    }
    void SkipBlanks()
    {
        while (m_at != m_end && IsBlank(*m_at))
            ++m_at;
    }
    // Whether nothing but blanks and a remark is left.
    bool AtEnd()
    {
        SkipBlanks();
        return m_at == m_end || *m_at == u';';
    }
    bool Skip(WCHAR character)
    {
        if (m_at == m_end || *m_at != character) return false;
        ++m_at;
        return true;
    }
    // Skips `word` in any case.
    bool SkipWord(const WCHAR* word)
    {
        const size_t length = LengthOf(word);
        if (static_cast<size_t>(m_end - m_at) < length || !SameText(m_at, length, word, length)) return false;
        m_at += length;
        return true;
    }
    // One to `digits` hex digits.
    bool Hex(unsigned digits, DWORD* value)
    {
        *value = 0;
        unsigned count = 0;
        for (; m_at != m_end && HexValue(*m_at) < 16; ++m_at, ++count)
            *value = *value << 4 | HexValue(*m_at);
        return count > 0 && count <= digits;
    }

    // --- the grammar

    bool Header()
    {
        const size_t length = LengthOf(kHeader);
        if (!NextLine()) {
            m_line = 1;
            return m_reason ? false : Fault("the header \"Windows Registry Editor Version 5.00\" is missing");
        }
        const WCHAR* begin = m_at;
        m_at = m_end;
        while (m_at != begin && IsBlank(m_at[-1]))
            --m_at;
        if (!SameText(begin, static_cast<size_t>(m_at - begin), kHeader, length)) {
            return Fault("the header \"Windows Registry Editor Version 5.00\" is missing");
        }
        return true;
    }

    bool Line()
    {
        if (AtEnd()) return true;
        return Skip(u'[') ? Key() : Value();
    }

    bool Key()
    {
        if (Skip(u'-')) return Fault("a key cannot be deleted here");
        // A key's name may hold ']': the line's end is the one that nothing but a remark follows.
        WCHAR* const begin = m_at;
        WCHAR* end = nullptr;
        for (; !end && m_at != m_end; ++m_at) {
            if (*m_at != u']') continue;
            WCHAR* const bracket = m_at++;
            if (AtEnd()) end = bracket;
            m_at = bracket;
        }
        if (!end) return Fault("']' is missing at the end of the key");

        const WCHAR* at = begin;
        while (at != end && *at != u'\\')
            ++at;
        const RootRow* root = nullptr;
        for (const RootRow& row : kRoots) {
            if (SameText(begin, static_cast<size_t>(at - begin), row.name, LengthOf(row.name))) root = &row;
        }
        if (!root) return Fault("the root key is unknown");
        // Each backslash has a name behind it.
        for (const WCHAR* name = at; name != end; ++name) {
            if (*name == u'\\' && (name + 1 == end || name[1] == u'\\')) return Fault("a part of the key is empty");
        }
        if (at != end) ++at;
        m_in_key = true;
        return Give(m_visitor.Key(reinterpret_cast<HKEY>(root->root), {at, static_cast<size_t>(end - at)}));
    }

    bool Value()
    {
        RegText name = {m_at, 0};
        if (Skip(u'"')) {
            if (!Quoted(&name)) return false;
        } else if (!Skip(u'@')) {
            return Fault("neither a key nor a value");
        }
        if (!m_in_key) return Fault("a value before the first key");
        SkipBlanks();
        if (!Skip(u'=')) return Fault("'=' is missing after the value's name");
        SkipBlanks();

        if (Skip(u'"')) return TextValue(name);
        if (SkipWord(u"dword:")) return NumberValue(name);
        if (SkipWord(u"hex")) return OctetsValue(name);
        if (Skip(u'-')) return Fault("a value cannot be deleted here");
        return Fault("the value is neither text nor dword: nor hex:");
    }

    // What stands after a quote, up to and with the next one, unescaped in place. There is room for a terminator behind
    // it.
    bool Quoted(RegText* text)
    {
        WCHAR* out = m_at;
        text->text = m_at;
        while (m_at != m_end && *m_at != u'"') {
            if (*m_at == u'\\') {
                ++m_at;
                if (m_at == m_end || (*m_at != u'\\' && *m_at != u'"'))
                    return Fault("only \\\\ and \\\" may be escaped");
            }
            *out++ = *m_at++;
        }
        if (!Skip(u'"')) return Fault("the closing quote is missing");
        text->length = static_cast<size_t>(out - text->text);
        *out = 0;
        return true;
    }

    bool TextValue(RegText name)
    {
        RegText text;
        if (!Quoted(&text)) return false;
        if (!AtEnd()) return Fault("something stands after the value");
        return Give(m_visitor.Value(name, REG_SZ, text.text, static_cast<DWORD>((text.length + 1) * sizeof(WCHAR))));
    }

    bool NumberValue(RegText name)
    {
        DWORD number;
        if (!Hex(8, &number)) return Fault("dword: takes one to eight hex digits");
        if (!AtEnd()) return Fault("something stands after the value");
        const BYTE octets[] = {static_cast<BYTE>(number), static_cast<BYTE>(number >> 8),
                               static_cast<BYTE>(number >> 16), static_cast<BYTE>(number >> 24)};
        return Give(m_visitor.Value(name, REG_DWORD, octets, sizeof octets));
    }

    bool OctetsValue(RegText name)
    {
        DWORD type = REG_BINARY;
        if (Skip(u'(') && !(Hex(8, &type) && Skip(u')'))) return Fault("hex( takes one to eight hex digits and ')'");
        if (!Skip(u':')) return Fault("':' is missing after hex");

        // Octets are put where their digits stood, which take more room.
        BYTE* const data = reinterpret_cast<BYTE*>(m_at);
        DWORD size = 0;
        bool comma = false;
        for (;;) {
            SkipBlanks();
            if (Skip(u'\\')) {
                if (!AtEnd()) return Fault("something stands after the backslash");
                if (!NextLine()) return m_reason ? false : Fault("the value goes on after the end of the file");
                continue;
            }
            if (AtEnd()) break;
            if (size > 0 && !comma) return Fault("',' is missing between two octets");
            DWORD octet;
            if (!Hex(2, &octet)) return Fault("an octet takes one or two hex digits");
            data[size++] = static_cast<BYTE>(octet);
            SkipBlanks();
            comma = Skip(u',');
        }
        if (comma) return Fault("an octet is missing after ','");
        return Give(m_visitor.Value(name, type, data, size));
    }

    WCHAR* m_next; // the line after the current one
    WCHAR* m_text_end;
    WCHAR* m_at = nullptr;
    WCHAR* m_end = nullptr;
    unsigned m_line = 0;
    bool m_in_key = false;
    bool m_stopped = false;
    const char* m_reason = nullptr;
    RegVisitor& m_visitor;
};

} // namespace

RegResult ParseRegText(WCHAR* text, size_t length, RegVisitor& visitor, RegFault* fault)
{
    return RegParser(text, length, visitor).Run(fault);
}

bool DecodeRegFile(const BYTE* octets, size_t size, WCHAR* out, size_t* length, RegFault* fault)
{
    const BYTE* at = octets;
    const BYTE* const end = octets + size;
    *length = 0;
    if (size >= 2 && at[0] == 0xFF && at[1] == 0xFE) {
        for (at += 2; end - at >= 2; at += 2)
            out[(*length)++] = static_cast<WCHAR>(at[0] | at[1] << 8);
        if (at == end) return true;
        *fault = {1, "UTF-16 text of an odd number of octets"};
        return false;
    }
    if (size >= 3 && at[0] == 0xEF && at[1] == 0xBB && at[2] == 0xBF) at += 3;
    unsigned line = 1;
    bool malformed = false;
    while (at != end) {
        WCHAR units[2];
        const char32_t character = TakeUtf8(at, end, &malformed);
        if (malformed) {
            *fault = {line, "neither UTF-8 nor UTF-16 text"};
            return false;
        }
        if (character == u'\n') ++line;
        const unsigned count = PutUtf16(character, units);
        for (unsigned i = 0; i < count; ++i)
            out[(*length)++] = units[i];
    }
    return true;
}

} // namespace seam
