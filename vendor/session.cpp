// The vendor's session and data service.

#include "vendor/forward.h"

ULONG COrvGobiDll::GetSessionState(ULONG* state) { return Forward(m_entry.GetSessionState, state); }

ULONG COrvGobiDll::StartDataSession(char* apn, char* user, char* password, ULONG* sessionId, ULONG* failureReason)
{
    return Forward(m_entry.StartDataSession2, apn, user, password, sessionId, failureReason);
}

ULONG COrvGobiDll::StopDataSession(ULONG sessionId) { return Forward(m_entry.StopDataSession, sessionId); }

ULONG COrvGobiDll::GetIPConfiguration(ULONG* ipAddress, ULONG* primaryDns, ULONG* secondaryDns, ULONG* defaultGateway,
                                      ULONG* subnetMask)
{
    if (!m_entry.GetIPConfiguration) return kEntryPointMissing;
    const ULONG status = m_entry.GetIPConfiguration(ipAddress, primaryDns, secondaryDns, defaultGateway, subnetMask);
    LOG_C("GetIPConfiguration returns status = %d", status);
    return status;
}
