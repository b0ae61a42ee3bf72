// The card: its PINs, which the entry points of two services share, and its personalisation.
#pragma once

#include "sim/values.h"

namespace sim {

struct PinState {
    Text<9> value, puk;
    BYTE enabled, verified;
    ULONG attempts, puk_attempts; // left; 0xFFFFFFFF: not known
};

struct UimState {
    BYTE present;
    Text<24> iccid;
    BYTE application; // as QMI_UIM_GET_CARD_STATUS_RESP has it: 2 USIM, 4 CSIM
    Octets<16> aid;
    PinState pins[2];
    List<5, 3> locks; // a row a facility: active, attempts left, attempts to unblock left
    Text<17> lock_key, unblock_key;
};

// Whether the card can be read: it is there, and PIN1 is verified or disabled. Lock held.
bool CardIsReady();

} // namespace sim
