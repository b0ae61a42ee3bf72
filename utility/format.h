// The one formatter of the library, with the same meaning on every host.
#pragma once

#include <stdarg.h>

#include "platform/win32.h"

// Conversions: %d %i %u %x %X %c %s %S %p %%, flags '0' and '-', a width and a precision (for integers the least number
// of digits, for strings the most characters taken). The length modifiers l, h and hh are accepted and change nothing:
// all integers are 32 bits wide.
//
// %s takes a string of the format's own width and %S one of the other width; a null pointer prints "(null)". %S widens
// octet n to character n (ISO 8859-1), and narrows to UTF-8, an unpaired surrogate becoming U+FFFD. %p prints the low
// 32 bits as eight upper-case hex digits. An unknown conversion is copied as it stands and takes no argument.
//
// Each string argument is cut at 512 characters, so an unterminated one ends there, and a result that does not fit is
// cut (between characters, where %S made them). Writes at most `room` characters with the terminator, nothing when
// `room` is 0, and returns the length written.
ULONG FormatNarrow(char* out, ULONG room, const char* format, va_list arguments);
ULONG FormatWide(WCHAR* out, ULONG room, const WCHAR* format, va_list arguments);
// FormatNarrow with the arguments themselves.
ULONG PrintNarrow(char* out, ULONG room, const char* format, ...);
