// The vendor's session and data service, and the default profile.

#include "vendor/forward.h"

ULONG COrvGobiDll::GetConnectedDeviceID(ULONG size, char* deviceID)
{
    return Forward(m_entry.QCWWANGetConnectedDeviceID, size, deviceID);
}

ULONG COrvGobiDll::GetSessionState(ULONG* state) { return Forward(m_entry.GetSessionState, state); }

ULONG COrvGobiDll::GetDormancyState(ULONG* state) { return Forward(m_entry.GetDormancyState, state); }

ULONG COrvGobiDll::GetDunCallInfo(ULONG* state, BYTE* dormant, BYTE* bearer, ULONG* endReason, BYTE* stateReport,
                                  BYTE* dormancyReport, BYTE* bearerReport, BYTE* errorReport, ULONGLONG* duration,
                                  WORD* reportSeconds, ULONGLONG* sent, ULONGLONG* received, BYTE* totalsReport,
                                  BYTE* rateReport, ULONG* txRate, ULONG* rxRate, ULONG* maxTxRate, ULONG* maxRxRate,
                                  ULONGLONG* lastDuration, ULONGLONG* lastSent, ULONGLONG* lastReceived,
                                  BYTE* lastBearer)
{
    return Forward(m_entry.GetDunCallInfo, state, dormant, bearer, endReason, stateReport, dormancyReport, bearerReport,
                   errorReport, duration, reportSeconds, sent, received, totalsReport, rateReport, txRate, rxRate,
                   maxTxRate, maxRxRate, lastDuration, lastSent, lastReceived, lastBearer);
}

ULONG COrvGobiDll::StartDataSession(char* apn, char* user, char* password, ULONG* sessionId, ULONG* failureReason)
{
    return Forward(m_entry.StartDataSession2, apn, user, password, sessionId, failureReason);
}

ULONG COrvGobiDll::StopDataSession(ULONG sessionId) { return Forward(m_entry.StopDataSession, sessionId); }

ULONG COrvGobiDll::GetIPAddress(ULONG* address) { return Forward(m_entry.GetIPAddress, address); }

ULONG COrvGobiDll::GetPacketStatus(ULONG* sent, ULONG* received, ULONG* txErrors, ULONG* rxErrors, ULONG* txOverflows,
                                   ULONG* rxOverflows)
{
    return Forward(m_entry.GetPacketStatus, sent, received, txErrors, rxErrors, txOverflows, rxOverflows);
}

ULONG COrvGobiDll::GetByteTotals(ULONG* sent, ULONG* received)
{
    return Forward(m_entry.GetByteTotals, sent, received);
}

ULONG COrvGobiDll::GetDataBearerTechnology(ULONG* technology)
{
    return Forward(m_entry.GetDataBearerTechnology, technology);
}

ULONG COrvGobiDll::GetSessionDuration(ULONGLONG* duration) { return Forward(m_entry.GetSessionDuration, duration); }

ULONG COrvGobiDll::GetConnectionRate(ULONG* txRate, ULONG* rxRate, ULONG* maxTxRate, ULONG* maxRxRate)
{
    return Forward(m_entry.GetConnectionRate, txRate, rxRate, maxTxRate, maxRxRate);
}

ULONG COrvGobiDll::GetIPConfiguration(ULONG* ipAddress, ULONG* primaryDns, ULONG* secondaryDns, ULONG* defaultGateway,
                                      ULONG* subnetMask)
{
    return ForwardAndLog("GetIPConfiguration returns status = %d", m_entry.GetIPConfiguration, ipAddress, primaryDns,
                         secondaryDns, defaultGateway, subnetMask);
}

ULONG COrvGobiDll::GetAutoconnect(ULONG* setting) { return Forward(m_entry.GetAutoConnect, setting); }

ULONG COrvGobiDll::SetAutoconnect(ULONG setting) { return Forward(m_entry.SetAutoConnect, setting); }

ULONG COrvGobiDll::SetDefaultProfile(ULONG type, ULONG* pdpType, ULONG* ipAddress, ULONG* primaryDns,
                                     ULONG* secondaryDns, ULONG* authentication, char* name, char* apn, char* user,
                                     char* password)
{
    return ForwardAndLog("SetDefaultProfile returns uStatus = %d", m_entry.SetDefaultProfile, type, pdpType, ipAddress,
                         primaryDns, secondaryDns, authentication, name, apn, user, password);
}

ULONG COrvGobiDll::GetDefaultProfile(ULONG type, ULONG* pdpType, ULONG* ipAddress, ULONG* primaryDns,
                                     ULONG* secondaryDns, ULONG* authentication, BYTE nameSize, char* name,
                                     BYTE apnSize, char* apn, BYTE userSize, char* user)
{
    return ForwardAndLog("GetDefaultProfile returns uStatus = %d", m_entry.GetDefaultProfile, type, pdpType, ipAddress,
                         primaryDns, secondaryDns, authentication, nameSize, name, apnSize, apn, userSize, user);
}
