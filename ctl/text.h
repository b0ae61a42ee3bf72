// Text helpers: everything that the client prints is valid UTF-8 without control characters.
#pragma once

#include "talvek/types.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace ctl {

// UTF-8 of at most `size` 16-bit characters, up to a terminator. A surrogate without its partner becomes U+FFFD.
std::string Utf8(const WCHAR* text, size_t size);
// UTF-8 of at most `size` octets of ISO 8859-1, up to a terminator.
std::string Utf8(const char* text, size_t size);

// The text with control characters as \xNN: a module's text must not steer the terminal.
std::string Printable(std::string_view utf8);

// Two lower-case digits an octet.
std::string Hex(const BYTE* data, size_t size);
// "0x" and at least `digits` lower-case digits.
std::string HexNumber(ULONG value, int digits);
// An address in host byte order as 192.0.2.1.
std::string Dotted(ULONG address);

// A decimal or, with "0x", hexadecimal number that fills the whole text and fits 32 bits.
bool ParseNumber(std::string_view text, ULONG& value);
// Without regard to the case of ASCII letters.
bool SameName(std::string_view a, std::string_view b);

} // namespace ctl
