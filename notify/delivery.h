// How an adapter reaches the registry: at once under the API-wide lock, or on a short-lived thread.
#pragma once

#include "notify/OrvNotify.h"
#include "notify/event_slots.h"
#include "state/sync_block.h"

// Takes the API-wide lock and runs `event.Dispatch(registry)`, unless no client is registered: the event is then
// dropped without a trace.
template <class Event>
void DeliverUnderLock(Event event)
{
    const OrvSyncGuard guard;
    COrvNotify& registry = *g_pOrvNotify;
    if (registry.ClientCallback()) event.Dispatch(registry);
}

// Runs `body(argument)` on a thread of its own and returns at once. False when no thread is to be had.
inline bool StartDelivery(LPTHREAD_START_ROUTINE body, LPVOID argument)
{
    const HANDLE thread = CreateThread(nullptr, 0, body, argument, 0, nullptr);
    if (!thread) return false;
    CloseHandle(thread);
    return true;
}

template <class Event>
DWORD WINAPI DeliverWord(LPVOID argument)
{
    DeliverUnderLock(Event{static_cast<ULONG>(reinterpret_cast<uintptr_t>(argument))});
    return 0;
}

// The same for an event of one word, which travels in the argument itself. The event is dropped when no thread is to be
// had.
template <class Event>
void DeliverOnThread(ULONG word)
{
    StartDelivery(DeliverWord<Event>, reinterpret_cast<LPVOID>(static_cast<uintptr_t>(word)));
}

template <class Event>
DWORD WINAPI DeliverSlot(LPVOID slot)
{
    const Event taken = *static_cast<Event*>(slot);
    GiveEventSlot(slot);
    DeliverUnderLock(taken);
    return 0;
}

// The same for an event that is more than a thread's argument holds on a 32-bit machine.
template <class Event>
void DeliverCopyOnThread(const Event& event)
{
    static_assert(sizeof event <= kEventSlotSize, "the event travels in a slot");
    void* const copy = TakeEventSlot();
    if (!copy) return;
    *static_cast<Event*>(copy) = event;
    if (!StartDelivery(DeliverSlot<Event>, copy)) GiveEventSlot(copy);
}
