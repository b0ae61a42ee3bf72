/*
 * Text messages and the phone book on GSM/UMTS modules. The terms are those of 3GPP TS 23.040 and, for alphabets and
 * classes, 23.038.
 *
 * Results, in the order in which they are found: 10 before start-up; 17 on a module that is not GSM/UMTS (also while
 * none is selected); 4 for a null pointer; then what the function does. "vendor": as in core.h. Outputs are written on
 * 0 only, unless the function says otherwise.
 *
 * User data of the 7-bit alphabet is packed in these records: eight characters in seven octets, the first one in the
 * least significant bits of the first octet.
 */
#ifndef TALVEK_GSM_SMS_H
#define TALVEK_GSM_SMS_H

#include "talvek/rcode.h"

/* Characters of user data that a message to be sent has at most. */
enum { ORV_GSM_SMS_MAX_USER_DATA = 1024 };

/* Octets of user data that a record to be sent has room for; one to be received has room for 1024. */
enum { ORV_GSM_SMS_OUT_ROOM = 1028, ORV_GSM_SMS_IN_ROOM = 1024 };

/* Octets that a record has room for in a user data header. Its length octet, UDHL, is not among them. */
enum { ORV_GSM_SMS_HEADER_ROOM = 256 };

/* Digits of an address, one an octet, that a received message has room for. */
enum { ORV_GSM_SMS_MAX_DIGITS = 20 };

/* Type of number. */
enum {
    ORV_GSM_TON_UNKNOWN = 0,
    ORV_GSM_TON_INTERNATIONAL = 1,
    ORV_GSM_TON_NATIONAL = 2,
    ORV_GSM_TON_NETWORK = 3,
    ORV_GSM_TON_SUBSCRIBER = 4,
    ORV_GSM_TON_ALPHANUMERIC = 5,
    ORV_GSM_TON_ABBREVIATED = 6,
    ORV_GSM_TON_RESERVED = 7
};

/* Numbering plan: a code of these records, not the bits of the address. */
enum {
    ORV_GSM_PLAN_UNKNOWN = 0,
    ORV_GSM_PLAN_ISDN = 1,    /* E.164; 0001 in an address */
    ORV_GSM_PLAN_DATA = 2,    /* X.121; 0011 */
    ORV_GSM_PLAN_TELEX = 3,   /* 0100 */
    ORV_GSM_PLAN_PRIVATE = 4, /* 1001 */
    ORV_GSM_PLAN_ERMES = 5,   /* 1010 */
    ORV_GSM_PLAN_NATIONAL = 6 /* 1000 */
};

/* Alphabet. */
enum { ORV_GSM_ALPHABET_7BIT = 0, ORV_GSM_ALPHABET_8BIT = 1, ORV_GSM_ALPHABET_UCS2 = 2, ORV_GSM_ALPHABET_RESERVED = 3 };

/* Message class: 0 to 3, or none. */
enum { ORV_GSM_CLASS_NONE = 4 };

/* What the message stores hold. */
typedef struct tagORV_GSM_SMS_STATUS {
    ULONG sizeStruct;    /* 28 */
    BYTE bFlag;          /* 0 */
    ULONG uReserved1[2]; /* not written */
    ULONG uReserved2;    /* 0 */
    ULONG uUnreadCount;  /* unread messages of the SIM and of the module */
    ULONG uHundred;      /* 100 */
} ORV_GSM_SMS_STATUS;

/*
 * A received message. Fields are written as far as the message goes: clear the record before each call. Digits are
 * values from 0 to 15, one an octet, not characters.
 */
typedef struct tagORV_GSM_SMS_IN {
    ULONG sizeStruct;         /* the caller's; neither read nor written */
    ULONG uMsgIndex;          /* place of the message in its store */
    ULONG uMsgPresent;        /* 1 = the record holds a message; 0 = there is no unread one */
    ULONG uReserved1[3];      /* not written */
    ULONG uSmscTypeOfNumber;  /* service centre: ORV_GSM_TON_… */
    ULONG uSmscNumberingPlan; /* ORV_GSM_PLAN_… */
    ULONG uReserved2;         /* not written */
    BYTE abSmscDigits[ORV_GSM_SMS_MAX_DIGITS];
    ULONG uSenderTypeOfNumber;  /* TP-OA: ORV_GSM_TON_… */
    ULONG uSenderNumberingPlan; /* ORV_GSM_PLAN_… */
    ULONG uSenderAddrLen;       /* semi-octets, as received */
    BYTE abSenderDigits[ORV_GSM_SMS_MAX_DIGITS];
    ULONG uPidGroup;      /* TP-PID, bits 7 to 4 in place: 0x40 */
    ULONG uPidValue;      /* TP-PID, bits 3 to 0 */
    ULONG eEncoding;      /* TP-DCS: ORV_GSM_ALPHABET_… */
    ULONG eMessageClass;  /* 0 to 3, or ORV_GSM_CLASS_NONE */
    ULONG bCompressed;    /* 1 = compressed text */
    ULONG uReserved3;     /* not written */
    BYTE abTimeStamp[14]; /* TP-SCTS: the units of year, month, day, hour, minute, second, zone; the other 7 not written
                           */
    ULONG uUserDataLen;   /* TP-UDL as received: septets of the 7-bit alphabet, else octets, the header included */
    BYTE abUserData[ORV_GSM_SMS_IN_ROOM]; /* what follows the header, without fill bits; 7-bit text is packed */
    ULONG uUserDataHeaderLen;             /* octets at abUserDataHeader; 0 = the message has none */
    BYTE abUserDataHeader[ORV_GSM_SMS_HEADER_ROOM]; /* information elements */
    BYTE bMoreMessages;                             /* 1 = the list of messages goes on after this one */
} ORV_GSM_SMS_IN;

/* A message to be sent. Digits of an address are packed two an octet, the first one in the low half. */
typedef struct tagORV_GSM_SMS_OUT {
    ULONG sizeStruct;         /* not read */
    ULONG uReserved1[2];      /* not read */
    ULONG uUserDataLen;       /* characters at abUserData, for 8-bit data octets; at most ORV_GSM_SMS_MAX_USER_DATA */
    ULONG uSmscTypeOfNumber;  /* service centre: ORV_GSM_TON_… */
    ULONG uSmscNumberingPlan; /* ORV_GSM_PLAN_… */
    ULONG uSmscAddrLen;       /* digits, at most 40; 0 = the module's own service centre */
    BYTE abSmscAddr[20];
    ULONG uDestTypeOfNumber;  /* TP-DA: ORV_GSM_TON_… */
    ULONG uDestNumberingPlan; /* ORV_GSM_PLAN_… */
    ULONG uDestAddrLen;       /* digits, 1 to 56 */
    BYTE abDestAddr[28];
    ULONG eEncoding;                                /* ORV_GSM_ALPHABET_… */
    ULONG eMessageClass;                            /* 0 to 3, or ORV_GSM_CLASS_NONE */
    ULONG bCompressed;                              /* 1 = the user data is compressed */
    ULONG uReserved2[4];                            /* not read */
    BYTE abUserData[ORV_GSM_SMS_OUT_ROOM];          /* as it is sent; 7-bit text is packed, without fill bits */
    ULONG uUserDataHeaderLen;                       /* octets at abUserDataHeader, at most 255; 0 = none */
    BYTE abUserDataHeader[ORV_GSM_SMS_HEADER_ROOM]; /* information elements, sent as they are */
} ORV_GSM_SMS_OUT;

/* Phone books. */
enum { ORV_PHONEBOOK_VOICE_NUMBER = 0 };

/* An entry of the phone book. Texts are terminated. */
typedef struct tagORV_PHONEBOOK_ENTRY {
    ULONG sizeStruct; /* 180 */
    ULONG eType;      /* as asked for */
    ULONG uIndex;     /* as asked for */
    WCHAR szNumber[42];
    WCHAR szName[42]; /* empty: the module keeps none */
} ORV_PHONEBOOK_ENTRY;

#ifdef __cplusplus
static_assert(sizeof(ORV_GSM_SMS_STATUS) == 28 && offsetof(ORV_GSM_SMS_STATUS, uReserved1) == 8 &&
                  offsetof(ORV_GSM_SMS_STATUS, uUnreadCount) == 20,
              "flag octet padded");
static_assert(offsetof(ORV_GSM_SMS_IN, uSmscTypeOfNumber) == 24 && offsetof(ORV_GSM_SMS_IN, abSmscDigits) == 36 &&
                  offsetof(ORV_GSM_SMS_IN, uSenderTypeOfNumber) == 56 && offsetof(ORV_GSM_SMS_IN, uPidGroup) == 88 &&
                  offsetof(ORV_GSM_SMS_IN, eEncoding) == 96 && offsetof(ORV_GSM_SMS_IN, abTimeStamp) == 112 &&
                  offsetof(ORV_GSM_SMS_IN, uUserDataLen) == 128 && offsetof(ORV_GSM_SMS_IN, abUserData) == 132 &&
                  offsetof(ORV_GSM_SMS_IN, uUserDataHeaderLen) == 1156 &&
                  offsetof(ORV_GSM_SMS_IN, abUserDataHeader) == 1160 &&
                  offsetof(ORV_GSM_SMS_IN, bMoreMessages) == 1416 && sizeof(ORV_GSM_SMS_IN) == 1420,
              "time stamp and last flag padded");
static_assert(offsetof(ORV_GSM_SMS_OUT, uUserDataLen) == 12 && offsetof(ORV_GSM_SMS_OUT, abSmscAddr) == 28 &&
                  offsetof(ORV_GSM_SMS_OUT, uDestTypeOfNumber) == 48 && offsetof(ORV_GSM_SMS_OUT, abDestAddr) == 60 &&
                  offsetof(ORV_GSM_SMS_OUT, eEncoding) == 88 && offsetof(ORV_GSM_SMS_OUT, abUserData) == 116 &&
                  offsetof(ORV_GSM_SMS_OUT, uUserDataHeaderLen) == 1144 &&
                  offsetof(ORV_GSM_SMS_OUT, abUserDataHeader) == 1148 && sizeof(ORV_GSM_SMS_OUT) == 1404,
              "no padding");
static_assert(sizeof(ORV_PHONEBOOK_ENTRY) == 180 && offsetof(ORV_PHONEBOOK_ENTRY, szNumber) == 12 &&
                  offsetof(ORV_PHONEBOOK_ENTRY, szName) == 96,
              "no padding");
#endif

/*
 * Has new messages stored in the module and reported to the client, switches cell broadcasts on, and counts the unread
 * messages of the SIM and of the module. Whatever of the first two fails is only logged.
 * status [out]: at most 1000 of each store are counted. Returns 0, 4, 10, 17 or vendor, of a list that cannot be read.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetSMSMessageStatus(ORV_GSM_SMS_STATUS* status);

/*
 * Takes the next unread message out of its store: the SIM's first, then the module's.
 * record [out]: clear it before each call. uMsgPresent tells whether there was a message; it is then removed, unless
 * the module refuses, which is only logged. bMoreMessages counts what is listed behind it.
 * A message that cannot be read stays in its store, and the next one is tried; when it was the last one, its code is
 * the result: 2, 4 or 5. Octets that end early are no failure: the record then holds what there was, and the message is
 * gone from the store.
 * Returns 0, 2, 4, 5, 10, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvRetrieveSMSMessageGobi(ORV_GSM_SMS_IN* record);
/* The same, under the name that clients of cell broadcasts use. */
ORV_API ORV_RCODE ORV_CALL OrvRetrieveCBSMSMessageGobi(ORV_GSM_SMS_IN* record);

/*
 * Builds a message and holds it for OrvSendSMS. One is held at a time: an earlier one is dropped, also when this one is
 * refused. A message with a user data header keeps the link to the network up for three seconds once it is sent, for
 * the part that follows.
 * record [in]. Returns 0, 10 or 17; 2 for more than 1024 characters, or more than fit the record or the module; 4 for
 * no destination, an address longer than its field, an alphabet above 2 or a class above 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvStoreSMSMessageGobi(const ORV_GSM_SMS_OUT* record);

/*
 * Sends the message that is held. Where notification 501 is enabled it tells the outcome, about 100 ms later and on a
 * thread of its own: status 0 sent, 1 not sent, of the sending that was the last one by then. A message that the module
 * does not take stays held, to be sent again.
 * Returns 0, 10 or 17; 5 when no message is held; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSendSMS(void);

/*
 * The service centre's address.
 * address [out]: `size` octets, of which the low 8 bits count; a text that does not fit is cut and terminated.
 * international [out]: 1 when its type is "145", else 0.
 * Returns 0; 10; 17; 2 when the low 8 bits of the size are 0; 4 for a null pointer. When the module does not tell, the
 * result is 0 all the same: the address is then "+7", of which one or two octets hold the beginning without a
 * terminator, and international is not written.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetGsmSMSCAddr(ULONG size, char* address, BYTE* international);
/* address [in]: terminated. international [in]: 1 = type "145"; any other value = "129". Returns 0, 4, 10, 17 or
 * vendor. */
ORV_API ORV_RCODE ORV_CALL OrvSetGsmSMSCAddr(const char* address, BYTE international);

/*
 * An entry of a phone book. Only the subscriber's own voice number is served, as every entry of
 * ORV_PHONEBOOK_VOICE_NUMBER. entry [out]: an empty number when the module has none. Returns 0, 4, 10, 17 or vendor; 1
 * for another phone book.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPhonebookEntry(ULONG eType, ULONG uIndex, ORV_PHONEBOOK_ENTRY* entry);

#endif /* TALVEK_GSM_SMS_H */
