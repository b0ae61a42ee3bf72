// The state behind sim/data_status.cpp.
#pragma once

#include "sim/values.h"

namespace sim {

// The call of the dial-up port; `last_…` belong to the call before.
struct DunState {
    ULONG state, end_reason;
    BYTE dormant, bearer, last_bearer;
    BYTE reports; // a bit each: state, dormancy, bearer, errors, totals, rate
    WORD report_seconds;
    ULONGLONG duration_ms, sent, received, last_duration_ms, last_sent, last_received;
};

struct DataState {
    ULONG dormancy; // 1 dormant, 2 active
    ULONG bearer;
    ULONG tx_rate, rx_rate, max_tx_rate, max_rx_rate; // bit/s
    ULONG packets[6];                                 // sent, received; errors and overflows, each sent and received
    ULONGLONG started_ms;                             // of the session, on the sim clock
    DunState dun;
};

} // namespace sim
