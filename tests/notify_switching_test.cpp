// Enabling and disabling notifications, suspend and resume: what the module is told, and when.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/talvek.h"
#include "tests/support/log_capture.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

const Lines kSignalOn = {"SetNetworkTimeCallback(set)", "SetSignalStrengthCallback(set, 5, [-105 -95 -85 -75 -65])",
                         "SetDataCapabilitiesCallback(set)", "SetSystemSelectionPrefCallback(set)"};
const Lines kSignalOff = {"SetSignalStrengthCallback(null, 0, null)", "SetDataCapabilitiesCallback(null)"};
const Lines kSmsOn = {"SetAllPhonebookInitDoneCallback(set)",
                      "SetPhonebookRecordReadCallback(set)",
                      "SetNewSMSCBCallback(set)",
                      "SetNewSMSCallback(set)",
                      "SetMsgWaitingCallback(set)",
                      "SetEmergencyListCallback(set)"};
const Lines kSmsOff = {"SetPhonebookRecordReadCallback(null)", "SetAllPhonebookInitDoneCallback(null)",
                       "SetNewSMSCBCallback(null)", "SetMsgWaitingCallback(null)", "SetNewSMSCallback(null)"};
const Lines kCallOn = {"SetDormancyStatusCallback(set)", "SetSessionStateCallback(set)", "SetCallInfoCallback(set)",
                       "SetInfoRecCallback(set)", "SetUSSDNotificationCallback(set)"};
const Lines kCallOff = {"SetDormancyStatusCallback(null)", "SetSessionStateCallback(null)"};
const Lines kOmadmOn = {"SetOMADMStateCallback(set)", "SetORVOMAEXEventCallback(set)"};
const Lines kOmadmOff = {"SetOMADMStateCallback(null)", "SetORVOMAEXEventCallback(null)"};
const Lines kRoamingOn = {"SetRoamingIndicatorCallback(set)"};
const Lines kRoamingOff = {"SetRoamingIndicatorCallback(null)"};
const Lines kRFOn = {"SetRFInfoCallback(set)"};
const Lines kRFOff = {"SetRFInfoCallback(null)"};
const Lines kSessionOn = {"SetSessionStateCallback(set)"};
const Lines kSessionOff = {"SetSessionStateCallback(null)"};
const Lines kBytesOn = {"SetByteTotalsCallback(set, 1)"};
const Lines kBytesOff = {"SetByteTotalsCallback(null, 1)"};
const Lines kNothing;

const struct {
    ORV_NOTIFY id;
    Lines on;
    Lines off;
} kRows[] = {
    {5, {"SetPowerCallback(set)"}, {"SetPowerCallback(null)"}},
    {105, {"SetPowerCallback(set)"}, {"SetPowerCallback(null)"}},
    {103, kSignalOn, kSignalOff},
    {114, kRFOn, kRFOff},
    {500, kSmsOn, kSmsOff},
    {501, kNothing, kNothing},
    {1000, kRFOn, kRFOff},
    {1002, kSignalOn, kSignalOff},
    {1003, kRoamingOn, kRoamingOff},
    {1006, kBytesOn, kBytesOff},
    {1007, kSessionOn, kSessionOff},
    {1008, kSessionOn, kSessionOff},
    {1012, kSessionOn, kSessionOff},
    {1028, {"SetDormancyStatusCallback(set)"}, {"SetDormancyStatusCallback(null)"}},
    {1027, kCallOn, kCallOff},
    {1032, {"SetActivationStatusCallback(set)"}, {"SetActivationStatusCallback(null)"}},
    {1039, kSignalOn, kSignalOff},
    {1040, kSignalOn, kSignalOff},
    {1041, kRoamingOn, kRoamingOff},
    {1042, kSignalOn, kSignalOff},
    {2012, kBytesOn, kBytesOff},
    {2013, kNothing, kNothing},
    {2016, kNothing, kNothing},
    {2017, kNothing, kNothing},
    {2018, {"SetPowerCallback(set)"}, {"SetPowerCallback(null)"}},
    {2019, kNothing, kNothing},
    {2027, kSignalOn, kSignalOff},
    {2029, kSessionOn, kSessionOff},
    {2032, kSignalOn, kSignalOff},
    {2269, kOmadmOn, kOmadmOff},
    {2270, {"SetOMADMAlertCallback(set)"}, {"SetOMADMAlertCallback(null)"}},
};

std::string Text(const char* before, ULONG id, const char* after) { return before + std::to_string(id) + after; }

// Started, no module selected: nothing is enabled yet.
class NotifySwitching : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        sim.ClearJournal();
    }
    // What the module was told since the last call.
    Lines Told()
    {
        const Lines journal = sim.Journal();
        sim.ClearJournal();
        return journal;
    }

    SimHarness sim{"umts:5120"};
};

TEST_F(NotifySwitching, TellsTheModuleForTheFirstAndTheLastOfASource)
{
    ASSERT_EQ(std::size(kRows), 31u);
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.id);
        LogCapture log;
        EXPECT_EQ(OrvNotify(row.id, 0), ORV_RCODE_OK);
        EXPECT_EQ(Told(), row.on);
        EXPECT_EQ(log.Count(Text("ORV_NOTIFY = ", row.id, " is supported but don't know how to alert the modem yet")),
                  row.on.empty() ? 1 : 0);
        EXPECT_EQ(OrvNotify(row.id, 0), ORV_RCODE_OK);
        EXPECT_EQ(Told(), kNothing) << "known already";
        EXPECT_EQ(OrvStopNotify(row.id, 0), ORV_RCODE_OK);
        EXPECT_EQ(Told(), row.off) << "one disabling ends it, however often it was enabled";
        EXPECT_EQ(log.Count(Text("ORV_NOTIFY = ", row.id, " supported but not sure how to handle yet")),
                  row.off.empty() ? 1 : 0);
        EXPECT_EQ(log.Count("ASSERTION FAILURE: ===>bLastCountForNotifyItem == TRUE"), 1)
            << "its count was two" << log.Dump();
    }
}

TEST_F(NotifySwitching, RefusesEveryOtherIdentifier)
{
    for (const ORV_NOTIFY id : {0u, 1u, 116u, 502u, 999u, 1009u, 1030u, 2014u, 2015u, 2020u, 2035u, 2280u, 2281u, 2283u,
                                2284u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(id);
        LogCapture log;
        EXPECT_EQ(OrvNotify(id, 0), ORV_RCODE_UNSUPPORTED);
        EXPECT_EQ(OrvStopNotify(id, 0), ORV_RCODE_UNSUPPORTED);
        const std::string refused = "ORV_NOTIFY = " + std::to_string(static_cast<int>(id)) + " is NOT supported";
        EXPECT_EQ(log.Texts(), (Lines{refused, "Got GobiAPI error = 1025", refused, "Got GobiAPI error = 1025"}));
    }
    EXPECT_EQ(Told(), kNothing);
}

TEST(NotifySwitchingGuard, AnswersSeventeenBeforeStartUp)
{
    SimHarness sim("umts");
    EXPECT_EQ(OrvNotify(5, 0), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(OrvStopNotify(999, 0), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(OrvRegisterCallback(nullptr, 0), ORV_RCODE_BAD_PARAMETER) << "registration needs no start-up";
}

TEST_F(NotifySwitching, LogsTheRegistration)
{
    ClientRecorder client;
    LogCapture log;
    EXPECT_EQ(OrvRegisterCallback(nullptr, 0x123456789ABCDEF0u), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(log.Texts(), (Lines{"OrvRegisterCallback", "handle: 0x0 filter: 0x123456789abcdef0"}));
    log.Clear();
    EXPECT_EQ(OrvRegisterCallback(client.Callback(), 5), ORV_RCODE_OK);
    char handle[100];
    snprintf(handle, sizeof handle, "handle: 0x%x filter: 0x0000000000000005",
             static_cast<unsigned>(reinterpret_cast<uintptr_t>(client.Callback())));
    EXPECT_EQ(log.Texts(), (Lines{"OrvRegisterCallback", handle}));
    log.Clear();
    EXPECT_EQ(OrvDeRegisterCallback(nullptr), ORV_RCODE_OK);
    EXPECT_EQ(log.Texts(), Lines{"OrvDeRegisterCallback"});
}

TEST_F(NotifySwitching, SharesASourceBetweenItsIdentifiers)
{
    EXPECT_EQ(OrvNotify(1003, 0), ORV_RCODE_OK);
    EXPECT_EQ(OrvNotify(1041, 0), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kRoamingOn);
    EXPECT_EQ(OrvStopNotify(1003, 0), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kNothing);
    EXPECT_EQ(OrvStopNotify(1003, 0), ORV_RCODE_OK) << "not enabled, but the source is active";
    EXPECT_EQ(Told(), kNothing);
    EXPECT_EQ(OrvStopNotify(1041, 0), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kRoamingOff);
}

TEST_F(NotifySwitching, StopsWhatWasNeverEnabledAllTheSame)
{
    LogCapture log;
    EXPECT_EQ(OrvStopNotify(1006, 0), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kBytesOff);
    EXPECT_EQ(log.Texts(), Lines{"OrvNotify = 1006 has never been enabled yet. Stop notification with modem anyway"});
}

TEST_F(NotifySwitching, TheCallBundleEnablesItsFourAndLeavesItsThreeEvents)
{
    LogCapture log;
    EXPECT_EQ(OrvNotify(1027, 0), ORV_RCODE_OK);
    EXPECT_EQ(log.Texts(), (Lines{"SetSessionStateCB for aNotify = 1007, setCBResult = 0",
                                  "ORV_NOTIFY_CallNotificationStatus enabled, setCBResult = 0",
                                  "ORV_NOTIFY_CallNotificationStatus enabled, setCBResult = 0",
                                  "ORV_NOTIFY_CallNotificationStatus enabled, setCBResult = 0"}));
    Told();
    for (const ORV_NOTIFY id : {1028u, 1007u, 1008u, 1012u}) {
        EXPECT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
        EXPECT_EQ(Told(), kNothing) << id << " is enabled with it";
    }
    EXPECT_EQ(OrvNotify(1027, 0), ORV_RCODE_OK);
    EXPECT_EQ(OrvStopNotify(1027, 0), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kCallOff);
}

TEST_F(NotifySwitching, LogsHowTheSettersAnswered)
{
    for (const char* entry :
         {"SetNetworkTimeCallback", "SetSystemSelectionPrefCallback", "SetAllPhonebookInitDoneCallback",
          "SetPhonebookRecordReadCallback", "SetNewSMSCBCallback", "SetNewSMSCallback", "SetMsgWaitingCallback",
          "SetEmergencyListCallback", "SetORVOMAEXEventCallback"})
        sim.Command(std::string("fail ") + entry + " 15");
    LogCapture log;
    EXPECT_EQ(OrvNotify(103, 0), ORV_RCODE_VENDOR_15);
    EXPECT_EQ(log.Texts(), (Lines{"SetNITZCB enabled, setCBResult = 15", "SetEmergencyModeCB enabled, setCBResult = 15",
                                  "Got GobiAPI error = 15"}));
    EXPECT_EQ(OrvNotify(103, 0), ORV_RCODE_OK) << "it counts as enabled";
    log.Clear();
    EXPECT_EQ(OrvNotify(500, 0), ORV_RCODE_VENDOR_15);
    EXPECT_EQ(log.Texts(), (Lines{"SetAllPbInitDoneCB enabled, setCBResult = 15",
                                  "SetPhonebookRecordReadCB enabled, setCBResult = 15",
                                  "SetNewSMSCBCB failed, setCBResult = 0xf", "SetNewSMSCB failed, setCBResult = 0xf",
                                  "SetVoiceMessageCB 15", "SetVoiceMessageCB failed, setCBResult = 0xf",
                                  "SetEmergencyListCB failed, setCBResult = 0xf", "Got GobiAPI error = 15"}));
    log.Clear();
    EXPECT_EQ(OrvStopNotify(500, 0), ORV_RCODE_VENDOR_15);
    EXPECT_EQ(log.Texts(),
              (Lines{"COrvNotify::Remove SetPhonebookRecordReadCB failed, setCBResult = 0xf",
                     "COrvNotify::Remove SetAllPbInitDoneCB failed, setCBResult = 0xf",
                     "COrvNotify::Remove SetNewSMSCBCB failed, setCBResult = 0xf", "SetVoiceMessageCB 15",
                     "COrvNotify::Remove SetVoiceMessageCB failed, setCBResult = 0xf",
                     "COrvNotify::Remove SetNewSMSCB failed, setCBResult = 0xf", "Got GobiAPI error = 15"}));
    log.Clear();
    EXPECT_EQ(OrvNotify(2269, 0), ORV_RCODE_VENDOR_15);
    EXPECT_EQ(log.Texts(), (Lines{"SetOMAEXEventCB enabled, setCBResult = 15", "Got GobiAPI error = 15"}));
}

TEST_F(NotifySwitching, TheStatusOfAGroupIsThatOfItsNamedSetter)
{
    const struct {
        ORV_NOTIFY id;
        const char* failing;
        ULONG on;
        ULONG off;
    } rows[] = {
        {103, "SetSignalStrengthCallback", 0, 7},    {103, "SetDataCapabilitiesCallback", 0, 0},
        {103, "SetNetworkTimeCallback", 0, 0},       {500, "SetNewSMSCallback", 0, 7},
        {500, "SetEmergencyListCallback", 7, 0},     {500, "SetMsgWaitingCallback", 0, 0},
        {1027, "SetCallInfoCallback", 0, 0},         {1027, "SetUSSDNotificationCallback", 7, 0},
        {1027, "SetDormancyStatusCallback", 0, 0},   {2269, "SetOMADMStateCallback", 0, 0},
        {2270, "SetOMADMAlertCallback", 7, 7},       {1006, "SetByteTotalsCallback", 7, 7},
        {1032, "SetActivationStatusCallback", 7, 7},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.failing) + " for " + std::to_string(row.id));
        sim.Command(std::string("fail ") + row.failing + " 15");
        EXPECT_EQ(OrvNotify(row.id, 0), row.on);
        EXPECT_EQ(OrvStopNotify(row.id, 0), row.off);
        sim.Command("clear all");
    }
}

TEST_F(NotifySwitching, SuspendSwitchesTheNoisySourcesOffAndResumeOnAgain)
{
    for (const ORV_NOTIFY id : {1040u, 1000u, 1041u, 1006u})
        ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
    Told();
    EXPECT_EQ(OrvHandleSuspend(2), ORV_RCODE_OK);
    EXPECT_EQ(Told(), (Lines{"SetSignalStrengthCallback(null, 0, null)", "SetDataCapabilitiesCallback(null)",
                             "SetRFInfoCallback(null)", "SetRoamingIndicatorCallback(null)"}));
    EXPECT_EQ(OrvNotify(103, 0), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kNothing) << "the bookkeeping is as it was";
    EXPECT_EQ(OrvHandleResume(0), ORV_RCODE_OK);
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
    EXPECT_EQ(Told(),
              (Lines{"SetSignalStrengthCallback(set, 5, [-105 -95 -85 -75 -65])", "SetDataCapabilitiesCallback(set)",
                     "SetRFInfoCallback(set)", "SetRoamingIndicatorCallback(set)"}));
}

TEST_F(NotifySwitching, SuspendNamesTheSourcesThatAreNotActive)
{
    ASSERT_EQ(OrvNotify(1040, 0), ORV_RCODE_OK);
    sim.Command("fail SetSignalStrengthCallback 15");
    Told();
    LogCapture log;
    EXPECT_EQ(OrvHandleSuspend(2), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kSignalOff) << "103 shares its source with 1040";
    EXPECT_EQ(log.Texts(), (Lines{"Fail to disable callback for theNotify = 103 with setCBResult = 15",
                                  "Couldn't find OrvNotify = 114 in the callbacklist",
                                  "Couldn't find OrvNotify = 1003 in the callbacklist"}));
    log.Clear();
    EXPECT_EQ(OrvHandleResume(0), ORV_RCODE_OK);
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
    EXPECT_EQ(log.Count("Fail to enable callback for theNotify = 103 with setCBResult = 15"), 1) << log.Dump();
    EXPECT_EQ(log.Count("Couldn't find OrvNotify = 114 in the callbacklist"), 1);
    EXPECT_EQ(log.Count("About to return from OrvHandleResume"), 1);
}

TEST_F(NotifySwitching, ResumeWithoutAThreadChangesNothing)
{
    ASSERT_EQ(OrvNotify(103, 0), ORV_RCODE_OK);
    Told();
    ASSERT_TRUE(platform_hooks::FailCall("CreateThread", 1, 1, 8));
    EXPECT_EQ(OrvHandleResume(0), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kNothing);
    EXPECT_EQ(platform_hooks::RunningThreads(), 0u);
}

TEST_F(NotifySwitching, StartUpForgetsWhatWasEnabled)
{
    ASSERT_EQ(OrvNotify(1003, 0), ORV_RCODE_OK);
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    Told();
    EXPECT_EQ(OrvNotify(1003, 0), ORV_RCODE_OK);
    EXPECT_EQ(Told(), kRoamingOn);
}

} // namespace
