// Filling of notification records.
#pragma once

#include <string.h>

#include "talvek/notify.h"

// Clears the record and heads it. The payload's fields follow.
inline void BeginRecord(OrvNotifyRecord& record, ORV_NOTIFY id, ULONG payload_size)
{
    memset(&record, 0, sizeof record);
    record.uNotify = id;
    record.uPayloadSize = payload_size;
}
