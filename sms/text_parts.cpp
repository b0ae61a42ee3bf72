#include "sms/text_parts.h"

#include "sms/text_convert.h"

namespace {

// Information elements.
enum : BYTE { kConcatenated8 = 0x00, kConcatenated16 = 0x08 };

constexpr ULONG kHeaderOctets = 5, kWideHeaderOctets = 6; // without UDHL

// Septets or units that the user data of a message holds.
constexpr ULONG WholeRoom(bool ucs2) { return ucs2 ? kUserDataOctets / 2 : kUserDataOctets * 8 / 7; }
constexpr ULONG PartRoom(bool ucs2, bool wide)
{
    const ULONG header = wide ? kWideHeaderOctets : kHeaderOctets;
    return ucs2 ? (kUserDataOctets - header - 1) / 2 : WholeRoom(false) - HeaderSeptets(header);
}
static_assert(WholeRoom(false) == 160 && PartRoom(false, false) == 153 && PartRoom(false, true) == 152);
static_assert(WholeRoom(true) == 70 && PartRoom(true, false) == 67 && PartRoom(true, true) == 66);

ULONG UnitsOf(ULONG character, bool ucs2) { return ucs2 ? Ucs2Units(character) : GsmSeptets(GsmCode(character)); }

} // namespace

bool FindConcatenation(const BYTE* header, ULONG length, ORV_SMS_CONCATENATION& out)
{
    bool found = false;
    ULONG at = 0;
    while (length - at >= 2) {
        const BYTE identifier = header[at], size = header[at + 1];
        const BYTE* const data = header + at + 2;
        if (size > length - at - 2) return false;
        at += 2u + size;
        const bool wide = identifier == kConcatenated16;
        if ((!wide && identifier != kConcatenated8) || size != (wide ? 4 : 3)) continue;
        const ULONG parts = data[size - 2], part = data[size - 1];
        if (part == 0 || part > parts) continue;
        out.uReference = wide ? static_cast<ULONG>(data[0] << 8 | data[1]) : data[0];
        out.bWideReference = wide;
        out.uParts = parts;
        out.uPart = part;
        found = true;
    }
    return found && at == length;
}

ULONG PutConcatenation(const ORV_SMS_CONCATENATION& concatenation, BYTE* header)
{
    ULONG length = 0;
    const auto put = [&](ULONG octet) { header[length++] = static_cast<BYTE>(octet & 0xFF); };
    if (concatenation.bWideReference) {
        put(kConcatenated16);
        put(4);
        put(concatenation.uReference >> 8);
    } else {
        put(kConcatenated8);
        put(3);
    }
    put(concatenation.uReference);
    put(concatenation.uParts);
    put(concatenation.uPart);
    return length;
}

ORV_RCODE MeasureText(const char* text, ULONG length, bool always_ucs2, TextToSend& out)
{
    ULONG septets = 0, units = 0, character = 0;
    bool ucs2 = always_ucs2;
    Utf8Reader reader(text, length);
    while (reader.Next(character)) {
        const BYTE code = GsmCode(character);
        ucs2 = ucs2 || code == kNotGsm;
        septets += GsmSeptets(code);
        units += Ucs2Units(character);
    }
    if (!reader.AtEnd()) return ORV_RCODE_FAILED;
    out = {text, length, ucs2, ucs2 ? units : septets};
    return ORV_RCODE_OK;
}

ORV_RCODE FindPart(const TextToSend& whole, bool wide_reference, ULONG part, TextPart& out)
{
    out = {whole.text, whole.length, 1};
    if (whole.units > WholeRoom(whole.ucs2)) {
        const ULONG room = PartRoom(whole.ucs2, wide_reference);
        Utf8Reader reader(whole.text, whole.length);
        const char* begin = whole.text;
        ULONG current = 0, used = 0, character = 0;
        const auto end_part = [&](const char* end) {
            if (current == part) {
                out.text = begin;
                out.length = static_cast<ULONG>(end - begin);
            }
            begin = end;
            ++current;
            used = 0;
        };
        for (const char* at = reader.At(); reader.Next(character); at = reader.At()) {
            const ULONG units = UnitsOf(character, whole.ucs2);
            if (used + units > room) end_part(at);
            used += units;
        }
        end_part(reader.At());
        out.parts = current;
        if (current > ORV_SMS_MAX_PARTS) return ORV_RCODE_VENDOR_5;
    }
    return part < out.parts ? ORV_RCODE_OK : ORV_RCODE_BAD_PARAMETER;
}

ULONG PutPart(const TextPart& part, bool ucs2, BYTE* octets)
{
    Utf8Reader reader(part.text, part.length);
    ULONG character = 0;
    if (ucs2) {
        ULONG count = 0;
        while (reader.Next(character))
            count += PutUcs2(character, UnitOrder::BigEndian, octets + count);
        return count / 2;
    }
    SeptetPacker packer(octets, kUserDataOctets);
    while (reader.Next(character))
        packer.PutCode(GsmCode(character));
    return packer.Septets();
}
