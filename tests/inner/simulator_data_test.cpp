// The simulated module's data services: what a session has, profiles, Mobile IP, scans and registration.

#include <gtest/gtest.h>

#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

class SimulatorData : public ::testing::Test {
protected:
    SimHarness sim{"umts"};

    ULONG StartSession()
    {
        ULONG handle = 0;
        EXPECT_EQ(SIM_ENTRY(StartDataSession2)(nullptr, nullptr, nullptr, &handle, nullptr), 0u);
        return handle;
    }
};

// --- the session
// ------------------------------------------------------------------------------------------------------

TEST_F(SimulatorData, SessionNumbersAreThereWhileASessionIsUp)
{
    sim.Command("set data.dormancy 1"); // until a session starts
    sim.Command("set data.bearer 6");
    ULONG values[6] = {};
    ULONGLONG duration = 9;
    const struct {
        const char* name;
        ULONG (*call)(ULONG* values, ULONGLONG* duration);
        std::vector<ULONG> up, down;
    } rows[] = {
        {"address", [](ULONG* v, ULONGLONG*) { return SIM_ENTRY(GetIPAddress)(v); }, {0xC000020A}, {0}},
        {"dormancy", [](ULONG* v, ULONGLONG*) { return SIM_ENTRY(GetDormancyState)(v); }, {2}, {0}},
        {"bearer", [](ULONG* v, ULONGLONG*) { return SIM_ENTRY(GetDataBearerTechnology)(v); }, {6}, {0}},
        {"duration", [](ULONG*, ULONGLONG* d) { return SIM_ENTRY(GetSessionDuration)(d); }, {}, {}},
        {"rates",
         [](ULONG* v, ULONGLONG*) { return SIM_ENTRY(GetConnectionRate)(v, v + 1, v + 2, v + 3); },
         {2000000, 7200000, 5760000, 14400000},
         {0, 0, 5760000, 14400000}},
        {"packets",
         [](ULONG* v, ULONGLONG*) { return SIM_ENTRY(GetPacketStatus)(v, v + 1, v + 2, v + 3, v + 4, v + 5); },
         {1, 2, 3, 4, 5, 6},
         {0, 0, 0, 0, 0, 0}},
    };
    const char* const packets[] = {"sent", "received", "tx-errors", "rx-errors", "tx-overflows", "rx-overflows"};
    for (const auto& row : rows) {
        EXPECT_EQ(row.call(values, &duration), 15u) << row.name;
        EXPECT_EQ(std::vector<ULONG>(values, values + row.down.size()), row.down) << row.name;
    }
    EXPECT_EQ(duration, 0u);
    sim.Command("advance 700");
    const ULONG handle = StartSession();
    for (size_t i = 0; i < std::size(packets); ++i)
        sim.Command(std::string("set packets.") + packets[i] + " " + std::to_string(i + 1));
    sim.Command("advance 1500");
    for (const auto& row : rows) {
        EXPECT_EQ(row.call(values, &duration), 0u) << row.name;
        EXPECT_EQ(std::vector<ULONG>(values, values + row.up.size()), row.up) << row.name;
    }
    EXPECT_EQ(duration, 1500u);
    EXPECT_EQ(SIM_ENTRY(StopDataSession)(handle), 0u);
    StartSession();
    EXPECT_EQ(rows[5].call(values, &duration), 0u);
    EXPECT_EQ(std::vector<ULONG>(values, values + 6), rows[5].down) << "counted anew";
}

TEST_F(SimulatorData, TellsTheDialUpCallInTheOrderOfTheArguments)
{
    const char* const lines[] = {
        "dun.state 2",       "dun.dormant 3",        "dun.bearer 4",      "dun.end-reason 5", "dun.reports 42",
        "dun.duration-ms 6", "dun.report-seconds 7", "dun.sent 8",        "dun.received 9",   "dun.last-duration-ms 10",
        "dun.last-sent 11",  "dun.last-received 12", "dun.last-bearer 13"};
    for (const char* line : lines)
        sim.Command(std::string("set ") + line);
    ULONG state = 0, reason = 0, rates[4] = {};
    BYTE dormant = 0, bearer = 0, reports[6] = {}, last_bearer = 0;
    ULONGLONG duration = 0, sent = 0, received = 0, last[3] = {};
    WORD seconds = 0;
    const auto call = [&] {
        return SIM_ENTRY(GetDunCallInfo)(&state, &dormant, &bearer, &reason, &reports[0], &reports[1], &reports[2],
                                         &reports[3], &duration, &seconds, &sent, &received, &reports[4], &reports[5],
                                         &rates[0], &rates[1], &rates[2], &rates[3], &last[0], &last[1], &last[2],
                                         &last_bearer);
    };
    EXPECT_EQ(call(), 0u);
    EXPECT_EQ((std::vector<ULONGLONG>{state, dormant, bearer, reason, duration, seconds, sent, received, last[0],
                                      last[1], last[2], last_bearer}),
              (std::vector<ULONGLONG>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
    EXPECT_EQ(std::vector<BYTE>(reports, reports + 6), (std::vector<BYTE>{0, 1, 0, 1, 0, 1})) << "42, low bit first";
    EXPECT_EQ(std::vector<ULONG>(rates, rates + 4), (std::vector<ULONG>{2000000, 7200000, 5760000, 14400000}));
    sim.Command("set dun.state 1");
    call();
    EXPECT_EQ(std::vector<ULONG>(rates, rates + 2), (std::vector<ULONG>{0, 0})) << "no call, no rate";
}

// --- profiles
// ---------------------------------------------------------------------------------------------------------

struct Profile {
    ULONG numbers[5] = {};
    char name[32] = {}, apn[102] = {}, user[129] = {};

    ULONG Read(ULONG type)
    {
        return SIM_ENTRY(GetDefaultProfile)(type, &numbers[0], &numbers[1], &numbers[2], &numbers[3], &numbers[4],
                                            sizeof(name), name, sizeof(apn), apn, sizeof(user), user);
    }
    std::string Text() const
    {
        std::string text;
        for (const ULONG number : numbers)
            text += std::to_string(number) + " ";
        return text + name + "|" + apn + "|" + user;
    }
};

TEST_F(SimulatorData, KeepsBothDefaultProfiles)
{
    Profile profile;
    EXPECT_EQ(profile.Read(0), 0u);
    EXPECT_EQ(profile.Text(), "0 0 0 0 0 default|internet|");
    ULONG numbers[] = {2, 0x0A000001, 0x0A000035, 0x0A000036, 3};
    char name[] = "work", apn[] = "vpn.example", user[] = "me", password[] = "secret";
    EXPECT_EQ(SIM_ENTRY(SetDefaultProfile)(1, &numbers[0], &numbers[1], &numbers[2], &numbers[3], &numbers[4], name,
                                           apn, user, password),
              0u);
    EXPECT_EQ(profile.Read(1), 0u);
    EXPECT_EQ(profile.Text(), "2 167772161 167772213 167772214 3 work|vpn.example|me");
    EXPECT_EQ(sim.Command("get profile.1.password"), "secret");
    char other[] = "other";
    EXPECT_EQ(
        SIM_ENTRY(SetDefaultProfile)(1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, other, nullptr, nullptr),
        0u);
    profile.Read(1);
    EXPECT_EQ(profile.Text(), "2 0 0 0 3 work|other|me") << "null leaves the rest, but is no address";
    profile.Read(0);
    EXPECT_EQ(profile.Text(), "0 0 0 0 0 default|internet|") << "the other one is untouched";
}

TEST_F(SimulatorData, RefusesADefaultProfileAsAWhole)
{
    const struct {
        const char* name;
        ULONG type, pdp_type, authentication;
        size_t lengths[4]; // of name, APN, user and password
        ULONG status;
    } rows[] = {{"longest", 0, 3, 3, {31, 101, 128, 128}, 0}, {"type", 2, 0, 0, {1, 1, 1, 1}, 4},
                {"PDP type", 0, 4, 0, {1, 1, 1, 1}, 4},       {"authentication", 0, 0, 4, {1, 1, 1, 1}, 4},
                {"name", 0, 0, 0, {32, 1, 1, 1}, 4},          {"APN", 0, 0, 0, {1, 102, 1, 1}, 4},
                {"user", 0, 0, 0, {1, 1, 129, 1}, 4},         {"password", 0, 0, 0, {1, 1, 1, 129}, 4}};
    for (const auto& row : rows) {
        sim.Command("reset");
        std::string texts[4];
        for (size_t i = 0; i < 4; ++i)
            texts[i] = std::string(row.lengths[i], 'x');
        ULONG pdp_type = row.pdp_type, address = 1, authentication = row.authentication;
        EXPECT_EQ(SIM_ENTRY(SetDefaultProfile)(row.type, &pdp_type, &address, nullptr, nullptr, &authentication,
                                               &texts[0][0], &texts[1][0], &texts[2][0], &texts[3][0]),
                  row.status)
            << row.name;
        const bool kept = row.status == 0;
        EXPECT_EQ(sim.Command("get profile.0.address"), kept ? "1" : "0") << row.name;
        EXPECT_EQ(sim.Command("get profile.0.apn"), kept ? texts[1] : "internet") << row.name;
    }
    ULONG setting = 9;
    EXPECT_EQ(SIM_ENTRY(SetAutoConnect)(2), 4u);
    EXPECT_EQ(SIM_ENTRY(SetAutoConnect)(1), 0u);
    EXPECT_EQ(SIM_ENTRY(GetAutoConnect)(&setting), 0u);
    EXPECT_EQ(setting, 1u);
}

// --- Mobile IP
// --------------------------------------------------------------------------------------------------------

TEST_F(SimulatorData, KeepsSixMobileIPProfiles)
{
    char spc[] = "000000", wrong[] = "000001";
    for (BYTE i = 0; i < 6; ++i) {
        BYTE enabled = i % 2, reverse = i > 2;
        ULONG numbers[] = {i + 10u, i + 20u, i + 30u, i + 40u, i + 50u};
        std::string nai = "user" + std::to_string(i), ha = "ha" + std::to_string(i), aaa = "aaa" + std::to_string(i);
        EXPECT_EQ(SIM_ENTRY(SetMobileIPProfile)(spc, i, &enabled, &numbers[0], &numbers[1], &numbers[2], &reverse,
                                                &nai[0], &numbers[3], &numbers[4], &ha[0], &aaa[0]),
                  0u);
    }
    const auto set_nai = [](char* code, BYTE index, char* nai) {
        return SIM_ENTRY(SetMobileIPProfile)(code, index, nullptr, nullptr, nullptr, nullptr, nullptr, nai, nullptr,
                                             nullptr, nullptr, nullptr);
    };
    std::string nai(72, 'n'), long_nai(73, 'n');
    EXPECT_EQ(set_nai(spc, 5, &nai[0]), 0u);
    EXPECT_EQ(set_nai(spc, 4, &long_nai[0]), 4u);
    EXPECT_EQ(set_nai(spc, 6, &nai[0]), 4u);
    EXPECT_EQ(set_nai(wrong, 3, &nai[0]), 20u);
    for (BYTE i = 0; i < 6; ++i) {
        BYTE enabled = 9, reverse = 9;
        ULONG n[5] = {};
        char text[73] = {};
        EXPECT_EQ(
            SIM_ENTRY(GetMobileIPProfile)(i, &enabled, &n[0], &n[1], &n[2], &reverse, sizeof(text), text, &n[3], &n[4]),
            0u);
        EXPECT_EQ(std::vector<ULONG>({enabled, reverse, n[0], n[1], n[2], n[3], n[4]}),
                  std::vector<ULONG>({i % 2u, i > 2u, i + 10u, i + 20u, i + 30u, i + 40u, i + 50u}));
        EXPECT_EQ(text, i == 5 ? nai : "user" + std::to_string(i));
        EXPECT_EQ(sim.Command("get mip." + std::to_string(i) + ".ha-secret"), "ha" + std::to_string(i));
        EXPECT_EQ(sim.Command("get mip." + std::to_string(i) + ".aaa-secret"), "aaa" + std::to_string(i));
    }
    BYTE enabled = 0, reverse = 0;
    ULONG n[5] = {};
    char one[1];
    EXPECT_EQ(SIM_ENTRY(GetMobileIPProfile)(6, &enabled, &n[0], &n[1], &n[2], &reverse, 1, one, &n[3], &n[4]), 4u);
}

TEST_F(SimulatorData, KeepsWhatMobileIPProfilesShare)
{
    char spc[] = "000000";
    BYTE active = 9;
    EXPECT_EQ(SIM_ENTRY(SetActiveMobileIPProfile)(spc, 6), 4u);
    EXPECT_EQ(SIM_ENTRY(SetActiveMobileIPProfile)(spc, 5), 0u);
    EXPECT_EQ(SIM_ENTRY(GetActiveMobileIPProfile)(&active), 0u);
    EXPECT_EQ(active, 5);
    ULONG mode = 2, bad_mode = 3;
    BYTE values[] = {1, 2, 3, 1, 0, 1}, flag = 2;
    EXPECT_EQ(SIM_ENTRY(SetMobileIPParameters)(spc, &mode, &values[0], &values[1], &values[2], &values[3], &values[4],
                                               &values[5]),
              0u);
    BYTE other = 77;
    EXPECT_EQ(SIM_ENTRY(SetMobileIPParameters)(spc, &bad_mode, &other, nullptr, nullptr, nullptr, nullptr, nullptr),
              4u);
    EXPECT_EQ(SIM_ENTRY(SetMobileIPParameters)(spc, nullptr, &other, nullptr, nullptr, &flag, nullptr, nullptr), 4u);
    BYTE read[6] = {};
    mode = 0;
    EXPECT_EQ(SIM_ENTRY(GetMobileIPParameters)(&mode, &read[0], &read[1], &read[2], &read[3], &read[4], &read[5]), 0u);
    EXPECT_EQ(memcmp(read, values, 6), 0) << "a refused write keeps nothing";
    EXPECT_EQ(mode, 2u);
    EXPECT_EQ(SIM_ENTRY(SetMobileIP)(3), 4u);
    EXPECT_EQ(SIM_ENTRY(SetMobileIP)(1), 0u);
    EXPECT_EQ(SIM_ENTRY(GetMobileIP)(&mode), 0u);
    EXPECT_EQ(mode, 1u);

    static Lines events;
    events.clear();
    SimRegistration<GobiSetMobileIPStatus>("SetMobileIPStatusCallback")(
        [](ULONG status) { events.push_back(std::to_string(status)); });
    sim.Command("set mip.error 67");
    const ULONG handle = StartSession();
    sim.Command("advance 100");
    EXPECT_EQ(events, Lines{"67"});
    ULONG error = 0;
    EXPECT_EQ(SIM_ENTRY(GetLastMobileIPError)(&error), 0u);
    EXPECT_EQ(error, 67u);
    SIM_ENTRY(StopDataSession)(handle);
    SIM_ENTRY(SetMobileIP)(0);
    StartSession();
    sim.Command("advance 1000");
    EXPECT_EQ(events.size(), 1u) << "simple IP registers with nobody";
}

// --- scans and registration
// -------------------------------------------------------------------------------------------

TEST_F(SimulatorData, ScansAtMostAsManyNetworksAsThereIsRoomFor)
{
    for (const size_t room : {0u, 1u, 3u, 5u, 50u}) {
        std::vector<GobiNetworkInfo> networks(room);
        std::vector<GobiNetworkRAT> rats(room);
        BYTE count = static_cast<BYTE>(room), rat_count = count;
        EXPECT_EQ(SIM_ENTRY(PerformNetworkScan)(&count, reinterpret_cast<BYTE*>(networks.data())), room ? 0u : 4u);
        EXPECT_EQ(count, std::min<size_t>(room, 4)) << "each network once";
        count = static_cast<BYTE>(room);
        EXPECT_EQ(SIM_ENTRY(PerformNetworkRATScan)(&count, reinterpret_cast<BYTE*>(networks.data()), &rat_count,
                                                   reinterpret_cast<BYTE*>(rats.data())),
                  room ? 0u : 4u);
        EXPECT_EQ(count, std::min<size_t>(room, 5)) << "each network for each technology";
        EXPECT_EQ(rat_count, count);
    }
    GobiNetworkInfo networks[50];
    GobiNetworkRAT rats[50];
    BYTE count = 50, rat_count = 50;
    SIM_ENTRY(PerformNetworkRATScan)
    (&count, reinterpret_cast<BYTE*>(networks), &rat_count, reinterpret_cast<BYTE*>(rats));
    Lines found;
    for (BYTE i = 0; i < count; ++i) {
        const GobiNetworkInfo& n = networks[i];
        found.push_back(std::to_string(n.mcc) + " " + std::to_string(n.mnc) + " " + std::to_string(rats[i].rat) + " " +
                        std::to_string(n.inUse) + std::to_string(n.roaming) + std::to_string(n.forbidden) +
                        std::to_string(n.preferred) + " " + n.description);
        EXPECT_EQ(rats[i].mnc, n.mnc);
    }
    EXPECT_EQ(found, (Lines{"1 1 5 1221 Test Network", "1 1 4 1221 Test Network", "1 2 5 2222 Second Network",
                            "1 3 4 2212 Closed Network", "999 70 5 2122 Foreign Network"}));

    std::string fifty;
    for (int i = 0; i < 50; ++i)
        fifty += (i ? " " : "") + std::to_string(i) + ":1:5:0";
    sim.Command("set scan.networks \"" + fifty + "\"");
    sim.Command("set scan.names \"" + std::string(1000, 'n') + "\"");
    count = 50;
    EXPECT_EQ(SIM_ENTRY(PerformNetworkScan)(&count, reinterpret_cast<BYTE*>(networks)), 0u);
    EXPECT_EQ(count, 50);
    EXPECT_EQ(networks[49].mcc, 49);
    EXPECT_EQ(std::string(networks[0].description, 256), std::string(256, 'n')) << "fills its field";
    EXPECT_EQ(networks[1].description[0], 0) << "has no name";
    sim.Command("set power.mode 6");
    EXPECT_EQ(SIM_ENTRY(PerformNetworkScan)(&count, reinterpret_cast<BYTE*>(networks)), 12u);
}

std::string Where(SimHarness& sim)
{
    std::string where;
    for (const char* field : {"registration", "mcc", "mnc", "interfaces", "roaming", "name"})
        where += sim.Command(std::string("get network.") + field) + " ";
    return where;
}

TEST_F(SimulatorData, RegistersAsItIsAsked)
{
    const struct {
        const char* name;
        ULONG type;
        WORD mcc, mnc;
        ULONG rat, status;
        const char* meanwhile;
        const char* then;
    } rows[] = {
        {"automatic already", 1, 0, 0, 4, 1026, "1 1 1 5 1 Test Network ", "1 1 1 5 1 Test Network "},
        {"manual, the same network", 2, 1, 1, 5, 0, "2 1 1 5 1 Test Network ", "1 1 1 5 1 Test Network "},
        {"manual already", 2, 1, 1, 5, 1026, "1 1 1 5 1 Test Network ", "1 1 1 5 1 Test Network "},
        {"another technology", 2, 1, 1, 4, 0, "2 1 1 5 1 Test Network ", "1 1 1 4 1 Test Network "},
        {"abroad", 2, 999, 70, 0, 0, "2 1 1 4 1 Test Network ", "1 999 70 5 0 Foreign Network "},
        {"forbidden", 2, 1, 3, 4, 0, "2 999 70 5 0 Foreign Network ", "3 999 70 5 0 Foreign Network "},
        {"not there", 2, 262, 1, 5, 0, "2 999 70 5 0 Foreign Network ", "0 999 70 5 0 Foreign Network "},
        {"not there in GSM", 2, 1, 2, 4, 0, "2 999 70 5 0 Foreign Network ", "0 999 70 5 0 Foreign Network "},
        {"automatic", 1, 0, 0, 4, 0, "2 999 70 5 0 Foreign Network ", "1 1 1 5 1 Test Network "},
        {"type", 3, 1, 1, 5, 4, "1 1 1 5 1 Test Network ", "1 1 1 5 1 Test Network "},
        {"MCC", 2, 1000, 1, 5, 4, "1 1 1 5 1 Test Network ", "1 1 1 5 1 Test Network "},
        {"radio interface", 2, 1, 1, 9, 4, "1 1 1 5 1 Test Network ", "1 1 1 5 1 Test Network "},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SIM_ENTRY(InitiateNetworkRegistration)(row.type, row.mcc, row.mnc, row.rat), row.status) << row.name;
        sim.Command("advance 199");
        EXPECT_EQ(Where(sim), row.meanwhile) << row.name;
        sim.Command("advance 1");
        EXPECT_EQ(Where(sim), row.then) << row.name;
    }
    sim.Command("set power.mode 6");
    EXPECT_EQ(SIM_ENTRY(InitiateNetworkRegistration)(2, 1, 2, 5), 12u);
}

TEST_F(SimulatorData, RegistrationAndDetachEndTheSessionWithAnEvent)
{
    static Lines events;
    events.clear();
    SimRegistration<GobiSetSessionState>("SetSessionStateCallback")([](ULONG state, ULONG reason) {
        events.push_back("session " + std::to_string(state) + " " + std::to_string(reason));
    });
    SimRegistration<GobiSetRoamingIndicator>("SetRoamingIndicatorCallback")(
        [](ULONG roaming) { events.push_back("roaming " + std::to_string(roaming)); });
    SimRegistration<GobiSetRFInfo>("SetRFInfoCallback")([](ULONG interface, ULONG band, ULONG channel) {
        events.push_back("rf " + std::to_string(interface) + " " + std::to_string(band) + " " +
                         std::to_string(channel));
    });
    const ULONG handle = StartSession();
    sim.Command("advance 100");
    sim.Command("set session.end-reason 4");
    sim.Command("set scan.networks 999:70:4:1");
    EXPECT_EQ(SIM_ENTRY(InitiateNetworkRegistration)(2, 999, 70, 4), 0u);
    EXPECT_EQ(SIM_ENTRY(StopDataSession)(handle), 15u) << "has ended";
    sim.Command("advance 1000");
    EXPECT_EQ(events, (Lines{"session 2 0", "session 1 4", "roaming 0", "rf 4 41 62"}));
    StartSession();
    EXPECT_EQ(SIM_ENTRY(InitiateDomainAttach)(1), 1026u);
    EXPECT_EQ(SIM_ENTRY(InitiateDomainAttach)(3), 4u);
    EXPECT_EQ(SIM_ENTRY(InitiateDomainAttach)(2), 0u);
    EXPECT_EQ(sim.Command("get network.ps") + sim.Command("get session.state"), "21");
    EXPECT_EQ(SIM_ENTRY(InitiateDomainAttach)(2), 1026u);
    sim.Command("set network.registration 2");
    EXPECT_EQ(SIM_ENTRY(InitiateDomainAttach)(1), 12u);
    sim.Command("set network.registration 1");
    EXPECT_EQ(SIM_ENTRY(InitiateDomainAttach)(1), 0u);
}

TEST_F(SimulatorData, AnEarlierRegistrationDoesNotOvertakeALaterOne)
{
    SIM_ENTRY(InitiateNetworkRegistration)(2, 1, 3, 4); // forbidden
    sim.Command("advance 150");
    EXPECT_EQ(SIM_ENTRY(InitiateNetworkRegistration)(2, 1, 2, 5), 0u);
    sim.Command("advance 199");
    EXPECT_EQ(sim.Command("get network.registration"), "2");
    sim.Command("advance 1");
    EXPECT_EQ(sim.Command("get network.registration") + sim.Command("get network.mnc"), "12");
    SIM_ENTRY(InitiateNetworkRegistration)(1, 0, 0, 4);
    EXPECT_EQ(SIM_ENTRY(QCWWANDisconnect)(), 0u);
    sim.Command("advance 1000");
    EXPECT_EQ(sim.Command("get network.registration"), "0") << "ends without an outcome";
}

TEST_F(SimulatorData, KnowsTheHomeNetwork)
{
    sim.Command("model cdma");
    WORD mcc = 0, mnc = 0, sid = 0, nid = 0;
    char name[8];
    EXPECT_EQ(SIM_ENTRY(GetHomeNetwork)(&mcc, &mnc, sizeof(name), name, &sid, &nid), 0u);
    EXPECT_EQ((std::vector<WORD>{mcc, mnc, sid, nid}), (std::vector<WORD>{1, 1, 4107, 65535}));
    EXPECT_EQ(std::string(name, 8), "Test Car") << "cut, without a terminator";
}

// --- hostile outputs: never beyond the room, which the sanitizer watches
// ----------------------------------------------

TEST_F(SimulatorData, HostileOutputsKeepToTheRoom)
{
    for (const char* kind : {"scribble", "count 255"}) {
        for (const char* name : {"PerformNetworkScan", "PerformNetworkRATScan", "GetDefaultProfile", "GetHomeNetwork",
                                 "GetMobileIPProfile", "GetConnectionRate"}) {
            sim.Command(std::string("hostile ") + name + " " + kind);
        }
        const bool scribbles = kind[0] == 's';
        std::vector<GobiNetworkInfo> networks(3);
        std::vector<GobiNetworkRAT> rats(2);
        BYTE count = 3, rat_count = 2;
        EXPECT_EQ(SIM_ENTRY(PerformNetworkRATScan)(&count, reinterpret_cast<BYTE*>(networks.data()), &rat_count,
                                                   reinterpret_cast<BYTE*>(rats.data())),
                  0u);
        EXPECT_EQ(count, 255) << kind;
        EXPECT_EQ(rat_count, 255) << kind;
        EXPECT_EQ(networks[2].mcc, scribbles ? 0xFFFF : 1) << "all of the room";
        count = 3;
        SIM_ENTRY(PerformNetworkScan)(&count, reinterpret_cast<BYTE*>(networks.data()));
        EXPECT_EQ(count, 255) << kind;

        std::vector<char> name(7), apn(9), user(1);
        ULONG n[5] = {};
        SIM_ENTRY(GetDefaultProfile)
        (0, &n[0], &n[1], &n[2], &n[3], &n[4], 7, name.data(), 9, apn.data(), 1, user.data());
        EXPECT_EQ(std::string(name.data(), 7), scribbles ? "%s%n%s%" : "default") << kind;
        EXPECT_EQ(n[4], scribbles ? 0xFFFFFFFF : 0);
        WORD words[4];
        SIM_ENTRY(GetHomeNetwork)(&words[0], &words[1], 7, name.data(), &words[2], &words[3]);
        BYTE flags[2];
        SIM_ENTRY(GetMobileIPProfile)(0, &flags[0], &n[0], &n[1], &n[2], &flags[1], 1, user.data(), &n[3], &n[4]);
        EXPECT_EQ(flags[0], scribbles ? 0xFF : 0) << kind;
    }
    sim.Command("fail GetConnectionRate 5");
    ULONG rate = 7;
    EXPECT_EQ(SIM_ENTRY(GetConnectionRate)(&rate, &rate, &rate, &rate), 5u);
    EXPECT_EQ(rate, 7u);
}

TEST_F(SimulatorData, JournalsInputsAndNotOutputs)
{
    char spc[] = "123456", nai[] = "a@b";
    BYTE on = 1;
    ULONG spi = 300;
    sim.ClearJournal();
    SIM_ENTRY(SetMobileIPProfile)
    (spc, 2, &on, nullptr, nullptr, nullptr, nullptr, nai, &spi, nullptr, nullptr, nullptr);
    SIM_ENTRY(InitiateNetworkRegistration)(2, 1, 3, 4);
    BYTE count = 50;
    SIM_ENTRY(PerformNetworkScan)(&count, nullptr);
    SIM_ENTRY(GetConnectionRate)(nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(sim.Journal(),
              (Lines{"SetMobileIPProfile(\"123456\", 2, 1, null, null, null, null, \"a@b\", 300, null, null, null)",
                     "InitiateNetworkRegistration(2, 1, 3, 4)", "PerformNetworkScan(50)", "GetConnectionRate()"}));
}

} // namespace
