// The packet data session.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"
#include "sim/session.h"

namespace sim {

constexpr ULONG kDisconnected = 1;
constexpr ULONG kConnected = 2;

static constexpr Field kFields[] = {
    NumberField("session.state", g_module.session.state),
    NumberField("session.handle", g_module.session.handle),
    NumberField("session.next-handle", g_module.session.next_handle),
    NumberField("session.start-status", g_module.session.start_status),
    NumberField("session.failure-reason", g_module.session.failure_reason),
    NumberField("session.end-reason", g_module.session.end_reason),
    NumberField("session.connect-ms", g_module.session.connect_ms),
    NumberField("session.release-ms", g_module.session.release_ms),
    TextField("session.apn", g_module.session.apn),
    TextField("session.user", g_module.session.user),
    TextField("session.password", g_module.session.password),
    NumberField("session.sent", g_module.session.sent),
    NumberField("session.received", g_module.session.received),
    AddressField("ip.address", g_module.session.address),
    AddressField("ip.primary-dns", g_module.session.primary_dns),
    AddressField("ip.secondary-dns", g_module.session.secondary_dns),
    AddressField("ip.gateway", g_module.session.gateway),
    AddressField("ip.netmask", g_module.session.netmask),
};
const FieldTable kSessionFields = {kFields, std::size(kFields)};

static void SetAddress(BYTE (&address)[4], BYTE a, BYTE b, BYTE c, BYTE d)
{
    address[0] = a;
    address[1] = b;
    address[2] = c;
    address[3] = d;
}

void ResetSession()
{
    SessionState& session = TheModule().session;
    session = {};
    session.state = kDisconnected;
    session.next_handle = 0x1001;
    session.connect_ms = 100;
    session.release_ms = 50;
    SetAddress(session.address, 192, 0, 2, 10);
    SetAddress(session.primary_dns, 192, 0, 2, 53);
    SetAddress(session.secondary_dns, 192, 0, 2, 54);
    SetAddress(session.gateway, 192, 0, 2, 1);
    SetAddress(session.netmask, 255, 255, 255, 0);
}

void EndSession()
{
    TheModule().session.state = kDisconnected;
    TheModule().session.next_report_ms = 0;
}

static void ReportEnd(ULONG delay_ms, ULONG reason)
{
    Text<48> line;
    Writer(line).Add("emit session 1 ").Unsigned(reason);
    ScheduleModuleEvent(delay_ms, line);
}

void LoseSession(ULONG reason)
{
    if (TheModule().session.state != kConnected) return;
    EndSession();
    ReportEnd(0, reason);
}

const BYTE (&SessionAddress())[4]
{
    const SessionState& session = TheModule().session;
    for (const BYTE octet : session.static_address) {
        if (octet != 0) return session.static_address;
    }
    return session.address;
}

// So many octets go through, in packets as large as they can be.
static void Carry(ULONGLONG sent, ULONGLONG received)
{
    constexpr ULONG kPacketOctets = 1500;
    const auto packets = [](ULONGLONG octets) {
        return static_cast<ULONG>(octets / kPacketOctets + (octets % kPacketOctets != 0 ? 1 : 0));
    };
    TheModule().session.sent += sent;
    TheModule().session.received += received;
    TheModule().data.packets[0] += packets(sent);
    TheModule().data.packets[1] += packets(received);
}

void SessionVerb(Command& command)
{
    const bool ends = command.Take("ends");
    const bool carries = !ends && command.Take("carries");
    if (!ends && !carries) {
        const char* word = command.Word("ends or carries");
        if (!command.Failed()) command.Fail().Add("unknown verb \"session ").Add(word).Add("\"");
        return;
    }
    ULONGLONG reason = TheModule().session.end_reason, sent = 0, received = 0;
    if (ends && command.More()) reason = command.Unsigned("reason", 0xFFFFFFFF);
    if (carries) {
        sent = command.Unsigned("octets sent", ~ULONGLONG{0});
        received = command.Unsigned("octets received", ~ULONGLONG{0});
    }
    command.End();
    if (command.Failed()) return;
    if (TheModule().session.state != kConnected)
        command.Reply().Add("no session"); // the client may have ended it meanwhile
    else if (ends)
        LoseSession(static_cast<ULONG>(reason));
    else
        Carry(sent, received);
}

ULONGLONG NextReport() { return TheModule().session.next_report_ms; }

void StepReport()
{
    SessionState& session = TheModule().session;
    session.next_report_ms += session.report_seconds * ULONGLONG{1000};
}

static void PlanReport()
{
    SessionState& session = TheModule().session;
    const bool reports = session.state == kConnected && session.report_seconds > 0;
    session.next_report_ms = reports ? Now() + session.report_seconds * ULONGLONG{1000} : 0;
    WakeClock();
}

void ReportEvery(ULONG seconds)
{
    TheModule().session.report_seconds = seconds;
    PlanReport();
}

static bool KeepText(Text<128>& kept, const char* text) { return Copy(kept, text ? text : ""); }

static ULONG NetworkOrder(const BYTE (&address)[4])
{
    ULONG value = 0;
    memcpy(&value, address, sizeof(value));
    return value;
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetSessionState(ULONG* state)
{
    Call call(EntryPoint::GetSessionState);
    if (const ULONG refused = call.Refused()) return refused;
    call.Put(state, TheModule().session.state);
    return call.Done();
}

extern "C" ULONG StartDataSession2(char* apn, char* user, char* password, ULONG* handle, ULONG* failure_reason)
{
    Call call(EntryPoint::StartDataSession2, apn, user, password);
    if (const ULONG refused = call.Refused()) return refused;
    SessionState& session = TheModule().session;
    call.PutOptional(failure_reason, session.start_status ? session.failure_reason : 0);
    if (session.start_status) {
        call.ScribbleOn(handle);
        return session.start_status;
    }
    if (TheModule().power.mode != 0 || TheModule().network.registration != 1) return kNoNetwork;
    if (session.state != kDisconnected) return kNoEffect;
    if (!KeepText(session.apn, apn) || !KeepText(session.user, user) || !KeepText(session.password, password)) {
        return kInvalidArgument;
    }
    call.Put(handle, session.next_handle);
    if (const ULONG status = call.Done()) return status;
    session.handle = session.next_handle++;
    session.state = kConnected;
    const ULONG own = TheModule().profiles.profiles[TheModule().connection.umts ? 0 : 1].addresses[0];
    SetAddress(session.static_address, static_cast<BYTE>(own >> 24), static_cast<BYTE>(own >> 16),
               static_cast<BYTE>(own >> 8), static_cast<BYTE>(own));
    session.sent = 0;
    session.received = 0;
    BeginDataStatus();
    ReportMobileIP(session.connect_ms);
    ScheduleModuleEvent(session.connect_ms, "emit session 2 0");
    PlanReport();
    return kSuccess;
}

extern "C" ULONG StopDataSession(ULONG handle)
{
    Call call(EntryPoint::StopDataSession, handle);
    if (const ULONG refused = call.Refused()) return refused;
    SessionState& session = TheModule().session;
    if (session.state == kDisconnected) return kNoSession;
    if (session.handle != handle) return kInvalidArgument;
    EndSession();
    ReportEnd(session.release_ms, session.end_reason);
    return kSuccess;
}

extern "C" ULONG GetIPConfiguration(ULONG* address, ULONG* primary_dns, ULONG* secondary_dns, ULONG* gateway,
                                    ULONG* netmask)
{
    Call call(EntryPoint::GetIPConfiguration);
    if (const ULONG refused = call.Refused()) return refused;
    const SessionState& session = TheModule().session;
    const bool up = session.state == kConnected;
    call.Put(address, up ? NetworkOrder(SessionAddress()) : 0);
    call.Put(primary_dns, up ? NetworkOrder(session.primary_dns) : 0);
    call.Put(secondary_dns, up ? NetworkOrder(session.secondary_dns) : 0);
    call.Put(gateway, up ? NetworkOrder(session.gateway) : 0);
    call.Put(netmask, up ? NetworkOrder(session.netmask) : 0);
    if (const ULONG status = call.Done()) return status;
    return up ? kSuccess : kNoSession;
}

// 64 bits through each pointer, although the interface declares 32.
extern "C" ULONG GetByteTotals(ULONG* sent, ULONG* received)
{
    Call call(EntryPoint::GetByteTotals);
    if (const ULONG refused = call.Refused()) return refused;
    call.PutLong(sent, TheModule().session.sent);
    call.PutLong(received, TheModule().session.received);
    return call.Done();
}
