// The command events, and the listening that it shares with sim run.

#include "ctl/listen.h"

#include "ctl/event_queue.h"
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

// A scenario on a thread of its own.
class ScenarioThread {
public:
    ScenarioThread(Simulator& simulator, const std::string& file)
        : m_thread([this, &simulator, file] {
              try {
                  simulator.RunScenario(file);
              } catch (...) {
                  m_failure = std::current_exception();
              }
              m_finished = true;
              EventQueue::Get().Wake();
          })
    {
    }
    ~ScenarioThread()
    {
        if (m_thread.joinable()) m_thread.join();
    }
    ScenarioThread(const ScenarioThread&) = delete;
    ScenarioThread& operator=(const ScenarioThread&) = delete;

    bool Finished() const { return m_finished; }
    // Waits for the end and throws what the scenario failed with.
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

} // namespace

int Listen(Client& client, const ListenOptions& options)
{
    Simulator* const simulator = options.scenario.empty() ? nullptr : &client.RequireSimulator();
    client.Prepare();

    std::set<ORV_NOTIFY> shown;
    for (const ORV_NOTIFY id : options.wanted) {
        const std::vector<ORV_NOTIFY> brought = Brought(id);
        shown.insert(brought.begin(), brought.end());
    }

    EventQueue& queue = EventQueue::Get();
    std::atomic<bool> interrupted{false};
    Session session;
    session.Open();
    queue.Register();
    unsigned long delivered = 0;
    bool missed = false;
    {
        Enabled enabled;
        for (const ORV_NOTIFY id : Enablers(options.wanted.empty() ? AllEnablers() : options.wanted))
            enabled.Add(id);
        const Interruptible interruptible([&] {
            interrupted = true;
            queue.Wake();
        });
        std::optional<ScenarioThread> scenario;
        if (simulator) scenario.emplace(*simulator, options.scenario);

        const auto start = EventQueue::Clock::now();
        auto last_event = start;
        OrvNotifyRecord record;
        while (!interrupted && (!options.count || delivered < *options.count)) {
            std::optional<EventQueue::Clock::time_point> deadline;
            if (options.timeout)
                deadline = start + *options.timeout;
            else if (!options.count && scenario && scenario->Finished())
                deadline = last_event + kQuiet;

            const EventQueue::Woken woken = queue.Wait(record, deadline);
            if (woken == EventQueue::Woken::ByTimeout) {
                last_event = EventQueue::Clock::now();
                if (!options.timeout && !simulator->Command("queue").empty()) continue;
                missed = options.count.has_value();
                break;
            }
            if (woken == EventQueue::Woken::ByWake) {
                last_event = EventQueue::Clock::now(); // the scenario's end counts as its last event
                continue;
            }
            last_event = EventQueue::Clock::now();
            if (!shown.empty() && shown.count(record.uNotify) == 0) continue;
            if (client.Json())
                PrintJson(EventToJson(record));
            else
                PrintLine(EventToText(record));
            ++delivered;
        }
        if (scenario) scenario->Join();
    }
    session.Close();

    if (missed)
        throw ClientError("the time is up: " + std::to_string(delivered) + " of " + std::to_string(*options.count) +
                          " events came");
    if (client.Json()) {
        Report report(options.command);
        report.AddHidden("delivered", delivered);
        report.AddHidden("lost", queue.Lost());
        PrintJson(report.ToJson());
    } else if (queue.Lost() != 0) {
        std::cerr << queue.Lost() << " events were lost: they came faster than they could be printed\n";
    }
    return 0;
}

void AddEventCommands(Client& client)
{
    struct Arguments {
        std::vector<std::string> ids;
        bool all = false;
        unsigned long count = 0;
        double timeout_s = 0;
        std::string scenario;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const sub = client.App().add_subcommand("events", "Print notifications as they arrive");
    sub->add_option("ID", arguments->ids, "Identifiers, by number or name (5, PowerState)");
    sub->add_flag("--all", arguments->all, "Every identifier that can be enabled");
    CLI::Option* const count =
        sub->add_option("--count", arguments->count, "End after N events")->type_name("N")->check(CLI::PositiveNumber);
    CLI::Option* const timeout =
        sub->add_option("--timeout", arguments->timeout_s, "End after S seconds; a failure if --count is not met")
            ->type_name("S")
            ->check(CLI::Range(0.0, 1e6));
    sub->add_option("--scenario", arguments->scenario, "Run a scenario file while listening (with --sim)")
        ->type_name("FILE");

    client.Run(sub, [&client, arguments, count, timeout] {
        ListenOptions options;
        options.command = "events";
        if (arguments->all != arguments->ids.empty()) throw UsageError("name identifiers, or give --all");
        for (const std::string& text : arguments->ids) {
            const std::optional<ORV_NOTIFY> id = ParseEvent(text);
            if (!id) throw UsageError("unknown event '" + text + "'");
            options.wanted.push_back(*id);
        }
        if (count->count() != 0) options.count = arguments->count;
        if (timeout->count() != 0)
            options.timeout = milliseconds(static_cast<milliseconds::rep>(arguments->timeout_s * 1000));
        options.scenario = arguments->scenario;
        return Listen(client, options);
    });
}

} // namespace ctl
