// What provisioning keeps between the calls of a client: the service programming code of the session, the items that
// wait for the commit, and the network parameters as they were last read; and the data session that stands in for a
// call.
#pragma once

#include "platform/win32.h"

// The outputs of COrvGobiDll::GetCDMANetworkParameters, in its order.
struct CdmaNetworkParameters {
    BYTE slot_cycle_index;
    BYTE station_class_mark;
    BYTE home_only; // registration in the home system, here and below
    BYTE sid_registration;
    BYTE nid_registration;
    BYTE force_rev0;
    BYTE custom_scp;
    ULONG protocol;
    ULONG broadcast;
    ULONG application;
    ULONG roaming;
};

extern CdmaNetworkParameters g_CdmaNetworkParameters; // as OrvIsModemReady read them; all 0 before
extern BYTE g_CdmaNetworkParametersRead;              // 1 once it has

constexpr ULONG kPendingMdn = 0x1;
constexpr ULONG kPendingMin = 0x8 | 0x10; // always set together
constexpr ULONG kPendingAccolc = 0x40;
constexpr ULONG kPendingHomeSidNid = 0x100;

constexpr ULONG kSpcSize = 10; // characters that are kept of a code
constexpr ULONG kMdnSize = 15;
constexpr ULONG kMinSize = 10;

extern char g_szSpc[kSpcSize + 1]; // six digits after a successful unlock, else empty
extern ULONG g_PstPendingMask;     // kPending…
extern WCHAR g_szPstMdn[kMdnSize + 1];
extern WCHAR g_szPstMin[kMinSize + 1];
extern WORD g_PstAccolc;
extern WORD g_PstHomeSid;
extern WORD g_PstHomeNid;

extern int32_t g_CdmaDataSessionId; // of OrvSetCallOriginateCmd; 0 or less: none
