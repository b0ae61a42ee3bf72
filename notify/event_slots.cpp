#include "notify/event_slots.h"

namespace {

struct Slot {
    alignas(8) BYTE octets[kEventSlotSize];
    volatile LONG taken;
};
Slot s_slots[8];

} // namespace

void* TakeEventSlot()
{
    for (Slot& slot : s_slots)
        if (InterlockedExchange(&slot.taken, 1) == 0) return slot.octets;
    return HeapAlloc(GetProcessHeap(), 0, kEventSlotSize);
}

void GiveEventSlot(void* given)
{
    for (Slot& slot : s_slots) {
        if (slot.octets != given) continue;
        InterlockedExchange(&slot.taken, 0);
        return;
    }
    HeapFree(GetProcessHeap(), 0, given);
}
