// The commands for the networks of a GSM/UMTS module: network register, network detach, network scan, network status,
// network preferred.

#include "talvek/gsm_network.h"
#include "ctl/client.h"
#include "ctl/event_queue.h"
#include "ctl/interrupt.h"
#include "ctl/session.h"
#include "ctl/text.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <iterator>

namespace ctl {

namespace {

using Clock = EventQueue::Clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

// Names by number; null for what has none.
using Names = std::vector<const char*>;
const Names kRegistrations = {"not registered", "registered", "searching", "denied", "unknown"};
const Names kServices = {"in service", nullptr, "searching", nullptr, "denied",
                         nullptr,      nullptr, nullptr,     nullptr, "unknown"};
const Names kDomains = {"circuit-switched", "packet-switched", "circuit-switched and packet-switched", "none"};
const Names kRadioStates = {nullptr, "off", "on"};
const Names kRoaming = {"roaming", "home"};
const Names kSelections = {"automatic", "manual"};
const Names kDataTechnologies = {"unknown", "GPRS", "EDGE", "UMTS", "HSDPA", "HSUPA", "HSDPA and HSUPA"};
const Names kAccessNetworks = {"unknown", "CDMA", "GSM/UMTS"};
const Names kInterfaces = {"none", "CDMA 1xRTT", "CDMA 1xEV-DO", nullptr, "GSM", "UMTS", nullptr, nullptr, "LTE"};
const Names kAttachments = {nullptr, "attached", "detached"};
const Names kFormats = {"long", "short", "numeric"};

constexpr ULONG kRegistered = 1;
constexpr ULONG kSearching = 2;
constexpr ULONG kDenied = 3;

const char* NameOf(const Names& names, ULONG number) { return number < names.size() ? names[number] : nullptr; }

// The number under `place`, and its name under `place`_name.
void AddNamed(Report& report, const std::string& place, const std::string& label, ULONG number, const Names& names)
{
    const char* const name = NameOf(names, number);
    report.Add(place, label, number, std::to_string(number) + (name ? std::string(" (") + name + ")" : ""));
    report.AddHidden(place + "_name", name ? Json(name) : Json());
}

std::string Digits(ULONG number, size_t width)
{
    const std::string digits = std::to_string(number);
    return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
}

OrvGsmSystemStatus SystemStatus()
{
    OrvGsmSystemStatus status = {};
    Check("OrvGetGsmSystemStatus", OrvGetGsmSystemStatus(&status));
    return status;
}

std::string NetworkName(const OrvGsmSystemStatus& status)
{
    return Utf8(status.szNetworkName, std::size(status.szNetworkName));
}

// --- registration
// ----------------------------------------------------------------------------------------------------

struct RegisterOptions {
    std::vector<std::string> network; // nothing or "auto", or MCC and MNC
    bool gsm = false;
    double timeout_s = 60;
};

OrvPlmnRecord WantedNetwork(const RegisterOptions& options)
{
    OrvPlmnRecord record = {};
    record.sizeStruct = sizeof record;
    const bool automatic = options.network.empty() || options.network == std::vector<std::string>{"auto"};
    if (automatic) {
        if (options.gsm) throw UsageError("--gsm needs a network: MCC MNC");
        record.eMode = ORV_PLMN_AUTOMATIC;
        return record;
    }
    record.eMode = options.gsm ? ORV_PLMN_MANUAL_GSM : ORV_PLMN_MANUAL_UMTS;
    const auto number = [](const std::string& text) {
        const bool digits = !text.empty() && text.size() <= 3 &&
                            std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
        if (!digits) throw UsageError("'" + text + "' is neither auto nor a number of up to three digits");
        return static_cast<ULONG>(std::stoul(text));
    };
    record.nMCC = number(options.network[0]);
    if (options.network.size() != 2) throw UsageError("a network has two numbers: MCC MNC");
    record.nMNC = number(options.network[1]);
    return record;
}

// Asks the module until the search has come to an end.
OrvGsmSystemStatus AwaitRegistration(const OrvPlmnRecord& wanted, double timeout_s)
{
    constexpr milliseconds kInterval(200);
    EventQueue& queue = EventQueue::Get();
    bool interrupted = false;
    const Interruptible interruptible([&queue] { queue.Wake(); });
    const auto end = Clock::now() + milliseconds(static_cast<long long>(timeout_s * 1000));
    for (bool searched = false;;) {
        const OrvGsmSystemStatus status = SystemStatus();
        const bool manual = wanted.eMode != ORV_PLMN_AUTOMATIC;
        const bool there = !manual || (status.uMCC == wanted.nMCC && status.uMNC == wanted.nMNC);
        if (status.eRegistration == kRegistered && there) return status;
        if (status.eRegistration == kDenied) throw ClientError("the network denied the registration");
        searched = searched || status.eRegistration == kSearching;
        if (searched && status.eRegistration == 0) throw ClientError("no network could be registered with");
        if (interrupted) throw ClientError("interrupted: the module goes on by itself");
        if (Clock::now() >= end) throw ClientError("the time is up: the module is not registered yet");
        Arrival arrival;
        interrupted = queue.Wait(arrival, Clock::now() + kInterval) == EventQueue::Woken::ByWake;
    }
}

int Register(Client& client, const RegisterOptions& options)
{
    const OrvPlmnRecord wanted = WantedNetwork(options);
    client.Prepare();
    Session session;
    session.Open();
    Check("OrvSetPLMNMode", OrvSetPLMNMode(wanted));
    const OrvGsmSystemStatus status = AwaitRegistration(wanted, options.timeout_s);
    session.Close();
    Report report("network register");
    AddNamed(report, "mode", "Selection", wanted.eMode == ORV_PLMN_AUTOMATIC ? 0 : 1, kSelections);
    report.Add("network_name", "Network", NetworkName(status));
    report.Add("mcc", "MCC", status.uMCC, Digits(status.uMCC, 3));
    report.Add("mnc", "MNC", status.uMNC, Digits(status.uMNC, 2));
    AddNamed(report, "radio_interface", "Radio interface", status.eRadioInterface, kInterfaces);
    client.Answer(report);
    return 0;
}

int Detach(Client& client)
{
    Session session;
    session.Open();
    OrvPlmnRecord record = {};
    record.sizeStruct = sizeof record;
    record.eMode = ORV_PLMN_DETACH;
    Check("OrvSetPLMNMode", OrvSetPLMNMode(record));
    session.Close();
    Report report("network detach");
    report.AddHidden("detached", true);
    report.AddLine("The module is detached from the packet domain.");
    client.Answer(report);
    return 0;
}

// --- scan
// ------------------------------------------------------------------------------------------------------------

// How long the scan has gone on, on standard error: one line that changes on a terminal, else a line a second.
class Progress {
public:
    explicit Progress(bool shown) : m_shown(shown), m_terminal(isatty(STDERR_FILENO) != 0) { Show(); }
    ~Progress()
    {
        if (m_shown && m_terminal) std::cerr << "\r\x1b[K" << std::flush;
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    Clock::time_point NextStep() const { return m_start + seconds(m_seconds + 1); }
    void Step()
    {
        ++m_seconds;
        Show();
    }

private:
    void Show() const
    {
        if (!m_shown) return;
        std::cerr << (m_terminal ? "\r" : "") << "Scanning for networks: " << m_seconds << " s"
                  << (m_terminal ? "" : "\n") << std::flush;
    }

    const bool m_shown;
    const bool m_terminal;
    const Clock::time_point m_start = Clock::now();
    long m_seconds = 0;
};

enum class ScanEnd { Done, Interrupted, TimeUp };

ScanEnd AwaitScan(bool shows_progress, double timeout_s)
{
    EventQueue& queue = EventQueue::Get();
    Progress progress(shows_progress);
    const auto end = Clock::now() + milliseconds(static_cast<long long>(timeout_s * 1000));
    Arrival arrival;
    for (;;) {
        switch (queue.Wait(arrival, std::min(end, progress.NextStep()))) {
        case EventQueue::Woken::ByEvent:
            if (arrival.record.uNotify == ORV_NOTIFY_PLMNSearchDone) return ScanEnd::Done;
            break;
        case EventQueue::Woken::ByWake:
            return ScanEnd::Interrupted;
        case EventQueue::Woken::ByTimeout:
            if (Clock::now() >= end) return ScanEnd::TimeUp;
            progress.Step();
            break;
        }
    }
}

std::vector<OrvPlmnRecord> FoundNetworks()
{
    std::vector<OrvPlmnRecord> networks;
    for (;;) {
        OrvPlmnRecord record = {};
        const ORV_RCODE code = OrvGetPLMNSelection(&record);
        if (code == ORV_RCODE_VENDOR_1026) return networks;                // all have been read
        if (code == ORV_RCODE_FAILED && networks.empty()) return networks; // there are none
        Check("OrvGetPLMNSelection", code);
        networks.push_back(record);
    }
}

const char* ScannedTechnology(ULONG rat)
{
    return rat == ORV_PLMN_RAT_GSM ? "GSM" : rat == ORV_PLMN_RAT_UMTS ? "UMTS" : nullptr;
}

using Row = std::vector<std::string>;

// Columns as wide as their widest text.
void AddTable(Report& report, const std::vector<Row>& rows)
{
    const auto width_of = [](const std::string& text) {
        return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
    };
    std::vector<size_t> widths(rows.front().size());
    for (const Row& row : rows)
        for (size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], width_of(Printable(row[i])));
    for (const Row& row : rows) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            const std::string text = Printable(row[i]);
            line += text + (i + 1 == row.size() ? "" : std::string(widths[i] - width_of(text) + 2, ' '));
        }
        report.AddLine(line.substr(0, line.find_last_not_of(' ') + 1));
    }
}

Report ScanReport(const std::vector<OrvPlmnRecord>& networks)
{
    Report report("network scan");
    Json list = Json::array();
    std::vector<Row> rows = {{"Network", "MCC", "MNC", "Technology", "Remarks"}};
    for (const OrvPlmnRecord& network : networks) {
        const struct {
            const char* place;
            const char* text;
            BYTE holds;
        } properties[] = {{"in_use", "in use", network.bInUse},
                          {"preferred", "preferred", network.bPreferred},
                          {"roaming", "roaming", network.bRoaming},
                          {"forbidden", "forbidden", network.bForbidden}};
        const std::string name = Utf8(network.szShortName, std::size(network.szShortName));
        const char* const technology = ScannedTechnology(network.eRat);
        Json entry = {{"name", name},
                      {"mcc", network.nMCC},
                      {"mnc", network.nMNC},
                      {"technology", technology ? Json(technology) : Json()}};
        std::string remarks;
        for (const auto& property : properties) {
            entry[property.place] = property.holds == 1;
            if (property.holds == 1) remarks += (remarks.empty() ? "" : ", ") + std::string(property.text);
        }
        list.push_back(entry);
        rows.push_back(
            {name, Digits(network.nMCC, 3), Digits(network.nMNC, 2), technology ? technology : "-", remarks});
    }
    report.AddHidden("networks", list);
    if (networks.empty())
        report.AddLine("No network was found, or the module could not scan.");
    else
        AddTable(report, rows);
    return report;
}

int Scan(Client& client, double timeout_s)
{
    EventQueue& queue = EventQueue::Get();
    Session session;
    session.Open();
    queue.Register();
    Check("OrvNotify", OrvNotify(ORV_NOTIFY_PLMNSearchDone, 0));
    ScanEnd end = ScanEnd::Done;
    {
        const Interruptible interruptible([&queue] { queue.Wake(); });
        Check("OrvStartPLMNSearch", OrvStartPLMNSearch());
        end = AwaitScan(!client.Json(), timeout_s);
    }
    if (end != ScanEnd::Done) {
        // The module is let go before the process is: its scan need not be over yet.
        session.Close();
        Arrival arrival;
        queue.Wait(arrival, Clock::now() + seconds(2));
        queue.Deregister();
        throw ClientError(end == ScanEnd::TimeUp ? "the time is up: the scan is not over" : "the scan was interrupted");
    }
    const std::vector<OrvPlmnRecord> networks = FoundNetworks();
    queue.Deregister();
    session.Close();
    client.Answer(ScanReport(networks));
    return 0;
}

// --- status
// ----------------------------------------------------------------------------------------------------------

// Null for what the module does not tell.
Json ProviderName()
{
    WCHAR name[256] = {};
    const bool told = OrvGetNetworkProviderID(name, std::size(name) - 1) == ORV_RCODE_OK;
    return told ? Json(Utf8(name, std::size(name))) : Json();
}

Json Imsi()
{
    WCHAR rest[16] = {};
    ULONG mcc = 0, mnc = 0;
    const bool told = OrvGetGsmIMSI(rest, std::size(rest) - 1, &mcc, &mnc) == ORV_RCODE_OK;
    return told ? Json(Digits(mcc, 3) + Digits(mnc, 3) + Utf8(rest, std::size(rest))) : Json();
}

Json Imei()
{
    ORV_IMEI record = {};
    const bool told = OrvGetImei(&record) == ORV_RCODE_OK && record.szImei[0] != 0;
    return told ? Json(Utf8(record.szImei, std::size(record.szImei))) : Json();
}

int Status(Client& client)
{
    Session session;
    session.Open();
    const OrvGsmSystemStatus s = SystemStatus();
    Report report("network status");
    AddNamed(report, "radio_state", "Radio", s.eRadioState, kRadioStates);
    AddNamed(report, "registration", "Registration", s.eRegistration, kRegistrations);
    AddNamed(report, "service_status", "Service", s.eServiceStatus, kServices);
    AddNamed(report, "service_domain", "Service domain", s.eServiceDomain, kDomains);
    AddNamed(report, "selection_mode", "Selection by this client", s.eSelectionMode, kSelections);
    report.Add("network_name", "Network", NetworkName(s));
    report.Add("provider", "Provider", ProviderName());
    report.Add("mcc", "MCC", s.uMCC, Digits(s.uMCC, 3));
    report.Add("mnc", "MNC", s.uMNC, Digits(s.uMNC, 2));
    AddNamed(report, "roaming", "Roaming", s.eRoaming, kRoaming);
    AddNamed(report, "ran", "Radio access network", s.uRan, kAccessNetworks);
    AddNamed(report, "radio_interface", "Radio interface", s.eRadioInterface, kInterfaces);
    report.Add("band_class", "Band class", s.uBandClass);
    report.Add("channel", "Channel", s.uChannel);
    AddNamed(report, "data_technology", "Data technology", s.eDataTechnology, kDataTechnologies);
    AddNamed(report, "cs_state", "Circuit-switched domain", s.uCsState, kAttachments);
    AddNamed(report, "ps_state", "Packet-switched domain", s.uPsState, kAttachments);
    report.Add("imsi", "IMSI", Imsi());
    report.Add("imei", "IMEI", Imei());
    session.Close();
    client.Answer(report);
    return 0;
}

// --- preferred operators
// ---------------------------------------------------------------------------------------------

struct Access {
    ULONG flag;
    const char* option; // as it is given
    const char* name;
};
constexpr Access kAccess[] = {{ORV_OPERATOR_GSM, "gsm", "GSM"},
                              {ORV_OPERATOR_GSM_COMPACT, "gsm-compact", "GSM compact"},
                              {ORV_OPERATOR_UTRAN, "utran", "UTRAN"}};
constexpr ULONG kNamingFlags[] = {ORV_OPERATOR_IS_LONG, ORV_OPERATOR_IS_SHORT, ORV_OPERATOR_IS_NUMERIC}; // by format

ULONG FormatOf(const std::string& name)
{
    return static_cast<ULONG>(std::find(kFormats.begin(), kFormats.end(), name) - kFormats.begin());
}

int ListOperators(Client& client, const std::string& format)
{
    Session session;
    session.Open();
    ORV_PREF_OPERATOR_LIST list = {};
    Check("OrvGetPreferredOperatorListGobi", OrvGetPreferredOperatorListGobi(FormatOf(format), &list));
    const std::unique_ptr<void, decltype(&OrvFreeBuffer)> entries(list.pEntries, OrvFreeBuffer);
    session.Close();

    Report report("network preferred list");
    Json operators = Json::array();
    std::vector<Row> rows = {{"Index", "Operator", "Format", "Technologies"}};
    for (ULONG i = 0; i < list.uCount; ++i) {
        const ORV_PREF_OPERATOR& entry = list.pEntries[i];
        const std::string name = Utf8(entry.szOperator, std::size(entry.szOperator));
        const char* const format_name = NameOf(kFormats, entry.uFormat);
        Json technologies = Json::array();
        std::string text;
        for (const Access& access : kAccess) {
            if ((entry.uAccessFlags & access.flag) == 0) continue;
            technologies.push_back(access.name);
            text += (text.empty() ? "" : ", ") + std::string(access.name);
        }
        operators.push_back({{"index", entry.uIndex},
                             {"operator", name},
                             {"format", entry.uFormat},
                             {"format_name", format_name ? Json(format_name) : Json()},
                             {"technologies", technologies}});
        rows.push_back({std::to_string(entry.uIndex), name, format_name ? format_name : std::to_string(entry.uFormat),
                        text.empty() ? "-" : text});
    }
    report.AddHidden("operators", operators);
    if (list.uCount == 0)
        report.AddLine("The list is empty.");
    else
        AddTable(report, rows);
    client.Answer(report);
    return 0;
}

struct AddOptions {
    std::string name;
    std::string format; // empty: numeric for digits, else long
    std::string access; // empty: none
    std::optional<ULONG> index;
};

int AddOperator(Client& client, const AddOptions& options)
{
    const bool digits = options.name.find_first_not_of("0123456789") == std::string::npos;
    const std::string format = !options.format.empty() ? options.format : digits ? "numeric" : "long";
    ULONG flags = kNamingFlags[FormatOf(format)];
    for (const Access& access : kAccess)
        if (options.access == access.option) flags |= access.flag;
    Session session;
    session.Open();
    Check("OrvAddPreferredOperatorGobi",
          OrvAddPreferredOperatorGobi(options.index.value_or(ORV_OPERATOR_ANY_INDEX), flags, options.name.c_str()));
    session.Close();
    Report report("network preferred add");
    report.Add("operator", "Operator", options.name);
    report.Add("format", "Format", format);
    report.Add("index", "Index", options.index ? Json(*options.index) : Json(),
               options.index ? std::to_string(*options.index) : "chosen by the module");
    client.Answer(report);
    return 0;
}

int RemoveOperator(Client& client, ULONG index)
{
    Session session;
    session.Open();
    Check("OrvRemovePreferredOperatorGobi", OrvRemovePreferredOperatorGobi(index));
    session.Close();
    Report report("network preferred remove");
    report.Add("index", "Index", index, std::to_string(index) + " (removed)");
    client.Answer(report);
    return 0;
}

void AddPreferredCommands(Client& client, CLI::App* network)
{
    CLI::App* const preferred = network->add_subcommand("preferred", "The preferred operators that the SIM keeps");
    preferred->require_subcommand(1);
    const auto formats = CLI::IsMember({"long", "short", "numeric"});

    CLI::App* const list = preferred->add_subcommand("list", "Show the list");
    const auto format = std::make_shared<std::string>("numeric");
    list->add_option("--format", *format, "How operators are named: numeric (default), short or long")->check(formats);
    client.RunWithModule(list, [&client, format] { return ListOperators(client, *format); });

    CLI::App* const add = preferred->add_subcommand("add", "Add an operator");
    const auto options = std::make_shared<AddOptions>();
    add->add_option("OPERATOR", options->name, "MCC and MNC in digits (00101), or a name that the module knows")
        ->required();
    add->add_option("--index", options->index, "Where it is to stand, from 1 (default: the module chooses)");
    add->add_option("--format", options->format, "What OPERATOR is: numeric, short or long (default: as it looks)")
        ->check(formats);
    add->add_option("--access", options->access, "The technology: gsm, gsm-compact or utran (default: none)")
        ->check(CLI::IsMember({"gsm", "gsm-compact", "utran"}));
    client.RunWithModule(add, [&client, options] { return AddOperator(client, *options); });

    CLI::App* const remove = preferred->add_subcommand("remove", "Remove an operator");
    const auto index = std::make_shared<ULONG>(0);
    remove->add_option("INDEX", *index, "Its place in the list")->required();
    client.RunWithModule(remove, [&client, index] { return RemoveOperator(client, *index); });
}

} // namespace

void AddGsmNetworkCommands(Client& client)
{
    CLI::App* const network = client.App().get_subcommand("network");
    const auto timeout_option = [](CLI::App* sub, double& timeout_s, const std::string& what) {
        sub->add_option("--timeout", timeout_s, what)->type_name("S")->check(CLI::Range(0.0, 1e6));
    };

    CLI::App* const registration = network->add_subcommand("register", "Register automatically, or with one network");
    const auto options = std::make_shared<RegisterOptions>();
    registration->add_option("NETWORK", options->network, "auto (default), or MCC MNC")->expected(0, 2);
    registration->add_flag("--gsm", options->gsm, "Look for the network with GSM instead of UMTS");
    timeout_option(registration, options->timeout_s, "Wait for S seconds until the module is registered (default: 60)");
    client.Run(registration, [&client, options] { return Register(client, *options); });

    client.RunWithModule(network->add_subcommand("detach", "Detach from the packet domain"),
                         [&client] { return Detach(client); });

    CLI::App* const scan = network->add_subcommand("scan", "Look for the networks in reach");
    const auto timeout_s = std::make_shared<double>(600);
    timeout_option(scan, *timeout_s, "Give up after S seconds (default: 600)");
    client.RunWithModule(scan, [&client, timeout_s] { return Scan(client, *timeout_s); });

    client.RunWithModule(network->add_subcommand("status", "Show how a GSM/UMTS module is served, and who it is"),
                         [&client] { return Status(client); });
    AddPreferredCommands(client, network);
}

} // namespace ctl
