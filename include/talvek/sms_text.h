/*
 * Additions to the interface: message texts. The records of "talvek/gsm_sms.h" and "talvek/cdma_sms.h" carry texts as
 * they go over the air; these functions turn them into UTF-8 and back, split long texts and join their parts, and
 * decode and encode messages without a module.
 *
 * All of them work on the caller's memory, keep nothing, and need no start-up and no module. They may be called from
 * several threads at once, as long as no two use the same joiner.
 *
 * Texts going in are UTF-8 and have a length in octets; ORV_TEXT_TERMINATED stands for "up to the terminator". Texts
 * coming out are terminated UTF-8. A capacity is that of the buffer beside it, for a text with its terminator. A text
 * that does not fit gives 2 with the beginning of it, cut between two characters; its length, without the terminator,
 * is written in either case, so that a call with a null buffer and a capacity of 0 asks for it. What lies in the buffer
 * behind the terminator may change. A text may hold U+0000: its length tells, not its terminator.
 *
 * Results, unless a function says otherwise: 0; 1 where there is no text or the alphabet lacks a character; 2 where a
 * buffer is too small; 4 for a null pointer, or an argument out of its range; 5 where a text is not well-formed UTF-8,
 * or where what came from the network contradicts itself. Outputs are written on 0, and as said on 2.
 *
 * The time stamp of a received GSM message is not among these helpers: of each two digits the record has the units
 * alone, for year, month, day, hour, minute, second and zone. "21 30 41 21 35 85 00" on the air, 12 March 2014,
 * 12:53:58, reads 2 3 4 2 3 8 0. Who needs the time takes it from the octets of the message ("talvekctl pdu explain"
 * shows it).
 */
#ifndef TALVEK_SMS_TEXT_H
#define TALVEK_SMS_TEXT_H

#include "talvek/cdma_sms.h"
#include "talvek/gsm_sms.h"
#include "talvek/rcode.h"

/* The length of a text that ends with its terminator. */
#define ORV_TEXT_TERMINATED 0xFFFFFFFFu

/* The longest text, and the most octets or septets, that these functions take: 4 above it. */
#define ORV_TEXT_MAX 0x1000000u

/* --- the GSM 7 bit default alphabet ------------------------------------------------------------------------------- */

/*
 * How many septets a text takes in the GSM 7 bit default alphabet with its extension table (3GPP TS 23.038, 6.2.1 and
 * 6.2.1.1): one a character, two for each of ^ { } \ [ ~ ] | the euro and the form feed. A message holds 160.
 * text, textLength [in]. septets [out].
 * Returns 0; 1 when the alphabet lacks a character of the text; 4; 5.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmTextSeptets(const char* text, ULONG textLength, ULONG* septets);

/*
 * Packs a text into septets of the same alphabet, the first in the least significant bits of the first octet. No
 * character is replaced by a similar one.
 * text, textLength [in]. octets [out]: (septets * 7 + 7) / 8 of them, bits behind the last septet 0. septets [out]: how
 * many the text takes, also on 2.
 * Returns 0; 1 when the alphabet lacks a character; 2 when the octets do not fit: nothing else is written; 4; 5.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmTextPack(const char* text, ULONG textLength, BYTE* octets, ULONG capacity,
                                          ULONG* septets);

/*
 * The text of packed septets. An escape at the end, and a second escape behind one, is a space; an escape before a code
 * that the extension table lacks is left out, and the code is a character of the default alphabet (TS 23.038, 6.2.1.1).
 * octets, octetCount [in]. first [in]: septets to leave out; in the user data of a message with a header of h octets
 * the text begins at septet ((h + 1) * 8 + 6) / 7. septets [in]: how many to read.
 * text [out]. length [out]: octets of the whole text.
 * Returns 0; 2; 4; 5 when the octets do not hold so many septets.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmTextUnpack(const BYTE* octets, ULONG octetCount, ULONG first, ULONG septets,
                                            char* text, ULONG capacity, ULONG* length);

/* --- UCS2 --------------------------------------------------------------------------------------------------------- */

/* The order of a unit's two octets. */
enum {
    ORV_UCS2_BIG_ENDIAN = 0, /* as on the air: ORV_GSM_SMS_IN, ORV_GSM_SMS_OUT, ORV_CDMA_SMS_SEND */
    ORV_UCS2_HOST = 1        /* the host's: ORV_CDMA_SMS */
};

/*
 * The units of a text, characters above U+FFFF as surrogate pairs.
 * text, textLength [in]. order [in]: ORV_UCS2_…. octets [out]: need no alignment. octetCount [out]: how many the text
 * takes, also on 2.
 * Returns 0; 2 when the octets do not fit: nothing else is written; 4; 5.
 */
ORV_API ORV_RCODE ORV_CALL OrvUcs2FromText(const char* text, ULONG textLength, ULONG order, BYTE* octets,
                                           ULONG capacity, ULONG* octetCount);

/*
 * The text of UCS2 units. A surrogate without its partner, and an odd octet at the end, becomes U+FFFD.
 * octets, octetCount [in]: need no alignment. order [in]: ORV_UCS2_…. text [out]. length [out].
 * Returns 0; 2; 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvUcs2ToText(const BYTE* octets, ULONG octetCount, ULONG order, char* text, ULONG capacity,
                                         ULONG* length);

/* --- digits and addresses ----------------------------------------------------------------------------------------- */

/*
 * Packs digits as semi-octets (3GPP TS 23.040, 9.1.2.3): two an octet, the first in the low half, an odd last one with
 * the filler 15 above it.
 * digits [in]: terminated text of 0 to 9, *, #, a, b, c; the letters may be capitals. octets [out]. digitCount [out]:
 * also on 2.
 * Returns 0; 2 when (digitCount + 1) / 2 octets do not fit: the octets have the beginning; 4, also for any other
 * character.
 */
ORV_API ORV_RCODE ORV_CALL OrvSemiOctetsFromText(const char* digits, BYTE* octets, ULONG capacity, ULONG* digitCount);

/*
 * The text of semi-octets, up to the first filler.
 * octets, octetCount [in]. digitCount [in]: how many to read at most. text [out]. length [out].
 * Returns 0; 2; 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvSemiOctetsToText(const BYTE* octets, ULONG octetCount, ULONG digitCount, char* text,
                                               ULONG capacity, ULONG* length);

/*
 * The address fields of ORV_GSM_SMS_OUT from a number as people write it: "+4915…" is an international number, one
 * without "+" of unknown type, and either belongs to the telephone numbering plan. Take care of 4: there must be a
 * digit, and no blank or hyphen between digits.
 * number [in]: terminated. typeOfNumber, numberingPlan, digitCount [out]. octets [out]: as OrvSemiOctetsFromText.
 * Returns 0; 2, with digitCount written; 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmAddressFromText(const char* number, ULONG* typeOfNumber, ULONG* numberingPlan,
                                                 ULONG* digitCount, BYTE* octets, ULONG capacity);

/*
 * An address of ORV_GSM_SMS_IN as text: "+" before an international number; a name in the GSM alphabet where the type
 * is ORV_GSM_TON_ALPHANUMERIC. The record leaves out digits of 15 in the high half of an octet, which some names have:
 * these come out wrong behind it, and nothing in the record tells. Who has the octets of TP-OA hands them to
 * OrvGsmTextUnpack instead, with digits * 4 / 7 septets.
 * typeOfNumber [in]. digits [in]: values, one an octet, a number up to the first filler. digitCount [in]: those above
 * ORV_GSM_SMS_MAX_DIGITS are not read. text [out]. length [out].
 * Returns 0; 2; 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmAddressToText(ULONG typeOfNumber, const BYTE* digits, ULONG digitCount, char* text,
                                               ULONG capacity, ULONG* length);

/* --- whole records ------------------------------------------------------------------------------------------------ */

/*
 * The text of a received GSM message, or of the one part that the record has of a long message.
 * record [in]: as OrvRetrieveSMSMessageGobi or OrvGsmSmsDecode fills it. text [out]. length [out].
 * Returns 0; 1 for 8-bit data, a reserved alphabet and compressed text; 2; 4; 5 when the header is longer than the user
 * data, or the user data than the record.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmSmsToText(const ORV_GSM_SMS_IN* record, char* text, ULONG capacity, ULONG* length);

/* The sender of a received GSM message, as OrvGsmAddressToText. Returns 0; 2; 4. */
ORV_API ORV_RCODE ORV_CALL OrvGsmSmsSender(const ORV_GSM_SMS_IN* record, char* text, ULONG capacity, ULONG* length);

/*
 * The text of a received CDMA message; an empty one when it has no user data.
 * Characters of the GSM alphabet are taken as the record has them, seven bits each from the most significant end on.
 * Some senders pack them as 3GPP TS 23.038 does; then the text is wrong, and the record lacks the bits to mend it.
 * record [in]: as OrvRetrieveCdmaSMSMessage or OrvCdmaSmsDecode fills it. text [out]. length [out].
 * Returns 0; 1 for octets, of which nothing tells the alphabet; 2; 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvCdmaSmsToText(const ORV_CDMA_SMS* record, char* text, ULONG capacity, ULONG* length);

/* How a text is to be sent. A null pointer in its place stands for ORV_SMS_OPTIONS_DEFAULT. */
typedef struct tagORV_SMS_OPTIONS {
    ULONG sizeStruct;     /* sizeof(ORV_SMS_OPTIONS) */
    ULONG bUcs2;          /* 0 = UCS2 only when the GSM alphabet lacks a character; 1 = always */
    ULONG eMessageClass;  /* 0 to 3 (0 shows at once and is not kept), or ORV_GSM_CLASS_NONE */
    ULONG uReference;     /* of a long message: other than that of the last one to the same receiver */
    ULONG bWideReference; /* 0 = the reference has 8 bits, which every telephone reads; 1 = 16, in a longer header */
    const char* pSmsc;    /* the service centre's number, as OrvGsmAddressFromText takes it; null = the module's own */
} ORV_SMS_OPTIONS;

#define ORV_SMS_OPTIONS_DEFAULT                                                                                        \
    {                                                                                                                  \
        sizeof(ORV_SMS_OPTIONS), 0, ORV_GSM_CLASS_NONE, 0, 0, NULL                                                     \
    }

/* Parts that a long message has at most (3GPP TS 23.040, 9.2.3.24.1). */
enum { ORV_SMS_MAX_PARTS = 255 };

/*
 * Fills the record of one GSM message from a text: in the GSM alphabet where that has all characters, else in UCS2.
 * destination [in]: terminated; as OrvGsmAddressFromText. text, textLength [in]. options [in]: or null. record [out]:
 * all of it is written; hand it to OrvStoreSMSMessageGobi or OrvGsmSmsEncode.
 * Returns 0; 2 when the text needs more than one message (160 septets, 70 units): see OrvGsmSmsPart; 4, also for a
 * number that is too long; 5.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmSmsFromText(const char* destination, const char* text, ULONG textLength,
                                             const ORV_SMS_OPTIONS* options, ORV_GSM_SMS_OUT* record);

/*
 * Fills the record of one part of a text of any length, which becomes a concatenated message (3GPP TS 23.040,
 * 9.2.3.24.1) when it does not fit into one: parts of 153 septets or 67 units, with a wide reference 152 or 66. Neither
 * an escape and its character nor a surrogate pair is split.
 *
 *     for (ULONG part = 0, count = 1; part < count; part++) {
 *         if (OrvGsmSmsPart(number, text, ORV_TEXT_TERMINATED, &options, part, &record, &count)) break;
 *         if (OrvStoreSMSMessageGobi(&record) || OrvSendSMS()) break;
 *     }
 *
 * part [in]: from 0. record [out]: all of it is written. count [out]: parts of the whole text, 1 for one without a
 * header; written on 0.
 * Returns 0; 2 for a text of more than ORV_SMS_MAX_PARTS parts; 4, also for a part that there is not; 5.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmSmsPart(const char* destination, const char* text, ULONG textLength,
                                         const ORV_SMS_OPTIONS* options, ULONG part, ORV_GSM_SMS_OUT* record,
                                         ULONG* count);

/*
 * Fills the record of one CDMA message: in 7-bit ASCII where that has all characters, else in Unicode. There are no
 * long messages here.
 * destination [in]: terminated, 1 to ORV_CDMA_SMS_MAX_DIGITS digits; "+", "*" and "#" are not among them. text,
 * textLength [in]: not empty. record [out]: all of it is written, to be submitted with normal priority, MESSAGE_ID 0
 * and no call-back number. userData [out]: the caller's; the record points into it, so it lives as long as the record
 * is used. capacity [in]: ORV_CDMA_SMS_MAX_USER_DATA is always enough.
 * Returns 0; 2 when the text takes more than ORV_CDMA_SMS_MAX_USER_DATA octets or more than capacity; 4; 5.
 */
ORV_API ORV_RCODE ORV_CALL OrvCdmaSmsFromText(const char* destination, const char* text, ULONG textLength,
                                              ORV_CDMA_SMS_SEND* record, BYTE* userData, ULONG capacity);

/* --- joining the parts of a long message -------------------------------------------------------------------------- */

/* What a part says about the message that it belongs to. */
typedef struct tagORV_SMS_CONCATENATION {
    ULONG uReference;
    ULONG bWideReference; /* 1 = the reference has 16 bits: another one than the same with 8 */
    ULONG uParts;         /* of the message, 1 to 255 */
    ULONG uPart;          /* this one, 1 to uParts */
} ORV_SMS_CONCATENATION;

/*
 * Whether a received message is a part of a concatenated one. Of several such elements in a header the last one counts;
 * one with part 0, of 0 parts or with a part above their number does not count, nor does any element of a header whose
 * lengths do not add up (3GPP TS 23.040, 9.2.3.24 and 9.2.3.24.1).
 * record [in]. concatenation [out].
 * Returns 0; 1 when the message stands by itself; 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmSmsConcatenation(const ORV_GSM_SMS_IN* record, ORV_SMS_CONCATENATION* concatenation);

/* Octets of memory that a joiner takes for each part of its message. */
enum { ORV_SMS_JOINER_PART = 136 };

/*
 * A joiner collects the parts of one message, the one whose part comes first. A client that expects several at a time
 * has a joiner for each. Fields are for reading.
 *
 * OrvRetrieveSMSMessageGobi deletes a message from the module before the client has its text. A client that wants to
 * lose none when it ends between two parts leaves them there: it lists and reads the messages with
 * COrvGobiDll::GetSMSList and GetSMS, decodes each with OrvGsmSmsDecode, adds it, remembers its index, and calls
 * DeleteSMS for the indices of a message only when its text has been put away safely. Nothing here deletes anything
 * from the module.
 */
typedef struct tagORV_SMS_JOINER {
    ULONG sizeStruct;              /* sizeof(ORV_SMS_JOINER) */
    BYTE* pMemory;                 /* the caller's */
    ULONG uCapacity;               /* of it, in octets */
    ULONG uNeeded;                 /* of it for this message: uParts * ORV_SMS_JOINER_PART */
    ULONG uReceived;               /* parts that are there */
    ORV_SMS_CONCATENATION message; /* of the part that came first; uParts is 0 before */
    ULONG uSenderTypeOfNumber;
    ULONG uSenderNumberingPlan;
    ULONG uSenderAddrLen;
    BYTE abSenderDigits[ORV_GSM_SMS_MAX_DIGITS];
} ORV_SMS_JOINER;

#ifdef __cplusplus
static_assert(offsetof(ORV_SMS_OPTIONS, pSmsc) == (sizeof(void*) == 4 ? 20 : 24) &&
                  sizeof(ORV_SMS_OPTIONS) == (sizeof(void*) == 4 ? 24 : 32),
              "five words and a pointer");
static_assert(sizeof(ORV_SMS_CONCATENATION) == 16 && offsetof(ORV_SMS_CONCATENATION, uPart) == 12, "four words");
static_assert(offsetof(ORV_SMS_JOINER, pMemory) == sizeof(void*) &&
                  offsetof(ORV_SMS_JOINER, uCapacity) == 2 * sizeof(void*) &&
                  offsetof(ORV_SMS_JOINER, message) == 2 * sizeof(void*) + 12 &&
                  offsetof(ORV_SMS_JOINER, abSenderDigits) == 2 * sizeof(void*) + 40 &&
                  sizeof(ORV_SMS_JOINER) == (sizeof(void*) == 4 ? 68 : 80),
              "words but for one pointer and the digits");
#endif

/*
 * Begins with no part at all.
 * joiner [out]. memory [in]: stays the caller's, and with the joiner until the text has been taken. capacity [in]: in
 * octets; ORV_SMS_MAX_PARTS * ORV_SMS_JOINER_PART is enough for every message.
 * Returns 0; 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvSmsJoinStart(ORV_SMS_JOINER* joiner, BYTE* memory, ULONG capacity);

/* What became of a record. */
enum {
    ORV_SMS_JOIN_ADDED = 0,     /* a part that was missing; others still are */
    ORV_SMS_JOIN_COMPLETE = 1,  /* the last part that was missing: the text can be taken */
    ORV_SMS_JOIN_DUPLICATE = 2, /* this part is there already: the one that came first stays */
    ORV_SMS_JOIN_FOREIGN = 3,   /* a part of another message: sender, reference or number of parts differ */
    ORV_SMS_JOIN_SINGLE = 4     /* not a part of a concatenated message: see OrvGsmSmsToText */
};

/*
 * Adds a received message to those that are there. They may come in any order.
 * joiner [in, out]. record [in]: copied. outcome [out]: ORV_SMS_JOIN_….
 * Returns 0; 2 when the memory is too small, uNeeded tells: nothing is added; 4; 5 when the user data is shorter than
 * its header or longer than a message has room for: nothing is added.
 */
ORV_API ORV_RCODE ORV_CALL OrvSmsJoinAdd(ORV_SMS_JOINER* joiner, const ORV_GSM_SMS_IN* record, ULONG* outcome);

/*
 * The parts that are missing, as numbers from 1 in ascending order; none before the first part.
 * joiner [in]. parts [out]. capacity [in]: of parts. count [out]: how many are missing, also on 2.
 * Returns 0; 2 when they do not fit: parts has the first ones; 4.
 */
ORV_API ORV_RCODE ORV_CALL OrvSmsJoinMissing(const ORV_SMS_JOINER* joiner, BYTE* parts, ULONG capacity, ULONG* count);

/*
 * The whole text. An escape or a surrogate pair that its sender has split over two parts is put together again.
 * joiner [in]. text [out]. length [out].
 * Returns 0; 1 when a part holds 8-bit data or compressed text; 2; 4; 17 as long as a part is missing.
 */
ORV_API ORV_RCODE ORV_CALL OrvSmsJoinText(const ORV_SMS_JOINER* joiner, char* text, ULONG capacity, ULONG* length);

/* --- messages without a module ------------------------------------------------------------------------------------ */

/* Octets that are enough for every message that the encoders make. */
enum { ORV_GSM_SMS_PDU_ROOM = 1344, ORV_CDMA_SMS_MESSAGE_ROOM = 256 };

/*
 * Decodes a message as a GSM/UMTS module hands it over: the service centre's address, then an SMS-DELIVER (3GPP
 * TS 23.040, 9.2.2.1). This is the decoder of OrvRetrieveSMSMessageGobi.
 * pdu, length [in]. record [out]: clear it first; written as far as the message goes.
 * Returns 0, also for a message that ends early; 2 for an address of more than 20 digits; 4 for a null pointer or an
 * empty message; 5 when it is no SMS-DELIVER.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmSmsDecode(const BYTE* pdu, ULONG length, ORV_GSM_SMS_IN* record);

/*
 * Encodes an SMS-SUBMIT with the service centre's address before it (TS 23.040, 9.2.2.2). This is the encoder of
 * OrvStoreSMSMessageGobi.
 * record [in]. pdu [out]. length [in, out]: the capacity, then the octets of the message; unchanged unless 0.
 * Returns 0; 2 when the message does not fit or the user data is too long; 4 for a null pointer or an address that is
 * missing or too long.
 */
ORV_API ORV_RCODE ORV_CALL OrvGsmSmsEncode(const ORV_GSM_SMS_OUT* record, BYTE* pdu, ULONG* length);

/*
 * Decodes a transport-layer message as a CDMA module hands it over (3GPP2 C.S0015). This is the decoder of
 * OrvRetrieveCdmaSMSMessage.
 * message, length [in]. record [out]: clear it first; its user data is a block to free with OrvFreeBuffer, also after
 * a failure when pUserData is not null.
 * Returns 0; 1 for a content that the library does not read (not point-to-point, an address or an encoding of another
 * kind); 4 for a null pointer; 5 for a malformed or empty message, or one that is not to be delivered to a mobile; 6
 * without an originating address.
 */
ORV_API ORV_RCODE ORV_CALL OrvCdmaSmsDecode(const BYTE* message, ULONG length, ORV_CDMA_SMS* record);

/*
 * Encodes a point-to-point message of a mobile (C.S0015). This is the encoder of OrvStoreCdmaSMSMessage.
 * record [in]. message [out]. length [in, out]: the capacity, then the octets of the message, also on 2.
 * Returns 0; 2 when it does not fit: nothing is written; 4 for a null pointer, digits or user data that are missing or
 * too long, or a type or priority out of its range; 5 without memory.
 */
ORV_API ORV_RCODE ORV_CALL OrvCdmaSmsEncode(const ORV_CDMA_SMS_SEND* record, BYTE* message, ULONG* length);

#endif /* TALVEK_SMS_TEXT_H */
