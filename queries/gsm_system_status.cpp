#include "queries/gsm_system_status.h"

bool QueryGsmSystemStatus(COrvGobiDll&, OrvGsmSystemStatus*) { return false; }
