// Delivery of events to the client: what arrives, in which record, and what the client may do in its callback.

#include <gtest/gtest.h>

#include <string.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/talvek.h"
#include "tests/support/log_capture.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;
using Words = std::vector<ULONG>;

constexpr const char* kSuppress = "CallbackList of notification is empty. Suppress the notification";

class NotifyDelivery : public ::testing::Test {
protected:
    void Start(const char* model)
    {
        sim.reset();
        sim = std::make_unique<SimHarness>(model);
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        OrvAirServer record = {};
        record.uDeviceID = std::string(model).compare(0, 4, "cdma") == 0 ? 0x5101 : 0x5120;
        ASSERT_EQ(OrvSelectAirServer(&record), ORV_RCODE_OK);
        ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
        OrvStopNotify(ORV_NOTIFY_PowerState, 0); // each test says what is enabled
        OrvNotify(ORV_NOTIFY_SignalStrength, 0); // the capabilities of an earlier selection are forgotten
        sim->Command("set network.caps none");
        sim->Command("set signal.pairs none");
        Emit("caps");
        OrvStopNotify(ORV_NOTIFY_SignalStrength, 0);
        client.Clear();
    }
    void TearDown() override { OrvApiShutdown(); }

    // Emits an event and waits until everything that it started has ended.
    std::vector<OrvNotifyRecord> Emit(const std::string& event)
    {
        client.Clear();
        sim->Command("emit " + event);
        EXPECT_TRUE(platform_hooks::DrainThreads(10000));
        return client.Records();
    }

    ClientRecorder client;
    std::unique_ptr<SimHarness> sim;
};

// A record's identifier, size and the payload's first words.
Words Flat(const OrvNotifyRecord& record, size_t words)
{
    Words flat = {record.uNotify, record.uPayloadSize};
    for (size_t i = 0; i < words; ++i) {
        ULONG word;
        memcpy(&word, record.payload.aOctets + 4 * i, 4);
        flat.push_back(word);
    }
    return flat;
}

// Whether everything behind the first `meant` payload octets is zero.
bool RestIsZero(const OrvNotifyRecord& record, size_t meant)
{
    for (size_t i = meant; i < sizeof record.payload.aOctets; ++i)
        if (record.payload.aOctets[i] != 0) return false;
    return true;
}

struct DeliveryRow {
    const char* name;
    const char* model;
    std::vector<const char*> commands;
    Words enabled;
    const char* event;
    std::vector<Words> records; // each: identifier, size, the payload's first words
};

constexpr ULONG kMinus(ULONG value) { return 0 - value; }

const DeliveryRow kDeliveries[] = {
    {"power, online", "umts", {}, {5}, "power 0", {{5, 12, 0, 1, 0}}},
    {"power, low power", "umts", {}, {5}, "power 1", {{5, 12, 5, 1, 0}}},
    {"power, beyond the table", "umts", {}, {5}, "power 9", {{5, 12, 2, 1, 0}}},
    {"power, not a reset", "umts", {}, {5, 105}, "power 0", {{5, 12, 0, 1, 0}}},
    {"power, reset", "umts", {}, {105, 5}, "power 4", {{105, 4, 0}, {5, 12, 2, 1, 0}}},
    {"power, radio off", "umts", {}, {2018}, "power 6", {{2018, 8, 1, 0}}},
    {"power, not off", "umts", {}, {2018}, "power 4", {{2018, 8, 0, 0}}},
    {"power, 2018 ends the walk", "umts", {}, {105, 2018, 5}, "power 4", {{105, 4, 0}, {2018, 8, 0, 0}}},
    {"session, disconnected", "cdma", {}, {1012}, "session 1 9", {{1012, 16, 0, 0, 0, 0}}},
    {"session, connected", "cdma", {}, {1012, 1008}, "session 2 0", {{1008, 16, 4, 0, 33, 0}}},
    {"session, authenticating",
     "cdma",
     {},
     {1008, 1007},
     "session 4 0",
     {{1007, 84, 257, 1, 0x006F0047, 0x00690062, 0x004E0020, 0x006D0075, 0x00650062, 0x00000072}}},
    {"session, suspended", "cdma", {}, {1007, 1008, 1012}, "session 3 0", {}},
    {"packet session, connected", "umts", {}, {2029}, "session 2 5", {{2029, 92, 1, 0, 0}}},
    {"packet session, ended", "umts", {}, {2029}, "session 1 5", {{2029, 92, 0, 30, 0}}},
    {"session, 2029 ends the walk", "umts", {}, {1012, 2029, 1008}, "session 2 0", {{2029, 92, 1, 0, 0}}},
    {"byte totals", "cdma", {}, {1006, 2012}, "bytes 0x100000007 0x2FFFFFFFF", {{1006, 12, 7, 0xFFFFFFFF, 0}}},
    {"byte totals, the other first", "umts", {}, {2012, 1006}, "bytes 1 2", {{2012, 12, 1, 2, 0}}},
    {"roaming, off",
     "cdma",
     {"set network.registration 1", "set network.interfaces \"1 2\"", "set network.roaming 1"},
     {1003, 1041},
     "roaming 9",
     {{1003, 8, 0, 0}}},
    {"roaming, on",
     "cdma",
     {"set network.registration 1", "set network.interfaces \"2\"", "set network.roaming 0"},
     {1041},
     "roaming 9",
     {{1041, 8, 1, 0}}},
    {"roaming, other values",
     "cdma",
     {"set network.registration 1", "set network.interfaces \"1\"", "set network.roaming 7"},
     {1003},
     "roaming 9",
     {{1003, 8, 7, 0}}},
    {"roaming, the first identifier ends the walk undelivered",
     "cdma",
     {"set network.registration 1", "set network.interfaces \"2\""},
     {1003, 1041},
     "roaming 0",
     {}},
    {"roaming, not registered",
     "cdma",
     {"set network.registration 2", "set network.interfaces \"1\""},
     {1003},
     "roaming 0",
     {}},
    {"roaming, query fails", "cdma", {"fail GetServingNetwork 3"}, {1003}, "roaming 0", {}},
    {"RF information", "cdma", {}, {114, 1000}, "rf 1 2 3", {}},
    {"dormancy", "cdma", {}, {1028}, "dormancy 1", {}},
    {"activation, not activated", "cdma", {}, {1032}, "activation 0", {{1032, 12, 8, 0, 0}}},
    {"activation 1", "cdma", {}, {1032}, "activation 1", {{1032, 12, 9, 1, 0}}},
    {"activation 2", "cdma", {}, {1032}, "activation 2", {{1032, 12, 0, 1, 0}}},
    {"activation 9", "cdma", {}, {1032}, "activation 9", {{1032, 12, 3, 1, 0}}},
    {"activation 10", "cdma", {}, {1032}, "activation 10", {{1032, 12, 8, 1, 0}}},
    {"activation beyond the map", "cdma", {}, {1032}, "activation 11", {}},
    {"network time",
     "cdma",
     {},
     {1042},
     "nitz 2026 11 24 22 31 59 3 4 1",
     {{116, 40, 2026, 11, 24, 3, 22, 31, 59, 4, 1, 0}}},
    {"emergency mode", "cdma", {}, {1039}, "emergency-mode 1", {{1030, 8, 1, 0}}},
    {"new message, CDMA", "cdma", {}, {500}, "sms 1 7", {{500, 16, 0, 0, 0, 0}}},
    {"new message, GSM", "umts", {}, {500}, "sms 1 7", {{500, 28, 0, 0, 0, 0, 0, 0, 0}}},
    {"voice mail, unknown number", "umts", {}, {500}, "voicemail 0:1:255", {{2020, 16, 1, kMinus(1), 0, 0}}},
    {"voice mail, last match wins",
     "umts",
     {},
     {500},
     "voicemail 0:1:3 1:1:9 0:1:254 0:0:7",
     {{2020, 16, 1, 254, 0, 0}}},
    {"voice mail, none", "umts", {}, {500}, "voicemail 0:1:0", {{2020, 16, 1, kMinus(1), 0, 0}}},
    {"cell broadcast", "umts", {}, {500}, "broadcast 6 0 3 A1B2C3D4E5", {{502, 176, 0x00050003, 0xD4C3B2A1, 0xE5}}},
    {"phonebook ready", "umts", {}, {500}, "phonebook-ready", {{2013, 8, 1, 0}}},
    {"OMA-DM state", "cdma", {}, {2269}, "omadm-state 5 2", {{2269, 32, 32, 0, 0, 0, 0, 0x101, 0, 0}}},
    {"OMA-DM alert, device configuration", "cdma", {}, {2270}, "omadm-alert 5 77", {{2270, 20, 20, 2, 77, 0, 1}}},
    {"OMA-DM alert, roaming list", "cdma", {}, {2270}, "omadm-alert 4 78", {{2270, 20, 20, 2, 0, 78, 2}}},
    {"OMA-DM alert, neither", "cdma", {}, {2270}, "omadm-alert 2 79", {{2270, 20, 20, 2, 0, 0, 4}}},
    {"signal, CDMA and EV-DO",
     "cdma",
     {"set signal.pairs \"-75:1 -80:2\"", "set network.caps \"6 7\""},
     {103, 1039, 1040, 1002, 1042},
     "signal -60 1",
     {{103, 12, kMinus(75), kMinus(50), 0},
      {1039, 8, kMinus(80), 0},
      {1040, 12, 0xFFB5FFCE, 0xFFB0FFCE, 0},
      {1002, 8, 2, 0},
      {1042, 8, 2, 0}}},
    {"signal, EV-DO revision A only",
     "cdma",
     {"set signal.pairs \"-80:2\"", "set network.caps \"8\""},
     {103, 1039, 1002, 1042},
     "signal -60 1",
     {{103, 12, kMinus(250), kMinus(50), 0}, {1039, 8, kMinus(80), 0}, {1042, 8, 4, 0}}},
    {"signal, GSM",
     "umts",
     {"set signal.pairs \"-90:4\"", "set network.caps \"1\""},
     {103, 1039, 1040, 1002},
     "signal -61 4",
     {{103, 12, kMinus(61), kMinus(50), 0}}},
    {"signal, third kind",
     "umts",
     {"set signal.pairs \"-90:8\"", "set network.caps \"1\""},
     {103},
     "signal -62 5",
     {{103, 12, kMinus(62), kMinus(50), 0}}},
    {"signal, the pairs fail",
     "cdma",
     {"fail GetSignalStrengths 3", "set network.caps \"6\""},
     {103, 1039},
     "signal -60 1",
     {{103, 12, kMinus(250), kMinus(50), 0}, {1039, 8, kMinus(250), 0}}},
    {"signal, lowest strength",
     "umts",
     {"set signal.pairs none", "set network.caps \"1\""},
     {103},
     "signal -128 5",
     {{103, 12, kMinus(128), kMinus(50), 0}}},
    {"no service",
     "cdma",
     {"set signal.pairs none", "set network.caps none"},
     {103, 1002, 1042},
     "caps",
     {{1002, 8, 0, 0}, {1042, 8, 0, 0}}},
};

TEST_F(NotifyDelivery, EachEventArrivesAsItsRecord)
{
    for (const DeliveryRow& row : kDeliveries) {
        SCOPED_TRACE(row.name);
        Start(row.model);
        for (const char* command : row.commands)
            sim->Command(command);
        for (const ULONG id : row.enabled)
            ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
        const std::vector<OrvNotifyRecord> records = Emit(row.event);
        ASSERT_EQ(records.size(), row.records.size());
        for (size_t i = 0; i < records.size(); ++i) {
            const size_t words = row.records[i].size() - 2;
            EXPECT_EQ(Flat(records[i], words), row.records[i]);
            EXPECT_TRUE(RestIsZero(records[i], 4 * words)) << "the record is cleared before it is filled";
        }
        ASSERT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    }
}

TEST_F(NotifyDelivery, LogsEachEvent)
{
    const struct {
        const char* event;
        ORV_NOTIFY enabled;
        const char* log;
    } rows[] = {
        {"power 3", 5, "GobiAPIPowerCallback: operatingMode = 3"},
        {"roaming 2", 1003, "GobiAPIRoamingIndicatorCallback: roaming = 2"},
        {"signal -70 2", 103, "GobiAPISignalStrengthCallback: signalStrength = -70, radioInterface = 2"},
        {"caps 6 8", 103, "GobiAPIDataCapabilities: g_DataCapsMask = 160"},
        {"rf 4 5 6", 114, "COrvNotify::RFinfoCallback: radioInterface = 4"},
        {"session 2 7", 1008, "COrvNotify::SessionStateCallback: state = 2, sessionEndReason = 7"},
        {"session 2 7", 1008, "(*orvNotifyIter).aNotify =1008 (*orvNotifyIter).dwCount = 1"},
        {"session 2 7", 1008, "COrvNotify::HandleSessionStateCallback LOOP"},
        {"session 2 7", 2029, "HandleSessionStateCallback just notify ORV_NOTIFY_PktSessionCall"},
        {"bytes 0x1FFFFFFFF 3", 1006, "COrvNotify::ByteTotalsCallback: totalBytesTX = -1, totalBytesRX = 3"},
        {"dormancy 2", 1028, "DormancyStatusCallback: dormancyStatus = 2"},
        {"activation 4", 1032, "Activation Status State = 4"},
        {"emergency-mode 1", 103, "Emergency Mode Callback"},
        {"sms 3 1", 500, "Gobi SMS CALLBACK Received, storageType = 3, g_GsmSmsSource = 0"},
        {"voicemail 0:1:2", 500, "VoiceMessageCallback"},
        {"phonebook-ready", 500, "AllSIMPhonebookInitDoneCallback"},
        {"omadm-state 4 0", 2269, "COrvNotify::OMADMStateCallback: sessionState = 4"},
        {"omadm-state 4 0", 2269, "omadmsessionstate.nState = 1284, sessionState = 4"},
        {"omadm-alert 4 9", 2270, "COrvNotify::OMADMAlertCallback: sessionType = 4, sessionID = 9"},
        {"omadm-alert 4 0", 2270, "ASSERTION FAILURE: ===>g_sessionID != 0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.log);
        Start("cdma");
        ASSERT_EQ(OrvNotify(row.enabled, 0), ORV_RCODE_OK);
        LogCapture log;
        Emit(row.event);
        EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        EXPECT_EQ(log.Find(row.log).module, "OrvNotify");
        ASSERT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    }
}

TEST_F(NotifyDelivery, ANewMessageWithoutAClientChangesNothing)
{
    Start("umts");
    ASSERT_EQ(OrvNotify(500, 0), ORV_RCODE_OK);
    Emit("sms 3 1");
    ASSERT_EQ(OrvDeRegisterCallback(client.Callback()), ORV_RCODE_OK);
    LogCapture log;
    EXPECT_EQ(Emit("sms 4 1").size(), 0u);
    EXPECT_EQ(Emit("sms 5 1").size(), 0u);
    EXPECT_EQ(log.Texts(), (Lines{"Gobi SMS CALLBACK Received, storageType = 4, g_GsmSmsSource = 3",
                                  "Gobi SMS CALLBACK Received, storageType = 5, g_GsmSmsSource = 3"}));
}

TEST_F(NotifyDelivery, EventsWithoutAClientAreDroppedSilently)
{
    Start("cdma");
    for (const ORV_NOTIFY id : {5u, 103u, 1003u, 1008u, 1006u, 1032u, 2269u, 2270u})
        OrvNotify(id, 0);
    ASSERT_EQ(OrvDeRegisterCallback(client.Callback()), ORV_RCODE_OK);
    LogCapture log;
    for (const char* event :
         {"session 2 0", "bytes 1 2", "activation 3", "nitz 2026 1 1 0 0 0 0 0 0", "voicemail 0:1:1"})
        EXPECT_EQ(Emit(event).size(), 0u) << event;
    EXPECT_EQ(log.Texts(), Lines()) << "neither traced nor suppressed";
    ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
    EXPECT_EQ(Emit("session 2 0").size(), 1u) << "what was enabled is still enabled for the next client";
}

TEST_F(NotifyDelivery, EventsOfASourceThatNobodyEnabledAreSuppressed)
{
    Start("cdma");
    ASSERT_EQ(OrvNotify(1008, 0), ORV_RCODE_OK);
    ASSERT_EQ(OrvNotify(5, 0), ORV_RCODE_OK);
    // The module refuses to stop, and goes on reporting.
    sim->Command("fail SetSessionStateCallback 15");
    sim->Command("fail SetPowerCallback 15");
    ASSERT_EQ(OrvStopNotify(1008, 0), ORV_RCODE_VENDOR_15);
    LogCapture log;
    EXPECT_EQ(Emit("session 2 0").size(), 0u);
    EXPECT_EQ(log.Count(kSuppress), 1) << log.Dump();
    ASSERT_EQ(OrvStopNotify(5, 0), ORV_RCODE_VENDOR_15);
    log.Clear();
    EXPECT_EQ(Emit("power 4").size(), 0u);
    EXPECT_EQ(log.Count(kSuppress), 1) << "the list is empty" << log.Dump();
}

TEST_F(NotifyDelivery, ResumeDeliversTheLastStrengthAgain)
{
    Start("umts");
    sim->Command("set signal.pairs none");
    sim->Command("set network.caps 1");
    ASSERT_EQ(OrvNotify(103, 0), ORV_RCODE_OK);
    Emit("signal -71 5");
    client.Clear();
    ASSERT_EQ(OrvHandleSuspend(2), ORV_RCODE_OK);
    ASSERT_EQ(OrvHandleResume(0), ORV_RCODE_OK);
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
    ASSERT_EQ(client.Records().size(), 1u);
    EXPECT_EQ(Flat(client.Records()[0], 2), (Words{103, 12, kMinus(71), kMinus(50)}));

    ASSERT_EQ(OrvStopNotify(103, 0), ORV_RCODE_OK);
    LogCapture log;
    ASSERT_EQ(OrvHandleResume(0), ORV_RCODE_OK);
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
    EXPECT_EQ(log.Count(kSuppress), 1) << log.Dump();
}

TEST_F(NotifyDelivery, HostileAnswersDuringADispatchAreBounded)
{
    Start("umts");
    for (const ORV_NOTIFY id : {103u, 1002u, 1003u})
        ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
    for (const char* entry : {"GetSignalStrengths", "GetServingNetworkCapabilities", "GetServingNetwork"})
        sim->Command(std::string("hostile ") + entry + " scribble");
    Emit("signal -70 5");
    Emit("roaming 1");
    std::string longest = "broadcast 0 0 1 ";
    for (int i = 0; i < 400; ++i)
        longest += "5A";
    ASSERT_EQ(OrvNotify(500, 0), ORV_RCODE_OK);
    LogCapture log;
    const std::vector<OrvNotifyRecord> records = Emit(longest);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].payload.CellBroadcast.uLength, 168);
    EXPECT_EQ(records[0].payload.CellBroadcast.aData[167], 0x5A);
    EXPECT_EQ(records[0].payload.CellBroadcast.uReserved, 0u);
    EXPECT_EQ(log.Count("Cell broadcast of 400 octets cut to 168"), 1);
}

TEST_F(NotifyDelivery, EventsAreDroppedWhenNoThreadIsToBeHad)
{
    Start("cdma");
    for (const ORV_NOTIFY id : {5u, 103u, 1003u, 114u, 2269u, 2270u})
        ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
    for (const char* event :
         {"power 0", "signal -70 1", "caps 6", "roaming 1", "rf 1 2 3", "omadm-state 1 0", "omadm-alert 5 1"}) {
        ASSERT_TRUE(platform_hooks::FailCall("CreateThread", 1, 1, 8));
        EXPECT_EQ(Emit(event).size(), 0u) << event;
    }
    platform_hooks::Reset();
    EXPECT_EQ(Emit("power 0").size(), 1u);
}

// --- what a client may do in its callback

TEST_F(NotifyDelivery, AClientMayCallTheInterfaceFromItsCallback)
{
    Start("umts");
    client.OnRecord([](const OrvNotifyRecord&) {
        OrvRadioPower power = {};
        EXPECT_EQ(OrvGetRadioPower(&power), ORV_RCODE_OK);
        EXPECT_EQ(OrvNotify(1003, 0), ORV_RCODE_OK);
    });
    ASSERT_EQ(OrvNotify(1008, 0), ORV_RCODE_OK);
    EXPECT_EQ(Emit("session 2 0").size(), 1u);
}

TEST_F(NotifyDelivery, AClientMayDeregisterItselfFromItsCallback)
{
    Start("umts");
    client.OnRecord([](const OrvNotifyRecord&) { OrvDeRegisterCallback(nullptr); });
    for (const ORV_NOTIFY id : {1008u, 2029u})
        ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
    EXPECT_EQ(Emit("session 2 0").size(), 1u) << "the second record has nobody to go to";
    EXPECT_EQ(Emit("session 2 0").size(), 0u);
}

TEST_F(NotifyDelivery, AClientMayDisableWhatComesNextFromItsCallback)
{
    Start("umts");
    client.OnRecord([](const OrvNotifyRecord&) {
        OrvStopNotify(2029, 0);
        OrvNotify(1007, 0);
    });
    for (const ORV_NOTIFY id : {1008u, 2029u})
        ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
    EXPECT_EQ(Emit("session 2 0").size(), 1u);
}

TEST_F(NotifyDelivery, AClientMayStartTheInterfaceAgainFromItsCallback)
{
    Start("umts");
    client.OnRecord([](const OrvNotifyRecord&) { EXPECT_EQ(OrvApiStartup(), ORV_RCODE_OK); });
    for (const ORV_NOTIFY id : {1008u, 2029u})
        ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
    EXPECT_EQ(Emit("session 2 0").size(), 1u) << "the registry was emptied under the walk";
}

TEST_F(NotifyDelivery, AnEventDuringShutDownIsDeliveredAndChangesNothing)
{
    Start("umts");
    ASSERT_EQ(OrvNotify(1008, 0), ORV_RCODE_OK);
    sim->Command("on QCWWANDisconnect emit session 2 0");
    client.Clear();
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    EXPECT_TRUE(platform_hooks::DrainThreads(10000));
    EXPECT_EQ(client.Records().size(), 1u);
}

} // namespace
