// Faults by name: an entry point that fails from its nth call on, or that fills its outputs as a hostile library would.
// Lock held by every caller.
#pragma once

#include "sim/command.h"
#include "sim/entry_points.h"

namespace sim {

enum class Hostility : BYTE {
    None,
    Scribble, // every output full, unterminated, with the greatest counts
    Count     // the given count, whatever was written
};

struct HostileRule {
    Hostility kind;
    ULONG count;
};

// Counts one call and returns the status that it fails with, or 0.
ULONG FaultOf(EntryPoint entry);
HostileRule HostileRuleOf(EntryPoint entry);
void ClearFaults(); // and what waits for a call

// The verbs.
void FailVerb(Command& command);
void HostileVerb(Command& command);
void ClearVerb(Command& command);

} // namespace sim
