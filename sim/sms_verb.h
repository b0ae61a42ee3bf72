// The verb that puts messages into the stores, as the network and other clients do.
#pragma once

#include "sim/command.h"

namespace sim {

void SmsVerb(Command& command); // lock held

} // namespace sim
