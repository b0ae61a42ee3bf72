// The process-wide variables. Those that client threads and vendor threads both touch are Shared; the rest belong to
// the client's one call at a time.
#pragma once

#include "platform/shared.h"
#include "talvek/core.h"
#include "talvek/gobi_types.h"
#include "talvek/notify.h"

// --- the selected module
// ----------------------------------------------------------------------------------------------

extern Shared<ULONG> g_WirelessTech;     // ORV_TYPE_WirelessTech; back to 0 by a successful OrvApiShutdown
extern Shared<BYTE> g_RuimCard;          // set by OrvSelectAirServer, never cleared
extern Shared<BYTE> g_SimAccess;         // 1 = the card can be used; cleared by a successful OrvApiShutdown
extern Shared<BYTE> g_CmeeNumeric;       // 1 = AT errors carry "+CME ERROR: " and a number
extern Shared<ULONG> g_PktSessionHandle; // the packet session that the profile functions started, or 0
extern Shared<ULONG> g_PinType;          // which PIN the generic SIM functions mean: 1 = PIN1

// Read once by OrvSelectAirServer; always terminated.
extern char g_FirmwareRevision[GOBI_REVISION_SIZE];
extern char g_BootRevision[GOBI_REVISION_SIZE];
extern char g_PriRevision[GOBI_REVISION_SIZE];

extern OrvAirServerList g_AirServerList; // the last successful discovery

// The client callback as the exported interface holds it, for the deliveries that do not go through the notification
// registry: SMS, cell broadcast, voice mail, network time, emergency mode. Set by registration, cleared by
// deregistration.
extern Shared<OrvNotifyCallback> g_ClientCallback;

// --- what the last events said
// ----------------------------------------------------------------------------------------

constexpr int32_t kNoSignal = -250; // dBm
constexpr int32_t kNoEcio = -50;

extern Shared<ULONG> g_GsmSmsSource; // storage type of the last new-SMS event
extern Shared<ULONG> g_DataCapsMask; // data capabilities of the serving system
extern Shared<WORD> g_sessionID;     // the last network-initiated OMA-DM alert
extern Shared<ULONG> g_sessionType;
extern Shared<int32_t> g_LastSignalStrength;
extern Shared<ULONG> g_LastRadioInterface;
extern Shared<int32_t> g_CdmaRssi, g_CdmaEcio, g_HdrRssi, g_HdrEcio;

// --- the outgoing CDMA message that is held
// ---------------------------------------------------------------------------

extern Shared<BYTE> g_bSmsStored;
extern Shared<WORD> g_SmsStoredMsgId;
