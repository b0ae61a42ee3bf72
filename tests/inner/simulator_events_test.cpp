// The simulated module's events: what causes them, when they come, and on which thread.

#include <gtest/gtest.h>

#include <string.h>

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

class SimulatorEvents : public ::testing::Test {
protected:
    SimHarness sim{"umts"};
};

// --- events and the clock
// ---------------------------------------------------------------------------------------------

Lines g_events;

void RegisterEvents()
{
    g_events.clear();
    SimRegistration<GobiSetPower>("SetPowerCallback")(
        [](ULONG mode) { g_events.push_back("power " + std::to_string(mode)); });
    SimRegistration<GobiSetSessionState>("SetSessionStateCallback")([](ULONG state, ULONG reason) {
        g_events.push_back("session " + std::to_string(state) + " " + std::to_string(reason));
    });
    SimRegistration<GobiSetByteTotals>("SetByteTotalsCallback")(
        [](ULONGLONG sent, ULONGLONG received) {
            g_events.push_back("bytes " + std::to_string(sent) + " " + std::to_string(received));
        },
        2);
}

TEST_F(SimulatorEvents, RunsWhatIsQueuedByTimeAndThenInOrder)
{
    RegisterEvents();
    sim.Command("after 30 emit power 3");
    sim.Command("after 10 emit power 1");
    sim.Command("after 30 emit power 4");
    sim.Command("after 20 after 10 emit power 5");
    EXPECT_EQ(sim.Command("queue"), "10 emit power 1\n20 after 10 emit power 5\n30 emit power 3\n30 emit power 4");
    sim.Command("advance 9");
    EXPECT_EQ(g_events, Lines());
    sim.Command("advance 1");
    EXPECT_EQ(g_events, Lines{"power 1"});
    sim.Command("advance 100");
    EXPECT_EQ(g_events, (Lines{"power 1", "power 3", "power 4", "power 5"}));
    EXPECT_EQ(sim.Command("queue"), "");

    sim.Command("after 5 set network.mcc 70000");
    std::string reason;
    EXPECT_FALSE(sim.TryCommand("advance 5", &reason));
    EXPECT_EQ(reason, "\"set network.mcc 70000\": network.mcc 70000 is not within 0 and 65535");
    for (int i = 0; i < 64; ++i)
        sim.Command("after 5 emit power 0");
    EXPECT_FALSE(sim.TryCommand("after 5 emit power 0", &reason));
    EXPECT_EQ(reason, "the queue is full");
}

TEST_F(SimulatorEvents, DeliversToWhoeverIsRegistered)
{
    EXPECT_EQ(sim.Command("emit power 1"), "not registered");
    RegisterEvents();
    EXPECT_EQ(sim.Command("emit power 1"), "delivered");
    SimRegistration<GobiSetPower>("SetPowerCallback")(nullptr);
    EXPECT_EQ(sim.Command("emit power 2"), "not registered");
    RegisterEvents();
    sim.Command("set callbacks.sticky 1");
    SimRegistration<GobiSetPower>("SetPowerCallback")(nullptr);
    EXPECT_EQ(sim.Command("emit power 3"), "delivered");
    EXPECT_EQ(g_events, Lines{"power 3"});
    sim.Command("reset");
    EXPECT_EQ(sim.Command("emit power 4"), "not registered");
}

TEST_F(SimulatorEvents, RunsADataSession)
{
    RegisterEvents();
    ULONG state = 0, handle = 0, other = 0, reason = 9, ip[5] = {};
    SIM_ENTRY(GetSessionState)(&state);
    EXPECT_EQ(state, 1u);
    EXPECT_EQ(SIM_ENTRY(GetIPConfiguration)(&ip[0], &ip[1], &ip[2], &ip[3], &ip[4]), 15u) << "no session";
    EXPECT_EQ(SIM_ENTRY(StopDataSession)(0), 15u);

    ASSERT_EQ(SIM_ENTRY(StartDataSession2)(nullptr, nullptr, nullptr, &handle, &reason), 0u);
    EXPECT_EQ(reason, 0u);
    EXPECT_EQ(SIM_ENTRY(StartDataSession2)(nullptr, nullptr, nullptr, &other, nullptr), 1026u) << "is up already";
    SIM_ENTRY(GetSessionState)(&state);
    EXPECT_EQ(state, 2u);
    EXPECT_EQ(SIM_ENTRY(GetIPConfiguration)(&ip[0], &ip[1], &ip[2], &ip[3], &ip[4]), 0u);
    const BYTE address[4] = {192, 0, 2, 10};
    EXPECT_EQ(memcmp(&ip[0], address, 4), 0) << "network byte order";
    sim.Command("set session.sent 4294967297");
    ULONGLONG totals[2] = {};
    EXPECT_EQ(SIM_ENTRY(GetByteTotals)(reinterpret_cast<ULONG*>(&totals[0]), reinterpret_cast<ULONG*>(&totals[1])), 0u);
    EXPECT_EQ(totals[0], 4294967297u);

    sim.Command("advance 4000");
    EXPECT_EQ(SIM_ENTRY(StopDataSession)(handle + 1), 4u);
    sim.Command("set session.end-reason 3");
    EXPECT_EQ(SIM_ENTRY(StopDataSession)(handle), 0u);
    sim.Command("advance 4000");
    EXPECT_EQ(g_events, (Lines{"session 2 0", "bytes 4294967297 0", "bytes 4294967297 0", "session 1 3"}));

    sim.Command("set session.start-status 1");
    sim.Command("set session.failure-reason 33");
    EXPECT_EQ(SIM_ENTRY(StartDataSession2)(nullptr, nullptr, nullptr, &handle, &reason), 1u);
    EXPECT_EQ(reason, 33u);
}

TEST_F(SimulatorEvents, LeavesAndReturnsOverAReset)
{
    RegisterEvents();
    ULONG mode = 0;
    EXPECT_EQ(SIM_ENTRY(SetPower)(6), 0u);
    SIM_ENTRY(GetPower)(&mode);
    EXPECT_EQ(mode, 6u);
    EXPECT_EQ(SIM_ENTRY(SetPower)(5), 0u);
    sim.Command("advance 50");
    EXPECT_EQ(SIM_ENTRY(GetPower)(&mode), 6u) << "gone";
    EXPECT_EQ(SIM_ENTRY(QCWWANConnect)(), 6u);
    sim.Command("advance 3000");
    EXPECT_EQ(SIM_ENTRY(QCWWANConnect)(), 0u);
    EXPECT_EQ(SIM_ENTRY(GetPower)(&mode), 0u);
    EXPECT_EQ(mode, 0u);
    EXPECT_EQ(g_events, (Lines{"power 6", "power 5", "power 0"}));
}

TEST_F(SimulatorEvents, ADisconnectDropsTheModulesEventsAndKeepsTheOthers)
{
    RegisterEvents();
    ULONG handle = 0;
    ASSERT_EQ(SIM_ENTRY(QCWWANConnect)(), 0u);
    ASSERT_EQ(SIM_ENTRY(StartDataSession2)(nullptr, nullptr, nullptr, &handle, nullptr), 0u);
    sim.Command("after 200 emit power 2");
    EXPECT_EQ(SIM_ENTRY(QCWWANDisconnect)(), 0u);
    sim.Command("advance 10000");
    EXPECT_EQ(g_events, Lines{"power 2"});
}

// --- threads
// ----------------------------------------------------------------------------------------------------------

std::mutex g_thread_mutex;
std::set<std::thread::id> g_threads;
std::atomic<unsigned> g_calls;

void CountPower(ULONG)
{
    const std::lock_guard<std::mutex> lock(g_thread_mutex);
    g_threads.insert(std::this_thread::get_id());
    ++g_calls;
}

TEST(ThreadsSimulator, GivesEachEventAThreadOfItsOwn)
{
    SimHarness sim("umts");
    g_calls = 0;
    g_threads.clear();
    SimRegistration<GobiSetPower>("SetPowerCallback")(CountPower);
    sim.Command("threads on");
    std::vector<std::thread> clients;
    for (int i = 0; i < 4; ++i) {
        clients.emplace_back([&] {
            ULONG mode = 0;
            for (int round = 0; round < 5; ++round) {
                EXPECT_EQ(sim.Command("emit power 1"), "started");
                EXPECT_EQ(SIM_ENTRY(GetPower)(&mode), 0u);
                sim.Journal();
            }
        });
    }
    for (std::thread& client : clients)
        client.join();
    sim.Command("settle 10000");
    EXPECT_EQ(g_calls, 20u);
    EXPECT_EQ(g_threads.count(std::this_thread::get_id()), 0u);
}

TEST(ThreadsSimulator, RunsTheLiveClockByItself)
{
    SimHarness sim("umts");
    ClientRecorder waiter;
    static ClientRecorder* recorder;
    recorder = &waiter;
    SimRegistration<GobiSetPower>("SetPowerCallback")([](ULONG mode) {
        OrvNotifyRecord record = {};
        record.uNotify = mode;
        recorder->Add(record);
    });
    sim.Command("clock live");
    sim.Command("set power.settle-ms 20");
    EXPECT_EQ(SIM_ENTRY(SetPower)(3), 0u);
    sim.Command("after 21 emit power 8"); // later than the other, however late this line runs
    ASSERT_TRUE(waiter.Wait(2));
    EXPECT_EQ(waiter.Identifiers(), (std::vector<ORV_NOTIFY>{3, 8}));
    for (const std::thread::id id : waiter.Threads())
        EXPECT_NE(id, std::this_thread::get_id());
    std::string reason;
    EXPECT_FALSE(sim.TryCommand("advance 10", &reason));
    EXPECT_EQ(reason, "the clock is live");
    sim.Command("settle 10000");
    sim.Command("clock virtual");
}

} // namespace
