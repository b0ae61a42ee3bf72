// The journal: one line an entry-point call, with its input arguments. Lock held by every caller.
#pragma once

#include "sim/text.h"

namespace sim {

// When there is no room the oldest lines go, and the journal begins with a line that counts them.
void JournalLine(const char* line);
void JournalClear();
// All lines, joined by line feeds.
void JournalRead(Writer& reply);

} // namespace sim
