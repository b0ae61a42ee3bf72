#include "sms/text_alphabet.h"

#include "utility/text_writer.h"

namespace {

constexpr char16_t kNone = 0;

// A column is bits 7 to 5 of the code, a row bits 4 to 1. The escape, 0x1B, has no character.
constexpr char16_t kDefault[16][8] = {
    // 0       1      2     3     4     5     6     7
    {u'@', u'Δ', u' ', u'0', u'¡', u'P', u'¿', u'p'},  //  0
    {u'£', u'_', u'!', u'1', u'A', u'Q', u'a', u'q'},  //  1
    {u'$', u'Φ', u'"', u'2', u'B', u'R', u'b', u'r'},  //  2
    {u'¥', u'Γ', u'#', u'3', u'C', u'S', u'c', u's'},  //  3
    {u'è', u'Λ', u'¤', u'4', u'D', u'T', u'd', u't'},  //  4
    {u'é', u'Ω', u'%', u'5', u'E', u'U', u'e', u'u'},  //  5
    {u'ù', u'Π', u'&', u'6', u'F', u'V', u'f', u'v'},  //  6
    {u'ì', u'Ψ', u'\'', u'7', u'G', u'W', u'g', u'w'}, //  7
    {u'ò', u'Σ', u'(', u'8', u'H', u'X', u'h', u'x'},  //  8
    {u'Ç', u'Θ', u')', u'9', u'I', u'Y', u'i', u'y'},  //  9
    {u'\n', u'Ξ', u'*', u':', u'J', u'Z', u'j', u'z'}, // 10
    {u'Ø', kNone, u'+', u';', u'K', u'Ä', u'k', u'ä'}, // 11
    {u'ø', u'Æ', u',', u'<', u'L', u'Ö', u'l', u'ö'},  // 12
    {u'\r', u'æ', u'-', u'=', u'M', u'Ñ', u'm', u'ñ'}, // 13
    {u'Å', u'ß', u'.', u'>', u'N', u'Ü', u'n', u'ü'},  // 14
    {u'å', u'É', u'/', u'?', u'O', u'§', u'o', u'à'},  // 15
};

constexpr char16_t kExtension[16][8] = {
    //  0      1      2      3      4      5      6      7
    {kNone, kNone, kNone, kNone, u'|', kNone, kNone, kNone},  //  0
    {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone}, //  1
    {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone}, //  2
    {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone}, //  3
    {kNone, u'^', kNone, kNone, kNone, kNone, kNone, kNone},  //  4
    {kNone, kNone, kNone, kNone, kNone, kNone, u'€', kNone},  //  5
    {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone}, //  6
    {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone}, //  7
    {kNone, kNone, u'{', kNone, kNone, kNone, kNone, kNone},  //  8
    {kNone, kNone, u'}', kNone, kNone, kNone, kNone, kNone},  //  9
    {u'\f', kNone, kNone, kNone, kNone, kNone, kNone, kNone}, // 10
    {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone}, // 11
    {kNone, kNone, kNone, u'[', kNone, kNone, kNone, kNone},  // 12
    {kNone, kNone, kNone, u'~', kNone, kNone, kNone, kNone},  // 13
    {kNone, kNone, kNone, u']', kNone, kNone, kNone, kNone},  // 14
    {kNone, kNone, u'\\', kNone, kNone, kNone, kNone, kNone}, // 15
};

constexpr char16_t Default(ULONG code) { return kDefault[code & 15][code >> 4]; }
constexpr char16_t Extension(ULONG code) { return kExtension[code & 15][code >> 4]; }

constexpr GsmCharacter AsUtf8(char16_t character)
{
    char octets[4] = {};
    const ULONG count = EncodeUtf8(character, octets);
    return {{octets[0], octets[1], octets[2]}, static_cast<BYTE>(count)};
}

constexpr GsmCharacters ByCode()
{
    GsmCharacters out = {};
    for (ULONG code = 0; code < 128; ++code) {
        out.by_code[code] = AsUtf8(Default(code));
        out.by_code[kGsmExtended + code] = AsUtf8(Extension(code) != kNone ? Extension(code) : Default(code));
    }
    out.by_code[kGsmEscape] = {{}, kGsmExtended};
    out.by_code[kGsmExtended + kGsmEscape] = AsUtf8(u' ');
    return out;
}

// The alphabet draws upon two stretches of Unicode, and has the euro.
constexpr ULONG kLatinEnd = 0x100, kGreek = 0x390, kGreekEnd = 0x3B0;
constexpr char16_t kEuro = u'€';

struct GsmCodes {
    BYTE latin[kLatinEnd];
    BYTE greek[kGreekEnd - kGreek];
    BYTE euro;
    bool whole; // every character of the alphabet has its place here
};

constexpr void Enter(GsmCodes& out, char16_t character, ULONG code)
{
    const BYTE value = static_cast<BYTE>(code);
    if (character == kNone) return;
    if (character < kLatinEnd) {
        out.latin[character] = value;
    } else if (character >= kGreek && character < kGreekEnd) {
        out.greek[character - kGreek] = value;
    } else {
        out.euro = value;
        out.whole = out.whole && character == kEuro;
    }
}

constexpr GsmCodes ByCharacter()
{
    GsmCodes out = {{}, {}, kNotGsm, true};
    for (BYTE& code : out.latin)
        code = kNotGsm;
    for (BYTE& code : out.greek)
        code = kNotGsm;
    for (ULONG code = 0; code < 128; ++code) {
        Enter(out, Default(code), code);
        Enter(out, Extension(code), kGsmExtended + code);
    }
    return out;
}

constexpr GsmCodes kCodes = ByCharacter();
static_assert(kCodes.whole, "a character outside of the two stretches");

} // namespace

constexpr GsmCharacters kGsmCharacters = ByCode();

BYTE GsmCode(ULONG character)
{
    if (character < kLatinEnd) return kCodes.latin[character];
    if (character >= kGreek && character < kGreekEnd) return kCodes.greek[character - kGreek];
    return character == kEuro ? kCodes.euro : kNotGsm;
}
