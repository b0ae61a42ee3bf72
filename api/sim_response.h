// What a card answers: read from the AT reply that carries it, and judged.
#pragma once

#include "at/OrvAtPort.h"
#include "talvek/gsm_sim.h"

struct SimResponse {
    static constexpr ULONG kCapacity = kAtBufferSize / 2; // two characters of the reply an octet
    ULONG dwParamsMask = 0;                               // as ORV_SIM_RESPONSE has it
    ULONG sw1 = 0, sw2 = 0;
    ULONG size = 0;
    BYTE payload[kCapacity];
};

enum class SimReply { Whole, BadFinalResult, Malformed };

// Read the reply to `command`. The response is whole, too, where only the final result is none; it is not to be looked
// at when the reply is malformed.
SimReply ReadRestrictedReply(const char* text, const char* command, SimResponse* response);
SimReply ReadGenericReply(const char* text, const char* command, SimResponse* response);

// 0 when the status words tell of success. Else what they mean is logged: 6 for a file or record that is not there, 4
// for an argument that the card finds wrong, 5 for the rest.
ORV_RCODE CheckStatusWords(ULONG sw1, ULONG sw2);

// The control parameters of an elementary file, in the template of ETSI TS 102 221, 11.1.1.3, or in the fixed form of
// 3GPP TS 51.011, 9.2.1. Returns 0, or 5 with *status untouched. The status words are not part of them.
ORV_RCODE ReadFileControl(const BYTE* data, ULONG size, ORV_SIM_RECORD_STATUS* status);
