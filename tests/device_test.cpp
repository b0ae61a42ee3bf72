// Identity, revisions, radio power, data session and the functions that only pass through.

#include <gtest/gtest.h>

#include <string.h>

#include <string>
#include <vector>

#include "talvek/talvek.h"
#include "tests/support/log_capture.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

class Device : public ::testing::Test {
protected:
    void Start()
    {
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        OrvAirServer record = {};
        record.uDeviceID = ORV_DEVICE_5120;
        ASSERT_EQ(OrvSelectAirServer(&record), ORV_RCODE_OK);
        sim.ClearJournal();
    }
    void TearDown() override { OrvApiShutdown(); }

    SimHarness sim{"umts:5120"};
};

// The first line that a call without arguments of note leaves in the journal, by the name of its entry point.
std::string FirstEntry(SimHarness& sim)
{
    const Lines journal = sim.Journal();
    return journal.empty() ? "" : journal[0].substr(0, journal[0].find('('));
}

struct ThinFunction {
    const char* name;
    ULONG not_initialised;
    const char* entry;
    ORV_RCODE (*call)();
};

BYTE g_octets[1024];
ULONG g_word;
WORD g_half;
char g_text[256];
WCHAR g_wide[300];
OrvRadioPower g_power;
OrvIpConfiguration g_ip;

const ThinFunction kThinFunctions[] = {
    {"OrvModemReset", 10, "SetPower", [] { return OrvModemReset(); }},
    {"OrvSetRadioPower", 10, "SetPower", [] { return OrvSetRadioPower(&g_power); }},
    {"OrvGetRadioPower", 10, "GetPower", [] { return OrvGetRadioPower(&g_power); }},
    {"OrvGetImagePreference", 10, "GetImagesPreference", [] { return OrvGetImagePreference(&g_word, g_octets); }},
    {"OrvSetImagePreference", 10, "SetImagesPreference",
     [] { return OrvSetImagePreference(0, g_octets, 0, 0, &g_word, g_octets); }},
    {"OrvUpgradeFirmware", 10, "UpgradeFirmware2kW", [] { return OrvUpgradeFirmware(g_wide); }},
    {"OrvGetModelID", 10, "GetModelID", [] { return OrvGetModelID(100, g_text); }},
    {"OrvStartDataSession", 10, "StartDataSession2",
     [] { return OrvStartDataSession(nullptr, nullptr, nullptr, &g_word, &g_word); }},
    {"OrvStopDataSession", 10, "StopDataSession", [] { return OrvStopDataSession(1); }},
    {"OrvGetIPConfigurationGobi", 10, "GetIPConfiguration", [] { return OrvGetIPConfigurationGobi(&g_ip); }},
    {"OrvGetServingNetworkGobi", 10, "GetServingNetworkCapabilities", [] { return OrvGetServingNetworkGobi(&g_word); }},
    {"OrvSetNetworkPreferenceGobi", 5, "SetNetworkPreference", [] { return OrvSetNetworkPreferenceGobi(2); }},
    {"OrvGetHardwareVersion", 17, "GetManufacturer", [] { return OrvGetHardwareVersion(g_wide, 300); }},
    {"OrvDialCall", 10, "DialCall", [] { return OrvDialCall(nullptr, g_octets, nullptr, nullptr, nullptr); }},
    {"OrvEndCall", 10, "EndCall", [] { return OrvEndCall(g_octets, g_octets); }},
    {"OrvAnserCall", 10, "AnswerCall", [] { return OrvAnserCall(g_octets, g_octets); }},
    {"OrvManageCalls", 10, "ManageCalls", [] { return OrvManageCalls(g_octets, g_octets, &g_half); }},
};

TEST_F(Device, EachFunctionHasItsGuardItsEntryPointAndItsConversion)
{
    for (const ThinFunction& function : kThinFunctions) {
        SCOPED_TRACE(function.name);
        EXPECT_EQ(function.call(), function.not_initialised);
        EXPECT_EQ(sim.Journal(), Lines()) << "nothing is called before start-up";
    }
    Start();
    for (const ThinFunction& function : kThinFunctions) {
        SCOPED_TRACE(function.name);
        const struct {
            ULONG status, code;
        } conversions[] = {{1025, 1}, {5, 2}, {15, 7}, {1026, 600}, {3, 5}};
        for (const auto& row : conversions) {
            sim.Command(std::string("fail ") + function.entry + " " + std::to_string(row.status));
            sim.ClearJournal();
            EXPECT_EQ(function.call(), row.code);
            EXPECT_EQ(FirstEntry(sim), function.entry);
        }
        sim.Command("clear all");
    }
}

TEST_F(Device, TheFunctionsWithoutAGuardTouchNothing)
{
    ULONG mode = 77;
    EXPECT_EQ(OrvGetAudioMode(&mode), ORV_RCODE_OK);
    EXPECT_EQ(mode, 77u);
    EXPECT_EQ(OrvGetAudioMode(nullptr), ORV_RCODE_OK);
    EXPECT_EQ(OrvSetAudioMode(3), ORV_RCODE_OK);
    EXPECT_EQ(sim.Journal(), Lines());
}

TEST_F(Device, RefusesNullPointers)
{
    EXPECT_EQ(OrvGetServingNetworkGobi(nullptr), ORV_RCODE_BAD_PARAMETER) << "before the guard";
    EXPECT_EQ(OrvGetHardwareVersion(nullptr, 10), ORV_RCODE_BAD_PARAMETER) << "before the guard";
    EXPECT_EQ(OrvGetRadioPower(nullptr), ORV_RCODE_API_NOT_INIT) << "after the guard";
    Start();
    EXPECT_EQ(OrvGetRadioPower(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvSetRadioPower(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvGetIPConfigurationGobi(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvGetPriInfo(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvGetFirmwareVersion(nullptr, 5), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvGetPriVersion(nullptr, 0), ORV_RCODE_OK);
}

TEST_F(Device, GivesTheCachedRevisions)
{
    struct Getter {
        const char* name;
        ORV_RCODE (*get)(WCHAR*, ULONG);
        const char* field;
        ULONG size_zero;
    };
    const Getter getters[] = {{"firmware", OrvGetFirmwareVersion, "identity.firmware", 4},
                              {"boot", OrvGetBootVersion, "identity.boot", 4},
                              {"pri", OrvGetPriVersion, "identity.pri", 0}};
    for (const Getter& getter : getters) {
        EXPECT_EQ(getter.get(g_wide, 100), ORV_RCODE_NOT_AVAILABLE) << getter.name << " before start-up";
        EXPECT_EQ(getter.get(g_wide, 0), ORV_RCODE_NOT_AVAILABLE) << getter.name << " before start-up, size 0";
        sim.Command(std::string("set ") + getter.field + " ABCDEFGHIJ");
    }
    Start();
    for (const Getter& getter : getters) {
        SCOPED_TRACE(getter.name);
        const struct {
            ULONG size;
            std::u16string text; // what the buffer of x holds afterwards
        } rows[] = {{3, u"ABCxxxxxxxxx"},
                    {9, u"ABCDEFGHIxxx"},
                    {10, u"ABCDEFGHIJxx"},
                    {11, std::u16string(u"ABCDEFGHIJ\0x", 12)},
                    {12, std::u16string(u"ABCDEFGHIJ\0x", 12)}};
        for (const auto& row : rows) {
            std::u16string buffer(12, u'x');
            EXPECT_EQ(getter.get(&buffer[0], row.size), ORV_RCODE_OK);
            EXPECT_EQ(buffer, row.text) << row.size;
        }
        std::u16string buffer(2, u'x');
        EXPECT_EQ(getter.get(&buffer[0], 0), getter.size_zero);
        EXPECT_EQ(buffer, u"xx");
    }
}

TEST_F(Device, KnowsNoRevisionWhenTheModuleGivesNone)
{
    for (const char* field : {"firmware", "boot", "pri"})
        sim.Command(std::string("set identity.") + field + " \"\"");
    Start();
    OrvPriInfo info = {};
    EXPECT_EQ(OrvGetFirmwareVersion(g_wide, 10), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(OrvGetBootVersion(g_wide, 10), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(OrvGetPriVersion(g_wide, 10), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(OrvGetPriInfo(&info), ORV_RCODE_NOT_AVAILABLE);
}

TEST_F(Device, BoundsRevisionsThatComeUnterminated)
{
    sim.Command("hostile GetFirmwareRevisions scribble");
    Start();
    WCHAR buffer[100] = {};
    EXPECT_EQ(OrvGetFirmwareVersion(buffer, 100), ORV_RCODE_OK);
    EXPECT_EQ(std::u16string(buffer).size(), 84u);
}

TEST_F(Device, TakesThePriRevisionApart)
{
    const struct {
        const char* text;
        ULONG carrier, version, revision;
    } rows[] = {
        {"01234567", 1, 2345, 67},   {"9912340", 99, 1234, 0}, {"12", 12, 0, 0},
        {"1 234567", 1, 2345, 67},   {"x1234567", 0, 0, 0},    {"12.3456", 12, 0, 0},
        {"123456789", 12, 3456, 78}, {"12ab", 12, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        sim.Command(std::string("set identity.pri \"") + row.text + "\"");
        Start();
        OrvPriInfo info;
        memset(&info, 0xAA, sizeof info);
        EXPECT_EQ(OrvGetPriInfo(&info), ORV_RCODE_OK);
        EXPECT_EQ(info.sizeStruct, 24u);
        EXPECT_EQ(info.uPriCarrier, row.carrier);
        EXPECT_EQ(info.uPriVersion, row.version);
        EXPECT_EQ(info.uPriRevision, row.revision);
        EXPECT_EQ(info.uReserved[0], 0u);
        EXPECT_EQ(info.uReserved[1], 0u);
    }
}

TEST_F(Device, ComposesTheHardwareVersion)
{
    sim.Command("set identity.manufacturer ABCD");
    sim.Command("set identity.model EFG");
    sim.Command("set identity.hardware HI");
    g_wide[0] = u'x';
    EXPECT_EQ(OrvGetHardwareVersion(g_wide, 20), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(g_wide[0], 0) << "an empty text before start-up";
    Start();
    const struct {
        const char* name;
        ULONG size;
        std::vector<const char*> commands;
        ULONG code;
        std::u16string text;
        Lines journal;
        std::string log;
    } rows[] = {
        {"room for all",
         20,
         {},
         0,
         u"ABCD:EFG:HI",
         {"GetManufacturer(19)", "GetModelID(14)", "GetHardwareRevision(10)"},
         ""},
        {"exactly", 12, {}, 0, u"ABCD:EFG:HI", {"GetManufacturer(11)", "GetModelID(6)", "GetHardwareRevision(2)"}, ""},
        {"no room for the revision",
         9,
         {},
         0,
         u"ABCD:EFG",
         {"GetManufacturer(8)", "GetModelID(3)"},
         "GetModelID yields rc = 0, remainStrSize = 0"},
        {"no room for the model",
         5,
         {},
         0,
         u"ABCD",
         {"GetManufacturer(4)"},
         "GetManufacturer yields rc = 0, remainStrSize = 0"},
        {"size 1", 1, {}, 0, u"", {"GetManufacturer(0)"}, "GetManufacturer yields rc = 0, remainStrSize = 0"},
        {"size 257 counts as 1",
         257,
         {},
         0,
         u"",
         {"GetManufacturer(0)"},
         "GetManufacturer yields rc = 0, remainStrSize = 0"},
        {"manufacturer refused",
         20,
         {"fail GetManufacturer 5"},
         2,
         u"",
         {"GetManufacturer(19)"},
         "GetManufacturer yields rc = 2, remainStrSize = 19"},
        {"model refused",
         20,
         {"fail GetModelID 5"},
         2,
         u"ABCD:",
         {"GetManufacturer(19)", "GetModelID(14)"},
         "GetModelID yields rc = 2, remainStrSize = 14"},
        {"revision refused",
         20,
         {"fail GetHardwareRevision 5"},
         2,
         u"ABCD:EFG:",
         {"GetManufacturer(19)", "GetModelID(14)", "GetHardwareRevision(10)"},
         "GetHardwareRevision yields rc = 2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        sim.Command("clear all");
        for (const char* command : row.commands)
            sim.Command(command);
        sim.ClearJournal();
        LogCapture log;
        std::u16string buffer(300, u'x');
        EXPECT_EQ(OrvGetHardwareVersion(&buffer[0], row.size), row.code);
        EXPECT_EQ(std::u16string(buffer.c_str()), row.text);
        EXPECT_EQ(buffer.substr(row.size), std::u16string(300 - row.size, u'x')) << "beyond the buffer";
        EXPECT_EQ(sim.Journal(), row.journal);
        if (!row.log.empty()) {
            EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        }
    }
    EXPECT_EQ(OrvGetHardwareVersion(g_wide, 0), ORV_RCODE_BAD_PARAMETER);

    sim.Command("clear all");
    for (const char* entry : {"GetManufacturer", "GetModelID", "GetHardwareRevision"})
        sim.Command(std::string("hostile ") + entry + " scribble");
    for (const ULONG size : {1u, 2u, 20u, 256u, 257u, 300u}) {
        std::u16string buffer(400, u'x');
        EXPECT_EQ(OrvGetHardwareVersion(&buffer[0], size), ORV_RCODE_OK) << size;
        EXPECT_LT(std::u16string(buffer.c_str()).size(), size);
    }
}

TEST_F(Device, ReadsAndSetsTheRadioPower)
{
    Start();
    const struct {
        ULONG mode;
        ULONG on;
    } rows[] = {{0, 1}, {1, 0}, {2, 1}, {3, 0}, {4, 0}, {5, 0}, {6, 0}, {7, 0}};
    for (const auto& row : rows) {
        sim.Command("set power.mode " + std::to_string(row.mode));
        OrvRadioPower power;
        memset(&power, 0xAA, sizeof power);
        EXPECT_EQ(OrvGetRadioPower(&power), ORV_RCODE_OK);
        EXPECT_EQ(power.sizeStruct, 20u);
        EXPECT_EQ(power.bRadioOn, row.on) << row.mode;
        EXPECT_EQ(power.uReserved[2], 0xAAAAAAAAu);
    }
    sim.Command("fail GetPower 3");
    OrvRadioPower power = {};
    power.bRadioOn = 77;
    EXPECT_EQ(OrvGetRadioPower(&power), ORV_RCODE_FAILED);
    EXPECT_EQ(power.bRadioOn, 77u);
    EXPECT_EQ(power.sizeStruct, 20u) << "written all the same";

    sim.ClearJournal();
    for (const ULONG on : {1u, 0u, 2u}) {
        power.bRadioOn = on;
        EXPECT_EQ(OrvSetRadioPower(&power), ORV_RCODE_OK);
    }
    EXPECT_EQ(sim.Journal(), (Lines{"SetPower(0)", "SetPower(6)", "SetPower(6)"}));
}

TEST_F(Device, RunsADataSession)
{
    Start();
    char apn[] = "internet";
    ULONG session = 0, reason = 77;
    ASSERT_EQ(OrvStartDataSession(apn, nullptr, nullptr, &session, &reason), ORV_RCODE_OK);
    EXPECT_EQ(sim.Journal(), Lines{"StartDataSession2(\"internet\", null, null)"});
    EXPECT_NE(session, 0u);
    for (const char* command :
         {"set ip.address 192.0.2.17", "set ip.primary-dns 192.0.2.1", "set ip.secondary-dns 198.51.100.2",
          "set ip.gateway 192.0.2.254", "set ip.netmask 255.255.255.0"})
        sim.Command(command);
    OrvIpConfiguration ip;
    memset(&ip, 0xAA, sizeof ip);
    ASSERT_EQ(OrvGetIPConfigurationGobi(&ip), ORV_RCODE_OK);
    EXPECT_EQ(ip.sizeStruct, 0xAAAAAAAAu) << "not written";
    EXPECT_EQ(ip.bValid, 1);
    EXPECT_EQ(ip.uIpAddress, 0xC0000211u);
    EXPECT_EQ(ip.uPrimaryDns, 0xC0000201u);
    EXPECT_EQ(ip.uSecondaryDns, 0xC6336402u);
    EXPECT_EQ(ip.uDefaultGateway, 0xC00002FEu);
    EXPECT_EQ(ip.uSubnetMask, 0xFFFFFF00u);
    EXPECT_NE(OrvStopDataSession(session + 1), ORV_RCODE_OK);
    EXPECT_EQ(OrvStopDataSession(session), ORV_RCODE_OK);
    memset(&ip, 0xAA, sizeof ip);
    LogCapture log;
    EXPECT_NE(OrvGetIPConfigurationGobi(&ip), ORV_RCODE_OK) << "no session, no addresses";
    EXPECT_EQ(ip.bValid, 0xAA) << "written on success only";
}

TEST_F(Device, TracesASessionThatFails)
{
    Start();
    sim.Command("fail StartDataSession2 5");
    sim.Command("fail StopDataSession 5");
    sim.Command("fail GetIPConfiguration 5");
    LogCapture log;
    ULONG session = 0, reason = 42;
    EXPECT_EQ(OrvStartDataSession(nullptr, nullptr, nullptr, &session, &reason), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Find("OrvStartDataSession returning: 2, Failure Reason = 42").kind, 2) << log.Dump();
    EXPECT_EQ(OrvStartDataSession(nullptr, nullptr, nullptr, &session, nullptr), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Count("OrvStartDataSession returning: 2, Failure Reason = 0"), 1) << "a null reason is not read";
    EXPECT_EQ(OrvStopDataSession(1), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Find("OrvStopDataSession returning: 2").kind, 2);
    EXPECT_EQ(OrvGetIPConfigurationGobi(&g_ip), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Find("OrvGetIPConfigurationGobi returning: 2").kind, 2);
    EXPECT_EQ(log.Count("GetIPConfiguration returns status = 5"), 1);
}

TEST_F(Device, MasksTheServingNetworkCapabilities)
{
    Start();
    const struct {
        const char* list;
        ULONG mask;
    } rows[] = {{"1 3 9 12", 0x105}, {"", 0}, {"0 10 255", 0}, {"1 2 3 4 5 6 7 8 9", 0x1FF}};
    for (const auto& row : rows) {
        sim.Command(std::string("set network.caps ") + (*row.list ? row.list : "none"));
        ULONG mask = 0xAAAAAAAA;
        EXPECT_EQ(OrvGetServingNetworkGobi(&mask), ORV_RCODE_OK);
        EXPECT_EQ(mask, row.mask) << row.list;
    }
    sim.Command("hostile GetServingNetworkCapabilities scribble");
    ULONG mask = 0;
    EXPECT_EQ(OrvGetServingNetworkGobi(&mask), ORV_RCODE_OK) << "a count beyond the room is bounded";
    sim.Command("clear all");
    sim.Command("fail GetServingNetworkCapabilities 3");
    mask = 77;
    EXPECT_EQ(OrvGetServingNetworkGobi(&mask), ORV_RCODE_FAILED);
    EXPECT_EQ(mask, 77u);
}

TEST_F(Device, LogsTheNetworkPreferenceAndTheFirmwarePath)
{
    Start();
    LogCapture log;
    EXPECT_EQ(OrvSetNetworkPreferenceGobi(3), ORV_RCODE_OK);
    EXPECT_EQ(sim.Journal(), Lines{"SetNetworkPreference(3, 0)"});
    EXPECT_EQ(log.Texts(), Lines{"DEBUG: OrvSetNetworkPreferenceGobi is called with TechPref = 3, rc = 0"});
    sim.Command("fail SetNetworkPreference 5");
    log.Clear();
    EXPECT_EQ(OrvSetNetworkPreferenceGobi(4), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Texts(), (Lines{"Got GobiAPI error = 5", "SetNetworkPreference failed, TechPref = 4, rc = 2",
                                  "DEBUG: OrvSetNetworkPreferenceGobi is called with TechPref = 4, rc = 2"}));
    log.Clear();
    WCHAR path[] = ORV_TEXT("/images/0");
    EXPECT_EQ(OrvUpgradeFirmware(path), ORV_RCODE_OK);
    EXPECT_EQ(log.Texts(), (Lines{"OrvUpgradeFirmware: /images/0", "COrvGobiDll::UpgradeFirmware: /images/0"}));
}

TEST_F(Device, PassesSizesOnInEightBits)
{
    Start();
    EXPECT_EQ(OrvGetModelID(0x164, g_text), ORV_RCODE_OK);
    EXPECT_EQ(sim.Journal(), Lines{"GetModelID(100)"});
    EXPECT_EQ(std::string(g_text), sim.Command("get identity.model"));
}

} // namespace
