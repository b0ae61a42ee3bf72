// A vendor library that does nothing but note its calls: every entry point writes its name and its arguments down as
// they arrived, and answers what it is told to. A test loads it with dlopen and finds these functions by name.
#pragma once

#include "talvek/types.h"

extern "C" {

// Forgets the calls and the answers. Every entry point then returns 0.
void RecordingReset();
// What the entry point returns from now on. Through its i-th argument, where that is a pointer to an integer, it writes
// values[i]; kRecordingLeaves leaves the argument alone, as do arguments beyond `count`.
void RecordingAnswer(const char* entry, ULONG status, const ULONG* values, ULONG count);
// The calls since the last reset, a line each, for example "SetXTRAValidity(0x9788, 0x8699, 0xa4b5)". Integers are
// hexadecimal and as wide as their type. Pointers stand as addresses.
const char* RecordingCalls();
// The same with the integer at each pointer, "null", or "record" for a pointer to one.
const char* RecordingCallsByValue();
}

constexpr ULONG kRecordingLeaves = 0xFFFFFFFF;
