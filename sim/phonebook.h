// The phonebooks: what events and the verb table ask of them. Lock held.
#pragma once

#include "sim/command.h"
#include "talvek/gobi_types.h"

namespace sim {

constexpr ULONG kPhonebookBatch = 10; // records of one event

// Copies the records in use from `first` to `last`, at most `room`; returns how many.
ULONG StoredRecords(BYTE type, ULONG first, ULONG last, arrPBInfo* records, ULONG room);
// The verb.
void PhonebookVerb(Command& command);

} // namespace sim
