// What a method of COrvGobiDll costs on top of the vendor function that it calls.
#include <benchmark/benchmark.h>

#include "bench/goals.h"
#include "bench/module.h"
#include "talvek/gobi_dll.h"

namespace {

COrvGobiDll s_gobi;

void Direct(benchmark::State& state)
{
    using Function = ULONG(ORV_VENDOR_CALL*)(ULONG*);
    Function function = reinterpret_cast<Function>(VendorFunction("GetSessionState"));
    benchmark::DoNotOptimize(function);
    ULONG session = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(function(&session));
}
BENCHMARK(Direct);

void Forwarded(benchmark::State& state)
{
    ULONG session = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(s_gobi.GetSessionState(&session));
    if (session != 2) state.SkipWithError("the vendor function was not reached");
}
BENCHMARK(Forwarded);

constexpr Goal kGoals[] = {
    {"a forwarded method against its vendor call", "Forwarded", "Direct", Goal::DifferenceNs, 2}};

} // namespace

int main(int argc, char** argv)
{
    RefuseLog();
    UseBenchModule();
    if (!s_gobi.Initialize()) return 2;
    return RunWithGoals(argc, argv, kGoals, 1);
}
