// The vendor's power service.

#include "vendor/forward.h"

ULONG COrvGobiDll::GetPower(ULONG* mode) { return Forward(m_entry.GetPower, mode); }

ULONG COrvGobiDll::SetPower(ULONG mode)
{
    if (!m_entry.SetPower) return kEntryPointMissing;
    const ULONG status = m_entry.SetPower(mode);
    LOG_C("SetPower powerMode = %d returns status = %d", mode, status);
    return status;
}

ULONG COrvGobiDll::GetOfflineReason(ULONG* reasons, ULONG* platform)
{
    return Forward(m_entry.GetOfflineReason, reasons, platform);
}
