// The AT command interpreter: octets in, octets out. It shares the module's state with the entry points and knows
// nothing of the line that it speaks over. Lock held by every caller.
#pragma once

#include "sim/command.h"

namespace sim {

// Takes what arrived on the line.
void AtReceive(const BYTE* octets, ULONG count);

enum class AtStep : BYTE {
    Idle,     // nothing to send
    Send,     // send what was taken, then ask again
    Fragment, // the same, but only when the other side has read it
    HangUp    // send what was taken, let the other side read it, then hang up
};
// Moves what is to be sent next into `out`, at most `room` octets.
AtStep AtTake(BYTE* out, ULONG room, ULONG* count);
// The line was hung up: what was on its way is lost.
void AtLineLost();

void ResetAtModem();   // everything, faults too
void RestartAtModem(); // the settings that a command changes

// The verbs `at …`.
void AtVerb(Command& command);

} // namespace sim
