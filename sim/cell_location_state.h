// The cells that the module hears, and the messages that wait for the subscriber.
#pragma once

#include "sim/values.h"
#include "talvek/gobi_types.h"

namespace sim {

// Levels below 0 dBm and 0 dB without their sign.
struct CellState {
    ULONG id; // of the serving cell
    WORD lac;
    ULONG timing_advance;
    List<1 + GOBI_MAX_NEIGHBOUR_CELLS, 5> gsm;  // channel, identity code, level, cell id, location area
    List<1 + GOBI_MAX_NEIGHBOUR_CELLS, 4> umts; // channel, scrambling code, RSCP, Ec/Io; the serving one first
    List<GOBI_MAX_NEIGHBOUR_CELLS, 3> umts_gsm; // GSM neighbours of a UMTS cell: channel, identity code, level
    List<1, 1> latitude, longitude;             // quarters of a second
    WORD sid, nid, base, pn;
};

struct WaitingState {
    List<GOBI_MAX_WAITING_TYPES, 3> messages; // type, active, waiting
};

} // namespace sim
