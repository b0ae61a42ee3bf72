// Notification identifiers and payloads, as the client names and prints them.
#pragma once

#include "ctl/output.h"
#include "talvek/notify.h"

#include <optional>
#include <string>
#include <vector>

namespace ctl {

// {"event": {"id": 5, "name": "PowerState", "payload": {…}}}; docs/json.md lists the payloads.
Json EventToJson(const OrvNotifyRecord& record);
// "PowerState (5)  power_state=0 …", one line.
std::string EventToText(const OrvNotifyRecord& record);

// A name (any case) or a number. Nothing for a name that no identifier has; a number is taken as it is.
std::optional<ORV_NOTIFY> ParseEvent(const std::string& text);

// What OrvNotify has to be given so that `id` is delivered: itself, its carrier, or 0 for none.
ORV_NOTIFY EnablerOf(ORV_NOTIFY id);
// What arrives when `id` is asked for: itself, for most.
std::vector<ORV_NOTIFY> Brought(ORV_NOTIFY id);
// Every identifier that OrvNotify takes, in an order in which none keeps another from being delivered.
std::vector<ORV_NOTIFY> AllEnablers();

} // namespace ctl
