// A session of device management as it goes from step to step. Lock held by every caller.
#pragma once

#include "sim/management_state.h"

namespace sim {

enum ManagementStep : ULONG {
    kDone = 0,
    kNothingNew = 1,
    kFailed = 2,
    kWaiting = 3,
    kGivesUp = 4, // no attempt is left
    kConnecting = 5,
    kPrlLoaded = 9,
    kPackageFound = 11 // a firmware update waits for a selection here
};
enum ManagementReason : ULONG { kRetriesUsedUp = 4, kCancelled = 5 };
enum ManagementType : ULONG { kNetworkPrl = 4, kNetworkConfiguration = 5, kFirmwareUpdate = 6 };
constexpr ULONG kNoStep = 0xFFFFFFFF;

void FreshSession(ManagementSession& session);
bool IsRunning(const ManagementSession& session);
void BeginSession(ManagementSession& session, ULONG type);
// Goes one step on. Returns the milliseconds to the next one, or kNoStep after the last.
ULONG ProceedSession(ManagementSession& session);
void FailSession(ManagementSession& session, ULONG reason);
// Whole seconds until the next attempt, begun ones included; 0 when none is waited for.
ULONG PauseLeft(const ManagementSession& session);
ULONG LimitLeft(const ManagementSession& session);

} // namespace sim
