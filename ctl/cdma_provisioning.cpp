// The commands for what a CDMA module is provisioned with: provision show, unlock, set, commit, status, activate.
//
// A session with the service programming code lasts as long as the process, so that one command does all of it.

#include "talvek/cdma_provisioning.h"
#include "ctl/client.h"
#include "ctl/event_queue.h"
#include "ctl/listen.h"
#include "ctl/service_code.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "talvek/cdma.h"

#include <algorithm>
#include <chrono>

namespace ctl {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr ULONG kNam = 0; // there is no other

struct Name {
    ULONG value;
    const char* name;
};
constexpr Name kModes[] = {{3, "AMPS only"}, {4, "automatic"}, {9, "1x only"}, {10, "EV-DO only"}};
constexpr Name kRoaming[] = {{2, "home only"}, {3, "automatic"}, {4, "home and affiliated"}, {10, "affiliated"}};
constexpr Name kActivation[] = {{0, "not activated"}, {1, "activated"}};
constexpr Name kCallStates[] = {{0, "disconnected"}, {1, "connecting"}, {2, "connected"}};

// What OrvSetTempModePref takes for a roaming preference, and what OrvPstGetSystemPref then gives.
struct RoamingChoice {
    const char* name;
    ULONG band, roam, preference;
};
constexpr RoamingChoice kRoamingChoices[] = {
    {"automatic", 65535, 255, 3}, {"home", 65535, 1, 2}, {"affiliated", 65535, 2, 10}, {"home-affiliated", 1, 255, 4}};

template <size_t kCount>
const char* NameOf(const Name (&names)[kCount], ULONG value)
{
    for (const Name& row : names)
        if (row.value == value) return row.name;
    return nullptr;
}

// The number under `place`, and its name under `place`_name; null for what the module has, but the interface has not.
template <size_t kCount>
void AddNamed(Report& report, const std::string& place, const std::string& label, std::optional<ULONG> value,
              const Name (&names)[kCount], const char* otherwise)
{
    const char* const name = value ? NameOf(names, *value) : nullptr;
    const std::string text = value ? std::to_string(*value) + " (" + (name ? name : otherwise) + ")" : otherwise;
    report.Add(place, label, value ? Json(*value) : Json(), text);
    report.AddHidden(place + "_name", name ? Json(name) : Json());
}

// --- what the module has

struct Items {
    std::string mdn, min;
    WORD mcc = 0, digits1112 = 0, sid = 0, nid = 0;
    BYTE accolc = 0, sci = 0, home_only = 0, sid_registration = 0, nid_registration = 0;
    std::optional<ULONG> mode, roaming;

    static std::optional<ULONG> Known(const char* function, ORV_RCODE code, ULONG value)
    {
        if (code == ORV_RCODE_UNKNOWN) return {}; // a value that the interface has no number for
        Check(function, code);
        return value;
    }

    // After OrvIsModemReady.
    void Read()
    {
        mdn = ReadText("OrvGetPhoneNumber", OrvGetPhoneNumber);
        WCHAR digits[11] = {};
        Check("OrvGetCdmaIMSI", OrvGetCdmaIMSI(digits));
        min = Utf8(digits, std::size(digits));
        Check("OrvPstGetImsiMcc", OrvPstGetImsiMcc(kNam, &mcc));
        Check("OrvPstGetImsi1112", OrvPstGetImsi1112(kNam, &digits1112));
        BYTE octets[4] = {};
        Check("OrvPstGetHomeSidNid", OrvPstGetHomeSidNid(kNam, octets));
        sid = static_cast<WORD>(octets[0] | octets[1] << 8);
        nid = static_cast<WORD>(octets[2] | octets[3] << 8);
        Check("OrvPstGetAccolc", OrvPstGetAccolc(kNam, &accolc));
        Check("OrvPstGetSci", OrvPstGetSci(&sci));
        Check("OrvPstGetTermHome", OrvPstGetTermHome(kNam, &home_only));
        Check("OrvPstGetTermSid", OrvPstGetTermSid(kNam, &sid_registration));
        Check("OrvPstGetTermNid", OrvPstGetTermNid(kNam, &nid_registration));
        ULONG value = 0;
        const ORV_RCODE mode_code = OrvPstGetPrefMode(kNam, &value);
        mode = Known("OrvPstGetPrefMode", mode_code, value);
        const ORV_RCODE roaming_code = OrvPstGetSystemPref(kNam, &value);
        roaming = Known("OrvPstGetSystemPref", roaming_code, value);
    }

    void AddTo(Report& report) const
    {
        report.Add("mdn", "Directory number (MDN)", mdn);
        report.Add("min", "MIN", min);
        report.Add("mcc", "Home MCC", mcc);
        report.Add("imsi_11_12", "IMSI 11 and 12", digits1112);
        report.Add("home_sid", "Home SID", sid);
        report.Add("home_nid", "Home NID", nid, std::to_string(nid) + (nid == 65535 ? " (any)" : ""));
        report.Add("accolc", "Access overload class", accolc);
        report.Add("slot_cycle_index", "Slot cycle index", sci);
        report.Add("registration.home_only", "Home-only registration", home_only != 0);
        report.Add("registration.sid", "SID registration", sid_registration != 0);
        report.Add("registration.nid", "NID registration", nid_registration != 0);
        AddNamed(report, "mode", "Preferred mode", mode, kModes, "one without a number here");
        AddNamed(report, "roaming", "Roaming preference", roaming, kRoaming, "one without a number here");
    }
};

int Show(Client& client)
{
    Session session;
    session.Open();
    Check("OrvIsModemReady", OrvIsModemReady());
    Items items;
    items.Read();
    session.Close();
    Report report("provision show");
    items.AddTo(report);
    client.Answer(report);
    return 0;
}

int Status(Client& client)
{
    Session session;
    session.Open();
    ULONG activation = 0, mask = 0, shortest = 0, longest = 0, message = 0, call = 0, error = 0;
    Check("OrvGetActivationStatus", OrvGetActivationStatus(&activation));
    Check("OrvPriGetActivationMask", OrvPriGetActivationMask(&mask));
    Check("OrvPriGetMDNLength", OrvPriGetMDNLength(&shortest, &longest));
    Check("OrvPriGetMaxMosmsLen", OrvPriGetMaxMosmsLen(&message));
    Check("OrvGetCallConnectionState", OrvGetCallConnectionState(&call, &error));
    session.Close();
    Report report("provision status");
    AddNamed(report, "activation", "Activation", activation, kActivation, "a step on the way");
    AddNamed(report, "call", "Data session as a call", call, kCallStates, "?");
    report.Add("mobile_ip_error", "Last Mobile IP error", error, error == 0 ? "none" : std::to_string(error));
    report.Add("activation_mask", "Items that can be written", mask, HexNumber(mask, 4));
    report.AddHidden("mdn_length.min", shortest);
    report.Add("mdn_length.max", "Digits of an MDN", longest);
    report.Add("message_length", "Longest message", message, std::to_string(message) + " characters");
    client.Answer(report);
    return 0;
}

// --- the code

int TryCode(Client& client)
{
    const ServiceCode code;
    Session session;
    session.Open();
    code.Unlock();
    session.Close();
    Report report("provision unlock");
    report.Add("unlocked", "Code", true, "right");
    client.Answer(report);
    return 0;
}

// --- writing

struct SetOptions {
    const char* command = "provision set";
    std::optional<std::string> mdn, min, roaming;
    std::optional<ULONG> accolc, sid, nid, mode;
    bool unlock = false, commit = false;
    ULONG wait_seconds = 60;

    bool Activates() const { return mdn && min && sid; }
    void Validate() const
    {
        if (!mdn && !min && !accolc && !sid && !mode && !roaming) throw UsageError("nothing to set");
        if ((accolc || roaming) && !unlock) throw UsageError("--accolc and --roaming need the code: --unlock");
        if (nid && !sid) throw UsageError("--home-nid needs --home-sid");
        if (sid && !(commit && Activates())) {
            throw UsageError("--home-sid is written by a commit, together with --mdn and --min");
        }
        if (commit && !accolc && !Activates()) {
            throw UsageError("nothing to commit: it takes --accolc, or --mdn, --min and --home-sid together");
        }
    }
};

// Throws where the module does not have what it was given: several functions only log what failed.
void Compare(const Items& items, const SetOptions& options)
{
    const auto differs = [](const char* what, const std::string& has, const std::string& given) {
        if (has != given) throw ClientError(std::string("the module has the ") + what + " " + has + ", not " + given);
    };
    const auto text = [](std::optional<ULONG> number) { return number ? std::to_string(*number) : "?"; };
    if (options.mdn) differs("directory number", items.mdn, *options.mdn);
    if (options.min) differs("MIN", items.min, *options.min);
    if (options.accolc) differs("access overload class", text(items.accolc), text(options.accolc));
    if (options.sid) differs("home SID", text(items.sid), text(options.sid));
}

const RoamingChoice& ChoiceOf(const std::string& name)
{
    for (const RoamingChoice& choice : kRoamingChoices)
        if (name == choice.name) return choice;
    throw UsageError("no such roaming preference: " + name);
}

void Write(const SetOptions& options)
{
    const auto wide = [](const std::string& digits) { return std::basic_string<WCHAR>(digits.begin(), digits.end()); };
    if (options.mdn) Check("OrvSetMobileDirNum", OrvSetMobileDirNum(kNam, wide(*options.mdn).c_str()));
    if (options.min) Check("OrvSetIMSI", OrvSetIMSI(kNam, wide(*options.min).c_str()));
    if (options.accolc) Check("OrvPstSetAccolc", OrvPstSetAccolc(kNam, static_cast<WORD>(*options.accolc)));
    if (options.sid) {
        const ULONG sid = *options.sid, nid = options.nid.value_or(65535);
        const BYTE octets[] = {static_cast<BYTE>(sid), static_cast<BYTE>(sid >> 8), static_cast<BYTE>(nid),
                               static_cast<BYTE>(nid >> 8)};
        Check("OrvPstSetHomeSidNid", OrvPstSetHomeSidNid(kNam, octets));
    }
    if (options.mode) Check("OrvPstSetPrefMode", OrvPstSetPrefMode(kNam, static_cast<WORD>(*options.mode)));
    if (options.roaming) {
        const RoamingChoice& choice = ChoiceOf(*options.roaming);
        Check("OrvSetTempModePref",
              OrvSetTempModePref(CM_MODE_PREF_NO_CHANGE, CNS_MODE_TERM_PERMANENT, 0, choice.band, choice.roam));
    }
}

bool RadioIsOn()
{
    OrvRadioPower power = {};
    power.sizeStruct = sizeof power;
    return OrvGetRadioPower(&power) == ORV_RCODE_OK && power.bRadioOn == 1;
}

// Waits until the module has left and come back. An event tells; once it has left it is also asked, as one that comes
// back as a new device tells nothing.
void AwaitReturn(EventQueue& queue, ULONG wait_seconds)
{
    constexpr milliseconds kBetweenQuestions(500);
    const auto deadline = EventQueue::Clock::now() + seconds(wait_seconds);
    bool left = false;
    Arrival arrival;
    while (EventQueue::Clock::now() < deadline) {
        const auto next = std::min(deadline, EventQueue::Clock::now() + kBetweenQuestions);
        if (queue.Wait(arrival, next) == EventQueue::Woken::ByEvent) {
            const OrvNotifyRecord& record = arrival.record;
            const bool power = record.uNotify == ORV_NOTIFY_PowerState;
            if (left && power && record.payload.PowerState.uPowerState == 0) return;
            left = left || record.uNotify == ORV_NOTIFY_DeviceRemoved ||
                   (power && record.payload.PowerState.uPowerState != 0);
        } else if (left && RadioIsOn()) {
            return;
        }
    }
    throw ClientError(std::string("the module has not ") + (left ? "come back" : "left") + " within " +
                      std::to_string(wait_seconds) + " seconds");
}

// Returns the result of the commit: a tolerated failure is reported once the module is back.
ORV_RCODE Commit(Session& session, EventQueue& queue, ULONG wait_seconds)
{
    BYTE reset_follows = 0;
    ULONG error_mask = 0;
    const ORV_RCODE code = OrvPstLock(0, 0, &reset_follows, &error_mask);
    if (!reset_follows) Check("OrvPstLock", code);
    AwaitReturn(queue, wait_seconds);
    session.Select();
    return code;
}

int Set(Client& client, const SetOptions& options)
{
    options.Validate();
    std::optional<ServiceCode> code;
    if (options.unlock) code.emplace();
    EventQueue& queue = EventQueue::Get();
    Session session;
    session.Open();
    queue.Register();
    Check("OrvIsModemReady", OrvIsModemReady()); // forgets a code, so it comes first
    if (code) code->Unlock();
    Write(options);
    if (options.commit) {
        Check("OrvPstLock", Commit(session, queue, options.wait_seconds));
        Check("OrvIsModemReady", OrvIsModemReady());
    }
    Items items;
    items.Read();
    session.Close();
    Compare(items, options);
    Report report(options.command);
    report.AddHidden("committed", options.commit);
    items.AddTo(report);
    if (options.commit) report.AddLine("The module has been reset and is back.");
    if (options.nid && *options.nid != items.nid)
        report.AddLine("It keeps its home NID: a commit sends the SID alone.");
    client.Answer(report);
    return 0;
}

// --- activation

int Activate(Client& client, ListenOptions listen, std::string code)
{
    constexpr ULONG kActivated = 9, kNotActivated = 8; // of notification 1032
    const auto state = std::make_shared<ULONG>(0);
    listen.command = "provision activate";
    listen.wanted = {ORV_NOTIFY_ActivationStatus};
    listen.begin = [code = std::move(code)]() mutable {
        Check("OrvActivateAutomatic", OrvActivateAutomatic(code.data()));
        return true;
    };
    listen.awaited = "the end of the activation";
    listen.last = [](const OrvNotifyRecord& record) {
        const OrvActivationStatusPayload& payload = record.payload.ActivationStatus;
        return payload.uState == kActivated || (payload.uState == kNotActivated && payload.uValid == 0);
    };
    listen.end = [state](bool interrupted) {
        Check("OrvGetActivationStatus", OrvGetActivationStatus(state.get()));
        if (!interrupted && *state == 0) throw ClientError("the module has not been activated");
    };
    listen.report = [state](Report& report) {
        AddNamed(report, "activation", "Activation", *state, kActivation, "a step on the way");
    };
    return Listen(client, listen);
}

std::string CheckDigits(const std::string& text, size_t least, size_t most)
{
    const bool fits = text.size() >= least && text.size() <= most;
    if (fits && text.find_first_not_of("0123456789") == std::string::npos) return "";
    return "'" + text + "' is not " + (least == most ? "" : std::to_string(least) + " to ") + std::to_string(most) +
           " digits";
}

void AddItems(CLI::App* sub, const std::shared_ptr<SetOptions>& options)
{
    sub->add_option("--mdn", options->mdn, "The directory number, 1 to 15 digits")->check([](const std::string& text) {
        return CheckDigits(text, 1, 15);
    });
    sub->add_option("--min", options->min, "The MIN, ten digits")->check([](const std::string& text) {
        return CheckDigits(text, 10, 10);
    });
    sub->add_option("--accolc", options->accolc, "The access overload class, 0 to 15")->check(CLI::Range(0, 15));
    sub->add_option("--home-sid", options->sid, "The home SID: committed, with --mdn and --min")
        ->check(CLI::Range(0, 32767));
    sub->add_option("--home-nid", options->nid, "The home NID (default: 65535)")->check(CLI::Range(0, 65535));
    sub->add_option("--mode", options->mode, "The preferred mode: 3 AMPS only, 4 automatic, 9 1x only, 10 EV-DO only")
        ->check(CLI::IsMember({3, 4, 9, 10}));
    sub->add_option("--roaming", options->roaming, "automatic, home, affiliated or home-affiliated")
        ->check(CLI::IsMember({"automatic", "home", "affiliated", "home-affiliated"}));
    sub->add_option("--wait", options->wait_seconds, "Seconds for the module to come back (default: 60)")
        ->check(CLI::Range(1, 3600));
}

} // namespace

void AddProvisionCommands(Client& client)
{
    CLI::App* const provision = client.App().add_subcommand("provision", "What a CDMA module is provisioned with");
    provision->require_subcommand(1);
    const auto add = [&client, provision](const char* name, const char* help, const Client::Body& body) {
        CLI::App* const sub = provision->add_subcommand(name, help);
        client.RunWithModule(sub, body);
        return sub;
    };
    add("show", "Show subscription, home system and preferences", [&client] { return Show(client); });
    add("status", "Show activation and data session", [&client] { return Status(client); });
    add("unlock", "Try the service programming code, read from standard input", [&client] { return TryCode(client); });

    const auto set_options = std::make_shared<SetOptions>();
    CLI::App* const set = add("set", "Write items, and commit them if wanted",
                              [&client, set_options] { return Set(client, *set_options); });
    AddItems(set, set_options);
    set->add_flag("--unlock", set_options->unlock, "Read the service programming code from standard input first");
    set->add_flag("--commit", set_options->commit, "Commit, and wait for the module to come back from its reset");

    const auto commit_options = std::make_shared<SetOptions>();
    commit_options->command = "provision commit";
    commit_options->unlock = commit_options->commit = true;
    AddItems(add("commit", "The same as set --unlock --commit",
                 [&client, commit_options] { return Set(client, *commit_options); }),
             commit_options);

    const auto code = std::make_shared<std::string>();
    const auto listen = std::make_shared<std::function<ListenOptions()>>();
    CLI::App* const activate = add("activate", "Start the network's automatic activation and follow it",
                                   [&client, code, listen] { return Activate(client, (*listen)(), *code); });
    activate->add_option("CODE", *code, "The number to dial, such as *22899")->required();
    *listen = AddListenOptions(activate);
}

} // namespace ctl
