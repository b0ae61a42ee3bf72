// Two actions in turn, each timed by the clock on the wall: for what waits for another thread, where processor time
// says nothing. Being neighbours, both meet the same load of the machine.
#pragma once

#include <stddef.h>

// Does it once. False if it failed, which ends the program.
using PairedAction = bool (*)();

// Runs both `pairs` times in each of nine rounds, and holds the ratio of their medians (the median of the rounds)
// against `limit`. Prints one line, "met" or "MISSED". Returns whether the goal is met.
bool JudgePair(const char* what, PairedAction measured, PairedAction baseline, size_t pairs, double limit);
