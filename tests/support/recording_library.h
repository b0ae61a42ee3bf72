// The recording vendor library in a test's hands: leads the library under test to it, tells it what to answer, and
// reads what it noted.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>
#include <vector>

#include "tests/support/sim_harness.h"
#include "tests/variants/recording_gobi.h"

class RecordingLibrary {
public:
    RecordingLibrary()
    {
        setenv("TALVEK_LIBRARY_PATH", TALVEK_VARIANTS_DIRECTORY "/recording", 1);
        Reset();
    }

    void Reset() { Entry<decltype(&RecordingReset)>("RecordingReset")(); }
    void Answer(const char* entry, ULONG status, const std::vector<ULONG>& values = {})
    {
        Entry<decltype(&RecordingAnswer)>("RecordingAnswer")(entry, status, values.data(),
                                                             static_cast<ULONG>(values.size()));
    }
    std::vector<std::string> Calls() { return SplitLines(Entry<decltype(&RecordingCalls)>("RecordingCalls")()); }
    std::vector<std::string> CallsByValue()
    {
        return SplitLines(Entry<decltype(&RecordingCallsByValue)>("RecordingCallsByValue")());
    }
    // Where an entry point is, or null.
    void* Address(const char* entry) { return dlsym(Library(), entry); }

private:
    // Stays loaded, so that what it noted outlives the instances that load and free it.
    static void* Library()
    {
        static void* const library = dlopen(TALVEK_VARIANTS_DIRECTORY "/recording/libGobiApi.so", RTLD_NOW);
        return library;
    }
    template <class Function>
    static Function Entry(const char* name)
    {
        return reinterpret_cast<Function>(dlsym(Library(), name));
    }
};
