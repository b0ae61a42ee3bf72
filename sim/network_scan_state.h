// The state behind sim/network_scan.cpp.
#pragma once

#include "sim/values.h"

namespace sim {

struct NetworkScanState {
    List<50, 4> networks; // MCC, MNC, radio interface; a sum: 1 roaming, 2 forbidden, 4 preferred
    Text<1024> names;     // of the networks, in order, with '|' between them
    ULONG mode;           // of the selection: 1 automatic, 2 manual
    ULONG register_ms;    // from the request to its outcome
    ULONG duration_ms;    // of a scan
    WORD wanted_mcc, wanted_mnc;
    ULONG wanted_rat; // 0: any
    WORD home_mcc, home_mnc, home_sid, home_nid;
    Text<256> home_name;
};

} // namespace sim
