// The vendor's provisioning of CDMA modules.

#include "vendor/forward.h"

ULONG COrvGobiDll::SetCDMANetworkParameters(char* spc, BYTE* forceRev0, BYTE* customSCP, ULONG* protocol,
                                            ULONG* broadcast, ULONG* application, ULONG* roaming)
{
    return Forward(m_entry.SetCDMANetworkParameters, spc, forceRev0, customSCP, protocol, broadcast, application,
                   roaming);
}

ULONG COrvGobiDll::GetCDMANetworkParameters(BYTE* slotCycleIndex, BYTE* stationClassMark, BYTE* homeOnly,
                                            BYTE* sidRegistration, BYTE* nidRegistration, BYTE* forceRev0,
                                            BYTE* customSCP, ULONG* protocol, ULONG* broadcast, ULONG* application,
                                            ULONG* roaming)
{
    return Forward(m_entry.GetCDMANetworkParameters, slotCycleIndex, stationClassMark, homeOnly, sidRegistration,
                   nidRegistration, forceRev0, customSCP, protocol, broadcast, application, roaming);
}

ULONG COrvGobiDll::GetACCOLC(BYTE* accolc) { return Forward(m_entry.GetACCOLC, accolc); }

ULONG COrvGobiDll::SetACCOLC(char* spc, BYTE accolc) { return Forward(m_entry.SetACCOLC, spc, accolc); }

ULONG COrvGobiDll::GetANAAAAuthenticationStatus(ULONG* status)
{
    return Forward(m_entry.GetANAAAAuthenticationStatus, status);
}

ULONG COrvGobiDll::GetPRLVersion(WORD* version) { return Forward(m_entry.GetPRLVersion, version); }

ULONG COrvGobiDll::Set3Gpp2SubscriptionInfo(BYTE* namIndex, MinBasedImsi* minBased, TrueImsi* trueImsi, BYTE* mdnLength,
                                            BYTE* mdn)
{
    return Forward(m_entry.Set3Gpp2SubscriptionInfo, namIndex, minBased, trueImsi, mdnLength, mdn);
}

ULONG COrvGobiDll::Get3Gpp2SubscriptionInfo(BYTE* namIndex, MinBasedImsi* minBased, TrueImsi* trueImsi, BYTE* mdnLength,
                                            BYTE* mdn)
{
    return Forward(m_entry.Get3Gpp2SubscriptionInfo, namIndex, minBased, trueImsi, mdnLength, mdn);
}

ULONG COrvGobiDll::GetERIFile(ULONG* size, BYTE* file) { return Forward(m_entry.GetERIFile, size, file); }

ULONG COrvGobiDll::ActivateManual(char* spc, WORD sid, char* mdn, char* min, ULONG prlSize, BYTE* prl, char* haSecret,
                                  char* aaaSecret)
{
    return Forward(m_entry.ActivateManual, spc, sid, mdn, min, prlSize, prl, haSecret, aaaSecret);
}

ULONG COrvGobiDll::ActivateAutomatic(char* activationCode)
{
    if (!m_entry.ActivateAutomatic) return kEntryPointMissing;
    const ULONG status = m_entry.ActivateAutomatic(activationCode);
    LOG_C("ActivateAutomatic pActivationCode = %s returns status = %d", activationCode, status);
    return status;
}

ULONG COrvGobiDll::GetActivationState(ULONG* state)
{
    return ForwardAndLog("GetActivationState returns status = %d", m_entry.GetActivationState, state);
}

ULONG COrvGobiDll::ValidateSPC(char* spc) { return Forward(m_entry.ValidateSPC, spc); }
