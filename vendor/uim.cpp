// The vendor's card service.

#include "vendor/forward.h"

ULONG COrvGobiDll::DMSUIMSetPINProtection(ULONG pin, ULONG enable, char* value, ULONG* verifyLeft, ULONG* unblockLeft)
{
    return Forward(m_entry.DMSUIMSetPINProtection, pin, enable, value, verifyLeft, unblockLeft);
}

ULONG COrvGobiDll::DMSUIMVerifyPIN(ULONG pin, char* value, ULONG* verifyLeft, ULONG* unblockLeft)
{
    return Forward(m_entry.DMSUIMVerifyPIN, pin, value, verifyLeft, unblockLeft);
}

ULONG COrvGobiDll::DMSUIMUnblockPIN(ULONG pin, char* puk, char* newValue, ULONG* verifyLeft, ULONG* unblockLeft)
{
    return Forward(m_entry.DMSUIMUnblockPIN, pin, puk, newValue, verifyLeft, unblockLeft);
}

ULONG COrvGobiDll::DMSUIMChangePIN(ULONG pin, char* oldValue, char* newValue, ULONG* verifyLeft, ULONG* unblockLeft)
{
    return Forward(m_entry.DMSUIMChangePIN, pin, oldValue, newValue, verifyLeft, unblockLeft);
}

ULONG COrvGobiDll::DMSUIMGetPINStatus(ULONG pin, ULONG* status, ULONG* verifyLeft, ULONG* unblockLeft)
{
    return Forward(m_entry.DMSUIMGetPINStatus, pin, status, verifyLeft, unblockLeft);
}

ULONG COrvGobiDll::DMSUIMGetICCID(BYTE size, char* iccid) { return Forward(m_entry.DMSUIMGetICCID, size, iccid); }

ULONG COrvGobiDll::DMSUIMGetControlKeyStatus(ULONG facility, ULONG* status, ULONG* verifyLeft, ULONG* unblockLeft)
{
    return Forward(m_entry.DMSUIMGetControlKeyStatus, facility, status, verifyLeft, unblockLeft);
}

ULONG COrvGobiDll::DMSUIMSetControlKeyProtection(ULONG facility, ULONG enable, char* key, ULONG* verifyLeft)
{
    return Forward(m_entry.DMSUIMSetControlKeyProtection, facility, enable, key, verifyLeft);
}

ULONG COrvGobiDll::DMSUIMUnblockControlKey(ULONG facility, char* key, ULONG* unblockLeft)
{
    return Forward(m_entry.DMSUIMUnblockControlKey, facility, key, unblockLeft);
}

ULONG COrvGobiDll::UIMGetCardStatus(int* present, QMI_UIM_GET_CARD_STATUS_RESP* status)
{
    return Forward(m_entry.UIMGetCardStatus, present, status);
}

ULONG COrvGobiDll::UIMVerifyPIN(QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION* session,
                                QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN* request,
                                QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING* left)
{
    return Forward(m_entry.UIMVerifyPIN, session, request, left);
}

ULONG COrvGobiDll::UIMUnblockPIN(QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION* session,
                                 QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN* request,
                                 QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING* left)
{
    return Forward(m_entry.UIMUnblockPIN, session, request, left);
}

ULONG COrvGobiDll::UIMSetPINProtection(QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION* session,
                                       QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION* request,
                                       QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING* left)
{
    return Forward(m_entry.UIMSetPINProtection, session, request, left);
}

ULONG COrvGobiDll::UIMChangePIN(QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION* session,
                                QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN* request,
                                QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING* left)
{
    return Forward(m_entry.UIMChangePIN, session, request, left);
}
