// The system status of a GSM/UMTS module: OrvGetGsmSystemStatus, and what notification 2032 carries.
#pragma once

#include "talvek/gobi_dll.h"
#include "talvek/notify.h"

// Returns the vendor's status. The record's size is written at once, everything else on success.
ULONG QueryGsmSystemStatus(COrvGobiDll& gobi, OrvGsmSystemStatus* status);
