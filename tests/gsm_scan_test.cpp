// The scan for networks: its results, read to the end and past it, and the threads that meet there.

#include <string>
#include <thread>
#include <vector>

#include "tests/support/gsm_module.h"

namespace {

using Lines = std::vector<std::string>;
using GsmScan = GsmModule;

Lines ReadAll()
{
    Lines all = {NextNetwork()};
    while (all.back()[0] != '<')
        all.push_back(NextNetwork());
    return all;
}

std::string Networks(int count)
{
    std::string list = "set scan.networks none";
    for (int i = 1; i <= count; ++i)
        list = (i > 1 ? list + " " : "set scan.networks ") + std::to_string(i) + ":2:4:0";
    return list;
}

TEST_F(GsmScan, IsReadToTheEndAndPastItAndLogsWhatItFound)
{
    const std::string ones(13, '\xFF'), plain_200 = "; hostile PerformNetworkScan count 200";
    const std::string entry =
        "g_PlmnList.sNwInfo[Counter].MCC = 1, MNC = 2, g_RATInfoList.sRATInfo[Counter].MCC = 1, MNC= 2, RAT =4 ";
    const char* const counts = "g_PlmnList.uListSize = 50, g_RATInfoList.uListSize = 50";
    const char* const none =
        "GOBI API PerformNetworkScan/PerformNetworkRATScan return OK, but number of PLMN available is zero";
    const char* const fails = "PerformNetworkScan failed, error = 12, Network info size = 50";
    // clang-format off
    const struct {
        const char *name, *model;
        std::string commands;
        size_t count;
        std::string first, log; // "MCC MNC RAT FLAGS NAME"; empty: not looked for
    } rows[] = {
        {"plain, none", "umts:5101", Networks(0), 0, "<5>", none},
        {"plain, one", "umts:5101", Networks(1), 1, "1 2 0 00000 ", ""},
        {"plain, 50", "umts:5101", Networks(50), 50, "1 2 0 00001 ", ""},
        {"plain, 200", "umts:5101", Networks(50) + plain_200, 50, "1 2 0 00001 ", ""},
        {"plain, fails", "umts:5101", "fail PerformNetworkScan 12", 0, "<5>", fails},
        {"with technologies, none", "umts:5111", Networks(0), 0, "<5>", none},
        {"with technologies, one", "umts:5111", Networks(1), 1, "1 2 1 00000 ", entry},
        {"with technologies, 50", "umts:5111", Networks(50), 50, "1 2 1 00001 ", counts},
        {"with technologies, 200", "umts:5111", Networks(50) + "; hostile PerformNetworkRATScan count 200", 50, "1 2 1 00001 ", counts},
        {"with technologies, fails", "umts:5120", "fail PerformNetworkRATScan 12", 0, "<5>", "PerformNetworkRATScan failed, error = 12"},
        {"technologies that are not told", "umts:5120", Networks(1), 1, "1 2 0 00000 ", entry},
        {"nor on this one", "umts:5141", Networks(1), 1, "1 2 0 00000 ", entry},
        {"no such technology", "umts:5111", "set scan.networks 1:2:6:0", 1, "1 2 0 00000 ", ""},
        {"all ones", "umts:5111", "hostile PerformNetworkRATScan scribble", 50, "65535 65535 0 00001 " + ones, counts},
        {"a name that fills its field", "umts:5111", Networks(1) + "; set scan.names " + std::string(300, 'n'), 1, "1 2 1 00000 nnnnnnnnnnnnn", ""},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Start(row.model);
        Run("set scan.names \"\"; " + row.commands);
        LogCapture log;
        Scan();
        EXPECT_EQ(Values(), Lines{row.count ? "2017=1" : "2017=0"});
        EXPECT_TRUE(row.log.empty() || log.Find(row.log).module == "TALVEKGsm") << log.Dump();
        EXPECT_EQ(log.Count(none), row.log == none ? 1 : 0);
        EXPECT_EQ(log.Count("Entering PerformNetworkScan thread") + log.Count("Leaving PerformNetworkScan thread"), 2);
        const Lines all = ReadAll();
        EXPECT_EQ(all.front(), row.first);
        ASSERT_EQ(all.size(), row.count + 1);
        EXPECT_EQ(all.back(), row.count ? "<600>" : "<5>");
        EXPECT_EQ(NextNetwork(), all.back());
        OrvApiShutdown();
    }
}

TEST_F(GsmScan, ReplacesAResultThatIsHalfRead)
{
    Start("umts:5111");
    Scan();
    for (const char* network : {"1 1 7 10011 Test Network", "1 1 1 10011 Test Network", "1 2 7 00001 Second Networ"})
        EXPECT_EQ(NextNetwork(), network);
    sim.Command("set scan.networks 5:6:4:0 7:8:5:5");
    std::string meanwhile;
    client.OnRecord([&](const OrvNotifyRecord&) { meanwhile = NextNetwork(); });
    EXPECT_EQ(NextNetwork(), "1 3 1 01001 Closed Networ") << "until the scan is over";
    Scan();
    EXPECT_EQ(meanwhile, "5 6 1 00001 Test Network") << "from within the callback";
    EXPECT_EQ(ReadAll(), (Lines{"7 8 7 00110 Test Network", "<600>"}));
}

TEST_F(GsmScan, NeedsAThread)
{
    Start();
    LogCapture log;
    platform_hooks::FailCall("CreateThread", 1, 1, 8);
    EXPECT_EQ(OrvStartPLMNSearch(), ORV_RCODE_STARTUP_FAILED);
    EXPECT_EQ(log.Count("Create thread failed forOrvStartPLMNSearch "), 1) << log.Dump();
}

using ThreadsGsmScan = GsmModule;

// Whatever meets: each record is the next one of a list, or the first one of a later list.
TEST_F(ThreadsGsmScan, AReaderSeesWholeListsWhileScansEnd)
{
    Start("umts:5111");
    sim.Command(Networks(50));
    constexpr size_t kScans = 30;
    std::thread scans([this] {
        for (size_t i = 0; i < kScans; ++i) {
            EXPECT_EQ(OrvStartPLMNSearch(), ORV_RCODE_OK);
            if (i % 3 == 0) { // the others overlap
                EXPECT_TRUE(client.Wait(i + 1));
            }
        }
    });
    ULONG last = 0, read = 0;
    while (client.Records().size() < kScans || read == 0) {
        OrvPlmnRecord record = {};
        OrvAirServerList list = {};
        OrvGetAvailAirServers(&list);
        if (OrvGetPLMNSelection(&record) != ORV_RCODE_OK) continue;
        ++read;
        EXPECT_TRUE(record.nMCC == 1 || record.nMCC == last + 1) << record.nMCC << " after " << last;
        EXPECT_EQ(record.bMore, record.nMCC < 50 ? 1 : 0);
        EXPECT_EQ(record.eRat, 1u);
        last = record.nMCC;
    }
    scans.join();
}

} // namespace
