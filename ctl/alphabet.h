// Texts as the air interface codes them, one character an octet of the GSM alphabet or two of UCS2.
#pragma once

#include "talvek/types.h"

#include <optional>
#include <string>
#include <string_view>

namespace ctl {

// The octets of a UTF-8 text in the GSM 7-bit default alphabet and its extension (3GPP TS 23.038, 6.2.1). Throws
// UsageError with the character that is not in it.
std::string ToGsm(std::string_view utf8);
// In UCS2, high octet first. Throws UsageError with a character beyond its 65536, or where the text is not UTF-8.
std::string ToUcs2(std::string_view utf8);

// In ISO 8859-1. Throws UsageError likewise.
std::string ToLatin1(std::string_view utf8);

// UTF-8 of a text whose cell broadcast data coding scheme is `scheme` (3GPP TS 23.038, section 5), or nothing where
// that is no text or is not known: 8-bit data, compressed text.
std::optional<std::string> FromCoding(ULONG scheme, std::string_view octets);

} // namespace ctl
