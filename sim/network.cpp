// The serving network, signal and radio.
#include <iterator>

#include "sim/call.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("network.registration", g_module.network.registration),
    NumberField("network.cs", g_module.network.cs_domain),
    NumberField("network.ps", g_module.network.ps_domain),
    NumberField("network.ran", g_module.network.ran),
    NumberField("network.roaming", g_module.network.roaming),
    NumberField("network.mcc", g_module.network.mcc),
    NumberField("network.mnc", g_module.network.mnc),
    TextField("network.name", g_module.network.name),
    ListField("network.interfaces", g_module.network.interfaces, 0, 255),
    ListField("network.caps", g_module.network.capabilities, 0, 255),
    ListField("signal.pairs", g_module.network.signal, -128, 127),
    ListField("rf.instances", g_module.network.rf, 0, 0x7FFFFFFF),
    NumberField("network.preference", g_module.network.preference),
    NumberField("network.preference-duration", g_module.network.preference_duration),
    NumberField("network.preference-persistent", g_module.network.preference_persistent),
};
const FieldTable kNetworkFields = {kFields, std::size(kFields)};

template <ULONG kRows, ULONG kColumns, ULONG kGiven>
static void Fill(List<kRows, kColumns>& list, const int32_t (&values)[kGiven][kColumns])
{
    static_assert(kGiven <= kRows);
    list.count = kGiven;
    memcpy(list.values, values, sizeof(values));
}

void ResetNetwork(bool umts)
{
    NetworkState& network = TheModule().network;
    network = {};
    network.registration = 1; // registered
    network.cs_domain = 1;    // attached
    network.ps_domain = 1;
    network.roaming = 1; // at home
    network.mcc = 1;
    network.mnc = 1;
    if (umts) {
        network.ran = 2;
        Copy(network.name, "Test Network");
        Fill(network.interfaces, {{5}});
        Fill(network.capabilities, {{1}, {3}, {5}});
        Fill(network.signal, {{-70, 5}});
        Fill(network.rf, {{5, 80, 10700}});
    } else {
        network.ran = 1;
        Copy(network.name, "Test Carrier");
        Fill(network.interfaces, {{1}, {2}});
        Fill(network.capabilities, {{6}, {7}});
        Fill(network.signal, {{-75, 1}, {-80, 2}});
        Fill(network.rf, {{1, 0, 384}, {2, 1, 425}});
    }
}

// The first column of a list, as octets.
template <ULONG kRows, ULONG kColumns>
static void PutOctets(Call& call, BYTE* count, BYTE* out, const List<kRows, kColumns>& list)
{
    call.PutArray(out, Call::Room(count), list.count, [&](ULONG i) { return static_cast<BYTE>(list.values[i][0]); });
    call.PutCount(count, list.count);
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetServingNetwork(ULONG* registration, ULONG* cs_domain, ULONG* ps_domain, ULONG* ran,
                                   BYTE* interface_count, BYTE* interfaces, ULONG* roaming, WORD* mcc, WORD* mnc,
                                   BYTE name_size, char* name)
{
    Call call(EntryPoint::GetServingNetwork, At(interface_count), name_size);
    if (const ULONG refused = call.Refused()) return refused;
    const NetworkState& network = TheModule().network;
    call.Put(registration, network.registration);
    call.Put(cs_domain, network.cs_domain);
    call.Put(ps_domain, network.ps_domain);
    call.Put(ran, network.ran);
    PutOctets(call, interface_count, interfaces, network.interfaces);
    call.Put(roaming, network.roaming);
    call.Put(mcc, network.mcc);
    call.Put(mnc, network.mnc);
    call.PutText(name, name_size, network.name);
    return call.Done();
}

extern "C" ULONG GetServingNetworkCapabilities(BYTE* count, BYTE* capabilities)
{
    Call call(EntryPoint::GetServingNetworkCapabilities, At(count));
    if (const ULONG refused = call.Refused()) return refused;
    PutOctets(call, count, capabilities, TheModule().network.capabilities);
    return call.Done();
}

extern "C" ULONG GetSignalStrengths(ULONG* count, ORV_INT8* strengths, ULONG* interfaces)
{
    Call call(EntryPoint::GetSignalStrengths, At(count));
    if (const ULONG refused = call.Refused()) return refused;
    const auto& signal = TheModule().network.signal;
    const ULONG room = Call::Room(count);
    call.PutArray(strengths, room, signal.count, [&](ULONG i) { return static_cast<ORV_INT8>(signal.values[i][0]); });
    call.PutArray(interfaces, room, signal.count, [&](ULONG i) { return static_cast<ULONG>(signal.values[i][1]); });
    call.PutCount(count, signal.count);
    return call.Done();
}

extern "C" ULONG GetRFInfo(BYTE* count, BYTE* instances)
{
    Call call(EntryPoint::GetRFInfo, At(count));
    if (const ULONG refused = call.Refused()) return refused;
    const auto& rf = TheModule().network.rf;
    const auto instance = [&](ULONG i) {
        return GobiRFInfo{static_cast<ULONG>(rf.values[i][0]), static_cast<ULONG>(rf.values[i][1]),
                          static_cast<ULONG>(rf.values[i][2])};
    };
    call.PutRecords<GobiRFInfo>(instances, Call::Room(count), rf.count, instance);
    call.PutCount(count, rf.count);
    return call.Done();
}

extern "C" ULONG GetNetworkPreference(ULONG* technology, ULONG* duration, ULONG* persistent)
{
    Call call(EntryPoint::GetNetworkPreference);
    if (const ULONG refused = call.Refused()) return refused;
    const NetworkState& network = TheModule().network;
    call.Put(technology, network.preference);
    call.Put(duration, network.preference_duration);
    call.Put(persistent, network.preference_persistent);
    return call.Done();
}

// A duration of 0 makes the preference the persistent one, too.
extern "C" ULONG SetNetworkPreference(ULONG technology, ULONG duration)
{
    Call call(EntryPoint::SetNetworkPreference, technology, duration);
    if (const ULONG refused = call.Refused()) return refused;
    NetworkState& network = TheModule().network;
    network.preference = technology;
    network.preference_duration = duration;
    if (duration == 0) network.preference_persistent = technology;
    return call.Done();
}
