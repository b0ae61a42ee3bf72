#include "bench/goals.h"

#include <benchmark/benchmark.h>
#include <map>
#include <stdio.h>
#include <string>
#include <vector>

namespace {

// Keeps each benchmark's median. Processor time, because other programs share the machine; a benchmark that times
// itself reports what it has measured.
class Collector : public benchmark::ConsoleReporter {
public:
    Collector() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.aggregate_name != "median" || run.error_occurred) continue;
            const bool timed_by_itself = run.run_name.time_type == "manual_time";
            m_medians_ns[run.run_name.function_name] =
                timed_by_itself ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // Negative when it did not run.
    double Median(const char* name) const
    {
        const auto found = m_medians_ns.find(name);
        return found == m_medians_ns.end() ? -1 : found->second;
    }

private:
    std::map<std::string, double> m_medians_ns; // the benchmarks leave the unit at nanoseconds
};

bool Judge(const Goal& goal, const Collector& results)
{
    const double measured = results.Median(goal.measured);
    const double baseline = goal.kind == Goal::Ns ? 0 : results.Median(goal.baseline);
    if (measured < 0 || (baseline <= 0 && goal.kind != Goal::Ns)) {
        printf("%-46s not measured\n", goal.what);
        return false;
    }
    if (goal.kind == Goal::Ns) {
        const bool met = measured <= goal.limit;
        printf("%-46s %10.2f ns; goal %g ns: %s\n", goal.what, measured, goal.limit, met ? "met" : "MISSED");
        return met;
    }
    const double difference = measured - baseline, ratio = measured / baseline;
    const bool met = (goal.kind == Goal::Ratio ? ratio : difference) <= goal.limit;
    printf("%-46s %10.2f ns against %10.2f ns: %+8.2f ns, %5.2f times; goal %s%g%s: %s\n", goal.what, measured,
           baseline, difference, ratio, goal.kind == Goal::Ratio ? "" : "+", goal.limit,
           goal.kind == Goal::Ratio ? " times" : " ns", met ? "met" : "MISSED");
    return met;
}

} // namespace

int RunWithGoals(int argc, char** argv, const Goal* goals, size_t count)
{
    std::vector<char*> arguments(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=9", interleave = "--benchmark_enable_random_interleaving=true",
                quiet = "--benchmark_display_aggregates_only=true", minimum = "--benchmark_min_time=0.1";
    for (std::string* option : {&repetitions, &interleave, &quiet, &minimum})
        arguments.insert(arguments.begin() + 1, option->data());
    int number = static_cast<int>(arguments.size());
    benchmark::Initialize(&number, arguments.data());

    Collector results;
    benchmark::RunSpecifiedBenchmarks(&results);
    printf("\n");
    bool all_met = true;
    for (size_t i = 0; i < count; ++i)
        all_met &= Judge(goals[i], results);
    return all_met ? 0 : 1;
}
