// Start-up, discovery, selection, suspend and resume, shut-down: each with its failures.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <string.h>
#include <sys/file.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/talvek.h"
#include "tests/support/log_capture.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

OrvAirServer Server(ULONG device_id)
{
    OrvAirServer record = {};
    record.uDeviceID = device_id;
    return record;
}

ORV_RCODE Select(ULONG device_id)
{
    OrvAirServer record = Server(device_id);
    return OrvSelectAirServer(&record);
}

TEST(Lifecycle, RunsFromStartUpToShutDownOnEitherTechnology)
{
    const struct {
        const char* model;
        ULONG device_id;
        ULONG technology;
    } rows[] = {{"cdma:5101", 0x5101, 1}, {"cdma:5111", 0x5111, 1}, {"umts:5120", 0x5120, 2}, {"umts:5141", 0x5141, 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.model);
        SimHarness sim(row.model);
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        OrvAirServerList list;
        memset(&list, 0xAA, sizeof list);
        ASSERT_EQ(OrvGetAvailAirServers(&list), ORV_RCODE_OK);
        EXPECT_EQ(list.numAirServers, 1u);
        EXPECT_EQ(list.airServers[0].uDeviceID, row.device_id);
        EXPECT_EQ(list.sizeStruct, 0xAAAAAAAAu) << "the caller's sizes are not written";
        EXPECT_EQ(list.airServers[0].sizeStruct, 0xAAAAAAAAu);
        ASSERT_EQ(OrvSelectAirServer(&list.airServers[0]), ORV_RCODE_OK);

        OrvAirServerInfo info;
        memset(&info, 0xAA, sizeof info);
        ASSERT_EQ(OrvGetAirServerInfo(list.airServers[0], &info), ORV_RCODE_OK);
        EXPECT_EQ(std::u16string(info.szName), Widen(sim.Command("get module.device-id")));
        EXPECT_EQ(info.eTechnology, row.technology);
        EXPECT_EQ(info.eClass, 0u);
        EXPECT_EQ(info.eInterface, 3u);
        EXPECT_EQ(info.uReserved[0], 0xAAAAAAAAu) << "not written";

        ASSERT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
        EXPECT_EQ(OrvApiStartup(), ORV_RCODE_OK) << "may be started again";
        EXPECT_EQ(Select(row.device_id), ORV_RCODE_OK);
        EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    }
}

TEST(Lifecycle, SelectionAsksTheModuleInTheExactOrder)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    sim.ClearJournal();
    ASSERT_EQ(Select(0x5120), ORV_RCODE_OK);
    EXPECT_EQ(sim.Journal(),
              (Lines{"QCWWANConnect()", "OrvSetDeviceRemovalCallback(set)",
                     "OrvGetCwePkgsInfo(20, 85, 85, 15, 85, 20, 10)", "GetFirmwareInfo()", "GetRTREConfig(0, 0)",
                     "SetPowerCallback(set)", "GetFirmwareRevisions(85, 85, 85)"}));
    EXPECT_EQ(sim.Command("at log"), "AT+CMEE=1");
    sim.ClearJournal();
    ASSERT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    EXPECT_EQ(sim.Journal(), (Lines{"OrvSetDeviceRemovalCallback(null)", "QCWWANDisconnect()"}));
}

TEST(Lifecycle, ACdmaModuleNeedsNoPort)
{
    SimHarness sim("cdma");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    LogCapture log;
    ASSERT_EQ(Select(0x5101), ORV_RCODE_OK);
    EXPECT_EQ(sim.Command("at log"), "");
    for (const std::string& text : log.Texts())
        EXPECT_EQ(text.find("AT PORT"), std::string::npos) << text;
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
}

TEST(Lifecycle, LogsTheStepsOfASelection)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    sim.Command("set identity.pri 01234567");
    LogCapture log;
    ASSERT_EQ(Select(20768), ORV_RCODE_OK);
    EXPECT_EQ(log.Find("OrvSelectAirServer").function, "WriteLog");
    EXPECT_EQ(log.Find("OrvSelectAirServer").kind, 1);
    EXPECT_EQ(log.Find("Device ID: 20768").function, "TBD_Output");
    EXPECT_EQ(log.Find("Device ID: 20768").kind, 1);
    EXPECT_EQ(log.Find("PRI version is = 01234567").module, "TALVEK");
    EXPECT_GT(log.Find("PRI version is = 01234567").line, 0);
    const std::string port = sim.Command("serial name");
    EXPECT_EQ(log.Count("AT PORT NAME detected is " + port), 1) << log.Dump();
    EXPECT_EQ(log.Count("Final PortName =  " + port + ": "), 1) << log.Dump();
    EXPECT_EQ(log.Count("AT+CMEE=1 AT cmd error string = AT+CMEE=1\r\r\nOK\r\n"), 1) << log.Dump();
    EXPECT_EQ(log.Count("Mobile Termination Error Values set to Numeric"), 1);
    log.Clear();
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    EXPECT_EQ(log.Texts(), (Lines{"OrvApiShutdown", "OrvApiShutdown::Inside  ORVSYNCBLOCK"}));
}

TEST(Lifecycle, RefusesEveryCallBeforeStartUp)
{
    SimHarness sim("umts:5120");
    OrvAirServerList list = {};
    OrvAirServer record = Server(0x5120);
    OrvAirServerInfo info = {};
    LogCapture log;
    EXPECT_EQ(OrvGetAvailAirServers(&list), ORV_RCODE_FAILED);
    EXPECT_EQ(list.numAirServers, 0u);
    EXPECT_EQ(OrvSelectAirServer(&record), ORV_RCODE_API_NOT_INIT);
    EXPECT_EQ(log.Find("API not initialized").kind, 2);
    EXPECT_EQ(OrvSelectAirServer(nullptr), ORV_RCODE_API_NOT_INIT) << "the guard comes first";
    EXPECT_EQ(OrvGetAirServerInfo(record, &info), ORV_RCODE_API_NOT_INIT);
    log.Clear();
    EXPECT_EQ(OrvHandleSuspend(2), ORV_RCODE_API_NOT_INIT);
    EXPECT_EQ(OrvHandleResume(0), ORV_RCODE_API_NOT_INIT);
    EXPECT_EQ(log.Texts(), (Lines{"OrvHandleSuspend: API not initialized", "OrvHandleResume: API not initialized"}));
    EXPECT_EQ(log.Find("OrvHandleResume: API not initialized").function, "LogW");
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_FAILED) << "no guard: the vendor's disconnect is missing";
    EXPECT_EQ(sim.Journal(), Lines());
}

TEST(Lifecycle, ReadsTheDeviceFromTheRegistry)
{
    const std::string refused = "Vid = 0 and Pid = 0, do not match";
    const struct {
        const char* name;
        std::string value;
        ULONG device_id; // 0: refused
        std::string last_log;
    } rows[] = {
        {"accepted", "VID_3D5E&PID_5101", 0x5101, ""},
        {"hex digits of either case, text behind", "VID_3d5e&PID_5141&MI_00", 0x5141, ""},
        {"blanks and prefix as scanf takes them", "VID_ 0x3D5E&PID_\t+5111", 0x5111, ""},
        {"another product", "VID_3D5E&PID_5102", 0, "Vid = 15710 and Pid = 20738, do not match"},
        {"another vendor", "VID_3D5F&PID_5101", 0, "Vid = 15711 and Pid = 20737, do not match"},
        {"bus prefix", "USB\\\\VID_3D5E&PID_5101", 0, refused},
        {"other case", "vid_3D5E&PID_5101", 0, refused},
        {"no product", "VID_3D5E", 0, "Vid = 15710 and Pid = 0, do not match"},
        {"empty", "", 0, refused},
        {"258 characters", "VID_3D5E&PID_5101" + std::string(258 - 17, 'x'), 0x5101, ""},
        {"259 characters", "VID_3D5E&PID_5101" + std::string(259 - 17, 'x'), 0x5101, ""},
        {"400 characters", "VID_3D5E&PID_5101" + std::string(400 - 17, 'x'), 0,
         "Failed to read Device ID, error = 234"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SimHarness sim("umts:5120");
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        sim.WriteRegistry(row.value, "");
        OrvAirServerList list = {};
        LogCapture log;
        EXPECT_EQ(OrvGetAvailAirServers(&list), row.device_id ? ORV_RCODE_OK : ORV_RCODE_FAILED);
        EXPECT_EQ(list.numAirServers, row.device_id ? 1u : 0u);
        EXPECT_EQ(list.airServers[0].uDeviceID, row.device_id);
        ASSERT_FALSE(log.Texts().empty());
        if (!row.last_log.empty()) {
            EXPECT_EQ(log.Texts().back(), row.last_log);
        }
    }
}

TEST(Lifecycle, LogsWhatItReadsFromTheRegistry)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    OrvAirServerList list = {};
    LogCapture log;
    ASSERT_EQ(OrvGetAvailAirServers(&list), ORV_RCODE_OK);
    EXPECT_EQ(log.Texts(),
              (Lines{"OrvGetAvailAirServers",
                     "DEBUG: vidpidStr detected is VID_3D5E&PID_5120, iVid = 3d5e, iPid = 0x5120; 20768"}));
    EXPECT_EQ(OrvGetAvailAirServers(nullptr), ORV_RCODE_FAILED);
}

TEST(Lifecycle, SaysWhyTheRegistryCannotBeRead)
{
    const struct {
        const char* name;
        const char* text; // null: no file
        ULONG error;
    } rows[] = {
        {"absent", nullptr, 2},
        {"no such value", "Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\Software]\n", 2},
        {"a number",
         "Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\Software\\Kestavo Inc]\n"
         "\"DeviceID\"=dword:00005101\n",
         13},
        {"malformed", "Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\Software\\Kestavo Inc\n", 1009},
        {"not a registry file", "DeviceID=1\n", 1009},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SimHarness sim("umts:5120");
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        if (row.text)
            sim.RawRegistry(row.text);
        else
            sim.RemoveRegistry();
        OrvAirServerList list = {};
        LogCapture log;
        EXPECT_EQ(OrvGetAvailAirServers(&list), ORV_RCODE_FAILED);
        EXPECT_EQ(log.Count("Failed to read Device ID, error = " + std::to_string(row.error)), 1) << log.Dump();
    }
}

TEST(Lifecycle, RefusesADeviceThatIsNotAccepted)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    sim.ClearJournal();
    LogCapture log;
    EXPECT_EQ(Select(0x5103), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(log.Find("TALVEK do not handle deviceID = 20739 yet").kind, 2);
    EXPECT_EQ(OrvSelectAirServer(nullptr), ORV_RCODE_BAD_PARAMETER);
    OrvAirServerInfo info = {};
    EXPECT_EQ(OrvGetAirServerInfo(Server(0), &info), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvGetAirServerInfo(Server(0x5120), nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(sim.Journal(), Lines()) << "the module is not touched";
}

TEST(Lifecycle, ReportsWhatFailsDuringSelection)
{
    const struct {
        const char* name;
        std::vector<const char*> commands;
        ULONG code;
        std::string log;
    } rows[] = {
        {"connect refused", {"fail QCWWANConnect 1026"}, 600, "OrvSelectAirServer returning: 600"},
        {"connect refused with 5", {"fail QCWWANConnect 5"}, 2, "GobiConnect failed status = 5"},
        {"no technology",
         {"fail OrvGetCwePkgsInfo 3", "fail GetFirmwareInfo 3"},
         5,
         "*****Could not determine wireless technology*****"},
        {"technology at the fourth attempt",
         {"fail OrvGetCwePkgsInfo 3 from 1 times 3", "fail GetFirmwareInfo 3 from 1 times 3"},
         0,
         "GetCwePkgsInfo returns 3"},
        {"revisions refused", {"fail GetFirmwareRevisions 3"}, 0, "Mobile Termination Error Values set to Numeric"},
        {"numeric errors refused",
         {"at reply \"AT+CMEE=1\" \"\\r\\nERROR\\r\\n\""},
         0,
         "Failed to set Mobile Termination Error Values to Numeric"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SimHarness sim("umts:5120");
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        for (const char* command : row.commands)
            sim.Command(command);
        LogCapture log;
        EXPECT_EQ(Select(0x5120), row.code);
        EXPECT_GE(log.Count(row.log), 1) << log.Dump();
        OrvApiShutdown();
    }
}

TEST(Lifecycle, AsksForTheTechnologyFourTimesAtMostAndStaysConnected)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    sim.Command("fail OrvGetCwePkgsInfo 3");
    sim.Command("fail GetFirmwareInfo 3");
    sim.ClearJournal();
    EXPECT_EQ(Select(0x5120), ORV_RCODE_FAILED);
    Lines expected = {"QCWWANConnect()", "OrvSetDeviceRemovalCallback(set)"};
    for (int attempt = 0; attempt < 4; ++attempt)
        expected.insert(expected.end(),
                        {"OrvGetCwePkgsInfo(20, 85, 85, 15, 85, 20, 10)", "GetFirmwareInfo()", "GetRTREConfig(0, 0)"});
    EXPECT_EQ(sim.Journal(), expected);
}

TEST(Lifecycle, SelectsAModuleWhosePortCannotBeUsed)
{
    ScratchFolder folder;
    folder.Write("plain", "");
    const struct {
        const char* name;
        std::string port; // "-": no value at all
        std::string log;
    } rows[] = {
        {"no value", "-", "Cannot open Registry for AT port"},
        {"missing", "/dev/no-such-port", "CreateFile() on /dev/no-such-port: failed, errno 2"},
        {"a directory", folder.Path(""), "AT Port Initialize failed"},
        {"a plain file", folder.Path("plain"), "AT Port Initialize failed"},
        {"259 characters", "/" + std::string(258, 'x'), "AT Port Initialize failed"},
        {"400 characters", "/" + std::string(399, 'x'), "Cannot open Registry for AT port"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SimHarness sim("umts:5120");
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        if (row.port == "-")
            sim.RawRegistry("Windows Registry Editor Version 5.00\n");
        else
            sim.WriteRegistry("VID_3D5E&PID_5120", row.port);
        LogCapture log;
        EXPECT_EQ(Select(0x5120), ORV_RCODE_OK) << "the port is not needed for it";
        EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    }
}

TEST(Lifecycle, SelectsAModuleWhosePortIsHeldByAnotherProgram)
{
    SimHarness sim("umts:5120");
    const std::string port = sim.Command("serial name");
    const int held = open(port.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(held, 0);
    ASSERT_EQ(flock(held, LOCK_EX | LOCK_NB), 0);
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    LogCapture log;
    EXPECT_EQ(Select(0x5120), ORV_RCODE_OK);
    EXPECT_EQ(log.Count("CreateFile() on " + port + ": failed, errno 5"), 1) << log.Dump();
    EXPECT_EQ(log.Find("AT Port Initialize failed").kind, 2);
    close(held);
    EXPECT_EQ(Select(0x5120), ORV_RCODE_OK);
    EXPECT_EQ(log.Count("Mobile Termination Error Values set to Numeric"), 1) << "once it is free";
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
}

TEST(Lifecycle, KeepsThePortOverASecondSelection)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    ASSERT_EQ(Select(0x5120), ORV_RCODE_OK);
    LogCapture log;
    ASSERT_EQ(Select(0x5120), ORV_RCODE_OK);
    EXPECT_EQ(log.Count("Mobile Termination Error Values set to Numeric"), 1) << log.Dump();
    EXPECT_EQ(sim.Command("at log"), "AT+CMEE=1\nAT+CMEE=1");
}

TEST(Lifecycle, SurvivesAPortThatHangsUpDuringSelection)
{
    for (const char* when : {"before", "during", "after"}) {
        SCOPED_TRACE(when);
        SimHarness sim("umts:5120");
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        sim.Command(std::string("at hangup ") + when);
        EXPECT_EQ(Select(0x5120), ORV_RCODE_OK);
        EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    }
}

TEST(Lifecycle, ShutDownKeepsTheTechnologyWhenTheDisconnectFails)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    ASSERT_EQ(Select(0x5120), ORV_RCODE_OK);
    sim.Command("fail QCWWANDisconnect 15 from 1 times 1");
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_VENDOR_15);
    OrvAirServerInfo info = {};
    EXPECT_EQ(OrvGetAirServerInfo(Server(0x5120), &info), ORV_RCODE_OK);
    EXPECT_EQ(info.eTechnology, 2u);
    EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    EXPECT_EQ(OrvGetAirServerInfo(Server(0x5120), &info), ORV_RCODE_OK);
    EXPECT_EQ(info.eTechnology, 0u);
}

TEST(Lifecycle, AFailedStartUpIsReportedOnce)
{
    SimHarness sim("umts:5120");
    ScratchFolder empty;
    sim.SetLibraryPath(empty.Path(""));
    EXPECT_EQ(OrvApiStartup(), ORV_RCODE_STARTUP_FAILED);
    EXPECT_EQ(OrvApiStartup(), ORV_RCODE_OK) << "the load is not tried again";
    EXPECT_EQ(Select(0x5120), ORV_RCODE_FAILED);
    OrvRadioPower power = {};
    EXPECT_EQ(OrvGetRadioPower(&power), ORV_RCODE_FAILED);
}

TEST(Lifecycle, TheDeviceNameIsBounded)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    ASSERT_EQ(Select(0x5120), ORV_RCODE_OK);
    sim.Command("hostile QCWWANGetConnectedDeviceID scribble");
    OrvAirServerInfo info = {};
    EXPECT_EQ(OrvGetAirServerInfo(Server(0x5120), &info), ORV_RCODE_OK);
    EXPECT_EQ(std::u16string(info.szName, 20).find(u'\0'), 19u) << "cut and terminated";
    sim.Command("clear all");
    sim.Command("fail QCWWANGetConnectedDeviceID 7");
    LogCapture log;
    EXPECT_EQ(OrvGetAirServerInfo(Server(0x5120), &info), ORV_RCODE_FAILED);
    EXPECT_EQ(log.Find("Failed to get additional device information, rCode = 5").kind, 2);
}

TEST(Lifecycle, SuspendAndResumeLogStatesThatTheyDoNotServe)
{
    SimHarness sim("umts:5120");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    LogCapture log;
    EXPECT_EQ(OrvHandleSuspend(3), ORV_RCODE_OK);
    EXPECT_EQ(log.Texts(), Lines{"OrvHandleSuspend NOOP for targetDx = D3"});
    log.Clear();
    EXPECT_EQ(OrvHandleResume(2), ORV_RCODE_OK);
    EXPECT_EQ(log.Texts(), (Lines{"OrvHandleResume NOOP for targetDx = D2", "About to return from OrvHandleResume"}));
}

TEST(Lifecycle, TellsTheClientThatTheModuleLeft)
{
    SimHarness sim("umts:5120");
    ClientRecorder client;
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    ASSERT_EQ(Select(0x5120), ORV_RCODE_OK);
    LogCapture log;
    sim.Command("emit removal 7");
    EXPECT_EQ(client.Records().size(), 0u) << "nobody is registered";
    ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
    sim.Command("emit removal 8");
    ASSERT_EQ(client.Records().size(), 1u);
    OrvNotifyRecord expected = {};
    expected.uNotify = 1;
    expected.uPayloadSize = 32;
    EXPECT_EQ(memcmp(&client.Records()[0], &expected, sizeof expected), 0) << "the status is not passed on";
    EXPECT_EQ(log.Count("DeviceRemoval, nStatus = 7"), 1);
    EXPECT_EQ(log.Count("DeviceRemoval, nStatus = 8"), 1);
    ASSERT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
    sim.Command("emit removal 9");
    EXPECT_EQ(client.Records().size(), 1u) << "unregistered by the shut-down";
}

} // namespace
