#include "state/cdma_provisioning.h"

CdmaNetworkParameters g_CdmaNetworkParameters;
BYTE g_CdmaNetworkParametersRead;

char g_szSpc[kSpcSize + 1];
ULONG g_PstPendingMask;
WCHAR g_szPstMdn[kMdnSize + 1];
WCHAR g_szPstMin[kMinSize + 1];
WORD g_PstAccolc;
WORD g_PstHomeSid;
WORD g_PstHomeNid;

int32_t g_CdmaDataSessionId;
