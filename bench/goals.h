// Runs the benchmarks of a program and holds them against goals: of one, or of one against another.
#pragma once

#include <stddef.h>

struct Goal {
    const char* what;
    const char* measured; // name of a benchmark
    const char* baseline; // name of the one that it is compared with; null for Ns
    enum { Ns, DifferenceNs, Ratio } kind;
    double limit; // the most that is allowed
};

// Prints Google Benchmark's table and then one line a goal, "met" or "MISSED", from the medians. Returns 0 if all are
// met.
int RunWithGoals(int argc, char** argv, const Goal* goals, size_t count);
