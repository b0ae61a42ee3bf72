// What the services that write to a CDMA module's settings share. Lock held by every caller.
#pragma once

#include "talvek/types.h"

namespace sim {

// The service programming code that a caller gives: 0, or the status of the refusal. A wrong code costs an attempt;
// after the last one no code is taken until the module has been off. The right one gives all attempts back.
ULONG CheckSpc(const char* spc);
// Gives the attempts back: the module was off.
void UnlockSpc();
// Of the active profile; null leaves a secret as it is.
void KeepMobileIPSecrets(const char* ha_secret, const char* aaa_secret);

} // namespace sim
