// The vendor's Mobile IP service.

#include "vendor/forward.h"

ULONG COrvGobiDll::SetMobileIP(ULONG mode) { return Forward(m_entry.SetMobileIP, mode); }

ULONG COrvGobiDll::GetMobileIP(ULONG* mode) { return Forward(m_entry.GetMobileIP, mode); }

ULONG COrvGobiDll::SetActiveMobileIPProfile(char* spc, BYTE index)
{
    return Forward(m_entry.SetActiveMobileIPProfile, spc, index);
}

ULONG COrvGobiDll::GetActiveMobileIPProfile(BYTE* index) { return Forward(m_entry.GetActiveMobileIPProfile, index); }

ULONG COrvGobiDll::SetMobileIPProfile(char* spc, BYTE index, BYTE* enabled, ULONG* address, ULONG* primaryHA,
                                      ULONG* secondaryHA, BYTE* reverseTunneling, char* nai, ULONG* haSPI,
                                      ULONG* aaaSPI, char* haSecret, char* aaaSecret)
{
    return Forward(m_entry.SetMobileIPProfile, spc, index, enabled, address, primaryHA, secondaryHA, reverseTunneling,
                   nai, haSPI, aaaSPI, haSecret, aaaSecret);
}

ULONG COrvGobiDll::GetMobileIPProfile(BYTE index, BYTE* enabled, ULONG* address, ULONG* primaryHA, ULONG* secondaryHA,
                                      BYTE* reverseTunneling, BYTE naiSize, char* nai, ULONG* haSPI, ULONG* aaaSPI)
{
    return Forward(m_entry.GetMobileIPProfile, index, enabled, address, primaryHA, secondaryHA, reverseTunneling,
                   naiSize, nai, haSPI, aaaSPI);
}

ULONG COrvGobiDll::SetMobileIPParameters(char* spc, ULONG* mode, BYTE* retryLimit, BYTE* retryInterval,
                                         BYTE* reRegPeriod, BYTE* reRegOnTraffic, BYTE* haAuthenticator,
                                         BYTE* haRFC2002bis)
{
    return Forward(m_entry.SetMobileIPParameters, spc, mode, retryLimit, retryInterval, reRegPeriod, reRegOnTraffic,
                   haAuthenticator, haRFC2002bis);
}

ULONG COrvGobiDll::GetMobileIPParameters(ULONG* mode, BYTE* retryLimit, BYTE* retryInterval, BYTE* reRegPeriod,
                                         BYTE* reRegOnTraffic, BYTE* haAuthenticator, BYTE* haRFC2002bis)
{
    return Forward(m_entry.GetMobileIPParameters, mode, retryLimit, retryInterval, reRegPeriod, reRegOnTraffic,
                   haAuthenticator, haRFC2002bis);
}

ULONG COrvGobiDll::GetLastMobileIPError(ULONG* error) { return Forward(m_entry.GetLastMobileIPError, error); }
