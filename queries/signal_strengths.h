// The strength of each radio interface that is received. The count that the module returns is bounded to what was asked
// for.
#pragma once

#include "talvek/gobi_dll.h"

struct SignalStrengths {
    ULONG count = 0;
    ORV_INT8 strengths[GOBI_MAX_SIGNAL_STRENGTHS] = {}; // dBm
    ULONG radio_interfaces[GOBI_MAX_SIGNAL_STRENGTHS] = {};

    // Returns the vendor's status.
    ULONG Query(COrvGobiDll& gobi);
    // The dBm value without its sign, 0 to 128.
    ULONG Magnitude(ULONG i) const { return static_cast<ULONG>(strengths[i] < 0 ? -strengths[i] : strengths[i]); }
};
