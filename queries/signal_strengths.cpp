#include "queries/signal_strengths.h"

ULONG SignalStrengths::Query(COrvGobiDll& gobi)
{
    constexpr ULONG kCapacity = GOBI_MAX_SIGNAL_STRENGTHS;
    count = kCapacity;
    const ULONG status = gobi.GetSignalStrengths(&count, strengths, radio_interfaces);
    if (status != 0) count = 0;
    if (count > kCapacity) count = kCapacity;
    return status;
}
