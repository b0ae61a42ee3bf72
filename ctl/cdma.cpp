// The commands for CDMA modules: cdma identity, cdma radio, cdma service, cdma time, banner.

#include "talvek/cdma.h"
#include "ctl/client.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "ctl/vendor.h"

#include <cstdio>
#include <ctime>

namespace ctl {

namespace {

// What a function gives, or null where the module has no such thing and the function says so with `absent`.
template <class T>
std::optional<T> Get(const char* function, ORV_RCODE(ORV_CALL* getter)(T* out), ORV_RCODE absent = ORV_RCODE_OK)
{
    T value = {};
    const ORV_RCODE code = getter(&value);
    if (code != ORV_RCODE_OK && code == absent) return {};
    Check(function, code);
    return value;
}

template <class T>
Json OrNull(const std::optional<T>& value)
{
    return value ? Json(*value) : Json();
}

// A number and its name: "2 (in service)".
std::string Named(ULONG number, const char* name)
{
    return std::to_string(number) + (name ? std::string(" (") + name + ")" : "");
}

// --- identity --------------------------------------------------------------------------------------------------------

const char* CarrierName(int32_t id)
{
    switch (id) {
    case ORV_CARRIER_SPRINT:
        return "Sprint";
    case ORV_CARRIER_BELL:
        return "Bell";
    case ORV_CARRIER_TELUS:
        return "Telus";
    case ORV_CARRIER_VERIZON:
        return "Verizon";
    case ORV_CARRIER_ALLTEL:
        return "Alltel";
    case ORV_CARRIER_US_CELLULAR:
        return "US Cellular";
    case ORV_CARRIER_CHINA_UNICOM:
        return "China Unicom";
    case ORV_CARRIER_IUSACELL:
        return "Iusacell";
    case ORV_CARRIER_TNZ:
        return "TNZ";
    case ORV_CARRIER_RELIANCE_COM:
        return "Reliance Com";
    case ORV_CARRIER_TELSTRA:
        return "Telstra";
    case ORV_CARRIER_TATA_COM:
        return "Tata Com";
    case ORV_CARRIER_CHINA_TELECOM:
        return "China Telecom";
    default:
        return nullptr;
    }
}

void AddSerialNumbers(Report& report)
{
    const auto add = [&report](const char* place, const char* label, ULONG number) {
        report.Add(place, label, number != 0 ? Json(number) : Json(),
                   number != 0 ? std::optional(HexNumber(number, 8)) : std::nullopt);
    };
    add("esn", "ESN", Get("OrvGetESNGobi", OrvGetESNGobi, ORV_RCODE_FAILED).value_or(0));
    ORV_MEID_ESN record = {};
    record.sizeStruct = sizeof record;
    const ORV_RCODE code = OrvGetMEIDESN(&record);
    if (code != ORV_RCODE_FAILED) Check("OrvGetMEIDESN", code); // 5: some of it is no number
    char meid[16] = "";
    if (record.bMeidValid)
        std::snprintf(meid, sizeof meid, "%06X%08X", static_cast<unsigned>(record.uMeidHigh & 0xFFFFFF),
                      static_cast<unsigned>(record.uMeidLow));
    report.Add("meid", "MEID", *meid ? Json(meid) : Json());
    add("pesn", "Pseudo-ESN", record.bMeidValid ? record.uPesn : 0);
}

void AddParameters(Report& report)
{
    BYTE octets[7] = {};
    ULONG words[4] = {};
    Check("OrvGetCDMANetworkParameters",
          OrvGetCDMANetworkParameters(&octets[0], &octets[1], &octets[2], &octets[3], &octets[4], &octets[5],
                                      &octets[6], &words[0], &words[1], &words[2], &words[3]));
    report.Add("parameters.slot_cycle_index", "Slot cycle index", octets[0]);
    report.Add("parameters.station_class_mark", "Station class mark", octets[1], HexNumber(octets[1], 2));
    report.Add("parameters.home_only", "Registers at home only", octets[2] != 0);
    report.Add("parameters.sid_registration", "Registers in other systems", octets[3] != 0);
    report.Add("parameters.nid_registration", "Registers in other networks", octets[4] != 0);
    report.Add("parameters.force_rev0", "Held to EV-DO revision 0", octets[5] != 0);
    report.Add("parameters.custom_scp", "Own set of protocols", octets[6] != 0);
    report.Add("parameters.protocol", "Protocols", words[0], HexNumber(words[0], 8));
    report.Add("parameters.broadcast", "Broadcast protocols", words[1], HexNumber(words[1], 8));
    report.Add("parameters.application", "Applications", words[2], HexNumber(words[2], 8));
    constexpr const char* kRoaming[] = {"automatic", "home only", "affiliated", "home and affiliated"};
    report.Add("parameters.roaming", "Roaming preference", words[3],
               Named(words[3], words[3] < std::size(kRoaming) ? kRoaming[words[3]] : nullptr));
}

int Identity(Client& client)
{
    Session session;
    session.Open();
    Report report("cdma identity");
    AddSerialNumbers(report);
    report.Add("phone_number", "Phone number", ReadText("OrvGetPhoneNumber", OrvGetPhoneNumber));
    report.Add("prl_version", "Roaming list version", OrNull(Get("OrvGetPRLVersion", OrvGetPRLVersion)));
    report.Add("home.sid", "Home system (SID)", OrNull(Get("OrvGetTechSID", OrvGetTechSID)));
    report.Add("home.nid", "Home network (NID)", OrNull(Get("OrvGetTechNID", OrvGetTechNID)));
    const int32_t carrier = *Get("OrvGetCarrierID", OrvGetCarrierID);
    const char* const name = CarrierName(carrier);
    const bool known = carrier != ORV_CARRIER_NONE;
    report.Add("carrier.id", "Carrier", known ? Json(carrier) : Json(),
               known ? Named(static_cast<ULONG>(carrier), name) : "-");
    report.AddHidden("carrier.name", name ? Json(name) : Json());
    AddParameters(report);
    session.Close();
    client.Answer(report);
    return 0;
}

int Banner(Client& client)
{
    Session session;
    session.Open();
    const std::string name = ReadText("OrvPstGetDisplayBannerName", OrvPstGetDisplayBannerName);
    session.Close();
    Report report("banner");
    report.Add("name", "Banner", name.empty() ? Json() : Json(name));
    client.Answer(report);
    return 0;
}

// --- radio and service -----------------------------------------------------------------------------------------------

void AddStrength(Report& report, const char* place, const char* label, ULONG magnitude)
{
    if (magnitude == ORV_RSSI_NO_SIGNAL) return report.Add(place, label, nullptr, "no signal");
    const int dbm = -static_cast<int>(magnitude);
    report.Add(place, label, dbm, std::to_string(dbm) + " dBm");
}

int Radio(Client& client)
{
    Session session;
    session.Open();
    Report report("cdma radio");
    AddStrength(report, "rssi_dbm", "Signal", *Get("OrvGetRssi", OrvGetRssi));
    const ORV_RSSI_ECIO strengths = *Get("OrvGetRssiEcio", OrvGetRssiEcio);
    AddStrength(report, "cdma_rssi_dbm", "Signal, 1xRTT", strengths.u1xRssi);
    AddStrength(report, "hdr_rssi_dbm", "Signal, 1xEV-DO", strengths.uHdrRssi);
    const std::optional<ULONG> band = Get("OrvGetTechBandClass", OrvGetTechBandClass, ORV_RCODE_UNKNOWN);
    report.Add("band_class", "Band class, 1xRTT", OrNull(band));
    const ULONG channel = *Get("OrvGetChannelNumber", OrvGetChannelNumber);
    report.Add("channel", "Channel, 1xRTT", band ? Json(channel) : Json()); // 0 may be a channel, too
    report.Add("hybrid", "1xRTT beside 1xEV-DO", *Get("OrvGetHdrHybrPref", OrvGetHdrHybrPref) == 1);
    session.Close();
    client.Answer(report);
    return 0;
}

int Service(Client& client)
{
    constexpr const char* kRoaming[] = {"off: at home", "on: roaming", "flashing"};
    constexpr const char* kElsewhere = "not served there";
    const struct {
        const char* function;
        ORV_RCODE(ORV_CALL* getter)(ULONG* out);
        const char* place;
        const char* label;
        bool is_roaming;
    } rows[] = {
        {"OrvGetServiceIndication", OrvGetServiceIndication, "service", "Service, 1xRTT", false},
        {"OrvGetHdrSrvState", OrvGetHdrSrvState, "hdr_service", "Service, 1xEV-DO", false},
        {"OrvGetRoamingStatus", OrvGetRoamingStatus, "roaming", "Roaming indicator, 1xRTT", true},
        {"OrvGetHdrRoamStatus", OrvGetHdrRoamStatus, "hdr_roaming", "Roaming indicator, 1xEV-DO", true},
    };
    Session session;
    session.Open();
    Report report("cdma service");
    for (const auto& row : rows) {
        const std::optional<ULONG> value = Get(row.function, row.getter, ORV_RCODE_NOT_SERVED);
        const char* name = value.value_or(0) != 0 ? "in service" : "no service";
        if (row.is_roaming) name = value && *value < std::size(kRoaming) ? kRoaming[*value] : nullptr;
        report.Add(row.place, row.label, OrNull(value), value ? Named(*value, name) : kElsewhere);
    }
    const ULONG station = *Get("OrvGetCurrentBaseStation", OrvGetCurrentBaseStation);
    report.Add("base_station", "Base station", station, Named(station, station == 6 ? "CDMA" : nullptr));
    session.Close();
    client.Answer(report);
    return 0;
}

// --- time ------------------------------------------------------------------------------------------------------------

// CDMA system time counts from 6 January 1980 without leap seconds, in units of 1.25 ms here; 3GPP2 C.S0002.
std::string SystemTime(ULONGLONG stamp)
{
    constexpr std::time_t kEpoch = 315964800; // of CDMA system time, in that of the host
    const ULONGLONG ms = stamp / 4 * 5 + stamp % 4 * 5 / 4;
    if (ms / 1000 > 0xFFFFFFFF) return "";
    const std::time_t seconds = kEpoch + static_cast<std::time_t>(ms / 1000);
    std::tm parts = {};
    char text[64];
    if (!gmtime_r(&seconds, &parts)) return "";
    const size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text + length, sizeof text - length, ".%03u", static_cast<unsigned>(ms % 1000));
    return text;
}

int Time(Client& client)
{
    constexpr const char* kSources[] = {"the module", "1xRTT", "1xEV-DO"};
    Session session;
    session.Open();
    Check("OrvGetSystemTime", OrvGetSystemTime(nullptr, nullptr)); // whether it can be had; the value is the vendor's
    ULONGLONG stamp = 0;
    ULONG source = 0;
    CheckVendor("GetNetworkTime", Vendor().GetNetworkTime(&stamp, &source));
    session.Close();
    const std::string time = SystemTime(stamp);
    const char* const name = source < std::size(kSources) ? kSources[source] : nullptr;
    Report report("cdma time");
    report.Add("time", "CDMA system time", time.empty() ? Json() : Json(time),
               time.empty() ? "-" : time + " (UTC and the leap seconds since 1980)");
    report.Add("time_stamp", "Time stamp", stamp, std::to_string(stamp) + " x 1.25 ms");
    report.Add("source", "Source", source, Named(source, name));
    report.AddHidden("source_name", name ? Json(name) : Json());
    client.Answer(report);
    return 0;
}

} // namespace

void AddCdmaCommands(Client& client)
{
    CLI::App* const cdma = client.App().add_subcommand("cdma", "Show a CDMA module and how it is served");
    cdma->require_subcommand(1);
    const struct {
        const char* name;
        const char* help;
        int (*body)(Client& client);
    } commands[] = {
        {"identity", "Show serial numbers, phone number, home system, carrier and network parameters", Identity},
        {"radio", "Show signal, channel and band", Radio},
        {"service", "Show service and roaming", Service},
        {"time", "Show the time of the network", Time},
    };
    for (const auto& command : commands)
        client.RunWithModule(cdma->add_subcommand(command.name, command.help),
                             [&client, body = command.body] { return body(client); });
    client.RunWithModule(client.App().add_subcommand("banner", "Show the name of the carrier, for display"),
                         [&client] { return Banner(client); });
}

} // namespace ctl
