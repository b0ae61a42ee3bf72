// Control of the simulated module that lives in the stand-in vendor library of this process.
//
// One text line is one command of the verb table (docs/simulator.md lists every verb, field, event and fault). Scenario
// files, the tests and the client all use it.
#pragma once

#include "talvek/types.h"

// Runs one line. `reply` receives the answer, or on failure the reason, terminated and cut at `size` octets.
// Returns 0, or 1 for an unknown verb, field, event or entry point or a malformed value. May be called from any thread.
extern "C" ORV_EXPORT int TalvekSimCommand(const char* line, char* reply, ULONG size);

// Runs a scenario: one command a line, '#' begins a comment. On failure `reply` begins with the line's number.
extern "C" ORV_EXPORT int TalvekSimScript(const char* text, char* reply, ULONG size);
