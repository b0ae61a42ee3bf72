#include "sim/management_session.h"

#include <iterator>

#include "sim/clock.h"

namespace sim {

constexpr ULONG kAuthenticated = 6;   // what comes after it is there only if the server has something new
constexpr ULONG kMaxWorthAnother = 2; // network or server out of reach: another attempt may succeed

struct Path {
    BYTE steps[8]; // ends with kDone
};
// By the type of the session.
constexpr Path kPaths[] = {{{5, 6, 7, 8, kDone}},        {{5, 6, 9, kDone}}, {{5, 6, 7, 8, 9, 10, kDone}},
                           {{5, 6, 7, 8, 9, 10, kDone}}, {{5, 6, 9, kDone}}, {{5, 6, 7, 8, kDone}},
                           {{5, 6, 11, 12, kDone}}};

void FreshSession(ManagementSession& session)
{
    session = {};
    session.max_retries = 3;
    session.has_update = 1;
    session.pause_seconds = 10;
    session.limit_seconds = 300;
    session.step_ms = 100;
}

bool IsRunning(const ManagementSession& session) { return session.state >= kWaiting; }

void BeginSession(ManagementSession& session, ULONG type)
{
    session.state = kConnecting;
    session.type = type;
    session.failure_reason = 0;
    session.retry_count = 0;
    session.started_ms = Now();
}

void FailSession(ManagementSession& session, ULONG reason)
{
    session.state = kFailed;
    session.failure_reason = reason;
}

static ULONG NextState(const ManagementSession& session)
{
    if (session.state == kWaiting) return kConnecting;
    if (session.state == kAuthenticated && !session.has_update) return kNothingNew;
    const BYTE* step = kPaths[session.type < std::size(kPaths) ? session.type : 0].steps;
    while (*step != kDone && *step != session.state)
        ++step;
    return *step == kDone ? *step : step[1];
}

ULONG ProceedSession(ManagementSession& session)
{
    if (session.state == kGivesUp || LimitLeft(session) == 0) {
        FailSession(session, kRetriesUsedUp);
        return kNoStep;
    }
    const ULONG next = NextState(session);
    if (session.fail_times == 0 || next != session.fail_at) {
        session.state = next;
        if (!IsRunning(session)) session.failure_reason = 0;
        return IsRunning(session) ? session.step_ms : kNoStep;
    }
    --session.fail_times;
    if (session.fail_reason > kMaxWorthAnother) {
        FailSession(session, session.fail_reason);
        return kNoStep;
    }
    session.failure_reason = session.fail_reason;
    if (session.retry_count == session.max_retries) {
        session.state = kGivesUp;
        return session.step_ms;
    }
    session.state = kWaiting;
    ++session.retry_count;
    const ULONG pause_ms = session.pause_seconds * 1000;
    session.pause_ends_ms = Now() + pause_ms;
    return pause_ms;
}

static ULONG SecondsUntil(ULONGLONG time_ms)
{
    const ULONGLONG now_ms = Now();
    return time_ms > now_ms ? static_cast<ULONG>((time_ms - now_ms + 999) / 1000) : 0;
}

ULONG PauseLeft(const ManagementSession& session)
{
    return session.state == kWaiting ? SecondsUntil(session.pause_ends_ms) : 0;
}

ULONG LimitLeft(const ManagementSession& session)
{
    return IsRunning(session) ? SecondsUntil(session.started_ms + session.limit_seconds * ULONGLONG{1000}) : 0;
}

} // namespace sim
