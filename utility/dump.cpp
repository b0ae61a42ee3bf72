#include "utility/format.h"
#include "utility/log.h"
#include "utility/record.h"
#include "utility/text_writer.h"

namespace {

constexpr ULONG kMostOctets = 512;
constexpr ULONG kLabelRoom = 513; // labels are cut like any string argument
constexpr ULONG kDumpRoom = kLabelRoom + 4 * kMostOctets;

} // namespace

void DisplayRawData(const char* label, const void* data, ULONG size)
{
    if (!LogIsOn(OV_LOG_TRACE)) return;
    const KeepLastError keep;
    char text[kDumpRoom];
    const ULONG start = PrintNarrow(text, kLabelRoom, data || size == 0 ? "%s" : "%s(null)", label);
    TextWriter<char> writer(text + start, kDumpRoom - start);
    const char* octets = static_cast<const char*>(data);
    const ULONG shown = !data ? 0 : size < kMostOctets ? size : kMostOctets;
    for (ULONG i = 0; i < shown; ++i) {
        if (octets[i] >= ' ' && octets[i] <= '~') {
            writer.Put(octets[i]);
        } else {
            PutEscaped(writer, octets[i]);
        }
    }
    WriteRecord(OV_LOG_TRACE, {"DisplayRawData", 0, "", 0, text}, start + writer.Finish());
}
