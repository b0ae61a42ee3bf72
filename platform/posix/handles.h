// The objects behind a HANDLE. A handle is found by walking the list of open ones, so a stale or invented value is
// refused instead of being followed.
#pragma once

#include "platform/posix/sync.h"
#include "platform/win32.h"

namespace talvek_platform {

struct HandleKind {
    void (*on_close)(HandleObject* object); // ends what is pending; null when nothing can be
    void (*destroy)(HandleObject* object);  // the last reference is gone
};

struct HandleObject {
    const HandleKind* kind;
    unsigned references; // the open handle's own, and one for each user
    HandleObject* next_open;
};

} // namespace talvek_platform

namespace seam {

// Guards the list of open handles, the reference counts and the state of threads.
extern Mutex g_objects;
extern HandleObject* g_open_handles; // newest first

// Enters `object` into the list. The caller holds g_objects.
void AddOpenHandle(HandleObject* object);

// The open object of that kind with a reference added, or null with ERROR_INVALID_HANDLE.
HandleObject* Hold(HANDLE handle, const HandleKind& kind);
void LetGo(HandleObject* object);
// Returns false when `handle` is not open.
bool CloseOpenHandle(HANDLE handle);

// An object in use by a call.
template <class Object>
class Held {
public:
    explicit Held(HANDLE handle) : m_object(static_cast<Object*>(Hold(handle, Object::kKind))) {}
    ~Held()
    {
        if (m_object) LetGo(m_object);
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    explicit operator bool() const { return m_object != nullptr; }
    Object* operator->() const { return m_object; }
    Object& operator*() const { return *m_object; }

private:
    Object* m_object;
};

} // namespace seam
