// Listening to the module: what `events` and `sim run` have in common.
#pragma once

#include "ctl/client.h"
#include "talvek/notify.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace ctl {

struct ListenOptions {
    std::string command;                // as it stands in the JSON answer
    std::vector<ORV_NOTIFY> wanted;     // printed; empty: everything
    std::optional<unsigned long> count; // ends after so many events
    std::optional<std::chrono::milliseconds> timeout;
    std::string scenario; // run while listening; empty: none
};

// Opens a session, enables what is wanted, and prints one line an event until it was interrupted, `count` events came,
// `timeout` passed, or the scenario was over and everything it caused had been delivered. Returns the exit status: 1
// when the timeout passed before `count` events.
int Listen(Client& client, const ListenOptions& options);

} // namespace ctl
