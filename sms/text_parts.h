// Long texts as concatenated messages (3GPP TS 23.040, 9.2.3.24.1).
#pragma once

#include "sms/text_utf8.h"
#include "talvek/sms_text.h"

// Octets of TP-UD that a message has room for.
constexpr ULONG kUserDataOctets = 140;

// The element that says which part of which message this is. False where there is none that counts.
bool FindConcatenation(const BYTE* header, ULONG length, ORV_SMS_CONCATENATION& out);

// Writes the element's header and returns its length, without UDHL: 5, or 6 with a wide reference.
ULONG PutConcatenation(const ORV_SMS_CONCATENATION& concatenation, BYTE* header);

// A text and the alphabet that it goes in.
struct TextToSend {
    const char* text;
    ULONG length;
    bool ucs2;
    ULONG units; // septets or UCS2 units of the whole
};

// Chooses the alphabet. Returns 5 where the text is not well-formed.
ORV_RCODE MeasureText(const char* text, ULONG length, bool always_ucs2, TextToSend& out);

// The stretch of the text that goes into one part.
struct TextPart {
    const char* text;
    ULONG length;
    ULONG parts; // of the whole; 1: it goes without a header
};

// Returns 2 for a text of too many parts, 4 for a part beyond the last one.
ORV_RCODE FindPart(const TextToSend& whole, bool wide_reference, ULONG part, TextPart& out);

// Puts a text that fits into one part into user data of kUserDataOctets octets, and returns its septets or units.
ULONG PutPart(const TextPart& part, bool ucs2, BYTE* octets);
