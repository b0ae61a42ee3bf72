// The one formatter of the library, with the same meaning on every host.
#pragma once

#include <stdarg.h>

#include "platform/win32.h"

// Conversions: %d %i %u %x %X %c %s %S %p %%, flags '0' and '-' and a width, a precision for strings; the length modifiers
// l, h and hh are accepted and all integers are 32 bits wide. %s takes a string of the format's own width, %S one of the
// other width; a null pointer prints "(null)". %p prints the low 32 bits as eight hex digits.
// Each string argument is cut at 512 characters, so an unterminated one ends there, and a result that does not fit is cut.
// Writes at most `room` characters with the terminator and returns the length written. An unknown conversion is copied as
// it stands and takes no argument.
ULONG FormatNarrow(char* out, ULONG room, const char* format, va_list arguments);
ULONG FormatWide(WCHAR* out, ULONG room, const WCHAR* format, va_list arguments);
