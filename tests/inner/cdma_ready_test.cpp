// What OrvIsModemReady does to the state of provisioning.

#include <string.h>

#include "state/cdma_provisioning.h"
#include "talvek/cdma.h"
#include "tests/support/guard_sweep.h"

namespace {

TEST(CdmaReady, CachesTheNetworkParametersThatCouldBeReadAndForgetsTheUnlocking)
{
    SimHarness sim("cdma:5101");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    sim.Command("set cdma.roaming 3");
    sim.Command("set cdma.force-rev0 1");
    const struct {
        const char* command;
        BYTE read, sci;
        ULONG roaming;
    } rows[] = {{"fail GetCDMANetworkParameters 5", 0, 0, 0},
                {"clear all", 1, 2, 3},
                {"fail GetCDMANetworkParameters 5", 1, 2, 3}};
    for (const auto& row : rows) {
        sim.Command(row.command);
        strcpy(g_szSpc, "123456");
        g_PstPendingMask = kPendingMdn;
        EXPECT_EQ(OrvIsModemReady(), ORV_RCODE_OK);
        EXPECT_EQ(g_szSpc[0], 0);
        EXPECT_EQ(g_PstPendingMask, 0u);
        EXPECT_EQ(g_CdmaNetworkParametersRead, row.read);
        EXPECT_EQ(g_CdmaNetworkParameters.slot_cycle_index, row.sci);
        EXPECT_EQ(g_CdmaNetworkParameters.roaming, row.roaming);
    }
    EXPECT_EQ(g_CdmaNetworkParameters.force_rev0, 1);
    EXPECT_EQ(g_CdmaNetworkParameters.station_class_mark, 0x52);
    OrvApiShutdown();
}

} // namespace
