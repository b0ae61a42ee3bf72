// The vendor's network access service.

#include "vendor/forward.h"

ULONG COrvGobiDll::GetRFInfo(BYTE* count, BYTE* instances) { return Forward(m_entry.GetRFInfo, count, instances); }

ULONG COrvGobiDll::PerformNetworkScan(BYTE* count, BYTE* networks)
{
    return Forward(m_entry.PerformNetworkScan, count, networks);
}

ULONG COrvGobiDll::PerformNetworkRATScan(BYTE* count, BYTE* networks, BYTE* ratCount, BYTE* rats)
{
    return Forward(m_entry.PerformNetworkRATScan, count, networks, ratCount, rats);
}

ULONG COrvGobiDll::InitiateNetworkRegistration(ULONG type, WORD mcc, WORD mnc, ULONG rat)
{
    return Forward(m_entry.InitiateNetworkRegistration, type, mcc, mnc, rat);
}

ULONG COrvGobiDll::InitiateDomainAttach(ULONG action) { return Forward(m_entry.InitiateDomainAttach, action); }

ULONG COrvGobiDll::GetNetworkPreference(ULONG* technology, ULONG* duration, ULONG* persistentTechnology)
{
    return Forward(m_entry.GetNetworkPreference, technology, duration, persistentTechnology);
}

ULONG COrvGobiDll::SetNetworkPreference(ULONG technology, ULONG duration)
{
    return Forward(m_entry.SetNetworkPreference, technology, duration);
}

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

ULONG COrvGobiDll::GetHomeNetwork(WORD* mcc, WORD* mnc, BYTE nameSize, char* name, WORD* sid, WORD* nid)
{
    return Forward(m_entry.GetHomeNetwork, mcc, mnc, nameSize, name, sid, nid);
}

ULONG COrvGobiDll::GetCellLocationInfo(geranCellInfo* geran, umtsCellInfo* umts, cdmaCellInfo* cdma, ULONG* present)
{
    if (!m_entry.GetCellLocationInfo) LOG_C("mpFnGetCellLocationInfoMsg = NULL");
    return Forward(m_entry.GetCellLocationInfo, geran, umts, cdma, present);
}

ULONG COrvGobiDll::GetNetworkTime(ULONGLONG* timeStamp, ULONG* timeSource)
{
    return Forward(m_entry.GetNetworkTime, timeStamp, timeSource);
}
