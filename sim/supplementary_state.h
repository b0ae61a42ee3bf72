// What the network keeps of the subscriber's supplementary services.
#pragma once

#include "sim/values.h"
#include "talvek/gobi_types.h"

namespace sim {

constexpr ULONG kForwardings = 4; // always, busy, no reply, unreachable
constexpr ULONG kBarrings = 5;    // outgoing: all, international, international but home; incoming: all, when roaming
constexpr ULONG kClasses = 8;     // of service, a bit each

struct Forwarding {
    BYTE registered, active;
    BYTE no_reply_seconds;
    BYTE number_type, number_plan;
    Text<GOBI_MAX_DIGITS + 1> number;
};

struct SupplementaryState {
    BYTE clir, clir_provision; // as statusResp
    BYTE clip, colp, colr;     // 1: active
    BYTE classes;              // what class 0, all of them, stands for: a sum of GOBI_CLASS_...
    BYTE waiting;              // a sum of GOBI_CLASS_...
    BYTE barring[kBarrings];   // likewise
    Text<5> password;          // four digits
    BYTE attempts;             // wrong passwords in a row; at the third the password is refused
    WORD refusal;              // a cause with which the network refuses every request, or 0
    Forwarding forwarding[kForwardings][kClasses];
};

} // namespace sim
