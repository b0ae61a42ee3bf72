// Supplementary services: what they do to calls. Lock held.
#pragma once

#include "talvek/types.h"

namespace sim {

bool BarsOutgoingCall(bool international);
bool BarsIncomingCall();
bool WaitingIsActive();
// Where a voice call goes that comes in now, or null. `off`: the module cannot be reached.
const char* ForwardsIncomingCall(bool busy, bool off);

} // namespace sim
