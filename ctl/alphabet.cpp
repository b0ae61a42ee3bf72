#include "ctl/alphabet.h"

#include "ctl/error.h"
#include "ctl/text.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace ctl {

namespace {

// 3GPP TS 23.038, 6.2.1: a row is 16 codes. 0x1B is the escape to the extension.
constexpr char16_t kBasic[128 + 1] = u"@£$¥èéùìòÇ\nØø\rÅå"
                                     u"Δ_ΦΓΛΩΠΨΣΘΞ\u00A0ÆæßÉ"
                                     u" !\"#¤%&'()*+,-./"
                                     u"0123456789:;<=>?"
                                     u"¡ABCDEFGHIJKLMNO"
                                     u"PQRSTUVWXYZÄÖÑÜ§"
                                     u"¿abcdefghijklmno"
                                     u"pqrstuvwxyzäöñüà";
static_assert(kBasic[0x10] == u'Δ' && kBasic[0x40] == u'¡' && kBasic[0x7F] == u'à');
constexpr unsigned char kEscape = 0x1B;

constexpr struct {
    unsigned char code;
    char16_t character;
} kExtension[] = {{0x0A, u'\f'}, {0x14, u'^'}, {0x28, u'{'}, {0x29, u'}'}, {0x2F, u'\\'},
                  {0x3C, u'['},  {0x3D, u'~'}, {0x3E, u']'}, {0x40, u'|'}, {0x65, u'€'}};

// The characters of a UTF-8 text. Throws UsageError where it is not well-formed.
std::vector<char32_t> Characters(std::string_view utf8)
{
    std::vector<char32_t> out;
    for (size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i++]);
        const int more = lead < 0x80                   ? 0
                         : lead >= 0xC2 && lead < 0xE0 ? 1
                         : lead >= 0xE0 && lead < 0xF0 ? 2
                         : lead >= 0xF0 && lead < 0xF5 ? 3
                                                       : -1;
        char32_t character = more <= 0 ? lead : lead & (0x3Fu >> more);
        bool good = more >= 0;
        for (int k = 0; k < more && good; ++k) {
            good = i < utf8.size() && (static_cast<unsigned char>(utf8[i]) & 0xC0) == 0x80;
            if (good) character = character << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3F);
        }
        constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
        good =
            good && character >= kLeast[more] && character < 0x110000 && !(character >= 0xD800 && character < 0xE000);
        if (!good) throw UsageError("the text is not UTF-8");
        out.push_back(character);
    }
    return out;
}

std::string Shown(char32_t character)
{
    const WCHAR units[] = {static_cast<WCHAR>(character < 0x10000 ? character : 0xD7C0 + (character >> 10)),
                           static_cast<WCHAR>(character < 0x10000 ? 0 : 0xDC00 + (character & 0x3FF))};
    return "'" + Utf8(units, std::size(units)) + "' (U+" + HexNumber(static_cast<ULONG>(character), 4).substr(2) + ")";
}

enum class Coding { Gsm, Ucs2, Unknown };

struct Scheme {
    Coding coding;
    size_t language; // octets before the text that name its language
};

// 3GPP TS 23.038, section 5, by the high digit.
Scheme Read(ULONG scheme)
{
    const auto by_alphabet = [](ULONG bits) {
        return bits == 0 ? Coding::Gsm : bits == 2 ? Coding::Ucs2 : Coding::Unknown;
    };
    switch (scheme >> 4) {
    case 0x0:
    case 0x2:
    case 0x3:
        return {Coding::Gsm, 0};
    case 0x1:
        return scheme == 0x10   ? Scheme{Coding::Gsm, 3}
               : scheme == 0x11 ? Scheme{Coding::Ucs2, 2}
                                : Scheme{Coding::Gsm, 0};
    case 0x4:
    case 0x5:
    case 0x9:
        return {by_alphabet(scheme >> 2 & 3), 0};
    case 0xF:
        return {(scheme & 4) != 0 ? Coding::Unknown : Coding::Gsm, 0};
    default:
        return {Coding::Unknown, 0};
    }
}

std::string FromGsm(std::string_view octets)
{
    std::u16string out;
    for (size_t i = 0; i < octets.size(); ++i) {
        const auto code = static_cast<unsigned char>(octets[i]);
        if (code == kEscape && i + 1 < octets.size()) {
            const auto next = static_cast<unsigned char>(octets[++i]);
            const auto* const row = std::find_if(std::begin(kExtension), std::end(kExtension),
                                                 [next](const auto& r) { return r.code == next; });
            // An extension that is not known shows as the character of the basic table.
            if (row != std::end(kExtension))
                out += row->character;
            else
                out += next < 128 ? kBasic[next] : u'\uFFFD';
        } else if (code == kEscape) {
            out += u' ';
        } else {
            out += code < 128 ? kBasic[code] : u'\uFFFD';
        }
    }
    return Utf8(out.data(), out.size());
}

std::string FromUcs2(std::string_view octets)
{
    std::u16string out;
    for (size_t i = 0; i + 1 < octets.size(); i += 2) {
        const auto high = static_cast<unsigned char>(octets[i]);
        const auto low = static_cast<unsigned char>(octets[i + 1]);
        const auto unit = static_cast<char16_t>(high << 8 | low);
        out += unit == 0 ? u'\uFFFD' : unit;
    }
    return Utf8(out.data(), out.size());
}

} // namespace

std::string ToGsm(std::string_view utf8)
{
    std::string out;
    for (const char32_t character : Characters(utf8)) {
        const auto* const basic = std::find(std::begin(kBasic), std::end(kBasic) - 1, character);
        const auto* const row = std::find_if(std::begin(kExtension), std::end(kExtension),
                                             [character](const auto& r) { return r.character == character; });
        if (basic != std::end(kBasic) - 1 && character != 0xA0) {
            out += static_cast<char>(basic - std::begin(kBasic));
        } else if (row != std::end(kExtension)) {
            out += static_cast<char>(kEscape);
            out += static_cast<char>(row->code);
        } else {
            throw UsageError("the GSM alphabet has no " + Shown(character) + " (see --ucs2)");
        }
    }
    return out;
}

std::string ToUcs2(std::string_view utf8)
{
    std::string out;
    for (const char32_t character : Characters(utf8)) {
        if (character >= 0x10000) throw UsageError("UCS2 has no " + Shown(character));
        out += static_cast<char>(static_cast<unsigned char>(character >> 8));
        out += static_cast<char>(static_cast<unsigned char>(character & 0xFF));
    }
    return out;
}

std::string ToLatin1(std::string_view utf8)
{
    std::string out;
    for (const char32_t character : Characters(utf8)) {
        if (character > 0xFF) throw UsageError("ISO 8859-1 has no " + Shown(character));
        out += static_cast<char>(static_cast<unsigned char>(character));
    }
    return out;
}

std::optional<std::string> FromCoding(ULONG scheme, std::string_view octets)
{
    const Scheme read = Read(scheme);
    if (read.coding == Coding::Unknown) return {};
    octets.remove_prefix(std::min(read.language, octets.size()));
    return read.coding == Coding::Gsm ? FromGsm(octets) : FromUcs2(octets);
}

} // namespace ctl
