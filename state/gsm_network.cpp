#include "state/gsm_network.h"

#include "state/sync_block.h"

PlmnList g_PlmnList;
RATInfoList g_RATInfoList;
ULONG g_PlmnReadIndex;
ULONG g_RATReadIndex;

Shared<ULONG> g_PlmnMode;

void PublishScan(const PlmnList& networks, const RATInfoList& rats)
{
    const OrvSyncGuard guard;
    g_PlmnList = networks;
    g_RATInfoList = rats;
    g_PlmnReadIndex = g_RATReadIndex = 0;
}

void PublishNoScan()
{
    const OrvSyncGuard guard;
    g_PlmnList.uListSize = g_RATInfoList.uListSize = 0;
}
