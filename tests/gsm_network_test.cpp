// Networks of a GSM/UMTS module: guards, registration, identity, system status. The scan: gsm_scan_test.cpp.

#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/gsm_module.h"

namespace {

using Lines = std::vector<std::string>;
using GsmNetwork = GsmModule;

constexpr WCHAR kUntouched = 0x7777;
WCHAR g_text[64];
ULONG g_mcc, g_mnc;

OrvPlmnRecord Wanted(ULONG mode, ULONG mcc = 0, ULONG mnc = 0)
{
    return {sizeof(OrvPlmnRecord), mode, {}, {}, mcc, mnc, 0, 0, 0, 0, 0, 0, 0};
}

TEST_F(GsmNetwork, EachFunctionHasItsGuard)
{
    static ORV_PREF_OPERATOR_LIST list;
    static OrvGsmSystemStatus status;
    static ORV_IMEI imei;
    // clang-format off
    const GuardedFunction functions[] = {
        {"OrvSetPLMNMode", 10, 1, 0, [] { return OrvSetPLMNMode(Wanted(0)); }},
        {"OrvStartPLMNSearch", 10, 1, 0, OrvStartPLMNSearch},
        {"OrvGetPLMNSelection, null", 10, 1, 4, [] { return OrvGetPLMNSelection(nullptr); }},
        {"OrvGetPLMNMode", 10, 1, 0, [] { return OrvGetPLMNMode(&g_mcc); }},
        {"OrvSetHostStartup", 10, 1, 0, [] { return OrvSetHostStartup(7); }},
        {"OrvAddPreferredOperatorGobi", 10, 1, 0, [] { return OrvAddPreferredOperatorGobi(5, 4, "26201"); }},
        {"OrvAddPreferredOperatorGobi, null", 10, 1, 4, [] { return OrvAddPreferredOperatorGobi(5, 4, nullptr); }},
        {"OrvRemovePreferredOperatorGobi", 10, 1, 0, [] { return OrvRemovePreferredOperatorGobi(1); }},
        {"OrvGetPreferredOperatorListGobi, null", 10, 1, 4, [] { return OrvGetPreferredOperatorListGobi(2, nullptr); }},
        {"OrvGetPreferredOperatorListGobi", 10, 1, 0, [] {
             const ORV_RCODE result = OrvGetPreferredOperatorListGobi(2, &list);
             OrvFreeBuffer(list.pEntries);
             list.pEntries = nullptr;
             return result;
         }},
        {"OrvGetNetworkProviderID", 10, 17, 0, [] { return OrvGetNetworkProviderID(g_text, 50); }},
        {"OrvGetNetworkProviderID, null", 10, 17, 2, [] { return OrvGetNetworkProviderID(nullptr, 50); }},
        {"OrvGetGsmIMSI", 10, 17, 0, [] { return OrvGetGsmIMSI(g_text, 10, &g_mcc, &g_mnc); }},
        {"OrvGetGsmIMSI, size 0", 10, 17, 2, [] { return OrvGetGsmIMSI(g_text, 0, &g_mcc, &g_mnc); }},
        {"OrvGetGsmIMSI, null MNC", 10, 17, 4, [] { return OrvGetGsmIMSI(g_text, 10, &g_mcc, nullptr); }},
        {"OrvGetImei", 10, 17, 0, [] { return OrvGetImei(&imei); }},
        {"OrvGetGsmSystemStatus", 10, 1, 0, [] { return OrvGetGsmSystemStatus(&status); }},
        {"OrvGetGsmSystemStatus, null", 10, 1, 4, [] { return OrvGetGsmSystemStatus(nullptr); }},
    };
    // clang-format on
    SweepGuards(sim, functions, "umts:5120", "cdma:5101");
}

// --- registration ----------------------------------------------------------------------------------------------------

TEST_F(GsmNetwork, RegistersDetachesAndTellsOfIt)
{
    const std::string serving = "; GetServingNetwork(20, 50)", no_effect = "fail InitiateNetworkRegistration 1026";
    const std::string manual = " OrvSetPLMNMode eMode is Manual", failed = "OrvSetPLMNMode failed Gobi error = 1026";
    const std::string different = manual +
                                  "; Currently registered network is different, MCC=1, MNC=1; Gobi API "
                                  "InitiateNetworkRegistration failed with error = 1026; " +
                                  failed;
    const char* const both = "2016=0; 2019=1";
    const char* const detach = "InitiateDomainAttach(2)";
    // clang-format off
    const struct {
        const char* name;
        ULONG mode, mcc, mnc;
        std::string commands, journal; // "R" stands for InitiateNetworkRegistration
        ULONG result, mode_then;       // 2 before
        std::string values, logs;
    } rows[] = {
        {"automatic", 0, 9, 9, "set scan.mode 2", "R(1, 9, 9, 4)", 0, 0, "2016=0", ""},
        {"automatic already", 0, 0, 0, "", "R(1, 0, 0, 4)", 0, 0, "2016=0", " OrvSetPLMNMode eMode is Automatic"},
        {"manual, 16 bits of the MCC", 1, 0x10001, 2, "", "R(2, 1, 2, 5)", 0, 1, both, ""},
        {"manual, GSM", 2, 1, 0x20001, "", "R(2, 1, 1, 4)", 0, 2, both, ""},
        {"there already", 1, 1, 1, no_effect, "R(2, 1, 1, 5)" + serving, 0, 1, both, manual + "; Already on the same network"},
        {"another MNC", 1, 1, 2, no_effect, "R(2, 1, 2, 5)" + serving, 600, 2, "", different},
        {"another MCC", 2, 2, 1, no_effect, "R(2, 2, 1, 4)" + serving, 600, 2, "", different},
        {"other RAN", 1, 1, 1, no_effect + "; set network.ran 1", "R(2, 1, 1, 5)" + serving, 600, 2, "", different},
        {"serving network unknown", 1, 1, 1, no_effect + "; fail GetServingNetwork 5", "R(2, 1, 1, 5)" + serving, 600, 2, "",
         manual + "; Gobi API GetServingNetwork failed with error = 5; " + failed},
        {"another refusal", 1, 1, 1, "fail InitiateNetworkRegistration 15", "R(2, 1, 1, 5)", 7, 2, "",
         "OrvSetPLMNMode failed Gobi error = 15"},
        {"no such mode", 3, 1, 1, "", "", 4, 2, "", ""},
        {"detach", ORV_PLMN_DETACH, 1, 1, "", detach, 0, 2, "", ""},
        {"detach refused", ORV_PLMN_DETACH, 1, 1, "fail InitiateDomainAttach 5", detach, 2, 2, "",
         "InitiateDomainAttach failed with Gobi error = 5"},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Start();
        ASSERT_EQ(OrvSetPLMNMode(Wanted(2, 1, 1)), ORV_RCODE_OK);
        sim.Command("model umts:5120"); // as it was, but for the mode that is kept
        Run(row.commands);
        client.Clear();
        LogCapture log;
        EXPECT_EQ(OrvSetPLMNMode(Wanted(row.mode, row.mcc, row.mnc)), row.result);
        Lines journal = sim.Journal();
        const std::string registration = "InitiateNetworkRegistration";
        for (std::string& line : journal)
            if (line.compare(0, registration.size(), registration) == 0) line.replace(0, registration.size(), "R");
        EXPECT_EQ(journal, Parts(row.journal));
        EXPECT_EQ(Values(), Parts(row.values));
        ULONG mode = 99;
        EXPECT_EQ(OrvGetPLMNMode(&mode), ORV_RCODE_OK);
        EXPECT_EQ(mode, row.mode_then);
        Lines logs;
        for (const LogCapture::Record& record : log.Records())
            if (record.module == "TALVEKGsm") logs.push_back(record.text);
        EXPECT_EQ(logs, Parts(row.logs));
        OrvApiShutdown();
    }
}

TEST_F(GsmNetwork, RaisesNothingThatIsNotEnabled)
{
    Start();
    OrvStopNotify(2016, 0);
    OrvStopNotify(2017, 0);
    EXPECT_EQ(OrvSetPLMNMode(Wanted(1, 1, 2)), ORV_RCODE_OK);
    EXPECT_EQ(OrvStartPLMNSearch(), ORV_RCODE_OK);
    ASSERT_TRUE(platform_hooks::DrainThreads(10000));
    EXPECT_EQ(Values(), Lines{"2019=1"});
    EXPECT_NE(NextNetwork()[0], '<') << "the result is there";
}

TEST_F(GsmNetwork, SwitchesTheRadioOffForTheHost)
{
    Start();
    LogCapture log;
    EXPECT_EQ(OrvSetHostStartup(0), ORV_RCODE_OK);
    sim.Command("fail SetPower 15");
    EXPECT_EQ(OrvSetHostStartup(0), ORV_RCODE_VENDOR_15) << "and attaches all the same";
    EXPECT_EQ(sim.Journal(), Parts("SetPower(6); InitiateDomainAttach(1); SetPower(6); InitiateDomainAttach(1)"));
    EXPECT_EQ(log.Count("OrvSetHostStartup->SetPower(GobiPowerMode_Off) returns uStatus = 15"), 1) << log.Dump();
    EXPECT_EQ(log.Count("Sorry, couldn't help. InitiateDomainAttach returns uStatus = 1026. Ignore it"), 2);
}

// --- identity --------------------------------------------------------------------------------------------------------

enum class Getter { Provider, Imsi, Imei };

ORV_RCODE Ask(Getter getter, ULONG size)
{
    std::fill(std::begin(g_text), std::end(g_text), kUntouched);
    g_mcc = g_mnc = 0;
    if (getter == Getter::Provider) return OrvGetNetworkProviderID(g_text, size);
    if (getter == Getter::Imsi) return OrvGetGsmIMSI(g_text, size, &g_mcc, &g_mnc);
    ORV_IMEI record;
    memset(&record, 0x77, sizeof record);
    const ORV_RCODE result = OrvGetImei(&record);
    EXPECT_EQ(record.sizeStruct, record.szImei[0] == kUntouched ? 0x77777777u : 76u);
    memcpy(g_text, record.szImei, sizeof record.szImei);
    return result;
}

TEST_F(GsmNetwork, TellsWhoTheModuleIs)
{
    constexpr Getter kProvider = Getter::Provider, kImsi = Getter::Imsi, kImei = Getter::Imei;
    const std::string imsi = "set identity.imsi 262011234567890";
    // clang-format off
    const struct {
        Getter getter;
        std::string command;
        ULONG size;
        const char* journal;
        ULONG result;
        const char* text; // null: untouched
        ULONG mcc, mnc;
    } rows[] = {
        {kProvider, "", 50, "GetServingNetwork(20, 50)", 0, "Test Network", 0, 0},
        {kProvider, "", 4, "GetServingNetwork(20, 4)", 0, "Test", 0, 0},
        {kProvider, "", 256, "GetServingNetwork(20, 0)", 0, nullptr, 0, 0}, // 8 bits of the size
        {kProvider, "", 0x10000 + 60, "GetServingNetwork(20, 60)", 0, "Test Network", 0, 0},
        {kProvider, "set network.name \"\"", 50, "GetServingNetwork(20, 50)", 0, nullptr, 0, 0},
        {kProvider, "fail GetServingNetwork 5", 50, "GetServingNetwork(20, 50)", 2, nullptr, 0, 0},
        {kProvider, "hostile GetServingNetwork scribble", 6, "GetServingNetwork(20, 6)", 0, "%s%n%s", 0, 0},
        {kImsi, imsi, 10, "GetIMSI(16)", 0, "234567890", 262, 11},
        {kImsi, imsi, 9, "GetIMSI(16)", 0, "234567890", 262, 11},
        {kImsi, imsi, 8, "GetIMSI(16)", 2, nullptr, 0, 0}, // too little room
        {kImsi, "set identity.imsi 001010123456789", 20, "GetIMSI(16)", 0, "123456789", 1, 10},
        {kImsi, "hostile GetIMSI scribble", 10, "GetIMSI(16)", 0, "%n%s%n%s%n", 0, 0},
        {kImsi, "set identity.imsi 310410", 1, "GetIMSI(16)", 0, "", 310, 410},
        {kImsi, "set identity.imsi 3104", 1, "GetIMSI(16)", 0, "", 310, 4},
        {kImsi, "set identity.imsi 31", 1, "GetIMSI(16)", 0, "", 31, 0},
        {kImsi, "set identity.imsi -12+34abcdef", 20, "GetIMSI(16)", 0, "abcdef", 0, 0},
        {kImsi, "fail GetIMSI 11", 10, "GetIMSI(16)", 5, nullptr, 0, 0},
        {kImei, "set identity.imei 490154203237518", 36, "GetSerialNumbers(16, 16, 32)", 0, "490154203237518", 0, 0},
        {kImei, "hostile GetSerialNumbers scribble", 36, "GetSerialNumbers(16, 16, 32)", 0, "%s%n%s%n%s%n%s%n", 0, 0},
        {kImei, "set identity.imei \"\"", 36, "GetSerialNumbers(16, 16, 32)", 0, nullptr, 0, 0},
        {kImei, "fail GetSerialNumbers 5", 36, "GetSerialNumbers(16, 16, 32)", 2, nullptr, 0, 0},
    };
    // clang-format on
    Start();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.journal + (", " + std::to_string(row.size)) + ", " + row.command);
        Run("clear all; " + row.command);
        sim.ClearJournal();
        EXPECT_EQ(Ask(row.getter, row.size), row.result);
        EXPECT_EQ(sim.Journal(), Lines{row.journal});
        EXPECT_EQ(std::to_string(g_mcc) + " " + std::to_string(g_mnc),
                  std::to_string(row.mcc) + " " + std::to_string(row.mnc));
        const size_t length = row.text ? strlen(row.text) : 0;
        EXPECT_EQ(Ascii(g_text, length), row.text ? row.text : "");
        EXPECT_EQ(g_text[length], row.text && length < row.size ? 0 : kUntouched) << "a terminator if there is room";
    }
}

// --- system status ---------------------------------------------------------------------------------------------------

// The words of the record behind its size, and the name.
std::string Words(const OrvGsmSystemStatus& status)
{
    ULONG words[sizeof status / 4];
    memcpy(words, &status, sizeof status);
    std::string text;
    for (size_t i = 1; i < 16; ++i)
        text += std::to_string(words[i]) + " ";
    return text + Ascii(status.szNetworkName, 40);
}

TEST_F(GsmNetwork, GivesTheSystemStatus)
{
    const std::string home = "GetRFInfo returns error but GetSerrvingNetwork returns registrationState = Home";
    const std::string no_rf = "OrvGetGsmSystemStatus: GetRFInfo failed uStatus = 15; GetRFInfo returns error but "
                              "GetSerrvingNetwork returns roaming = 1 [Roaming = 0, Home, Roaming partner, operator "
                              "defined value]";
    const std::string name = "Test Network", plugged_in = "2 0 2 1 1 0 6 2 5 80 10700 1 1 1 1 ";
    const std::string find = "FindRFInfoIndex (RadioTech = 4) fail with rfInfoSize = ";
    // clang-format off
    const struct {
        const char* name;
        std::string commands;
        ULONG result;
        std::string words, logs; // at least
    } rows[] = {
        {"as plugged in", "", 0, plugged_in + name, ""},
        {"radio off", "set power.mode 6", 0, "1 0 2 1 1 0 6 2 5 80 10700 1 1 1 1 " + name, ""},
        {"UMTS first", "set rf.instances 4:41:62 5:80:10562", 0, "2 0 2 1 1 0 6 2 5 80 10562 1 1 1 1 " + name, ""},
        {"GSM, roaming, packets only", "set rf.instances 4:41:62; set network.interfaces 4; set network.roaming 0; "
         "set network.cs 2", 0, "2 0 1 1 0 0 2 2 4 41 62 2 1 1 1 " + name, ""},
        {"neither, no domain", "set rf.instances 8:3:1; set network.interfaces 8; set network.cs 2; set network.ps 2", 0,
         "2 0 3 1 1 0 6 2 8 0 0 2 2 1 1 " + name, find + "1"},
        {"denied", "set network.registration 3; set network.interfaces none; set rf.instances none; set network.mnc 70", 0,
         "2 4 2 3 1 0 0 2 0 0 0 1 1 1 70 " + name, find + "0"},
        {"no RF information", "fail GetRFInfo 15", 0, "2 0 2 1 1 0 6 2 5 0 0 1 1 1 1 " + name, no_rf + "; " + home},
        {"nor a network", "fail GetRFInfo 15; set network.registration 2", 0, "2 2 2 2 1 0 6 2 5 0 0 1 1 1 1 " + name, no_rf},
        {"a bearer", "set session.state 2; set data.bearer 7", 0, "2 0 2 1 1 0 4 2 5 80 10700 1 1 1 1 " + name, ""},
        {"a long name", "set network.name " + std::string(60, 'n'), 0, plugged_in + std::string(39, 'n'), ""},
        {"hostile counts", "hostile GetRFInfo count 200; hostile GetServingNetwork count 200", 0, plugged_in + name, ""},
        {"power", "fail GetPower 5", 2, "", "OrvGetGsmSystemStatus: GetPower failed uStatus = 5"},
        {"network", "fail GetServingNetwork 5", 2, "", "OrvGetGsmSystemStatus: GetServingNetwork failed uStatus = 5"},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Start();
        ASSERT_EQ(OrvSetPLMNMode(Wanted(0)), ORV_RCODE_OK);
        Run(row.commands);
        OrvGsmSystemStatus status = {};
        LogCapture log;
        EXPECT_EQ(OrvGetGsmSystemStatus(&status), row.result);
        EXPECT_EQ(status.sizeStruct, 144u);
        EXPECT_EQ(Words(status), row.result == 0 ? row.words : "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ");
        for (const std::string& text : Parts(row.logs))
            EXPECT_EQ(log.Find(text).module, "TALVEKGsm") << text << "\n" << log.Dump();
        EXPECT_EQ(log.Count(home) == 1, row.logs.find(home) != std::string::npos);
        OrvApiShutdown();
    }
    Start();
    ASSERT_EQ(OrvSetPLMNMode(Wanted(2, 1, 1)), ORV_RCODE_OK);
    sim.ClearJournal();
    OrvGsmSystemStatus status = {};
    EXPECT_EQ(OrvGetGsmSystemStatus(&status), ORV_RCODE_OK);
    EXPECT_EQ(status.eSelectionMode, 1u) << "2 is reported as 1";
    EXPECT_EQ(sim.Journal(),
              (Lines{"GetPower()", "GetRFInfo(20)", "GetServingNetwork(20, 50)", "GetDataBearerTechnology()"}));
}

TEST_F(GsmNetwork, ASignalEventBringsSystemStatusAndPacketState)
{
    Start();
    OrvGsmSystemStatus asked = {};
    ASSERT_EQ(OrvGetGsmSystemStatus(&asked), ORV_RCODE_OK);
    OrvNotify(2032, 0);
    OrvNotify(2027, 0);
    // The technology, by the interface of the event.
    for (const auto& [interface, technology] : {std::pair{5, 3u}, {8, 3u}, {4, 1u}}) {
        client.Clear();
        Run("set session.state 2; set signal.pairs none; emit signal -70 " + std::to_string(interface));
        ASSERT_TRUE(client.Wait(2) && platform_hooks::DrainThreads(10000));
        const std::vector<OrvNotifyRecord> records = client.Records();
        EXPECT_EQ(records[0].uPayloadSize, 144u);
        EXPECT_EQ(Words(records[0].payload.GsmSystemStatus), Words(asked));
        EXPECT_EQ(records[1].uPayloadSize, 20u);
        EXPECT_EQ(records[1].payload.GsmPacketState.uSessionState, 2u);
        EXPECT_EQ(records[1].payload.GsmPacketState.uTechnology, technology);
    }
    client.Clear();
    Run("fail GetPower 5; emit signal -70 5");
    EXPECT_TRUE(platform_hooks::DrainThreads(10000));
    EXPECT_EQ(client.Records().size(), 0u) << "a module that cannot be asked";
}

} // namespace
