#include "api/objects.h"

#include "at/OrvAtPort.h"
#include "notify/OrvNotify.h"
#include "platform/win32.h"
#include "state/sync_block.h"

COrvGobiDll g_GobiDll;
COrvAtPort g_ATPortInstance;
COrvNotify g_OrvNotify;
ORVSYNCBLOCK g_OrvSyncBlock;
