// Who the module is to the network, what it is capable of, why it is offline, and what time the network tells.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"
#include "sim/settings.h"

namespace sim {

static constexpr Field kFields[] = {
    TextField("identity.esn", g_module.subscriber.esn),
    TextField("identity.meid", g_module.subscriber.meid),
    TextField("identity.imsi", g_module.subscriber.imsi),
    NumberField("device.max-tx-rate", g_module.subscriber.max_tx_rate),
    NumberField("device.max-rx-rate", g_module.subscriber.max_rx_rate),
    NumberField("device.data-service", g_module.subscriber.data_service),
    NumberField("device.sim-supported", g_module.subscriber.sim_supported),
    ListField("device.interfaces", g_module.subscriber.interfaces, 0, 0x7FFFFFFF),
    NumberField("offline.reasons", g_module.subscriber.offline_reasons),
    NumberField("offline.platform", g_module.subscriber.platform),
    NumberField("time.stamp", g_module.subscriber.time),
    NumberField("time.source", g_module.subscriber.time_source),
};
const FieldTable kSubscriberFields = {kFields, std::size(kFields)};

template <ULONG kCount>
static void SetInterfaces(const int32_t (&interfaces)[kCount])
{
    auto& list = TheModule().subscriber.interfaces;
    list.count = kCount;
    for (ULONG i = 0; i < kCount; ++i)
        list.values[i][0] = interfaces[i];
}

void ResetSubscriber(bool umts)
{
    SubscriberState& subscriber = TheModule().subscriber;
    subscriber = {};
    subscriber.max_tx_rate = umts ? 5760000 : 1800000;
    subscriber.max_rx_rate = umts ? 14400000 : 3100000;
    subscriber.data_service = 3;     // voice and data
    subscriber.time = 1135779840000; // 1 January 2025
    if (umts) {
        subscriber.sim_supported = 1;
        Copy(subscriber.imsi, "001010123456789");
        SetInterfaces({4, 5});
    } else {
        subscriber.time_source = 1; // the 1X network
        Copy(subscriber.esn, "80E5C86D");
        Copy(subscriber.meid, "A1000000000001");
        SetInterfaces({1, 2});
    }
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetDeviceCapabilities(ULONG* max_tx_rate, ULONG* max_rx_rate, ULONG* data_service,
                                       ULONG* sim_supported, ULONG* interface_count, BYTE* interfaces)
{
    Call call(EntryPoint::GetDeviceCapabilities, At(interface_count));
    if (const ULONG refused = call.Refused()) return refused;
    const SubscriberState& subscriber = TheModule().subscriber;
    call.Put(max_tx_rate, subscriber.max_tx_rate);
    call.Put(max_rx_rate, subscriber.max_rx_rate);
    call.Put(data_service, subscriber.data_service);
    call.Put(sim_supported, subscriber.sim_supported);
    call.PutRecords<ULONG>(interfaces, Call::Room(interface_count), subscriber.interfaces.count,
                           [&](ULONG i) { return static_cast<ULONG>(subscriber.interfaces.values[i][0]); });
    call.PutCount(interface_count, subscriber.interfaces.count);
    return call.Done();
}

extern "C" ULONG GetVoiceNumber(BYTE number_size, char* number, BYTE min_size, char* min)
{
    Call call(EntryPoint::GetVoiceNumber, number_size, min_size);
    if (const ULONG refused = call.Refused()) return refused;
    call.PutText(number, number_size, TheModule().cdma.mdn);
    call.PutText(min, min_size, TheModule().cdma.min_based.min);
    return call.Done();
}

extern "C" ULONG GetSerialNumbers(BYTE esn_size, char* esn, BYTE imei_size, char* imei, BYTE meid_size, char* meid)
{
    Call call(EntryPoint::GetSerialNumbers, esn_size, imei_size, meid_size);
    if (const ULONG refused = call.Refused()) return refused;
    call.PutText(esn, esn_size, TheModule().subscriber.esn);
    call.PutText(imei, imei_size, TheModule().identity.imei);
    call.PutText(meid, meid_size, TheModule().subscriber.meid);
    return call.Done();
}

// That of the card, or else the one that the module is provisioned with.
extern "C" ULONG GetIMSI(BYTE size, char* imsi)
{
    Call call(EntryPoint::GetIMSI, size);
    if (const ULONG refused = call.Refused()) return refused;
    const CdmaIdentity& identity = TheModule().cdma.min_based;
    Text<24> text = {};
    Writer(text).Add(TheModule().subscriber.imsi);
    if (!*text) Writer(text).Add(identity.mcc).Add(identity.imsi1112).Add(identity.min);
    call.PutText(imsi, size, text);
    return call.Done();
}

extern "C" ULONG GetOfflineReason(ULONG* reasons, ULONG* platform)
{
    return Give(EntryPoint::GetOfflineReason, Given{reasons, TheModule().subscriber.offline_reasons},
                Given{platform, TheModule().subscriber.platform});
}

// Goes on with the sim clock, five milliseconds in four units.
extern "C" ULONG GetNetworkTime(ULONGLONG* time_stamp, ULONG* time_source)
{
    Call call(EntryPoint::GetNetworkTime);
    if (const ULONG refused = call.Refused()) return refused;
    call.Put(time_stamp, TheModule().subscriber.time + Now() * 4 / 5);
    call.Put(time_source, TheModule().subscriber.time_source);
    return call.Done();
}
