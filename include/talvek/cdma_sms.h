/*
 * Text messages on CDMA modules. The terms are those of 3GPP2 C.S0015.
 *
 * Results, in the order in which they are found: 17 before start-up; 1 on a module that is not CDMA (also while none is
 * selected); 4 for a null record; then what the function does. "vendor": as in core.h.
 */
#ifndef TALVEK_CDMA_SMS_H
#define TALVEK_CDMA_SMS_H

#include "talvek/rcode.h"

/* Digits that an address or a call-back number of a record holds; the fields have room for a terminator more. */
enum { ORV_CDMA_SMS_MAX_DIGITS = 66 };

/* Octets of user data that a message to be sent has at most. */
enum { ORV_CDMA_SMS_MAX_USER_DATA = 160 };

/* ORV_CDMA_SMS.uStructSize, in every build: the size of the record where pointers have 32 bits. */
enum { ORV_CDMA_SMS_STRUCT_SIZE = 348 };

/* ORV_CDMA_SMS.uParamMask: which parts of the record have been written. */
enum {
    ORV_CDMA_SMS_HAS_REPLY_OPTION = 0x1,
    ORV_CDMA_SMS_HAS_ADDRESS = 0x40,
    ORV_CDMA_SMS_HAS_USER_DATA = 0x100,
    ORV_CDMA_SMS_HAS_PRIORITY = 0x200,
    ORV_CDMA_SMS_HAS_MESSAGE_COUNT = 0x1000,
    ORV_CDMA_SMS_HAS_CALLBACK = 0x8000,
    ORV_CDMA_SMS_HAS_TIME_STAMP = 0x10000
};

/* uMsgCategory */
enum { ORV_CDMA_SMS_CATEGORY_TEXT = 1, ORV_CDMA_SMS_CATEGORY_VOICE_MAIL = 2 };

/* MESSAGE_TYPE of the message identifier. */
enum { ORV_CDMA_SMS_DELIVER = 1, ORV_CDMA_SMS_SUBMIT = 2 };

/* PRIORITY */
enum {
    ORV_CDMA_SMS_PRIORITY_NORMAL = 0,
    ORV_CDMA_SMS_PRIORITY_INTERACTIVE = 1,
    ORV_CDMA_SMS_PRIORITY_URGENT = 2,
    ORV_CDMA_SMS_PRIORITY_EMERGENCY = 3
};

/* MSG_ENCODING. All of these are read; 7-bit ASCII and Unicode are written. */
enum {
    ORV_CDMA_SMS_ENCODING_OCTET = 0,
    ORV_CDMA_SMS_ENCODING_ASCII = 2,
    ORV_CDMA_SMS_ENCODING_UNICODE = 4,
    ORV_CDMA_SMS_ENCODING_GSM = 9
};

/* What the message store holds. */
typedef struct tagORV_CDMA_SMS_STATUS {
    ULONG sizeStruct;   /* 16 */
    ULONG uReserved1;   /* 0 */
    ULONG uUnreadCount; /* messages from the network that have not been read */
    ULONG uReserved2;   /* 0 */
} ORV_CDMA_SMS_STATUS;

/*
 * A received message. Clear the record before each call: only the parts named by uParamMask are written, and pUserData
 * is a block to free, with OrvFreeBuffer, when uParamMask has ORV_CDMA_SMS_HAS_USER_DATA and the pointer is not null.
 * Texts are terminated.
 */
typedef struct tagORV_CDMA_SMS {
    ULONG sizeStruct;   /* the caller's; neither read nor written */
    ULONG uLead;        /* neither read nor written */
    ULONG uStructSize;  /* ORV_CDMA_SMS_STRUCT_SIZE */
    ULONG uParamMask;   /* ORV_CDMA_SMS_HAS_… */
    ULONG uReserved1;   /* 0 */
    ULONG uMsgCategory; /* ORV_CDMA_SMS_CATEGORY_… */
    BYTE uReplySeq;     /* REPLY_SEQ of the bearer reply option, 0 to 63 */
    ULONG uMsgType;     /* ORV_CDMA_SMS_DELIVER */
    BYTE uDigitMode;    /* of the originating address: 0 */
    BYTE uNumberMode;   /* 0 */
    BYTE uNumberType;   /* 0 */
    BYTE uNumberPlan;   /* 0 */
    BYTE uAddrLen;      /* digits at szAddress, at most ORV_CDMA_SMS_MAX_DIGITS */
    WCHAR szAddress[ORV_CDMA_SMS_MAX_DIGITS + 1];
    BYTE uCallbackLen; /* digits or characters at szCallback, at most ORV_CDMA_SMS_MAX_DIGITS */
    WCHAR szCallback[ORV_CDMA_SMS_MAX_DIGITS + 1];
    ULONG uPriority; /* ORV_CDMA_SMS_PRIORITY_… */
    BYTE uNumMsgs;   /* messages waiting, as received: two BCD digits */
    ULONG uEncoding; /* ORV_CDMA_SMS_ENCODING_… */
    BYTE uYear;      /* of the message centre time stamp: 0 to 99 */
    BYTE uMonth;     /* this and the following as received, two BCD digits: 0x12 is December */
    BYTE uDay;
    BYTE uHour;
    BYTE uMinute;
    BYTE uSecond;
    ULONG uReserved2;     /* 1 */
    WORD uMsgId;          /* MESSAGE_ID */
    ULONG uMsgsRemaining; /* entries of the message store after this one */
    BYTE* pUserData;      /* the characters; Unicode ones in the host's byte order, and two octets 0 behind them */
    ULONG uUserDataLen;   /* characters at pUserData, for Unicode octets */
} ORV_CDMA_SMS;

/* A message to be sent. What lies in a field named uReserved is not read. */
typedef struct tagORV_CDMA_SMS_SEND {
    ULONG sizeStruct; /* not read */
    WORD uMsgId;      /* MESSAGE_ID, which notification 501 carries, too */
    ULONG uReserved1[5];
    ULONG uMsgType; /* ORV_CDMA_SMS_SUBMIT; below 7 */
    ULONG uReserved2;
    BYTE uAddrLen;                                 /* digits at szAddress, 1 to ORV_CDMA_SMS_MAX_DIGITS */
    WCHAR szAddress[ORV_CDMA_SMS_MAX_DIGITS + 1];  /* destination; needs no terminator */
    BYTE uCallbackLen;                             /* digits at szCallback, at most ORV_CDMA_SMS_MAX_DIGITS; 0 = none */
    WCHAR szCallback[ORV_CDMA_SMS_MAX_DIGITS + 1]; /* needs no terminator */
    ULONG uPriority;                               /* ORV_CDMA_SMS_PRIORITY_… */
    ULONG uReserved3;
    ULONG uEncoding; /* ORV_CDMA_SMS_ENCODING_ASCII or _UNICODE */
    ULONG uReserved4[3];
    const BYTE* pUserData; /* the caller's; one octet a character, for Unicode two, the high one first */
    ULONG uUserDataLen;    /* octets at pUserData, at most ORV_CDMA_SMS_MAX_USER_DATA */
    ULONG uReserved5[2];
} ORV_CDMA_SMS_SEND;

#ifdef __cplusplus
static_assert(sizeof(ORV_CDMA_SMS_STATUS) == 16 && offsetof(ORV_CDMA_SMS_STATUS, uUnreadCount) == 8, "four words");
static_assert(offsetof(ORV_CDMA_SMS, uStructSize) == 8 && offsetof(ORV_CDMA_SMS, uParamMask) == 12 &&
                  offsetof(ORV_CDMA_SMS, uMsgCategory) == 20 && offsetof(ORV_CDMA_SMS, uReplySeq) == 24 &&
                  offsetof(ORV_CDMA_SMS, uMsgType) == 28 && offsetof(ORV_CDMA_SMS, uDigitMode) == 32 &&
                  offsetof(ORV_CDMA_SMS, uAddrLen) == 36 && offsetof(ORV_CDMA_SMS, szAddress) == 38 &&
                  offsetof(ORV_CDMA_SMS, uCallbackLen) == 172 && offsetof(ORV_CDMA_SMS, szCallback) == 174 &&
                  offsetof(ORV_CDMA_SMS, uPriority) == 308 && offsetof(ORV_CDMA_SMS, uNumMsgs) == 312 &&
                  offsetof(ORV_CDMA_SMS, uEncoding) == 316 && offsetof(ORV_CDMA_SMS, uYear) == 320 &&
                  offsetof(ORV_CDMA_SMS, uReserved2) == 328 && offsetof(ORV_CDMA_SMS, uMsgId) == 332 &&
                  offsetof(ORV_CDMA_SMS, uMsgsRemaining) == 336,
              "the same in every build");
static_assert(offsetof(ORV_CDMA_SMS_SEND, uMsgId) == 4 &&
                  offsetof(ORV_CDMA_SMS_SEND, uMsgType) == offsetof(ORV_CDMA_SMS, uMsgType) &&
                  offsetof(ORV_CDMA_SMS_SEND, uAddrLen) == offsetof(ORV_CDMA_SMS, uAddrLen) &&
                  offsetof(ORV_CDMA_SMS_SEND, szAddress) == offsetof(ORV_CDMA_SMS, szAddress) &&
                  offsetof(ORV_CDMA_SMS_SEND, uCallbackLen) == offsetof(ORV_CDMA_SMS, uCallbackLen) &&
                  offsetof(ORV_CDMA_SMS_SEND, szCallback) == offsetof(ORV_CDMA_SMS, szCallback) &&
                  offsetof(ORV_CDMA_SMS_SEND, uPriority) == offsetof(ORV_CDMA_SMS, uPriority) &&
                  offsetof(ORV_CDMA_SMS_SEND, uEncoding) == offsetof(ORV_CDMA_SMS, uEncoding),
              "where a received message has them");
static_assert(sizeof(ORV_CDMA_SMS) == (sizeof(void*) == 4 ? 348 : 360) &&
                  offsetof(ORV_CDMA_SMS, pUserData) == (sizeof(void*) == 4 ? 340 : 344) &&
                  offsetof(ORV_CDMA_SMS, uUserDataLen) == (sizeof(void*) == 4 ? 344 : 352),
              "received: pointer and length");
static_assert(sizeof(ORV_CDMA_SMS_SEND) == (sizeof(void*) == 4 ? 348 : 360) &&
                  offsetof(ORV_CDMA_SMS_SEND, pUserData) == (sizeof(void*) == 4 ? 332 : 336) &&
                  offsetof(ORV_CDMA_SMS_SEND, uUserDataLen) == (sizeof(void*) == 4 ? 336 : 344),
              "to be sent: pointer and length two words earlier");
#endif

/*
 * How many unread messages the module's store holds, at most 1000.
 * status [out]: written on 0. Returns 0, 1, 4, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetCdmaSMSMessageStatus(ORV_CDMA_SMS_STATUS* status);

/*
 * Takes the next unread message out of the module's store.
 * record [out]: clear it before each call. After a 0 one of three things has happened:
 *   - uParamMask has ORV_CDMA_SMS_HAS_ADDRESS: a message was read and removed from the store. uMsgsRemaining tells how
 *     many entries the store's list has behind it; pUserData is the client's, who frees it with OrvFreeBuffer.
 *   - uParamMask is 0 and notification 2020 came: an indication of waiting messages was delivered by it, on this
 *     thread, and removed; only uMsgsRemaining was written.
 *   - uParamMask is 0 and it did not: there was no unread message, and nothing was written. Ask the status first.
 * A message that cannot be read stays in the store, and the next one is tried; when it was the last one, its code is
 * the result: 1, 5 or 6, an indication that is not one octet long included (1).
 * Returns 0, 1, 4, 5, 6, 17 or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvRetrieveCdmaSMSMessage(ORV_CDMA_SMS* record);

/*
 * Builds a message and holds it for OrvSendCdmaSMS. One is held at a time: an earlier one is dropped, also when this
 * one is refused.
 * record [in]: the body is copied; with an encoding other than the two named the message goes out without characters.
 * Returns 0, 1 or 17; 4 for a null record or body, more than 160 octets of it, no destination, a number longer than its
 * field or shorter than its length says, a message type above 6 or a priority above 3; 5 for lack of memory.
 */
ORV_API ORV_RCODE ORV_CALL OrvStoreCdmaSMSMessage(const ORV_CDMA_SMS_SEND* record);

/*
 * Sends the message that is held. Where notification 501 is enabled it tells the outcome, about 100 ms later and on a
 * thread of its own: status 0 sent, 2 not sent, of the sending that was the last one by then. A message that the module
 * does not take stays held, to be sent again.
 * Returns 0, 1 or 17; 5 when no message is held; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSendCdmaSMS(void);

#endif /* TALVEK_CDMA_SMS_H */
