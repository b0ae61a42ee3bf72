#include "sms/text_convert.h"

#include "sms/bits.h"

#include <string.h>

namespace {

constexpr ULONG kSeptet = 0x7F;
constexpr ULONG kCountBits = 3; // of GsmCharacter::count_and_table
constexpr ULONG kRow = sizeof(GsmCharacter);

// Packed septets, one after the other. Reads an octet only when it needs one of its bits.
class SeptetReader {
public:
    SeptetReader(const BYTE* octets, ULONG first, ULONG count)
        : m_next(octets + first * 7 / 8), m_shift(first * 7 % 8), m_left(SeptetOctets(first + count) - first * 7 / 8)
    {
    }

    bool HasEight() const { return m_left >= sizeof(ULONGLONG); }
    // The next eight, the first one in the lowest seven bits.
    ULONGLONG TakeEight()
    {
        const ULONGLONG window = LoadLittle(m_next) >> m_shift;
        m_next += 7;
        m_left -= 7;
        return window;
    }
    ULONG Take()
    {
        ULONG window = *m_next;
        if (m_shift > 1) window |= static_cast<ULONG>(m_next[1]) << 8;
        const ULONG septet = window >> m_shift & kSeptet;
        m_shift += 7;
        m_next += m_shift / 8;
        m_shift %= 8;
        return septet;
    }

private:
    const BYTE* m_next;
    ULONG m_shift; // bits of *m_next that have been taken
    ULONG m_left;  // octets; counted by TakeEight alone
};

constexpr ULONG kHighSurrogate = 0xD800, kLowSurrogate = 0xDC00, kSurrogateEnd = 0xE000;

} // namespace

void SeptetPacker::Put(BYTE septet)
{
    const ULONG bit = m_septets++ * 7;
    const ULONG octet = bit / 8, shift = bit % 8;
    if (SeptetOctets(m_septets) > m_capacity) return;
    m_octets[octet] = static_cast<BYTE>(m_octets[octet] | septet << shift);
    if (shift > 1) m_octets[octet + 1] = static_cast<BYTE>(septet >> (8 - shift));
}

void GsmToUtf8::Put(ULONG septet)
{
    const GsmCharacter& character = kGsmCharacters.by_code[m_table | septet];
    m_table = character.count_and_table & kGsmExtended;
    m_out.Put(character.octets, character.count_and_table & kCountBits);
}

void GsmToUtf8::FeedPacked(const BYTE* octets, ULONG first, ULONG count)
{
    if (count == 0) return;
    SeptetReader reader(octets, first, count);
    // As long as there is room for eight whole rows of the table, a row is copied for each septet, whatever its text
    // needs.
    char* const begin = m_out.Place();
    const ULONG room = m_out.Room();
    ULONG table = m_table, written = 0;
    for (; count >= 8 && reader.HasEight() && room - written >= 8 * kRow; count -= 8) {
        ULONGLONG septets = reader.TakeEight();
        for (ULONG i = 0; i < 8; ++i, septets >>= 7) {
            const GsmCharacter& character = kGsmCharacters.by_code[table | (septets & kSeptet)];
            memcpy(begin + written, &character, kRow);
            written += character.count_and_table & kCountBits;
            table = character.count_and_table & kGsmExtended;
        }
    }
    m_table = table;
    m_out.Written(written);
    for (; count != 0; --count)
        Put(reader.Take());
}

void GsmToUtf8::FeedOctets(const BYTE* septets, ULONG count)
{
    for (ULONG i = 0; i < count; ++i)
        Put(septets[i] & 0x7Fu);
}

void GsmToUtf8::Finish()
{
    if (m_table != 0) Put(kGsmEscape);
}

void Ucs2ToUtf8::Put(ULONG unit)
{
    const ULONG high = m_high;
    m_high = 0;
    if (high != 0 && unit >= kLowSurrogate && unit < kSurrogateEnd) {
        m_out.PutCharacter(0x10000 + (high - kHighSurrogate) * 0x400 + (unit - kLowSurrogate));
        return;
    }
    if (high != 0) m_out.PutCharacter(kReplacementCharacter);
    if (unit >= kHighSurrogate && unit < kLowSurrogate) {
        m_high = unit;
    } else {
        m_out.PutCharacter(unit >= kLowSurrogate && unit < kSurrogateEnd ? kReplacementCharacter : unit);
    }
}

void Ucs2ToUtf8::Feed(const BYTE* octets, ULONG count)
{
    for (ULONG i = 0; i < count; ++i) {
        if (!m_has_octet) {
            m_octet = octets[i];
            m_has_octet = true;
            continue;
        }
        m_has_octet = false;
        const BYTE pair[] = {m_octet, octets[i]};
        WORD unit = 0;
        memcpy(&unit, pair, sizeof unit);
        Put(m_order == UnitOrder::Host ? unit : pair[0] << 8 | pair[1]);
    }
}

void Ucs2ToUtf8::Finish()
{
    if (m_high != 0) m_out.PutCharacter(kReplacementCharacter);
    if (m_has_octet) m_out.PutCharacter(kReplacementCharacter);
    m_high = 0;
    m_has_octet = false;
}

ULONG PutUcs2(ULONG character, UnitOrder order, BYTE* octets)
{
    const auto put = [order](ULONG unit, BYTE* at) {
        const WORD value = static_cast<WORD>(unit);
        if (order == UnitOrder::Host) {
            memcpy(at, &value, sizeof value);
        } else {
            at[0] = static_cast<BYTE>(value >> 8);
            at[1] = static_cast<BYTE>(value & 0xFF);
        }
    };
    if (character < 0x10000) {
        put(character, octets);
        return 2;
    }
    put(kHighSurrogate + ((character - 0x10000) >> 10), octets);
    put(kLowSurrogate + (character & 0x3FF), octets + 2);
    return 4;
}
