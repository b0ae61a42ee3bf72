// The state behind sim/at_operators.cpp.
#pragma once

#include "sim/values.h"

namespace sim {

constexpr ULONG kMaxPreferredOperators = 50;

struct OperatorsState {
    // Place, MCC, MNC, digits of the MNC; a sum: 1 GSM, 2 GSM compact, 4 UTRAN, 8 E-UTRAN.
    List<kMaxPreferredOperators, 5> preferred;
    ULONG capacity; // places that the card has
    BYTE format;    // of the listing: 0 long names, 1 short ones, 2 digits
};

} // namespace sim
