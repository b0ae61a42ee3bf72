// UTF-8 in and out of the helpers for message texts.
#pragma once

#include "talvek/rcode.h"
#include "utility/text_writer.h"

// The characters of a UTF-8 text, one after the other.
class Utf8Reader {
public:
    Utf8Reader(const char* text, ULONG length) : m_at(text), m_end(text + length) {}

    // False at the end, and where the text is not well-formed.
    bool Next(ULONG& character)
    {
        const ULONG length = Utf8CharacterLength(m_at, static_cast<ULONG>(m_end - m_at));
        if (length == 0) return false;
        constexpr BYTE kLeadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
        character = static_cast<BYTE>(*m_at) & kLeadBits[length];
        for (ULONG i = 1; i < length; ++i)
            character = character << 6 | (static_cast<BYTE>(m_at[i]) & 0x3Fu);
        m_at += length;
        return true;
    }
    bool AtEnd() const { return m_at == m_end; }
    const char* At() const { return m_at; }

private:
    const char* m_at;
    const char* m_end;
};

// A client's buffer for a text. Goes on counting where the buffer has ended, so that the length needed is known.
class Utf8Output {
public:
    // `capacity` counts the terminator.
    Utf8Output(char* out, ULONG capacity) : m_out(out), m_capacity(capacity) {}

    void Put(const char* octets, ULONG count)
    {
        const bool whole = m_needed == m_written; // nothing has been left out so far
        m_needed += count;
        if (!whole || m_needed >= m_capacity) return;
        for (ULONG i = 0; i < count; ++i)
            m_out[m_written++] = octets[i];
    }
    void PutCharacter(ULONG character)
    {
        char octets[4];
        const ULONG count = EncodeUtf8(character, octets);
        Put(octets, count);
    }

    // For a loop that writes in place: the octets that it may write, and how many it has written.
    char* Place() { return m_out + m_written; }
    ULONG Room() const { return m_needed == m_written ? m_capacity - m_written : 0; }
    void Written(ULONG count)
    {
        m_written += count;
        m_needed += count;
    }

    // Terminates the text and gives its whole length. 2 when it has not fitted: the buffer has its beginning, cut
    // between two characters.
    ORV_RCODE Finish(ULONG* length)
    {
        if (m_capacity > 0) m_out[m_written] = '\0';
        *length = m_needed;
        return m_needed < m_capacity ? ORV_RCODE_OK : ORV_RCODE_VENDOR_5;
    }

private:
    char* m_out;
    ULONG m_capacity;
    ULONG m_written = 0;
    ULONG m_needed = 0;
};
