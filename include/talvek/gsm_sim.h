/*
 * The SIM of a GSM/UMTS module: its PINs, and its files through restricted and generic commands.
 *
 * Results, in the order in which they are found: 10 before start-up; 17 on a module of the wrong kind (which that is,
 * stands beside each function); 354 where a function needs the AT port and it is not open; 4 for a null pointer or an
 * argument out of range, before anything is asked of the module; then what the module answers. "vendor" means that a
 * failing vendor call gives its converted status: 1 (1025), 2 (5), 7 (15), 600 (1026), else 5.
 *
 * Passwords are read up to their terminator, and no further than their 256 characters: one that fills its field needs
 * none. The library neither logs nor keeps them.
 */
#ifndef TALVEK_GSM_SIM_H
#define TALVEK_GSM_SIM_H

#include "talvek/rcode.h"

/* --- PINs --------------------------------------------------------------------------------------------------------- */

enum { ORV_SIM_PASSWORD_SIZE = 256 };

/* dwFacility is 1 to NUM_LOCKFACILITIES - 1. */
enum { NUM_LOCKFACILITIES = 11 };

/*
 * What failed, in the numbers of 3GPP TS 27.007. Written into dwCmeError by a request that the card or the vendor
 * library refused; a request that succeeds leaves the field alone.
 */
enum {
    ORV_CME_OPERATION_NOT_ALLOWED = 3, /* vendor status 1082 */
    ORV_CME_SIM_PUK_REQUIRED = 12,     /* 1035, PIN1 */
    ORV_CME_INCORRECT_PASSWORD = 16,   /* 1012 */
    ORV_CME_SIM_PUK2_REQUIRED = 18,    /* 1035, PIN2 */
    ORV_CME_UNKNOWN = 100              /* any other */
};

/* What OrvGetPinStatus counts. */
enum { ORV_PIN_KIND_PIN1 = 0, ORV_PIN_KIND_PIN2 = 1, ORV_PIN_KIND_PUK1 = 2, ORV_PIN_KIND_PUK2 = 3 };

/* The protection by PIN1. */
typedef struct tagOrvSimLockRecord {
    ULONG sizeStruct; /* neither read nor written, like uReserved */
    BYTE bLocked;     /* 1 = protection on, 0 = off */
    ULONG uReserved;
    ULONG dwCmeError;
    char szPassword[ORV_SIM_PASSWORD_SIZE]; /* PIN1; read by the set function */
} OrvSimLockRecord;

/* What OrvSetSimPasswordGobi does. */
enum {
    ORV_PASSWORD_CHANGE_PIN1 = 1,
    ORV_PASSWORD_CHANGE_PIN2 = 2,
    ORV_PASSWORD_UNBLOCK_PIN1 = 3, /* with PUK1 */
    ORV_PASSWORD_UNBLOCK_PIN2 = 4  /* with PUK2 */
};

typedef struct tagOrvSimPasswordRecord {
    ULONG sizeStruct; /* neither read nor written */
    ULONG dwFacility; /* 1 to 10; another value fails an assertion in the log, and changes nothing else */
    ULONG dwCmeError;
    ULONG dwPasswordType;                      /* ORV_PASSWORD_... */
    char szOldPassword[ORV_SIM_PASSWORD_SIZE]; /* the old PIN, or the PUK for the types 3 and 4 */
    char szNewPassword[ORV_SIM_PASSWORD_SIZE]; /* the new PIN */
} OrvSimPasswordRecord;

typedef struct tagOrvSimVerifyRecord {
    ULONG sizeStruct;                          /* neither read nor written */
    char szPassword[ORV_SIM_PASSWORD_SIZE];    /* the PIN, or the PUK when szNewPassword is given */
    char szNewPassword[ORV_SIM_PASSWORD_SIZE]; /* empty: verify; else the PIN that the PUK sets */
    ULONG dwCmeError;
} OrvSimVerifyRecord;

#ifdef __cplusplus
static_assert(sizeof(OrvSimLockRecord) == 272 && offsetof(OrvSimLockRecord, dwCmeError) == 12, "flag octet padded");
static_assert(sizeof(OrvSimPasswordRecord) == 528 && offsetof(OrvSimPasswordRecord, szOldPassword) == 16, "no padding");
static_assert(sizeof(OrvSimVerifyRecord) == 520 && offsetof(OrvSimVerifyRecord, dwCmeError) == 516, "no padding");
#endif

/* What OrvGetSimVerifyGobi gives. */
enum {
    ORV_SIM_STATE_UNKNOWN = 0, /* permanently blocked, among others */
    ORV_SIM_STATE_READY = 1,
    ORV_SIM_STATE_PIN_REQUIRED = 2,
    ORV_SIM_STATE_PUK_REQUIRED = 3,
    ORV_SIM_STATE_PIN2_REQUIRED = 7,
    ORV_SIM_STATE_PUK2_REQUIRED = 8
};

/*
 * How many attempts are left with a PIN or a PUK.
 * kind [in]: ORV_PIN_KIND_... retries [out]: the low eight bits of the count; written on 0 only.
 * GSM/UMTS modules. Returns 0; 4 also for another kind; 6 when the module does not know how many attempts are left to
 * verify the PIN, whichever of the four was asked for; 10; 17; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPinStatus(ULONG kind, BYTE* retries);

/*
 * Whether PIN1 protects the card.
 * record [in, out]: bLocked becomes 1 when PIN1 is enabled, verified or not, or blocked, and 0 when it is disabled or
 * not initialised; a status that is none of these leaves it as it was. No other field is touched.
 * Either kind of module, once one is selected. Returns 0, 4, 10, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetSimLockGobi(OrvSimLockRecord* record);

/*
 * Switches the protection by PIN1 on or off.
 * record [in, out]: bLocked (other than 0: on) and szPassword are read. On a vendor failure dwCmeError is written: 16,
 * 12 or 100 (100 also where the operation is not allowed).
 * Either kind of module, once one is selected. Returns 0, 4, 10, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetSimLockGobi(OrvSimLockRecord* record);

/*
 * Changes a PIN, or sets one anew with its PUK. The PIN that it is about becomes the one that the two functions below
 * work on, even when the request then fails; selecting a module makes that PIN1 again.
 * record [in, out]: every field is read. On a vendor failure, and for an unknown type, dwCmeError is written.
 * Either kind of module, once one is selected. Returns 0; 4 also when either password is empty, before anything
 * changes; 5 for another dwPasswordType, without a request; 10; 17; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetSimPasswordGobi(OrvSimPasswordRecord* record);

/*
 * What the card waits for: the state of the PIN that is worked on.
 * state [out]: ORV_SIM_STATE_...; written on 0 only.
 * Either kind of module, once one is selected. Returns 0, 4, 10, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetSimVerifyGobi(ULONG* state);

/*
 * Verifies the PIN that is worked on, or sets it anew with its PUK when szNewPassword is not empty.
 * record [in, out]: both passwords are read. On a vendor failure dwCmeError is written.
 * Either kind of module, once one is selected. Returns 0, 4, 10, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetSimVerifyGobi(OrvSimVerifyRecord* record);

/*
 * The older forms of the functions above, kept for compatibility: they read and write nothing.
 * GSM/UMTS modules. Return 10, 17, or else 1 (not supported).
 */
ORV_API ORV_RCODE ORV_CALL OrvGetSimLock(OrvSimLockRecord* record);
ORV_API ORV_RCODE ORV_CALL OrvSetSimLock(OrvSimLockRecord* record);
ORV_API ORV_RCODE ORV_CALL OrvSetSimPassword(OrvSimPasswordRecord* record);

/* --- files -------------------------------------------------------------------------------------------------------- */

/* The parameters that OrvSendRestrictedSIMCmd sends. */
enum {
    ORV_RESTRICTED_FILE_ID = 0x01,
    ORV_RESTRICTED_P1 = 0x02,
    ORV_RESTRICTED_P2 = 0x04,
    ORV_RESTRICTED_P3 = 0x08,
    ORV_RESTRICTED_DATA = 0x10
};

/* The commands of 3GPP TS 27.007, +CRSM. */
enum {
    ORV_RESTRICTED_READ_BINARY = 176,
    ORV_RESTRICTED_READ_RECORD = 178,
    ORV_RESTRICTED_GET_RESPONSE = 192,
    ORV_RESTRICTED_UPDATE_BINARY = 214,
    ORV_RESTRICTED_UPDATE_RECORD = 220,
    ORV_RESTRICTED_STATUS = 242
};

/* The fields of a response that hold something. */
enum { ORV_SR_Param_StatusWord1 = 0x02, ORV_SR_Param_StatusWord2 = 0x04, ORV_SR_Param_Payload = 0x10 };

/* What the card answered. */
typedef struct tagORV_SIM_RESPONSE {
    ULONG dwParamsMask; /* 22 with response data, 6 without: ORV_SR_Param_... */
    ULONG StatusWord1;  /* 0x90 for success; ETSI TS 102 221 and 3GPP TS 51.011 have the others */
    ULONG StatusWord2;
    ULONG dwPayloadSize; /* octets */
    BYTE* pPayload;      /* the caller's, who frees it with OrvFreeBuffer; null when there is none */
} ORV_SIM_RESPONSE;

/* A command for the card, as ISO/IEC 7816-4 has it: class, instruction, P1, P2, P3 and data. */
typedef struct tagORV_SIM_GENERIC_REQUEST {
    ULONG sizeStruct;     /* not read */
    ULONG dwPayloadSize;  /* octets, at least 1; 1000 fit the AT port */
    const BYTE* pPayload; /* the caller's */
} ORV_SIM_GENERIC_REQUEST;

/* How a file is organised. */
enum { ORV_SIM_FILE_TRANSPARENT = 0, ORV_SIM_FILE_LINEAR_FIXED = 1, ORV_SIM_FILE_CYCLIC = 3 };

typedef struct tagORV_SIM_RECORD_STATUS {
    ULONG sizeStruct;  /* 32; written */
    ULONG uFileId;     /* as the card tells it */
    ULONG eStructure;  /* ORV_SIM_FILE_... */
    ULONG uFileSize;   /* octets */
    ULONG uRecordSize; /* octets; 0 for a transparent file, like the count */
    ULONG uRecordCount;
    ULONG SW1; /* the status words that came with the answer */
    ULONG SW2;
} ORV_SIM_RECORD_STATUS;

#ifdef __cplusplus
static_assert(sizeof(ORV_SIM_RESPONSE) == 16 + sizeof(void*) && offsetof(ORV_SIM_RESPONSE, pPayload) == 16,
              "four words and a pointer");
static_assert(sizeof(ORV_SIM_GENERIC_REQUEST) == 8 + sizeof(void*) && offsetof(ORV_SIM_GENERIC_REQUEST, pPayload) == 8,
              "two words and a pointer");
static_assert(sizeof(ORV_SIM_RECORD_STATUS) == 32, "eight words");
#endif

/*
 * Sends a restricted SIM command (3GPP TS 27.007, +CRSM): the module selects the file, the card does the rest.
 * command [in]: ORV_RESTRICTED_... mask [in]: which of the parameters are sent. They stand in a row: P1 to P3 are sent
 * when the file identifier is and the bits of all three are set, the data when these three are sent. fileId, p1, p2, p3
 * [in]: sent in decimal. dataSize [in], data [in]: octets, sent in hexadecimal; read only when they are sent.
 * response [out]: written on 0. Its payload is the caller's, who frees it with OrvFreeBuffer. A refusal by the card is
 * a response like any other, and told by its status words. When all is well but the final result, which gives 5, the
 * status words are written and the payload is empty; any other failure leaves the record alone.
 * GSM/UMTS modules. Returns 0; 4 also for null data where data are sent; 5 when the module refuses the command or
 * answers with something else; 10; 17; 354.
 */
ORV_API ORV_RCODE ORV_CALL OrvSendRestrictedSIMCmd(ULONG command, ULONG mask, ULONG fileId, ULONG p1, ULONG p2,
                                                   ULONG p3, ULONG dataSize, const BYTE* data,
                                                   ORV_SIM_RESPONSE* response);

/*
 * Sends any command to the card (+CSIM). The command line is logged as it is sent, so that PINs belong into the
 * functions above and not into a request of this one.
 * request [in]: the command. response [out]: written on 0; the last two octets of the answer are its status words,
 * those before them its payload, which is the caller's, who frees it with OrvFreeBuffer. GSM/UMTS modules. Returns 0; 4
 * also for an empty payload; 5 when the module refuses the command or answers with something else; 10; 17; 354.
 */
ORV_API ORV_RCODE ORV_CALL OrvSendGenericSimCommand(ORV_SIM_GENERIC_REQUEST request, ORV_SIM_RESPONSE* response);

/*
 * How an elementary file is organised, and how large it is. Reads both the file-control template of ETSI TS 102 221 and
 * the fixed form of 3GPP TS 51.011.
 * fileId [in]: 16 bits, for example 0x6F07. status [out]: written on 0. When the card refuses, SW1 and SW2 alone are
 * written.
 * GSM/UMTS modules. Returns 0; 4 also for the master file 0x3F00, a larger fileId, or when the card finds an argument
 * wrong; 5 when the card refuses for another reason, the file is no elementary file, or the answer is none that one of
 * the two forms allows; 6 when there is no such file; 10; 17; 354.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetSIMRecordStatus(ULONG fileId, ORV_SIM_RECORD_STATUS* status);

#endif /* TALVEK_GSM_SIM_H */
