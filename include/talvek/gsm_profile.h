/*
 * The data profile of a GSM/UMTS module and its packet session.
 *
 * There is one profile, the module's default profile for 3GPP networks, and one session, which OrvActivateProfile
 * starts with that profile. The session belongs to the process that started it, and its handle to the library: it is
 * forgotten by OrvActivateProfile, by OrvApiShutdown, and, while ORV_NOTIFY_PktSessionCall is enabled, when the network
 * ends the session.
 *
 * Results, in the order in which they are found: 10 before start-up; 17 on a module that is not GSM/UMTS, where a
 * function serves these only; 4 for a null pointer; then what the function says. "Vendor" is the vendor's status as a
 * result code. Outputs are written on 0 only. Call on any thread, one call at a time.
 */
#ifndef TALVEK_GSM_PROFILE_H
#define TALVEK_GSM_PROFILE_H

#include "talvek/notify.h"
#include "talvek/rcode.h"

/* --- the profile -------------------------------------------------------------------------------------------------- */

/*
 * The default profile. Texts are 16-bit characters of ISO 8859-1; a character above 255 becomes '?' on its way to the
 * module. The module keeps 101 characters of the APN, 128 of the user name and of the password and 31 of the profile's
 * name: what is longer is cut. A user name of 128 characters has no terminator here.
 *
 * "Get" says what OrvGetGsmProfileBasic writes, "set" what OrvSetGsmProfileBasic reads; it reads nothing else.
 */
typedef struct tagOrvGsmProfileBasic {
    ULONG sizeStruct;        /* get: 864 */
    BYTE bProfileId;         /* get: 1 */
    BYTE bValid;             /* get: 1 */
    ULONG ePdpType;          /* get: the PDP type, 0 = IPv4. OrvSetGsmProfileBasic always sets IPv4 */
    BYTE bHeaderCompression; /* get: 0 */
    BYTE bDataCompression;   /* get: 0 */
    BYTE bDynamicAddress;    /* get: 1 without a static address, else 0. Set: 0 = a static address follows */
    ULONG uAddressLen;       /* get: 4 with a static address, else 0. Set: 4 with a static address */
    BYTE abAddress[16];      /* four octets, the most significant first; get leaves the others as they are */
    WCHAR szAPN[102];        /* access point name */
    ULONG uZero;             /* get: 0 */
    ULONG uUnused;           /* not written */
    ULONG eAuthentication;   /* get and set: a sum of 1 (PAP) and 2 (CHAP) */
    WCHAR szUserName[128];
    WCHAR szPassword[128];   /* get: always empty, all of it cleared */
    WCHAR szProfileName[32]; /* the profile's name */
    ULONG uReserved1;        /* get: 127 */
    ULONG uReserved2;        /* get: 127 */
    ULONG uZero2;            /* get: 0 */
    BYTE abZero[5];          /* get: 0 */
    BYTE abUnused[15];       /* not written */
    ULONG uZero3;            /* get: 0 */
} OrvGsmProfileBasic;

typedef struct tagOrvGsmProfileSummary {
    ULONG sizeStruct;    /* 80 */
    ULONG uOne[4];       /* 1 each */
    ULONG uReserved[15]; /* not written */
} OrvGsmProfileSummary;

/*
 * Reads the default profile from the module.
 * profile [out]: written on success, as the record says. Returns 0, 4, 10 or 17; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetGsmProfileBasic(OrvGsmProfileBasic* profile);
/*
 * Writes the default profile to the module, of either technology. An empty text is written too: in particular the
 * password, which cannot be read, has to be given each time. The module's DNS addresses are not set.
 * profile [in]: as the record says. Texts need no terminator where they fill their field.
 * Returns 0; 10; 4 when bDynamicAddress is 0 and uAddressLen is not 4, and nothing is then written; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetGsmProfileBasic(OrvGsmProfileBasic profile);
/*
 * Tells that there is one profile. Asks no module, so that any will do.
 * summary [out]: its first five words. Returns 0, 4 or 10.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetGsmProfileSummary(OrvGsmProfileSummary* summary);

/* --- the packet session ------------------------------------------------------------------------------------------- */

/*
 * Starts or ends the packet session, on a module of either technology.
 * profile [in]: not used. activate [in]: 0 ends the session, any other value starts one with the default profile.
 * Returns 0, also when there is no session to end; 10; 600 when a session is active already; or vendor. A session that
 * could not be ended stays active, and one that could not be started never becomes it. Where the network has ended the
 * session while ORV_NOTIFY_PktSessionCall was not enabled, it still counts as active: end it first.
 */
ORV_API ORV_RCODE ORV_CALL OrvActivateProfile(ULONG profile, BYTE activate);

/*
 * The IPv4 address of the session.
 * buffer [out]: the address as dotted text, terminated; an empty text when it has `length` characters or more.
 * length [in]: the characters at `buffer`; 16 are enough for any address, and with 0 nothing is written there.
 * address [out]: the same as a number, the first octet the most significant. Handed to the vendor library as it is,
 *   which may write it whatever the result; may be null.
 * Returns 0; 4 for a null buffer; 10 or 17; or vendor: without a session, as the module sees it, 7.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetIPAddress(WCHAR* buffer, ULONG length, ULONG* address);

/*
 * What the current connection has carried. Sends no AT command, but wants the AT port to be open all the same.
 * pTx [out]: octets sent. pRx [out]: octets received. Both are 64 bits wide and handed to the vendor library as they
 *   are, which writes them.
 * Returns 0, 10 or 17; 354 when the AT port is not open; then 4; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetTrafficStatistics(ULONGLONG* pTx, ULONGLONG* pRx);

/*
 * The state of the packet session: the payload of ORV_NOTIFY_PktSessionCall. Here bConnected is 1 while
 * OrvActivateProfile has a session, uSessionHandle is then its handle and uProfile 1; everything else is 0, as the
 * reason for which a session ended is told by the notification alone.
 */
typedef OrvPktSessionPayload ORV_PKT_SESSION_STATUS;

/*
 * What the library knows of the session; the module is not asked.
 * status [out]: see above. reserved [in]: not used. Returns 0, 4, 10 or 17.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPktSessionStatusEx(ORV_PKT_SESSION_STATUS* status, ULONG reserved);

/* Kept for compatibility: they touch nothing and return 10 or 17, and otherwise 1. */
ORV_API ORV_RCODE ORV_CALL OrvGetProfile(void* profile);
ORV_API ORV_RCODE ORV_CALL OrvSetProfile(void* profile);
ORV_API ORV_RCODE ORV_CALL OrvGetProfileSummary(void* summary);
ORV_API ORV_RCODE ORV_CALL OrvGetPktSessionStatus(void* status);

#ifdef __cplusplus
static_assert(sizeof(OrvGsmProfileBasic) == 864 && alignof(OrvGsmProfileBasic) == 4, "the same on every host");
static_assert(offsetof(OrvGsmProfileBasic, ePdpType) == 8 && offsetof(OrvGsmProfileBasic, uAddressLen) == 16 &&
                  offsetof(OrvGsmProfileBasic, abAddress) == 20 && offsetof(OrvGsmProfileBasic, szAPN) == 36 &&
                  offsetof(OrvGsmProfileBasic, uZero) == 240 && offsetof(OrvGsmProfileBasic, eAuthentication) == 248 &&
                  offsetof(OrvGsmProfileBasic, szUserName) == 252 && offsetof(OrvGsmProfileBasic, szPassword) == 508 &&
                  offsetof(OrvGsmProfileBasic, szProfileName) == 764 &&
                  offsetof(OrvGsmProfileBasic, uReserved1) == 828 && offsetof(OrvGsmProfileBasic, abZero) == 840 &&
                  offsetof(OrvGsmProfileBasic, uZero3) == 860,
              "the order and the offsets are the contract");
static_assert(sizeof(OrvGsmProfileSummary) == 80, "five words are written");
static_assert(sizeof(ORV_PKT_SESSION_STATUS) == 92, "shared with 2029");
#endif

#endif /* TALVEK_GSM_PROFILE_H */
