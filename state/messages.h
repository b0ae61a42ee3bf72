// Text messages: the table that the stores are listed into, what is held for sending, how the last sending ended. Only
// what the send-status thread reads is Shared.
#pragma once

#include "platform/shared.h"
#include "platform/win32.h"
#include "talvek/gobi_types.h"

extern GobiSMSListEntry g_SmsList[GOBI_MAX_LISTED_SMS]; // of the call that is under way

// The CDMA message that is held; g_bSmsStored and g_SmsStoredMsgId (state/globals.h) belong to it.
extern BYTE g_SmsStoredPdu[1026];
extern ULONG g_SmsStoredLen;

// The GSM message that is held.
extern BYTE g_GsmSmsStored; // 1 while there is one
extern BYTE g_GsmSmsPdu[1024];
extern WORD g_GsmSmsLen;
extern BYTE g_GsmSmsLinkTimer; // seconds

// Of the last message that was sent, on either technology.
extern Shared<BYTE> g_bSmsSent;       // 1 when the module took it
extern HANDLE g_hSmsSendNotifyThread; // of the thread that tells the client; kept until the next sending
