// What crosses threads: events from several threads of the vendor library at once, while clients switch, register,
// suspend and shut down.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/hooks.h"
#include "talvek/talvek.h"
#include "tests/support/sim_harness.h"

namespace {

ORV_RCODE Start(const char* model)
{
    if (const ORV_RCODE result = OrvApiStartup()) return result;
    OrvAirServer record = {};
    record.uDeviceID = std::string(model).compare(0, 4, "cdma") == 0 ? 0x5101 : 0x5120;
    return OrvSelectAirServer(&record);
}

std::atomic<unsigned> g_received;

void ORV_CALL Count(OrvNotifyRecord* record)
{
    if (record->uPayloadSize <= sizeof record->payload) ++g_received;
}

void Repeat(int times, const std::vector<std::function<void()>>& steps)
{
    for (int i = 0; i < times; ++i)
        for (const auto& step : steps)
            step();
}

TEST(ThreadsNotify, EventsFromManyThreadsMeetClientsThatSwitchAndRegister)
{
    constexpr int kRounds = 60;
    SimHarness sim("cdma");
    ASSERT_EQ(Start("cdma"), ORV_RCODE_OK);
    ASSERT_EQ(OrvRegisterCallback(Count, 0), ORV_RCODE_OK);
    for (const ORV_NOTIFY id : {103u, 1040u, 1003u, 1008u, 2029u, 1006u, 2269u, 2270u, 500u, 1032u})
        ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
    const auto emit = [&sim](const char* event) {
        return [&sim, event] { sim.Command(std::string("emit ") + event); };
    };
    const std::vector<std::vector<std::function<void()>>> scripts = {
        {emit("signal -70 1"), emit("caps 6 7"), emit("power 0")},
        {emit("session 2 0"), emit("bytes 1 2"), emit("session 1 0")},
        {emit("roaming 1"), emit("omadm-alert 5 9"), emit("omadm-state 1 0")},
        {emit("sms 1 2"), emit("nitz 2026 1 1 1 1 1 1 1 1"), emit("voicemail 0:1:2"), emit("activation 3")},
        {[] { OrvNotify(1039, 0); }, [] { OrvStopNotify(1039, 0); }, [] { OrvNotify(1041, 0); },
         [] { OrvStopNotify(1041, 0); }},
        {[] { OrvRegisterCallback(Count, 0); }, [] { OrvHandleSuspend(2); }, [] { OrvHandleResume(0); },
         [] { OrvDeRegisterCallback(Count); }, [] { OrvRegisterCallback(Count, 0); }},
    };
    std::vector<std::thread> threads;
    for (const auto& script : scripts)
        threads.emplace_back([&script] { Repeat(kRounds, script); });
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_TRUE(platform_hooks::DrainThreads(30000));
    EXPECT_GT(g_received.load(), 0u);
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
}

TEST(ThreadsNotify, ACallbackHoldsTheLockAndOthersWaitForIt)
{
    SimHarness sim("umts");
    ClientRecorder client;
    ASSERT_EQ(Start("umts"), ORV_RCODE_OK);
    ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
    ASSERT_EQ(OrvNotify(1008, 0), ORV_RCODE_OK);
    std::atomic<bool> switched{false};
    bool seen_during_callback = true;
    std::thread other;
    client.OnRecord([&](const OrvNotifyRecord&) {
        std::atomic<bool> started{false};
        other = std::thread([&] {
            started = true;
            OrvNotify(1003, 0);
            switched = true;
        });
        while (!started)
            std::this_thread::yield();
        for (int i = 0; i < 1000; ++i)
            std::this_thread::yield();
        seen_during_callback = switched;
    });
    sim.Command("emit session 2 0");
    other.join();
    EXPECT_FALSE(seen_during_callback) << "the switch had to wait for the lock";
    EXPECT_TRUE(switched);
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
}

TEST(ThreadsNotify, DirectDeliveriesTakeNoLock)
{
    SimHarness sim("umts");
    ClientRecorder client;
    ASSERT_EQ(Start("umts"), ORV_RCODE_OK);
    ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
    ASSERT_EQ(OrvNotify(500, 0), ORV_RCODE_OK);
    client.OnRecord([&](const OrvNotifyRecord&) {
        std::thread other([] { EXPECT_EQ(OrvNotify(1003, 0), ORV_RCODE_OK); });
        other.join(); // would never come back if the lock were held here
    });
    sim.Command("emit sms 1 1");
    EXPECT_EQ(client.Records().size(), 1u);
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
}

TEST(ThreadsNotify, ThreadedAdaptersReturnAtOnceAndOthersDeliverInPlace)
{
    const struct {
        const char* event;
        ORV_NOTIFY id;
        bool on_own_thread;
    } rows[] = {{"power 0", 5, true},         {"roaming 1", 1003, true},       {"signal -70 1", 103, true},
                {"caps 6", 1002, true},       {"omadm-state 1 0", 2269, true}, {"omadm-alert 5 1", 2270, true},
                {"session 2 0", 1008, false}, {"bytes 1 2", 1006, false},      {"activation 2", 1032, false},
                {"sms 1 1", 500, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.event);
        SimHarness sim("cdma");
        ClientRecorder client;
        ASSERT_EQ(Start("cdma"), ORV_RCODE_OK);
        sim.Command("set network.registration 1");
        sim.Command("set network.interfaces 1");
        sim.Command("set network.caps 6");
        ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
        ASSERT_EQ(OrvNotify(row.id, 0), ORV_RCODE_OK);
        sim.Command(std::string("emit ") + row.event);
        ASSERT_TRUE(client.Wait(1));
        ASSERT_TRUE(platform_hooks::DrainThreads(10000));
        ASSERT_EQ(client.Threads().size(), 1u);
        EXPECT_EQ(client.Threads()[0] != std::this_thread::get_id(), row.on_own_thread);
        EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    }
}

TEST(ThreadsLifecycle, EventsDuringShutDownNeitherHangNorGetLost)
{
    constexpr int kRounds = 20;
    SimHarness sim("umts");
    sim.Command("threads on");
    ClientRecorder client;
    for (int round = 0; round < kRounds; ++round) {
        client.Clear();
        ASSERT_EQ(Start("umts"), ORV_RCODE_OK);
        ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
        ASSERT_EQ(OrvNotify(1008, 0), ORV_RCODE_OK);
        std::thread module([&sim] { sim.Command("emit session 2 0"); });
        EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
        module.join();
        sim.Command("settle 10000");
        ASSERT_TRUE(client.Wait(1)) << "the session's callback is still registered";
    }
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
}

} // namespace
