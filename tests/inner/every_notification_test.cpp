// Every notification identifier: what installs its event, how large its payload is, through which copy of the client's
// callback it goes, on which thread, and whether under the API-wide lock.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "api/objects.h"
#include "notify/OrvNotify.h"
#include "platform/hooks.h"
#include "state/sync_block.h"
#include "talvek/talvek.h"
#include "tests/support/sim_harness.h"

namespace {

enum class Copy { Registry, Interface, Both };
enum class Thread { Modules, Own };
enum class Lock { Held, Free };

struct Row {
    ORV_NOTIFY id;
    ORV_NOTIFY carrier; // whose enabling installs the event; 0: the selection
    const char* model;
    const char* event;
    ULONG size;
    Copy copy;
    Thread thread;
    Lock lock;
};

constexpr Row kDelivered[] = {
    // clang-format off
    {1,    0,    "umts", "removal 0",                        32,   Copy::Registry,  Thread::Modules, Lock::Free},
    {5,    5,    "umts", "power 0",                          12,   Copy::Registry,  Thread::Own,     Lock::Held},
    {103,  103,  "umts", "signal -70 5",                     12,   Copy::Registry,  Thread::Own,     Lock::Held},
    {105,  105,  "umts", "power 4",                          4,    Copy::Registry,  Thread::Own,     Lock::Held},
    {116,  103,  "umts", "nitz 2026 11 24 1 2 3 4 5 6",      40,   Copy::Interface, Thread::Modules, Lock::Free},
    {500,  500,  "umts", "sms 1 1",                          28,   Copy::Both,      Thread::Modules, Lock::Free},
    {502,  500,  "umts", "broadcast 1 1 1 AB",               176,  Copy::Interface, Thread::Modules, Lock::Free},
    {1002, 1002, "cdma", "signal -70 1",                     8,    Copy::Registry,  Thread::Own,     Lock::Held},
    {1003, 1003, "cdma", "roaming 1",                        8,    Copy::Registry,  Thread::Own,     Lock::Held},
    {1006, 1006, "umts", "bytes 1 2",                        12,   Copy::Registry,  Thread::Modules, Lock::Held},
    {1007, 1007, "umts", "session 4 0",                      84,   Copy::Registry,  Thread::Modules, Lock::Held},
    {1008, 1008, "umts", "session 2 0",                      16,   Copy::Registry,  Thread::Modules, Lock::Held},
    {1008, 1027, "umts", "call 1:3:0",                       16,   Copy::Registry,  Thread::Modules, Lock::Free},
    {1009, 1027, "umts", "call 1:2:0:123",                   48,   Copy::Registry,  Thread::Modules, Lock::Free},
    {1009, 1027, "cdma", "inforec 1 123",                    48,   Copy::Registry,  Thread::Modules, Lock::Free},
    {1012, 1012, "umts", "session 1 0",                      16,   Copy::Registry,  Thread::Modules, Lock::Held},
    {1012, 1027, "umts", "call 1:9:0",                       16,   Copy::Registry,  Thread::Modules, Lock::Free},
    {1030, 103,  "umts", "emergency-mode 1",                 8,    Copy::Interface, Thread::Modules, Lock::Free},
    {1032, 1032, "cdma", "activation 1",                     12,   Copy::Registry,  Thread::Modules, Lock::Held},
    {1039, 1039, "cdma", "signal -70 1",                     8,    Copy::Registry,  Thread::Own,     Lock::Held},
    {1040, 1040, "cdma", "signal -70 1",                     12,   Copy::Registry,  Thread::Own,     Lock::Held},
    {1041, 1041, "cdma", "roaming 1",                        8,    Copy::Registry,  Thread::Own,     Lock::Held},
    {1042, 1042, "cdma", "caps 7",                           8,    Copy::Registry,  Thread::Own,     Lock::Held},
    {2012, 2012, "umts", "bytes 1 2",                        12,   Copy::Registry,  Thread::Modules, Lock::Held},
    {2013, 500,  "umts", "phonebook-ready",                  8,    Copy::Registry,  Thread::Modules, Lock::Free},
    {2014, 500,  "umts", "phonebook 0 1:0:123:a",            5328, Copy::Registry,  Thread::Modules, Lock::Free},
    {2015, 500,  "umts", "emergency 112",                    880,  Copy::Registry,  Thread::Modules, Lock::Free},
    {2018, 2018, "umts", "power 6",                          8,    Copy::Registry,  Thread::Own,     Lock::Held},
    {2020, 500,  "umts", "voicemail 0:1:2",                  16,   Copy::Interface, Thread::Modules, Lock::Free},
    {2027, 2027, "umts", "signal -70 5",                     20,   Copy::Registry,  Thread::Own,     Lock::Held},
    {2029, 2029, "umts", "session 2 0",                      92,   Copy::Registry,  Thread::Modules, Lock::Held},
    {2032, 2032, "umts", "signal -70 5",                     144,  Copy::Registry,  Thread::Own,     Lock::Held},
    {2269, 2269, "cdma", "omadm-state 1 0",                  32,   Copy::Registry,  Thread::Own,     Lock::Held},
    {2270, 2270, "cdma", "omadm-alert 5 1",                  20,   Copy::Registry,  Thread::Own,     Lock::Held},
    {2280, 1027, "umts", "call 1:6:0",                       16,   Copy::Registry,  Thread::Modules, Lock::Free},
    {2281, 1027, "umts", "ussd 1 15 hello",                  276,  Copy::Registry,  Thread::Modules, Lock::Free},
    {2283, 2269, "cdma", "oma-fumo 1",                       4104, Copy::Registry,  Thread::Modules, Lock::Free},
    {2284, 2269, "cdma", "oma-event 1 2",                    524,  Copy::Registry,  Thread::Modules, Lock::Free},
    // clang-format on
};

bool IsHeldByAnother()
{
    bool entered = false;
    std::thread probe([&entered] {
        entered = g_OrvSyncBlock.TryEnter();
        if (entered) g_OrvSyncBlock.Leave();
    });
    probe.join();
    return !entered;
}

class EveryNotification {
public:
    explicit EveryNotification(const Row& row) : m_row(row), m_sim(row.model)
    {
        EXPECT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        const std::string event = row.event;
        if (row.id != ORV_NOTIFY_DeviceRemoved) {
            EXPECT_EQ(m_sim.Command("emit " + event), "not registered") << "nothing has installed it yet";
        }
        OrvAirServer record = {};
        record.uDeviceID = std::string(row.model) == "cdma" ? 0x5101 : 0x5120;
        EXPECT_EQ(OrvSelectAirServer(&record), ORV_RCODE_OK);
        OrvStopNotify(ORV_NOTIFY_PowerState, 0);
        EXPECT_EQ(OrvRegisterCallback(m_client.Callback(), 0), ORV_RCODE_OK);
        if (row.carrier) {
            EXPECT_EQ(OrvNotify(row.carrier, 0), ORV_RCODE_OK);
        }
        // A served CDMA module: everything that a dispatch asks for is there.
        for (const char* command : {"set network.registration 1", "set network.interfaces 1 2", "set network.caps 6 7",
                                    "set signal.pairs -70:1 -80:2"})
            if (std::string(row.model) == "cdma") m_sim.Command(command);
    }
    ~EveryNotification()
    {
        OrvDeRegisterCallback(nullptr);
        OrvApiShutdown();
        OrvApiStartup();
    }

    // How many records of the row's identifier an event brings.
    size_t Emit()
    {
        m_client.Clear();
        EXPECT_EQ(m_sim.Command(std::string("emit ") + m_row.event), "delivered");
        EXPECT_TRUE(platform_hooks::DrainThreads(10000));
        size_t count = 0;
        for (const OrvNotifyRecord& record : m_client.Records()) {
            if (record.uNotify != m_row.id) continue;
            EXPECT_EQ(record.uPayloadSize, m_row.size);
            ++count;
        }
        return count;
    }

    ClientRecorder& Client() { return m_client; }

private:
    const Row& m_row;
    ClientRecorder m_client;
    SimHarness m_sim;
};

TEST(ThreadsEveryNotification, GoesItsOwnWay)
{
    for (const Row& row : kDelivered) {
        SCOPED_TRACE(std::to_string(row.id) + " by " + row.event);
        EveryNotification notification(row);
        std::atomic<bool> locked{false};
        notification.Client().OnRecord([&locked](const OrvNotifyRecord&) { locked = IsHeldByAnother(); });
        ASSERT_EQ(notification.Emit(), 1u);
        EXPECT_EQ(locked, row.lock == Lock::Held);
        EXPECT_EQ(notification.Client().Threads()[0] != std::this_thread::get_id(), row.thread == Thread::Own);

        // A start-up takes the registry's copy of the callback and leaves the interface's; the module reports on.
        g_OrvNotify.RemoveAll();
        EXPECT_EQ(notification.Emit(), row.copy == Copy::Interface ? 1u : 0u);
        g_OrvNotify.RegisterClient(notification.Client().Callback(), &g_GobiDll);
        if (row.carrier) g_OrvNotify.Add(row.carrier, 0);
        EXPECT_EQ(notification.Emit(), 1u);
        EXPECT_EQ(OrvDeRegisterCallback(nullptr), ORV_RCODE_OK);
        EXPECT_EQ(notification.Emit(), 0u) << "deregistration takes both";
    }
}

// Accepted and listed; no event of the module brings them.
TEST(EveryNotificationElse, IsNeverDeliveredByAnEvent)
{
    for (const ORV_NOTIFY id : {114u, 501u, 1000u, 1027u, 1028u, 2016u, 2017u, 2019u}) {
        SCOPED_TRACE(id);
        SimHarness sim("cdma");
        ClientRecorder client;
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
        ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
        for (const Row& row : kDelivered)
            sim.Command(std::string("emit ") + row.event);
        sim.Command("emit rf 1 2 3");
        sim.Command("emit dormancy 1");
        ASSERT_TRUE(platform_hooks::DrainThreads(10000));
        for (const ORV_NOTIFY received : client.Identifiers())
            EXPECT_NE(received, id);
        OrvDeRegisterCallback(nullptr);
    }
}

} // namespace
