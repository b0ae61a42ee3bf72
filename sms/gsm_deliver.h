// Reading of received GSM messages: SMS-DELIVER of 3GPP TS 23.040 behind the service centre's address, with the data
// coding scheme of 3GPP TS 23.038.
#pragma once

#include "talvek/gsm_sms.h"
#include "talvek/rcode.h"

// Reads a message into a record. Characters are not converted: 7-bit text stays packed, only the fill bits behind a
// user data header are taken out.
// Returns 0, also when the octets end early, with what has been read by then in the record; 4 for a null pointer or an
// empty message; 5 when it is no SMS-DELIVER; 2 when an address has more than 20 digits. User data that is announced
// but not there reads as zero.
//
// Three readings are not the standard's, on purpose: of each octet of the time stamp only the high half is kept; every
// coding group from 0x40 on, message waiting included, is read as "data coding/message class"; and only an address's
// high half may be a filler.
ORV_RCODE DecodeCompletePDU(const BYTE* pdu, ULONG length, ORV_GSM_SMS_IN* record);

// The steps of it.

// Digits of `count` octets, low half first. `*digit_count`: in, the room at `digits`; out, the digits written. Returns
// 2 when the room is smaller than twice `count`.
ORV_RCODE DecodeAddr(const BYTE* octets, ULONG count, BYTE* digits, ULONG* digit_count);
// TP-PID. Returns 4 for a null pointer.
ORV_RCODE DecodeProtocolId(BYTE octet, ULONG* group, ULONG* value);
// TP-DCS. Returns 4 for a null pointer.
ORV_RCODE DecodeDataCodingScheme(BYTE octet, ULONG* alphabet, ULONG* message_class, ULONG* compressed);
// TP-SCTS: the seven high halves. Returns 2 for fewer than 7 octets at `octets` or room for fewer than 14 at `out`.
ORV_RCODE DecodeTimeStamp(const BYTE* octets, ULONG count, BYTE* out, ULONG room);
