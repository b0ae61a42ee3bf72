// The card's file system, as commands see it: ETSI TS 102 221 and 3GPP TS 51.011, each with its own status words.
#pragma once

#include "sim/text.h"

namespace sim {

struct SimCommand {
    BYTE instruction, p1, p2, p3;
    const BYTE* data; // p3 octets, or null
};

struct SimAnswer {
    WORD status; // both status words
    ULONG size;
    BYTE data[256];
};

enum SimInstruction : BYTE {
    kSelect = 0xA4,
    kReadBinary = 0xB0,
    kReadRecord = 0xB2,
    kGetResponse = 0xC0,
    kUpdateBinary = 0xD6,
    kUpdateRecord = 0xDC,
    kCardStatus = 0xF2
};

// A whole command of ISO/IEC 7816-4, on the basic channel. Lock held, here and below.
void SimTransmit(const BYTE* octets, ULONG count, SimAnswer& answer);
// A command to a file that the modem selects itself, wherever it stands; 0: the application's directory. What is
// selected on the basic channel stays.
void SimRestricted(WORD file, const SimCommand& command, SimAnswer& answer);

} // namespace sim
