// Which networks can be received, which one is home, and how the module comes to be registered with one of them.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/network_names.h"
#include "sim/progress.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    ListField("scan.networks", g_module.scan.networks, 0, 999),
    TextField("scan.names", g_module.scan.names),
    NumberField("scan.mode", g_module.scan.mode),
    NumberField("scan.register-ms", g_module.scan.register_ms),
    NumberField("scan.duration-ms", g_module.scan.duration_ms),
    NumberField("home.mcc", g_module.scan.home_mcc),
    NumberField("home.mnc", g_module.scan.home_mnc),
    NumberField("home.sid", g_module.scan.home_sid),
    NumberField("home.nid", g_module.scan.home_nid),
    TextField("home.name", g_module.scan.home_name),
};
const FieldTable kNetworkScanFields = {kFields, std::size(kFields)};

enum Column { kMcc, kMnc, kRat, kFlags };
enum Flag : int32_t { kRoaming = 1, kForbidden = 2, kPreferred = 4 };
enum Registration : ULONG { kNotRegistered, kRegistered, kSearching, kDenied };
enum Mode : ULONG { kAutomatic = 1, kManual = 2 };
enum Attachment : ULONG { kAttached = 1, kDetached = 2 };

constexpr ULONG kGsm = 4;
constexpr ULONG kUmts = 5;

void ResetHomeNetwork(bool umts)
{
    NetworkScanState& scan = TheModule().scan;
    scan.home_mcc = 1;
    scan.home_mnc = 1;
    scan.home_sid = umts ? 0 : 4107;
    scan.home_nid = umts ? 0 : 65535;
    Copy(scan.home_name, umts ? "Test Network" : "Test Carrier");
}

void ResetNetworkScan(bool umts)
{
    NetworkScanState& scan = TheModule().scan;
    scan = {};
    scan.mode = kAutomatic;
    scan.register_ms = 200;
    scan.duration_ms = 1500;
    ResetHomeNetwork(umts);
    if (!umts) return;
    constexpr int32_t kNetworks[][4] = {
        {1, 1, 5, kPreferred}, {1, 1, 4, kPreferred}, {1, 2, 5, 0}, {1, 3, 4, kForbidden}, {999, 70, 5, kRoaming}};
    scan.networks.count = std::size(kNetworks);
    memcpy(scan.networks.values, kNetworks, sizeof(kNetworks));
    Copy(scan.names, "Test Network|Test Network|Second Network|Closed Network|Foreign Network");
}

// --- the networks
// -----------------------------------------------------------------------------------------------------

static const int32_t* Row(ULONG index) { return TheModule().scan.networks.values[index]; }

// At most `room` octets, not terminated; returns how many.
static ULONG CopyName(ULONG index, char* name, ULONG room)
{
    const char* at = TheModule().scan.names;
    for (; index > 0 && *at; ++at) {
        if (*at == '|') --index;
    }
    ULONG length = 0;
    while (index == 0 && length < room && at[length] && at[length] != '|') {
        name[length] = at[length];
        ++length;
    }
    return length;
}

bool NameOfNetwork(WORD mcc, WORD mnc, NetworkName& name)
{
    for (ULONG i = 0; i < TheModule().scan.networks.count; ++i) {
        if (Row(i)[kMcc] != mcc || Row(i)[kMnc] != mnc) continue;
        name = {};
        if (CopyName(i, name.octets, name.Room() - 1) != 0) return true;
    }
    return false;
}

bool NetworkOfName(const char* name, bool is_short, WORD* mcc, WORD* mnc)
{
    for (ULONG i = 0; i < TheModule().scan.networks.count; ++i) {
        NetworkName own = {};
        CopyName(i, own.octets, is_short ? kShortNameLength : own.Room() - 1);
        if (own.octets[0] == 0 || !Equal(own, name)) continue;
        *mcc = static_cast<WORD>(Row(i)[kMcc]);
        *mnc = static_cast<WORD>(Row(i)[kMnc]);
        return true;
    }
    return false;
}

static bool Serves(ULONG index)
{
    const NetworkState& network = TheModule().network;
    return network.registration == kRegistered && Row(index)[kMcc] == network.mcc && Row(index)[kMnc] == network.mnc;
}

// 1 where it holds, 2 where it does not.
static ULONG Property(bool holds) { return holds ? 1 : 2; }

static GobiNetworkInfo InfoOf(ULONG index)
{
    GobiNetworkInfo info = {};
    info.mcc = static_cast<WORD>(Row(index)[kMcc]);
    info.mnc = static_cast<WORD>(Row(index)[kMnc]);
    info.inUse = Property(Serves(index));
    info.roaming = Property((Row(index)[kFlags] & kRoaming) != 0);
    info.forbidden = Property((Row(index)[kFlags] & kForbidden) != 0);
    info.preferred = Property((Row(index)[kFlags] & kPreferred) != 0);
    CopyName(index, info.description, sizeof(info.description));
    return info;
}

static GobiNetworkRAT RatOf(ULONG index)
{
    return {static_cast<WORD>(Row(index)[kMcc]), static_cast<WORD>(Row(index)[kMnc]),
            static_cast<ULONG>(Row(index)[kRat])};
}

// The rows that a plain scan gives: each network once.
struct Distinct {
    ULONG count;
    BYTE rows[50];
};

static Distinct DistinctNetworks()
{
    Distinct distinct = {};
    for (ULONG i = 0; i < TheModule().scan.networks.count; ++i) {
        bool known = false;
        for (ULONG j = 0; j < distinct.count; ++j)
            known = known || memcmp(Row(distinct.rows[j]), Row(i), 2 * sizeof(int32_t)) == 0;
        if (!known) distinct.rows[distinct.count++] = static_cast<BYTE>(i);
    }
    return distinct;
}

// --- registration
// -----------------------------------------------------------------------------------------------------

static void Emit(const char* event, ULONG value)
{
    Text<64> line;
    Writer(line).Add("emit ").Add(event).Character(' ').Unsigned(value);
    ScheduleModuleEvent(0, line);
}

static bool Matches(ULONG index, WORD mcc, WORD mnc, ULONG rat)
{
    const int32_t* row = Row(index);
    return row[kMcc] == mcc && row[kMnc] == mnc && (rat == 0 || static_cast<ULONG>(row[kRat]) == rat);
}

// The row of the network to be registered with, or the count of rows. Automatic: home before all others.
static ULONG Choose()
{
    const NetworkScanState& scan = TheModule().scan;
    const ULONG count = scan.networks.count;
    const bool manual = scan.mode == kManual;
    for (ULONG i = 0; i < count; ++i) {
        if (manual ? Matches(i, scan.wanted_mcc, scan.wanted_mnc, scan.wanted_rat)
                   : Matches(i, scan.home_mcc, scan.home_mnc, 0)) {
            return i;
        }
    }
    for (ULONG i = 0; i < count && !manual; ++i) {
        if ((Row(i)[kFlags] & kForbidden) == 0) return i;
    }
    return count;
}

// The radio follows to the network: interfaces, signal and channel tell of the same technology.
static void ChangeRadio(ULONG interface)
{
    NetworkState& network = TheModule().network;
    const int32_t value = static_cast<int32_t>(interface);
    if (network.interfaces.count == 1 && network.interfaces.values[0][0] == value) return;
    network.interfaces.count = 1;
    network.interfaces.values[0][0] = value;
    for (ULONG i = 0; i < network.signal.count; ++i)
        network.signal.values[i][1] = value;
    network.rf.count = 1;
    const int32_t rf[3] = {value, interface == kGsm ? 41 : 80, interface == kGsm ? 62 : 10700};
    memcpy(network.rf.values[0], rf, sizeof(rf));
    TheModule().data.bearer = interface == kGsm ? 6 : 9; // EDGE, HSPA
    Text<64> line;
    Writer(line).Add("emit rf ").Number(rf[0]).Character(' ').Number(rf[1]).Character(' ').Number(rf[2]);
    ScheduleModuleEvent(0, line);
}

void StepRegistration()
{
    NetworkState& network = TheModule().network;
    const ULONG row = Choose();
    if (row == TheModule().scan.networks.count || (Row(row)[kFlags] & kForbidden) != 0) {
        network.registration = row == TheModule().scan.networks.count ? kNotRegistered : kDenied;
        network.cs_domain = network.ps_domain = kDetached;
        return;
    }
    network.registration = kRegistered;
    network.cs_domain = network.ps_domain = kAttached;
    network.mcc = static_cast<WORD>(Row(row)[kMcc]);
    network.mnc = static_cast<WORD>(Row(row)[kMnc]);
    network.ran = 2;
    network.name = {};
    CopyName(row, network.name.octets, network.name.Room() - 1);
    const ULONG roaming = (Row(row)[kFlags] & kRoaming) != 0 ? 0 : 1;
    if (roaming != network.roaming) Emit("roaming", roaming);
    network.roaming = roaming;
    ChangeRadio(static_cast<ULONG>(Row(row)[kRat]));
}

void AbandonRegistration() { TheModule().network.registration = kNotRegistered; }

static bool IsRadioOn() { return TheModule().power.mode == 0; }

// A scan takes its time, on a live clock.
static void TakeTimeForScan()
{
    ULONG duration_ms = 0;
    {
        const Guard guard;
        if (IsRadioOn()) duration_ms = TheModule().scan.duration_ms;
    }
    WaitLive(duration_ms);
}

} // namespace sim

using namespace sim;

// Each network once, at most as many as there is room for.
extern "C" ULONG PerformNetworkScan(BYTE* count, BYTE* networks)
{
    TakeTimeForScan();
    Call call(EntryPoint::PerformNetworkScan, At(count));
    if (const ULONG refused = call.Refused()) return refused;
    if (!IsRadioOn()) return kNoNetwork;
    const Distinct found = DistinctNetworks();
    call.PutRecords<GobiNetworkInfo>(networks, Call::Room(count), found.count,
                                     [&](ULONG i) { return InfoOf(found.rows[i]); });
    call.PutCount(count, found.count);
    return call.Done();
}

// Each network once for each technology in which it is received.
extern "C" ULONG PerformNetworkRATScan(BYTE* count, BYTE* networks, BYTE* rat_count, BYTE* rats)
{
    TakeTimeForScan();
    Call call(EntryPoint::PerformNetworkRATScan, At(count), At(rat_count));
    if (const ULONG refused = call.Refused()) return refused;
    if (!IsRadioOn()) return kNoNetwork;
    const ULONG found = TheModule().scan.networks.count;
    call.PutRecords<GobiNetworkInfo>(networks, Call::Room(count), found, InfoOf);
    call.PutCount(count, found);
    call.PutRecords<GobiNetworkRAT>(rats, Call::Room(rat_count), found, RatOf);
    call.PutCount(rat_count, found);
    return call.Done();
}

// Refused as without effect when the module is registered in just this way. Otherwise the session ends, the module
// searches, and after a while it is registered, denied or without a network.
extern "C" ULONG InitiateNetworkRegistration(ULONG type, WORD mcc, WORD mnc, ULONG rat)
{
    Call call(EntryPoint::InitiateNetworkRegistration, type, mcc, mnc, rat);
    if (const ULONG refused = call.Refused()) return refused;
    if (type != kAutomatic && type != kManual) return kInvalidArgument;
    if (type == kManual && (mcc > 999 || mnc > 999 || (rat != 0 && rat != kGsm && rat != kUmts))) {
        return kInvalidArgument;
    }
    if (!IsRadioOn()) return kNoNetwork;
    NetworkState& network = TheModule().network;
    NetworkScanState& scan = TheModule().scan;
    const bool same_network =
        network.mcc == mcc && network.mnc == mnc &&
        (rat == 0 || (network.interfaces.count > 0 && static_cast<ULONG>(network.interfaces.values[0][0]) == rat));
    if (network.registration == kRegistered && scan.mode == type && (type == kAutomatic || same_network)) {
        return kNoEffect;
    }
    scan.mode = type;
    scan.wanted_mcc = mcc;
    scan.wanted_mnc = mnc;
    scan.wanted_rat = rat;
    network.registration = kSearching;
    LoseSession(TheModule().session.end_reason);
    PlanStep(Progress::Registration, scan.register_ms);
    return call.Done();
}

extern "C" ULONG InitiateDomainAttach(ULONG action)
{
    Call call(EntryPoint::InitiateDomainAttach, action);
    if (const ULONG refused = call.Refused()) return refused;
    if (action != kAttached && action != kDetached) return kInvalidArgument;
    NetworkState& network = TheModule().network;
    if (network.ps_domain == action) return kNoEffect;
    if (action == kAttached && network.registration != kRegistered) return kNoNetwork;
    network.ps_domain = action;
    if (action == kDetached) LoseSession(TheModule().session.end_reason);
    return call.Done();
}

extern "C" ULONG GetHomeNetwork(WORD* mcc, WORD* mnc, BYTE name_size, char* name, WORD* sid, WORD* nid)
{
    Call call(EntryPoint::GetHomeNetwork, name_size);
    if (const ULONG refused = call.Refused()) return refused;
    const NetworkScanState& scan = TheModule().scan;
    call.Put(mcc, scan.home_mcc);
    call.Put(mnc, scan.home_mnc);
    call.PutText(name, name_size, scan.home_name);
    call.Put(sid, scan.home_sid);
    call.Put(nid, scan.home_nid);
    return call.Done();
}
