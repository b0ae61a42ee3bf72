// The command demo: the main job from start-up to shutdown against the simulated module. Every step checks what it
// sees; the first thing that is not as it must be ends the demonstration with an error.

#include "ctl/client.h"
#include "ctl/event_queue.h"
#include "ctl/events.h"
#include "ctl/session.h"
#include "ctl/text.h"

#include <chrono>

namespace ctl {

namespace {

using std::chrono::seconds;

// Events come at once, but on the library's threads: past this time one is missing.
constexpr seconds kPatience(10);
// What the module does by itself takes no longer than this on the simulated clock, which the demonstration moves.
constexpr const char* kAdvance = "advance 60000";

class Demonstration {
public:
    explicit Demonstration(Client& client) : m_client(client), m_simulator(client.RequireSimulator()) {}

    void Run();

private:
    // Each does one part of the job and tells in a few words what it saw.
    std::string StartUp();
    std::string Discovery();
    std::string Selection();
    std::string Versions();
    std::string PriInformation();
    std::string RadioPower();
    std::string DataSession();
    std::string ServingNetwork();
    std::string SuspendAndResume();
    std::string Shutdown();

    void Require(bool condition, const std::string& what);
    // Waits for an event of `id` for which `matches` holds; others are noted and passed over.
    template <class Predicate>
    void Await(ORV_NOTIFY id, const std::string& what, Predicate matches);
    void SwitchRadio(bool on);

    bool Umts() const { return m_simulator.SimulatedModel().technology == "umts"; }

    Client& m_client;
    Simulator& m_simulator;
    EventQueue& m_queue = EventQueue::Get();
    std::optional<Session> m_session;
    const char* m_step = "";
    Json m_steps = Json::array();
    Json m_events = Json::array();
};

void Demonstration::Require(bool condition, const std::string& what)
{
    if (!condition) throw ClientError(std::string("demo: ") + m_step + ": " + what);
}

template <class Predicate>
void Demonstration::Await(ORV_NOTIFY id, const std::string& what, Predicate matches)
{
    const auto deadline = EventQueue::Clock::now() + kPatience;
    Arrival arrival;
    const OrvNotifyRecord& record = arrival.record;
    for (;;) {
        Require(m_queue.Wait(arrival, deadline) == EventQueue::Woken::ByEvent, what + " did not arrive");
        m_events.push_back(EventToJson(record)["event"]);
        if (!m_client.Json()) PrintLine("      event  " + EventToText(record));
        if (record.uNotify == id && matches(record.payload)) return;
    }
}

std::string Demonstration::StartUp()
{
    m_session.emplace();
    m_queue.Register();
    return "the library has loaded the vendor library";
}

std::string Demonstration::Discovery()
{
    m_session->Discover();
    const ULONG expected = m_simulator.SimulatedModel().product_id;
    Require(m_session->DeviceId() == expected,
            "device ID " + HexNumber(m_session->DeviceId(), 4) + " instead of " + HexNumber(expected, 4));
    return "device ID " + HexNumber(expected, 4);
}

std::string Demonstration::Selection()
{
    m_session->Select();
    const OrvAirServerInfo info = m_session->Info();
    const ULONG expected = Umts() ? ORV_TECH_UMTS : ORV_TECH_CDMA;
    Require(info.eTechnology == expected, std::string("the technology is ") + TechnologyName(info.eTechnology));
    return "module " + Utf8(info.szName, std::size(info.szName)) + ", " + TechnologyName(info.eTechnology);
}

std::string Demonstration::Versions()
{
    std::string all;
    const struct {
        const char* label;
        std::string text;
    } rows[] = {
        {"hardware", ReadText("OrvGetHardwareVersion", OrvGetHardwareVersion)},
        {"firmware", ReadText("OrvGetFirmwareVersion", OrvGetFirmwareVersion)},
        {"boot", ReadText("OrvGetBootVersion", OrvGetBootVersion)},
        {"PRI", ReadText("OrvGetPriVersion", OrvGetPriVersion)},
    };
    for (const auto& row : rows) {
        all += (all.empty() ? "" : ", ") + std::string(row.label) + " " + row.text;
    }
    return all;
}

std::string Demonstration::PriInformation()
{
    OrvPriInfo pri = {};
    Check("OrvGetPriInfo", OrvGetPriInfo(&pri));
    Require(pri.sizeStruct == sizeof pri, "the record's size is " + std::to_string(pri.sizeStruct));
    return "carrier " + std::to_string(pri.uPriCarrier) + ", version " + std::to_string(pri.uPriVersion) +
           ", revision " + std::to_string(pri.uPriRevision);
}

void Demonstration::SwitchRadio(bool on)
{
    OrvRadioPower power = {};
    power.sizeStruct = sizeof power;
    power.bRadioOn = on ? 1 : 0;
    Check("OrvSetRadioPower", OrvSetRadioPower(&power));
    m_simulator.Command(kAdvance);
    Await(ORV_NOTIFY_PowerState, "the power event",
          [on](const OrvNotifyPayload& payload) { return (payload.PowerState.uPowerState == 0) == on; });
    Check("OrvGetRadioPower", OrvGetRadioPower(&power));
    Require((power.bRadioOn == 1) == on, on ? "the radio stayed off" : "the radio stayed on");
}

std::string Demonstration::RadioPower()
{
    OrvRadioPower power = {};
    Check("OrvGetRadioPower", OrvGetRadioPower(&power));
    Require(power.bRadioOn == 1, "the radio is off to begin with");
    SwitchRadio(false);
    SwitchRadio(true);
    return "on, off and on again, each with its event";
}

std::string Demonstration::DataSession()
{
    Check("OrvNotify", OrvNotify(ORV_NOTIFY_PktSessionCall, 0));
    char apn[] = "internet";
    ULONG handle = 0, reason = 0;
    const ORV_RCODE code = OrvStartDataSession(apn, nullptr, nullptr, &handle, &reason);
    if (code != ORV_RCODE_OK) throw CallFailed("OrvStartDataSession", code, reason);
    m_simulator.Command(kAdvance);
    Await(ORV_NOTIFY_PktSessionCall, "the event of the connected session",
          [](const OrvNotifyPayload& payload) { return payload.PktSession.bConnected == 1; });

    OrvIpConfiguration ip = {};
    Check("OrvGetIPConfigurationGobi", OrvGetIPConfigurationGobi(&ip));
    Require(ip.bValid == 1 && ip.uIpAddress != 0, "the session has no address");

    Check("OrvStopDataSession", OrvStopDataSession(handle));
    m_simulator.Command(kAdvance);
    Await(ORV_NOTIFY_PktSessionCall, "the event of the ended session",
          [](const OrvNotifyPayload& payload) { return payload.PktSession.bConnected == 0; });
    return "handle " + std::to_string(handle) + ", address " + Dotted(ip.uIpAddress) + ", gateway " +
           Dotted(ip.uDefaultGateway) + ", DNS " + Dotted(ip.uPrimaryDns) + " and " + Dotted(ip.uSecondaryDns);
}

std::string Demonstration::ServingNetwork()
{
    ULONG mask = 0;
    Check("OrvGetServingNetworkGobi", OrvGetServingNetworkGobi(&mask));
    Require(mask != 0, "the network can do nothing");
    return "capabilities " + HexNumber(mask, 3);
}

std::string Demonstration::SuspendAndResume()
{
    constexpr ULONG kSuspended = 2, kRunning = 0; // D2 and D0
    const std::string emit = Umts() ? "emit signal -71 5" : "emit signal -71 1";
    const auto any = [](const OrvNotifyPayload&) { return true; };

    Check("OrvNotify", OrvNotify(ORV_NOTIFY_SignalStrength, 0));
    Require(m_simulator.Command(emit) == "delivered", "the library takes no signal events");
    Await(ORV_NOTIFY_SignalStrength, "the signal event", any);

    Check("OrvHandleSuspend", OrvHandleSuspend(kSuspended));
    Require(m_simulator.Command(emit) == "not registered", "the module still reports while suspended");

    // The last strength comes again once the events are on, on a thread that the library starts.
    Check("OrvHandleResume", OrvHandleResume(kRunning));
    Await(ORV_NOTIFY_SignalStrength, "the signal event after resume", any);
    Require(m_simulator.Command(emit) == "delivered", "the library takes no signal events after resume");
    Await(ORV_NOTIFY_SignalStrength, "the next signal event", any);
    Check("OrvStopNotify", OrvStopNotify(ORV_NOTIFY_SignalStrength, 0));
    return "signal events off while suspended, on again after";
}

std::string Demonstration::Shutdown()
{
    m_queue.Deregister();
    m_session->Close();
    return "disconnected from the module";
}

void Demonstration::Run()
{
    constexpr struct {
        const char* name;
        std::string (Demonstration::*perform)();
    } kSteps[] = {
        {"start-up", &Demonstration::StartUp},
        {"discovery", &Demonstration::Discovery},
        {"selection", &Demonstration::Selection},
        {"versions", &Demonstration::Versions},
        {"PRI information", &Demonstration::PriInformation},
        {"radio power", &Demonstration::RadioPower},
        {"data session", &Demonstration::DataSession},
        {"serving network", &Demonstration::ServingNetwork},
        {"suspend and resume", &Demonstration::SuspendAndResume},
        {"shutdown", &Demonstration::Shutdown},
    };
    m_simulator.Command("clock virtual");
    for (const auto& step : kSteps) {
        m_step = step.name;
        const std::string detail = (this->*step.perform)();
        m_steps.push_back({{"step", step.name}, {"detail", detail}});
        if (!m_client.Json()) {
            const std::string name = step.name;
            PrintLine("ok    " + name + std::string(20 - name.size(), ' ') + Printable(detail));
        }
    }
    if (!m_client.Json()) {
        PrintLine("Everything was as it must be.");
        return;
    }
    Report report("demo");
    report.AddHidden("model", m_simulator.SimulatedModel().Text());
    report.AddHidden("steps", std::move(m_steps));
    report.AddHidden("events", std::move(m_events));
    m_client.Answer(report);
}

} // namespace

void AddDemoCommands(Client& client)
{
    client.Run(client.App().add_subcommand("demo", "Go through the main job step by step, with checks (with --sim)"),
               [&client] {
                   Demonstration(client).Run();
                   return 0;
               });
}

} // namespace ctl
