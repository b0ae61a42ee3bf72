// Which band and channel each radio interface uses. The count that the module returns is bounded to what was asked for.
#pragma once

#include "talvek/gobi_dll.h"

struct RFInfo {
    BYTE count = 0;
    GobiRFInfo instances[GOBI_MAX_RF_INSTANCES] = {};

    // Asks for 20 instances. Returns the vendor's status.
    ULONG Query(COrvGobiDll& gobi);
    // The first instance of a radio interface, or null.
    const GobiRFInfo* Find(ULONG radio_interface) const;
};
