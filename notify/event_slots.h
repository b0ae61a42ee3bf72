// Storage for events on their way to a delivery thread: a fixed pool, and the heap only when more events than that are
// on their way at once.
#pragma once

#include "platform/win32.h"

constexpr SIZE_T kEventSlotSize = 16;

// kEventSlotSize octets, or null when there is no memory.
void* TakeEventSlot();
void GiveEventSlot(void* slot);
