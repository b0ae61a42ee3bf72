// The files of the card: what is kept of them, and what is selected.
#pragma once

#include "sim/values.h"

namespace sim {

constexpr ULONG kFileRoom = 512; // octets

// What a command refers to that does not name its file.
struct SimSelection {
    WORD directory;
    WORD file;           // 0: none
    ULONG record;        // from 1; 0: none yet
    Octets<64> response; // that GET RESPONSE fetches
};

struct SimFilesState {
    Octets<kFileRoom> spn, ad, acm, adn, lnd; // record files: one record behind the other
    SimSelection selection;                   // on the basic channel
};

} // namespace sim
