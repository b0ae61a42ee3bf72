#include <initializer_list>
#include <new>
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include "platform/hooks.h"
#include "platform/posix/handles.h"
#include "platform/posix/seam.h"

using seam::Call;
using seam::Deadline;
using seam::g_objects;
using seam::Lock;

namespace {

void DestroyThread(HandleObject* object);

struct ThreadObject : HandleObject {
    static constexpr HandleKind kKind = {nullptr, DestroyThread};
    LPTHREAD_START_ROUTINE start;
    LPVOID argument;
    bool taken; // of a slot of the pool
    bool ended;
};

// Everything below is guarded by g_objects.
constexpr unsigned kPoolSize = 64;
ThreadObject g_pool[kPoolSize];
unsigned g_next_slot = 0; // slots are reused as late as possible, so that a stale handle is seldom a valid one
unsigned g_running = 0;
seam::Condition g_thread_ended;

ThreadObject* TakeObject()
{
    for (unsigned i = 0; i < kPoolSize; ++i) {
        ThreadObject& slot = g_pool[(g_next_slot + i) % kPoolSize];
        if (slot.taken) continue;
        g_next_slot = (g_next_slot + i + 1) % kPoolSize;
        slot.taken = true;
        return &slot;
    }
    void* block = malloc(sizeof(ThreadObject));
    return block ? new (block) ThreadObject() : nullptr;
}

void GiveBack(ThreadObject* object)
{
    if (object >= g_pool && object < g_pool + kPoolSize) {
        object->taken = false;
    } else {
        free(object);
    }
}

void DestroyThread(HandleObject* object)
{
    const Lock lock(g_objects);
    GiveBack(static_cast<ThreadObject*>(object));
}

void* RunThread(void* context)
{
    auto* object = static_cast<ThreadObject*>(context);
    object->start(object->argument);

    // In one step, so that whoever sees the thread ended also sees its slot free.
    const Lock lock(g_objects);
    object->ended = true;
    if (--object->references == 0) GiveBack(object);
    --g_running;
    g_thread_ended.WakeAll();
    return nullptr;
}

// A client's signal handlers are not run on the library's threads; signals that report a fault of the thread itself
// are.
class SignalsHeldBack {
public:
    SignalsHeldBack()
    {
        sigset_t signals;
        sigfillset(&signals);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS})
            sigdelset(&signals, fault);
        pthread_sigmask(SIG_BLOCK, &signals, &m_before);
    }
    ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

private:
    sigset_t m_before;
};

bool StartDetached(ThreadObject* object)
{
    const SignalsHeldBack signals;
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) return false;
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread;
    const int error = pthread_create(&thread, &attributes, RunThread, object);
    pthread_attr_destroy(&attributes);
    return error == 0;
}

} // namespace

namespace talvek_platform {

HANDLE CreateThread(void* security, SIZE_T stack_size, LPTHREAD_START_ROUTINE start, LPVOID argument, DWORD flags,
                    DWORD* thread_id)
{
    if (seam::Armed()) {
        if (seam::FaultedWhileArmed(Call::CreateThread)) return nullptr;
        const seam::StandIn stand_in(Call::CreateThread);
        if (stand_in) {
            return stand_in.As<decltype(CreateThread)>()(security, stack_size, start, argument, flags, thread_id);
        }
    }
    if (security || stack_size || !start || flags || thread_id) {
        seam::SetError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }

    ThreadObject* object;
    {
        const Lock lock(g_objects);
        object = TakeObject();
        if (object) {
            object->kind = &ThreadObject::kKind;
            object->references = 2; // the caller's and the thread's
            object->start = start;
            object->argument = argument;
            object->ended = false;
            ++g_running;
        }
    }
    const bool started = object && StartDetached(object);

    const Lock lock(g_objects);
    if (started) {
        seam::AddOpenHandle(object);
        return object;
    }
    if (object) {
        GiveBack(object);
        --g_running;
        g_thread_ended.WakeAll();
    }
    seam::SetError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD timeout_ms)
{
    if (seam::Faulted(Call::WaitForSingleObject)) return WAIT_FAILED;
    const seam::Held<ThreadObject> thread(handle);
    if (!thread) return WAIT_FAILED;

    const Deadline deadline = timeout_ms == INFINITE ? Deadline::Never() : Deadline::In(timeout_ms);
    const Lock lock(g_objects);
    while (!thread->ended) {
        if (!g_thread_ended.WaitUntil(g_objects, deadline)) return thread->ended ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
    }
    return WAIT_OBJECT_0;
}

DWORD GetCurrentThreadId()
{
    seam::Count(Call::GetCurrentThreadId);
    return static_cast<DWORD>(gettid());
}

} // namespace talvek_platform

namespace platform_hooks {

unsigned RunningThreads()
{
    const Lock lock(g_objects);
    return g_running;
}

bool DrainThreads(unsigned timeout_ms)
{
    const Deadline deadline = Deadline::In(timeout_ms);
    const Lock lock(g_objects);
    while (g_running > 0) {
        if (!g_thread_ended.WaitUntil(g_objects, deadline)) return g_running == 0;
    }
    return true;
}

} // namespace platform_hooks
