// What the module keeps of its voice calls.
#pragma once

#include "sim/values.h"
#include "talvek/gobi_types.h"

namespace sim {

struct VoiceCall {
    BYTE id;        // 0: this place is free
    BYTE state;     // GOBI_CALL_...
    BYTE type;      // 0 voice; others as the vendor has them
    BYTE direction; // 1 originated here, 2 terminated here
    BYTE multiparty;
    BYTE presentation; // of the other side's number: 0 allowed, 1 restricted, 2 unavailable
    BYTE clir;         // as the client asked when it dialled
    BYTE option;       // service option of a CDMA call, else 0
    BYTE key;          // that sounds, else 0
    Text<GOBI_MAX_DIGITS + 1> number;
};

struct EndedCall {
    BYTE id;
    WORD reason;
};

struct CallsState {
    VoiceCall calls[GOBI_MAX_CALLS];
    EndedCall ended[GOBI_MAX_CALLS]; // the last ones, newest first
    ULONG ended_count;
    BYTE next_id;
    BYTE line;           // 0 or 1: the alternate line that calls use
    BYTE answers;        // 1: the other side answers
    WORD refusal;        // a reason for which the network ends each call that is dialled, or 0
    ULONG report_ms;     // from a change to its event
    ULONG alert_ms;      // from DialCall to the other side's ringing
    ULONG answer_ms;     // from there to its answer
    BYTE service_option; // of the next CDMA call
    BYTE voice_privacy, otasp;
    Text<64> keys;      // that were sent, newest last
    Text<256> sim_text; // that the SIM gives for a request
};

} // namespace sim
