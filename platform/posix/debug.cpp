#include <iterator>
#include <stdarg.h>
#include <stdio.h>

#include "platform/posix/seam.h"

namespace talvek_platform {

// Nothing here needs more than %s, %d, %x and %%; another conversion is copied as it stands.
void NKDbgPrintfW(const WCHAR* format, ...)
{
    if (!seam::Armed()) return;
    seam::Count(seam::Call::NKDbgPrintfW);
    if (!format) return;

    WCHAR text[512];
    size_t length = 0;
    const auto put = [&](WCHAR character) {
        if (length < std::size(text) - 1) text[length++] = character;
    };
    va_list arguments;
    va_start(arguments, format);
    for (const WCHAR* at = format; *at; ++at) {
        if (*at != u'%' || at[1] == 0) {
            put(*at);
            continue;
        }
        switch (*++at) {
        case u'%':
            put(u'%');
            break;
        case u's': {
            const WCHAR* string = va_arg(arguments, const WCHAR*);
            for (string = string ? string : u"(null)"; *string && length < std::size(text) - 1; ++string)
                put(*string);
            break;
        }
        case u'd':
        case u'x': {
            char digits[16];
            snprintf(digits, sizeof digits, *at == u'd' ? "%d" : "%x", va_arg(arguments, int));
            for (const char* digit = digits; *digit; ++digit)
                put(static_cast<WCHAR>(*digit));
            break;
        }
        default:
            put(u'%');
            put(*at);
        }
    }
    va_end(arguments);
    text[length] = 0;
    seam::SendToDebugSink(text);
}

} // namespace talvek_platform
