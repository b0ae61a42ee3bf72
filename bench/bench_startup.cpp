// What loading and binding the vendor library costs, against the same library opened and its 221 names looked up by
// hand. Both are measured with the library already in the process and not.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <time.h>

#include "bench/goals.h"
#include "bench/module.h"
#include "talvek/gobi_dll.h"

namespace {

constexpr const char* kLibrary = BENCH_VENDOR_DIRECTORY "/libGobiApi.so";

constexpr const char* kNames[] = {
#define ENTRY_POINT(name) #name,
#define REGISTRATION(name, type) #name,
#include "sim/entry_point_rows.h"
#undef REGISTRATION
#undef ENTRY_POINT
    "OrvM2MAV_AudioSetAVTXG", // the binding looks this one up twice
};
static_assert(sizeof kNames / sizeof *kNames == 221);

// Holds the library in the process for as long as a benchmark wants it there.
class Resident {
public:
    explicit Resident(bool wanted) : m_library(wanted ? dlopen(kLibrary, RTLD_NOW) : nullptr) {}
    ~Resident()
    {
        if (m_library) dlclose(m_library);
    }

private:
    void* m_library;
};

bool IsInProcess()
{
    void* library = dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD);
    if (library) dlclose(library);
    return library != nullptr;
}

// Processor time of this thread, in seconds.
double Now()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Times `load` alone; `unload` runs off the clock.
template <class Load, class Unload>
void Measure(benchmark::State& state, bool resident, Load load, Unload unload)
{
    const Resident held(resident);
    for (auto _ : state) {
        if (IsInProcess() != resident) {
            state.SkipWithError("the library is not where it should be");
            return;
        }
        const double start = Now();
        const bool loaded = load();
        const double end = Now();
        if (!loaded) {
            state.SkipWithError("the library could not be loaded");
            return;
        }
        state.SetIterationTime(end - start);
        unload();
    }
}

void ByHand(benchmark::State& state, bool resident)
{
    static void* addresses[221];
    void* library = nullptr;
    Measure(
        state, resident,
        [&] {
            library = dlopen(kLibrary, RTLD_NOW);
            if (!library) return false;
            for (size_t i = 0; i < 221; ++i)
                addresses[i] = dlsym(library, kNames[i]);
            benchmark::DoNotOptimize(addresses);
            return true;
        },
        [&] { dlclose(library); });
}

void ByInitialize(benchmark::State& state, bool resident)
{
    alignas(COrvGobiDll) static BYTE storage[sizeof(COrvGobiDll)];
    COrvGobiDll* gobi = nullptr;
    Measure(
        state, resident,
        [&] {
            gobi = new (storage) COrvGobiDll;
            return gobi->Initialize();
        },
        [&] { gobi->~COrvGobiDll(); });
}

void ByHandResident(benchmark::State& state) { ByHand(state, true); }
void InitializeResident(benchmark::State& state) { ByInitialize(state, true); }
void ByHandAbsent(benchmark::State& state) { ByHand(state, false); }
void InitializeAbsent(benchmark::State& state) { ByInitialize(state, false); }
BENCHMARK(ByHandResident)->UseManualTime();
BENCHMARK(InitializeResident)->UseManualTime();
BENCHMARK(ByHandAbsent)->UseManualTime();
BENCHMARK(InitializeAbsent)->UseManualTime();

constexpr Goal kGoals[] = {
    {"start-up, the library in the process", "InitializeResident", "ByHandResident", Goal::Ratio, 1.5},
    {"start-up, the library not in the process", "InitializeAbsent", "ByHandAbsent", Goal::Ratio, 1.5},
};

} // namespace

int main(int argc, char** argv)
{
    RefuseLog();
    UseBenchModule();
    return RunWithGoals(argc, argv, kGoals, 2);
}
