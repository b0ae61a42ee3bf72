#include "ctl/alphabet.h"

#include "ctl/error.h"
#include "ctl/text.h"
#include "talvek/sms_text.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace ctl {

namespace {

constexpr size_t kMostOctets = 3; // of a character of the GSM alphabet in UTF-8

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

// The character in UTF-8.
std::string Encoded(char32_t character)
{
    const WCHAR units[] = {static_cast<WCHAR>(character < 0x10000 ? character : 0xD7C0 + (character >> 10)),
                           static_cast<WCHAR>(character < 0x10000 ? 0 : 0xDC00 + (character & 0x3FF))};
    return Utf8(units, std::size(units));
}

std::string Shown(char32_t character)
{
    return "'" + Encoded(character) + "' (U+" + HexNumber(static_cast<ULONG>(character), 4).substr(2) + ")";
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

// Septets, one an octet, as the library takes them: packed (3GPP TS 23.038, 6.1.2.1.1).
std::vector<BYTE> Packed(std::string_view septets)
{
    std::vector<BYTE> out((septets.size() * 7 + 7) / 8);
    for (size_t i = 0; i < septets.size(); ++i) {
        const ULONG bits = static_cast<ULONG>(septets[i] & 0x7F) << (i * 7 % 8);
        out[i * 7 / 8] = static_cast<BYTE>(out[i * 7 / 8] | bits);
        if (bits > 0xFF) out[i * 7 / 8 + 1] = static_cast<BYTE>(bits >> 8);
    }
    return out;
}

std::string Unpacked(const std::vector<BYTE>& packed, size_t count)
{
    std::string out;
    for (size_t i = 0; i < count; ++i) {
        const size_t octet = i * 7 / 8;
        const ULONG pair = packed[octet] | (octet + 1 < packed.size() ? ULONG{packed[octet + 1]} << 8 : 0);
        out += static_cast<char>(pair >> (i * 7 % 8) & 0x7F);
    }
    return out;
}

// The text of octets that are septets, each.
std::string FromSeptets(std::string_view septets)
{
    const std::vector<BYTE> packed = Packed(septets);
    std::string out(septets.size() * kMostOctets + 1, '\0');
    ULONG length = 0;
    OrvGsmTextUnpack(packed.data(), static_cast<ULONG>(packed.size()), 0, static_cast<ULONG>(septets.size()),
                     out.data(), static_cast<ULONG>(out.size()), &length);
    out.resize(length);
    return out;
}

// An octet above 127 is no character of the alphabet.
std::string FromGsm(std::string_view octets)
{
    std::string out;
    while (!octets.empty()) {
        const auto* const end =
            std::find_if(octets.begin(), octets.end(), [](char c) { return static_cast<unsigned char>(c) > 127; });
        const auto length = static_cast<size_t>(end - octets.begin());
        if (length > 0) out += FromSeptets(octets.substr(0, length));
        if (length < octets.size()) out += "\uFFFD";
        octets.remove_prefix(std::min(length + 1, octets.size()));
    }
    return out;
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
    for (const char32_t character : Characters(utf8)) {
        const std::string alone = Encoded(character);
        ULONG septets = 0;
        if (OrvGsmTextSeptets(alone.data(), static_cast<ULONG>(alone.size()), &septets) != ORV_RCODE_OK)
            throw UsageError("the GSM alphabet has no " + Shown(character) + " (see --ucs2)");
    }
    std::vector<BYTE> packed(utf8.size() * 2 + 1); // at most two septets a character
    ULONG septets = 0;
    OrvGsmTextPack(utf8.data(), static_cast<ULONG>(utf8.size()), packed.data(), static_cast<ULONG>(packed.size()),
                   &septets);
    return Unpacked(packed, septets);
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
