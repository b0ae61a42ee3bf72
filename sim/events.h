// Events: a table row each, from the words of `emit` to a call of the client's callback.
#pragma once

#include "sim/command.h"

namespace sim {

// Whether each event gets a thread of its own. Lock held.
void DeliverOnThreads(bool on);

// The verbs. Lock not held, except by ThreadsVerb, RegisteredVerb and EventsVerb.
void EmitVerb(Command& command);
void SettleVerb(Command& command);
void ThreadsVerb(Command& command);
void EventsVerb(Command& command);
void RegisteredVerb(Command& command);

} // namespace sim
