// The vendor's message service. Its methods write their names to the log before anything else.

#include "vendor/forward.h"

ULONG COrvGobiDll::DeleteSMS(ULONG storage, ULONG* index, ULONG* tag)
{
    LOG_C("DeleteSMS");
    return Forward(m_entry.DeleteSMS, storage, index, tag);
}

ULONG COrvGobiDll::GetSMSList(ULONG storage, ULONG* tag, ULONG* count, BYTE* list)
{
    LOG_C("GetSMSList");
    return Forward(m_entry.GetSMSList, storage, tag, count, list);
}

ULONG COrvGobiDll::GetSMS(ULONG storage, ULONG index, ULONG* tag, ULONG* format, ULONG* size, BYTE* message)
{
    LOG_C("GetSMS");
    return Forward(m_entry.GetSMS, storage, index, tag, format, size, message);
}

ULONG COrvGobiDll::ModifySMSStatus(ULONG storage, ULONG index, ULONG tag)
{
    LOG_C("ModifySMSStatus");
    return Forward(m_entry.ModifySMSStatus, storage, index, tag);
}

ULONG COrvGobiDll::SaveSMS(ULONG storage, ULONG format, ULONG size, BYTE* message, ULONG* index)
{
    LOG_C("SaveSMS");
    return Forward(m_entry.SaveSMS, storage, format, size, message, index);
}

ULONG COrvGobiDll::SendSMS(ULONG format, ULONG size, BYTE* message, BYTE linkTimer, ULONG* failureCode)
{
    LOG_C("SendSMS");
    return Forward(m_entry.SendSMS, format, size, message, linkTimer, failureCode);
}

ULONG COrvGobiDll::GetSMSCAddress(BYTE addressSize, char* address, BYTE typeSize, char* type)
{
    LOG_C("GetSMSCAddress");
    return Forward(m_entry.GetSMSCAddress, addressSize, address, typeSize, type);
}

ULONG COrvGobiDll::SetSMSCAddress(char* address, char* type)
{
    LOG_C("SetSMSCAddress");
    return Forward(m_entry.SetSMSCAddress, address, type);
}

ULONG COrvGobiDll::SetSMSProtocol(BYTE protocol)
{
    LOG_C("SetSMSProtocol");
    return Forward(m_entry.SetSMSProtocol, protocol);
}

ULONG COrvGobiDll::SetSMSRoute(ULONG count, BYTE* routes)
{
    LOG_C("SetSMSRoute");
    return Forward(m_entry.SetRoutes, count, routes);
}

ULONG COrvGobiDll::SetSMSBroadcastActivation(BYTE messageMode, BYTE activate)
{
    LOG_C("SetSMSBroadcastActivation");
    return Forward(m_entry.SetBroadcastActivation, messageMode, activate);
}

ULONG COrvGobiDll::GetWaitingMessage(waitingMsgInfo* info)
{
    if (!m_entry.GetWaitingMsgInfo) LOG_C("mpFnGetWaitingMsg = NULL");
    return Forward(m_entry.GetWaitingMsgInfo, info);
}
