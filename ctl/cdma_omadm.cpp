// The commands for device management: omadm features, start, cancel, status, alert, answer.

#include "talvek/cdma_omadm.h"
#include "ctl/listen.h"
#include "ctl/management.h"
#include "ctl/session.h"
#include "ctl/text.h"

namespace ctl {

namespace {

constexpr std::initializer_list<NumberName> kTypes = {{ORV_OMADM_TYPE_DEVICE_CONFIGURATION, "device configuration"},
                                                      {ORV_OMADM_TYPE_PRL_UPDATE, "PRL update"},
                                                      {ORV_OMADM_TYPE_ACTIVATION, "activation"}};
constexpr std::initializer_list<NumberName> kSources = {
    {ORV_OMADM_SOURCE_CLIENT, "client"}, {ORV_OMADM_SOURCE_DEVICE, "module"}, {ORV_OMADM_SOURCE_NETWORK, "network"}};
constexpr std::initializer_list<NumberName> kAnswers = {{ORV_OMADM_RESPONSE_ACCEPTED, "accepted"},
                                                        {ORV_OMADM_RESPONSE_FAILED, "failed"},
                                                        {ORV_OMADM_RESPONSE_REJECTED, "rejected"}};

constexpr const char* kWatch = "Print the events of the session until it ends; an interruption cancels it";

std::string StateText(ULONG state)
{
    switch (state) {
    case ORV_OMADM_STATE_CONNECTING:
        return "connecting";
    case ORV_OMADM_STATE_PROCEEDING:
        return "under way, or done";
    case ORV_OMADM_STATE_AFTER_NO_NETWORK:
        return "connecting again: the network was out of reach";
    case ORV_OMADM_STATE_AFTER_NO_SERVER:
        return "connecting again: the server was out of reach";
    case ORV_OMADM_STATE_AFTER_REFUSAL:
        return "connecting again: the server refused";
    case ORV_OMADM_STATE_WAITING:
        return "waits for the next attempt";
    case ORV_OMADM_STATE_NOTHING_NEW:
        return "ended: there is no update";
    case ORV_OMADM_STATE_FAILED:
        return "ended: failed";
    case ORV_OMADM_STATE_RETRIES_EXCEEDED:
        return "gives up: no attempt is left";
    default:
        return "unknown";
    }
}

OrvOMADMSessionState ReadState()
{
    OrvOMADMSessionState state = {};
    Check("OrvGetOMADMSessionState", OrvGetOMADMSessionState(&state));
    return state;
}

// With `watch`: after `begin`, which adds to the report, prints the events until the session ends.
int Begin(Client& client, const std::string& command, bool watch, const std::function<bool(Report&)>& begin)
{
    Report report(command);
    if (!watch) {
        Session session;
        session.Open();
        begin(report);
        session.Close();
        client.Answer(report);
        return 0;
    }
    std::string outcome = "cancelled";
    ListenOptions options;
    options.command = command;
    options.wanted = {ORV_NOTIFY_OMADMState};
    options.begin = [&] {
        const bool begun = begin(report);
        if (!begun) outcome = "not begun";
        if (!client.Json()) PrintLine(report.ToText());
        return begun;
    };
    options.print = [&client](const Arrival& arrival) {
        const ULONG state = arrival.record.payload.OMADMState.nState;
        if (client.Json())
            PrintArrival(client, arrival);
        else
            PrintLine("State " + HexNumber(state, 3) + "  " + StateText(state));
    };
    options.last = [&outcome](const OrvNotifyRecord& record) {
        switch (record.payload.OMADMState.nState) {
        case ORV_OMADM_STATE_FAILED:
            outcome = "failed";
            return true;
        case ORV_OMADM_STATE_NOTHING_NEW:
            outcome = "no update";
            return true;
        default: // the event does not tell the end from a step on the way
            if (ReadState().bIdle == 0) return false;
            outcome = "done";
            return true;
        }
    };
    options.end = [&](bool interrupted) {
        if (interrupted) OrvCancelOMADMSession(); // whether it has just ended or not
        if (!client.Json()) PrintLine("Outcome  " + outcome);
    };
    options.report = [&](Report& answer) {
        answer.Merge(report);
        answer.AddHidden("outcome", outcome);
    };
    return Listen(client, options);
}

int Start(Client& client, ULONG type, bool watch)
{
    return Begin(client, "omadm start", watch, [type](Report& report) {
        Check("OrvStartOMADMSession", OrvStartOMADMSession(type));
        const OrvOMADMSessionState state = ReadState();
        AddWithName(report, "type", "Began a session for", state.eType, kTypes);
        return true;
    });
}

int Cancel(Client& client)
{
    Session session;
    session.Open();
    Check("OrvCancelOMADMSession", OrvCancelOMADMSession());
    session.Close();
    Report report("omadm cancel");
    report.AddHidden("cancelled", true);
    report.AddLine("The session is cancelled.");
    client.Answer(report);
    return 0;
}

int Status(Client& client)
{
    Session session;
    session.Open();
    const OrvOMADMSessionState state = ReadState();
    session.Close();
    Report report("omadm status");
    report.Add("busy", "Session under way", state.bBusy != 0);
    report.Add("idle", "None, or ended with success", state.bIdle != 0);
    const bool failed = state.uError != 0;
    report.Add("error", "Failure", failed ? Json(state.uError) : Json(),
               failed ? HexNumber(state.uError, 3) + " (" + StateText(state.uError) + ")" : "none");
    AddWithName(report, "type", "For", state.eType, kTypes);
    AddWithName(report, "source", "Begun by", state.eSource, kSources);
    report.Add("pause_seconds", "Pause between attempts", state.uPauseSeconds,
               std::to_string(state.uPauseSeconds) + " s");
    client.Answer(report);
    return 0;
}

int Features(Client& client, std::optional<bool> configuration, std::optional<bool> prl_update)
{
    const auto is_on = [](const OrvOMADMConfig& config, ULONG feature) {
        return (config.dwFeatureEnableMask & feature) == feature;
    };
    const bool set = configuration || prl_update;
    Session session;
    session.Open();
    OrvOMADMConfig config = {};
    Check("OrvGetOMADMConfig", OrvGetOMADMConfig(&config));
    if (set) {
        ULONG mask = 0;
        if (configuration.value_or(is_on(config, ORV_OMADM_FEATURE_DEVICE_CONFIGURATION)))
            mask |= ORV_OMADM_FEATURE_DEVICE_CONFIGURATION;
        if (prl_update.value_or(is_on(config, ORV_OMADM_FEATURE_PRL_UPDATE))) mask |= ORV_OMADM_FEATURE_PRL_UPDATE;
        Check("OrvSetOMADMConfig", OrvSetOMADMConfig(mask, mask));
        Check("OrvGetOMADMConfig", OrvGetOMADMConfig(&config));
    }
    session.Close();
    Report report("omadm features");
    report.AddHidden("action", set ? "set" : "get");
    const auto add = [&](const char* place, const char* label, ULONG feature) {
        report.Add(place, label, is_on(config, feature), is_on(config, feature) ? "on" : "off");
    };
    add("device_configuration", "Updates of the configuration", ORV_OMADM_FEATURE_DEVICE_CONFIGURATION);
    add("prl_update", "Updates of the roaming list (PRL)", ORV_OMADM_FEATURE_PRL_UPDATE);
    client.Answer(report);
    return 0;
}

// The session that waits for an answer, if one does.
std::optional<OrvOMADMAlert> ReadAlert()
{
    OrvOMADMAlert alert = {};
    const ORV_RCODE code = OrvGetOMADMNIAlert(&alert);
    if (code == ORV_RCODE_FAILED) return {}; // the module's status for none has no code of its own
    Check("OrvGetOMADMNIAlert", code);
    return alert;
}

void AddAlert(Report& report, const OrvOMADMAlert& alert)
{
    const bool prl = alert.nType == ORV_OMADM_TYPE_PRL_UPDATE;
    report.Add("session_id", "Session", prl ? alert.uPrlSessionId : alert.uDcSessionId);
    AddWithName(report, "type", "For", alert.nType, kTypes);
}

int Alert(Client& client)
{
    Session session;
    session.Open();
    const std::optional<OrvOMADMAlert> alert = ReadAlert();
    session.Close();
    Report report("omadm alert");
    report.AddHidden("pending", alert.has_value());
    if (alert)
        AddAlert(report, *alert);
    else
        report.AddLine("No session waits for an answer.");
    client.Answer(report);
    return 0;
}

// Reading the alert first makes the library know what there is to answer.
int Answer(Client& client, bool accept, bool watch)
{
    return Begin(client, "omadm answer", watch, [accept](Report& report) {
        const std::optional<OrvOMADMAlert> alert = ReadAlert();
        if (!alert) throw ClientError("no session waits for an answer");
        OrvOMADMAlertResponse response = {};
        Check("OrvSetOMADMNIAlertResponse", OrvSetOMADMNIAlertResponse(accept ? 1 : 0, &response));
        AddAlert(report, *alert);
        AddWithName(report, "status", "Answer", response.uStatus, kAnswers);
        return response.uStatus == ORV_OMADM_RESPONSE_ACCEPTED;
    });
}

} // namespace

void AddOmaDmCommands(Client& client)
{
    CLI::App* const omadm = client.App().add_subcommand("omadm", "Device management of a CDMA module (OMA-DM)");
    omadm->require_subcommand(1);
    const auto add = [&client, omadm](const char* name, const char* help, const Client::Body& body) {
        CLI::App* const sub = omadm->add_subcommand(name, help);
        client.RunWithModule(sub, body);
        return sub;
    };
    struct Arguments {
        std::optional<bool> configuration, prl_update;
        ULONG type = 0;
        bool accept = false, watch = false;
    };
    const auto arguments = std::make_shared<Arguments>();

    CLI::App* const features = add("features", "Show or set which updates the module takes", [&client, arguments] {
        return Features(client, arguments->configuration, arguments->prl_update);
    });
    AddSwitch(features, "--configuration", arguments->configuration, "Updates of number, identity and the like");
    AddSwitch(features, "--prl", arguments->prl_update, "Updates of the preferred roaming list");

    CLI::App* const start = add("start", "Begin a session",
                                [&client, arguments] { return Start(client, arguments->type, arguments->watch); });
    AddSessionType(start, arguments->type,
                   {{"configuration", ORV_OMADM_START_DEVICE_CONFIGURATION},
                    {"prl", ORV_OMADM_START_PRL_UPDATE},
                    {"activation", ORV_OMADM_START_ACTIVATION}});
    start->add_flag("--watch", arguments->watch, kWatch);
    start->footer("A session on a simulated module lives as long as the client: --watch shows what becomes of it.");

    add("cancel", "End the session that is under way", [&client] { return Cancel(client); });
    add("status", "Show the session that is under way, or the last one", [&client] { return Status(client); });
    add("alert", "Show the session that the network asks for", [&client] { return Alert(client); });
    CLI::App* const answer = add("answer", "Accept or reject the session that the network asks for",
                                 [&client, arguments] { return Answer(client, arguments->accept, arguments->watch); });
    AddAnswer(answer, arguments->accept);
    answer->add_flag("--watch", arguments->watch, kWatch);
}

} // namespace ctl
