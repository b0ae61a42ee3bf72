// What others want of the packet data session. Lock held.
#pragma once

#include "sim/command.h"

namespace sim {

// The address that the session has, or would have: that of the profile it started with, else the assigned one.
const BYTE (&SessionAddress())[4];

// The verb for what the network does with a session.
void SessionVerb(Command& command);

} // namespace sim
