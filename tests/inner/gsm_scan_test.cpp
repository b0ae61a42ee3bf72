// The scan for networks with air servers that a client never has.

#include "state/globals.h"
#include "tests/support/gsm_module.h"

namespace {

using GsmScanInner = GsmModule;

TEST_F(GsmScanInner, AsksForEachAirServerAndNothingWithoutAny)
{
    Start();
    for (const ULONG count : {60u, 1u, 0u}) { // there is room for 50
        SCOPED_TRACE(count);
        client.Clear();
        sim.ClearJournal();
        for (OrvAirServer& server : g_AirServerList.airServers)
            server.uDeviceID = ORV_DEVICE_5101;
        g_AirServerList.numAirServers = count;
        LogCapture log;
        EXPECT_EQ(OrvStartPLMNSearch(), ORV_RCODE_OK);
        ASSERT_TRUE(platform_hooks::DrainThreads(10000));
        EXPECT_EQ(sim.Journal(), std::vector<std::string>(count < 50 ? count : 50, "PerformNetworkScan(50)"));
        EXPECT_EQ(NextNetwork(), count ? "1 1 0 10011 Test Network" : "<5>");
        EXPECT_EQ(client.Records().size(), count ? 1u : 0u);
        EXPECT_EQ(log.Count("GobiPerformNetworkScan:: There are no AirServers available."), count ? 0 : 1);
    }
}

} // namespace
