// Runs the benchmarks of a program and holds them against goals that compare two of them.
#pragma once

#include <stddef.h>

struct Goal {
    const char* what;
    const char* measured; // name of a benchmark
    const char* baseline; // name of the one that it is compared with
    enum { DifferenceNs, Ratio } kind;
    double limit; // the most that is allowed
};

// Prints Google Benchmark's table and then one line a goal, "met" or "MISSED", from the medians. Returns 0 if all are
// met.
int RunWithGoals(int argc, char** argv, const Goal* goals, size_t count);

// Points the library at the vendor library of the measurements. Ends the program if the log is on, which would be
// measured.
void UseBenchModule();

// A function of the vendor library that is loaded in this process. Ends the program if it is not there.
void* VendorFunction(const char* name);
