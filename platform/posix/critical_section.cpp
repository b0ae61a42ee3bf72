#include <new>
#include <pthread.h>

#include "platform/posix/seam.h"

using seam::Call;

namespace {

static_assert(sizeof(pthread_mutex_t) <= sizeof(CRITICAL_SECTION::opaque), "the host's mutex lies in the section");
static_assert(alignof(pthread_mutex_t) <= alignof(CRITICAL_SECTION), "the host's mutex lies in the section");

pthread_mutex_t* MutexOf(CRITICAL_SECTION* section)
{
    return std::launder(reinterpret_cast<pthread_mutex_t*>(section->opaque));
}

} // namespace

namespace talvek_platform {

void InitializeCriticalSection(CRITICAL_SECTION* section)
{
    seam::Count(Call::InitializeCriticalSection);
    auto* mutex = new (section->opaque) pthread_mutex_t;
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

void DeleteCriticalSection(CRITICAL_SECTION* section)
{
    seam::Count(Call::DeleteCriticalSection);
    pthread_mutex_destroy(MutexOf(section));
}

void EnterCriticalSection(CRITICAL_SECTION* section)
{
    seam::Count(Call::EnterCriticalSection);
    pthread_mutex_lock(MutexOf(section));
}

BOOL TryEnterCriticalSection(CRITICAL_SECTION* section)
{
    if (seam::Faulted(Call::TryEnterCriticalSection)) return FALSE;
    return pthread_mutex_trylock(MutexOf(section)) == 0 ? TRUE : FALSE;
}

void LeaveCriticalSection(CRITICAL_SECTION* section)
{
    seam::Count(Call::LeaveCriticalSection);
    pthread_mutex_unlock(MutexOf(section));
}

} // namespace talvek_platform
