// Reading of received CDMA messages: the point-to-point message of the transport layer and its bearer data (3GPP2
// C.S0015).
//
// Results: 0; 1 for another kind of message, address or encoding; 5 for a length that does not fit, a parameter that is
// not known, or lack of memory; 6 for a message without an originating address. A field that is announced but not there
// reads as zero.
//
// Some readings are not the standard's, on purpose: only the low octet of the teleservice identifier counts; the digits
// 11 and 12 become ';' and '<'; of the time stamp only the year is taken from its BCD digits; a priority with other
// bits set counts as normal; and a message type of 0 passes if the identifier's first octet is 15.
#pragma once

#include "sms/bits.h"
#include "talvek/cdma_sms.h"
#include "talvek/rcode.h"

// Reads a message into a record, of which it writes the parts that the message has and tells them in uParamMask; the
// record keeps what was written before a failure. On success pUserData, if uParamMask has it, is a block of the process
// heap that the caller frees (HeapBuffer::Free, or a client with OrvFreeBuffer); on failure there is none.
ORV_RCODE DecodeCompleteMTSms(const BYTE* message, ULONG length, ORV_CDMA_SMS* record);

// The steps of it. Octets handed from one to the next are the message's own.

// A parameter that may be missing.
struct Optional {
    bool present = false;
    OctetReader body;
};

struct MTSmsParameters {
    static constexpr ULONG kNoReplyOption = 255;

    BYTE teleservice = 0;                // the low octet of the identifier
    ULONG reply_option = kNoReplyOption; // the octet of the bearer reply option
    Optional address;                    // originating address
    Optional bearer_data;
};
// Takes the transport layer apart. Of a repeated parameter the last one counts.
ORV_RCODE SplitParamMTSms(const BYTE* message, ULONG length, MTSmsParameters* parameters);

struct MTSmsBearerData {
    static constexpr BYTE kAbsent = 200; // in uYear, uMonth and priority

    WORD message_id = 0;
    BYTE year = kAbsent;  // 0 to 99
    BYTE month = kAbsent; // this and the following as received
    BYTE day = 0, hour = 0, minute = 0, second = 0;
    BYTE priority = kAbsent; // the octet as received
    Optional user_data;
    Optional callback;
    Optional number_of_messages;
};
// Takes the bearer data apart.
ORV_RCODE DecodeBearerData(OctetReader bearer_data, MTSmsBearerData* data);

// Each writes its fields of the record, and none on failure.
ORV_RCODE DecodeOriginAddr(const OctetReader& body, ORV_CDMA_SMS* record);
ORV_RCODE DecodeUserData(const OctetReader& body, ORV_CDMA_SMS* record);
ORV_RCODE DecodeCallbackAddr(const OctetReader& body, ORV_CDMA_SMS* record);
