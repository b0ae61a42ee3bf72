// The parts of one concatenated message, in the memory of a client.
#pragma once

#include "sms/text_utf8.h"
#include "talvek/sms_text.h"

// The user data of a received message behind its header.
struct ReceivedText {
    ULONG alphabet; // ORV_GSM_ALPHABET_…; _RESERVED for compressed text, too
    ULONG count;    // septets of the 7-bit alphabet, else octets
    const BYTE* octets;
};

// Returns 5 where the header is longer than the user data, or the user data longer than the record.
ORV_RCODE TakeText(const ORV_GSM_SMS_IN& record, ReceivedText& out);

// The text of one record by itself. Returns 1 where that is not text.
ORV_RCODE PutText(Utf8Output& out, const ReceivedText& text);

ORV_RCODE AddPart(ORV_SMS_JOINER& joiner, const ORV_GSM_SMS_IN& record, ULONG& outcome);
bool PartIsMissing(const ORV_SMS_JOINER& joiner, ULONG part); // from 1
// The text of all parts. Returns 1 where one of them is not text.
ORV_RCODE PutJoinedText(Utf8Output& out, const ORV_SMS_JOINER& joiner);
