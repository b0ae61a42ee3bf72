// Counts heap allocations during every getter of the interface and during the delivery of every event, on a CDMA module
// and on a GSM/UMTS one. There must be none.
//
// Each call is made once before it is counted: a first call may set up what the system keeps for good, such as the
// stack of a delivery thread.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdio.h>
#include <string.h>
#include <string>
#include <type_traits>
#include <utility>

#include "bench/at_responder.h"
#include "bench/heap_count.h"
#include "bench/module.h"
#include "platform/hooks.h"

namespace {

// --- getters ---------------------------------------------------------------------------------------------------------

// Every pointer argument gets a cleared block of its own, larger than any record; every number is 32, which serves as a
// size.
constexpr size_t kBlockSize = 1 << 16;
constexpr int kNumber = 32;
alignas(16) BYTE s_blocks[16][kBlockSize];

template <class Argument>
Argument Blank(size_t position)
{
    if constexpr (std::is_same_v<Argument, const WCHAR*>) {
        return TXT("eri_nam1"); // the one name that a getter takes
    } else if constexpr (std::is_pointer_v<Argument>) {
        return reinterpret_cast<Argument>(memset(s_blocks[position], 0, kBlockSize));
    } else if constexpr (std::is_same_v<Argument, OrvAirServer>) {
        return OrvAirServer{sizeof(OrvAirServer), {}, ORV_DEVICE_5120};
    } else {
        return static_cast<Argument>(kNumber);
    }
}

template <class... Arguments, size_t... Positions>
ORV_RCODE CallWithBlanks(ORV_RCODE (*function)(Arguments...), std::index_sequence<Positions...>)
{
    return function(Blank<Arguments>(Positions)...);
}

template <class... Arguments>
ORV_RCODE CallWithBlanks(ORV_RCODE (*function)(Arguments...))
{
    return CallWithBlanks(function, std::index_sequence_for<Arguments...>());
}

// The same, with a first argument that has to be one of a few.
template <class... Rest, size_t... Positions>
ORV_RCODE CallOf(ORV_RCODE (*function)(ULONG, Rest...), ULONG first, std::index_sequence<Positions...>)
{
    return function(first, Blank<Rest>(Positions + 1)...);
}

template <class... Rest>
ORV_RCODE CallOf(ORV_RCODE (*function)(ULONG, Rest...), ULONG first)
{
    return CallOf(function, first, std::index_sequence_for<Rest...>());
}

struct Getter {
    const char* name;
    ORV_RCODE (*call)();
    const char* may_allocate; // why, or null
    bool is_served = true;    // by one kind of module at least
    bool has_worked = false;
};

Getter s_getters[] = {
#define GETTER(name) {#name, [] { return CallWithBlanks(&name); }, nullptr},
#define GETTER_OF(name, first) {#name, [] { return CallOf(&name, first); }, nullptr},
#define READS_REGISTRY(name) {#name, [] { return CallWithBlanks(&name); }, "reads the registry file"},
#define ALLOCATES(name) {#name, [] { return CallWithBlanks(&name); }, "has a buffer on the heap"},
#define NOT_SERVED(name) {#name, [] { return CallWithBlanks(&name); }, nullptr, false},
#include "bench/getter_rows.h"
#undef NOT_SERVED
#undef ALLOCATES
#undef READS_REGISTRY
#undef GETTER_OF
#undef GETTER
};

// --- events ----------------------------------------------------------------------------------------------------------

unsigned s_delivered;

void ORV_CALL Client(OrvNotifyRecord*) { __atomic_fetch_add(&s_delivered, 1, __ATOMIC_RELAXED); }

constexpr ORV_NOTIFY kEnabled[] = {
    ORV_NOTIFY_DeviceRemoved,     ORV_NOTIFY_PowerState,       ORV_NOTIFY_SignalStrength,
    ORV_NOTIFY_ModemReset,        ORV_NOTIFY_RFInfo,           ORV_NOTIFY_NewSMS,
    ORV_NOTIFY_CdmaService,       ORV_NOTIFY_CdmaRoaming,      ORV_NOTIFY_ByteTotals,
    ORV_NOTIFY_CallOriginating,   ORV_NOTIFY_CallConnected,    ORV_NOTIFY_CallDisconnected,
    ORV_NOTIFY_DormancyStatus,    ORV_NOTIFY_ActivationStatus, ORV_NOTIFY_CallNotificationStatus,
    ORV_NOTIFY_HdrSignalStrength, ORV_NOTIFY_HdrService,       ORV_NOTIFY_CdmaSignalQuality,
    ORV_NOTIFY_GsmPacketState,    ORV_NOTIFY_RadioOff,         ORV_NOTIFY_PktSessionCall,
    ORV_NOTIFY_GsmSystemStatus,   ORV_NOTIFY_OMADMState,       ORV_NOTIFY_OMADMAlert,
};

// The vendor's records, as it hands them over.
BYTE s_two_capabilities[] = {1, 7};
BYTE s_message[] = {'c', 'e', 'l', 'l'};
BYTE s_voice_types[] = {0}, s_voice_active[] = {1}, s_voice_waiting[] = {3};
arrCallInfo s_calls = {2, {{1, GOBI_CALL_INCOMING, 0, 2, 3, 0, 0}, {2, GOBI_CALL_ENDED, 0, 1, 3, 0, 0}}};
arrRemotePartyNum s_numbers = {1, {{1, 0, 3, {'1', '1', '2'}}}};
arrSvcOption s_options = {1, {{1, 3}}};
arrCallEndReason s_end_reasons = {2, {{1, 0, 0}, {2, 16, 0}}};
callerIDInfo s_caller = {0, 0, 0, 0, 3, {'1', '1', '2'}};
BYTE s_call_id[] = {1};
BYTE s_ussd_kind[] = {GOBI_USSD_NO_ACTION};
USSInfo s_ussd = {15, 3, {'a', 'b', 'c'}};
arrPBInfo s_phonebook[] = {{1, 1, 0, 3, 2, {'1', '1', '2'}, {'M', 'e'}}, {2, 0, 0, 1, 0, {'5'}, {}}};
emergencyNumberEntry s_emergency[] = {{{0, 0, 0, 0, 0, 3}, {'1', '1', '2'}}, {{1, 0, 0, 0, 0, 3}, {'9', '1', '1'}}};
FUMOInfo s_firmware_update = {1, {'f'}};
OMAInfo s_oma = {1, 2, {'o'}};
BYTE s_sessions[] = {0};
WORD s_phonebooks[] = {1};

// On which modules an event leads to a record, as all identifiers are enabled that can be.
enum class Told { Always, OnCdma, Never };

struct Event {
    const char* name;
    Told told;
    void* (*registered)(const BenchGobi& gobi); // whether the library listens
    void (*raise)(const BenchGobi& gobi);
};

constexpr Event kEvents[] = {
// clang-format off
#define EVENT(callback, told, ...)                                                                                     \
    {#callback, Told::told, [](const BenchGobi& g) { return reinterpret_cast<void*>(g.callback); },                    \
     [](const BenchGobi& g) { g.callback(__VA_ARGS__); }},
    EVENT(session_state, Always, 2, 0)
    EVENT(dormancy_status, Never, 1)
    EVENT(activation_status, Always, 3)
    EVENT(power, Always, 0)
    EVENT(roaming_indicator, OnCdma, 1)
    EVENT(signal_strength, Always, -71, 1)
    EVENT(rf_info, Never, 1, 2, 3)
    EVENT(new_sms, Always, 1, 0)
    EVENT(cell_broadcast, Always, 0, 0, 1, sizeof s_message, s_message)
    EVENT(message_waiting, Always, 1, s_voice_types, s_voice_active, s_voice_waiting)
    EVENT(data_capabilities, Always, 2, s_two_capabilities)
    EVENT(byte_totals, Always, 1000, 2000)
    EVENT(oma_dm_state, Always, 1, 0)
    EVENT(oma_dm_alert, Always, 0, 7)
    EVENT(call_info, Always, &s_calls, &s_numbers, nullptr, nullptr, &s_options, &s_end_reasons, nullptr, nullptr,
          nullptr, nullptr)
    EVENT(info_record, Always, s_call_id, nullptr, &s_caller, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
          nullptr, nullptr)
    EVENT(ussd, Always, s_ussd_kind, &s_ussd)
    EVENT(phonebook_records, Always, 0, std::size(s_phonebook), s_phonebook)
    EVENT(phonebooks_ready, Always, 1, s_sessions, s_phonebooks)
    EVENT(emergency_list, Always, std::size(s_emergency), s_emergency)
    EVENT(network_time, Always, 2024, 2, 29, 12, 30, 45, 4, 0, 0)
    EVENT(system_selection, Always, s_sessions)
    EVENT(oma_ex_event, Always, &s_firmware_update, &s_oma)
    EVENT(device_removal, Always, 0)
#undef EVENT
    // clang-format on
};

// --- counting --------------------------------------------------------------------------------------------------------

bool s_failed;

void Fail(const char* what, const char* why)
{
    printf("  %-40s %s\n", what, why);
    s_failed = true;
}

constexpr int kRounds = 5;

template <class Action>
unsigned long Count(Action action)
{
    unsigned long fewest = ~0ul;
    for (int round = 0; round < kRounds; ++round) {
        const unsigned long before = HeapAllocations();
        action();
        if (!platform_hooks::DrainThreads(5000)) Fail("threads", "do not end");
        fewest = std::min(fewest, HeapAllocations() - before);
    }
    return fewest;
}

void CountGetters()
{
    for (Getter& getter : s_getters) {
        ORV_RCODE result = ORV_RCODE_OK;
        const unsigned long allocations = Count([&] { result = getter.call(); });
        printf("  %-40s %3lu   (%s%s%s)\n", getter.name, allocations, OrvRcodeName(result),
               getter.may_allocate ? "; may, for it " : "", getter.may_allocate ? getter.may_allocate : "");
        if (allocations != 0 && !getter.may_allocate) s_failed = true;
        getter.has_worked |= result == ORV_RCODE_OK;
        // What serves the other kind of module says so with one of these.
        if (result != ORV_RCODE_OK && result != ORV_RCODE_UNSUPPORTED && result != ORV_RCODE_NOT_AVAILABLE)
            Fail(getter.name, "does not work");
    }
}

void CountEvents(const BenchGobi& gobi, bool is_cdma)
{
    for (const Event& event : kEvents) {
        if (!event.registered(gobi)) {
            Fail(event.name, "is not listened to");
            continue;
        }
        s_delivered = 0;
        const unsigned long allocations = Count([&] { event.raise(gobi); });
        printf("  %-40s %3lu   (%u records of %d events)\n", event.name, allocations, s_delivered, kRounds);
        if (allocations != 0) s_failed = true;
        const bool wanted = event.told == Told::Always || (event.told == Told::OnCdma && is_cdma);
        if (wanted != (s_delivered != 0)) Fail(event.name, wanted ? "leads to no record" : "leads to records");
    }
}

void CheckThatEachGetterHasWorked()
{
    for (const Getter& getter : s_getters)
        if (getter.has_worked != getter.is_served) Fail(getter.name, "worked on neither module, or should not have");
}

// Every exported function that gets something has a row.
void CheckThatNoGetterIsMissing()
{
    std::ifstream exports(BENCH_EXPORTS);
    std::string name;
    unsigned wanted = 0;
    while (std::getline(exports, name)) {
        if (name.compare(0, 3, "Orv") != 0 || name.find("Get") == std::string::npos) continue;
        ++wanted;
        bool found = false;
        for (const Getter& getter : s_getters)
            found |= name == getter.name;
        if (!found) Fail(name.c_str(), "has no row");
    }
    if (wanted == 0) Fail(BENCH_EXPORTS, "lists no getter");
}

// No reply comes within the very tick of its command, which the timed commands would take for a late one.
DWORD TicksByCall()
{
    static DWORD ticks;
    return ++ticks;
}

void CountOn(const char* module, bool is_cdma)
{
    printf("%s\n", module);
    const BenchGobi* const gobi = StartModule(is_cdma ? 0 : 1);
    if (!gobi) return Fail("start", "failed");
    OrvRegisterCallback(Client, 0);
    for (const ORV_NOTIFY id : kEnabled)
        OrvNotify(id, 0);
    OrvStartPLMNSearch(); // networks to be read
    if (!platform_hooks::DrainThreads(5000)) Fail("scan", "does not end");
    CountGetters();
    CountEvents(*gobi, is_cdma);
    if (OrvApiShutdown() != ORV_RCODE_OK) Fail("stop", "failed");
}

} // namespace

int main()
{
    UseBenchModule();
    platform_hooks::ReplaceCall("GetTickCount", reinterpret_cast<FARPROC>(&TicksByCall));
    AtResponder modem;
    ModuleRegistry registry;
    if (!modem.Start() || !registry.Write(ORV_DEVICE_5120, modem.PortName())) {
        perror("bench_allocations");
        return 2;
    }
    CountOn("Heap allocations on a CDMA module", true);
    CountOn("Heap allocations on a GSM/UMTS module", false);
    CheckThatEachGetterHasWorked();
    CheckThatNoGetterIsMissing();
    printf("Heap allocations in getters and events: %s\n", s_failed ? "SOME, or not all measured" : "none");
    return s_failed ? 1 : 0;
}
