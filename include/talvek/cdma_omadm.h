/*
 * Device management of CDMA modules (OMA-DM, OMA-EX) and the file of roaming indicators.
 *
 * Results, in the order in which they are found: 17 before start-up (10 where a function says so); 1 while the selected
 * module is not a CDMA one; 4 for a null pointer that is required; what the function says; or vendor, as in
 * talvek/core.h. A pointer that is refused leads to no call of the module, and nothing is written. Outputs are written
 * on 0 only, unless the function says otherwise. Records and buffers are the caller's; what a record holds beforehand,
 * its sizeStruct included, is not read. One call at a time.
 */
#ifndef TALVEK_CDMA_OMADM_H
#define TALVEK_CDMA_OMADM_H

#include "talvek/gobi_types.h"
#include "talvek/notify.h"
#include "talvek/rcode.h"

/* --- the file of roaming indicators (ERI, 3GPP2 C.S0057) ---------------------------------------------------------- */

enum { ORV_ERI_FILE_SIZE = 10240 }; /* the largest file that OrvGetEFileInfo takes */

typedef struct tagOrvEFileInfo {
    ULONG sizeStruct; /* 16 */
    ULONG uReserved1; /* 1 */
    ULONG uFileSize;  /* octets */
    ULONG uReserved2; /* 0 */
} OrvEFileInfo;

/*
 * The size of an ERI file.
 * pszEFilename [in]: terminated, "eri_nam1" or "eri_nam2"; the module keeps one file for both. pInfo [out]: filled
 * before the module is asked, with a size of 10240, and afterwards with the size that the module gives: that of the
 * file on 0 and on 2. Returns 0; 18 for another name (pInfo is untouched); 2 for a file of more than 10240 octets; 5
 * when there is no memory to read the file into; 1, 4, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetEFileInfo(const WCHAR* pszEFilename, OrvEFileInfo* pInfo);

/*
 * Reads an ERI file.
 * pszEFilename [in]: as above. pBuffer [out]: room for nBufLen octets; the octets of the file, which have no
 * terminator. OrvGetEFileInfo tells how many there are. nBufLen [in]: 0 to 65535.
 * Returns 0; 18 for another name (pBuffer is untouched); 2 for a file that is larger than the buffer, which then holds
 * what the module wrote, as a rule the beginning; 1, 4, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetEFile(const WCHAR* pszEFilename, BYTE* pBuffer, WORD nBufLen);

/* --- device management (OMA-DM) ----------------------------------------------------------------------------------- */

/* The features, as bits of the two masks. A feature is on when both of its bits are set. */
enum {
    ORV_OMADM_FEATURE_DEVICE_CONFIGURATION = 0x3, /* updates of number, identity and the like */
    ORV_OMADM_FEATURE_PRL_UPDATE = 0xC            /* updates of the preferred roaming list */
};

/* The sessions that a client can begin. */
enum {
    ORV_OMADM_START_DEVICE_CONFIGURATION = 0,
    ORV_OMADM_START_PRL_UPDATE = 1,
    ORV_OMADM_START_ACTIVATION = 2 /* hands-free activation */
};

/* What a session is for: OrvOMADMSessionState.eType, OrvOMADMAlert.nType. 0: the module gives a type that is not known.
 */
enum { ORV_OMADM_TYPE_DEVICE_CONFIGURATION = 1, ORV_OMADM_TYPE_PRL_UPDATE = 2, ORV_OMADM_TYPE_ACTIVATION = 4 };

/* Who began a session: OrvOMADMSessionState.eSource. */
enum { ORV_OMADM_SOURCE_CLIENT = 1, ORV_OMADM_SOURCE_DEVICE = 2, ORV_OMADM_SOURCE_NETWORK = 3 };

/* How a session proceeds: OrvOMADMSessionState.nState of notification 2269. */
enum {
    ORV_OMADM_STATE_CONNECTING = 0,           /* the first attempt */
    ORV_OMADM_STATE_PROCEEDING = 1,           /* any step behind the connection, and also the end, with success */
    ORV_OMADM_STATE_AFTER_NO_NETWORK = 0x100, /* connecting again: the network was out of reach */
    ORV_OMADM_STATE_AFTER_NO_SERVER = 0x101,  /* connecting again: the server was out of reach */
    ORV_OMADM_STATE_AFTER_REFUSAL = 0x102,    /* connecting again: the server refused */
    ORV_OMADM_STATE_WAITING = 0x401,          /* until the next attempt */
    ORV_OMADM_STATE_NOTHING_NEW = 0x502,      /* ended: the server has no update */
    ORV_OMADM_STATE_FAILED = 0x503,           /* ended; also OrvOMADMSessionState.uError of a failed session */
    ORV_OMADM_STATE_RETRIES_EXCEEDED = 0x504  /* no attempt is left; the end follows */
};

/* Whether a network-initiated session waits for an answer: OrvOMADMAlert.nState. */
enum { ORV_OMADM_ALERT_NONE = 0, ORV_OMADM_ALERT_PENDING = 2 };

/* What became of an answer: OrvOMADMAlertResponse.uStatus. */
enum { ORV_OMADM_RESPONSE_ACCEPTED = 0, ORV_OMADM_RESPONSE_FAILED = 1, ORV_OMADM_RESPONSE_REJECTED = 2 };

typedef struct tagOrvOMADMConfig {
    ULONG sizeStruct;              /* 24 */
    ULONG uReserved1;              /* 1 */
    BYTE bReserved2;               /* 1 */
    BYTE bReserved3;               /* 1 */
    BYTE bReserved4;               /* 0 */
    BYTE bPadding1;                /* 0 */
    ULONG dwFeatureCapabilityMask; /* ORV_OMADM_FEATURE_… that are on; the same as the next */
    ULONG dwFeatureEnableMask;
    BYTE bReserved5;   /* 0 */
    BYTE bPadding2[3]; /* 0 */
} OrvOMADMConfig;

typedef struct tagOrvOMADMAlertResponse {
    ULONG sizeStruct; /* 12 */
    ULONG uStatus;    /* ORV_OMADM_RESPONSE_… */
    BYTE bFlag;       /* 0 */
    BYTE bPadding[3]; /* 0 */
} OrvOMADMAlertResponse;

#ifdef __cplusplus
static_assert(sizeof(OrvEFileInfo) == 16 && offsetof(OrvEFileInfo, uFileSize) == 8, "four words");
static_assert(sizeof(OrvOMADMConfig) == 24 && offsetof(OrvOMADMConfig, dwFeatureCapabilityMask) == 12, "flags padded");
static_assert(offsetof(OrvOMADMConfig, bReserved5) == 20, "the last octet, padded");
static_assert(sizeof(OrvOMADMAlertResponse) == 12 && offsetof(OrvOMADMAlertResponse, bFlag) == 8, "flag octet padded");
#endif

/*
 * Which updates the module takes.
 * pConfig [out]: both masks have the bits of the features that are on.
 * Returns 0, 1, 4, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetOMADMConfig(OrvOMADMConfig* pConfig);

/*
 * Switches the two features.
 * dwFeatureCapabilityMask, dwFeatureEnableMask [in]: ORV_OMADM_FEATURE_…; a feature is switched on when both masks have
 * both of its bits, off when the enable mask has none of them and the capability mask has none or both. Other bits are
 * not looked at. The masks of OrvGetOMADMConfig put back what it found.
 * Returns 0; 4 for any other combination, with which neither feature is touched; 1, 17 or vendor: the
 * device-configuration feature is set first, and stays set when the other one then fails.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetOMADMConfig(ULONG dwFeatureCapabilityMask, ULONG dwFeatureEnableMask);

/*
 * Begins a session. Notification 2269 tells how it proceeds.
 * uSessionType [in]: ORV_OMADM_START_…; handed to the module as it is.
 * Returns 0, 1, 17 or vendor: 600 while a session is under way, 5 when the feature is off.
 */
ORV_API ORV_RCODE ORV_CALL OrvStartOMADMSession(ULONG uSessionType);

/*
 * Ends the session that is under way, as a failed one.
 * Returns 0, 1, 17 or vendor: 7 when there is none.
 */
ORV_API ORV_RCODE ORV_CALL OrvCancelOMADMSession(void);

/*
 * The session that is under way, or the last one.
 * pState [out]: sizeStruct also when the module fails. bBusy is 1 while it is under way, but 0 once the roaming list of
 * a PRL session of the client's has arrived; uPauseSeconds is how long it waits between two attempts; eType is
 * ORV_OMADM_TYPE_… and eSource ORV_OMADM_SOURCE_…; nState is 0 (notification 2269 has it); uError is
 * ORV_OMADM_STATE_FAILED after a failure with a reason, which the log has, else 0; bIdle is 1 when there was none, or
 * it has ended with success.
 * Returns 0, 1, 4, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetOMADMSessionState(OrvOMADMSessionState* pState);

/*
 * The network-initiated session that waits for an answer. The library remembers its identifier for
 * OrvSetOMADMNIAlertResponse.
 * pAlert [out]: cleared but for sizeStruct when the module fails, that is, also when none waits. nState is
 * ORV_OMADM_ALERT_PENDING on 0. The identifier stands in the field of its type; a session of another type has none.
 * Returns 0, 1, 4, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetOMADMNIAlert(OrvOMADMAlert* pAlert);

/*
 * Answers the network-initiated sessions that the library knows of, from OrvGetOMADMNIAlert or from notification 2270:
 * the PRL update first, then the device configuration. Of two identifiers of one type the larger counts.
 * uSelection [in]: 0 rejects, any other value accepts. pResponse [out]: written whenever the guards are passed. uStatus
 * is that of the last answer that was sent, and ORV_OMADM_RESPONSE_REJECTED with a result of 0 when there was nothing
 * to answer. An identifier whose answer fails is kept for the next call, and what follows it is not sent.
 * Returns 0; 10 before start-up; 1, 4 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetOMADMNIAlertResponse(ULONG uSelection, OrvOMADMAlertResponse* pResponse);

/* --- extended device management (OMA-EX) -------------------------------------------------------------------------- */

/*
 * These hand their arguments, null pointers included, to the vendor's operation of the same name, which reads and
 * writes them. Where a pointer is required, the vendor library says so with a status: 5, as any that has no code of its
 * own. Notifications 2283 and 2284 tell how a session proceeds; OrvNotify(2269) brings them.
 */

/*
 * Begins extended device management, before all that follows. Returns 0; 600 when it has begun already; 1, 17 or
 * vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvOMAEXInit(void);
/*
 * Ends it, and what is under way. Returns 0, 1, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvOMAEXShutdown(void);
/*
 * Switches the events on; OrvOMAEXShutdown switches them off. Returns 0, 1, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetOMAEXEventReport(void);
/*
 * Begins a session. type [in]: ORV_OMADM_START_…, or 6 for an update of the firmware. Returns 0; 600 while one is under
 * way; 1, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvOMAEXSessionStart(BYTE* type);
/*
 * Ends the session that is under way. Returns 0, 1, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvOMAEXSessionCancel(void);
/*
 * Answers the firmware package that a session has found, or else the network, which asks for a session.
 * selection [in]: 0 refuses, 1 accepts. Returns 0; 600 while another session is under way; 1, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvOMAEXSelection(BYTE* selection);
/*
 * What may be updated (configuration, roaming list, firmware), who may begin a session (client, network), and whether
 * firmware is accepted without a question: each 0 or 1. All [out]. Returns 0; 10 before start-up; 1 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvOMAEXGetSettings(BYTE* provisioning, BYTE* prlUpdate, BYTE* firmwareUpdate,
                                               BYTE* clientInitiated, BYTE* networkInitiated, BYTE* autoAccept);
/*
 * The same, all [in]; null leaves a setting as it is. Returns 0; 10 before start-up; 1 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvOMAEXSetSettings(BYTE* provisioning, BYTE* prlUpdate, BYTE* firmwareUpdate,
                                               BYTE* clientInitiated, BYTE* networkInitiated, BYTE* autoAccept);
/*
 * The session that is under way, or the last one. info [out]: the vendor's record. Returns 0, 1, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvOMAEXGetSessionInfo(omaSessionInfo* info);

#endif /* TALVEK_CDMA_OMADM_H */
