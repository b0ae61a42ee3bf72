// Building of CDMA messages to be sent: the point-to-point message of the transport layer for the teleservice CMT-95
// (3GPP2 C.S0015).
#pragma once

#include "sms/bits.h"
#include "talvek/cdma_sms.h"
#include "talvek/rcode.h"

// Builds a message. On success `*message` is a block of the process heap of `*length` octets that the caller frees
// (HeapBuffer::Free); on failure neither is written.
// The user data has one octet a character for 7-bit ASCII and two, the high one first, for Unicode; with any other
// encoding the message has room for the characters and no characters.
// Returns 0; 4 for no destination or user data, a number of more than 255 digits, more than 160 octets of user data, a
// message type above 6 or a priority above 3; 5 for lack of memory.
ORV_RCODE EncodeCompleteMoSms(BYTE** message, ULONG* length, const char* destination, ULONG destination_length,
                              const char* callback, ULONG callback_length, ULONG encoding, const BYTE* user_data,
                              ULONG user_data_length, ULONG message_type, WORD message_id, ULONG priority);

// The steps of it: each writes one block. Returns 2 when it does not fit.
ORV_RCODE EncodeTeleServiceHdr(BitWriter& out);
ORV_RCODE EncodeDestAddrHdr(BitWriter& out, const char* digits, ULONG count);
ORV_RCODE EncodeCallbackAddrHdr(BitWriter& out, const char* digits, ULONG count);
// 4 for a message type above 6.
ORV_RCODE EncodeMsgIdenfier(BitWriter& out, ULONG message_type, WORD message_id);
ORV_RCODE EncodeUserDataHdr(BitWriter& out, ULONG encoding, const BYTE* user_data, ULONG length);
// 4 for a priority above 3.
ORV_RCODE EncodePrioriyHdr(BitWriter& out, ULONG priority);
// The octets in front of bearer data of `length` octets.
ORV_RCODE EncodeBearerData(BitWriter& out, ULONG length);
