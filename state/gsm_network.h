// What a GSM/UMTS module's network selection keeps between the calls of a client: the result of the last scan, how far
// the client has read it, and the selection mode.
//
// A scan runs on a thread of its own. It fills lists of its own and replaces these in one piece, under the API-wide
// lock; the client's reader takes the lock for one entry at a time. A reader therefore sees the old result or the new
// one, whole, and starts the new one at its first entry.
#pragma once

#include "platform/shared.h"
#include "talvek/gobi_types.h"

struct PlmnList {
    BYTE uListSize; // entries that are used
    GobiNetworkInfo sNwInfo[GOBI_MAX_SCANNED_NETWORKS];
};

struct RATInfoList {
    BYTE uListSize;
    GobiNetworkRAT sRATInfo[GOBI_MAX_SCANNED_NETWORKS];
};

static_assert(sizeof(GobiNetworkInfo) == 276 && sizeof(PlmnList) == 13804, "a count and 50 entries");
static_assert(sizeof(GobiNetworkRAT) == 8 && sizeof(RATInfoList) == 404, "a count and 50 entries");

extern PlmnList g_PlmnList;       // of the last scan
extern RATInfoList g_RATInfoList; // empty after a plain one
extern ULONG g_PlmnReadIndex;     // the entry that is read next
extern ULONG g_RATReadIndex;

// The mode that OrvSetPLMNMode last had accepted.
extern Shared<ULONG> g_PlmnMode;

// Takes the result of a scan over, to be read from its first entry.
void PublishScan(const PlmnList& networks, const RATInfoList& rats);
// No scan was possible: there is nothing to be read.
void PublishNoScan();
