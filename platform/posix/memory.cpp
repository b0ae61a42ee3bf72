#include <stdlib.h>

#include "platform/posix/seam.h"

using seam::Call;

namespace talvek_platform {

// The process heap is malloc's.
struct Heap {
    char unused;
};
static Heap g_heap;

ProcessHeap GetProcessHeap()
{
    if (seam::Faulted(Call::GetProcessHeap)) return nullptr;
    return &g_heap;
}

LPVOID HeapAlloc(ProcessHeap heap, DWORD flags, SIZE_T size)
{
    if (seam::Faulted(Call::HeapAlloc)) return nullptr;
    if (heap != &g_heap) {
        seam::SetError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    if (size == 0) size = 1; // so that null always means a failure
    void* block = flags & HEAP_ZERO_MEMORY ? calloc(1, size) : malloc(size);
    if (!block) seam::SetError(ERROR_NOT_ENOUGH_MEMORY);
    return block;
}

BOOL HeapFree(ProcessHeap heap, DWORD, LPVOID block)
{
    if (seam::Faulted(Call::HeapFree)) return FALSE;
    if (heap != &g_heap) return seam::Fail(ERROR_INVALID_HANDLE);
    free(block);
    return TRUE;
}

} // namespace talvek_platform
