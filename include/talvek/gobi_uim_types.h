/*
 * Records of the vendor's card service: the applications on the card and their PINs, 3GPP TS 102 221. See
 * talvek/gobi_types.h for what holds for all records.
 */
#ifndef TALVEK_GOBI_UIM_TYPES_H
#define TALVEK_GOBI_UIM_TYPES_H

#include "talvek/types.h"

enum {
    GOBI_MAX_CARDS = 2,
    GOBI_MAX_CARD_APPLICATIONS = 8,
    GOBI_MAX_AID = 16, /* octets of an application identifier, ISO/IEC 7816-4 */
    GOBI_MAX_PIN = 8   /* digits of a PIN or PUK, '0' to '9' */
};

/* Which application a request is for. */
enum {
    GOBI_UIM_SESSION_PRIMARY_GW = 0, /* the SIM or USIM in use */
    GOBI_UIM_SESSION_PRIMARY_1X = 1, /* the RUIM or CSIM in use */
    GOBI_UIM_SESSION_BY_AID = 4      /* the application that aid names */
};

/* The state of a PIN; those of DMSUIMGetPINStatus are the same. */
enum {
    GOBI_PIN_NOT_INITIALISED = 0,
    GOBI_PIN_NOT_VERIFIED = 1, /* enabled */
    GOBI_PIN_VERIFIED = 2,     /* enabled */
    GOBI_PIN_DISABLED = 3,
    GOBI_PIN_BLOCKED = 4, /* the PUK unblocks it */
    GOBI_PIN_PERMANENTLY_BLOCKED = 5
};

/* Which PIN a request is for; those of the DMSUIM methods are the same. */
enum { GOBI_PIN1 = 1, GOBI_PIN2 = 2, GOBI_PIN_UNIVERSAL = 3 };

/* The session information of the four PIN requests: one layout under four names. */
typedef struct QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION {
    BYTE sessionType; /* GOBI_UIM_SESSION_... */
    BYTE aidLength;   /* octets, 0 to 16; 0 but for GOBI_UIM_SESSION_BY_AID */
    BYTE aid[GOBI_MAX_AID];
} QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION;

typedef struct QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION {
    BYTE sessionType;
    BYTE aidLength;
    BYTE aid[GOBI_MAX_AID];
} QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION;

typedef struct QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION {
    BYTE sessionType;
    BYTE aidLength;
    BYTE aid[GOBI_MAX_AID];
} QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION;

typedef struct QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION {
    BYTE sessionType;
    BYTE aidLength;
    BYTE aid[GOBI_MAX_AID];
} QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION;

typedef struct QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN {
    BYTE pinId;     /* GOBI_PIN1 and following */
    BYTE pinLength; /* 4 to 8 */
    BYTE pin[GOBI_MAX_PIN];
} QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN;

typedef struct QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN {
    BYTE pinId;
    BYTE pukLength; /* 8 */
    BYTE puk[GOBI_MAX_PIN];
    BYTE newPinLength; /* 4 to 8 */
    BYTE newPin[GOBI_MAX_PIN];
} QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN;

typedef struct QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION {
    BYTE pinId;
    BYTE operation; /* 0 disable, 1 enable */
    BYTE pinLength;
    BYTE pin[GOBI_MAX_PIN];
} QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION;

typedef struct QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN {
    BYTE pinId;
    BYTE oldPinLength;
    BYTE oldPin[GOBI_MAX_PIN];
    BYTE newPinLength;
    BYTE newPin[GOBI_MAX_PIN];
} QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN;

/* The attempts that are left after a request, whether it succeeded or not: one layout under four names. */
typedef struct QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING {
    BYTE verifyLeft;
    BYTE unblockLeft;
} QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING;

typedef struct QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING {
    BYTE verifyLeft;
    BYTE unblockLeft;
} QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING;

typedef struct QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING {
    BYTE verifyLeft;
    BYTE unblockLeft;
} QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING;

typedef struct QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING {
    BYTE verifyLeft;
    BYTE unblockLeft;
} QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING;

/* The cards, and the applications on each. */
typedef struct QMI_UIM_GET_CARD_STATUS_RESP {
    BYTE cardCount; /* slots, 0 to 2 */
    struct {
        BYTE cardState;      /* 0 absent, 1 present, 2 error */
        BYTE errorCode;      /* with an error: 0 unknown, 1 power down, 2 poll error, 3 no answer to reset */
        BYTE upinState;      /* the universal PIN: GOBI_PIN_..., or 0 if the card has none */
        BYTE upinVerifyLeft; /* attempts, here and below */
        BYTE upinUnblockLeft;
        BYTE applicationCount; /* 0 to 8 */
        struct {
            BYTE type;  /* 0 unknown, 1 SIM, 2 USIM, 3 RUIM, 4 CSIM, 5 ISIM */
            BYTE state; /* 0 unknown, 1 detected, 2 PIN1 needed, 3 PUK needed, 7 ready, 6 blocked for good */
            BYTE aidLength;
            BYTE aid[GOBI_MAX_AID];
            BYTE universalPin; /* 1: the universal PIN takes the place of PIN1 */
            BYTE pin1State;    /* GOBI_PIN_... */
            BYTE pin1VerifyLeft;
            BYTE pin1UnblockLeft;
            BYTE pin2State;
            BYTE pin2VerifyLeft;
            BYTE pin2UnblockLeft;
        } applications[GOBI_MAX_CARD_APPLICATIONS];
    } cards[GOBI_MAX_CARDS];
} QMI_UIM_GET_CARD_STATUS_RESP;

#ifdef __cplusplus
static_assert(sizeof(QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION) == 18 &&
                  sizeof(QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION) == 18 &&
                  sizeof(QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION) == 18 &&
                  sizeof(QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION) == 18,
              "one layout");
static_assert(sizeof(QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN) == 10, "octets only");
static_assert(sizeof(QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN) == 19, "octets only");
static_assert(sizeof(QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION) == 11, "octets only");
static_assert(sizeof(QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN) == 19, "octets only");
static_assert(sizeof(QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING) == 2 &&
                  sizeof(QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING) == 2 &&
                  sizeof(QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING) == 2 &&
                  sizeof(QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING) == 2,
              "one layout");
static_assert(sizeof(QMI_UIM_GET_CARD_STATUS_RESP) == 1 + 2 * (6 + 8 * 26), "octets only");
#endif

#endif /* TALVEK_GOBI_UIM_TYPES_H */
