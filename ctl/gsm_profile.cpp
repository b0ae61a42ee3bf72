// The commands for the data profile and the packet session of a GSM/UMTS module: profile show, profile set, session up,
// session down, session address, session traffic.

#include "talvek/gsm_profile.h"
#include "ctl/alphabet.h"
#include "ctl/client.h"
#include "ctl/event_queue.h"
#include "ctl/interrupt.h"
#include "ctl/secret.h"
#include "ctl/session.h"
#include "ctl/text.h"

#include <arpa/inet.h>
#include <string.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>

namespace ctl {

namespace {

// --- profile ---------------------------------------------------------------------------------------------------------

// What the module keeps of each text.
constexpr size_t kNameLength = 31, kApnLength = 101, kUserLength = 128, kPasswordLength = 128;

constexpr std::array<const char*, 4> kPdpTypes = {"IPv4", "PPP", "IPv6", "IPv4 and IPv6"};
// The sums of 1 (PAP) and 2 (CHAP).
constexpr std::array<const char*, 4> kAuthentications = {"none", "PAP", "CHAP", "PAP or CHAP"};
const std::map<std::string, ULONG> kAuthenticationNames = {{"none", 0}, {"pap", 1}, {"chap", 2}, {"both", 3}};

void AddNamed(Report& report, const std::string& place, const std::string& label, ULONG number,
              const std::array<const char*, 4>& names)
{
    report.AddNamed(place, label, number, number < names.size() ? names[number] : nullptr);
}

void AddProfile(Report& report, const OrvGsmProfileBasic& profile)
{
    const BYTE* const octets = profile.abAddress;
    const ULONG address = ULONG{octets[0]} << 24 | ULONG{octets[1]} << 16 | ULONG{octets[2]} << 8 | octets[3];
    const bool dynamic = profile.bDynamicAddress != 0;
    const auto add_text = [&report](const char* place, const char* label, const std::string& text) {
        report.Add(place, label, text, text.empty() ? "-" : text);
    };
    add_text("name", "Profile", Utf8(profile.szProfileName, std::size(profile.szProfileName)));
    add_text("apn", "Access point name", Utf8(profile.szAPN, std::size(profile.szAPN)));
    AddNamed(report, "pdp_type", "PDP type", profile.ePdpType, kPdpTypes);
    report.AddHidden("dynamic_address", dynamic);
    report.Add("address", "Address", dynamic ? Json() : Json(Dotted(address)),
               dynamic ? "given by the network" : Dotted(address) + " (static)");
    AddNamed(report, "authentication", "Authentication", profile.eAuthentication, kAuthentications);
    add_text("user", "User name", Utf8(profile.szUserName, std::size(profile.szUserName)));
}

OrvGsmProfileBasic ReadProfile()
{
    OrvGsmProfileBasic profile = {};
    Check("OrvGetGsmProfileBasic", OrvGetGsmProfileBasic(&profile));
    return profile;
}

int ShowProfile(Client& client)
{
    Session session;
    session.Open();
    const OrvGsmProfileBasic profile = ReadProfile();
    session.Close();
    Report report("profile show");
    AddProfile(report, profile);
    client.Answer(report);
    return 0;
}

struct ProfileOptions {
    std::optional<std::string> apn, user, name, address, authentication;
    bool dynamic = false;
    bool password_from_stdin = false;

    bool Any() const { return apn || user || name || address || authentication || dynamic || password_from_stdin; }
};

void CheckLength(const std::string& octets, size_t longest, const std::string& what)
{
    if (octets.size() > longest)
        throw UsageError("the " + what + " is longer than " + std::to_string(longest) + " characters");
}

// Puts `octets` into a text field, each as one character; the limit is what the module keeps.
template <size_t kSize>
void Fill(WCHAR (&field)[kSize], const std::string& octets, size_t longest, const std::string& what)
{
    CheckLength(octets, longest, what);
    const auto widen = [](char c) { return static_cast<WCHAR>(static_cast<unsigned char>(c)); };
    std::fill(std::transform(octets.begin(), octets.end(), field, widen), std::end(field), WCHAR{0});
}

void SetAddress(OrvGsmProfileBasic& profile, const std::string& dotted)
{
    in_addr address = {};
    if (inet_pton(AF_INET, dotted.c_str(), &address) != 1 || address.s_addr == 0)
        throw UsageError("'" + dotted + "' is no address such as 192.0.2.1");
    profile.bDynamicAddress = 0;
    profile.uAddressLen = sizeof address.s_addr;
    memcpy(profile.abAddress, &address.s_addr, sizeof address.s_addr);
}

int SetProfile(Client& client, const ProfileOptions& options)
{
    if (!options.Any()) throw UsageError("nothing to set: see talvekctl profile set --help");
    // What is wrong with an option comes before anything is asked of the module.
    OrvGsmProfileBasic given = {};
    if (options.name) Fill(given.szProfileName, ToLatin1(*options.name), kNameLength, "profile's name");
    if (options.apn) Fill(given.szAPN, ToLatin1(*options.apn), kApnLength, "access point name");
    if (options.user) Fill(given.szUserName, ToLatin1(*options.user), kUserLength, "user name");
    if (options.address) SetAddress(given, *options.address);
    std::optional<Secret> password;
    if (options.password_from_stdin) password.emplace("password");
    if (password) CheckLength(password->Text(), kPasswordLength, "password");

    Session session;
    session.Open();
    OrvGsmProfileBasic profile = ReadProfile();
    const auto take = [](auto& to, const auto& from) { memcpy(&to, &from, sizeof to); };
    if (options.name) take(profile.szProfileName, given.szProfileName);
    if (options.apn) take(profile.szAPN, given.szAPN);
    if (options.user) take(profile.szUserName, given.szUserName);
    if (options.authentication) profile.eAuthentication = kAuthenticationNames.at(*options.authentication);
    if (options.address) {
        profile.bDynamicAddress = 0;
        profile.uAddressLen = given.uAddressLen;
        take(profile.abAddress, given.abAddress);
    }
    if (options.dynamic) profile.bDynamicAddress = 1;
    if (password) Fill(profile.szPassword, password->Text(), kPasswordLength, "password");
    const ORV_RCODE code = OrvSetGsmProfileBasic(profile);
    explicit_bzero(profile.szPassword, sizeof profile.szPassword);
    Check("OrvSetGsmProfileBasic", code);
    profile = ReadProfile();
    session.Close();
    Report report("profile set");
    AddProfile(report, profile);
    report.Add("password_set", "Password", password.has_value(), password ? "set" : "none");
    client.Answer(report);
    return 0;
}

// --- session ---------------------------------------------------------------------------------------------------------

constexpr ULONG kProfile = 1;

void AddAddress(Report& report)
{
    WCHAR text[16] = {};
    Check("OrvGetIPAddress", OrvGetIPAddress(text, std::size(text), nullptr));
    report.Add("address", "Address", Utf8(text, std::size(text)));
}

int Up(Client& client, bool hold, bool keep)
{
    EventQueue& queue = EventQueue::Get();
    Session session;
    session.Open();
    queue.Register();
    Check("OrvNotify", OrvNotify(ORV_NOTIFY_PktSessionCall, 0));

    // From here an interruption takes the session down first.
    const Interruptible interruptible([&queue] { queue.Wake(); });
    Check("OrvActivateProfile", OrvActivateProfile(kProfile, 1));
    bool ended_by_network = false;
    try {
        ORV_PKT_SESSION_STATUS status = {};
        Check("OrvGetPktSessionStatusEx", OrvGetPktSessionStatusEx(&status, 0));
        Report report("session up");
        report.Add("handle", "Session handle", status.uSessionHandle);
        AddAddress(report);
        report.Add("session", "Session", hold ? "held" : keep ? "kept" : "ended");
        client.Answer(report);
        if (hold) ended_by_network = !WaitWhileSessionLasts(queue);
    } catch (...) {
        OrvActivateProfile(kProfile, 0); // the first failure is the one to report
        throw;
    }
    if (ended_by_network) throw ClientError("the network ended the packet session");
    if (!keep) Check("OrvActivateProfile", OrvActivateProfile(kProfile, 0));
    session.Close();
    return 0;
}

int Down(Client& client, std::optional<ULONG> handle)
{
    Session session;
    session.Open();
    if (handle)
        Check("OrvStopDataSession", OrvStopDataSession(*handle));
    else
        Check("OrvActivateProfile", OrvActivateProfile(kProfile, 0));
    session.Close();
    Report report("session down");
    report.AddHidden("handle", handle ? Json(*handle) : Json());
    report.AddHidden("ended", handle.has_value());
    report.AddLine(handle ? "Session " + std::to_string(*handle) + " has ended."
                          : "This client has no session. To end one that was kept, give its handle.");
    client.Answer(report);
    return 0;
}

int ShowAddress(Client& client)
{
    Session session;
    session.Open();
    Report report("session address");
    AddAddress(report);
    session.Close();
    client.Answer(report);
    return 0;
}

int ShowTraffic(Client& client)
{
    Session session;
    session.Open();
    ULONGLONG sent = 0, received = 0;
    Check("OrvGetTrafficStatistics", OrvGetTrafficStatistics(&sent, &received));
    session.Close();
    Report report("session traffic");
    report.Add("bytes_sent", "Sent", sent, std::to_string(sent) + " octets");
    report.Add("bytes_received", "Received", received, std::to_string(received) + " octets");
    client.Answer(report);
    return 0;
}

} // namespace

void AddGsmProfileCommands(Client& client)
{
    const auto group = [&client](const char* name, const char* help) {
        CLI::App* const app = client.App().add_subcommand(name, help);
        app->require_subcommand(1);
        return app;
    };

    CLI::App* const profile = group("profile", "The data profile of a GSM/UMTS module");
    client.RunWithModule(profile->add_subcommand("show", "Show the profile"),
                         [&client] { return ShowProfile(client); });
    CLI::App* const set = profile->add_subcommand("set", "Change the profile");
    const auto options = std::make_shared<ProfileOptions>();
    set->add_option("--apn", options->apn, "Access point name");
    set->add_option("--user", options->user, "User name");
    set->add_option("--name", options->name, "The profile's own name");
    CLI::Option* const address = set->add_option("--address", options->address, "A static address, as 192.0.2.1");
    set->add_flag("--dynamic", options->dynamic, "Have the network give an address")->excludes(address);
    set->add_option("--authentication", options->authentication, "none, pap, chap or both")
        ->check(CLI::IsMember({"none", "pap", "chap", "both"}));
    set->add_flag("--password-stdin", options->password_from_stdin, "Read the password from standard input");
    set->footer("What is not given stays as it is, but the password: it cannot be read back, so that without\n"
                "--password-stdin the profile has none afterwards.");
    client.RunWithModule(set, [&client, options] { return SetProfile(client, *options); });

    CLI::App* const session = group("session", "The packet session of a GSM/UMTS module, with its profile");
    CLI::App* const up = session->add_subcommand("up", "Start the session, show its address, end it");
    const auto fate = std::make_shared<std::array<bool, 2>>();
    CLI::Option* const hold =
        up->add_flag("--hold", (*fate)[0], "Keep the session until interrupted or ended by the network");
    up->add_flag("--keep", (*fate)[1], "Leave the session to the module at exit (see session down)")->excludes(hold);
    up->footer("A session belongs to the process that started it, so it is ended again before the client exits. With\n"
               "--keep it is left to the module: some keep it up after their client has gone.");
    client.RunWithModule(up, [&client, fate] { return Up(client, (*fate)[0], (*fate)[1]); });

    CLI::App* const down = session->add_subcommand("down", "End a session that session up --keep left");
    const auto handle = std::make_shared<std::optional<ULONG>>();
    down->add_option("HANDLE", *handle, "The session handle that session up showed");
    client.RunWithModule(down, [&client, handle] { return Down(client, *handle); });

    client.RunWithModule(session->add_subcommand("address", "Show the address of the session that is up"),
                         [&client] { return ShowAddress(client); });
    client.RunWithModule(session->add_subcommand("traffic", "Show what the connection has carried"),
                         [&client] { return ShowTraffic(client); });
}

} // namespace ctl
