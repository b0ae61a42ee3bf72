// Every entry point that bench_gobi.cpp has no body for: it takes what comes, leaves the outputs alone and succeeds.
// The bodies are weak, so that those of bench_gobi.cpp take their place.
#include "talvek/types.h"

#define ENTRY_POINT(name)                                                                                              \
    extern "C" ORV_EXPORT __attribute__((weak)) ULONG name() { return 0; }
#define REGISTRATION(name, type) ENTRY_POINT(name)
#include "sim/entry_point_rows.h"
#undef REGISTRATION
#undef ENTRY_POINT
