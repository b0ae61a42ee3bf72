// What a guarded getter costs on top of its vendor call, the log being off.
#include <benchmark/benchmark.h>

#include "bench/goals.h"
#include "bench/module.h"

namespace {

void VendorGetPower(benchmark::State& state)
{
    using Function = ULONG(ORV_VENDOR_CALL*)(ULONG*);
    Function function = reinterpret_cast<Function>(VendorFunction("GetPower"));
    benchmark::DoNotOptimize(function);
    ULONG mode = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(function(&mode));
}
BENCHMARK(VendorGetPower);

void GetRadioPower(benchmark::State& state)
{
    OrvRadioPower power = {};
    for (auto _ : state)
        benchmark::DoNotOptimize(OrvGetRadioPower(&power));
    if (power.bRadioOn != 1) state.SkipWithError("the radio does not read as on");
}
BENCHMARK(GetRadioPower);

constexpr Goal kGoals[] = {
    {"OrvGetRadioPower against GetPower", "GetRadioPower", "VendorGetPower", Goal::DifferenceNs, 15}};

} // namespace

int main(int argc, char** argv)
{
    RefuseLog();
    UseBenchModule();
    if (!StartModule(0)) return 2;
    return RunWithGoals(argc, argv, kGoals, 1);
}
