// The vendor's network access service.

#include "vendor/forward.h"

ULONG COrvGobiDll::GetSignalStrengths(ULONG* count, ORV_INT8* strengths, ULONG* radioInterfaces)
{
    if (!m_entry.GetSignalStrengths) return kEntryPointMissing;
    const ULONG status = m_entry.GetSignalStrengths(count, strengths, radioInterfaces);
    if (status != 0) LOG_C("GetSignalStrengths returns status = %d", status);
    return status;
}

ULONG COrvGobiDll::GetServingNetworkCaps(BYTE* count, BYTE* capabilities)
{
    return Forward(m_entry.GetServingNetworkCapabilities, count, capabilities);
}

ULONG COrvGobiDll::GetServingNetwork(ULONG* registrationState, ULONG* csDomain, ULONG* psDomain, ULONG* ran,
                                     BYTE* radioInterfaceCount, BYTE* radioInterfaces, ULONG* roaming, WORD* mcc,
                                     WORD* mnc, BYTE nameSize, char* name)
{
    return Forward(m_entry.GetServingNetwork, registrationState, csDomain, psDomain, ran, radioInterfaceCount,
                   radioInterfaces, roaming, mcc, mnc, nameSize, name);
}

ULONG COrvGobiDll::SetNetworkPreference(ULONG technology, ULONG duration)
{
    return Forward(m_entry.SetNetworkPreference, technology, duration);
}
