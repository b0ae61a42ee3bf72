// The system status of a GSM/UMTS module, as notification 2032 carries it.
#pragma once

#include "talvek/gobi_dll.h"
#include "talvek/notify.h"

// False when the module cannot be asked; `status` is then not to be used. Not served yet: always false.
bool QueryGsmSystemStatus(COrvGobiDll& gobi, OrvGsmSystemStatus* status);
