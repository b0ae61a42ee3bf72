// The process-wide objects: made when the module is loaded, in this order, and destroyed in the reverse one at unload.
//   g_GobiDll, g_ATPortInstance (at/OrvAtPort.h), g_OrvNotify (notify/OrvNotify.h), g_OrvSyncBlock (state/sync_block.h)
#pragma once

#include "talvek/gobi_dll.h"

// The binding through which every exported function reaches the module.
extern COrvGobiDll g_GobiDll;
