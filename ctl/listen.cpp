// The command events, and the listening that it shares with others.

#include "ctl/listen.h"

#include "ctl/events.h"
#include "ctl/session.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iostream>
#include <set>
#include <thread>

namespace ctl {

namespace {

using std::chrono::milliseconds;

// The library delivers on threads of its own and does not say when the last one has ended: after a scenario, the
// listening ends when nothing has come for so long.
constexpr milliseconds kQuiet(500);

// What is to happen to the simulated module, on a thread of its own.
class CauseThread {
public:
    CauseThread(Simulator& simulator, const std::function<void(Simulator&)>& cause)
        : m_thread([this, &simulator, cause] {
              try {
                  cause(simulator);
              } catch (...) {
                  m_failure = std::current_exception();
              }
              m_finished = true;
              EventQueue::Get().Wake();
          })
    {
    }
    ~CauseThread()
    {
        if (m_thread.joinable()) m_thread.join();
    }
    CauseThread(const CauseThread&) = delete;
    CauseThread& operator=(const CauseThread&) = delete;

    bool Finished() const { return m_finished; }
    // Waits for the end and throws what it failed with.
    void Join()
    {
        m_thread.join();
        if (m_failure) std::rethrow_exception(m_failure);
    }

private:
    std::exception_ptr m_failure;
    std::atomic<bool> m_finished{false};
    std::thread m_thread; // last: it uses the others
};

// Identifiers enabled in the module while it lives.
class Enabled {
public:
    ~Enabled()
    {
        for (auto id = m_ids.rbegin(); id != m_ids.rend(); ++id)
            OrvStopNotify(*id, 0);
        EventQueue::Get().Deregister();
    }
    void Add(ORV_NOTIFY id)
    {
        Check("OrvNotify", OrvNotify(id, 0));
        // The library needs the power notification itself.
        if (id != ORV_NOTIFY_PowerState) m_ids.push_back(id);
    }

private:
    std::vector<ORV_NOTIFY> m_ids;
};

std::set<ORV_NOTIFY> Enablers(const std::vector<ORV_NOTIFY>& wanted)
{
    std::set<ORV_NOTIFY> ids; // in rising order, in which none keeps another from being delivered
    for (const ORV_NOTIFY id : wanted)
        if (const ORV_NOTIFY enabler = EnablerOf(id)) ids.insert(enabler);
    return ids;
}

// Nothing is still to come by itself: the queue is empty, or its clock stands still.
bool IsDone(Simulator& simulator)
{
    if (simulator.Command("queue").empty()) return true;
    try {
        simulator.Command("advance 0");
        return true;
    } catch (const ClientError&) {
        return false; // the clock is live
    }
}

std::string Missed(const ListenOptions& options, unsigned long printed, bool by_time)
{
    const std::string reason = by_time ? "the time is up: " : "nothing more is to come: ";
    if (!options.count) return reason + options.awaited + " did not come";
    return reason + std::to_string(printed) + " of " + std::to_string(*options.count) + " events came";
}

class Listener {
public:
    Listener(Client& client, const ListenOptions& options) : m_client(client), m_options(options)
    {
        for (const ORV_NOTIFY id : options.wanted) {
            const std::vector<ORV_NOTIFY> brought = Brought(id);
            m_shown.insert(brought.begin(), brought.end());
        }
    }

    // Takes events until the listening ends.
    void Run(Simulator* simulator);

    bool Interrupted() const { return m_interrupted; }
    unsigned long Printed() const { return m_printed; }
    // Why it ended too early; empty if it did not.
    const std::string& Failure() const { return m_failure; }

private:
    // Returns whether it was the last one.
    bool Take(const Arrival& arrival);

    Client& m_client;
    const ListenOptions& m_options;
    std::set<ORV_NOTIFY> m_shown;
    unsigned long m_printed = 0;
    std::string m_failure;
    std::atomic<bool> m_interrupted{false};
};

bool Listener::Take(const Arrival& arrival)
{
    if (!m_shown.empty() && m_shown.count(arrival.record.uNotify) == 0) return false;
    if (m_options.print)
        m_options.print(arrival);
    else
        PrintArrival(m_client, arrival);
    ++m_printed;
    return (m_options.count && m_printed == *m_options.count) || (m_options.last && m_options.last(arrival.record));
}

void Listener::Run(Simulator* simulator)
{
    EventQueue& queue = EventQueue::Get();
    const Interruptible interruptible([&] {
        m_interrupted = true;
        queue.Wake();
    });
    if (m_options.begin && !m_options.begin()) return;
    std::optional<CauseThread> cause;
    if (simulator) cause.emplace(*simulator, m_options.cause);

    const auto start = EventQueue::Clock::now();
    auto last_event = start;
    Arrival arrival;
    while (!m_interrupted) {
        std::optional<EventQueue::Clock::time_point> deadline;
        if (m_options.timeout) deadline = start + *m_options.timeout;
        bool by_quiet = false;
        if (m_options.ends_with_cause && cause && cause->Finished() && (!deadline || last_event + kQuiet < *deadline)) {
            deadline = last_event + kQuiet;
            by_quiet = true;
        }
        const EventQueue::Woken woken = queue.Wait(arrival, deadline);
        last_event = EventQueue::Clock::now(); // the cause's end counts as its last event
        if (woken == EventQueue::Woken::ByEvent) {
            if (Take(arrival)) break;
        } else if (woken == EventQueue::Woken::ByTimeout && (!by_quiet || IsDone(*simulator))) {
            if (m_options.count || m_options.last) m_failure = Missed(m_options, m_printed, !by_quiet);
            break;
        }
    }
    if (cause) cause->Join();
}

} // namespace

void PrintArrival(const Client& client, const Arrival& arrival)
{
    if (client.Json())
        PrintJson(EventToJson(arrival.record));
    else
        PrintLine(EventToText(arrival.record));
}

std::function<void(Simulator&)> RunsScenario(const std::string& file)
{
    return [file](Simulator& simulator) { simulator.RunScenario(file); };
}

int Listen(Client& client, const ListenOptions& options)
{
    Simulator* const simulator = options.cause ? &client.RequireSimulator() : nullptr;
    client.Prepare();

    EventQueue& queue = EventQueue::Get();
    Session session;
    session.Open();
    if (options.selected) options.selected(session);
    queue.Register();
    Listener listener(client, options);
    {
        Enabled enabled;
        for (const ORV_NOTIFY id : Enablers(options.wanted.empty() ? AllEnablers() : options.wanted))
            enabled.Add(id);
        listener.Run(simulator);
        if (options.end) options.end(listener.Interrupted());
    }
    session.Close();

    if (!listener.Failure().empty()) throw ClientError(listener.Failure());
    if (client.Json()) {
        Report report(options.command);
        if (options.report) options.report(report);
        report.AddHidden("delivered", listener.Printed());
        report.AddHidden("lost", queue.Lost());
        PrintJson(report.ToJson());
    } else if (queue.Lost() != 0) {
        std::cerr << queue.Lost() << " events were lost: they came faster than they could be printed\n";
    }
    return 0;
}

std::function<ListenOptions()> AddListenOptions(CLI::App* sub)
{
    struct Arguments {
        unsigned long count = 0;
        double timeout_s = 0;
        std::string scenario;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::Option* const count =
        sub->add_option("--count", arguments->count, "End after N events")->type_name("N")->check(CLI::PositiveNumber);
    CLI::Option* const timeout =
        sub->add_option("--timeout", arguments->timeout_s, "End after S seconds; a failure if --count is not met")
            ->type_name("S")
            ->check(CLI::Range(0.0, 1e6));
    sub->add_option("--scenario", arguments->scenario, "Run a scenario file while listening (with --sim)")
        ->type_name("FILE");
    return [arguments, count, timeout] {
        ListenOptions options;
        if (count->count() != 0) options.count = arguments->count;
        if (timeout->count() != 0)
            options.timeout = milliseconds(static_cast<milliseconds::rep>(arguments->timeout_s * 1000));
        if (!arguments->scenario.empty()) options.cause = RunsScenario(arguments->scenario);
        return options;
    };
}

void AddEventCommands(Client& client)
{
    struct Arguments {
        std::vector<std::string> ids;
        bool all = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const sub = client.App().add_subcommand("events", "Print notifications as they arrive");
    sub->add_option("ID", arguments->ids, "Identifiers, by number or name (5, PowerState)");
    sub->add_flag("--all", arguments->all, "Every identifier that can be enabled");

    client.Run(sub, [&client, arguments, given = AddListenOptions(sub)] {
        if (arguments->all != arguments->ids.empty()) throw UsageError("name identifiers, or give --all");
        ListenOptions options = given();
        options.command = "events";
        for (const std::string& text : arguments->ids) {
            const std::optional<ORV_NOTIFY> id = ParseEvent(text);
            if (!id) throw UsageError("unknown event '" + text + "'");
            options.wanted.push_back(*id);
        }
        // A count or a time is waited for, whatever the scenario does.
        options.ends_with_cause = !options.count && !options.timeout;
        return Listen(client, options);
    });
}

} // namespace ctl
