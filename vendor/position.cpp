// The vendor's position service.

#include "vendor/forward.h"

ULONG COrvGobiDll::GetPDSState(ULONG* enabled, ULONG* tracking)
{
    return Forward(m_entry.GetPDSState, enabled, tracking);
}

ULONG COrvGobiDll::SetPDSState(ULONG enabled) { return Forward(m_entry.SetPDSState, enabled); }

ULONG COrvGobiDll::PDSInjectTimeReference(ULONGLONG time, WORD uncertainty)
{
    return Forward(m_entry.PDSInjectTimeReference, time, uncertainty);
}

ULONG COrvGobiDll::GetPDSDefaults(ULONG* operation, BYTE* timeout, ULONG* interval, ULONG* accuracy)
{
    return Forward(m_entry.GetPDSDefaults, operation, timeout, interval, accuracy);
}

ULONG COrvGobiDll::SetPDSDefaults(ULONG operation, BYTE timeout, ULONG interval, ULONG accuracy)
{
    return Forward(m_entry.SetPDSDefaults, operation, timeout, interval, accuracy);
}

ULONG COrvGobiDll::GetXTRAAutomaticDownload(ULONG* enabled, WORD* interval)
{
    return Forward(m_entry.GetXTRAAutomaticDownload, enabled, interval);
}

ULONG COrvGobiDll::SetXTRAAutomaticDownload(ULONG enabled, WORD interval)
{
    return Forward(m_entry.SetXTRAAutomaticDownload, enabled, interval);
}

ULONG COrvGobiDll::GetXTRANetwork(ULONG* preference) { return Forward(m_entry.GetXTRANetwork, preference); }

ULONG COrvGobiDll::SetXTRANetwork(ULONG preference) { return Forward(m_entry.SetXTRANetwork, preference); }

ULONG COrvGobiDll::GetXTRAValidity(WORD* gpsWeek, WORD* weekOffset, WORD* duration)
{
    return Forward(m_entry.GetXTRAValidity, gpsWeek, weekOffset, duration);
}

ULONG COrvGobiDll::SetXTRAValidity(WORD gpsWeek, WORD weekOffset, WORD duration)
{
    return Forward(m_entry.SetXTRAValidity, gpsWeek, weekOffset, duration);
}

ULONG COrvGobiDll::SetXTRAEmbeddedClient(BYTE enabled, BYTE persistent)
{
    return Forward(m_entry.SetXTRAEmbeddedClient, enabled, persistent);
}

ULONG COrvGobiDll::SetNMEAConfig(BYTE enabled, BYTE port, BYTE interval, WORD* sentences)
{
    return Forward(m_entry.SetNMEAConfig, enabled, port, interval, sentences);
}

ULONG COrvGobiDll::GetNMEAConfig(BYTE* enabled, BYTE* port, BYTE* interval, WORD* sentences)
{
    return Forward(m_entry.GetNMEAConfig, enabled, port, interval, sentences);
}

ULONG COrvGobiDll::ForceXTRADownload() { return Forward(m_entry.ForceXTRADownload); }

ULONG COrvGobiDll::GetAGPSConfig(ULONG* address, ULONG* port) { return Forward(m_entry.GetAGPSConfig, address, port); }

ULONG COrvGobiDll::SetAGPSConfig(ULONG address, ULONG port) { return Forward(m_entry.SetAGPSConfig, address, port); }

ULONG COrvGobiDll::GetServiceAutomaticTracking(ULONG* enabled)
{
    return Forward(m_entry.GetServiceAutomaticTracking, enabled);
}

ULONG COrvGobiDll::SetServiceAutomaticTracking(ULONG enabled)
{
    return Forward(m_entry.SetServiceAutomaticTracking, enabled);
}

ULONG COrvGobiDll::GetPortAutomaticTracking(ULONG* enabled)
{
    return Forward(m_entry.GetPortAutomaticTracking, enabled);
}

ULONG COrvGobiDll::SetPortAutomaticTracking(ULONG enabled)
{
    return Forward(m_entry.SetPortAutomaticTracking, enabled);
}

ULONG COrvGobiDll::ResetPDSData(ULONG* gpsData, ULONG* cellData)
{
    return Forward(m_entry.ResetPDSData, gpsData, cellData);
}
