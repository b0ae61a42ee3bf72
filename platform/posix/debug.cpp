#include "platform/debug_text.h"
#include "platform/posix/seam.h"

namespace talvek_platform {

void NKDbgPrintfW(const WCHAR* format, ...)
{
    if (!seam::Armed()) return;
    seam::Count(seam::Call::NKDbgPrintfW);
    if (!format) return;

    WCHAR text[debug_text::kRoom];
    va_list arguments;
    va_start(arguments, format);
    debug_text::Format(text, format, arguments);
    va_end(arguments);
    seam::SendToDebugSink(text);
}

} // namespace talvek_platform
