// The process-wide objects: the module's entry point, loading and unloading of the library, the lock and the registry.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "api/module_entry.h"
#include "api/objects.h"
#include "notify/OrvNotify.h"
#include "notify/adapters.h"
#include "platform/hooks.h"
#include "state/globals.h"
#include "state/sync_block.h"
#include "tests/support/log_capture.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

void KeepText(const WCHAR* text, void* context)
{
    auto& texts = *static_cast<std::vector<std::u16string>*>(context);
    texts.push_back(text);
}

TEST(ModuleEntry, AnnouncesTheAttachingOfAProcessOnly)
{
    std::vector<std::u16string> texts;
    platform_hooks::SetDebugSink(KeepText, &texts);
    for (DWORD reason = 0; reason < 4; ++reason)
        EXPECT_EQ(TalvekModuleEntry(nullptr, reason, nullptr), 1);
    platform_hooks::Reset();
    EXPECT_EQ(texts, std::vector<std::u16string>{u"TALVEK dll is attached to a process\r\n"});
}

TEST(ModuleEntry, RunsWhenTheLibraryIsLoadedAndTheLibraryUnloadsCleanly)
{
    SimHarness sim("umts:5120");
    std::vector<std::u16string> texts;
    platform_hooks::SetDebugSink(KeepText, &texts);
    void* const library = dlopen(TALVEK_LIBRARY_DIRECTORY "/libtalvek.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_EQ(texts.size(), 1u);
    platform_hooks::Reset();
    const auto startup = reinterpret_cast<ORV_RCODE(ORV_CALL*)()>(dlsym(library, "OrvApiStartup"));
    const auto select = reinterpret_cast<ORV_RCODE(ORV_CALL*)(OrvAirServer*)>(dlsym(library, "OrvSelectAirServer"));
    ASSERT_TRUE(startup && select);
    EXPECT_EQ(startup(), ORV_RCODE_OK);
    OrvAirServer record = {};
    record.uDeviceID = ORV_DEVICE_5120;
    EXPECT_EQ(select(&record), ORV_RCODE_OK);
    sim.ClearJournal();
    EXPECT_EQ(dlclose(library), 0) << "with the port open and the module connected";
    EXPECT_EQ(dlopen(TALVEK_LIBRARY_DIRECTORY "/libtalvek.so", RTLD_NOW | RTLD_NOLOAD), nullptr);
    EXPECT_EQ(sim.Journal(), Lines()) << "unloading calls nothing of the vendor library";
}

TEST(ThreadsSyncBlock, IsReentrantForItsThreadAndShutToOthers)
{
    const OrvSyncGuard outer;
    const OrvSyncGuard inner;
    std::atomic<WORD> pending{1};
    std::thread other([&] { pending = g_OrvNotify.PendingOmaDm(1); });
    for (int i = 0; i < 1000; ++i)
        std::this_thread::yield();
    EXPECT_EQ(pending, 1);
    g_OrvSyncBlock.Leave();
    g_OrvSyncBlock.Leave();
    other.join();
    EXPECT_EQ(pending, 0);
    g_OrvSyncBlock.Enter();
    g_OrvSyncBlock.Enter();
}

TEST(NotifyRegistry, DropsEventsOfAClientWithoutABinding)
{
    ClientRecorder client;
    g_OrvNotify.RegisterClient(client.Callback(), nullptr);
    g_OrvNotify.Add(ORV_NOTIFY_ActivationStatus, 0);
    LogCapture log;
    ActivationStatusCallback(3);
    EXPECT_EQ(log.Texts(), (Lines{"Activation Status State = 3", "m_pGobi is NULL. RETURN!!"}));
    EXPECT_EQ(client.Records().size(), 0u);
    g_OrvNotify.RegisterClient(client.Callback(), &g_GobiDll);
    ActivationStatusCallback(3);
    EXPECT_EQ(client.Records().size(), 1u);
    g_OrvNotify.RemoveAll();
}

TEST(NotifyRegistry, AStartUpDropsTheRegistryCallbackAndKeepsTheOther)
{
    ClientRecorder client;
    g_OrvNotify.RegisterClient(client.Callback(), &g_GobiDll);
    g_OrvNotify.RemoveAll();
    EXPECT_EQ(g_OrvNotify.ClientCallback(), nullptr);
    EXPECT_EQ(g_OrvNotify.Gobi(), &g_GobiDll);
    EXPECT_EQ(g_pOrvNotify.Load(), &g_OrvNotify);
    NITZCallback(2026, 1, 1, 1, 1, 1, 1, 1, 1);
    EXPECT_EQ(client.Records().size(), 1u) << "network time goes through the interface's own copy";
    NewSMSCallback(1, 1);
    EXPECT_EQ(client.Records().size(), 1u) << "a new message needs both";
    g_OrvNotify.DeregisterClient();
    NITZCallback(2026, 1, 1, 1, 1, 1, 1, 1, 1);
    EXPECT_EQ(client.Records().size(), 1u);
}

TEST(NotifyRegistry, KeepsOnePendingSessionAClass)
{
    ClientRecorder client;
    g_OrvNotify.RegisterClient(client.Callback(), &g_GobiDll);
    // Two alerts in a row: the values travel with the events, so neither class is lost.
    OMADMAlertCallback(5, 77);
    OMADMAlertCallback(4, 78);
    OMADMAlertCallback(2, 79);
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
    EXPECT_EQ(g_OrvNotify.PendingOmaDm(1), 77) << "kept although nobody enabled the alert";
    EXPECT_EQ(g_OrvNotify.PendingOmaDm(2), 78);
    EXPECT_EQ(g_OrvNotify.PendingOmaDm(4), 0);
    EXPECT_EQ(g_sessionID.Load(), 79);
    EXPECT_EQ(g_sessionType.Load(), 2u);
    g_OrvNotify.RemoveAll();
    EXPECT_EQ(g_OrvNotify.PendingOmaDm(1), 0);
    g_OrvNotify.DeregisterClient();
}

TEST(NotifyRegistry, AnswersWhetherASourceIsActive)
{
    EXPECT_FALSE(g_OrvNotify.IsActive(501));
    g_OrvNotify.Add(501, 0);
    g_OrvNotify.Add(1042, 0);
    EXPECT_TRUE(g_OrvNotify.IsActive(501));
    EXPECT_FALSE(g_OrvNotify.IsActive(2013)) << "placeholders are sources of their own";
    EXPECT_TRUE(g_OrvNotify.IsActive(103)) << "its source is active through 1042";
    EXPECT_FALSE(g_OrvNotify.IsActive(116)) << "cannot be enabled";
    g_OrvNotify.RemoveAll();
}

// More events under way than the pool has slots: the heap takes over, and nothing is lost.
TEST(NotifyRegistry, DeliversABurstThatOutgrowsItsSlots)
{
    constexpr size_t kEvents = 40;
    ClientRecorder client;
    g_OrvNotify.RegisterClient(client.Callback(), &g_GobiDll);
    g_OrvNotify.Add(ORV_NOTIFY_OMADMState, 0);
    {
        const OrvSyncGuard hold_deliveries;
        for (size_t i = 0; i < kEvents; ++i)
            OMADMStateCallback(1, 0);
    }
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
    EXPECT_EQ(client.Records().size(), kEvents);
    g_OrvNotify.RemoveAll();
    g_OrvNotify.DeregisterClient();
}

TEST(NotifyRegistry, SurvivesNullPointersOfTheModule)
{
    ClientRecorder client;
    g_OrvNotify.RegisterClient(client.Callback(), &g_GobiDll);
    BYTE octet = 1;
    LogCapture log;
    VoiceMessageCallback(3, nullptr, &octet, &octet);
    EXPECT_EQ(log.Count("VoiceMessageCallback with NULL pointer!!!!"), 1);
    ASSERT_EQ(client.Records().size(), 1u);
    EXPECT_EQ(client.Records()[0].payload.VoiceMail.nWaiting, 0);
    NewSMSCBCallback(1, 1, 1, 7, nullptr);
    EmergencyModeCallback(nullptr);
    EXPECT_EQ(client.Records().size(), 1u) << "nothing to deliver";
    NewSMSCBCallback(1, 1, 9, 0, &octet);
    ASSERT_EQ(client.Records().size(), 2u) << "an empty broadcast is one";
    EXPECT_EQ(client.Records()[1].payload.CellBroadcast.uLength, 0);
    GobiAPIDataCapabilities(200, nullptr);
    EXPECT_EQ(g_DataCapsMask.Load(), 0u);
    EXPECT_EQ(g_LastSignalStrength.Load(), 6);
    EXPECT_EQ(g_CdmaRssi.Load(), -250);
    EXPECT_EQ(g_HdrEcio.Load(), -50);
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
    g_OrvNotify.DeregisterClient();
}

} // namespace
