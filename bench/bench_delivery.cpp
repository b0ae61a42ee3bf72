// What it takes from an event of the vendor library to the client's callback, the log being off: directly, through the
// notification registry, and on a thread of its own.
#include <benchmark/benchmark.h>
#include <stdio.h>

#include "bench/goals.h"
#include "bench/heap_count.h"
#include "bench/module.h"
#include "bench/pairs.h"
#include "platform/hooks.h"

namespace {

BenchGobi* s_gobi;
ULONG s_records; // with the wanted identifier
ORV_NOTIFY s_wanted;

void ORV_CALL Client(OrvNotifyRecord* record)
{
    if (record->uNotify == s_wanted) __atomic_fetch_add(&s_records, 1, __ATOMIC_RELAXED);
}

void RaiseNewSms() { s_gobi->new_sms(1, 0); }
void RaiseConnected() { s_gobi->session_state(2, 0); }

void Expect(ORV_NOTIFY id)
{
    s_wanted = id;
    s_records = 0;
}

template <class Raise>
void MeasureDelivery(benchmark::State& state, ORV_NOTIFY id, Raise raise)
{
    Expect(id);
    ULONG raised = 0;
    for (auto _ : state) {
        raise();
        ++raised;
    }
    if (s_records != raised) state.SkipWithError("not one record an event");
}

void Direct(benchmark::State& state) { MeasureDelivery(state, ORV_NOTIFY_NewSMS, RaiseNewSms); }
void Dispatched(benchmark::State& state) { MeasureDelivery(state, ORV_NOTIFY_CallConnected, RaiseConnected); }
BENCHMARK(Direct);
BENCHMARK(Dispatched);

constexpr Goal kGoals[] = {
    {"new SMS, delivered directly", "Direct", nullptr, Goal::Ns, 200},
    {"call connected, through the registry", "Dispatched", nullptr, Goal::Ns, 500},
};

// --- on a thread
// ---------------------------------------------------------------------------------------------------------

constexpr unsigned kPatienceMs = 5000;

// Until the client has seen the record and the thread is gone.
bool DeliverOnThread()
{
    Expect(ORV_NOTIFY_PowerState);
    s_gobi->power(0);
    return platform_hooks::DrainThreads(kPatienceMs) && s_records == 1;
}

bool RunEmptyThread()
{
    const HANDLE thread = CreateThread(
        nullptr, 0, [](LPVOID) -> DWORD { return 0; }, nullptr, 0, nullptr);
    if (!thread) return false;
    const bool ended = WaitForSingleObject(thread, INFINITE) == WAIT_OBJECT_0;
    return CloseHandle(thread) && ended;
}

// --- the heap
// ------------------------------------------------------------------------------------------------------------

bool JudgeHeap(const char* what, ORV_NOTIFY id, void (*raise)())
{
    constexpr ULONG kEvents = 1000;
    Expect(id);
    raise(); // a first use may set up what is kept for good
    const unsigned long before = HeapAllocations();
    for (ULONG i = 0; i < kEvents; ++i)
        raise();
    const unsigned long allocations = HeapAllocations() - before;
    const bool met = allocations == 0 && s_records == kEvents + 1;
    printf("%-46s %lu heap allocations in %u records; goal 0: %s\n", what, allocations, s_records - 1,
           met ? "met" : "MISSED");
    return met;
}

} // namespace

int main(int argc, char** argv)
{
    RefuseLog();
    UseBenchModule();
    s_gobi = StartModule(0);
    if (!s_gobi) return 2;
    OrvRegisterCallback(Client, 0);
    for (const ORV_NOTIFY id : {ORV_NOTIFY_NewSMS, ORV_NOTIFY_CallConnected})
        OrvNotify(id, 0);
    if (!s_gobi->new_sms || !s_gobi->session_state || !s_gobi->power) {
        fprintf(stderr, "the library does not listen to its events\n");
        return 2;
    }
    const int missed = RunWithGoals(argc, argv, kGoals, 2);
    bool met = JudgePair("power, on a thread, against an empty thread", DeliverOnThread, RunEmptyThread, 1000, 1.5);
    met &= JudgeHeap("new SMS, delivered directly", ORV_NOTIFY_NewSMS, RaiseNewSms);
    met &= JudgeHeap("call connected, through the registry", ORV_NOTIFY_CallConnected, RaiseConnected);
    OrvApiShutdown();
    return met ? missed : 1;
}
