// A word a thread (Tls…), over the host's thread-specific keys. The seam hands out indexes of its own, so that one that
// was never allocated is refused: to the host it would be undefined.
#include <pthread.h>

#include "platform/posix/seam.h"
#include "platform/posix/sync.h"

using seam::Call;
using seam::Fail;
using seam::Lock;

namespace {

constexpr DWORD kIndexes = 64;

seam::Mutex g_mutex; // for allocating and freeing
pthread_key_t g_keys[kIndexes];
bool g_allocated[kIndexes]; // written after the key, with release order; read without the mutex

bool IsAllocated(DWORD index) { return index < kIndexes && __atomic_load_n(&g_allocated[index], __ATOMIC_ACQUIRE); }

} // namespace

namespace talvek_platform {

DWORD TlsAlloc()
{
    if (seam::Faulted(Call::TlsAlloc)) return TLS_OUT_OF_INDEXES;
    const Lock lock(g_mutex);
    for (DWORD index = 0; index < kIndexes; ++index) {
        if (IsAllocated(index)) continue;
        if (pthread_key_create(&g_keys[index], nullptr) != 0) break;
        __atomic_store_n(&g_allocated[index], true, __ATOMIC_RELEASE);
        return index;
    }
    seam::SetError(ERROR_NOT_ENOUGH_MEMORY);
    return TLS_OUT_OF_INDEXES;
}

BOOL TlsFree(DWORD index)
{
    if (seam::Faulted(Call::TlsFree)) return FALSE;
    const Lock lock(g_mutex);
    if (!IsAllocated(index)) return Fail(ERROR_INVALID_PARAMETER);
    __atomic_store_n(&g_allocated[index], false, __ATOMIC_RELEASE);
    pthread_key_delete(g_keys[index]);
    return TRUE;
}

LPVOID TlsGetValue(DWORD index)
{
    if (seam::Faulted(Call::TlsGetValue)) return nullptr;
    if (!IsAllocated(index)) {
        seam::SetError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    seam::SetError(ERROR_SUCCESS); // tells a stored null from a failure
    return pthread_getspecific(g_keys[index]);
}

BOOL TlsSetValue(DWORD index, LPVOID value)
{
    if (seam::Faulted(Call::TlsSetValue)) return FALSE;
    if (!IsAllocated(index)) return Fail(ERROR_INVALID_PARAMETER);
    if (pthread_setspecific(g_keys[index], value) != 0) return Fail(ERROR_NOT_ENOUGH_MEMORY);
    return TRUE;
}

} // namespace talvek_platform
