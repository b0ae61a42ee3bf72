// The network-initiated sessions of device management that wait for an answer, as the client has heard of them. The
// notification registry has its own record of what the alerts said.
#pragma once

#include "platform/win32.h"

extern WORD g_OMADMDCsessionID;  // device configuration; 0: none
extern WORD g_OMADMPRLsessionID; // PRL update
