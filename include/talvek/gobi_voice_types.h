/*
 * Records of the vendor's voice service: calls, supplementary services, unstructured supplementary service data (USSD),
 * and the information records of a CDMA network. See talvek/gobi_types.h for what holds for all records.
 */
#ifndef TALVEK_GOBI_VOICE_TYPES_H
#define TALVEK_GOBI_VOICE_TYPES_H

#include "talvek/types.h"

enum {
    GOBI_MAX_CALLS = 8,
    GOBI_MAX_CALL_FORWARDINGS = 13,
    GOBI_MAX_DIGITS = 81 /* of a telephone number, 8-bit characters */
};

/* --- calls -------------------------------------------------------------------------------------------------------- */

/* The state of a call. */
enum {
    GOBI_CALL_ORIGINATING = 1,
    GOBI_CALL_INCOMING = 2,
    GOBI_CALL_CONVERSATION = 3,
    GOBI_CALL_PROCEEDING = 4, /* the network works on it */
    GOBI_CALL_ALERTING = 5,   /* the other side rings */
    GOBI_CALL_HELD = 6,
    GOBI_CALL_WAITING = 7,
    GOBI_CALL_DISCONNECTING = 8,
    GOBI_CALL_ENDED = 9
};

/* What ManageCalls does: the procedures of 3GPP TS 22.030, 6.5.5.1, in their order. */
enum {
    GOBI_MANAGE_RELEASE_HELD = 1,    /* or refuse the waiting call as busy */
    GOBI_MANAGE_RELEASE_ACTIVE = 2,  /* and take the held or waiting call */
    GOBI_MANAGE_HOLD_ACTIVE = 3,     /* and take the held or waiting call */
    GOBI_MANAGE_JOIN = 4,            /* the held call to the conversation */
    GOBI_MANAGE_TRANSFER = 5,        /* connect the two others and leave */
    GOBI_MANAGE_RELEASE_ONE = 6,     /* the call whose id is given */
    GOBI_MANAGE_HOLD_ALL_BUT_ONE = 7 /* private conversation with the call whose id is given */
};

/* The call to originate. */
typedef struct tDialReqParam {
    BYTE callType;                /* 0 voice; others as arrCallInfo */
    BYTE clir;                    /* 3GPP TS 27.007 +CLIR: 0 as subscribed, 1 withhold the own number, 2 present it */
    BYTE numberType;              /* 3GPP TS 24.008, 10.5.4.7: 0 unknown, 1 international, 2 national */
    BYTE numberPlan;              /* the same: 0 unknown, 1 ISDN/telephony */
    BYTE numberLength;            /* 1 to 81 */
    BYTE number[GOBI_MAX_DIGITS]; /* '0' to '9', '*', '#', '+', and 'p' for a pause */
} tDialReqParam;

/* The calls there are. The same call has the same id in every array. */
typedef struct arrCallInfo {
    BYTE count; /* 0 to 8 */
    struct {
        BYTE callId;    /* 1 to 255 */
        BYTE state;     /* GOBI_CALL_... */
        BYTE type;      /* 0 voice; 6 is reported to clients as kind 5 */
        BYTE direction; /* 1 originated here, 2 terminated here */
        BYTE mode;      /* 1 CDMA, 2 GSM, 3 UMTS */
        BYTE mpty;      /* 1: part of a multiparty call, 3GPP TS 22.084 */
        BYTE als;       /* alternate line: 0 line 1, 1 line 2 */
    } calls[GOBI_MAX_CALLS];
} arrCallInfo;

/* The other side's number of each call. Presentation: 0 allowed, 1 restricted, 2 unavailable. */
typedef struct arrRemotePartyNum {
    BYTE count;
    struct {
        BYTE callId;
        BYTE presentation;
        BYTE length; /* 0 to 81 */
        BYTE digits[GOBI_MAX_DIGITS];
    } numbers[GOBI_MAX_CALLS];
} arrRemotePartyNum;

/* The other side's name, 3GPP TS 22.096. */
typedef struct arrRemotePartyName {
    BYTE count;
    struct {
        BYTE callId;
        BYTE presentation; /* as arrRemotePartyNum */
        BYTE dcs;          /* data coding scheme, 3GPP TS 23.038, section 5 */
        BYTE length;       /* octets, 0 to 160 */
        BYTE name[160];
    } names[GOBI_MAX_CALLS];
} arrRemotePartyName;

/* Who makes the ringing tone: 0 this side, 1 the network. */
typedef struct arrAlertingType {
    BYTE count;
    struct {
        BYTE callId;
        BYTE type;
    } types[GOBI_MAX_CALLS];
} arrAlertingType;

/* User-to-user information, 3GPP TS 22.087. */
typedef struct arrUUSInfo {
    BYTE count;
    struct {
        BYTE callId;
        BYTE service;  /* 1 to 3: UUS1, UUS2, UUS3 */
        BYTE protocol; /* user-user protocol discriminator, 3GPP TS 24.008, 10.5.4.25 */
        BYTE length;   /* octets, 0 to 128 */
        BYTE data[128];
    } infos[GOBI_MAX_CALLS];
} arrUUSInfo;

/* The service option of a CDMA call, 3GPP2 C.R1001: the low octet. */
typedef struct arrSvcOption {
    BYTE count;
    struct {
        BYTE callId;
        BYTE option;
    } options[GOBI_MAX_CALLS];
} arrSvcOption;

/* Why a call ended: the cause of 3GPP TS 24.008, annex H, or the vendor's reason, low octet first. */
typedef struct arrCallEndReason {
    BYTE count;
    struct {
        BYTE callId;
        BYTE reasonLo;
        BYTE reasonHi;
    } reasons[GOBI_MAX_CALLS];
} arrCallEndReason;

/* A text of the SIM for what it did with a request, 3GPP TS 31.111, 8.2 (alpha identifier). */
typedef struct alphaIDInfo {
    BYTE dcs;    /* 0 GSM 7-bit alphabet, one character an octet; 0x80 UCS2, high octet first */
    BYTE length; /* octets */
    BYTE text[255];
} alphaIDInfo;

typedef struct arrAlphaIDInfo {
    BYTE count;
    struct {
        BYTE callId;
        alphaIDInfo alpha;
    } alphas[GOBI_MAX_CALLS];
} arrAlphaIDInfo;

/* A number as the network gives it: connected, called or redirecting. */
typedef struct peerNumInfo {
    BYTE presentation; /* 0 allowed, 1 restricted, 2 unavailable */
    BYTE screening;    /* 0 not screened, 1 verified and passed, 2 verified and failed, 3 given by the network */
    BYTE numberType;   /* 0 unknown, 1 international, 2 national, 3 network-specific, 4 subscriber, 6 abbreviated */
    BYTE numberPlan;   /* 0 unknown, 1 ISDN/telephony, 3 data, 4 telex, 9 private */
    BYTE length;       /* 0 to 81 */
    BYTE digits[GOBI_MAX_DIGITS];
} peerNumInfo;

typedef struct arrPeerNumInfo {
    BYTE count;
    struct {
        BYTE callId;
        peerNumInfo number;
    } numbers[GOBI_MAX_CALLS];
} arrPeerNumInfo;

/* The diagnostics of the cause element, 3GPP TS 24.008, 10.5.4.11. */
typedef struct arrDiagInfo {
    BYTE count;
    struct {
        BYTE callId;
        BYTE length; /* octets, 0 to 28 */
        BYTE data[28];
    } diagnostics[GOBI_MAX_CALLS];
} arrDiagInfo;

/* The alerting pattern, 3GPP TS 24.008, 10.5.4.26: 0 to 2 for patterns 1 to 3, 4 to 8 for patterns 5 to 9. */
typedef struct arrAlertingPattern {
    BYTE count;
    struct {
        BYTE callId;
        BYTE pattern;
    } patterns[GOBI_MAX_CALLS];
} arrAlertingPattern;

/* An entry of the emergency number list. */
typedef struct emergencyNumberEntry {
    BYTE hdr[6]; /* handed to clients one by one; the sixth is the number of digits, 0 to 81 */
    BYTE digits[GOBI_MAX_DIGITS];
} emergencyNumberEntry;

/* --- supplementary services --------------------------------------------------------------------------------------- */

/* What SetSUPS does with a service: the procedures of 3GPP TS 22.030, 6.5.2. */
enum { GOBI_SUPS_ACTIVATE = 1, GOBI_SUPS_DEACTIVATE = 2, GOBI_SUPS_REGISTER = 3, GOBI_SUPS_ERASE = 4 };

/* Which service: its code of 3GPP TS 29.002, 17.7.5. */
enum {
    GOBI_SUPS_CLIP = 0x11,
    GOBI_SUPS_CLIR = 0x12,
    GOBI_SUPS_COLP = 0x13,
    GOBI_SUPS_COLR = 0x14,
    GOBI_SUPS_FORWARD_ALL = 0x20,
    GOBI_SUPS_FORWARD_ALWAYS = 0x21,
    GOBI_SUPS_FORWARD_CONDITIONAL = 0x28, /* the three that follow */
    GOBI_SUPS_FORWARD_BUSY = 0x29,
    GOBI_SUPS_FORWARD_NO_REPLY = 0x2A,
    GOBI_SUPS_FORWARD_UNREACHABLE = 0x2B,
    GOBI_SUPS_WAITING = 0x41,
    GOBI_SUPS_BAR_ALL = 0x90,
    GOBI_SUPS_BAR_OUTGOING = 0x92,
    GOBI_SUPS_BAR_OUTGOING_INTERNATIONAL = 0x93,
    GOBI_SUPS_BAR_OUTGOING_EXCEPT_HOME = 0x94, /* international, but not to the home country */
    GOBI_SUPS_BAR_INCOMING = 0x9A,
    GOBI_SUPS_BAR_INCOMING_ROAMING = 0x9B
};

/* Classes of service, 3GPP TS 27.007 +CCWA: a sum. */
enum {
    GOBI_CLASS_VOICE = 1,
    GOBI_CLASS_DATA = 2,
    GOBI_CLASS_FAX = 4,
    GOBI_CLASS_SMS = 8,
    GOBI_CLASS_DATA_SYNC = 16,
    GOBI_CLASS_DATA_ASYNC = 32,
    GOBI_CLASS_PACKET = 64,
    GOBI_CLASS_PAD = 128
};

/* What the SIM's call control did with a request, 3GPP TS 31.111, 7.3. */
enum {
    GOBI_CALL_CONTROL_VOICE = 0, /* it became a call */
    GOBI_CALL_CONTROL_SUPS = 1,  /* it became a request for a supplementary service */
    GOBI_CALL_CONTROL_USSD = 2   /* it became USSD */
};

/* The supplementary service that a request became. */
typedef struct ccSUPSType {
    BYTE serviceType; /* GOBI_SUPS_ACTIVATE to GOBI_SUPS_ERASE, or 5 for an interrogation */
    BYTE reason;      /* GOBI_SUPS_CLIP and following */
} ccSUPSType;

/* A change of the barring password: four digits each, 3GPP TS 22.030. */
typedef struct callBarringPwd {
    BYTE reason; /* GOBI_SUPS_BAR_... */
    BYTE oldPassword[4];
    BYTE newPassword[4];
    BYTE newPasswordAgain[4];
} callBarringPwd;

/* Calling line identification restriction, 3GPP TS 27.007 +CLIR. */
typedef struct statusResp {
    BYTE active;    /* n: 0 as subscribed, 1 invoked, 2 suppressed */
    BYTE provision; /* m: 0 not provisioned, 1 permanent, 2 unknown, 3 temporarily restricted, 4 temporarily allowed */
} statusResp;

/* One supplementary service to set. */
typedef struct voiceSetSUPSServiceReq {
    BYTE action;       /* GOBI_SUPS_ACTIVATE to GOBI_SUPS_ERASE */
    BYTE reason;       /* GOBI_SUPS_CLIP and following */
    BYTE serviceClass; /* GOBI_CLASS_..., 0 for all */
    BYTE password[4];  /* for barring; otherwise four zeros */
    BYTE
        noReplySeconds; /* for forwarding on no reply: 5 to 30 in steps of 5, 3GPP TS 22.082; 0 for the network's own */
    BYTE numberType;    /* of the number to forward to, as tDialReqParam */
    BYTE numberPlan;
    BYTE numberLength; /* 0 to 81; 0 where the service takes no number */
    BYTE number[GOBI_MAX_DIGITS];
} voiceSetSUPSServiceReq;

/* Call forwarding, one entry a class of service. */
typedef struct getCallFWInfo {
    BYTE count; /* 0 to 13 */
    struct {
        BYTE active;         /* 0 or 1 */
        BYTE serviceClass;   /* GOBI_CLASS_... */
        BYTE noReplySeconds; /* 5 to 30 in steps of 5, or 0 */
        BYTE numberLength;   /* 0 to 81 */
        BYTE number[GOBI_MAX_DIGITS];
    } entries[GOBI_MAX_CALL_FORWARDINGS];
} getCallFWInfo;

/* The same with what the network tells of the number. */
typedef struct getExtCallFWInfo {
    BYTE count; /* 0 to 13 */
    struct {
        BYTE active;
        BYTE serviceClass;
        BYTE noReplySeconds;
        peerNumInfo number;
    } entries[GOBI_MAX_CALL_FORWARDINGS];
} getExtCallFWInfo;

/* --- USSD --------------------------------------------------------------------------------------------------------- */

/* What the network's USSD message asks for. */
enum {
    GOBI_USSD_NO_ACTION = 1, /* show it */
    GOBI_USSD_ANSWER = 2     /* AnswerUSSD or CancelUSSD is expected */
};

/* A USSD string, 3GPP TS 23.090: at most 160 octets on the air. */
typedef struct USSInfo {
    BYTE dcs; /* cell broadcast data coding scheme, 3GPP TS 23.038, section 5: 0x0F GSM 7-bit, 0x44 8-bit, 0x48 UCS2 */
    BYTE length; /* octets */
    BYTE data[257];
} USSInfo;

/* --- information records of a CDMA network, 3GPP2 C.S0005, 3.7.5 -------------------------------------------------- */

/* 3.7.5.5. */
typedef struct signalInfo {
    BYTE signalType; /* 0 tone, 1 ISDN alerting, 2 IS-54B alerting */
    BYTE alertPitch; /* 0 medium, 1 high, 2 low; for IS-54B alerting */
    BYTE signal;     /* 0 to 63; of the tones, 9 is call waiting */
} signalInfo;

/* 3.7.5.3: the calling party's number. */
typedef struct callerIDInfo {
    BYTE presentation; /* 0 allowed, 1 restricted, 2 unavailable */
    BYTE screening;    /* as peerNumInfo */
    BYTE numberType;
    BYTE numberPlan;
    BYTE length; /* 0 to 81 */
    BYTE digits[GOBI_MAX_DIGITS];
} callerIDInfo;

/* 3.7.5.11. */
typedef struct redirectNumInfo {
    BYTE reason; /* 0 unknown, 1 busy, 2 no reply, 9 out of order, 10 by the called party, 15 unconditional */
    peerNumInfo number;
} redirectNumInfo;

/* 3.7.5.15. */
typedef struct lineCtlInfo {
    BYTE polarityIncluded; /* 0 or 1: whether the next two mean something */
    BYTE toggleMode;       /* 0 or 1 */
    BYTE reversePolarity;  /* 0 or 1 */
    BYTE powerDenialTime;  /* units of 5 ms */
} lineCtlInfo;

/* 3.7.5.16: display items, each a tag, a length and characters. */
typedef struct extDisplayInfo {
    BYTE displayType; /* 7 bits */
    BYTE length;      /* octets, 0 to 253 */
    BYTE items[253];
} extDisplayInfo;

#ifdef __cplusplus
static_assert(sizeof(tDialReqParam) == 86, "octets only");
static_assert(sizeof(arrCallInfo) == 57 && sizeof(arrCallInfo().calls[0]) == 7, "octets only");
static_assert(sizeof(arrRemotePartyNum) == 673 && sizeof(arrRemotePartyNum().numbers[0]) == 84, "octets only");
static_assert(sizeof(arrRemotePartyName) == 1313, "octets only");
static_assert(sizeof(arrAlertingType) == 17, "octets only");
static_assert(sizeof(arrUUSInfo) == 1057, "octets only");
static_assert(sizeof(arrSvcOption) == 17, "octets only");
static_assert(sizeof(arrCallEndReason) == 25, "octets only");
static_assert(sizeof(alphaIDInfo) == 257 && sizeof(arrAlphaIDInfo) == 2065, "octets only");
static_assert(sizeof(peerNumInfo) == 86 && sizeof(arrPeerNumInfo) == 697, "octets only");
static_assert(sizeof(arrDiagInfo) == 241, "octets only");
static_assert(sizeof(arrAlertingPattern) == 17, "octets only");
static_assert(sizeof(emergencyNumberEntry) == 87 && offsetof(emergencyNumberEntry, digits) == 6, "octets only");
static_assert(sizeof(ccSUPSType) == 2, "octets only");
static_assert(sizeof(callBarringPwd) == 13, "octets only");
static_assert(sizeof(statusResp) == 2, "octets only");
static_assert(sizeof(voiceSetSUPSServiceReq) == 92, "octets only");
static_assert(sizeof(getCallFWInfo) == 1106, "octets only");
static_assert(sizeof(getExtCallFWInfo) == 1158, "octets only");
static_assert(sizeof(USSInfo) == 259 && offsetof(USSInfo, data) == 2, "octets only; the event adapter dumps all of it");
static_assert(sizeof(signalInfo) == 3, "octets only");
static_assert(sizeof(callerIDInfo) == 86, "octets only");
static_assert(sizeof(redirectNumInfo) == 87, "octets only");
static_assert(sizeof(lineCtlInfo) == 4, "octets only");
static_assert(sizeof(extDisplayInfo) == 255, "octets only");
#endif

#endif /* TALVEK_GOBI_VOICE_TYPES_H */
