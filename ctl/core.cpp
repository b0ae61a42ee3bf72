// The commands for the functions that serve either technology: info, power, connect, disconnect, network, codes.

#include "ctl/client.h"
#include "ctl/event_queue.h"
#include "ctl/secret.h"
#include "ctl/session.h"
#include "ctl/text.h"

#include <iostream>

namespace ctl {

namespace {

// Capability n is bit n - 1 of the mask.
constexpr const char* kCapabilities[] = {"GPRS",       "EDGE",        "HSDPA",       "HSUPA", "WCDMA",
                                         "CDMA 1xRTT", "EV-DO rev 0", "EV-DO rev A", "GSM"};

void AddCapabilities(Report& report)
{
    ULONG mask = 0;
    Check("OrvGetServingNetworkGobi", OrvGetServingNetworkGobi(&mask));
    Json names = Json::array();
    std::string text;
    for (size_t i = 0; i < std::size(kCapabilities); ++i) {
        if ((mask >> i & 1) == 0) continue;
        names.push_back(kCapabilities[i]);
        text += (text.empty() ? "" : ", ") + std::string(kCapabilities[i]);
    }
    report.Add("capabilities.mask", "Serving network", mask,
               HexNumber(mask, 3) + (text.empty() ? " (no service)" : " (" + text + ")"));
    report.AddHidden("capabilities.names", names);
}

// A value that a module need not have: null where the function says so.
Json TextIfAvailable(const char* function, ORV_RCODE(ORV_CALL* getter)(WCHAR* buffer, ULONG size))
{
    try {
        return ReadText(function, getter);
    } catch (const CallFailed& failure) {
        if (failure.Code() == ORV_RCODE_NOT_AVAILABLE) return nullptr;
        throw;
    }
}

int Info(Client& client)
{
    Session session;
    session.Open();
    const OrvAirServerInfo info = session.Info();

    Report report("info");
    report.Add("device_id", "Device ID", session.DeviceId(), HexNumber(session.DeviceId(), 4));
    report.Add("name", "Name", Utf8(info.szName, std::size(info.szName)));
    report.Add("technology", "Technology", TechnologyName(info.eTechnology));
    report.Add("hardware_version", "Hardware version", ReadText("OrvGetHardwareVersion", OrvGetHardwareVersion));
    char model[256] = {};
    Check("OrvGetModelID", OrvGetModelID(255, model));
    report.Add("model", "Model", Utf8(model, sizeof model));
    report.Add("firmware_version", "Firmware version", TextIfAvailable("OrvGetFirmwareVersion", OrvGetFirmwareVersion));
    report.Add("boot_version", "Boot version", TextIfAvailable("OrvGetBootVersion", OrvGetBootVersion));
    report.Add("pri.text", "PRI version", TextIfAvailable("OrvGetPriVersion", OrvGetPriVersion));
    OrvPriInfo pri = {};
    const ORV_RCODE code = OrvGetPriInfo(&pri);
    const bool known = code == ORV_RCODE_OK;
    if (code != ORV_RCODE_NOT_AVAILABLE) Check("OrvGetPriInfo", code);
    report.Add("pri.carrier", "PRI carrier", known ? Json(pri.uPriCarrier) : Json());
    report.Add("pri.version", "PRI number", known ? Json(pri.uPriVersion) : Json());
    report.Add("pri.revision", "PRI revision", known ? Json(pri.uPriRevision) : Json());
    AddCapabilities(report);
    session.Close();
    client.Answer(report);
    return 0;
}

bool RadioIsOn()
{
    OrvRadioPower power = {};
    Check("OrvGetRadioPower", OrvGetRadioPower(&power));
    return power.bRadioOn == 1;
}

int Power(Client& client, const std::string& action)
{
    Session session;
    session.Open();
    Report report("power");
    report.AddHidden("action", action);
    if (action == "reset") {
        Check("OrvModemReset", OrvModemReset());
        // The module leaves and comes back: its power cannot be asked for now.
        report.AddHidden("radio_on", nullptr);
        report.AddLine("The module is resetting.");
        session.Close();
        client.Answer(report);
        return 0;
    }
    if (action != "get") {
        OrvRadioPower power = {};
        power.sizeStruct = sizeof power;
        power.bRadioOn = action == "on" ? 1 : 0;
        Check("OrvSetRadioPower", OrvSetRadioPower(&power));
    }
    const bool on = RadioIsOn();
    report.Add("radio_on", "Radio", on, on ? "on" : "off");
    session.Close();
    client.Answer(report);
    return 0;
}

// --- data session
// -----------------------------------------------------------------------------------------------------

struct ConnectOptions {
    std::string apn;
    std::string user;
    bool password_from_stdin = false;
    bool hold = false;
    bool keep = false;
};

void AddAddresses(Report& report)
{
    OrvIpConfiguration ip = {};
    Check("OrvGetIPConfigurationGobi", OrvGetIPConfigurationGobi(&ip));
    const struct {
        const char* name;
        const char* label;
        ULONG address;
    } rows[] = {
        {"ip.address", "Address", ip.uIpAddress},
        {"ip.subnet_mask", "Subnet mask", ip.uSubnetMask},
        {"ip.gateway", "Gateway", ip.uDefaultGateway},
        {"ip.primary_dns", "Primary DNS", ip.uPrimaryDns},
        {"ip.secondary_dns", "Secondary DNS", ip.uSecondaryDns},
    };
    for (const auto& row : rows)
        report.Add(row.name, row.label, row.address != 0 ? Json(Dotted(row.address)) : Json());
}

int Connect(Client& client, const ConnectOptions& options)
{
    if (options.hold && options.keep) throw UsageError("--hold and --keep exclude each other");
    std::optional<Secret> password;
    if (options.password_from_stdin) password.emplace("password");

    EventQueue& queue = EventQueue::Get();
    Session session;
    session.Open();
    queue.Register();
    Check("OrvNotify", OrvNotify(ORV_NOTIFY_PktSessionCall, 0));

    // From here an interruption takes the session down first.
    const Interruptible interruptible([&queue] { queue.Wake(); });
    // Null means the profile's own.
    std::string apn = options.apn, user = options.user;
    const auto text_or_null = [](std::string& text) { return text.empty() ? nullptr : text.data(); };
    ULONG handle = 0, reason = 0;
    const ORV_RCODE code = OrvStartDataSession(text_or_null(apn), text_or_null(user),
                                               password ? password->Data() : nullptr, &handle, &reason);
    if (code != ORV_RCODE_OK) throw CallFailed("OrvStartDataSession", code, reason);

    bool ended_by_module = false;
    try {
        Report report("connect");
        report.Add("handle", "Session handle", handle);
        AddAddresses(report);
        const char* const fate = options.hold ? "held" : options.keep ? "kept" : "ended";
        report.Add("session", "Session", fate);
        client.Answer(report);
        if (options.hold) ended_by_module = !WaitWhileSessionLasts(queue);
    } catch (...) {
        OrvStopDataSession(handle); // the first failure is the one to report
        throw;
    }
    if (ended_by_module) throw ClientError("the module ended the data session");
    if (!options.keep) Check("OrvStopDataSession", OrvStopDataSession(handle));
    session.Close();
    return 0;
}

int Disconnect(Client& client, ULONG handle)
{
    Session session;
    session.Open();
    Check("OrvStopDataSession", OrvStopDataSession(handle));
    session.Close();
    Report report("disconnect");
    report.Add("handle", "Session handle", handle, std::to_string(handle) + " (ended)");
    client.Answer(report);
    return 0;
}

// --- network and codes
// ------------------------------------------------------------------------------------------------

int Network(Client& client)
{
    Session session;
    session.Open();
    Report report("network");
    AddCapabilities(report);
    session.Close();
    client.Answer(report);
    return 0;
}

int PreferNetwork(Client& client, ULONG preference)
{
    Session session;
    session.Open();
    Check("OrvSetNetworkPreferenceGobi", OrvSetNetworkPreferenceGobi(preference));
    session.Close();
    Report report("network prefer");
    report.Add("preference", "Network preference", preference);
    client.Answer(report);
    return 0;
}

int Codes(Client& client)
{
    constexpr ORV_RCODE kCodes[] = {ORV_RCODE_OK,
                                    ORV_RCODE_UNSUPPORTED,
                                    ORV_RCODE_VENDOR_5,
                                    ORV_RCODE_BAD_PARAMETER,
                                    ORV_RCODE_FAILED,
                                    ORV_RCODE_UNKNOWN,
                                    ORV_RCODE_VENDOR_15,
                                    ORV_RCODE_STARTUP_FAILED,
                                    ORV_RCODE_API_NOT_INIT,
                                    ORV_RCODE_NOT_AVAILABLE,
                                    ORV_RCODE_NOT_SERVED,
                                    ORV_RCODE_WRONG_STATE,
                                    ORV_RCODE_PORT_OPEN_FAILED,
                                    ORV_RCODE_PORT_NOT_OPEN,
                                    ORV_RCODE_VENDOR_1026};
    Report report("codes");
    Json list = Json::array();
    for (const ORV_RCODE code : kCodes) {
        const std::string number = std::to_string(static_cast<ULONG>(code));
        const std::string name = OrvRcodeName(code);
        list.push_back({{"code", static_cast<ULONG>(code)}, {"name", name}, {"meaning", OrvRcodeMeaning(code)}});
        const auto pad = [](const std::string& text, size_t width) {
            return text + std::string(width > text.size() ? width - text.size() : 0, ' ');
        };
        report.AddLine(pad(number, 5) + pad(name, 28) + OrvRcodeMeaning(code));
    }
    report.AddHidden("codes", list);
    client.Answer(report);
    return 0;
}

} // namespace

void AddCoreCommands(Client& client)
{
    CLI::App& app = client.App();
    const auto module = [&client](CLI::App* sub, Client::Body body) { client.RunWithModule(sub, std::move(body)); };

    module(app.add_subcommand("info", "Show the module: identity, technology, versions, serving network"),
           [&client] { return Info(client); });

    CLI::App* const power = app.add_subcommand("power", "Show or switch the radio, or reset the module");
    const auto action = std::make_shared<std::string>("get");
    power->add_option("ACTION", *action, "get (default), on, off or reset")
        ->check(CLI::IsMember({"get", "on", "off", "reset"}));
    module(power, [&client, action] { return Power(client, *action); });

    CLI::App* const connect = app.add_subcommand("connect", "Start a data session, show its addresses, end it");
    const auto options = std::make_shared<ConnectOptions>();
    connect->add_option("--apn", options->apn, "Access point name (default: the profile's)");
    connect->add_option("--user", options->user, "User name (default: the profile's)");
    connect->add_flag("--password-stdin", options->password_from_stdin, "Read the password from standard input");
    connect->add_flag("--hold", options->hold, "Keep the session until interrupted or ended by the module");
    connect->add_flag("--keep", options->keep, "Leave the session to the module at exit (see disconnect)");
    connect->footer(
        "A data session belongs to the process that started it, so it is ended again before the client exits. With "
        "--keep\n"
        "it is left to the module: some keep it up after their client has gone, and disconnect ends it then.");
    module(connect, [&client, options] { return Connect(client, *options); });

    CLI::App* const disconnect = app.add_subcommand("disconnect", "End a data session that connect --keep left");
    const auto handle = std::make_shared<ULONG>(0);
    disconnect->add_option("HANDLE", *handle, "The session handle that connect showed")->required();
    module(disconnect, [&client, handle] { return Disconnect(client, *handle); });

    CLI::App* const network = app.add_subcommand("network", "Show what the serving network can do");
    module(network, [&client] { return Network(client); });
    CLI::App* const prefer = network->add_subcommand("prefer", "Prefer a radio technology");
    const auto preference = std::make_shared<ULONG>(0);
    prefer->add_option("N", *preference, "The vendor's number of the technology")->required();
    module(prefer, [&client, preference] { return PreferNetwork(client, *preference); });

    client.Run(app.add_subcommand("codes", "List the result codes"), [&client] { return Codes(client); });
}

} // namespace ctl
