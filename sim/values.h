// Lists in fixed room: what the states of the services keep beside numbers and texts.
#pragma once

#include "sim/text.h"

namespace sim {

// Values of `kRows` rows and `kColumns` columns, of which `count` rows are in use.
template <ULONG kRows, ULONG kColumns>
struct List {
    ULONG count;
    int32_t values[kRows][kColumns];
};

template <ULONG kRoom>
struct Octets {
    ULONG count;
    BYTE octets[kRoom];
};

} // namespace sim
