// Messages that come back to who has sent them.
#pragma once

#include "talvek/types.h"

namespace sim {

// Turns an SMS-SUBMIT of at least one octet into an SMS-DELIVER. Returns its octets, 0 for what is no SMS-SUBMIT or
// does not fit. Lock held, here and below.
ULONG DeliverOfSubmit(const BYTE* submit, ULONG size, BYTE* deliver, ULONG room);

// Has a message that was sent arrive as often, and as late, as the fields `sms.loopback…` say.
void SendBack(const BYTE* submit, ULONG size);

} // namespace sim
