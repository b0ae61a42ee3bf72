// The .reg text format: a grammar over 16-bit text, without any file.
//
//     Windows Registry Editor Version 5.00        the first line
//     ; a remark                                  also at the end of a line
//     [HKEY_CURRENT_USER\Software\Name]           a key; it may come again
//     "name"="text"                               \\ and \" stand for a backslash and a quote
//     @="text"                                    the key's default value
//     "name"=dword:0000001f                       one to eight hex digits
//     "name"=hex:01,02,\                          octets of any type, hex(TYPE): too; a backslash goes on on the next
//     line
//       03
//
// A file states what the registry holds, so the lines that delete ([-HKEY_…] and "name"=-) are faults.
#pragma once

#include "platform/win32.h"

namespace seam {

constexpr DWORD REG_BINARY = 3;

struct RegText {
    const WCHAR* text;
    size_t length; // not terminated
};

// Receives what a file holds, in its order. False ends the parsing.
class RegVisitor {
public:
    // `root` is null for a root key that the library does not use. `path` is "" or "Software\Name".
    virtual bool Key(HKEY root, RegText path) = 0;
    // `name` is "" for the default value. A text's `data` is its characters with a terminator, `size` is in octets.
    virtual bool Value(RegText name, DWORD type, const void* data, DWORD size) = 0;

protected:
    ~RegVisitor() = default;
};

struct RegFault {
    unsigned line; // from 1
    const char* reason;
};

enum class RegResult { Ok, Malformed, Stopped };

// Parses `text`, which is overwritten: values are unescaped where they stand. Malformed sets `fault`.
RegResult ParseRegText(WCHAR* text, size_t length, RegVisitor& visitor, RegFault* fault);

// Widens a file's octets, UTF-8 with or without a byte order mark or UTF-16 little-endian with one. `out` has room for
// `size` characters. Returns false with `fault` set for text that is malformed.
bool DecodeRegFile(const BYTE* octets, size_t size, WCHAR* out, size_t* length, RegFault* fault);

} // namespace seam
