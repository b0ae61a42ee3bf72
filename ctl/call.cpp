// The commands for voice calls: call dial, call list, call answer, call end, call hold, call swap.

#include "ctl/listen.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "ctl/vendor.h"

#include <algorithm>
#include <cstring>

namespace ctl {

namespace {

constexpr const char* kStates[] = {nullptr,    "originating", "incoming", "conversation",  "proceeding",
                                   "alerting", "held",        "waiting",  "disconnecting", "ended"};
constexpr const char* kDirections[] = {nullptr, "outgoing", "incoming"};
constexpr const char* kModes[] = {nullptr, "CDMA", "GSM", "UMTS"};

// The name of a number, or the number where it has none.
template <size_t Size>
Json Named(const char* const (&names)[Size], BYTE number)
{
    return number < Size && names[number] ? Json(names[number]) : Json(number);
}

// --- the calls there are

struct CallEntry {
    BYTE id, state, type, direction, mode;
    bool multiparty;
    std::optional<std::string> number; // nothing when it is withheld or not known
};

std::vector<CallEntry> ReadCalls()
{
    struct Records { // too many for the stack of a small machine
        arrCallInfo calls;
        arrRemotePartyNum numbers;
        arrRemotePartyName names;
        arrAlertingType alertings;
        arrUUSInfo user_infos;
        arrSvcOption options;
        BYTE voice_privacy, otasp;
        arrCallEndReason end_reasons;
        arrAlphaIDInfo sim_texts;
        arrPeerNumInfo connected;
        arrDiagInfo diagnostics;
        arrPeerNumInfo called, redirecting;
        arrAlertingPattern patterns;
    };
    const auto all = std::make_unique<Records>();
    CheckVendor("GetAllCallInfo",
                Vendor().GetAllCallInfo(&all->calls, &all->numbers, &all->names, &all->alertings, &all->user_infos,
                                        &all->options, &all->voice_privacy, &all->otasp, &all->end_reasons,
                                        &all->sim_texts, &all->connected, &all->diagnostics, &all->called,
                                        &all->redirecting, &all->patterns));

    constexpr size_t kMaxCalls = GOBI_MAX_CALLS;
    std::vector<CallEntry> entries;
    for (size_t i = 0; i < std::min<size_t>(all->calls.count, kMaxCalls); ++i) {
        const auto& call = all->calls.calls[i];
        CallEntry entry = {call.callId, call.state, call.type, call.direction, call.mode, call.mpty == 1, {}};
        for (size_t k = 0; k < std::min<size_t>(all->numbers.count, kMaxCalls); ++k) {
            const auto& number = all->numbers.numbers[k];
            if (number.callId != entry.id || number.presentation != 0) continue;
            const size_t length = std::min<size_t>(number.length, sizeof number.digits);
            entry.number = Utf8(reinterpret_cast<const char*>(number.digits), length);
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

void AddCalls(Report& report, const std::vector<CallEntry>& calls)
{
    Json list = Json::array();
    for (const CallEntry& call : calls) {
        list.push_back({{"call_id", call.id},
                        {"state", Named(kStates, call.state)},
                        {"direction", Named(kDirections, call.direction)},
                        {"number", call.number ? Json(*call.number) : Json()},
                        {"type", call.type},
                        {"mode", Named(kModes, call.mode)},
                        {"multiparty", call.multiparty}});
        std::string line = "Call " + std::to_string(call.id) + "  " + PlainText(Named(kStates, call.state));
        line += call.direction == 1 ? ", to " : ", from ";
        line += call.number ? *call.number : "a withheld number";
        if (call.multiparty) line += ", multiparty";
        report.AddLine(line);
    }
    if (calls.empty()) report.AddLine("There is no call.");
    report.AddHidden("calls", std::move(list));
}

std::string Ids(const std::vector<CallEntry>& calls)
{
    std::string text;
    for (const CallEntry& call : calls)
        text += (text.empty() ? "" : ", ") + std::to_string(call.id);
    return text;
}

// Those in one of the states, in the order of the states.
std::vector<CallEntry> InState(const std::vector<CallEntry>& calls, std::initializer_list<BYTE> states)
{
    std::vector<CallEntry> found;
    for (const BYTE state : states)
        std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                     [state](const CallEntry& call) { return call.state == state; });
    return found;
}

// --- dialling and answering, and watching what becomes of it

struct WatchOptions {
    std::string number;
    bool withhold = false;
    std::optional<ULONG> id;
    bool watch = false;
};

// A call that the client has set up.
struct OwnCall {
    BYTE id = 0;
    bool up = false;
    std::optional<ULONG> end_reason;

    void End()
    {
        if (!up) return;
        up = false;
        BYTE call = id, ended = 0;
        Check("OrvEndCall", OrvEndCall(&call, &ended));
    }
    // `act`, and where that fails the call is ended: nobody is left who would.
    template <class Act>
    void OrEnd(Act act)
    {
        try {
            act();
        } catch (...) {
            BYTE call = id, ended = 0;
            if (up) OrvEndCall(&call, &ended); // the first failure is the one to report
            up = false;
            throw;
        }
    }
};

// With --watch: sets the call up with `begin`, which adds to the report, and prints the call events until the call
// ends. Without it the call is left to the module.
int SetUp(Client& client, const std::string& command, bool watch, const std::function<void(OwnCall&, Report&)>& begin)
{
    OwnCall call;
    Report report(command);
    if (!watch) {
        Session session;
        session.Open();
        begin(call, report);
        session.Close();
        client.Answer(report);
        return 0;
    }
    ListenOptions options;
    options.command = command;
    options.wanted = {ORV_NOTIFY_CallNotificationStatus};
    options.begin = [&] {
        begin(call, report);
        call.OrEnd([&] {
            if (!client.Json()) PrintLine(report.ToText());
        });
        return call.up;
    };
    options.print = [&](const Arrival& arrival) { call.OrEnd([&] { PrintArrival(client, arrival); }); };
    options.last = [&](const OrvNotifyRecord& record) {
        const OrvCallStatusPayload& status = record.payload.CallStatus;
        if (record.uNotify != ORV_NOTIFY_CallDisconnected || status.uCallId != call.id) return false;
        call.up = false;
        call.end_reason = status.uDetail;
        return true;
    };
    options.end = [&](bool) { call.End(); };
    options.report = [&](Report& answer) {
        answer.Merge(report);
        answer.AddHidden("end_reason", call.end_reason ? Json(*call.end_reason) : Json());
    };
    return Listen(client, options);
}

// What is dialled, as the module takes it.
tDialReqParam Request(const WatchOptions& options)
{
    tDialReqParam request = {};
    const std::string& number = options.number;
    if (number.empty() || number.size() > sizeof request.number ||
        number.find_first_not_of("0123456789*#+p") != std::string::npos)
        throw UsageError("'" + number + "' is no number: 1 to " + std::to_string(sizeof request.number) +
                         " of 0-9, *, #, + and p");
    request.clir = options.withhold ? 1 : 0;
    request.numberType = number[0] == '+' ? 1 : 0;
    request.numberPlan = 1;
    request.numberLength = static_cast<BYTE>(number.size());
    std::memcpy(request.number, number.data(), number.size());
    return request;
}

int Dial(Client& client, const WatchOptions& options)
{
    tDialReqParam request = Request(options);
    return SetUp(client, "call dial", options.watch, [&](OwnCall& call, Report& report) {
        alphaIDInfo text = {};
        BYTE became = 0;
        ccSUPSType service = {};
        Check("OrvDialCall", OrvDialCall(&request, &call.id, &text, &became, &service));
        call.up = became == GOBI_CALL_CONTROL_VOICE;
        report.Add("call_id", "Call ID", call.up ? Json(call.id) : Json());
        report.Add("number", "Number", options.number);
        AddCallControl(report, "call", became, text);
    });
}

int AnswerCall(Client& client, const WatchOptions& options)
{
    return SetUp(client, "call answer", options.watch, [&](OwnCall& call, Report& report) {
        if (options.id) {
            call.id = static_cast<BYTE>(*options.id);
        } else {
            const auto ringing = InState(ReadCalls(), {GOBI_CALL_INCOMING, GOBI_CALL_WAITING});
            if (ringing.empty()) throw ClientError("no call rings or waits");
            call.id = ringing[0].id;
        }
        BYTE answered = 0;
        Check("OrvAnserCall", OrvAnserCall(&call.id, &answered));
        call.id = answered;
        call.up = true;
        report.Add("call_id", "Answered call", answered);
    });
}

// --- what needs no watching

int List(Client& client)
{
    Session session;
    session.Open();
    Report report("call list");
    AddCalls(report, ReadCalls());
    session.Close();
    client.Answer(report);
    return 0;
}

int EndCall(Client& client, std::optional<ULONG> id)
{
    Session session;
    session.Open();
    if (!id) {
        const std::vector<CallEntry> calls = ReadCalls();
        if (calls.empty()) throw ClientError("there is no call");
        if (calls.size() > 1) throw UsageError("there are several calls: name one of " + Ids(calls));
        id = calls[0].id;
    }
    BYTE call = static_cast<BYTE>(*id), ended = 0;
    Check("OrvEndCall", OrvEndCall(&call, &ended));
    session.Close();
    Report report("call end");
    report.Add("call_id", "Ended call", ended);
    client.Answer(report);
    return 0;
}

void Manage(BYTE kind, BYTE id)
{
    WORD cause = 0;
    const ORV_RCODE code = OrvManageCalls(&kind, &id, &cause);
    if (code != ORV_RCODE_OK) throw CallFailed("OrvManageCalls", code, cause);
}

// hold: those in conversation are held, all of them or all but one. swap: one that is held or waits is talked to.
int HoldOrSwap(Client& client, bool swap, std::optional<ULONG> id)
{
    Session session;
    session.Open();
    const std::vector<CallEntry> calls = ReadCalls();
    const auto others =
        swap ? InState(calls, {GOBI_CALL_HELD, GOBI_CALL_WAITING}) : InState(calls, {GOBI_CALL_CONVERSATION});
    const bool named = id && std::any_of(others.begin(), others.end(), [&](const CallEntry& c) { return c.id == *id; });
    if (others.empty()) throw ClientError(swap ? "no call is held or waits" : "no call is in conversation");
    const std::string call = id ? "call " + std::to_string(*id) : "";
    if (id && !named)
        throw ClientError(call + (swap ? " is neither held nor does it wait" : " is not in conversation"));
    // The network takes the call that waits, if there is one, and all that are held otherwise.
    const std::vector<CallEntry> waiting = InState(calls, {GOBI_CALL_WAITING});
    if (swap && id && !waiting.empty() && waiting[0].id != *id)
        throw ClientError(call + " cannot be talked to while another one waits");
    if (id && !swap)
        Manage(GOBI_MANAGE_HOLD_ALL_BUT_ONE, static_cast<BYTE>(*id));
    else
        Manage(GOBI_MANAGE_HOLD_ACTIVE, id ? static_cast<BYTE>(*id) : BYTE{0});
    Report report(swap ? "call swap" : "call hold");
    AddCalls(report, ReadCalls());
    session.Close();
    client.Answer(report);
    return 0;
}

} // namespace

void AddCallCommands(Client& client)
{
    CLI::App* const call = client.App().add_subcommand("call", "Voice calls");
    call->require_subcommand(1);
    const auto id_option = [](CLI::App* sub, std::optional<ULONG>& id, const char* help) {
        sub->add_option("ID", id, help)->check(CLI::Range(1, 255));
    };
    constexpr const char* kWatch = "Print the call events until the call ends; an interruption ends it";

    CLI::App* const dial = call->add_subcommand("dial", "Dial a number");
    const auto dial_options = std::make_shared<WatchOptions>();
    dial->add_option("NUMBER", dial_options->number, "Digits, *, #, +, and p for a pause")->required();
    dial->add_flag("--withhold", dial_options->withhold, "Do not show the own number to the other side");
    dial->add_flag("--watch", dial_options->watch, kWatch);
    dial->footer("A call on a simulated module lives as long as the client: --watch shows what becomes of it.");
    client.RunWithModule(dial, [&client, dial_options] { return Dial(client, *dial_options); });

    client.RunWithModule(call->add_subcommand("list", "List the calls there are"), [&client] { return List(client); });

    CLI::App* const answer = call->add_subcommand("answer", "Answer the call that rings or waits");
    const auto answer_options = std::make_shared<WatchOptions>();
    id_option(answer, answer_options->id, "The call (default: the one that rings or waits)");
    answer->add_flag("--watch", answer_options->watch, kWatch);
    client.RunWithModule(answer, [&client, answer_options] { return AnswerCall(client, *answer_options); });

    const auto with_id = [&](const char* name, const char* help, const char* id_help,
                             int (*run)(Client&, std::optional<ULONG>)) {
        CLI::App* const sub = call->add_subcommand(name, help);
        const auto id = std::make_shared<std::optional<ULONG>>();
        id_option(sub, *id, id_help);
        client.RunWithModule(sub, [&client, id, run] { return run(client, *id); });
    };
    with_id("end", "End a call, or refuse it", "The call (default: the only one)", EndCall);
    with_id("hold", "Hold the calls in conversation (one that is held or waits is then talked to)",
            "Hold all of them but this one",
            [](Client& c, std::optional<ULONG> id) { return HoldOrSwap(c, false, id); });
    with_id("swap", "Hold the calls in conversation, and talk to the one that is held or waits",
            "The call that is to be talked to, which must be held or wait",
            [](Client& c, std::optional<ULONG> id) { return HoldOrSwap(c, true, id); });
}

} // namespace ctl
