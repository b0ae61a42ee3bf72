/*
 * Records of the vendor's services for what is stored or managed: messages waiting, the phonebook, device management
 * and firmware. See talvek/gobi_types.h for what holds for all records.
 */
#ifndef TALVEK_GOBI_DATA_TYPES_H
#define TALVEK_GOBI_DATA_TYPES_H

#include "talvek/types.h"

enum {
    GOBI_REVISION_SIZE = 85,    /* octets of a revision string, terminator included */
    GOBI_MAX_LISTED_SMS = 1000, /* what one GetSMSList may be asked for */
    GOBI_MAX_WAITING_TYPES = 5, /* voice, fax, mail, other, video: 3GPP TS 31.102, EF MWIS */
    GOBI_MAX_PHONEBOOK_TEXT = 256
};

/* One message of a list, as GetSMSList fills it. */
typedef struct GobiSMSListEntry {
    ULONG index;
    ULONG tag; /* 0 received and read, 1 received and not read, 2 to be sent and not sent, 3 sent */
} GobiSMSListEntry;

/* Where received messages of one kind go, as SetSMSRoute takes it. */
enum { GOBI_SMS_POINT_TO_POINT = 0, GOBI_SMS_ANY_CLASS = 255, GOBI_SMS_STORE_AND_NOTIFY = 1 };

typedef struct GobiSMSRoute {
    BYTE type;         /* GOBI_SMS_POINT_TO_POINT */
    BYTE messageClass; /* 0 to 3, or GOBI_SMS_ANY_CLASS */
    BYTE storage;      /* 0 SIM, 1 the module */
    BYTE action;       /* 0 discard, GOBI_SMS_STORE_AND_NOTIFY */
} GobiSMSRoute;

/* Messages that wait at a server, a type each. */
typedef struct waitingMsgInfo {
    BYTE count; /* 0 to 5 */
    struct {
        BYTE type;    /* 0 voice, 1 fax, 2 mail, 3 other, 4 video */
        BYTE active;  /* 0 or 1 */
        BYTE waiting; /* messages; 0 and 255: not known */
    } entries[GOBI_MAX_WAITING_TYPES];
} waitingMsgInfo;

/* One record of a phonebook. The event's array holds as many of them as its count says. */
typedef struct arrPBInfo {
    WORD recordId;   /* 1 to the capacity of the phonebook */
    BYTE numberType; /* 3GPP TS 24.008, 10.5.4.7: 0 unknown, 1 international, 2 national */
    BYTE reserved;
    WORD numberLength; /* octets, 0 to 256 */
    WORD nameLength;   /* octets, 0 to 256 */
    BYTE number[GOBI_MAX_PHONEBOOK_TEXT];
    BYTE name[GOBI_MAX_PHONEBOOK_TEXT];
} arrPBInfo;

/* A session of extended device management. */
typedef struct omaSessionInfo {
    ULONG state;         /* as OMADMGetSessionInfo */
    ULONG type;          /* as OMADMGetSessionInfo */
    ULONG failureReason; /* as OMADMGetSessionInfo */
    ULONG retryCount;
    ULONG pauseSeconds;     /* until the next attempt */
    ULONG remainingSeconds; /* until the session is given up */
    ULONG packageSize;      /* octets of the firmware update, 0 if there is none */
} omaSessionInfo;

/* An event of firmware update over the air. */
typedef struct FUMOInfo {
    ULONG event;
    BYTE data[4096]; /* as the event has it */
} FUMOInfo;

/* An event of extended device management. */
typedef struct OMAInfo {
    ULONG event;
    ULONG status;
    BYTE data[512]; /* as the event has it */
} OMAInfo;

#ifdef __cplusplus
static_assert(sizeof(GobiSMSListEntry) == 8, "two packed words");
static_assert(sizeof(GobiSMSRoute) == 4, "four octets");
static_assert(sizeof(waitingMsgInfo) == 16, "octets only");
static_assert(sizeof(arrPBInfo) == 520 && offsetof(arrPBInfo, number) == 8, "no hidden padding");
static_assert(sizeof(omaSessionInfo) == 28, "packed words");
static_assert(sizeof(FUMOInfo) == 4100 && offsetof(FUMOInfo, data) == 4, "no hidden padding");
static_assert(sizeof(OMAInfo) == 520 && offsetof(OMAInfo, data) == 8, "no hidden padding");
#endif

#endif /* TALVEK_GOBI_DATA_TYPES_H */
