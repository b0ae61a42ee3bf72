// The names of the networks in reach. A short name is the beginning of the long one. Lock held.
#pragma once

#include "sim/text.h"

namespace sim {

constexpr ULONG kShortNameLength = 8;

using NetworkName = Text<256>;

// False when no such network is in reach, or when it has no name.
bool NameOfNetwork(WORD mcc, WORD mnc, NetworkName& name);
// False when no network in reach has that name.
bool NetworkOfName(const char* name, bool is_short, WORD* mcc, WORD* mnc);

} // namespace sim
