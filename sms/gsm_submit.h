// Building of GSM messages to be sent: SMS-SUBMIT of 3GPP TS 23.040 behind the service centre's address, without a
// validity period, with the data coding scheme of 3GPP TS 23.038.
#pragma once

#include "talvek/gsm_sms.h"
#include "talvek/rcode.h"

// Writes the message to `pdu`. `*length`: in, the room there; out, the octets written, 0 on failure.
// Returns 0; 2 for more than 1024 characters, more user data or header than the record has room for, or a message that
// does not fit `pdu`; 4 for no destination, an address longer than its field, an alphabet above 2, a class above 4, or
// a null pointer. TP-UDL is one octet: what exceeds it is cut off, and whether the network takes more than 140 octets
// is for the caller to know.
ORV_RCODE EncodeMOPDU(const ORV_GSM_SMS_OUT* record, BYTE* pdu, WORD* length);
