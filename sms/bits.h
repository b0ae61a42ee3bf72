// Readers and writers that know where their octets end. What lies beyond reads as zero and marks the reader as failed;
// what does not fit is not written and marks the writer as failed. Neither ever recovers.
#pragma once

#include <string.h>

#include "platform/win32.h"

// For the steps of a codec that share a reader: inlined, they leave it in registers.
#define SMS_INLINE inline __attribute__((always_inline))

// Eight octets as one word, the first in the least or in the most significant place, whatever the host's own order is.
inline ULONGLONG LoadLittle(const BYTE* octets)
{
    return ULONGLONG{octets[0]} | ULONGLONG{octets[1]} << 8 | ULONGLONG{octets[2]} << 16 | ULONGLONG{octets[3]} << 24 |
           ULONGLONG{octets[4]} << 32 | ULONGLONG{octets[5]} << 40 | ULONGLONG{octets[6]} << 48 |
           ULONGLONG{octets[7]} << 56;
}
inline ULONGLONG LoadBig(const BYTE* octets)
{
    return ULONGLONG{octets[0]} << 56 | ULONGLONG{octets[1]} << 48 | ULONGLONG{octets[2]} << 40 |
           ULONGLONG{octets[3]} << 32 | ULONGLONG{octets[4]} << 24 | ULONGLONG{octets[5]} << 16 |
           ULONGLONG{octets[6]} << 8 | ULONGLONG{octets[7]};
}
// Four octets the same way.
inline ULONG LoadLittle32(const BYTE* octets)
{
    return static_cast<ULONG>(octets[0]) | static_cast<ULONG>(octets[1]) << 8 | static_cast<ULONG>(octets[2]) << 16 |
           static_cast<ULONG>(octets[3]) << 24;
}
inline ULONG LoadBig32(const BYTE* octets)
{
    return static_cast<ULONG>(octets[0]) << 24 | static_cast<ULONG>(octets[1]) << 16 |
           static_cast<ULONG>(octets[2]) << 8 | static_cast<ULONG>(octets[3]);
}
inline void StoreBig(BYTE* octets, ULONGLONG word)
{
    octets[0] = static_cast<BYTE>(word >> 56);
    octets[1] = static_cast<BYTE>(word >> 48);
    octets[2] = static_cast<BYTE>(word >> 40);
    octets[3] = static_cast<BYTE>(word >> 32);
    octets[4] = static_cast<BYTE>(word >> 24);
    octets[5] = static_cast<BYTE>(word >> 16);
    octets[6] = static_cast<BYTE>(word >> 8);
    octets[7] = static_cast<BYTE>(word);
}
inline void StoreLittle(BYTE* octets, ULONGLONG word)
{
    octets[0] = static_cast<BYTE>(word);
    octets[1] = static_cast<BYTE>(word >> 8);
    octets[2] = static_cast<BYTE>(word >> 16);
    octets[3] = static_cast<BYTE>(word >> 24);
    octets[4] = static_cast<BYTE>(word >> 32);
    octets[5] = static_cast<BYTE>(word >> 40);
    octets[6] = static_cast<BYTE>(word >> 48);
    octets[7] = static_cast<BYTE>(word >> 56);
}

// Puts each of eight semi-octets into an octet of its own, in the same order.
inline ULONGLONG SpreadSemiOctets(ULONG word)
{
    ULONGLONG spread = word;
    spread = (spread | spread << 16) & 0x0000FFFF0000FFFF;
    spread = (spread | spread << 8) & 0x00FF00FF00FF00FF;
    return (spread | spread << 4) & 0x0F0F0F0F0F0F0F0F;
}

// Whole octets, from the first to the last.
class OctetReader {
public:
    OctetReader() = default;
    OctetReader(const BYTE* octets, ULONG count) : m_next(octets), m_left(octets ? count : 0) {}

    const BYTE* Rest() const { return m_next; }
    ULONG Left() const { return m_left; }
    bool Failed() const { return m_failed; }

    BYTE Take()
    {
        if (m_left == 0) {
            m_failed = true;
            return 0;
        }
        --m_left;
        return *m_next++;
    }
    // A reader over the next `count` octets, and on past them. When there are fewer, it gets none and both have failed.
    OctetReader Nested(ULONG count)
    {
        OctetReader inner(m_next, count);
        if (count > m_left) {
            inner.m_left = 0;
            inner.m_failed = m_failed = true;
            count = m_left;
        }
        Skip(count);
        return inner;
    }
    // At most Left().
    void Skip(ULONG count)
    {
        m_next += count;
        m_left -= count;
    }

private:
    const BYTE* m_next = nullptr;
    ULONG m_left = 0;
    bool m_failed = false;
};

// Fields of bits, most significant bit first, laid across octet boundaries.
class BitReader {
public:
    explicit BitReader(const OctetReader& octets) : m_next(octets.Rest()), m_left(octets.Left()) {}

    bool Failed() const { return m_failed; }
    ULONGLONG BitsLeft() const { return ULONGLONG{m_left} * 8 + m_bits; }

    // A field of 1 to 8 bits. Those of its bits that lie past the end are 0.
    BYTE Take(ULONG width)
    {
        if (m_bits < width) Refill();
        const BYTE field = static_cast<BYTE>(m_window >> (64 - width));
        if (__builtin_expect(m_bits < width, 0)) {
            m_failed = true;
            m_bits = width;
        }
        Drop(width);
        return field;
    }
    // `count` fields of 4 bits, each in an octet of its own; below of 7 and of 8 bits.
    void TakeSemiOctets(BYTE* out, ULONG count)
    {
        for (; count >= 8 && Has(32); count -= 8, out += 8) {
            StoreBig(out, SpreadSemiOctets(static_cast<ULONG>(m_window >> 32)));
            Drop(32);
        }
        for (; count > 0; --count)
            *out++ = Take(4);
    }
    void TakeSeptets(BYTE* out, ULONG count)
    {
        for (; count >= 8 && Has(56); count -= 8, out += 8) {
            ULONGLONG fields = m_window >> 8;
            fields = (fields & 0x00FFFFFFF0000000) << 4 | (fields & 0x000000000FFFFFFF);
            fields = (fields & 0x0FFFC0000FFFC000) << 2 | (fields & 0x00003FFF00003FFF);
            fields = (fields & 0x3F803F803F803F80) << 1 | (fields & 0x007F007F007F007F);
            StoreBig(out, fields);
            Drop(56);
        }
        for (; count > 0; --count)
            *out++ = Take(7);
    }
    void TakeOctets(BYTE* out, ULONG count)
    {
        // The eighth octet written is put right by the next step.
        for (; count >= 8 && Has(56); count -= 7, out += 7) {
            StoreBig(out, m_window);
            Drop(56);
        }
        for (; count > 0; --count)
            *out++ = Take(8);
    }

private:
    // At least 57 bits, or all that are left.
    void Refill()
    {
        if (m_left >= 8) {
            // The bits that do not make an octet any more come along; the next refill puts the same ones there.
            m_window |= LoadBig(m_next) >> m_bits;
            const ULONG octets = (63 - m_bits) / 8;
            m_next += octets;
            m_left -= octets;
            m_bits += 8 * octets;
            return;
        }
        if (m_left >= 4 && m_bits <= 32) {
            m_window |= ULONGLONG{LoadBig32(m_next)} << (32 - m_bits);
            m_next += 4;
            m_left -= 4;
            m_bits += 32;
        }
        for (; m_left > 0 && m_bits <= 56; --m_left, m_bits += 8)
            m_window |= ULONGLONG{*m_next++} << (56 - m_bits);
    }
    bool Has(ULONG bits)
    {
        if (m_bits < bits) Refill();
        return m_bits >= bits;
    }
    void Drop(ULONG bits)
    {
        m_window <<= bits;
        m_bits -= bits;
    }

    const BYTE* m_next;
    ULONG m_left;           // octets at m_next
    ULONG m_bits = 0;       // bits of the window that count, from the top
    ULONGLONG m_window = 0; // behind them 0, or what follows in the message
    bool m_failed = false;
};

// Whole octets into a buffer of a given size.
class OctetWriter {
public:
    OctetWriter(BYTE* octets, ULONG capacity) : m_begin(octets), m_capacity(capacity) {}

    ULONG Length() const { return m_length; }
    bool Failed() const { return m_failed; }

    void Put(ULONG octet)
    {
        if (BYTE* const place = Reserve(1)) *place = static_cast<BYTE>(octet);
    }
    void Put(const BYTE* octets, ULONG count)
    {
        BYTE* const place = Reserve(count);
        if (place && count) memcpy(place, octets, count);
    }
    // Room for `count` octets, which the caller fills; null when they do not fit.
    BYTE* Reserve(ULONG count)
    {
        if (m_failed || count > m_capacity - m_length) {
            m_failed = true;
            return nullptr;
        }
        BYTE* const place = m_begin + m_length;
        m_length += count;
        return place;
    }

private:
    BYTE* const m_begin;
    const ULONG m_capacity;
    ULONG m_length = 0;
    bool m_failed = false;
};

// Fields of bits into a buffer of a given size, most significant bit first.
class BitWriter {
public:
    BitWriter(BYTE* octets, ULONG capacity) : m_out(octets, capacity) {}

    // Octets begun so far.
    ULONG Length() const { return m_out.Length() + (m_pending != 0); }
    bool Failed() const { return m_out.Failed(); }

    // The low `width` bits, 1 to 8, of `value`.
    void Put(ULONG value, ULONG width)
    {
        m_bits = m_bits << width | (value & ((1u << width) - 1));
        m_pending += width;
        if (m_pending < 8) return;
        m_pending -= 8;
        m_out.Put(m_bits >> m_pending & 0xFF);
    }
    // Bits 0 up to the next octet.
    void Pad()
    {
        if (m_pending) Put(0, 8 - m_pending);
    }

private:
    OctetWriter m_out;
    ULONG m_bits = 0;    // the low m_pending bits are still to be written
    ULONG m_pending = 0; // 0 to 7
};
