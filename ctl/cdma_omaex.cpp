// The commands for extended device management: omaex settings, start, cancel, status, answer, end.

#include "ctl/listen.h"
#include "ctl/management.h"
#include "ctl/session.h"
#include "talvek/cdma_omadm.h"

#include <array>

namespace ctl {

namespace {

constexpr ULONG kWaiting = 3; // states from here on: a session is under way
constexpr ULONG kPackageFound = 11;
constexpr BYTE kFirmware = 6;

constexpr std::initializer_list<NumberName> kStates = {{0, "done, or none"},
                                                       {1, "ended: there is no update"},
                                                       {2, "ended: failed"},
                                                       {3, "waits for the next attempt"},
                                                       {4, "gives up: no attempt is left"},
                                                       {5, "connecting"},
                                                       {6, "authenticated"},
                                                       {7, "number loaded"},
                                                       {8, "identity loaded"},
                                                       {9, "roaming list loaded"},
                                                       {10, "Mobile IP profile loaded"},
                                                       {11, "firmware package found"},
                                                       {12, "downloading firmware"}};
constexpr std::initializer_list<NumberName> kTypes = {
    {0, "device configuration"},
    {1, "PRL update"},
    {2, "activation"},
    {3, "activation, by the module"},
    {4, "PRL update, by network"},
    {5, "device configuration, by network"},
    {kFirmware, "firmware update"},
};
constexpr std::initializer_list<NumberName> kReasons = {
    {0, "none"},    {1, "network out of reach"}, {2, "server out of reach"},
    {3, "refused"}, {4, "retries used up"},      {5, "cancelled"}};

struct Setting {
    const char* option;
    const char* place;
    const char* label;
};
constexpr Setting kSettings[] = {
    {"--configuration", "provisioning", "Updates of the configuration"},
    {"--prl", "prl_update", "Updates of the roaming list (PRL)"},
    {"--firmware", "firmware_update", "Updates of the firmware"},
    {"--client", "client_initiated", "Sessions that the client begins"},
    {"--network", "network_initiated", "Sessions that the network begins"},
    {"--auto-accept", "auto_accept", "Firmware accepted without a question"},
};
using Switches = std::array<std::optional<bool>, std::size(kSettings)>;

// Extended management while it lives. Where it had begun before, it goes on; so it does after Keep.
class Begun {
public:
    Begun()
    {
        const ORV_RCODE code = OrvOMAEXInit();
        m_ours = code == ORV_RCODE_OK;
        if (code != ORV_RCODE_VENDOR_1026) Check("OrvOMAEXInit", code);
    }
    ~Begun()
    {
        if (m_ours) OrvOMAEXShutdown();
    }
    Begun(const Begun&) = delete;
    Begun& operator=(const Begun&) = delete;

    void Keep() { m_ours = false; }

private:
    bool m_ours;
};

omaSessionInfo ReadInfo()
{
    omaSessionInfo info = {};
    Check("OrvOMAEXGetSessionInfo", OrvOMAEXGetSessionInfo(&info));
    return info;
}

void Select(bool accept)
{
    BYTE selection = accept ? 1 : 0;
    Check("OrvOMAEXSelection", OrvOMAEXSelection(&selection));
}

struct WatchOptions {
    ULONG type = 0;
    bool accept = false; // a firmware package, or with answer what there is to answer
    bool watch = false;
};

// Without `watch` management stays begun, so that the session goes on. With it the events are printed until the session
// ends, or until a firmware package is found that is not accepted beforehand.
int Run(Client& client, const std::string& command, const WatchOptions& watch,
        const std::function<bool(Report&)>& begin)
{
    Report report(command);
    if (!watch.watch) {
        Session session;
        session.Open();
        Begun begun;
        begin(report);
        begun.Keep();
        session.Close();
        client.Answer(report);
        return 0;
    }
    std::optional<Begun> begun;
    ULONG state = kWaiting;
    ListenOptions options;
    options.command = command;
    options.wanted = {ORV_NOTIFY_OMAEvent, ORV_NOTIFY_FUMOEvent};
    options.begin = [&] {
        begun.emplace();
        Check("OrvSetOMAEXEventReport", OrvSetOMAEXEventReport());
        const bool started = begin(report);
        if (!client.Json()) PrintLine(report.ToText());
        return started;
    };
    options.print = [&client](const Arrival& arrival) {
        const OrvNotifyRecord& record = arrival.record;
        const bool firmware = record.uNotify == ORV_NOTIFY_FUMOEvent;
        const ULONG event = firmware ? record.payload.FUMOEvent.uEvent : record.payload.OMAEvent.uEvent;
        if (client.Json())
            PrintArrival(client, arrival);
        else
            PrintLine("State " + WithName(event, kStates));
    };
    options.last = [&](const OrvNotifyRecord& record) {
        const bool firmware = record.uNotify == ORV_NOTIFY_FUMOEvent;
        state = firmware ? record.payload.FUMOEvent.uEvent : record.payload.OMAEvent.uEvent;
        if (state != kPackageFound) return state < kWaiting;
        if (watch.accept) {
            Select(true);
            return false;
        }
        begun->Keep(); // it waits for omaex answer
        return true;
    };
    options.end = [&](bool interrupted) {
        if (interrupted) OrvOMAEXSessionCancel(); // whether it has just ended or not
        begun.reset();
        if (!client.Json() && interrupted) PrintLine("The session is cancelled.");
        if (!client.Json() && state == kPackageFound)
            PrintLine("The package waits for an answer: omaex answer accept, or omaex answer reject");
    };
    options.report = [&](Report& answer) {
        answer.Merge(report);
        answer.AddHidden("state", state < kWaiting || state == kPackageFound ? Json(state) : Json());
    };
    return Listen(client, options);
}

int Start(Client& client, const WatchOptions& options)
{
    return Run(client, "omaex start", options, [&options](Report& report) {
        BYTE type = static_cast<BYTE>(options.type);
        Check("OrvOMAEXSessionStart", OrvOMAEXSessionStart(&type));
        AddWithName(report, "type", "Began a session for", options.type, kTypes);
        return true;
    });
}

int Answer(Client& client, const WatchOptions& options)
{
    return Run(client, "omaex answer", options, [&options](Report& report) {
        Select(options.accept);
        report.Add("accepted", "Accepted", options.accept);
        return options.accept;
    });
}

// A command that is over at once.
int Act(Client& client, const std::string& command, const std::function<void(Report&)>& act)
{
    Session session;
    session.Open();
    Report report(command);
    {
        const Begun begun;
        act(report);
    }
    session.Close();
    client.Answer(report);
    return 0;
}

void Cancel(Report& report)
{
    Check("OrvOMAEXSessionCancel", OrvOMAEXSessionCancel());
    report.AddHidden("cancelled", true);
    report.AddLine("The session is cancelled.");
}

void Status(Report& report)
{
    const omaSessionInfo info = ReadInfo();
    AddWithName(report, "state", "State", info.state, kStates);
    AddWithName(report, "type", "For", info.type, kTypes);
    AddWithName(report, "failure_reason", "Failure", info.failureReason, kReasons);
    report.Add("retry_count", "Retries", info.retryCount);
    report.Add("pause_seconds", "Next attempt in", info.pauseSeconds, std::to_string(info.pauseSeconds) + " s");
    report.Add("remaining_seconds", "Given up in", info.remainingSeconds, std::to_string(info.remainingSeconds) + " s");
    report.Add("package_size", "Firmware package", info.packageSize, std::to_string(info.packageSize) + " octets");
}

void ShowOrSet(Report& report, const Switches& switches)
{
    BYTE values[std::size(kSettings)] = {};
    BYTE* changes[std::size(kSettings)] = {};
    bool set = false;
    for (size_t i = 0; i < switches.size(); ++i) {
        if (!switches[i]) continue;
        values[i] = *switches[i] ? 1 : 0;
        changes[i] = &values[i];
        set = true;
    }
    if (set) {
        Check("OrvOMAEXSetSettings",
              OrvOMAEXSetSettings(changes[0], changes[1], changes[2], changes[3], changes[4], changes[5]));
    }
    Check("OrvOMAEXGetSettings",
          OrvOMAEXGetSettings(&values[0], &values[1], &values[2], &values[3], &values[4], &values[5]));
    report.AddHidden("action", set ? "set" : "get");
    for (size_t i = 0; i < switches.size(); ++i)
        report.Add(kSettings[i].place, kSettings[i].label, values[i] != 0, values[i] != 0 ? "on" : "off");
}

int End(Client& client)
{
    Session session;
    session.Open();
    Check("OrvOMAEXShutdown", OrvOMAEXShutdown());
    session.Close();
    Report report("omaex end");
    report.AddHidden("ended", true);
    report.AddLine("Extended device management is ended.");
    client.Answer(report);
    return 0;
}

} // namespace

void AddOmaExCommands(Client& client)
{
    CLI::App* const omaex = client.App().add_subcommand("omaex", "Extended device management (OMA-EX)");
    omaex->require_subcommand(1);
    const auto add = [&client, omaex](const char* name, const char* help, const Client::Body& body) {
        CLI::App* const sub = omaex->add_subcommand(name, help);
        client.RunWithModule(sub, body);
        return sub;
    };

    const auto switches = std::make_shared<Switches>();
    CLI::App* const settings =
        add("settings", "Show or set what may be updated, and who may begin it", [&client, switches] {
            return Act(client, "omaex settings", [switches](Report& report) { ShowOrSet(report, *switches); });
        });
    for (size_t i = 0; i < switches->size(); ++i)
        AddSwitch(settings, kSettings[i].option, (*switches)[i], kSettings[i].label);

    constexpr const char* kWatch = "Print the events of the session until it ends; an interruption cancels it";
    const auto options = std::make_shared<WatchOptions>();
    CLI::App* const start = add("start", "Begin a session", [&client, options] { return Start(client, *options); });
    AddSessionType(start, options->type,
                   {{"configuration", ORV_OMADM_START_DEVICE_CONFIGURATION},
                    {"prl", ORV_OMADM_START_PRL_UPDATE},
                    {"activation", ORV_OMADM_START_ACTIVATION},
                    {"firmware", kFirmware}});
    CLI::Option* const watch = start->add_flag("--watch", options->watch, kWatch);
    start->add_flag("--accept", options->accept, "Accept a firmware package when it is found (with --watch)")
        ->needs(watch);
    start->footer("A session on a simulated module lives as long as the client: --watch shows what becomes of it.");

    CLI::App* const answer =
        add("answer", "Accept or reject a firmware package, or a session that the network asks for",
            [&client, options] { return Answer(client, *options); });
    AddAnswer(answer, options->accept);
    answer->add_flag("--watch", options->watch, kWatch);

    add("cancel", "End the session that is under way", [&client] { return Act(client, "omaex cancel", Cancel); });
    add("status", "Show the session that is under way, or the last one",
        [&client] { return Act(client, "omaex status", Status); });
    add("end", "End extended device management, and what is under way", [&client] { return End(client); });
}

} // namespace ctl
