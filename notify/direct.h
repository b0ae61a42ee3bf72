// Direct delivery: to the client that the registry holds, on the vendor library's thread, with no lock, whether or not
// the record's notification was enabled.
#pragma once

#include "notify/OrvNotify.h"
#include "notify/record.h"

inline void DeliverDirectly(OrvNotifyRecord& record)
{
    if (const OrvNotifyCallback callback = g_pOrvNotify.Load()->ClientCallback()) callback(&record);
}

// What the library raises itself: the same, while the notification is enabled. Only the question takes the lock.
inline bool IsEnabled(ORV_NOTIFY id) { return g_pOrvNotify.Load()->IsActive(id); }

inline void DeliverValueDirectly(ORV_NOTIFY id, ULONG value)
{
    OrvNotifyRecord record;
    BeginRecord(record, id, sizeof record.payload.Value);
    record.payload.Value.uValue = value;
    DeliverDirectly(record);
}
