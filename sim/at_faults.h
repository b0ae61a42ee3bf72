// What can be made to go wrong on the AT line, and the record of what arrived there. Lock held by every caller.
#pragma once

#include "sim/text.h"

namespace sim {

enum class AtHangUp : BYTE { None, Before, During, After };

struct AtFaults {
    bool silence;      // never answers, never echoes
    ULONG fragment;    // octets at a time; 0: all at once
    AtHangUp hang_up;  // at the next command
    bool insert_armed; // into the next reply
    ULONG insert_offset;
    ULONG inserted_length;
    Text<512> inserted;
};

AtFaults& AtFaultsInForce();
void ClearAtFaults(); // and the log
void AtLogCommand(const char* line);
// The reply that stands for the command, its length without a terminator; null if there is none.
const char* AtCannedReply(const char* line, ULONG* length);

// On the interpreter's side.
void AtSendUnasked(const char* octets, ULONG count);
void SetEcho(bool on);

} // namespace sim
