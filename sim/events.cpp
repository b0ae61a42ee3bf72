#include "sim/events.h"

#include "sim/delivery.h"
#include "sim/host.h"
#include "sim/module.h"

namespace sim {

// An event's arguments, a letter each: d 32 bits, w 16, b 8, s 8 with a sign, q 64, x hexadecimal octets or null,
// l any number of octets, or null, m one octet, or null,
// t any number of octet triples T:A:N, or null and their number.
struct EventRow {
    const char* name;
    const char* arguments;
    const char* usage;
    EntryPoint source; // where the callback is registered
    void (*call)(Delivery& d);
    void (*take)(Command& command, Delivery& d) = nullptr; // in place of the letters
};

template <class Callback>
static void CallLong(Delivery& d)
{
    d.As<Callback>()(d.Long(0));
}
template <class Callback>
static void CallLongs(Delivery& d)
{
    d.As<Callback>()(d.Long(0), d.Long(1));
}

static void CallSignal(Delivery& d) { d.As<GobiSignalStrengthCallback>()(static_cast<ORV_INT8>(d.Byte(0)), d.Long(1)); }
static void CallBytes(Delivery& d) { d.As<GobiByteTotalsCallback>()(d.numbers[0], d.numbers[1]); }
static void CallRfInfo(Delivery& d) { d.As<GobiRFInfoCallback>()(d.Long(0), d.Long(1), d.Long(2)); }
static void CallCapabilities(Delivery& d)
{
    d.As<GobiDataCapabilitiesCallback>()(static_cast<BYTE>(d.octet_count), d.Octets());
}
static void CallNetworkTime(Delivery& d)
{
    d.As<GobiNetworkTimeCallback>()(d.Word(0), d.Byte(1), d.Byte(2), d.Byte(3), d.Byte(4), d.Byte(5), d.Byte(6),
                                    d.Byte(7), d.Byte(8));
}
static void CallEmergencyMode(Delivery& d) { d.As<GobiSystemSelectionPrefCallback>()(d.Octets()); }
static void CallBroadcast(Delivery& d)
{
    d.As<GobiNewSMSCBCallback>()(d.Byte(0), d.Long(1), d.Byte(2), static_cast<WORD>(d.octet_count), d.Octets());
}
static void CallVoiceMail(Delivery& d)
{
    d.As<GobiMsgWaitingCallback>()(static_cast<BYTE>(d.octet_count), d.Octets(0), d.Octets(1), d.Octets(2));
}
static void CallAlert(Delivery& d) { d.As<GobiOMADMAlertCallback>()(d.Long(0), d.Word(1)); }
static void CallPhonebookReady(Delivery& d)
{
    BYTE session_type = 0;
    WORD phonebook_type = 0;
    d.As<GobiAllPhonebookInitDoneCallback>()(1, &session_type, &phonebook_type);
}

constexpr EventRow kEvents[] = {
    // clang-format off
    {"power",           "d",         "MODE",                          EntryPoint::SetPowerCallback,                CallLong<GobiPowerCallback>},
    {"session",         "dd",        "STATE REASON",                  EntryPoint::SetSessionStateCallback,         CallLongs<GobiSessionStateCallback>},
    {"bytes",           "qq",        "[SENT RECEIVED]",               EntryPoint::SetByteTotalsCallback,           CallBytes},
    {"roaming",         "d",         "INDICATOR",                     EntryPoint::SetRoamingIndicatorCallback,     CallLong<GobiRoamingIndicatorCallback>},
    {"signal",          "sd",        "DBM INTERFACE",                 EntryPoint::SetSignalStrengthCallback,       CallSignal},
    {"caps",            "l",         "CAPABILITY... | null",          EntryPoint::SetDataCapabilitiesCallback,     CallCapabilities},
    {"rf",              "ddd",       "INTERFACE BAND CHANNEL",        EntryPoint::SetRFInfoCallback,               CallRfInfo},
    {"activation",      "d",         "STATE",                         EntryPoint::SetActivationStatusCallback,     CallLong<GobiActivationStatusCallback>},
    {"dormancy",        "d",         "STATUS",                        EntryPoint::SetDormancyStatusCallback,       CallLong<GobiDormancyStatusCallback>},
    {"removal",         "d",         "STATUS",                        EntryPoint::OrvSetDeviceRemovalCallback,     CallLong<GobiDeviceRemovalCallback>},
    {"bearer",          "d",         "BEARER",                        EntryPoint::SetDataBearerCallback,           CallLong<GobiDataBearerCallback>},
    {"mobileip",        "d",         "STATUS",                        EntryPoint::SetMobileIPStatusCallback,       CallLong<GobiMobileIPStatusCallback>},
    {"nitz",            "wbbbbbbbb", "Y MON D H MIN S WEEKDAY ZONE DST", EntryPoint::SetNetworkTimeCallback,       CallNetworkTime},
    {"emergency-mode",  "m",         "MODE | null",                   EntryPoint::SetSystemSelectionPrefCallback,  CallEmergencyMode},
    {"sms",             "dd",        "STORAGE INDEX",                 EntryPoint::SetNewSMSCallback,               CallLongs<GobiNewSMSCallback>},
    {"broadcast",       "bdbx",      "FORMAT MODE TYPE HEXDATA | null", EntryPoint::SetNewSMSCBCallback,           CallBroadcast},
    {"voicemail",       "t",         "TYPE:ACTIVE:WAITING... | null COUNT", EntryPoint::SetMsgWaitingCallback,     CallVoiceMail},
    {"omadm-state",     "dd",        "STATE REASON",                  EntryPoint::SetOMADMStateCallback,           CallLongs<GobiOMADMStateCallback>},
    {"omadm-alert",     "dw",        "TYPE ID",                       EntryPoint::SetOMADMAlertCallback,           CallAlert},
    {"phonebook-ready", "",          "",                              EntryPoint::SetAllPhonebookInitDoneCallback, CallPhonebookReady},
    {"call",            "",          "ID:STATE:TYPE[:NUMBER[:DETAIL]]... | null", EntryPoint::SetCallInfoCallback, CallCalls,         TakeCalls},
    {"inforec",         "",          "ID NUMBER|null [SIGNALTYPE PITCH SIGNAL]", EntryPoint::SetInfoRecCallback, CallInformation,    TakeInformation},
    {"ussd",            "",          "TYPE CODING TEXT | TYPE CODING hex OCTETS | null", EntryPoint::SetUSSDNotificationCallback, CallUssd, TakeUssd},
    {"phonebook",       "",          "TYPE ID:NUMBERTYPE:NUMBER:NAME... | TYPE stored FIRST LAST | TYPE null COUNT", EntryPoint::SetPhonebookRecordReadCallback, CallPhonebook, TakePhonebook},
    {"emergency",       "",          "[A:B:C:D:E:]NUMBER... | null COUNT", EntryPoint::SetEmergencyListCallback, CallEmergencyList,   TakeEmergencyList},
    {"oma-fumo",        "",          "EVENT [HEXDATA] | null",        EntryPoint::SetORVOMAEXEventCallback,        CallFirmwareUpdate, TakeFirmwareUpdate},
    {"oma-event",       "",          "EVENT STATUS [HEXDATA] | null", EntryPoint::SetORVOMAEXEventCallback,        CallManagement,     TakeManagement},
    // clang-format on
};

static const EventRow* FindEvent(Command& command)
{
    const char* name = command.Word("event");
    if (command.Failed()) return nullptr;
    for (const EventRow& row : kEvents) {
        if (Equal(row.name, name)) return &row;
    }
    command.Fail().Add("unknown event ").Quoted(name, 64);
    return nullptr;
}

static void TakeOctetList(Command& command, Delivery& delivery)
{
    delivery.has_octets = !command.Take("null");
    while (command.More()) {
        if (!delivery.has_octets || delivery.octet_count == 255) {
            command.Fail().Add("at most 255 octets, or null");
            return;
        }
        delivery.octets[delivery.octet_count++] = static_cast<BYTE>(command.Unsigned("octet", 255));
    }
}

// "T:A:N" each, into three arrays one after the other.
static void TakeTriples(Command& command, Delivery& delivery)
{
    delivery.has_octets = !command.Take("null");
    if (!delivery.has_octets) {
        delivery.octet_count = static_cast<ULONG>(command.Unsigned("count", 255));
        return;
    }
    constexpr ULONG kMaxTriples = 32;
    BYTE triples[kMaxTriples][3] = {};
    ULONG count = 0;
    while (command.More()) {
        const char* word = command.Word("triple");
        bool well_formed = count < kMaxTriples;
        for (ULONG column = 0; column < 3 && well_formed; ++column) {
            char part[8];
            ULONG length = 0;
            while (*word && *word != ':' && length + 1 < sizeof(part))
                part[length++] = *word++;
            part[length] = 0;
            bool negative = false;
            ULONGLONG value = 0;
            well_formed = ParseNumber(part, &negative, &value) && !negative && value <= 255;
            well_formed = well_formed && (column < 2 ? *word++ == ':' : *word == 0);
            if (well_formed) triples[count][column] = static_cast<BYTE>(value);
        }
        if (!well_formed) {
            command.Fail().Add("at most ").Unsigned(kMaxTriples).Add(" triples of octets such as 0:1:3");
            return;
        }
        ++count;
    }
    delivery.octet_count = count;
    for (ULONG i = 0; i < count; ++i) {
        for (ULONG column = 0; column < 3; ++column)
            delivery.octets[column * count + i] = triples[i][column];
    }
}

static void TakeOptionalOctet(Command& command, Delivery& delivery)
{
    delivery.has_octets = !command.Take("null");
    if (!delivery.has_octets) return;
    delivery.octets[0] = static_cast<BYTE>(command.Unsigned("octet", 255));
    delivery.octet_count = 1;
}

static void TakeArguments(Command& command, const EventRow& row, Delivery& delivery)
{
    if (row.take) return row.take(command, delivery);
    ULONG count = 0;
    for (const char* letter = row.arguments; *letter; ++letter) {
        switch (*letter) {
        case 'q':
            delivery.numbers[count++] = command.Unsigned(row.usage, ~ULONGLONG{0});
            break;
        case 'd':
            delivery.numbers[count++] = command.Unsigned(row.usage, 0xFFFFFFFF);
            break;
        case 'w':
            delivery.numbers[count++] = command.Unsigned(row.usage, 0xFFFF);
            break;
        case 'b':
            delivery.numbers[count++] = command.Unsigned(row.usage, 0xFF);
            break;
        case 's':
            delivery.numbers[count++] = static_cast<ULONGLONG>(command.Signed(row.usage, -128, 127));
            break;
        case 'x':
            delivery.has_octets = !command.Take("null");
            if (delivery.has_octets) delivery.octet_count = command.HexOctets(row.usage, delivery.octets, kMaxOctets);
            break;
        case 'l':
            TakeOctetList(command, delivery);
            break;
        case 't':
            TakeTriples(command, delivery);
            break;
        case 'm':
            TakeOptionalOctet(command, delivery);
            break;
        default:
            break;
        }
    }
    command.End();
}

// --- delivering
// -------------------------------------------------------------------------------------------------------

// Those that have a thread of their own. A fixed number, so that an event costs no memory that a test might withhold.
struct ThreadedDelivery {
    bool used;
    Delivery delivery;
};
static ThreadedDelivery g_threaded[32];
static bool g_on_threads;
static ULONG g_in_flight;

void DeliverOnThreads(bool on) { g_on_threads = on; }

static void CountInFlight(int change)
{
    Guard guard;
    g_in_flight = static_cast<ULONG>(static_cast<int>(g_in_flight) + change);
}

static void RunThreaded(void* argument)
{
    ThreadedDelivery* threaded = static_cast<ThreadedDelivery*>(argument);
    threaded->delivery.call(threaded->delivery);
    Guard guard;
    threaded->used = false;
    --g_in_flight;
}

static bool StartThreaded(const Delivery& delivery)
{
    Guard guard;
    for (ThreadedDelivery& threaded : g_threaded) {
        if (threaded.used) continue;
        threaded.delivery = delivery;
        threaded.used = HostStartThread(RunThreaded, &threaded);
        if (threaded.used) ++g_in_flight;
        return threaded.used;
    }
    return false;
}

void EmitVerb(Command& command)
{
    Delivery delivery = {};
    bool on_thread = false;
    {
        Guard guard;
        const EventRow* row = FindEvent(command);
        if (!row) return;
        if (row->call == CallBytes && !command.More()) {
            delivery.numbers[0] = TheModule().session.sent;
            delivery.numbers[1] = TheModule().session.received;
        } else {
            TakeArguments(command, *row, delivery);
        }
        if (command.Failed()) return;
        delivery.call = row->call;
        delivery.callback = TheModule().callbacks[static_cast<ULONG>(row->source)];
        on_thread = g_on_threads;
    }
    if (!delivery.callback) {
        command.Reply().Add("not registered");
    } else if (on_thread) {
        if (StartThreaded(delivery))
            command.Reply().Add("started");
        else
            command.Fail().Add("too many events are under way");
    } else {
        CountInFlight(1);
        delivery.call(delivery);
        CountInFlight(-1);
        command.Reply().Add("delivered");
    }
}

void SettleVerb(Command& command)
{
    const ULONG timeout_ms = static_cast<ULONG>(command.Unsigned("milliseconds", 0xFFFFFFFF));
    command.End();
    if (command.Failed()) return;
    const ULONGLONG start_ms = HostMilliseconds();
    for (;;) {
        {
            Guard guard;
            if (g_in_flight == 0) return;
        }
        if (HostMilliseconds() - start_ms >= timeout_ms) {
            command.Fail().Add("events are still under way");
            return;
        }
        HostSleep(1);
    }
}

void ThreadsVerb(Command& command)
{
    const bool on = command.Switch("threads");
    command.End();
    if (!command.Failed()) g_on_threads = on;
}

void EventsVerb(Command& command)
{
    command.End();
    if (command.Failed()) return;
    for (const EventRow& row : kEvents) {
        if (command.Reply().Length() > 0) command.Reply().Character('\n');
        command.Reply().Add(row.name);
        if (*row.usage) command.Reply().Character(' ').Add(row.usage);
    }
}

void RegisteredVerb(Command& command)
{
    command.End();
    if (command.Failed()) return;
    for (ULONG i = 0; i < kEntryPoints; ++i) {
        if (!TheModule().callbacks[i]) continue;
        if (command.Reply().Length() > 0) command.Reply().Character('\n');
        command.Reply().Add(NameOf(static_cast<EntryPoint>(i)));
    }
}

} // namespace sim
