// Command lines that run in the middle of an entry point's call: the way to let an event come at the worst moment.
#pragma once

#include "sim/command.h"
#include "sim/entry_points.h"

namespace sim {

// The line that waits for a call of `entry`, copied into `line`. False when there is none, or when it is running
// already: what it sets off may call the same entry point. Lock held, here and below unless stated.
bool TakeOnCall(EntryPoint entry, Text<kMaxKeptLine>& line);
// Runs the line that was taken, and lets it be taken again. Lock not held.
void RunOnCall(EntryPoint entry, const char* line);
void ClearOnCall(EntryPoint entry);
void ClearAllOnCall();

// The verb.
void OnVerb(Command& command);

} // namespace sim
