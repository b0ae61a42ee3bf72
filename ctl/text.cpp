#include "ctl/text.h"

#include <algorithm>
#include <charconv>

namespace ctl {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& out, char32_t character)
{
    const auto octet = [&out](char32_t value) { out += static_cast<char>(static_cast<unsigned char>(value)); };
    if (character < 0x80) {
        octet(character);
    } else if (character < 0x800) {
        octet(0xC0 | character >> 6);
        octet(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        octet(0xE0 | character >> 12);
        octet(0x80 | (character >> 6 & 0x3F));
        octet(0x80 | (character & 0x3F));
    } else {
        octet(0xF0 | character >> 18);
        octet(0x80 | (character >> 12 & 0x3F));
        octet(0x80 | (character >> 6 & 0x3F));
        octet(0x80 | (character & 0x3F));
    }
}

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

constexpr char kDigits[] = "0123456789abcdef";

} // namespace

std::string Utf8(const WCHAR* text, size_t size)
{
    std::string out;
    for (size_t i = 0; i < size && text[i] != 0; ++i) {
        const char32_t unit = text[i];
        if (IsHighSurrogate(unit) && i + 1 < size && IsLowSurrogate(text[i + 1])) {
            const char32_t low = text[++i];
            AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
        } else {
            AppendUtf8(out, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit);
        }
    }
    return out;
}

std::string Utf8(const char* text, size_t size)
{
    std::string out;
    for (size_t i = 0; i < size && text[i] != 0; ++i)
        AppendUtf8(out, static_cast<unsigned char>(text[i]));
    return out;
}

std::string Printable(std::string_view utf8)
{
    std::string out;
    const auto escape = [&out](unsigned char octet) {
        out += "\\x";
        out += kDigits[octet >> 4];
        out += kDigits[octet & 15];
    };
    for (size_t i = 0; i < utf8.size(); ++i) {
        const auto octet = static_cast<unsigned char>(utf8[i]);
        // U+0080 to U+009F, which some terminals obey, are C2 80 to C2 9F.
        if (octet == 0xC2 && i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0) {
            escape(static_cast<unsigned char>(utf8[++i]));
        } else if (octet < 0x20 || octet == 0x7F) {
            escape(octet);
        } else {
            out += utf8[i];
        }
    }
    return out;
}

std::string Hex(const BYTE* data, size_t size)
{
    std::string out;
    out.reserve(size * 2);
    for (size_t i = 0; i < size; ++i) {
        out += kDigits[data[i] >> 4];
        out += kDigits[data[i] & 15];
    }
    return out;
}

std::string HexNumber(ULONG value, int digits)
{
    std::string out;
    for (; value != 0 || digits > 0; value >>= 4, --digits)
        out += kDigits[value & 15];
    std::reverse(out.begin(), out.end());
    return "0x" + out;
}

std::string Dotted(ULONG address)
{
    std::string out;
    for (int shift = 24; shift >= 0; shift -= 8) {
        out += std::to_string(address >> shift & 0xFF);
        if (shift != 0) out += '.';
    }
    return out;
}

bool ParseNumber(std::string_view text, ULONG& value)
{
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        text.remove_prefix(2);
        base = 16;
    }
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base);
    return error == std::errc() && stop == end && !text.empty();
}

bool SameName(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [&](char x, char y) { return lower(x) == lower(y); });
}

} // namespace ctl
