// Direct delivery: to the client that the registry holds, on the vendor library's thread, with no lock, whether or not
// the record's notification was enabled.
#pragma once

#include "notify/OrvNotify.h"

inline void DeliverDirectly(OrvNotifyRecord& record)
{
    if (const OrvNotifyCallback callback = g_pOrvNotify.Load()->ClientCallback()) callback(&record);
}
