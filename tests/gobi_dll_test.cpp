// The binding: loading, look-ups, failures of either, and which kind of module it is.

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/gobi_dll.h"
#include "tests/support/log_capture.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

std::vector<std::string> g_lookups;

TEST(GobiDll, LooksUpEveryEntryPointInTheExactOrder)
{
    SimHarness sim("umts");
    g_lookups.clear();
    platform_hooks::WatchLookups([](const char* name, void*) { g_lookups.push_back(name); }, nullptr);
    COrvGobiDll gobi;
    ASSERT_TRUE(gobi.Initialize());
    ASSERT_TRUE(gobi.Initialize()) << "a second call does nothing";
    platform_hooks::Reset();

    std::ifstream file(TALVEK_SOURCE_DIRECTORY "/tests/vectors/lookup_order.txt");
    std::vector<std::string> expected;
    for (std::string line; std::getline(file, line);)
        expected.push_back(line);
    ASSERT_EQ(expected.size(), 221u);
    EXPECT_EQ(g_lookups, expected);
}

TEST(GobiDll, UnregistersEveryEventInTheExactOrder)
{
    SimHarness sim("umts");
    COrvGobiDll gobi;
    gobi.DisableCallbacks();
    EXPECT_EQ(sim.Journal(), Lines()) << "nothing is loaded, so nothing is called";
    ASSERT_TRUE(gobi.Initialize());
    sim.ClearJournal();
    gobi.DisableCallbacks();
    EXPECT_EQ(sim.Journal(), (Lines{"SetSessionStateCallback(null)",
                                    "SetDataBearerCallback(null)",
                                    "SetDormancyStatusCallback(null)",
                                    "SetMobileIPStatusCallback(null)",
                                    "SetActivationStatusCallback(null)",
                                    "SetPowerCallback(null)",
                                    "SetRoamingIndicatorCallback(null)",
                                    "SetSignalStrengthCallback(null, 0, null)",
                                    "SetRFInfoCallback(null)",
                                    "SetNewSMSCallback(null)",
                                    "SetNewSMSCBCallback(null)",
                                    "SetMsgWaitingCallback(null)",
                                    "SetPhonebookRecordReadCallback(null)",
                                    "SetNetworkTimeCallback(null)",
                                    "SetSystemSelectionPrefCallback(null)",
                                    "SetDataCapabilitiesCallback(null)",
                                    "SetByteTotalsCallback(null, 0)",
                                    "SetOMADMStateCallback(null)",
                                    "SetOMADMAlertCallback(null)",
                                    "SetCallInfoCallback(null)",
                                    "SetInfoRecCallback(null)",
                                    "SetUSSDNotificationCallback(null)",
                                    "SetAllPhonebookInitDoneCallback(null)",
                                    "SetEmergencyListCallback(null)",
                                    "SetORVOMAEXEventCallback(null)"}));
}

TEST(GobiDll, StaysUselessAfterALoadThatFailed)
{
    SimHarness sim("umts");
    ScratchFolder empty;
    const char* const broken[] = {"absent", "truncated"};
    for (const char* kind : broken) {
        SCOPED_TRACE(kind);
        sim.SetLibraryPath(empty.Path(""));
        if (std::string(kind) == "truncated")
            empty.Write("libGobiApi.so", std::string("\x7F"
                                                     "ELF\2\1\1",
                                                     7));
        COrvGobiDll gobi;
        EXPECT_FALSE(gobi.Initialize());
        EXPECT_TRUE(gobi.IsInitialized());
        EXPECT_TRUE(gobi.Initialize()) << "the load is not tried again";
        EXPECT_EQ(gobi.Connect(), 1u);
        EXPECT_EQ(gobi.Disconnect(), 1u);
        ULONG mode = 77;
        EXPECT_EQ(gobi.GetPower(&mode), 1u);
        EXPECT_EQ(mode, 77u);
        EXPECT_EQ(gobi.SetDeviceRemovalCallback(nullptr), 1u);
        EXPECT_EQ(COrvGobiDll::SetPowerCB(nullptr), 1u);
        EXPECT_EQ(gobi.GetWirelessTech(), ORV_TECH_UNDETERMINED);
        EXPECT_EQ(gobi.GetDLLVersion(), 0u);
        gobi.DisableCallbacks();
    }
}

TEST(GobiDll, TriesAgainWhenAMandatoryEntryPointIsMissing)
{
    SimHarness sim("umts");
    for (const char* variant : {"no_connect", "no_disconnect"}) {
        SCOPED_TRACE(variant);
        sim.SetLibraryPath(std::string(TALVEK_VARIANTS_DIRECTORY "/") + variant);
        COrvGobiDll gobi;
        EXPECT_FALSE(gobi.Initialize());
        EXPECT_FALSE(gobi.IsInitialized());
        EXPECT_EQ(gobi.Connect(), 1u) << "cleared with the rest";
        EXPECT_EQ(COrvGobiDll::mpFNSetPowerCB, nullptr);
        sim.SetLibraryPath(TALVEK_SIM_DIRECTORY);
        EXPECT_TRUE(gobi.Initialize());
        EXPECT_EQ(gobi.Connect(), 0u);
    }
}

// The member keeps the address of a library that is gone; nothing may call it.
TEST(GobiDll, NeverCallsTheEmergencyListSetterOfAnUnloadedLibrary)
{
    SimHarness sim("umts");
    sim.SetLibraryPath(TALVEK_VARIANTS_DIRECTORY "/no_disconnect");
    COrvGobiDll gobi;
    ASSERT_FALSE(gobi.Initialize());
    EXPECT_NE(COrvGobiDll::mpFNSetEmergencyListCB, nullptr);
    EXPECT_EQ(COrvGobiDll::mpFNSetOMAEXEventCB, nullptr);
    LogCapture log;
    EXPECT_EQ(COrvGobiDll::SetEmergencyListCB(nullptr), 1u);
    EXPECT_EQ(COrvGobiDll::SetAllPbInitDoneCB(nullptr), 1u);
    EXPECT_EQ(COrvGobiDll::SetOMAEXEventCB(nullptr), 1u);
    EXPECT_EQ(COrvGobiDll::SetVoiceMessageCB(nullptr), 1u);
    EXPECT_EQ(log.Texts(), (Lines{"mpFNSetEmergencyListCB is NULL!", "mpFNSetAllPbInitDoneCB is NULL!",
                                  "mpFNSetOMAEXEventCB is NULL!", "SetVoiceMessageCB 1"}));
    gobi.DisableCallbacks();
}

TEST(GobiDll, AnswersOneWithoutAnOptionalEntryPoint)
{
    SimHarness sim("umts");
    sim.SetLibraryPath(TALVEK_VARIANTS_DIRECTORY "/no_rtre_config");
    COrvGobiDll gobi;
    ASSERT_TRUE(gobi.Initialize());
    LogCapture log;
    BYTE configuration = 7, supported = 7;
    EXPECT_EQ(gobi.GetRTREConfig(&configuration, &supported), 1u);
    EXPECT_EQ(configuration, 7);
    EXPECT_EQ(supported, 7);
    EXPECT_EQ(log.Texts(), Lines{"mpFnGetRTREConfig = NULL"});
}

TEST(GobiDll, ClearsTheSharedSettersWithAnyInstance)
{
    SimHarness sim("umts");
    COrvGobiDll first;
    ASSERT_TRUE(first.Initialize());
    {
        COrvGobiDll second;
        ASSERT_TRUE(second.Initialize());
    }
    EXPECT_EQ(COrvGobiDll::SetPowerCB(nullptr), 1u) << "the second instance's end cleared it for all";
    EXPECT_EQ(COrvGobiDll::SetEmergencyListCB(nullptr), 0u) << "which is not cleared, and a library is loaded";
    ULONG mode = 0;
    EXPECT_EQ(first.GetPower(&mode), 0u) << "the instance's own table is its own";
}

TEST(GobiDll, DecidesTheTechnology)
{
    const struct {
        const char* name;
        std::vector<const char*> commands;
        ULONG technology;
        Lines log;
    } rows[] = {
        {"KT52, carrier 5", {"set package.model KT52", "set package.carrier 5"}, 1, {}},
        {"KT52, carrier 101", {"set package.model \"a KT52 b\"", "set package.carrier 101"}, 1, {}},
        {"KT52, carrier 11", {"set package.model KT52", "set package.carrier 11"}, 1, {}},
        {"KT52, carrier 102", {"set package.model KT52", "set package.carrier 102"}, 1, {}},
        {"KT52, carrier 103", {"set package.model KT52", "set package.carrier 103"}, 2, {}},
        {"KT52, carrier 1011", {"set package.model KT52", "set package.carrier 1011"}, 2, {}},
        {"KT52, no carrier", {"set package.model KT52", "set package.carrier \"\""}, 2, {}},
        {"other model, technology 0", {"set package.model KT5", "set firmware.technology 0"}, 1, {}},
        {"other model, technology 1", {"set package.model kt52", "set firmware.technology 1"}, 2, {}},
        {"package query fails, technology 0",
         {"fail OrvGetCwePkgsInfo 3", "set firmware.technology 0"},
         1,
         {"GetCwePkgsInfo returns 3"}},
        {"package query fails, technology 7",
         {"fail OrvGetCwePkgsInfo 3", "set firmware.technology 7"},
         2,
         {"GetCwePkgsInfo returns 3"}},
        {"KT52, firmware query fails",
         {"set package.model KT52", "set package.carrier 5", "fail GetFirmwareInfo 9"},
         1,
         {"GetFirmwareInfo returns 9"}},
        {"other model, firmware query fails",
         {"set package.model XX", "fail GetFirmwareInfo 9"},
         0,
         {"GetFirmwareInfo returns 9"}},
        {"both fail",
         {"fail OrvGetCwePkgsInfo 3", "fail GetFirmwareInfo 9"},
         0,
         {"GetCwePkgsInfo returns 3", "GetFirmwareInfo returns 9"}},
        {"unterminated texts, lengths beyond the buffers", {"hostile OrvGetCwePkgsInfo scribble"}, 2, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SimHarness sim("umts");
        COrvGobiDll gobi;
        ASSERT_TRUE(gobi.Initialize());
        for (const char* command : row.commands)
            sim.Command(command);
        LogCapture log;
        EXPECT_EQ(gobi.GetWirelessTech(), row.technology);
        EXPECT_EQ(log.Texts(), row.log);
    }
}

TEST(GobiDll, LogsTheStatusesThatAreLogged)
{
    SimHarness sim("umts");
    COrvGobiDll gobi;
    ASSERT_TRUE(gobi.Initialize());
    for (const char* entry : {"QCWWANConnect", "OrvSetDeviceRemovalCallback", "GetSignalStrengths",
                              "SetSessionStateCallback", "SetMsgWaitingCallback"})
        sim.Command(std::string("fail ") + entry + " 9");
    LogCapture log;
    EXPECT_EQ(gobi.Connect(), 9u);
    EXPECT_EQ(gobi.SetDeviceRemovalCallback(nullptr), 9u);
    ULONG count = 0;
    EXPECT_EQ(gobi.GetSignalStrengths(&count, nullptr, nullptr), 9u);
    EXPECT_EQ(COrvGobiDll::SetVoiceMessageCB(nullptr), 9u);
    EXPECT_EQ(gobi.SetPower(4), 0u);
    EXPECT_EQ(log.Texts(), (Lines{"GobiConnect failed status = 9", "SetDeviceRemovalCallback returns status = 9",
                                  "GetSignalStrengths returns status = 9", "SetVoiceMessageCB 9",
                                  "SetPower powerMode = 4 returns status = 0"}));
    log.Clear();
    EXPECT_EQ(COrvGobiDll::SetSessionStateCB(nullptr), 9u);
    ASSERT_EQ(log.Texts().size(), 1u);
    char expected[100];
    snprintf(expected, sizeof expected, "Calling mpFNSetSessionStateCB = 0x%x return status = 9",
             static_cast<unsigned>(reinterpret_cast<uintptr_t>(COrvGobiDll::mpFNSetSessionStateCB)));
    EXPECT_EQ(log.Texts()[0], expected);
    for (const LogCapture::Record& record : log.Records())
        EXPECT_EQ(record.module, "OrvGobiDll");
}

} // namespace
