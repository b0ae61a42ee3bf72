#include <errno.h>
#include <sched.h>

#include "platform/posix/seam.h"
#include "platform/posix/sync.h"

using seam::Call;

namespace talvek_platform {

void Sleep(DWORD milliseconds)
{
    if (seam::Armed()) {
        seam::FaultedWhileArmed(Call::Sleep);
        const seam::StandIn stand_in(Call::Sleep);
        if (stand_in) return stand_in.As<decltype(Sleep)>()(milliseconds);
    }
    if (milliseconds == 0) {
        sched_yield();
        return;
    }
    do {
        const timespec until = seam::ToTimespec(seam::Deadline::In(milliseconds).At());
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
        }
    } while (milliseconds == INFINITE);
}

DWORD GetTickCount()
{
    if (seam::Armed()) {
        seam::FaultedWhileArmed(Call::GetTickCount);
        const seam::StandIn stand_in(Call::GetTickCount);
        if (stand_in) return stand_in.As<decltype(GetTickCount)>()();
    }
    return static_cast<DWORD>(seam::Now() / seam::kNanosecondsInMs);
}

void GetLocalTime(SYSTEMTIME* time)
{
    seam::Count(Call::GetLocalTime);
    if (!time) return;
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    struct tm local = {};
    localtime_r(&now.tv_sec, &local);
    time->wYear = static_cast<WORD>(local.tm_year + 1900);
    time->wMonth = static_cast<WORD>(local.tm_mon + 1);
    time->wDayOfWeek = static_cast<WORD>(local.tm_wday);
    time->wDay = static_cast<WORD>(local.tm_mday);
    time->wHour = static_cast<WORD>(local.tm_hour);
    time->wMinute = static_cast<WORD>(local.tm_min);
    time->wSecond = static_cast<WORD>(local.tm_sec);
    time->wMilliseconds = static_cast<WORD>(static_cast<uint64_t>(now.tv_nsec) / seam::kNanosecondsInMs);
}

} // namespace talvek_platform
