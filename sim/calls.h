// Voice calls: what other services and the verb table ask of them. Lock held.
#pragma once

#include "sim/call.h"
#include "sim/command.h"

namespace sim {

// Where a request for a supplementary service, USSD or a call writes what became of it. Null pointers make the call
// fail, save those whose entry point has no such output.
struct Outcome {
    alphaIDInfo* text;
    BYTE* result; // GOBI_CALL_CONTROL_...
    BYTE* call_id;
    ccSUPSType* service;
};
void PutOutcome(Call& call, const Outcome& out, BYTE result, ccSUPSType service);

// The verb.
void CallVerb(Command& command);

} // namespace sim
