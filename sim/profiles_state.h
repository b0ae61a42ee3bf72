// The state behind sim/profiles.cpp.
#pragma once

#include "sim/values.h"

namespace sim {

struct DataProfile {
    ULONG pdp_type;       // 0 IPv4, 1 PPP, 2 IPv6, 3 IPv4 and IPv6
    ULONG addresses[3];   // own, primary and secondary DNS; the first octet the most significant
    ULONG authentication; // a sum: 1 PAP, 2 CHAP
    Text<32> name;
    Text<102> apn;
    Text<129> user, password;
};

struct ProfilesState {
    ULONG auto_connect;
    DataProfile profiles[2]; // 3GPP, 3GPP2
};

} // namespace sim
