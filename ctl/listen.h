// Listening to the module: what the commands that print events have in common.
#pragma once

#include "ctl/client.h"
#include "ctl/event_queue.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ctl {

class Session;

struct ListenOptions {
    std::string command;                // as it stands in the JSON answer
    std::vector<ORV_NOTIFY> wanted;     // printed; empty: everything
    std::optional<unsigned long> count; // ends after so many events
    std::optional<std::chrono::milliseconds> timeout;

    // With --sim: runs on a thread of its own while listening.
    std::function<void(Simulator&)> cause;
    // The listening ends when the cause is over and everything that it caused has been delivered.
    bool ends_with_cause = false;

    // As soon as the module is selected.
    std::function<void(const Session& session)> selected;
    // When everything is enabled, before the first event is taken. False: there is nothing to listen for.
    std::function<bool()> begin;
    // Prints an event, instead of the line that events have in common.
    std::function<void(const Arrival& arrival)> print;
    // Whether this event, which has been printed, is the last one. Without it before `timeout` the command fails.
    std::function<bool(const OrvNotifyRecord& record)> last;
    std::string awaited; // what that is, for the failure
    // At the end, with the module still connected.
    std::function<void(bool interrupted)> end;
    // Adds to the JSON answer, after `end`.
    std::function<void(Report& report)> report;
};

// The line that an event has in common.
void PrintArrival(const Client& client, const Arrival& arrival);

// A cause that runs a scenario file.
std::function<void(Simulator&)> RunsScenario(const std::string& file);

// Adds --count, --timeout and --scenario to a command. What is returned gives them, once the command line was read.
std::function<ListenOptions()> AddListenOptions(CLI::App* sub);

// Opens a session, enables what is wanted, and prints one line an event until it was interrupted, `count` events came,
// `last` found the last one, `timeout` passed, or the cause was over. Returns the exit status. Fails when it ends by
// itself before `count` events or the last one came.
int Listen(Client& client, const ListenOptions& options);

} // namespace ctl
