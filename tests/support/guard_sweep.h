// The sweep over the guards of a family: every function before start-up, with nothing selected, on a module of the
// other kind, and on its own.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "talvek/core.h"
#include "tests/support/sim_harness.h"

struct GuardedFunction {
    const char* name;
    ULONG before_start_up;
    ULONG wrong_module; // also while none is selected
    ULONG ready;        // on a module that is as it was plugged in
    ORV_RCODE (*call)();
    bool asks_anyway = false; // calls the vendor library although the module is the wrong one
};

inline void SelectModule(SimHarness& sim, const std::string& model)
{
    sim.Command("model " + model);
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    OrvAirServer record = {};
    record.uDeviceID = static_cast<ULONG>(std::stoul(model.substr(model.find(':') + 1), nullptr, 16));
    ASSERT_EQ(OrvSelectAirServer(&record), ORV_RCODE_OK);
    sim.ClearJournal();
}

// Models as "umts:5120" and "cdma:5101".
template <size_t n>
void SweepGuards(SimHarness& sim, const GuardedFunction (&functions)[n], const std::string& own_model,
                 const std::string& other_model)
{
    const std::vector<std::string> nothing;
    for (const GuardedFunction& function : functions) { // all of them first: a shutdown does not undo a start-up
        sim.ClearJournal();
        EXPECT_EQ(function.call(), function.before_start_up) << function.name << " before start-up";
        EXPECT_EQ(sim.Journal(), nothing) << function.name << " before start-up";
    }
    for (const GuardedFunction& function : functions) {
        SCOPED_TRACE(function.name);
        sim.Command("model " + other_model);
        EXPECT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        EXPECT_EQ(function.call(), function.wrong_module) << "nothing selected";

        SelectModule(sim, other_model);
        EXPECT_EQ(function.call(), function.wrong_module) << "on the other kind of module";
        if (!function.asks_anyway) {
            EXPECT_EQ(sim.Journal(), nothing) << "on the other kind of module";
        }
        OrvApiShutdown();

        SelectModule(sim, own_model);
        EXPECT_EQ(function.call(), function.ready) << "on its own module";
        OrvApiShutdown();
    }
}
