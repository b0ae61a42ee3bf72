#include "bench/pairs.h"

#include <algorithm>
#include <chrono>
#include <stdio.h>
#include <stdlib.h>
#include <vector>

namespace {

constexpr size_t kRounds = 9;

double TimeNs(PairedAction action)
{
    const auto start = std::chrono::steady_clock::now();
    const bool done = action();
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    if (!done) {
        fprintf(stderr, "a measured action failed\n");
        exit(2);
    }
    return elapsed.count();
}

double Median(std::vector<double>& values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

bool JudgePair(const char* what, PairedAction measured, PairedAction baseline, size_t pairs, double limit)
{
    std::vector<double> measured_medians, baseline_medians, ratios, measured_ns(pairs), baseline_ns(pairs);
    for (size_t round = 0; round <= kRounds; ++round) {
        for (size_t i = 0; i < pairs; ++i) {
            // Each goes first half of the time: neither is always the one that finds the other's traces.
            const bool measured_first = i % 2 == 0;
            if (measured_first) measured_ns[i] = TimeNs(measured);
            baseline_ns[i] = TimeNs(baseline);
            if (!measured_first) measured_ns[i] = TimeNs(measured);
        }
        if (round == 0) continue; // to get warm
        measured_medians.push_back(Median(measured_ns));
        baseline_medians.push_back(Median(baseline_ns));
        ratios.push_back(measured_medians.back() / baseline_medians.back());
    }
    const double ratio = Median(ratios);
    const bool met = ratio <= limit;
    printf("%-46s %10.0f ns against %10.0f ns: %.3f times (%.3f to %.3f); goal %g times: %s\n", what,
           Median(measured_medians), Median(baseline_medians), ratio, *std::min_element(ratios.begin(), ratios.end()),
           *std::max_element(ratios.begin(), ratios.end()), limit, met ? "met" : "MISSED");
    return met;
}
