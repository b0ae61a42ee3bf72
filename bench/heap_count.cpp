#include "bench/heap_count.h"

#include <errno.h>
#include <stddef.h>

// glibc's own names for what is taken over here.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
}

namespace {

unsigned long s_allocations;

void Count() { __atomic_fetch_add(&s_allocations, 1, __ATOMIC_RELAXED); }

} // namespace

unsigned long HeapAllocations() { return __atomic_load_n(&s_allocations, __ATOMIC_RELAXED); }

extern "C" {

void* malloc(size_t size)
{
    Count();
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size)
{
    Count();
    return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size)
{
    Count();
    return __libc_realloc(block, size);
}

void* memalign(size_t alignment, size_t size)
{
    Count();
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) { return memalign(alignment, size); }

int posix_memalign(void** block, size_t alignment, size_t size)
{
    void* const allocated = memalign(alignment, size);
    if (!allocated) return ENOMEM;
    *block = allocated;
    return 0;
}

} // extern "C"
