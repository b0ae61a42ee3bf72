// What OrvIsModemReady does to the state of provisioning.

#include <string.h>

#include "state/cdma_provisioning.h"
#include "talvek/cdma.h"
#include "tests/support/guard_sweep.h"

TEST(CdmaReady, CachesTheNetworkParametersThatCouldBeReadAndForgetsTheUnlocking)
{
    SimHarness sim("cdma:5101");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    sim.Command("set cdma.roaming 3");
    const struct {
        const char* command;
        BYTE read, slot_cycle_index;
        ULONG roaming;
    } rows[] = {{"fail GetCDMANetworkParameters 5", 0, 0, 0}, {"clear all", 1, 2, 3}, {"module leaves", 1, 2, 3}};
    for (const auto& row : rows) {
        sim.Command(row.command);
        strcpy(g_szSpc, "123456");
        g_PstPendingMask = kPendingMdn;
        const bool there = OrvIsModemReady() == ORV_RCODE_OK; // a module that has left is asked in vain
        EXPECT_EQ(there, row.command != std::string("module leaves"));
        EXPECT_EQ(g_szSpc[0], there ? 0 : '1');
        EXPECT_EQ(g_PstPendingMask, there ? 0 : kPendingMdn);
        EXPECT_EQ(g_CdmaNetworkParametersRead, row.read);
        EXPECT_EQ(g_CdmaNetworkParameters.slot_cycle_index, row.slot_cycle_index);
        EXPECT_EQ(g_CdmaNetworkParameters.roaming, row.roaming);
    }
    OrvApiShutdown();
}
