#include "platform/posix/handles.h"

#include "platform/posix/seam.h"

namespace seam {

Mutex g_objects;
HandleObject* g_open_handles = nullptr;

void AddOpenHandle(HandleObject* object)
{
    object->next_open = g_open_handles;
    g_open_handles = object;
}

HandleObject* Hold(HANDLE handle, const HandleKind& kind)
{
    {
        const Lock lock(g_objects);
        for (HandleObject* object = g_open_handles; object; object = object->next_open) {
            if (object != handle) continue;
            if (object->kind != &kind) break;
            ++object->references;
            return object;
        }
    }
    SetError(ERROR_INVALID_HANDLE);
    return nullptr;
}

void LetGo(HandleObject* object)
{
    {
        const Lock lock(g_objects);
        if (--object->references > 0) return;
    }
    object->kind->destroy(object);
}

// Takes `handle` out of the list; its reference passes to the caller.
static HandleObject* Withdraw(HANDLE handle)
{
    const Lock lock(g_objects);
    for (HandleObject** link = &g_open_handles; *link; link = &(*link)->next_open) {
        if (*link != handle) continue;
        HandleObject* object = *link;
        *link = object->next_open;
        return object;
    }
    return nullptr;
}

bool CloseOpenHandle(HANDLE handle)
{
    HandleObject* object = Withdraw(handle);
    if (!object) return false;
    if (object->kind->on_close) object->kind->on_close(object);
    LetGo(object);
    return true;
}

} // namespace seam

namespace talvek_platform {

BOOL CloseHandle(HANDLE handle)
{
    if (seam::Faulted(seam::Call::CloseHandle)) return FALSE;
    return seam::CloseOpenHandle(handle) ? TRUE : seam::Fail(ERROR_INVALID_HANDLE);
}

} // namespace talvek_platform
