// Counts the heap allocations of this process: whoever links heap_count.cpp has malloc and its kin counted, those of
// operator new and of every library included.
#pragma once

// Allocations of all threads since the process began.
unsigned long HeapAllocations();
