/*
 * Life cycle, module discovery, and the functions that serve either technology.
 *
 * Expected order: OrvApiStartup, OrvGetAvailAirServers, OrvSelectAirServer with the first record of the list, then any
 * other function, and OrvApiShutdown last. One call at a time: the library does not serialise a client's threads.
 *
 * Results named in a comment are those that the function gives itself; "vendor" means that a failing vendor call gives
 * its converted status: 1 (1025), 2 (5), 7 (15), 600 (1026), else 5.
 */
#ifndef TALVEK_CORE_H
#define TALVEK_CORE_H

#include "talvek/gobi_types.h"
#include "talvek/notify.h"
#include "talvek/rcode.h"

/* Which kind of module is selected. */
typedef enum tagORV_TYPE_WirelessTech {
    ORV_TECH_UNDETERMINED = 0,
    ORV_TECH_CDMA = 1,
    ORV_TECH_UMTS = 2, /* GSM/UMTS */
    ORV_TECH_FORCE_32_BIT = 0x7FFFFFFF
} ORV_TYPE_WirelessTech;

/* The USB product IDs that are accepted, with USB vendor ID 0x3D5E. The product ID is the interface's device ID. */
enum { ORV_DEVICE_5101 = 0x5101, ORV_DEVICE_5111 = 0x5111, ORV_DEVICE_5120 = 0x5120, ORV_DEVICE_5141 = 0x5141 };

/* A module that can be selected. */
typedef struct tagOrvAirServer {
    ULONG sizeStruct;   /* 20 */
    ULONG uReserved[3]; /* never read nor written */
    ULONG uDeviceID;    /* one of ORV_DEVICE_… */
} OrvAirServer;

enum { ORV_MAX_AIR_SERVERS = 50 };

typedef struct tagOrvAirServerList {
    ULONG sizeStruct; /* 1008 */
    ULONG numAirServers;
    OrvAirServer airServers[ORV_MAX_AIR_SERVERS];
} OrvAirServerList;

typedef struct tagOrvAirServerInfo {
    ULONG sizeStruct;   /* not written */
    WCHAR szName[20];   /* the device ID that the vendor library reports, terminated */
    ULONG eClass;       /* 0 */
    ULONG eTechnology;  /* ORV_TYPE_WirelessTech */
    ULONG uReserved[2]; /* not written */
    ULONG eInterface;   /* 3 */
} OrvAirServerInfo;

typedef struct tagOrvRadioPower {
    ULONG sizeStruct;   /* 20; written by the getter */
    ULONG bRadioOn;     /* 1 = on, any other value = off */
    ULONG uReserved[3]; /* not written */
} OrvRadioPower;

typedef struct tagOrvPriInfo {
    ULONG sizeStruct;   /* 24 */
    ULONG uPriVersion;  /* four digits */
    ULONG uPriRevision; /* two digits */
    ULONG uReserved[2]; /* 0 */
    ULONG uPriCarrier;  /* two digits */
} OrvPriInfo;

/* Addresses in host byte order: 192.0.2.1 is 0xC0000201. */
typedef struct tagOrvIpConfiguration {
    ULONG sizeStruct; /* not written */
    BYTE bValid;      /* 1 after success */
    BYTE bReserved[3];
    ULONG uIpAddress;
    ULONG uPrimaryDns;
    ULONG uSecondaryDns;
    ULONG uDefaultGateway;
    ULONG uSubnetMask;
} OrvIpConfiguration;

#ifdef __cplusplus
static_assert(sizeof(ORV_TYPE_WirelessTech) == 4, "32 bits");
static_assert(sizeof(OrvAirServer) == 20 && offsetof(OrvAirServer, uDeviceID) == 16, "five words");
static_assert(sizeof(OrvAirServerList) == 1008 && offsetof(OrvAirServerList, airServers) == 8, "header and 50 records");
static_assert(sizeof(OrvAirServerInfo) == 64 && offsetof(OrvAirServerInfo, eInterface) == 60, "no padding");
static_assert(sizeof(OrvRadioPower) == 20, "five words");
static_assert(sizeof(OrvPriInfo) == 24 && offsetof(OrvPriInfo, uPriCarrier) == 20, "six words");
static_assert(sizeof(OrvIpConfiguration) == 28 && offsetof(OrvIpConfiguration, uIpAddress) == 8, "flag octet padded");
#endif

/* --- life cycle --------------------------------------------------------------------------------------------------- */

/*
 * Empties the notification registry and loads the vendor library "GobiApi.dll" ("libGobiApi.so").
 * Returns 0, or 9 when the library cannot be loaded or lacks its connect or disconnect entry point. After a library
 * that could not be loaded at all, a second call returns 0 without trying again; every call to the module then fails
 * with 5. May be called again after OrvApiShutdown, and should be before the next OrvSelectAirServer: it empties the
 * registry.
 */
ORV_API ORV_RCODE ORV_CALL OrvApiStartup(void);

/*
 * Unregisters the device-removal event, closes the AT port and disconnects from the module. The vendor library stays
 * loaded. Returns 0 or vendor; 5 before start-up. On failure the technology stays set, but the port is closed.
 */
ORV_API ORV_RCODE ORV_CALL OrvApiShutdown(void);

/*
 * Tells which module is there: at most one, named by the registry value "DeviceID".
 * list [out]: numAirServers = 1 and the first record's uDeviceID; nothing else is written, and nothing on failure.
 * Returns 0; 5 when list is null, before start-up, when the registry cannot be read, or for a device that is not
 * accepted.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetAvailAirServers(OrvAirServerList* list);

/*
 * Connects to the module, decides its technology, reads its revisions, and opens the AT port of a GSM/UMTS module.
 * record [in]: only uDeviceID is read.
 * Returns 0; 10 before start-up; 4 when record is null or its device is not accepted; 5 when the technology cannot be
 * determined (the connection stays up); or vendor. A port that cannot be opened is logged, not reported: AT functions
 * then return 354. May be called again.
 */
ORV_API ORV_RCODE ORV_CALL OrvSelectAirServer(OrvAirServer* record);

/*
 * The name and kind of the selected module.
 * record [in]: by value; only uDeviceID is read. info [out]: the caller's; the fields marked so are not written.
 * Returns 0; 10 before start-up; 4 for a device that is not accepted or a null info; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetAirServerInfo(OrvAirServer record, OrvAirServerInfo* info);

/*
 * To be called when the device changes its power state. 2 (D2) switches the signal-strength, RF and roaming events off
 * in the module before it returns; any other state is only logged. What is enabled stays enabled. Returns 0, or 10
 * before start-up.
 */
ORV_API ORV_RCODE ORV_CALL OrvHandleSuspend(ULONG targetDx);

/*
 * 0 (D0) switches them on again and re-delivers the last signal strength, on a thread of its own: it returns at once.
 * Returns 0, or 10 before start-up.
 */
ORV_API ORV_RCODE ORV_CALL OrvHandleResume(ULONG targetDx);

/*
 * An addition to the interface. Frees a buffer that a function of this interface handed over (its comment says which);
 * null is allowed. The process's own free must not be used: on Windows the library may have another heap.
 */
ORV_API void ORV_CALL OrvFreeBuffer(void* buffer);

/* --- notifications ------------------------------------------------------------------------------------------------ */

/*
 * Registers the one client callback, replacing an earlier one.
 * callback [in]: called on a thread of the vendor library or on a short-lived thread, mostly with the API-wide lock
 * held: it may call this interface on its own thread but must not wait there for another thread that does. filter:
 * logged only; what is delivered is chosen with OrvNotify. Returns 0, or 4 for a null callback. May be called before
 * start-up; OrvApiStartup drops the registration.
 */
ORV_API ORV_RCODE ORV_CALL OrvRegisterCallback(OrvNotifyCallback callback, ULONGLONG filter);

/*
 * Removes the client callback; enabled notifications stay enabled for the next one. handle is not examined. A
 * notification that is delivered without the lock may still be in flight on another thread when this returns. Returns
 * 0.
 */
ORV_API ORV_RCODE ORV_CALL OrvDeRegisterCallback(OrvNotifyCallback handle);

/*
 * Enables one notification. reserved is ignored.
 * Returns 0; 17 before start-up; 1 for an identifier that cannot be enabled; or vendor (the identifier then counts as
 * enabled all the same).
 */
ORV_API ORV_RCODE ORV_CALL OrvNotify(ORV_NOTIFY id, ULONG reserved);

/*
 * Disables one notification, however often it was enabled. Disabling 5 (power) also ends it for the library itself.
 * Returns as OrvNotify.
 */
ORV_API ORV_RCODE ORV_CALL OrvStopNotify(ORV_NOTIFY id, ULONG reserved);

/* --- identity ----------------------------------------------------------------------------------------------------- */

/*
 * "manufacturer:model:hardware revision", widened.
 * buffer [out]: `size` characters; no terminator when the text fills it. Sizes count modulo 256, as the vendor's do; a
 * part that fails or does not fit ends the text there. Returns 0; 4 for a null buffer or size 0; 17 before start-up
 * (the buffer then holds an empty text); or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetHardwareVersion(WCHAR* buffer, ULONG size);

/*
 * The firmware, boot and PRI revisions that OrvSelectAirServer read.
 * buffer [out]: `size` characters; min(size, length) are written, and a terminator when there is room.
 * Returns 0; 17 before start-up or when nothing is cached; 4 for size 0 (OrvGetPriVersion: 0) or a null buffer.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetFirmwareVersion(WCHAR* buffer, ULONG size);
ORV_API ORV_RCODE ORV_CALL OrvGetBootVersion(WCHAR* buffer, ULONG size);
ORV_API ORV_RCODE ORV_CALL OrvGetPriVersion(WCHAR* buffer, ULONG size);

/*
 * The PRI revision taken apart: two digits carrier, four version, two revision; a part that is missing reads 0.
 * Returns 0; 17 before start-up or when nothing is cached; 4 for a null record.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPriInfo(OrvPriInfo* record);

/* The model, 8-bit, `size` octets with the terminator (the low 8 bits count). Returns 0; 10 before start-up; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetModelID(ULONG size, char* buffer);

/* --- radio and device --------------------------------------------------------------------------------------------- */

/* Returns 0; 10 before start-up; 4 for a null record; or vendor (sizeStruct is then written all the same). */
ORV_API ORV_RCODE ORV_CALL OrvGetRadioPower(OrvRadioPower* record);
/* bRadioOn = 1 switches the radio on, any other value off. Returns as OrvGetRadioPower. */
ORV_API ORV_RCODE ORV_CALL OrvSetRadioPower(OrvRadioPower* record);

/* Resets the module, which leaves and comes back. Returns 0; 10 before start-up; or vendor. */
ORV_API ORV_RCODE ORV_CALL OrvModemReset(void);

/* Prefers a radio technology (the vendor's value) until it is changed. Returns 0 or vendor; 5 before start-up. */
ORV_API ORV_RCODE ORV_CALL OrvSetNetworkPreferenceGobi(ULONG techPref);

/*
 * What the serving network can do: bit n - 1 for capability n, 1 to 9.
 * mask [out]: written on success. Returns 0; 4 for a null mask; 10 before start-up; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetServingNetworkGobi(ULONG* mask);

/* Kept for compatibility: both return 0 and touch nothing. */
ORV_API ORV_RCODE ORV_CALL OrvGetAudioMode(ULONG* mode);
ORV_API ORV_RCODE ORV_CALL OrvSetAudioMode(ULONG mode);

/* --- firmware ----------------------------------------------------------------------------------------------------- */

/*
 * The firmware images that the module prefers. pImageListSize [in/out]: octets at pImageList, then octets used.
 * Returns 0; 10 before start-up; or vendor. Pointers are handed to the vendor library as they are.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetImagePreference(ULONG* pImageListSize, BYTE* pImageList);
ORV_API ORV_RCODE ORV_CALL OrvSetImagePreference(ULONG imageListSize, BYTE* pImageList, ULONG forceDownload,
                                                 BYTE modemIndex, ULONG* pImageTypesSize, BYTE* pImageTypes);
/* Makes the image in the folder `path` (terminated, not null) the next one to load. */
ORV_API ORV_RCODE ORV_CALL OrvUpgradeFirmware(WCHAR* path);

/* --- data session ------------------------------------------------------------------------------------------------- */

/*
 * Starts a packet data session. APN, user and password are 8-bit texts and may be null for the profile's own.
 * pSessionId [out]: the handle for OrvStopDataSession. pFailureReason [out]: the vendor's reason; may be null where the
 *   vendor allows it.
 * Returns 0; 10 before start-up; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvStartDataSession(char* pAPN, char* pUser, char* pPassword, ULONG* pSessionId,
                                               ULONG* pFailureReason);
ORV_API ORV_RCODE ORV_CALL OrvStopDataSession(ULONG sessionId);

/*
 * The addresses of the session.
 * record [out]: written on success. Returns 0; 10 before start-up; 4 for a null record; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetIPConfigurationGobi(OrvIpConfiguration* record);

/* --- voice calls -------------------------------------------------------------------------------------------------- */

/* Handed to the vendor library as they are. Return 0; 10 before start-up; or vendor. */
ORV_API ORV_RCODE ORV_CALL OrvDialCall(tDialReqParam* pRequest, BYTE* pCallID, alphaIDInfo* pAlphaID,
                                       BYTE* pSupplementaryKind, ccSUPSType* pSupplementary);
ORV_API ORV_RCODE ORV_CALL OrvEndCall(BYTE* pCallID, BYTE* pEndedCallID);
ORV_API ORV_RCODE ORV_CALL OrvAnserCall(BYTE* pCallID, BYTE* pAnsweredCallID);
ORV_API ORV_RCODE ORV_CALL OrvManageCalls(BYTE* pKind, BYTE* pCallID, WORD* pFailureCause);

#endif /* TALVEK_CORE_H */
