// What is known of the data that goes through: bearer, rates, packets, durations, and the call of the dial-up port.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"
#include "sim/session.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("data.dormancy", g_module.data.dormancy),
    NumberField("data.bearer", g_module.data.bearer),
    NumberField("data.tx-rate", g_module.data.tx_rate),
    NumberField("data.rx-rate", g_module.data.rx_rate),
    NumberField("data.max-tx-rate", g_module.data.max_tx_rate),
    NumberField("data.max-rx-rate", g_module.data.max_rx_rate),
    NumberField("data.started-ms", g_module.data.started_ms),
    NumberField("packets.sent", g_module.data.packets[0]),
    NumberField("packets.received", g_module.data.packets[1]),
    NumberField("packets.tx-errors", g_module.data.packets[2]),
    NumberField("packets.rx-errors", g_module.data.packets[3]),
    NumberField("packets.tx-overflows", g_module.data.packets[4]),
    NumberField("packets.rx-overflows", g_module.data.packets[5]),
    NumberField("dun.state", g_module.data.dun.state),
    NumberField("dun.end-reason", g_module.data.dun.end_reason),
    NumberField("dun.dormant", g_module.data.dun.dormant),
    NumberField("dun.bearer", g_module.data.dun.bearer),
    NumberField("dun.reports", g_module.data.dun.reports, 0x3F),
    NumberField("dun.report-seconds", g_module.data.dun.report_seconds),
    NumberField("dun.duration-ms", g_module.data.dun.duration_ms),
    NumberField("dun.sent", g_module.data.dun.sent),
    NumberField("dun.received", g_module.data.dun.received),
    NumberField("dun.last-duration-ms", g_module.data.dun.last_duration_ms),
    NumberField("dun.last-sent", g_module.data.dun.last_sent),
    NumberField("dun.last-received", g_module.data.dun.last_received),
    NumberField("dun.last-bearer", g_module.data.dun.last_bearer),
};
const FieldTable kDataFields = {kFields, std::size(kFields)};

constexpr ULONG kConnected = 2;
constexpr ULONG kActive = 2;

void ResetDataStatus(bool umts)
{
    DataState& data = TheModule().data;
    data = {};
    data.dormancy = kActive;
    data.bearer = umts ? 9 : 5; // HSPA both ways, 1xEV-DO revision A
    data.tx_rate = umts ? 2000000 : 900000;
    data.rx_rate = umts ? 7200000 : 1500000;
    data.max_tx_rate = umts ? 5760000 : 1800000;
    data.max_rx_rate = umts ? 14400000 : 3100000;
    data.dun.state = 1; // disconnected
    data.dun.dormant = kActive;
}

void BeginDataStatus()
{
    DataState& data = TheModule().data;
    data.started_ms = Now();
    data.dormancy = kActive;
    for (ULONG& packets : data.packets)
        packets = 0;
}

static bool IsUp() { return TheModule().session.state == kConnected; }

// One number of the session: 0, and the status that says so, while there is none.
template <class T>
static ULONG GiveOfSession(EntryPoint entry, T* out, T (*value)())
{
    Call call(entry);
    if (const ULONG refused = call.Refused()) return refused;
    call.Put(out, IsUp() ? value() : T{0});
    if (const ULONG status = call.Done()) return status;
    return IsUp() ? kSuccess : kNoSession;
}

} // namespace sim

using namespace sim;

// The first octet is the most significant one here, unlike in GetIPConfiguration.
extern "C" ULONG GetIPAddress(ULONG* address)
{
    return GiveOfSession<ULONG>(EntryPoint::GetIPAddress, address, [] {
        const BYTE* octets = SessionAddress();
        return ULONG{octets[0]} << 24 | ULONG{octets[1]} << 16 | ULONG{octets[2]} << 8 | ULONG{octets[3]};
    });
}

extern "C" ULONG GetDormancyState(ULONG* state)
{
    return GiveOfSession<ULONG>(EntryPoint::GetDormancyState, state, [] { return TheModule().data.dormancy; });
}

extern "C" ULONG GetDataBearerTechnology(ULONG* technology)
{
    return GiveOfSession<ULONG>(EntryPoint::GetDataBearerTechnology, technology,
                                [] { return TheModule().data.bearer; });
}

extern "C" ULONG GetSessionDuration(ULONGLONG* duration)
{
    return GiveOfSession<ULONGLONG>(EntryPoint::GetSessionDuration, duration,
                                    [] { return Now() - TheModule().data.started_ms; });
}

extern "C" ULONG GetPacketStatus(ULONG* sent, ULONG* received, ULONG* tx_errors, ULONG* rx_errors, ULONG* tx_overflows,
                                 ULONG* rx_overflows)
{
    Call call(EntryPoint::GetPacketStatus);
    if (const ULONG refused = call.Refused()) return refused;
    ULONG* const outputs[] = {sent, received, tx_errors, rx_errors, tx_overflows, rx_overflows};
    for (ULONG i = 0; i < std::size(outputs); ++i)
        call.Put(outputs[i], IsUp() ? TheModule().data.packets[i] : 0);
    if (const ULONG status = call.Done()) return status;
    return IsUp() ? kSuccess : kNoSession;
}

extern "C" ULONG GetConnectionRate(ULONG* tx_rate, ULONG* rx_rate, ULONG* max_tx_rate, ULONG* max_rx_rate)
{
    Call call(EntryPoint::GetConnectionRate);
    if (const ULONG refused = call.Refused()) return refused;
    const DataState& data = TheModule().data;
    call.Put(tx_rate, IsUp() ? data.tx_rate : 0);
    call.Put(rx_rate, IsUp() ? data.rx_rate : 0);
    call.Put(max_tx_rate, data.max_tx_rate);
    call.Put(max_rx_rate, data.max_rx_rate);
    if (const ULONG status = call.Done()) return status;
    return IsUp() ? kSuccess : kNoSession;
}

extern "C" ULONG GetDunCallInfo(ULONG* state, BYTE* dormant, BYTE* bearer, ULONG* end_reason, BYTE* state_report,
                                BYTE* dormancy_report, BYTE* bearer_report, BYTE* error_report, ULONGLONG* duration,
                                WORD* report_seconds, ULONGLONG* sent, ULONGLONG* received, BYTE* totals_report,
                                BYTE* rate_report, ULONG* tx_rate, ULONG* rx_rate, ULONG* max_tx_rate,
                                ULONG* max_rx_rate, ULONGLONG* last_duration, ULONGLONG* last_sent,
                                ULONGLONG* last_received, BYTE* last_bearer)
{
    Call call(EntryPoint::GetDunCallInfo);
    if (const ULONG refused = call.Refused()) return refused;
    const DataState& data = TheModule().data;
    const DunState& dun = data.dun;
    const bool up = dun.state == kConnected;
    call.Put(state, dun.state);
    call.Put(dormant, dun.dormant);
    call.Put(bearer, dun.bearer);
    call.Put(end_reason, dun.end_reason);
    BYTE* const reports[] = {state_report, dormancy_report, bearer_report, error_report, totals_report, rate_report};
    for (ULONG i = 0; i < std::size(reports); ++i)
        call.Put(reports[i], static_cast<BYTE>(dun.reports >> i & 1));
    call.Put(duration, dun.duration_ms);
    call.Put(report_seconds, dun.report_seconds);
    call.Put(sent, dun.sent);
    call.Put(received, dun.received);
    call.Put(tx_rate, up ? data.tx_rate : 0);
    call.Put(rx_rate, up ? data.rx_rate : 0);
    call.Put(max_tx_rate, data.max_tx_rate);
    call.Put(max_rx_rate, data.max_rx_rate);
    call.Put(last_duration, dun.last_duration_ms);
    call.Put(last_sent, dun.last_sent);
    call.Put(last_received, dun.last_received);
    call.Put(last_bearer, dun.last_bearer);
    return call.Done();
}
