// The dialogue of USSD with the network.
#pragma once

#include "sim/values.h"
#include "talvek/gobi_types.h"

namespace sim {

struct UssdState {
    BYTE open;           // 1: the network waits for an answer
    BYTE questions;      // how many answers the network asks for after a request
    BYTE asked;          // answers that it still asks for in the dialogue that is open
    ULONG answer_ms;     // from an answer to the event that follows
    WORD refusal;        // a cause with which the network refuses a request, or 0
    Text<161> reply;     // to a request
    Text<161> next;      // asks once more
    Text<161> end;       // ends the dialogue
    Octets<160> request; // the last one, and the last answer
    Octets<160> answer;
};

} // namespace sim
