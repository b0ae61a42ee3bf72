// Device management (OMA-DM, OMA-EX) and the file of roaming indicators.

#include <gtest/gtest.h>

#include <string.h>

#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/talvek.h"
#include "tests/support/guard_sweep.h"
#include "tests/support/log_capture.h"
#include "tests/support/recording_library.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;
using Words = std::vector<ULONG>;

constexpr const char* kModel = "cdma:5101";
const WCHAR* const kEri1 = u"eri_nam1";
const WCHAR* const kEri2 = u"eri_nam2";

OrvEFileInfo g_info;
OrvOMADMConfig g_config;
OrvOMADMSessionState g_state;
OrvOMADMAlert g_alert;
OrvOMADMAlertResponse g_response;
omaSessionInfo g_session;
BYTE g_octets[6];

template <class Record>
Words WordsOf(const Record& record)
{
    Words words(sizeof record / sizeof(ULONG));
    memcpy(words.data(), &record, sizeof record);
    return words;
}

class CdmaManagement : public ::testing::Test {
protected:
    CdmaManagement()
    {
        Stain(g_octets), Stain(g_info), Stain(g_config), Stain(g_state), Stain(g_alert), Stain(g_response);
    }
    ~CdmaManagement() override { OrvApiShutdown(); }

    // So that what is not written shows.
    template <class Record>
    static void Stain(Record& record)
    {
        memset(&record, 0xEE, sizeof record);
    }
    void Start()
    {
        SelectModule(sim, kModel);
        sim.Command("set omadm.step-ms 1000");
    }
    void Listen(std::initializer_list<ORV_NOTIFY> wanted)
    {
        ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
        for (const ORV_NOTIFY id : wanted)
            ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
        sim.ClearJournal();
    }
    // One line for the module, and then the words of what it delivered.
    std::vector<Words> Delivered(const std::string& line)
    {
        client.Clear();
        sim.Command(line);
        EXPECT_TRUE(platform_hooks::DrainThreads(10000));
        std::vector<Words> delivered;
        for (const OrvNotifyRecord& record : client.Records()) {
            Words words = {record.uNotify};
            Words payload = WordsOf(record.payload);
            payload.resize(record.uPayloadSize / sizeof(ULONG));
            words.insert(words.end(), payload.begin(), payload.end());
            delivered.push_back(words);
        }
        return delivered;
    }
    // Of the events of the next steps, one after the other: the states that 2269 gives, until none comes.
    Words States()
    {
        Words states;
        for (std::vector<Words> step = Delivered("advance 0"); !step.empty(); step = Delivered("advance 1000")) {
            EXPECT_EQ(step.size(), 1u);
            EXPECT_EQ(step[0], (Words{2269, 32, 0, 0, 0, 0, step[0][6], 0, 0}));
            states.push_back(step[0][6]);
        }
        return states;
    }

    SimHarness sim{kModel};
    ClientRecorder client;
};

const GuardedFunction kFunctions[] = {
    // clang-format off
    {"OrvGetEFileInfo", 17, 1, 0, [] { return OrvGetEFileInfo(kEri1, &g_info); }},
    {"OrvGetEFile", 17, 1, 2, [] { return OrvGetEFile(kEri1, g_octets, sizeof g_octets); }},
    {"OrvGetOMADMConfig", 17, 1, 0, [] { return OrvGetOMADMConfig(&g_config); }},
    {"OrvSetOMADMConfig", 17, 1, 0, [] { return OrvSetOMADMConfig(0xF, 0xF); }},
    {"OrvStartOMADMSession", 17, 1, 0, [] { return OrvStartOMADMSession(0); }},
    {"OrvCancelOMADMSession", 17, 1, 7, OrvCancelOMADMSession},
    {"OrvGetOMADMSessionState", 17, 1, 0, [] { return OrvGetOMADMSessionState(&g_state); }},
    {"OrvGetOMADMNIAlert", 17, 1, 5, [] { return OrvGetOMADMNIAlert(&g_alert); }},
    {"OrvSetOMADMNIAlertResponse", 10, 1, 0, [] { return OrvSetOMADMNIAlertResponse(1, &g_response); }},
    {"OrvSetOMAEXEventReport", 17, 1, 5, OrvSetOMAEXEventReport},
    {"OrvOMAEXSessionStart", 17, 1, 5, [] { return OrvOMAEXSessionStart(g_octets); }},
    {"OrvOMAEXSessionCancel", 17, 1, 5, OrvOMAEXSessionCancel},
    {"OrvOMAEXSelection", 17, 1, 5, [] { return OrvOMAEXSelection(g_octets); }},
    {"OrvOMAEXGetSettings", 10, 1, 5, [] { return OrvOMAEXGetSettings(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }},
    {"OrvOMAEXSetSettings", 10, 1, 5, [] { return OrvOMAEXSetSettings(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }},
    {"OrvOMAEXGetSessionInfo", 17, 1, 5, [] { return OrvOMAEXGetSessionInfo(&g_session); }},
    {"OrvOMAEXInit", 17, 1, 0, OrvOMAEXInit},
    {"OrvOMAEXShutdown", 17, 1, 5, OrvOMAEXShutdown},
    // clang-format on
};

TEST_F(CdmaManagement, EachFunctionHasItsGuard) { SweepGuards(sim, kFunctions, kModel, "umts:5120"); }

TEST_F(CdmaManagement, NullPointersAreRefusedBeforeTheModuleIsAsked)
{
    EXPECT_EQ(OrvSetOMADMNIAlertResponse(1, nullptr), 10u) << "the guards come first";
    Start();
    for (const ORV_RCODE refused :
         {OrvGetEFileInfo(nullptr, &g_info), OrvGetEFileInfo(kEri1, nullptr), OrvGetEFile(nullptr, g_octets, 6),
          OrvGetEFile(kEri1, nullptr, 0), OrvGetOMADMConfig(nullptr), OrvGetOMADMSessionState(nullptr),
          OrvGetOMADMNIAlert(nullptr), OrvSetOMADMNIAlertResponse(1, nullptr)})
        EXPECT_EQ(refused, 4u);
    EXPECT_EQ(sim.Journal(), Lines());
    EXPECT_EQ(g_info.sizeStruct, 0xEEEEEEEE);
}

TEST_F(CdmaManagement, EriFilesOfAnySizeAreReadIntoTheirRoom)
{
    Start();
    const struct {
        ULONG size;
        WORD room;
        ULONG info_result, result;
    } rows[] = {
        // clang-format off
        {0, 0, 0, 0},         {0, 4, 0, 0},         {8, 8, 0, 0},         {8, 7, 0, 2},         {8, 0, 0, 2},
        {10240, 10240, 0, 0}, {10240, 10239, 0, 2}, {10241, 10241, 2, 0}, {10241, 10240, 2, 2}, {65535, 65535, 2, 0},
        {65536, 65535, 2, 2}, {0xFFFFFFFF, 3, 2, 2},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.size) + " in " + std::to_string(row.room));
        sim.Command("set eri.size " + std::to_string(row.size));
        LogCapture log;
        Stain(g_info);
        EXPECT_EQ(OrvGetEFileInfo(kEri2, &g_info), row.info_result);
        EXPECT_EQ(WordsOf(g_info), (Words{16, 1, row.size, 0}));
        const std::string text =
            "GetERIFile returns rc = 0, fileSizeSensor = " + std::to_string(static_cast<int>(row.size));
        EXPECT_EQ(log.Count(text + ", ERI_FILE_SIZE = 10240"), row.info_result ? 1 : 0) << log.Dump();

        std::vector<BYTE> buffer(row.room + 1u, 0xEE);
        EXPECT_EQ(OrvGetEFile(kEri1, buffer.data(), row.room), row.result);
        EXPECT_EQ(log.Count(text + ", nBufLen = " + std::to_string(row.room)), row.result ? 1 : 0) << log.Dump();
        EXPECT_EQ(buffer[row.room], 0xEE) << "beyond the room";
        if (row.size > 1 && row.room > 1) {
            EXPECT_EQ(buffer[1], 3);
        }
    }
}

TEST_F(CdmaManagement, OnlyTheTwoEriNamesAreServed)
{
    Start();
    const std::u16string endless(5000, u'x');
    const std::pair<const WCHAR*, std::string> rows[] = {
        // clang-format off
        {u"eri_nam3", "eri_nam3"}, {u"ERI_NAM1", "ERI_NAM1"}, {u"eri_nam", "eri_nam"}, {u"eri_nam11", "eri_nam11"},
        {u"", ""},                 {u"\x20AC", "?"},          {endless.c_str(), std::string(259, 'x')},
        // clang-format on
    };
    for (const auto& [name, logged] : rows) {
        SCOPED_TRACE(logged);
        LogCapture log;
        EXPECT_EQ(OrvGetEFileInfo(name, &g_info), 18u);
        EXPECT_EQ(OrvGetEFile(name, g_octets, 6), 18u);
        EXPECT_EQ(log.Count("OrvGetEFileInfo doesn't handle pszEFilename = " + logged), 1) << log.Dump();
        EXPECT_EQ(log.Find("OrvGetEFile doesn't handle pszEFilename = " + logged).module, "TALVEKCdma") << log.Dump();
    }
    EXPECT_EQ(sim.Journal(), Lines());
    EXPECT_EQ(g_info.sizeStruct, 0xEEEEEEEE);
}

TEST_F(CdmaManagement, TheSizeOfAnEriFileDecidesEvenWhereTheVendorCallFails)
{
    RecordingLibrary library;
    Start();
    const struct {
        ULONG status, size, info_result, result;
    } rows[] = {{15, 5, 7, 7}, {15, 10241, 2, 2}, {99, 7, 5, 2}, {0, 7, 0, 2}};
    for (const auto& row : rows) {
        library.Answer("GetERIFile", row.status, {row.size});
        EXPECT_EQ(OrvGetEFileInfo(kEri1, &g_info), row.info_result) << row.status << ", " << row.size;
        EXPECT_EQ(OrvGetEFile(kEri1, g_octets, 6), row.result) << row.status << ", " << row.size;
    }
    platform_hooks::FailCall("HeapAlloc", 1, 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(OrvGetEFileInfo(kEri1, &g_info), 5u);
    EXPECT_EQ(WordsOf(g_info), (Words{16, 1, 10240, 0}));
    platform_hooks::Reset();
}

TEST_F(CdmaManagement, TheMasksOfTheFeaturesComeBackAsTheyWereSet)
{
    Start();
    for (const ULONG mask : {0x0u, 0x3u, 0xCu, 0xFu}) {
        SCOPED_TRACE(mask);
        for (const ULONG capability : {mask, 0xFu}) {
            sim.ClearJournal();
            EXPECT_EQ(OrvSetOMADMConfig(capability, mask), 0u);
            EXPECT_EQ(sim.Journal(), (Lines{std::string("OMADMSetProvisioningFeature(") + (mask & 3 ? "1)" : "0)"),
                                            std::string("OMADMSetPRLUpdateFeature(") + (mask & 12 ? "1)" : "0)")}));
        }
        Stain(g_config);
        EXPECT_EQ(OrvGetOMADMConfig(&g_config), 0u);
        EXPECT_EQ(WordsOf(g_config), (Words{24, 1, 0x00000101, mask, mask, 0}));
    }
    EXPECT_EQ(OrvSetOMADMConfig(0xFFFFFFF0, 0xABCDE0F0), 0u) << "other bits";
}

TEST_F(CdmaManagement, ConfusedMasksTouchNeitherFeature)
{
    Start();
    const struct {
        ULONG capability, enable;
        bool configuration, prl;
    } rows[] = {{3, 1, true, false},  {1, 0, true, false}, {0, 3, true, false},  {1, 3, true, false},
                {12, 4, false, true}, {8, 0, false, true}, {3, 15, false, true}, {0, 15, true, true}};
    for (const auto& row : rows) {
        LogCapture log;
        EXPECT_EQ(OrvSetOMADMConfig(row.capability, row.enable), 4u);
        const std::string masks = " setting, dwFeatureCapabilityMask = 0x" +
                                  std::string(1, "0123456789abcdef"[row.capability]) + ", dwFeatureEnableMask = 0x" +
                                  "0123456789abcdef"[row.enable];
        EXPECT_EQ(log.Count("Cannot handle confused DCUpdate" + masks), row.configuration ? 1 : 0) << log.Dump();
        EXPECT_EQ(log.Count("Cannot handle confused PRLUpdate" + masks), row.prl ? 1 : 0) << log.Dump();
    }
    EXPECT_EQ(sim.Journal(), Lines());

    sim.Command("fail OMADMSetProvisioningFeature 15");
    EXPECT_EQ(OrvSetOMADMConfig(0, 0), 7u);
    EXPECT_EQ(sim.Journal(), Lines{"OMADMSetProvisioningFeature(0)"}) << "the other one is not set";
    sim.Command("fail OMADMGetFeatureSettings 1025");
    EXPECT_EQ(OrvGetOMADMConfig(&g_config), 1u);
    EXPECT_EQ(g_config.sizeStruct, 0xEEEEEEEE);
}

TEST_F(CdmaManagement, TheRecordOfASessionTellsWhatTheModuleSaysOfIt)
{
    RecordingLibrary library;
    Start();
    static std::u16string shown;
    platform_hooks::SetDebugSink([](const WCHAR* text, void*) { shown = text; }, nullptr);
    const struct {
        const char* name;
        ULONG state, type, reason;
        Words record; // busy, type, source, 0, error, idle
    } rows[] = {
        {"none", 0, 0, 0, {0, 1, 1, 0, 0, 1}},
        {"nothing new", 1, 1, 4, {0, 2, 1, 0, 0, 0}},
        {"failed", 2, 2, 3, {0, 4, 1, 0, 0x503, 0}},
        {"failed without a reason", 2, 3, 0, {0, 4, 2, 0, 0, 0}},
        {"waiting", 3, 4, 1, {1, 2, 3, 0, 0, 0}},
        {"roaming list loaded, client's session", 9, 1, 0, {0, 2, 1, 0, 0, 0}},
        {"roaming list loaded, network's session", 9, 4, 0, {1, 2, 3, 0, 0, 0}},
        {"unknown numbers", 0x80000000, 6, 9, {1, 0, 0, 0, 0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        library.Answer("OMADMGetSessionInfo", 0, {row.state, row.type, row.reason, 1, 0xABCD, 2});
        LogCapture log;
        Stain(g_state);
        EXPECT_EQ(OrvGetOMADMSessionState(&g_state), 0u);
        const Words& r = row.record;
        EXPECT_EQ(WordsOf(g_state), (Words{32, r[0], 0xABCD, r[1], r[2], r[3], r[4], r[5]}));
        EXPECT_EQ(log.Count("OMADM session error = " + std::to_string(row.reason)), r[4] ? 1 : 0) << log.Dump();
        EXPECT_EQ(shown, Widen("OMADMGetSessionInfo::SessionState = " + std::to_string(static_cast<int>(row.state)) +
                               ", SessionType = " + std::to_string(row.type) + "\r\n"));
    }
    platform_hooks::Reset();
}

TEST_F(CdmaManagement, AFailingSessionCallIsLoggedWithTheVendorsStatus)
{
    Start();
    for (const char* entry : {"OMADMStartSession", "OMADMCancelSession", "OMADMGetSessionInfo", "OMADMGetPendingNIA"})
        sim.Command(std::string("fail ") + entry + " 15");
    LogCapture log;
    for (const ORV_RCODE result : {OrvStartOMADMSession(1), OrvCancelOMADMSession(), OrvGetOMADMSessionState(&g_state),
                                   OrvGetOMADMNIAlert(&g_alert)})
        EXPECT_EQ(result, 7u);
    for (const char* text : {"OMADMStartSession failed with uStatus = 15", "OMADMCancelSession failed, uStatus = 15",
                             "OMADMGetSessionInfo failed uStatus = 15"})
        EXPECT_EQ(log.Count(text), 1) << log.Dump();
    EXPECT_EQ(g_state.sizeStruct, 32u);
    EXPECT_EQ(g_state.bBusy, 0xEEEEEEEE);
    EXPECT_EQ(WordsOf(g_alert), (Words{20, 0, 0, 0, 0}));
}

TEST_F(CdmaManagement, ASessionOfTheClientsGoesToItsEnd)
{
    const struct {
        const char* name;
        ULONG type;
        Words states, at_start, at_end; // busy, pause, type, source, 0, error, idle
        Lines setup;
    } rows[] = {
        // clang-format off
        {"configuration", 0, {0, 1, 1, 1, 1},       {1, 10, 1, 1, 0, 0, 0}, {0, 10, 1, 1, 0, 0, 1},     {}},
        {"roaming list",  1, {0, 1, 1, 1},          {1, 10, 2, 1, 0, 0, 0}, {0, 10, 2, 1, 0, 0, 1},     {}},
        {"activation",    2, {0, 1, 1, 1, 1, 1, 1}, {1, 10, 4, 1, 0, 0, 0}, {0, 10, 4, 1, 0, 0, 1},     {}},
        {"nothing new",   0, {0, 1, 0x502},         {1, 10, 1, 1, 0, 0, 0}, {0, 10, 1, 1, 0, 0, 0},
         {"omadm.has-update 0"}},
        {"refused",       1, {0, 1, 0x503},         {1, 10, 2, 1, 0, 0, 0}, {0, 10, 2, 1, 0, 0x503, 0},
         {"omadm.fail-at 9", "omadm.fail-reason 3", "omadm.fail-times 1"}},
        {"out of reach",  1, {0, 0x401, 0x101, 0x504, 0x503}, {1, 1, 2, 1, 0, 0, 0}, {0, 1, 2, 1, 0, 0x503, 0},
         {"omadm.fail-at 6", "omadm.fail-reason 2", "omadm.fail-times 9", "omadm.max-retries 1",
          "omadm.pause-seconds 1"}},
        // clang-format on
    };
    const auto state = [] {
        EXPECT_EQ(OrvGetOMADMSessionState(&g_state), 0u);
        Words words = WordsOf(g_state);
        words.erase(words.begin());
        return words;
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Start();
        Listen({ORV_NOTIFY_OMADMState});
        for (const std::string& setting : row.setup)
            sim.Command("set " + setting);
        EXPECT_EQ(OrvStartOMADMSession(row.type), 0u);
        EXPECT_EQ(OrvStartOMADMSession(row.type), 600u);
        EXPECT_EQ(state(), row.at_start);
        EXPECT_EQ(States(), row.states);
        EXPECT_EQ(state(), row.at_end);
        OrvApiShutdown();
    }
    Start();
    Listen({ORV_NOTIFY_OMADMState});
    EXPECT_EQ(OrvStartOMADMSession(ORV_OMADM_START_PRL_UPDATE), 0u);
    EXPECT_EQ(OrvCancelOMADMSession(), 0u);
    EXPECT_EQ(state()[5], 0x503u);
}

TEST_F(CdmaManagement, AnAlertOfEitherClassIsAcceptedOrRejected)
{
    const struct {
        const char *name, *pending, *event, *log, *sent;
        ULONG selection;
        Words alert, response, states;
    } rows[] = {
        // clang-format off
        {"configuration accepted", "omadm.pending-configuration 8", "omadm-alert 5 8",
         "g_OMADMDCsessionID changed to 8", "OMADMSendSelection(1, 8)", 7, {20, 2, 8, 0, 1}, {12, 0, 0}, {0, 1, 1, 1, 1}},
        {"configuration rejected", "omadm.pending-configuration 9", "omadm-alert 5 9",
         "g_OMADMDCsessionID changed to 9", "OMADMSendSelection(0, 9)", 0, {20, 2, 9, 0, 1}, {12, 2, 0}, {}},
        {"roaming list accepted", "omadm.pending-prl 65535", "omadm-alert 4 65535",
         "g_OMADMPRLsessionID changed to 65535", "OMADMSendSelection(1, 65535)", 1, {20, 2, 0, 65535, 2}, {12, 0, 0},
         {0, 1, 1, 1}},
        {"roaming list rejected", "omadm.pending-prl 6", "omadm-alert 4 6",
         "g_OMADMPRLsessionID changed to 6", "OMADMSendSelection(0, 6)", 0, {20, 2, 0, 6, 2}, {12, 2, 0}, {}},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Start();
        Listen({ORV_NOTIFY_OMADMState, ORV_NOTIFY_OMADMAlert});
        sim.Command(std::string("set ") + row.pending);
        Words event = row.alert;
        event.insert(event.begin(), 2270);
        EXPECT_EQ(Delivered(std::string("emit ") + row.event), std::vector<Words>{event});
        LogCapture log;
        EXPECT_EQ(OrvGetOMADMNIAlert(&g_alert), 0u);
        EXPECT_EQ(OrvGetOMADMNIAlert(&g_alert), 0u);
        EXPECT_EQ(WordsOf(g_alert), row.alert);
        EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        sim.ClearJournal();
        Stain(g_response);
        EXPECT_EQ(OrvSetOMADMNIAlertResponse(row.selection, &g_response), 0u);
        EXPECT_EQ(WordsOf(g_response), row.response);
        EXPECT_EQ(sim.Journal(), Lines{row.sent});
        EXPECT_EQ(States(), row.states);
        EXPECT_EQ(OrvGetOMADMNIAlert(&g_alert), 5u) << "is answered";
        EXPECT_EQ(WordsOf(g_alert), (Words{20, 0, 0, 0, 0}));
        OrvApiShutdown();
    }
}

// Of the configuration's identifiers the larger one is what the client has read, of the roaming list's the alerted one.
TEST_F(CdmaManagement, TheRoamingListIsAnsweredFirstAndItsFailureStopsTheOther)
{
    Start();
    Listen({ORV_NOTIFY_OMADMAlert});
    for (const char* pending : {"configuration 8", "prl 5"}) {
        sim.Command(std::string("set omadm.pending-") + pending);
        EXPECT_EQ(OrvGetOMADMNIAlert(&g_alert), 0u);
    }
    Delivered("emit omadm-alert 5 3");
    sim.Command("set omadm.pending-prl 7");
    Delivered("emit omadm-alert 4 7");
    sim.ClearJournal();
    const auto answer = [](ULONG selection, ULONG result, ULONG status) {
        EXPECT_EQ(OrvSetOMADMNIAlertResponse(selection, &g_response), result);
        EXPECT_EQ(WordsOf(g_response), (Words{12, status, 0}));
    };
    LogCapture log;
    sim.Command("fail OMADMSendSelection 15 times 1");
    answer(1, 7, 1);
    sim.Command("fail OMADMSendSelection 1025 from 2 times 1");
    answer(1, 1, 1);
    answer(0, 0, 2);
    answer(1, 0, 2);
    EXPECT_EQ(log.Count("OMADMSendSelection failed with uStatus = 15"), 1) << log.Dump();
    EXPECT_EQ(sim.Journal(), (Lines{"OMADMSendSelection(1, 7)", "OMADMSendSelection(1, 7)", "OMADMSendSelection(1, 8)",
                                    "OMADMSendSelection(0, 8)"}));
}

TEST_F(CdmaManagement, AnAlertOfAnotherTypeHasNoIdentifier)
{
    RecordingLibrary library;
    Start();
    for (const auto& [type, session_class] : {std::pair<ULONG, ULONG>{2, 4}, {6, 0}}) {
        library.Answer("OMADMGetPendingNIA", 0, {type, 77});
        LogCapture log;
        EXPECT_EQ(OrvGetOMADMNIAlert(&g_alert), 0u);
        EXPECT_EQ(WordsOf(g_alert), (Words{20, 2, 0, 0, session_class}));
        EXPECT_EQ(log.Count("Unhandled psAlert->nType = " + std::to_string(session_class)), 1) << log.Dump();
    }
    library.Reset();
    EXPECT_EQ(OrvSetOMADMNIAlertResponse(1, &g_response), 0u);
    EXPECT_EQ(library.Calls(), Lines());
}

TEST_F(CdmaManagement, ExtendedManagementHandsItsArgumentsOn)
{
    RecordingLibrary library;
    Start();
    static BYTE a = 1, b = 2, c = 3, d = 4, e = 5, f = 6;
    const struct {
        const char *entry, *call;
        ORV_RCODE (*function)();
    } rows[] = {
        // clang-format off
        {"ORVOMAEXInitApi", "()", OrvOMAEXInit},
        {"ORVOMAEXShutdownApi", "()", OrvOMAEXShutdown},
        {"ORVOMAEXSetEventReport", "()", OrvSetOMAEXEventReport},
        {"ORVOMAEXSessionStart", "(0x06)", [] { return OrvOMAEXSessionStart(&f); }},
        {"ORVOMAEXSessionStart", "(null)", [] { return OrvOMAEXSessionStart(nullptr); }},
        {"ORVOMAEXSessionCancel", "()", OrvOMAEXSessionCancel},
        {"ORVOMAEXSelection", "(0x01)", [] { return OrvOMAEXSelection(&a); }},
        {"ORVOMAEXSelection", "(null)", [] { return OrvOMAEXSelection(nullptr); }},
        {"ORVOMAEXGetSettings", "(0x01, 0x02, 0x03, null, 0x05, 0x06)", [] { return OrvOMAEXGetSettings(&a, &b, &c, nullptr, &e, &f); }},
        {"ORVOMAEXSetSettings", "(0x06, null, 0x04, 0x03, 0x02, 0x01)", [] { return OrvOMAEXSetSettings(&f, nullptr, &d, &c, &b, &a); }},
        {"ORVOMAEXSessionGetInfo", "(record)", [] { return OrvOMAEXGetSessionInfo(&g_session); }},
        {"ORVOMAEXSessionGetInfo", "(null)", [] { return OrvOMAEXGetSessionInfo(nullptr); }},
        // clang-format on
    };
    for (const auto& row : rows) {
        library.Reset();
        EXPECT_EQ(row.function(), 0u) << row.entry;
        EXPECT_EQ(library.CallsByValue(), Lines{std::string(row.entry) + row.call});
        library.Answer(row.entry, 1026);
        EXPECT_EQ(row.function(), 600u) << row.entry;
    }
}

} // namespace
