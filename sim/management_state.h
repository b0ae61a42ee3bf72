// The state behind sim/omadm.cpp and sim/omaex.cpp: a session of device management, and what each of them adds.
#pragma once

#include "sim/values.h"

namespace sim {

struct ManagementSession {
    ULONG state; // 0 done, 1 done and nothing new, 2 failed, 3 waits to try again, 4 gives up, 5 and above: a step on
                 // the way
    ULONG type;
    ULONG failure_reason;
    BYTE retry_count, max_retries;
    BYTE has_update; // 0: the server has nothing new
    WORD pause_seconds;
    ULONG limit_seconds; // the session is given up then
    ULONG step_ms;
    ULONG fail_at, fail_reason, fail_times; // it fails where it would reach that state, so many times
    ULONGLONG started_ms, pause_ends_ms;    // on the sim clock
};

constexpr ULONG kNoSessionType = 0xFF;

struct ManagementState {
    ManagementSession session;
    ULONG provisioning, prl_update; // whether sessions of these kinds may be
    WORD pending_prl, pending_configuration;
    ULONG next_type; // of the session that follows the one under way, or kNoSessionType
};

struct ExtendedManagementState {
    ManagementSession session;
    BYTE begun, reports;
    BYTE settings[6]; // provisioning, PRL, firmware; from the client, from the network; accepted without a question
    ULONG alert;      // the type of the session that the network asks for; 0: none
    ULONG package_size;
};

} // namespace sim
