// The commands for what is set over the AT port: at clip, at clir, at colp, at colr, at release, at enum, at side-tone,
// at reset, at rtn, at provisioned.

#include "ctl/client.h"
#include "ctl/session.h"
#include "talvek/at.h"

#include <array>

namespace ctl {

namespace {

using Names = std::array<const char*, 5>; // by number; null for what has none

constexpr Names kOffOn = {"off", "on"};
constexpr Names kRestriction = {"as subscribed", "restricted", "shown"};
constexpr Names kProvisioned = {"not provisioned", "provisioned", "unknown"};
constexpr Names kRestrictionService = {"not provisioned", "permanent", "unknown", "temporary, restricted",
                                       "temporary, shown"};

// A setting of the module, and the state of the service in the network.
struct Service {
    const char* name;
    const char* help;
    const char* getter_name;
    ORV_RCODE(ORV_CALL* getter)(BYTE* n, BYTE* m);
    const char* setter_name; // null: there is no command to set it
    ORV_RCODE(ORV_CALL* setter)(BYTE mode);
    const Names& modes;
    const Names& services;
};

constexpr Service kServices[] = {
    {"clip", "Show or set the presentation of the caller's number: 0 off, 1 on", "OrvATGetCLIP", OrvATGetCLIP,
     "OrvATSetCLIP", OrvATSetCLIP, kOffOn, kProvisioned},
    {"clir", "Show or set the restriction of the own number: 0 as subscribed, 1 restricted, 2 shown", "OrvATGetCLIR",
     OrvATGetCLIR, "OrvATSetCLIR", OrvATSetCLIR, kRestriction, kRestrictionService},
    {"colp", "Show the presentation of the connected party's number", "OrvATGetCOLP", OrvATGetCOLP, nullptr, nullptr,
     kOffOn, kProvisioned},
};

void AddNamed(Report& report, const std::string& place, const std::string& label, BYTE number, const Names& names)
{
    report.AddNamed(place, label, number, number < names.size() ? names[number] : nullptr);
}

int ShowOrSet(Client& client, const Service& service, std::optional<ULONG> mode)
{
    Session session;
    session.Open();
    if (mode) Check(service.setter_name, service.setter(static_cast<BYTE>(*mode)));
    BYTE n = 0, m = 0;
    Check(service.getter_name, service.getter(&n, &m));
    session.Close();
    Report report(std::string("at ") + service.name);
    report.AddHidden("action", mode ? "set" : "get");
    AddNamed(report, "mode", "Mode", n, service.modes);
    AddNamed(report, "service", "Service in the network", m, service.services);
    client.Answer(report);
    return 0;
}

int ShowColr(Client& client)
{
    Session session;
    session.Open();
    BYTE n = 0;
    Check("OrvATGetCOLR", OrvATGetCOLR(&n));
    session.Close();
    Report report("at colr");
    AddNamed(report, "service", "Service in the network", n, kProvisioned);
    client.Answer(report);
    return 0;
}

int Provisioned(Client& client)
{
    Session session;
    session.Open();
    BYTE flag = 0;
    Check("OrvATGetProvisionStatus", OrvATGetProvisionStatus(&flag));
    session.Close();
    Report report("at provisioned");
    report.Add("six_zeros", "Directory number begins with six zeros", flag == 1);
    client.Answer(report);
    return 0;
}

// A command that calls one function and answers with what it was given.
int Act(Client& client, const char* function, const Report& report, const std::function<ORV_RCODE()>& call)
{
    Session session;
    session.Open();
    Check(function, call());
    session.Close();
    client.Answer(report);
    return 0;
}

} // namespace

void AddAtCommands(Client& client)
{
    CLI::App* const at = client.App().add_subcommand("at", "Settings over the module's AT port");
    at->require_subcommand(1);
    const auto add = [&client, at](const char* name, const char* help, const Client::Body& body) {
        CLI::App* const sub = at->add_subcommand(name, help);
        client.RunWithModule(sub, body);
        return sub;
    };

    for (const Service& service : kServices) {
        const auto mode = std::make_shared<std::optional<ULONG>>();
        CLI::App* const sub =
            add(service.name, service.help, [&client, &service, mode] { return ShowOrSet(client, service, *mode); });
        if (service.setter)
            sub->add_option("MODE", *mode, "The mode to set (default: show only)")->check(CLI::Range(0, 255));
    }
    add("colr", "Show the restriction of the own number towards callers", [&client] { return ShowColr(client); });

    const auto call = std::make_shared<ULONG>(0);
    add("release", "Release one call",
        [&client, call] {
            Report report("at release");
            report.Add("call", "Released call", *call);
            return Act(client, "OrvATReleaseCall", report, [call] { return OrvATReleaseCall(*call); });
        })
        ->add_option("CALL", *call, "The number of the call")
        ->required();

    const auto setting = std::make_shared<std::string>();
    add("enum", "Set how the module presents itself on the USB",
        [&client, setting] {
            Report report("at enum");
            report.Add("setting", "USB enumeration", *setting);
            return Act(client, "OrvATSetEnum", report, [setting] { return OrvATSetEnum(setting->c_str()); });
        })
        ->add_option("TEXT", *setting, "The module's own setting")
        ->required();

    const auto gains = std::make_shared<std::array<int32_t, 2>>();
    CLI::App* const side_tone = add("side-tone", "Set the side-tone gain of the audio codec", [&client, gains] {
        Report report("at side-tone");
        report.Add("first", "First value", (*gains)[0]);
        report.Add("second", "Second value", (*gains)[1]);
        return Act(client, "OrvATSetSideToneGain", report,
                   [gains] { return OrvATSetSideToneGain((*gains)[0], (*gains)[1]); });
    });
    side_tone->add_option("A", (*gains)[0], "The first value, the module's own")->required();
    side_tone->add_option("B", (*gains)[1], "The second value, the module's own")->required();

    add("reset", "Reset the module", [&client] {
        Report report("at reset");
        report.AddLine("The module is resetting.");
        return Act(client, "OrvATReset", report, [] { return OrvATReset(); });
    });

    const auto reset = std::make_shared<std::string>();
    add("rtn", "Put the module back to the settings of the factory",
        [&client, reset] {
            Report report("at rtn");
            report.Add("reset", "Back to factory settings", *reset);
            return Act(client, "OrvATRtnReset", report, [reset] { return OrvATRtnReset(reset->c_str()); });
        })
        ->add_option("TEXT", *reset, "What the module is to be told, its own")
        ->required();

    add("provisioned", "Show whether the directory number begins with six zeros",
        [&client] { return Provisioned(client); });
}

} // namespace ctl
