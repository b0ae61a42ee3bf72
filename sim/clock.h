// The sim clock and what is still to come on it: command lines, by due time and then by the order in which they were
// queued.
//
// On the virtual clock they run when `advance` passes them; on the live one a short-lived thread runs them when their
// time has come.
#pragma once

#include "sim/command.h"

namespace sim {

// Milliseconds of the sim clock. Lock held, here and below unless stated.
ULONGLONG Now();
bool IsLive();
// Queues a line that the module itself causes. Dropped when the client disconnects. A full queue drops it too.
void ScheduleModuleEvent(ULONG delay_ms, const char* line);
void ClearQueue();
void DropModuleEvents();
// Starts the live thread if something is to come that it must run. After anything is scheduled elsewhere.
void WakeClock();
// Passes so much time on a live clock, and none on the virtual one; less when the client disconnects or the module
// leaves. Lock not held.
void WaitLive(ULONG duration_ms);
// Stops the live clock for good: the library is being unloaded. Lock not held.
void CloseClock();

// The verbs. Clock, After and Queue with the lock held; Advance without.
void ClockVerb(Command& command);
void AfterVerb(Command& command);
void QueueVerb(Command& command);
void AdvanceVerb(Command& command);

} // namespace sim
