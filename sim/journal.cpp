#include "sim/journal.h"

#include <string.h>

namespace sim {

constexpr ULONG kRoom = 60000;     // with the line that counts what was dropped, below 64 KiB
constexpr ULONG kDrop = kRoom / 4; // at once, so that dropping stays rare

static char g_lines[kRoom]; // each line ends with a line feed
static ULONG g_used;
static ULONG g_dropped;

static void DropOldest()
{
    ULONG gone = 0;
    while (gone < g_used && (gone < kDrop || g_lines[gone - 1] != '\n')) {
        if (g_lines[gone] == '\n') ++g_dropped;
        ++gone;
    }
    g_used -= gone;
    memmove(g_lines, g_lines + gone, g_used);
}

void JournalLine(const char* line)
{
    const ULONG length = BoundedLength(line, kRoom - kDrop);
    if (g_used + length + 1 > kRoom) DropOldest();
    memcpy(g_lines + g_used, line, length);
    g_used += length;
    g_lines[g_used++] = '\n';
}

void JournalClear()
{
    g_used = 0;
    g_dropped = 0;
}

void JournalRead(Writer& reply)
{
    if (g_dropped > 0) reply.Add("# ").Unsigned(g_dropped).Add(" earlier lines dropped\n");
    for (ULONG i = 0; i + 1 < g_used; ++i)
        reply.Character(g_lines[i]);
}

} // namespace sim
