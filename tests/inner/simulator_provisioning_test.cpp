// The simulated module's provisioning services: the code that guards them, activation, identities, device management.

#include <gtest/gtest.h>

#include <string.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

class SimulatorProvisioning : public ::testing::Test {
protected:
    SimHarness sim{"cdma"};
    char spc[7] = "000000", wrong[7] = "123456";

    std::string Get(const std::string& field) { return sim.Command("get " + field); }
};

Lines g_events;

void RegisterEvents()
{
    g_events.clear();
    SimRegistration<GobiSetActivationStatus>("SetActivationStatusCallback")(
        [](ULONG state) { g_events.push_back(std::to_string(state)); });
    SimRegistration<GobiSetOMADMState>("SetOMADMStateCallback")(
        [](ULONG state, ULONG reason) { g_events.push_back(std::to_string(state) + ":" + std::to_string(reason)); });
    SimRegistration<GobiSetOMAEXEvent>("SetORVOMAEXEventCallback")([](FUMOInfo* firmware, OMAInfo* oma) {
        if (firmware) g_events.push_back("fumo " + std::to_string(firmware->event));
        if (oma) g_events.push_back("oma " + std::to_string(oma->event) + ":" + std::to_string(oma->status));
    });
}

Lines TakeEvents()
{
    Lines events;
    events.swap(g_events);
    return events;
}

// --- the code
// ---------------------------------------------------------------------------------------------------------

TEST_F(SimulatorProvisioning, LocksTheCodeAfterTenWrongOnes)
{
    char shorter[] = "00000", longer[] = "0000000", letters[] = "00000a";
    const struct {
        const char* name;
        char* code;
        int times;
        ULONG status;
        const char* left;
    } rows[] = {{"right", spc, 1, 0, "10"},
                {"null", nullptr, 1, 4, "10"},
                {"too short", shorter, 1, 4, "10"},
                {"too long", longer, 1, 4, "10"},
                {"no digits", letters, 1, 4, "10"},
                {"wrong", wrong, 9, 20, "1"},
                {"right again gives all back", spc, 1, 0, "10"},
                {"wrong to the end", wrong, 10, 20, "0"},
                {"locked for the wrong one", wrong, 1, 21, "0"},
                {"and for the right one", spc, 1, 21, "0"}};
    for (const auto& row : rows) {
        for (int i = 0; i < row.times; ++i)
            EXPECT_EQ(SIM_ENTRY(ValidateSPC)(row.code), row.status) << row.name;
        EXPECT_EQ(Get("cdma.spc-attempts"), row.left) << row.name;
    }
    EXPECT_EQ(SIM_ENTRY(SetPower)(5), 0u);
    sim.Command("advance 10000");
    EXPECT_EQ(SIM_ENTRY(ValidateSPC)(spc), 0u) << "the module was off";
}

TEST_F(SimulatorProvisioning, EveryWriteNeedsTheCode)
{
    char mdn[] = "5550100", min[] = "5550100123";
    const struct {
        const char* name;
        std::function<ULONG(char*)> call;
    } rows[] = {
        {"active profile", [](char* code) { return SIM_ENTRY(SetActiveMobileIPProfile)(code, 1); }},
        {"profile",
         [](char* code) {
             return SIM_ENTRY(SetMobileIPProfile)(code, 1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                  nullptr, nullptr, nullptr, nullptr);
         }},
        {"parameters",
         [](char* code) {
             BYTE limit = 9;
             return SIM_ENTRY(SetMobileIPParameters)(code, nullptr, &limit, nullptr, nullptr, nullptr, nullptr,
                                                     nullptr);
         }},
        {"network",
         [](char* code) {
             ULONG roaming = 2;
             return SIM_ENTRY(SetCDMANetworkParameters)(code, nullptr, nullptr, nullptr, nullptr, nullptr, &roaming);
         }},
        {"class", [](char* code) { return SIM_ENTRY(SetACCOLC)(code, 7); }},
        {"activation",
         [&](char* code) { return SIM_ENTRY(ActivateManual)(code, 4, mdn, min, 0, nullptr, nullptr, nullptr); }},
        {"factory", [](char* code) { return SIM_ENTRY(ResetToFactoryDefaults)(code); }},
    };
    const auto state = [&] {
        return Get("mip.active") + Get("mip.retry-limit") + Get("cdma.roaming") + Get("cdma.accolc") + Get("home.sid") +
               Get("activation.state");
    };
    const std::string before = state();
    for (const auto& row : rows) {
        EXPECT_EQ(row.call(wrong), 20u) << row.name;
        EXPECT_EQ(row.call(nullptr), 4u) << row.name;
    }
    EXPECT_EQ(state(), before);
    EXPECT_EQ(Get("cdma.spc-attempts"), "3");
    for (const auto& row : rows)
        EXPECT_EQ(row.call(spc), 0u) << row.name;
}

// --- parameters and identities
// ----------------------------------------------------------------------------------------

TEST_F(SimulatorProvisioning, KeepsNetworkParametersInTheOrderOfTheArguments)
{
    for (const char* line :
         {"slot-cycle-index 1", "station-class-mark 2", "home-only 3", "sid-registration 4", "nid-registration 5"}) {
        sim.Command(std::string("set cdma.") + line);
    }
    BYTE on = 1, off = 0, bad = 2;
    ULONG values[] = {8, 9, 10, 3}, high = 4;
    EXPECT_EQ(SIM_ENTRY(SetCDMANetworkParameters)(spc, &off, &on, &values[0], &values[1], &values[2], &values[3]), 0u);
    EXPECT_EQ(SIM_ENTRY(SetCDMANetworkParameters)(spc, &on, nullptr, nullptr, nullptr, nullptr, &high), 4u);
    EXPECT_EQ(SIM_ENTRY(SetCDMANetworkParameters)(spc, nullptr, &bad, &high, nullptr, nullptr, nullptr), 4u);
    BYTE octets[7] = {};
    ULONG words[4] = {};
    EXPECT_EQ(SIM_ENTRY(GetCDMANetworkParameters)(&octets[0], &octets[1], &octets[2], &octets[3], &octets[4],
                                                  &octets[5], &octets[6], &words[0], &words[1], &words[2], &words[3]),
              0u);
    EXPECT_EQ(std::vector<BYTE>(octets, octets + 7), (std::vector<BYTE>{1, 2, 3, 4, 5, 0, 1}));
    EXPECT_EQ(std::vector<ULONG>(words, words + 4), (std::vector<ULONG>{8, 9, 10, 3}));
    BYTE accolc = 0;
    EXPECT_EQ(SIM_ENTRY(SetACCOLC)(spc, 16), 4u);
    EXPECT_EQ(SIM_ENTRY(SetACCOLC)(spc, 15), 0u);
    EXPECT_EQ(SIM_ENTRY(GetACCOLC)(&accolc), 0u);
    EXPECT_EQ(accolc, 15);
}

TEST_F(SimulatorProvisioning, KeepsTheSubscription)
{
    BYTE nam = 0, current = 0xFF, other = 1, length = 15, number[15];
    MinBasedImsi min_based = {};
    TrueImsi true_imsi = {};
    const auto get = SIM_ENTRY(Get3Gpp2SubscriptionInfo);
    const auto set = SIM_ENTRY(Set3Gpp2SubscriptionInfo);
    EXPECT_EQ(get(&nam, &min_based, &true_imsi, &length, number), 0u);
    EXPECT_EQ(std::string(min_based.s2, 3) + "|" + std::string(min_based.s1, 7), "202|5550123");
    EXPECT_EQ(std::string(reinterpret_cast<char*>(number), length), "2025550123");
    memcpy(min_based.s2, "415", 3);
    memcpy(min_based.s1, "5550188", 7);
    memcpy(true_imsi.mcc, "310", 3);
    true_imsi.addrNum = 7;
    BYTE digits[] = {'4', '1', '5', '5'}, letter[] = {'x'}, four = 4, one = 1, sixteen = 16;
    sim.ClearJournal();
    EXPECT_EQ(set(&current, &min_based, &true_imsi, &four, digits), 0u);
    EXPECT_EQ(sim.Journal(),
              Lines{"Set3Gpp2SubscriptionInfo(255, \"001015550188415\", \"310015550123202\", 4, \"4155\")"});
    TrueImsi bad = true_imsi;
    bad.addrNum = 8;
    MinBasedImsi lettered = min_based;
    lettered.s1[6] = 'x';
    const struct {
        const char* name;
        ULONG status;
    } refused[] = {{"NAM", set(&other, nullptr, nullptr, nullptr, nullptr)},
                   {"no NAM", set(nullptr, nullptr, nullptr, nullptr, nullptr)},
                   {"long number", set(&nam, nullptr, nullptr, &sixteen, number)},
                   {"letter", set(&nam, nullptr, nullptr, &one, letter)},
                   {"no length", set(&nam, nullptr, nullptr, nullptr, number)},
                   {"address", set(&nam, nullptr, &bad, nullptr, nullptr)},
                   {"identity", set(&nam, &lettered, nullptr, &one, digits)},
                   {"NAM of a read", get(&other, &min_based, &true_imsi, &length, number)}};
    for (const auto& row : refused)
        EXPECT_EQ(row.status, 4u) << row.name;
    EXPECT_EQ(Get("cdma.mdn") + " " + Get("cdma.min") + " " + Get("cdma.true-mcc") + " " + Get("cdma.true-addr-num"),
              "4155 4155550188 310 7");
    length = 2;
    EXPECT_EQ(get(&current, &min_based, &true_imsi, &length, number), 0u);
    EXPECT_EQ(length, 2) << "no more than the room";
    sim.Command("set cdma.min 12");
    EXPECT_EQ(get(&current, &min_based, &true_imsi, &length, number), 0u);
    EXPECT_EQ(std::string(min_based.s2, 3) + std::string(min_based.s1, 7), std::string("12\0\0\0\0\0\0\0\0", 10));
}

TEST_F(SimulatorProvisioning, GivesTheSizeOfAFileThatDoesNotFit)
{
    for (const ULONG size : {0u, 8u, 10240u, 10241u}) {
        sim.Command("set eri.size " + std::to_string(size));
        for (const ULONG room : {4u, 10240u}) {
            std::vector<BYTE> file(room, 0xEE);
            ULONG count = room;
            EXPECT_EQ(SIM_ENTRY(GetERIFile)(&count, file.data()), 0u);
            EXPECT_EQ(count, size);
            EXPECT_EQ(file[1], size ? 3 : 0xEE);
            EXPECT_EQ(file[room - 1], size >= room ? 0 : 0xEE) << size << " in " << room;
        }
    }
    std::vector<BYTE> file(5);
    ULONG count = 5;
    sim.Command("hostile GetERIFile scribble");
    EXPECT_EQ(SIM_ENTRY(GetERIFile)(&count, file.data()), 0u);
    EXPECT_EQ(count, 0xFFFFFFFFu);
    EXPECT_EQ(file[4], 0xFF);
    count = 5;
    sim.Command("hostile GetERIFile count 4000000000");
    SIM_ENTRY(GetERIFile)(&count, file.data());
    EXPECT_EQ(count, 4000000000u);
}

TEST_F(SimulatorProvisioning, KnowsWhoItIs)
{
    char esn[17] = {}, imei[17] = {}, meid[17] = {}, imsi[17] = {}, number[20] = {}, min[20] = {};
    const auto identity = [&] {
        SIM_ENTRY(GetSerialNumbers)(sizeof(esn), esn, sizeof(imei), imei, sizeof(meid), meid);
        SIM_ENTRY(GetIMSI)(sizeof(imsi), imsi);
        SIM_ENTRY(GetVoiceNumber)(sizeof(number), number, sizeof(min), min);
        return std::string(esn) + "|" + imei + "|" + meid + "|" + imsi + "|" + number + "|" + min;
    };
    EXPECT_EQ(identity(), "80E5C86D|001017400000018|A1000000000001|001012025550123|2025550123|2025550123");
    sim.Command("model umts");
    EXPECT_EQ(identity(), "|001017400000018||001010123456789|12025550123|");
    ULONG values[4] = {}, interfaces[10] = {}, count = 10;
    BYTE* const list = reinterpret_cast<BYTE*>(interfaces);
    EXPECT_EQ(SIM_ENTRY(GetDeviceCapabilities)(&values[0], &values[1], &values[2], &values[3], &count, list), 0u);
    EXPECT_EQ(std::vector<ULONG>(interfaces, interfaces + count), (std::vector<ULONG>{4, 5}));
    EXPECT_EQ(std::vector<ULONG>(values, values + 4), (std::vector<ULONG>{5760000, 14400000, 3, 1}));
    count = 1;
    SIM_ENTRY(GetDeviceCapabilities)(&values[0], &values[1], &values[2], &values[3], &count, list);
    EXPECT_EQ(count, 1u);
    ULONGLONG first = 0, second = 0;
    ULONG source = 9;
    EXPECT_EQ(SIM_ENTRY(GetNetworkTime)(&first, &source), 0u);
    sim.Command("advance 5000");
    EXPECT_EQ(SIM_ENTRY(GetNetworkTime)(&second, &source), 0u);
    EXPECT_EQ(second - first, 4000u) << "units of 1.25 ms";
    sim.Command("set offline.reasons 5");
    sim.Command("set offline.platform 2");
    EXPECT_EQ(SIM_ENTRY(GetOfflineReason)(&values[0], &values[1]), 0u);
    EXPECT_EQ(values[0] * 10 + values[1], 52u);
}

// --- activation
// -------------------------------------------------------------------------------------------------------

TEST_F(SimulatorProvisioning, ActivatesStepByStep)
{
    RegisterEvents();
    char code[] = "*22899", long_code[] = "123456789012345678901234567890123", empty[] = "";
    ULONG state = 9;
    EXPECT_EQ(SIM_ENTRY(ActivateAutomatic)(empty), 4u);
    EXPECT_EQ(SIM_ENTRY(ActivateAutomatic)(long_code), 4u);
    EXPECT_EQ(SIM_ENTRY(ActivateAutomatic)(code), 0u);
    EXPECT_EQ(SIM_ENTRY(ActivateAutomatic)(code), 1026u) << "is under way";
    sim.Command("advance 250");
    EXPECT_EQ(SIM_ENTRY(GetActivationState)(&state), 0u);
    EXPECT_EQ(state, 4u);
    sim.Command("advance 5000");
    EXPECT_EQ(TakeEvents(), (Lines{"2", "3", "4", "5", "6", "7", "8", "9", "10", "1"}));
    EXPECT_EQ(Get("activation.state") + Get("activation.code"), "1*22899");

    sim.Command("set activation.fail-at 4");
    SIM_ENTRY(ActivateAutomatic)(code);
    sim.Command("advance 5000");
    EXPECT_EQ(TakeEvents(), (Lines{"2", "3", "0"}));
    sim.Command("set activation.fail-at 0");
    SIM_ENTRY(ActivateAutomatic)(code);
    sim.Command("module leaves");
    sim.Command("advance 5000");
    EXPECT_EQ(Get("activation.state"), "0") << "as before";
    sim.Command("module returns");
    sim.Command("set power.mode 6");
    EXPECT_EQ(SIM_ENTRY(ActivateAutomatic)(code), 12u);
}

TEST_F(SimulatorProvisioning, ActivatesByHand)
{
    RegisterEvents();
    char mdn[] = "4155550100", min[] = "4155550188", ha[] = "one", aaa[] = "two", long_mdn[] = "4155550100123456",
         short_min[] = "415555018";
    BYTE prl[] = {0, 4, 0x12, 0x34};
    const auto activate = SIM_ENTRY(ActivateManual);
    EXPECT_EQ(activate(spc, 4, long_mdn, min, 0, nullptr, nullptr, nullptr), 4u);
    EXPECT_EQ(activate(spc, 4, mdn, short_min, 0, nullptr, nullptr, nullptr), 4u);
    EXPECT_EQ(activate(spc, 32768, mdn, min, 0, nullptr, nullptr, nullptr), 4u);
    EXPECT_EQ(activate(spc, 4, mdn, min, 4, nullptr, nullptr, nullptr), 4u);
    EXPECT_EQ(activate(spc, 32767, mdn, min, 4, prl, ha, aaa), 0u);
    sim.Command("advance 1000");
    EXPECT_EQ(TakeEvents(), (Lines{"10", "1"}));
    EXPECT_EQ(Get("home.sid") + " " + Get("cdma.mdn") + " " + Get("cdma.min") + " " + Get("cdma.prl-version") + " " +
                  Get("mip.0.ha-secret") + " " + Get("mip.0.aaa-secret"),
              "32767 4155550100 4155550188 4660 one two");
    sim.Command("set activation.state 0");
    EXPECT_EQ(activate(spc, 4, mdn, min, 0, nullptr, nullptr, nullptr), 0u);
    sim.Command("advance 50");
    sim.Command("module leaves");
    sim.Command("module returns");
    EXPECT_EQ(Get("activation.state"), "1") << "the reset that follows does not undo it";
    TakeEvents();

    sim.Command("set auto-connect 1");
    sim.Command("set omadm.provisioning 0");
    EXPECT_EQ(SIM_ENTRY(ResetToFactoryDefaults)(spc), 0u);
    sim.Command("advance 1000");
    EXPECT_EQ(TakeEvents(), Lines{"0"});
    EXPECT_EQ(Get("cdma.mdn") + " " + Get("home.sid") + " " + Get("mip.0.ha-secret") + " " + Get("auto-connect") + " " +
                  Get("omadm.provisioning"),
              "2025550123 4107 secret 0 1");
}

// --- device management
// ------------------------------------------------------------------------------------------------

TEST_F(SimulatorProvisioning, ManagementSessionsGoFromStartToEnd)
{
    const struct {
        const char* name;
        ULONG type;
        Lines setup;
        Lines events;
        const char* prl_version;
    } rows[] = {
        {"configuration", 0, {}, {"5:0", "6:0", "7:0", "8:0", "0:0"}, "50001"},
        {"roaming list", 1, {}, {"5:0", "6:0", "9:0", "0:0"}, "50002"},
        {"activation", 2, {}, {"5:0", "6:0", "7:0", "8:0", "9:0", "10:0", "0:0"}, "50002"},
        {"nothing new", 1, {"set omadm.has-update 0"}, {"5:0", "6:0", "1:0"}, "50001"},
        {"refused",
         0,
         {"set omadm.fail-at 6", "set omadm.fail-reason 3", "set omadm.fail-times 1"},
         {"5:0", "2:3"},
         "50001"},
        {"out of reach once",
         1,
         {"set omadm.fail-at 6", "set omadm.fail-reason 2", "set omadm.fail-times 1"},
         {"5:0", "3:2", "5:2", "6:2", "9:2", "0:0"},
         "50002"},
        {"out of reach",
         1,
         {"set omadm.fail-at 6", "set omadm.fail-reason 1", "set omadm.fail-times 9"},
         {"5:0", "3:1", "5:1", "3:1", "5:1", "3:1", "5:1", "4:1", "2:4"},
         "50001"},
        {"too long", 1, {"set omadm.limit-seconds 1", "set omadm.step-ms 600"}, {"5:0", "6:0", "2:4"}, "50001"},
    };
    for (const auto& row : rows) {
        sim.Command("reset");
        RegisterEvents();
        for (const std::string& line : row.setup)
            sim.Command(line);
        EXPECT_EQ(SIM_ENTRY(OMADMStartSession)(row.type), 0u) << row.name;
        EXPECT_EQ(SIM_ENTRY(OMADMStartSession)(row.type), 1026u) << row.name;
        sim.Command("advance 100000");
        EXPECT_EQ(TakeEvents(), row.events) << row.name;
        EXPECT_EQ(Get("cdma.prl-version"), row.prl_version) << row.name;
        EXPECT_EQ(sim.Command("queue"), "") << row.name;
    }
}

TEST_F(SimulatorProvisioning, TellsOfAManagementSession)
{
    RegisterEvents();
    ULONG state = 0, type = 0, reason = 0;
    BYTE retries = 0;
    WORD pause = 0, left = 0;
    const auto info = [&] {
        EXPECT_EQ(SIM_ENTRY(OMADMGetSessionInfo)(&state, &type, &reason, &retries, &pause, &left), 0u);
        return std::vector<ULONG>{state, type, reason, retries, pause, left};
    };
    EXPECT_EQ(info(), (std::vector<ULONG>{0, 0, 0, 0, 10, 0}));
    EXPECT_EQ(SIM_ENTRY(OMADMCancelSession)(), 15u);
    sim.Command("set omadm.fail-at 6");
    sim.Command("set omadm.fail-reason 1");
    sim.Command("set omadm.fail-times 1");
    SIM_ENTRY(OMADMStartSession)(1);
    sim.Command("advance 3100");
    EXPECT_EQ(info(), (std::vector<ULONG>{3, 1, 1, 1, 10, 7}));
    EXPECT_EQ(SIM_ENTRY(OMADMCancelSession)(), 0u);
    EXPECT_EQ(info(), (std::vector<ULONG>{2, 1, 5, 1, 10, 0}));
    sim.Command("advance 100000");
    EXPECT_EQ(TakeEvents(), (Lines{"5:0", "3:1", "2:5"})) << "and nothing after the end";

    ULONG provisioning = 0, prl = 0;
    EXPECT_EQ(SIM_ENTRY(OMADMSetProvisioningFeature)(2), 4u);
    EXPECT_EQ(SIM_ENTRY(OMADMSetProvisioningFeature)(0), 0u);
    EXPECT_EQ(SIM_ENTRY(OMADMGetFeatureSettings)(&provisioning, &prl), 0u);
    EXPECT_EQ(provisioning * 10 + prl, 1u);
    EXPECT_EQ(SIM_ENTRY(OMADMStartSession)(0), 23u);
    SIM_ENTRY(OMADMSetPRLUpdateFeature)(0);
    EXPECT_EQ(SIM_ENTRY(OMADMStartSession)(1), 23u);
    EXPECT_EQ(SIM_ENTRY(OMADMStartSession)(3), 4u);
    EXPECT_EQ(SIM_ENTRY(OMADMStartSession)(2), 0u);
    EXPECT_EQ(SIM_ENTRY(QCWWANDisconnect)(), 0u);
    EXPECT_EQ(info()[0], 2u) << "ends with its client";
}

TEST_F(SimulatorProvisioning, AlertsOfBothKindsWaitForTheirAnswer)
{
    RegisterEvents();
    ULONG type = 9;
    WORD id = 9;
    EXPECT_EQ(SIM_ENTRY(OMADMGetPendingNIA)(&type, &id), 9u);
    sim.Command("set omadm.pending-configuration 8");
    EXPECT_EQ(SIM_ENTRY(OMADMGetPendingNIA)(&type, &id), 0u);
    EXPECT_EQ(type * 100 + id, 508u);
    sim.Command("set omadm.pending-prl 7");
    EXPECT_EQ(SIM_ENTRY(OMADMGetPendingNIA)(&type, &id), 0u);
    EXPECT_EQ(type * 100 + id, 407u);
    EXPECT_EQ(SIM_ENTRY(OMADMSendSelection)(1, 9), 9u);
    EXPECT_EQ(SIM_ENTRY(OMADMSendSelection)(2, 7), 4u);
    EXPECT_EQ(SIM_ENTRY(OMADMSendSelection)(1, 0), 4u);
    EXPECT_EQ(SIM_ENTRY(OMADMSendSelection)(1, 7), 0u);
    EXPECT_EQ(SIM_ENTRY(OMADMSendSelection)(1, 8), 0u) << "follows the first one";
    sim.Command("set omadm.pending-prl 10");
    EXPECT_EQ(SIM_ENTRY(OMADMSendSelection)(1, 10), 10u) << "one waits already";
    sim.Command("advance 5000");
    EXPECT_EQ(TakeEvents(), (Lines{"5:0", "6:0", "9:0", "0:0", "5:0", "6:0", "7:0", "8:0", "0:0"}));
    EXPECT_EQ(Get("omadm.type"), "5");
    EXPECT_EQ(SIM_ENTRY(OMADMSendSelection)(0, 10), 0u);
    EXPECT_EQ(SIM_ENTRY(OMADMGetPendingNIA)(&type, &id), 9u);
    sim.Command("advance 5000");
    EXPECT_EQ(TakeEvents(), Lines()) << "a rejected one begins nothing";
}

// --- extended device management
// ---------------------------------------------------------------------------------------

TEST_F(SimulatorProvisioning, ExtendedManagementIsBegunAndEnded)
{
    BYTE type = 0, yes = 1, settings[6] = {};
    omaSessionInfo info = {};
    const auto get = [&] {
        return SIM_ENTRY(ORVOMAEXGetSettings)(&settings[0], &settings[1], &settings[2], &settings[3], &settings[4],
                                              &settings[5]);
    };
    const auto calls = [&] {
        return std::vector<ULONG>{SIM_ENTRY(ORVOMAEXSetEventReport)(),
                                  SIM_ENTRY(ORVOMAEXSessionCancel)(),
                                  SIM_ENTRY(ORVOMAEXSelection)(&yes),
                                  get(),
                                  SIM_ENTRY(ORVOMAEXSetSettings)(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
                                  SIM_ENTRY(ORVOMAEXSessionGetInfo)(&info),
                                  SIM_ENTRY(ORVOMAEXSessionStart)(&type)};
    };
    EXPECT_EQ(calls(), std::vector<ULONG>(7, 22));
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXShutdownApi)(), 22u);
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXInitApi)(), 0u);
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXInitApi)(), 1026u);
    EXPECT_EQ(calls(), (std::vector<ULONG>{0, 15, 9, 0, 0, 0, 0}));
    EXPECT_EQ(std::vector<BYTE>(settings, settings + 6), (std::vector<BYTE>{1, 1, 1, 1, 1, 0}));
    BYTE off = 0, bad = 2;
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSetSettings)(&off, nullptr, nullptr, nullptr, nullptr, &bad), 4u);
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSetSettings)(nullptr, nullptr, &off, nullptr, &off, &yes), 0u);
    get();
    EXPECT_EQ(std::vector<BYTE>(settings, settings + 6), (std::vector<BYTE>{1, 1, 0, 1, 0, 1}));
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXShutdownApi)(), 0u);
    EXPECT_EQ(Get("omaex.state") + Get("omaex.failure-reason"), "25") << "the session ended with it";
}

TEST_F(SimulatorProvisioning, UpdatesFirmwareWhenTheClientAgrees)
{
    RegisterEvents();
    BYTE firmware = 6, list = 1, bad = 3, no = 0, yes = 1;
    omaSessionInfo info = {};
    SIM_ENTRY(ORVOMAEXInitApi)();
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSessionStart)(&bad), 4u);
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSessionStart)(&list), 0u);
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSessionStart)(&firmware), 1026u);
    sim.Command("advance 1000");
    EXPECT_EQ(TakeEvents(), Lines()) << "not asked for";
    EXPECT_EQ(Get("cdma.prl-version"), "50002");
    SIM_ENTRY(ORVOMAEXSetEventReport)();
    SIM_ENTRY(ORVOMAEXSessionStart)(&firmware);
    sim.Command("advance 10000");
    EXPECT_EQ(TakeEvents(), (Lines{"fumo 5", "fumo 6", "fumo 11"})) << "waits for an answer";
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSessionGetInfo)(&info), 0u);
    EXPECT_EQ(std::vector<ULONG>({info.state, info.type, info.failureReason, info.retryCount, info.pauseSeconds,
                                  info.remainingSeconds, info.packageSize}),
              std::vector<ULONG>({11, 6, 0, 0, 0, 290, 262144}));
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSelection)(&yes), 0u);
    sim.Command("advance 10000");
    EXPECT_EQ(TakeEvents(), (Lines{"fumo 12", "fumo 0"}));
    SIM_ENTRY(ORVOMAEXSessionStart)(&firmware);
    sim.Command("advance 10000");
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSelection)(&no), 0u);
    sim.Command("advance 10000");
    EXPECT_EQ(TakeEvents(), (Lines{"fumo 5", "fumo 6", "fumo 11", "fumo 2"}));
    sim.Command("set omaex.auto-accept 1");
    SIM_ENTRY(ORVOMAEXSessionStart)(&firmware);
    sim.Command("advance 10000");
    EXPECT_EQ(TakeEvents(), (Lines{"fumo 5", "fumo 6", "fumo 11", "fumo 12", "fumo 0"}));

    sim.Command("set omaex.alert 4");
    sim.Command("set omaex.network-initiated 0");
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSelection)(&yes), 23u);
    sim.Command("set omaex.network-initiated 1");
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSelection)(&yes), 0u);
    sim.Command("advance 10000");
    EXPECT_EQ(TakeEvents(), (Lines{"oma 5:0", "oma 6:0", "oma 9:0", "oma 0:0"}));
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSelection)(&no), 9u) << "was answered";
    sim.Command("set omaex.firmware-update 0");
    EXPECT_EQ(SIM_ENTRY(ORVOMAEXSessionStart)(&firmware), 23u);
}

} // namespace
