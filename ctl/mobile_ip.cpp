// The commands for Mobile IP: mip show, mip mode, mip profile.

#include "ctl/client.h"
#include "ctl/service_code.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "talvek/cdma_provisioning.h"

#include <arpa/inet.h>

#include <array>

namespace ctl {

namespace {

constexpr std::array<const char*, 3> kModes = {"off", "preferred", "only"};
constexpr BYTE kProfiles = 6;

struct Profile {
    BYTE enabled = 0, reverse_tunneling = 0;
    ULONG address = 0, primary_ha = 0, secondary_ha = 0, ha_spi = 0, aaa_spi = 0;
    char nai[73] = {};

    void Read(BYTE index)
    {
        BYTE ha = 0, aaa = 0; // whether there are indices: not 0
        Check("OrvPstGetDsMipEnableProf", OrvPstGetDsMipEnableProf(index, &enabled));
        Check("OrvPstGetDsMipGenUser",
              OrvPstGetDsMipGenUser(index, &reverse_tunneling, &address, &primary_ha, &secondary_ha, sizeof nai, nai,
                                    &ha, &ha_spi, &aaa, &aaa_spi));
    }
    Report Told(const std::string& command, BYTE index) const
    {
        Report report(command);
        report.Add("index", "Profile", index);
        report.Add("enabled", "Enabled", enabled != 0);
        report.Add("nai", "NAI", Utf8(nai, sizeof nai));
        const std::pair<const char*, std::pair<const char*, ULONG>> addresses[] = {
            {"home_address", {"Home address", address}},
            {"primary_ha", {"Primary home agent", primary_ha}},
            {"secondary_ha", {"Secondary home agent", secondary_ha}}};
        for (const auto& [place, row] : addresses)
            report.Add(place, row.first, row.second != 0 ? Json(Dotted(row.second)) : Json());
        report.Add("reverse_tunneling", "Reverse tunneling", reverse_tunneling != 0);
        report.Add("ha_spi", "SPI of the home agent", ha_spi != 0 ? Json(ha_spi) : Json());
        report.Add("aaa_spi", "SPI of the AAA server", aaa_spi != 0 ? Json(aaa_spi) : Json());
        return report;
    }
};

void AddMode(Report& report, ULONG mode)
{
    const char* const name = mode < kModes.size() ? kModes[mode] : nullptr;
    report.Add("mode", "Mobile IP", mode, std::to_string(mode) + (name ? std::string(" (") + name + ")" : ""));
    report.AddHidden("mode_name", name ? Json(name) : Json());
}

ULONG ReadMode()
{
    ULONG mode = 0;
    Check("OrvPstGetDsQcMip", OrvPstGetDsQcMip(&mode));
    return mode;
}

int Show(Client& client)
{
    Session session;
    session.Open();
    BYTE active = 0;
    ULONG error = 0;
    Report report("mip show");
    AddMode(report, ReadMode());
    Check("OrvPstGetDsMipActiveProf", OrvPstGetDsMipActiveProf(&active));
    Check("OrvGetMipErrCode", OrvGetMipErrCode(&error));
    report.Add("active", "Profile in use", active);
    report.Add("error", "Last error", error, error == 0 ? "none" : std::to_string(error));
    Json list = Json::array();
    for (BYTE index = 0; index < kProfiles; ++index) {
        Profile profile;
        profile.Read(index);
        const Report told = profile.Told("", index);
        list.push_back(told.ToJson()["result"]);
        const std::string nai = Utf8(profile.nai, sizeof profile.nai);
        report.AddLine("Profile " + std::to_string(index) + "  " + (profile.enabled ? "enabled" : "disabled") + ", " +
                       (nai.empty() ? "no NAI" : nai) +
                       (profile.primary_ha ? ", home agent " + Dotted(profile.primary_ha) : ""));
    }
    session.Close();
    report.AddHidden("profiles", std::move(list));
    client.Answer(report);
    return 0;
}

int Mode(Client& client, const std::string& name)
{
    Session session;
    session.Open();
    for (ULONG mode = 0; mode < kModes.size(); ++mode) {
        if (name == kModes[mode]) Check("OrvPstSetDsQcMip", OrvPstSetDsQcMip(mode));
    }
    Report report("mip mode");
    report.AddHidden("action", name.empty() ? "get" : "set");
    AddMode(report, ReadMode());
    session.Close();
    client.Answer(report);
    return 0;
}

struct ProfileOptions {
    ULONG index = 0;
    std::optional<std::string> nai, enabled, reverse_tunneling, address, primary_ha, secondary_ha;
    std::optional<ULONG> ha_spi, aaa_spi;
    bool unlock = false, secrets = false, use = false;

    bool WritesFields() const
    {
        return nai || enabled || reverse_tunneling || address || primary_ha || secondary_ha || ha_spi || aaa_spi;
    }
    bool Writes() const { return WritesFields() || secrets || use; }
};

ULONG Address(const std::string& dotted)
{
    in_addr address = {};
    inet_pton(AF_INET, dotted.c_str(), &address); // the option has checked it
    return ntohl(address.s_addr);
}

// Only what was given: null leaves the rest as it is.
void Write(const ProfileOptions& options)
{
    std::string nai = options.nai.value_or("");
    BYTE enabled = options.enabled == "on", reverse_tunneling = options.reverse_tunneling == "on";
    ULONG address = Address(options.address.value_or("")), primary = Address(options.primary_ha.value_or(""));
    ULONG secondary = Address(options.secondary_ha.value_or(""));
    ULONG ha_spi = options.ha_spi.value_or(0), aaa_spi = options.aaa_spi.value_or(0);
    Check("OrvSetMobileIPProfile",
          OrvSetMobileIPProfile(static_cast<BYTE>(options.index), options.enabled ? &enabled : nullptr,
                                options.address ? &address : nullptr, options.primary_ha ? &primary : nullptr,
                                options.secondary_ha ? &secondary : nullptr,
                                options.reverse_tunneling ? &reverse_tunneling : nullptr,
                                options.nai ? nai.data() : nullptr, options.ha_spi ? &ha_spi : nullptr,
                                options.aaa_spi ? &aaa_spi : nullptr, nullptr, nullptr));
}

int ShowOrSetProfile(Client& client, const ProfileOptions& options)
{
    if (options.Writes() && !options.unlock) throw UsageError("writing a profile needs the code: --unlock");
    std::optional<ServiceCode> code;
    std::optional<Secret> ha, aaa;
    if (options.unlock) code.emplace();
    if (options.secrets) {
        ha.emplace("shared secret of the home agent");
        aaa.emplace("shared secret of the AAA server");
    }
    const BYTE index = static_cast<BYTE>(options.index);
    Session session;
    session.Open();
    if (code) code->Unlock();
    if (options.WritesFields()) Write(options);
    if (options.secrets) {
        const auto octets = [](const Secret& secret) { return reinterpret_cast<const BYTE*>(secret.Text().data()); };
        const auto length = [](const Secret& secret) { return static_cast<BYTE>(secret.Text().size()); };
        Check("OrvPstSetDsMipSsUserProf",
              OrvPstSetDsMipSsUserProf(index, length(*ha), octets(*ha), length(*aaa), octets(*aaa)));
    }
    if (options.use) Check("OrvPstSetDsMipActiveProf", OrvPstSetDsMipActiveProf(index));
    Profile profile;
    profile.Read(index);
    BYTE active = 0;
    Check("OrvPstGetDsMipActiveProf", OrvPstGetDsMipActiveProf(&active));
    session.Close();
    Report report = profile.Told("mip profile", index);
    report.Add("in_use", "In use", active == index);
    if (options.Writes()) {
        report.AddLine("What was written takes effect with the module's next reset.");
    }
    client.Answer(report);
    return 0;
}

} // namespace

void AddMobileIpCommands(Client& client)
{
    CLI::App* const mip = client.App().add_subcommand("mip", "Mobile IP of a CDMA module");
    mip->require_subcommand(1);
    const auto add = [&client, mip](const char* name, const char* help, const Client::Body& body) {
        CLI::App* const sub = mip->add_subcommand(name, help);
        client.RunWithModule(sub, body);
        return sub;
    };
    add("show", "Show mode, profile in use, last error and all profiles", [&client] { return Show(client); });

    const auto mode = std::make_shared<std::string>();
    add("mode", "Show or set whether Mobile IP is used", [&client, mode] { return Mode(client, *mode); })
        ->add_option("MODE", *mode, "off (simple IP), preferred or only (default: show)")
        ->check(CLI::IsMember({"off", "preferred", "only"}));

    const auto options = std::make_shared<ProfileOptions>();
    CLI::App* const profile = add("profile", "Show a profile, or write what is given of it",
                                  [&client, options] { return ShowOrSetProfile(client, *options); });
    profile->add_option("INDEX", options->index, "The profile, 0 to 5")
        ->required()
        ->check(CLI::Range(0, kProfiles - 1));
    profile->add_option("--enabled", options->enabled, "on or off")->check(CLI::IsMember({"on", "off"}));
    profile->add_option("--nai", options->nai, "The network access identifier, as user@example.net");
    profile->add_option("--home-address", options->address, "0.0.0.0: assigned by the home agent")
        ->check(CLI::ValidIPV4);
    profile->add_option("--primary-ha", options->primary_ha, "The primary home agent")->check(CLI::ValidIPV4);
    profile->add_option("--secondary-ha", options->secondary_ha, "The secondary home agent")->check(CLI::ValidIPV4);
    profile->add_option("--reverse-tunneling", options->reverse_tunneling, "on or off")
        ->check(CLI::IsMember({"on", "off"}));
    profile->add_option("--ha-spi", options->ha_spi, "The security parameter index of the home agent");
    profile->add_option("--aaa-spi", options->aaa_spi, "The same of the AAA server");
    profile->add_flag("--secrets", options->secrets,
                      "Read both shared secrets from standard input, that of the home agent first");
    profile->add_flag("--use", options->use, "Make it the profile in use");
    profile->add_flag("--unlock", options->unlock,
                      "Read the service programming code from standard input first; writing needs it");
}

} // namespace ctl
