#include "state/globals.h"

Shared<ULONG> g_WirelessTech;
Shared<BYTE> g_RuimCard;
Shared<BYTE> g_SimAccess;
Shared<BYTE> g_CmeeNumeric;
Shared<ULONG> g_PktSessionHandle;
Shared<ULONG> g_PinType;

char g_FirmwareRevision[GOBI_REVISION_SIZE];
char g_BootRevision[GOBI_REVISION_SIZE];
char g_PriRevision[GOBI_REVISION_SIZE];

OrvAirServerList g_AirServerList;

Shared<OrvNotifyCallback> g_ClientCallback;

Shared<ULONG> g_GsmSmsSource;
Shared<ULONG> g_DataCapsMask;
Shared<WORD> g_sessionID;
Shared<ULONG> g_sessionType;
Shared<int32_t> g_LastSignalStrength;
Shared<ULONG> g_LastRadioInterface;
Shared<int32_t> g_CdmaRssi(kNoSignal), g_CdmaEcio(kNoEcio), g_HdrRssi(kNoSignal), g_HdrEcio(kNoEcio);

Shared<BYTE> g_bSmsStored;
Shared<WORD> g_SmsStoredMsgId;
