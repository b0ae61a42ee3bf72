// Which carrier a CDMA module belongs to.
#pragma once

#include "platform/win32.h"
#include "talvek/cdma.h"
#include "talvek/gobi_dll.h"

struct CdmaCarrier {
    const WCHAR* name = TXT(""); // for display
    int32_t id = ORV_CARRIER_NONE;
    bool is_kt52 = false; // the package told, not the firmware image

    // On failure there is no carrier. A carrier that is not known is none, and no failure.
    ORV_RCODE Query(COrvGobiDll& gobi);
};
