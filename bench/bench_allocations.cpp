// Counts heap allocations during every getter of the interface and during the delivery of every event, on a CDMA module
// and on a GSM/UMTS one. There must be none.
//
// Each call is made once before it is counted: a first call may set up what the system keeps for good, such as the
// stack of a delivery thread.
#include <algorithm>
#include <dlfcn.h>
#include <fstream>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <type_traits>
#include <unistd.h>
#include <utility>

#include "bench/at_responder.h"
#include "bench/bench_gobi.h"
#include "bench/heap_count.h"
#include "platform/hooks.h"
#include "talvek/talvek.h"

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
    if constexpr (std::is_pointer_v<Argument>) {
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

struct Getter {
    const char* name;
    ORV_RCODE (*call)();
    bool reads_registry; // a file on this host, and reading it takes memory
};

constexpr Getter kGetters[] = {
#define GETTER(name) {#name, [] { return CallWithBlanks(&name); }, false},
#define READS_REGISTRY(name) {#name, [] { return CallWithBlanks(&name); }, true},
#include "bench/getter_rows.h"
#undef READS_REGISTRY
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

// The vendor's records, as octets. Arrays begin with their entry count.
BYTE s_two_capabilities[] = {1, 7};
BYTE s_message[] = {'c', 'e', 'l', 'l'};
BYTE s_voice_types[] = {0}, s_voice_active[] = {1}, s_voice_waiting[] = {3};
BYTE s_calls[64] = {1, 1, 2, 0};
BYTE s_numbers[1024] = {1, 1, 0, 3, '1', '1', '2'};
BYTE s_empty[8192];
BYTE s_ussd_kind[] = {1};
BYTE s_ussd[300] = {15, 3, 'a', 'b', 'c'};
BYTE s_phonebook[8192] = {1};
BYTE s_emergency[1024] = {0, 0, 0, 0, 0, 3, '1', '1', '2'};
BYTE s_sessions[] = {0};
WORD s_phonebooks[] = {1};

template <class Record>
Record* As(BYTE* octets)
{
    return reinterpret_cast<Record*>(octets);
}

struct Event {
    const char* name;
    void* (*registered)(const BenchGobi& gobi); // whether the library listens
    void (*raise)(const BenchGobi& gobi);
};

constexpr Event kEvents[] = {
#define EVENT(callback, ...)                                                                                           \
    {#callback, [](const BenchGobi& g) { return reinterpret_cast<void*>(g.callback); },                                \
     [](const BenchGobi& g) { g.callback(__VA_ARGS__); }},
    EVENT(session_state, 2, 0) EVENT(dormancy_status, 1) EVENT(activation_status, 3) EVENT(power, 0)
        EVENT(roaming_indicator, 1) EVENT(signal_strength, -71, 1) EVENT(rf_info, 1, 2, 3) EVENT(new_sms, 1, 0)
            EVENT(cell_broadcast, 0, 0, 1, sizeof s_message, s_message)
                EVENT(message_waiting, 1, s_voice_types, s_voice_active, s_voice_waiting)
                    EVENT(data_capabilities, 2, s_two_capabilities) EVENT(byte_totals, 1000, 2000)
                        EVENT(oma_dm_state, 1, 0) EVENT(oma_dm_alert, 0, 7)
                            EVENT(call_info, As<arrCallInfo>(s_calls), As<arrRemotePartyNum>(s_numbers), nullptr,
                                  nullptr, As<arrSvcOption>(s_empty), As<arrCallEndReason>(s_empty), nullptr, nullptr,
                                  nullptr, nullptr) EVENT(ussd, s_ussd_kind, As<USSInfo>(s_ussd))
                                EVENT(phonebook_records, 0, 1, As<arrPBInfo>(s_phonebook))
                                    EVENT(phonebooks_ready, 1, s_sessions, s_phonebooks)
                                        EVENT(emergency_list, 1, As<emergencyNumberEntry>(s_emergency))
                                            EVENT(network_time, 2024, 2, 29, 12, 30, 45, 4, 0, 0)
                                                EVENT(system_selection, s_sessions)
                                                    EVENT(oma_ex_event, As<FUMOInfo>(s_empty), As<OMAInfo>(s_empty))
#undef EVENT
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
    for (const Getter& getter : kGetters) {
        ORV_RCODE result = ORV_RCODE_OK;
        const unsigned long allocations = Count([&] { result = getter.call(); });
        printf("  %-40s %3lu   (%s%s)\n", getter.name, allocations, OrvRcodeName(result),
               getter.reads_registry ? "; reads the registry file, so that it may" : "");
        if (allocations != 0 && !getter.reads_registry) s_failed = true;
    }
}

void CountEvents(const BenchGobi& gobi)
{
    for (const Event& event : kEvents) {
        if (!event.registered(gobi)) {
            printf("  %-40s       (the library does not listen to it on this module)\n", event.name);
            continue;
        }
        s_delivered = 0;
        const unsigned long allocations = Count([&] { event.raise(gobi); });
        printf("  %-40s %3lu   (%u records of %d events)\n", event.name, allocations, s_delivered, kRounds);
        if (allocations != 0) s_failed = true;
    }
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
        for (const Getter& getter : kGetters)
            found |= name == getter.name;
        if (!found) Fail(name.c_str(), "has no row");
    }
    if (wanted == 0) Fail(BENCH_EXPORTS, "lists no getter");
}

void WriteRegistry(const char* file, ULONG product, const char* port)
{
    std::ofstream registry(file);
    char device[32];
    snprintf(device, sizeof device, "VID_3D5E&PID_%04X", product);
    registry << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Kestavo Inc]\n\"DeviceID\"=\""
             << device << "\"\n\n[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\RIL]\n\"ComPort\"=\"" << port << "\"\n";
}

BenchGobi* LoadedModule()
{
    void* const library = dlopen(BENCH_VENDOR_DIRECTORY "/libGobiApi.so", RTLD_NOW | RTLD_NOLOAD);
    void* const state = library ? dlsym(library, "BenchGobiState") : nullptr;
    return state ? reinterpret_cast<decltype(&BenchGobiState)>(state)() : nullptr;
}

ORV_RCODE Select()
{
    static OrvAirServerList modules;
    const ORV_RCODE result = OrvGetAvailAirServers(&modules);
    return result == ORV_RCODE_OK ? OrvSelectAirServer(&modules.airServers[0]) : result;
}

void CountOn(const char* module, ULONG firmware_technology)
{
    printf("%s\n", module);
    ORV_RCODE result = OrvApiStartup();
    BenchGobi* const gobi = LoadedModule();
    if (result == ORV_RCODE_OK && gobi) {
        gobi->firmware_technology = firmware_technology;
        result = Select();
    }
    if (result != ORV_RCODE_OK || !gobi) return Fail("start", gobi ? OrvRcodeName(result) : "no vendor library");
    OrvRegisterCallback(Client, 0);
    for (const ORV_NOTIFY id : kEnabled)
        OrvNotify(id, 0);
    CountGetters();
    CountEvents(*gobi);
    if (OrvApiShutdown() != ORV_RCODE_OK) Fail("stop", "failed");
}

} // namespace

int main()
{
    unsetenv("TALVEK_LOG");
    setenv("TALVEK_LIBRARY_PATH", BENCH_VENDOR_DIRECTORY, 1);
    char registry[] = "/tmp/talvek-bench-XXXXXX";
    const int file = mkstemp(registry);
    AtResponder modem;
    if (file < 0 || !modem.Start()) {
        perror("bench_allocations");
        return 2;
    }
    WriteRegistry(registry, ORV_DEVICE_5120, modem.PortName());
    setenv("TALVEK_REGISTRY", registry, 1);

    CountOn("Heap allocations on a CDMA module", 0);
    CountOn("Heap allocations on a GSM/UMTS module", 1);
    CheckThatNoGetterIsMissing();
    unlink(registry);
    printf("Heap allocations in getters and events: %s\n", s_failed ? "SOME, or not all measured" : "none");
    return s_failed ? 1 : 0;
}
