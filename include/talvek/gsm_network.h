/*
 * GSM/UMTS modules: registration, network scan, preferred operators, identity and system status.
 *
 * Results, in the order in which they are found: 10 before start-up; 1 on a module that is not GSM/UMTS (17 where the
 * function says so); 4 for a null pointer unless the function says otherwise; then what the function does. "vendor":
 * as in core.h. Outputs are written on 0 only, unless the function says otherwise.
 *
 * MCC and MNC are numbers, so that 01 and 001 are the same MNC (3GPP TS 23.003, 2.2).
 */
#ifndef TALVEK_GSM_NETWORK_H
#define TALVEK_GSM_NETWORK_H

#include "talvek/notify.h"
#include "talvek/rcode.h"

/* --- records ------------------------------------------------------------------------------------------------------ */

/* How a network is selected. */
enum { ORV_PLMN_AUTOMATIC = 0, ORV_PLMN_MANUAL_UMTS = 1, ORV_PLMN_MANUAL_GSM = 2 };
/* No selection: detach from the packet domain. */
#define ORV_PLMN_DETACH 0xFFFFFFFFu

/* The technology of a network that a scan found. */
enum { ORV_PLMN_RAT_UNKNOWN = 0, ORV_PLMN_RAT_GSM = 1, ORV_PLMN_RAT_UMTS = 7 };

/* A network: one that a scan found, or the one to register with. */
typedef struct tagOrvPlmnRecord {
    ULONG sizeStruct;      /* 120 */
    ULONG eMode;           /* ORV_PLMN_...; from a scan always 1 */
    WCHAR szLongName[32];  /* empty */
    WCHAR szShortName[14]; /* the first 13 characters of the network's description, terminated */
    ULONG nMCC;            /* 0 to 999 */
    ULONG nMNC;            /* 0 to 999 */
    ULONG eRat;            /* ORV_PLMN_RAT_... */
    BYTE bInUse;           /* 1 or 0, here and below: the module is registered with it */
    BYTE bForbidden;
    BYTE bRoaming; /* not the home network */
    BYTE bPreferred;
    BYTE bReserved; /* 0 */
    BYTE bMore;     /* more networks follow this one */
} OrvPlmnRecord;

typedef struct tagORV_IMEI {
    ULONG sizeStruct; /* 76 */
    WCHAR szImei[36]; /* at most 16 characters, terminated */
} ORV_IMEI;

/* How operators are named (3GPP TS 27.007, +CPOL). */
enum { ORV_OPERATOR_LONG = 0, ORV_OPERATOR_SHORT = 1, ORV_OPERATOR_NUMERIC = 2 };

/* Flags of OrvAddPreferredOperatorGobi: how the operator is named, and with which technology it is preferred. */
enum {
    ORV_OPERATOR_IS_LONG = 0x01,    /* at most 16 characters */
    ORV_OPERATOR_IS_SHORT = 0x02,   /* at most 8 characters */
    ORV_OPERATOR_IS_NUMERIC = 0x04, /* three digits of MCC and two or three of MNC */
    ORV_OPERATOR_GSM = 0x10,
    ORV_OPERATOR_GSM_COMPACT = 0x20,
    ORV_OPERATOR_UTRAN = 0x40
};

/* Lets the module choose the place of a new entry. */
#define ORV_OPERATOR_ANY_INDEX 0xFFFFFFFFu

typedef struct tagORV_PREF_OPERATOR {
    ULONG uIndex;        /* place in the list, from 1 */
    ULONG uFormat;       /* ORV_OPERATOR_LONG, _SHORT or _NUMERIC, as the module gives it */
    ULONG uAccessFlags;  /* a sum of ORV_OPERATOR_GSM, _GSM_COMPACT and _UTRAN; 0 where the module does not tell */
    char szOperator[36]; /* terminated; longer texts are cut */
} ORV_PREF_OPERATOR;

typedef struct tagORV_PREF_OPERATOR_LIST {
    ULONG sizeStruct;            /* of this record: 12, or 16 with 64-bit pointers */
    ULONG uCount;                /* entries at pEntries */
    ORV_PREF_OPERATOR* pEntries; /* the client's, who frees them with OrvFreeBuffer; null when there are none */
} ORV_PREF_OPERATOR_LIST;

#ifdef __cplusplus
static_assert(sizeof(OrvPlmnRecord) == 120 && offsetof(OrvPlmnRecord, szShortName) == 72, "texts of 32 and 14");
static_assert(offsetof(OrvPlmnRecord, nMCC) == 100 && offsetof(OrvPlmnRecord, bMore) == 117, "six flags");
static_assert(sizeof(ORV_IMEI) == 76 && offsetof(ORV_IMEI, szImei) == 4, "a text of 36");
static_assert(sizeof(ORV_PREF_OPERATOR) == 48 && offsetof(ORV_PREF_OPERATOR, szOperator) == 12, "a text of 36");
static_assert(sizeof(ORV_PREF_OPERATOR_LIST) == 8 + sizeof(void*) && offsetof(ORV_PREF_OPERATOR_LIST, pEntries) == 8,
              "two words and a pointer");
#endif

/* --- registration ------------------------------------------------------------------------------------------------- */

/*
 * Selects a network, or detaches from the packet domain.
 * record [in]: by value; only eMode, and for the manual modes the low 16 bits of nMCC and nMNC, are read.
 * Returns 0 when the module takes the request (it then goes on to search), or when it is registered so already; 4 for
 * another eMode; 600 when it refuses a manual mode although the serving network is another one; or vendor. On 0 the
 * mode is kept, and notifications 2016 (value 0) and, for the manual modes, 2019 (value 1) are raised before this
 * returns, on the caller's thread, where they are enabled. Detaching keeps and raises nothing.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetPLMNMode(OrvPlmnRecord record);

/*
 * The mode that OrvSetPLMNMode last had accepted in this process; 0 before.
 * mode [out]: ORV_PLMN_AUTOMATIC, _MANUAL_UMTS or _MANUAL_GSM. Returns 0, 1, 4 or 10.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPLMNMode(ULONG* mode);

/*
 * Switches the radio off and attaches to the packet domain as far as the module lets it, which is not waited for.
 * reserved: not read. Returns 0, 1, 10, or vendor for the radio.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetHostStartup(ULONG reserved);

/* --- network scan ------------------------------------------------------------------------------------------------- */

/*
 * Begins to look for the networks in reach and returns at once; a scan takes up to some minutes. Notification 2017,
 * where it is enabled, tells on the scan's own thread that it is over: value 1 when there is something to be read, else
 * 0. Until then the result of the scan before stays whole, and can be read on. Scans may overlap: each replaces the
 * result when it ends.
 * Returns 0, 1, 10, or 9 when the scan's thread cannot be had.
 */
ORV_API ORV_RCODE ORV_CALL OrvStartPLMNSearch(void);

/*
 * The next network of the last scan; the first one after each scan.
 * record [out]: eRat is told on a module 0x5111 only.
 * Returns 0; 1; 4; 10; 5 when the last scan found nothing; 600 when the last network has been read.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPLMNSelection(OrvPlmnRecord* record);

/* --- preferred operators of the SIM, over the AT port ---------------------------------------------------------------
 *
 * The port must be open: 354, before pointers and texts are looked at. A command that the module refuses gives 5, and
 * so does one that it does not answer within two seconds (which may show only when a read gives up after five); the log
 * has the number of a "+CME ERROR".
 */

/*
 * Writes an entry (3GPP TS 27.007, +CPOL).
 * index [in]: from 1, or ORV_OPERATOR_ANY_INDEX. flags [in]: how the operator is named (when several are set numeric,
 *   else short), and the technology, if any (UTRAN, else GSM compact). name [in]: terminated 8-bit text of at most 32
 *   characters without quotation marks and control characters.
 * Returns 0, 1, 5, 10 or 354; 4 without a naming flag, or for another name.
 */
ORV_API ORV_RCODE ORV_CALL OrvAddPreferredOperatorGobi(ULONG index, ULONG flags, const char* name);

/* Removes the entry at an index, from 1. Returns 0, 1, 5, 10 or 354. */
ORV_API ORV_RCODE ORV_CALL OrvRemovePreferredOperatorGobi(ULONG index);

/*
 * All entries.
 * format [in]: how the module is to name the operators, ORV_OPERATOR_LONG, _SHORT or _NUMERIC; the module keeps it.
 * list [out]: the entries are the client's, who frees them with OrvFreeBuffer.
 * Returns 0, 1, 4, 10 or 354; 5 also for a reply that is no list, or when memory is exhausted.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPreferredOperatorListGobi(ULONG format, ORV_PREF_OPERATOR_LIST* list);

/* --- identity ----------------------------------------------------------------------------------------------------- */

/*
 * The name of the serving network.
 * buffer [out]: `size` characters; no terminator when the name fills it, and untouched when the network has no name.
 *   Only the low 8 bits of the size count towards the module: with a size of 256 there is no name.
 * Returns 0, 10 or vendor; 2 for a null buffer or size 0; 17 on another module.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetNetworkProviderID(WCHAR* buffer, ULONG size);

/*
 * The subscriber's identity, in three parts (3GPP TS 23.003, 2.2).
 * buffer [out]: what follows the first six digits; at most 10 characters, and no terminator when they fill `size`.
 * mcc [out]: the first three digits. mnc [out]: the next three, also where the network's MNC has two.
 * Returns 0, 4, 10 or vendor; 2 for a null buffer, or a size that is 0 or less than what follows; 17 on another module.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetGsmIMSI(WCHAR* buffer, ULONG size, ULONG* mcc, ULONG* mnc);

/*
 * The module's IMEI.
 * record [out]: untouched when the module has none. Returns 0, 4, 10 or vendor; 17 on another module.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetImei(ORV_IMEI* record);

/* --- status ------------------------------------------------------------------------------------------------------- */

/*
 * How the module is served; the same that notification 2032 brings.
 * status [out]: sizeStruct is written as soon as the module is GSM/UMTS. The fields, in their order: radio state 2 on,
 *   1 off; service status 0 in service, 2 searching, 4 denied, 9 unknown; service domain 0 circuit-switched, 1
 *   packet-switched, 2 both, 3 none; registration and roaming as the module has them (1 registered; 0 roaming, 1 home);
 *   selection mode 0 automatic, 1 manual, as OrvGetPLMNMode; data technology 0 unknown, 1 GPRS, 2 EDGE, 3 UMTS, 4
 * HSDPA, 5 HSUPA, 6 both (without a session the best that the serving interfaces can do); radio access network (2
 * GSM/UMTS); radio interface (GOBI_RADIO_...), its band class and channel, 0 where these are not known; attach states
 * of the two domains as the module has them (1 attached); MCC and MNC; the network's name, terminated. Returns 0, 1, 4,
 * 10 or vendor, of the radio's power or the serving network.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetGsmSystemStatus(OrvGsmSystemStatus* status);

#endif /* TALVEK_GSM_NETWORK_H */
