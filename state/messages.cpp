#include "state/messages.h"

GobiSMSListEntry g_SmsList[GOBI_MAX_LISTED_SMS];

BYTE g_SmsStoredPdu[1026];
ULONG g_SmsStoredLen;

BYTE g_GsmSmsStored;
BYTE g_GsmSmsPdu[1024];
WORD g_GsmSmsLen;
BYTE g_GsmSmsLinkTimer;

Shared<BYTE> g_bSmsSent;
HANDLE g_hSmsSendNotifyThread;
