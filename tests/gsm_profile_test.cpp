// The default profile and the packet session of a GSM/UMTS module.

#include <gtest/gtest.h>

#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

#include "talvek/talvek.h"
#include "tests/support/guard_sweep.h"
#include "tests/support/log_capture.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

OrvGsmProfileBasic g_profile;
ORV_PKT_SESSION_STATUS g_status;
ULONG g_summary[20] = {7, 7, 7, 7, 7, 7};
WCHAR g_wide[32];
ULONGLONG g_sent, g_received;

const GuardedFunction kGuards[] = {
    {"OrvGetGsmProfileBasic", 10, 17, 0, [] { return OrvGetGsmProfileBasic(&g_profile); }},
    {"OrvSetGsmProfileBasic", 10, 4, 4, [] { return OrvSetGsmProfileBasic({}); }},
    {"OrvGetGsmProfileSummary", 10, 0, 0,
     [] { return OrvGetGsmProfileSummary(reinterpret_cast<OrvGsmProfileSummary*>(g_summary)); }},
    {"OrvActivateProfile", 10, 0, 0, [] { return OrvActivateProfile(1, 0); }},
    {"OrvGetIPAddress", 10, 17, 7, [] { return OrvGetIPAddress(g_wide, 16, nullptr); }},
    {"OrvGetTrafficStatistics", 10, 17, 0, [] { return OrvGetTrafficStatistics(&g_sent, &g_received); }},
    {"OrvGetProfile", 10, 17, 1, [] { return OrvGetProfile(nullptr); }},
    {"OrvSetProfile", 10, 17, 1, [] { return OrvSetProfile(nullptr); }},
    {"OrvGetProfileSummary", 10, 17, 1, [] { return OrvGetProfileSummary(nullptr); }},
    {"OrvGetPktSessionStatus", 10, 17, 1, [] { return OrvGetPktSessionStatus(nullptr); }},
    {"OrvGetPktSessionStatusEx", 10, 17, 0, [] { return OrvGetPktSessionStatusEx(&g_status, 0); }},
    {"OrvGetGsmProfileBasic, null", 10, 17, 4, [] { return OrvGetGsmProfileBasic(nullptr); }},
    {"OrvGetGsmProfileSummary, null", 10, 4, 4, [] { return OrvGetGsmProfileSummary(nullptr); }},
    {"OrvGetTrafficStatistics, null", 10, 17, 4, [] { return OrvGetTrafficStatistics(&g_sent, nullptr); }},
};

TEST(GsmProfileGuards, OfEveryFunction)
{
    SimHarness sim;
    SweepGuards(sim, kGuards, "umts:5120", "cdma:5101");
    EXPECT_EQ(std::vector<ULONG>(g_summary, g_summary + 6), (std::vector<ULONG>{80, 1, 1, 1, 1, 7}));
}

void Fill(WCHAR* field, const std::string& text)
{
    const std::u16string wide = Widen(text);
    std::copy(wide.begin(), wide.end(), field); // no terminator where it fills the field
}

template <size_t kSize>
std::string Text(const WCHAR (&field)[kSize])
{
    return std::string(field, std::find(field, field + kSize, u'\0'));
}

class GsmProfile : public ::testing::Test {
protected:
    void SetUp() override { SelectModule(sim, "umts:5120"); }
    void TearDown() override { OrvApiShutdown(); }

    // Records that were full of something else.
    OrvGsmProfileBasic Get()
    {
        memset(&g_profile, 0xAA, sizeof g_profile);
        EXPECT_EQ(OrvGetGsmProfileBasic(&g_profile), ORV_RCODE_OK);
        return g_profile;
    }
    ORV_PKT_SESSION_STATUS Status()
    {
        memset(&g_status, 0xAA, sizeof g_status);
        EXPECT_EQ(OrvGetPktSessionStatusEx(&g_status, 7), ORV_RCODE_OK);
        return g_status;
    }

    SimHarness sim;
};

TEST_F(GsmProfile, IsReadIntoTheWholeRecord)
{
    for (const char* line : {"pdp-type 2", "address 0x0A000001", "authentication 3", "name N", "apn A", "user U"})
        sim.Command(std::string("set profile.0.") + line);
    Get();
    const ULONG old = 0xAAAAAAAA; // words as they lie on this host, the first octet the least significant
    const ULONG words[][2] = {{0, 864},  {4, 0xAAAA0101},   {8, 2},     {12, 0xAA000000}, {16, 4},    {20, 0x0100000A},
                              {24, old}, {36, 'A'},         {240, 0},   {244, old},       {248, 3},   {252, 'U'},
                              {508, 0},  {760, 0},          {764, 'N'}, {828, 127},       {832, 127}, {836, 0},
                              {840, 0},  {844, 0xAAAAAA00}, {856, old}, {860, 0}};
    for (const auto& [offset, word] : words)
        EXPECT_EQ(memcmp(reinterpret_cast<BYTE*>(&g_profile) + offset, &word, 4), 0) << "offset " << offset;
    EXPECT_EQ(std::count(g_profile.szPassword, g_profile.szPassword + 128, 0), 128);
    EXPECT_EQ(sim.Journal(), Lines{"GetDefaultProfile(0, 31, 101, 128)"});
}

TEST_F(GsmProfile, IsSetAsTheModuleTakesIt)
{
    const struct {
        const char* name;
        BYTE dynamic;
        ULONG length, pdp_type;
        const char *apn, *call; // null: none
    } rows[] = {
        {"dynamic", 1, 0, 0, "A", R"((0, 0, null, null, null, 2, "N", "A", "", "P"))"},
        {"static", 0, 4, 0, "A", R"((0, 0, 167772161, null, null, 2, "N", "A", "", "P"))"},
        {"dynamic again", 255, 16, 0, "A", R"((0, 0, null, null, null, 2, "N", "A", "", "P"))"},
        {"other PDP type", 1, 0, 2, "", R"((0, 0, null, null, null, 2, "N", "", "", "P"))"},
        {"IPv6 length", 0, 16, 0, "A", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        OrvGsmProfileBasic profile = {};
        profile.bDynamicAddress = row.dynamic;
        profile.uAddressLen = row.length;
        memcpy(profile.abAddress, "\12\0\0\1", 4);
        profile.ePdpType = row.pdp_type;
        profile.eAuthentication = 2;
        Fill(profile.szProfileName, "N");
        Fill(profile.szAPN, row.apn);
        Fill(profile.szPassword, "P");
        sim.ClearJournal();
        LogCapture log;
        EXPECT_EQ(OrvSetGsmProfileBasic(profile), row.call ? ORV_RCODE_OK : ORV_RCODE_BAD_PARAMETER);
        EXPECT_EQ(sim.Journal(), row.call ? Lines{std::string("SetDefaultProfile") + row.call} : Lines());
        EXPECT_EQ(log.Count("PDP IP Address length should be 4 bytes only"), row.call ? 0 : 1);
        if (!row.call) continue;
        EXPECT_EQ(Get().bDynamicAddress, row.dynamic ? 1 : 0);
        EXPECT_EQ(g_profile.uAddressLen, row.dynamic ? 0u : 4u);
    }
}

TEST_F(GsmProfile, TextsAreCutAtTheirLengthsWithoutATerminator)
{
    const auto lengths = [](const OrvGsmProfileBasic& p) {
        return std::vector<size_t>{Text(p.szProfileName).size(), Text(p.szAPN).size(), Text(p.szUserName).size(),
                                   Text(p.szPassword).size()};
    };
    OrvGsmProfileBasic profile = {};
    profile.bDynamicAddress = 1;
    Fill(profile.szProfileName, std::string(32, 'n'));
    Fill(profile.szAPN, std::string(102, 'a'));
    Fill(profile.szUserName, std::string(128, 'u'));
    Fill(profile.szPassword, std::string(128, 'p'));
    EXPECT_EQ(OrvSetGsmProfileBasic(profile), ORV_RCODE_OK);
    EXPECT_EQ(sim.Command("get profile.0.password"), std::string(128, 'p'));
    const OrvGsmProfileBasic read = Get(); // the module fills its room, without a terminator
    EXPECT_EQ(lengths(read), (std::vector<size_t>{31, 101, 128, 0}));
    EXPECT_EQ(OrvSetGsmProfileBasic(read), ORV_RCODE_OK);
    EXPECT_EQ(sim.Command("get profile.0.user"), std::string(128, 'u')) << "what was read can be set";
    EXPECT_EQ(sim.Command("get profile.0.password"), "");
    sim.Command("hostile GetDefaultProfile scribble");
    EXPECT_EQ(lengths(Get()), (std::vector<size_t>{31, 101, 128, 0}));
}

TEST_F(GsmProfile, VendorErrorsAreLoggedAndConverted)
{
    ASSERT_EQ(OrvActivateProfile(1, 1), ORV_RCODE_OK);
    const struct {
        std::string entry, text;
        ORV_RCODE (*call)();
    } rows[] = {
        {"GetDefaultProfile", " Failed with GOBI error = 5", [] { return OrvGetGsmProfileBasic(&g_profile); }},
        {"SetDefaultProfile", " Failed with GOBI error = 5", [] { return OrvSetGsmProfileBasic(g_profile); }},
        {"StopDataSession", " Failed with GOBI error = 5", [] { return OrvActivateProfile(1, 0); }},
        {"GetByteTotals", " returned error = 5\n", [] { return OrvGetTrafficStatistics(&g_sent, &g_received); }},
    };
    g_profile = {};
    g_profile.bDynamicAddress = 1;
    for (const auto& row : rows) {
        sim.Command("fail " + row.entry + " 5");
        LogCapture log;
        EXPECT_EQ(row.call(), ORV_RCODE_VENDOR_5) << row.entry;
        EXPECT_EQ(log.Count("Gobi API " + row.entry + row.text), 1) << log.Dump();
    }
    EXPECT_EQ(g_profile.sizeStruct, 0u) << "written on success only";
    EXPECT_EQ(Status().uSessionHandle, 4097u) << "a session that could not be ended is still one";
}

TEST_F(GsmProfile, ASessionGoesUpOnceAndDownOnce)
{
    LogCapture log;
    EXPECT_EQ(OrvActivateProfile(9, 0), ORV_RCODE_OK) << "nothing to end";
    EXPECT_EQ(log.Count("Data session NOT active, DatsSessionId == 0"), 1);
    EXPECT_EQ(OrvActivateProfile(9, 2), ORV_RCODE_OK);
    const ORV_PKT_SESSION_STATUS up = Status();
    EXPECT_EQ(std::vector<ULONG>({up.bConnected, up.bZero, up.uEndReason, up.uSessionHandle, up.uProfile}),
              (std::vector<ULONG>{1, 0, 0, 4097, 1}));
    EXPECT_EQ(OrvActivateProfile(9, 1), ORV_RCODE_VENDOR_1026);
    EXPECT_EQ(log.Count("Data session already active, DataSessionId = 4097"), 1) << log.Dump();
    EXPECT_EQ(OrvActivateProfile(9, 0), ORV_RCODE_OK);
    EXPECT_EQ(Status().bConnected, 0);
    EXPECT_EQ(sim.Journal(), (Lines{"StartDataSession2(null, null, null)", "StopDataSession(4097)"}));
}

TEST_F(GsmProfile, AStartThatFailsIsNoSession)
{
    sim.Command("set session.start-status 5");
    sim.Command("set session.failure-reason 33");
    const char* const kText = "Gobi API StartDataSession Failed with GOBI error = 5 and Failure reason = ";
    for (const bool scribbles : {false, true}) {
        if (scribbles) sim.Command("hostile StartDataSession2 scribble");
        LogCapture log;
        EXPECT_EQ(OrvActivateProfile(1, 1), ORV_RCODE_VENDOR_5);
        EXPECT_EQ(log.Count(std::string(kText) + (scribbles ? "4294967295" : "33")), 1) << log.Dump();
        EXPECT_EQ(Status().uSessionHandle, 0u);
    }
    sim.Command("reset");
    EXPECT_EQ(OrvActivateProfile(1, 1), ORV_RCODE_OK) << "not active already";
}

TEST_F(GsmProfile, TheNetworksEndIsSeenWhile2029IsEnabled)
{
    for (const bool enabled : {false, true}) {
        SelectModule(sim, "umts:5120");
        ClientRecorder client;
        OrvRegisterCallback(client.Callback(), 0);
        if (enabled) OrvNotify(ORV_NOTIFY_PktSessionCall, 0);
        ASSERT_EQ(OrvActivateProfile(1, 1), ORV_RCODE_OK);
        for (const char* line : {"advance 1000", "session ends 3", "advance 1000"})
            sim.Command(line);
        EXPECT_EQ(client.Records().size(), enabled ? 2u : 0u);
        EXPECT_EQ(OrvActivateProfile(1, 1), enabled ? ORV_RCODE_OK : ORV_RCODE_VENDOR_1026);
        EXPECT_EQ(OrvActivateProfile(1, 0), enabled ? ORV_RCODE_OK : ORV_RCODE_VENDOR_15);
        OrvApiShutdown();
    }
}

TEST_F(GsmProfile, AddressIsWholeOrEmpty)
{
    ULONG number = 77;
    EXPECT_EQ(OrvGetIPAddress(g_wide, 16, &number), ORV_RCODE_VENDOR_15);
    EXPECT_EQ(number, 0u) << "the vendor's own output";
    sim.Command("set profile.0.address 0xFFFFFFFE"); // which the session then has
    ASSERT_EQ(OrvActivateProfile(1, 1), ORV_RCODE_OK);
    const std::string address = "255.255.255.254";
    for (ULONG length = 0; length <= 16; ++length) {
        std::fill(g_wide, g_wide + 17, u'x');
        EXPECT_EQ(OrvGetIPAddress(g_wide, length, length % 2 ? nullptr : &number), ORV_RCODE_OK);
        EXPECT_EQ(number, 0xFFFFFFFEu);
        EXPECT_EQ(length == 0 ? "" : Text(g_wide), length > address.size() ? address : "") << length;
        EXPECT_EQ(g_wide[length], u'x') << length;
    }
}

TEST_F(GsmProfile, TrafficHas64BitsAndWantsThePort)
{
    ASSERT_EQ(OrvActivateProfile(1, 1), ORV_RCODE_OK);
    sim.Command("session carries 4294967297 1");
    sim.Command("session carries 1 18446744073709551614");
    EXPECT_EQ(OrvGetTrafficStatistics(&g_sent, &g_received), ORV_RCODE_OK);
    EXPECT_EQ(g_sent, 4294967298u);
    EXPECT_EQ(g_received, ~ULONGLONG{0});
    OrvApiShutdown();
    sim.RemoveRegistry(); // no port is named
    SelectModule(sim, "umts:5120");
    EXPECT_EQ(OrvGetTrafficStatistics(nullptr, nullptr), ORV_RCODE_PORT_NOT_OPEN);
    EXPECT_EQ(sim.Journal(), Lines());
}

} // namespace
