// The simulated module's phonebooks, cells and waiting messages, and the events that carry whole records.

#include "api/objects.h"
#include "notify/OrvNotify.h"
#include "notify/adapters.h"
#include "tests/inner/simulator_voice.h"

namespace {

using SimulatorPhonebook = VoiceClient;
using SimulatorCells = VoiceClient;
using SimulatorRecords = VoiceClient;

// --- phonebook

TEST_F(SimulatorPhonebook, PhonebookRecordsAreWrittenReadInBatchesAndDeleted)
{
    BYTE session = 0, number_type = 0, coding = 0x0F, max_number = 0, max_name = 0;
    WORD type = 1, id = 0, used = 0, capacity = 0;
    const auto write = [&](WORD record, const std::string& number, std::string name) {
        id = record;
        BYTE number_length = static_cast<BYTE>(number.size()), name_length = static_cast<BYTE>(name.size());
        std::vector<BYTE> digits(number.begin(), number.end()), letters(name.begin(), name.end());
        digits.reserve(1);
        letters.reserve(1);
        return SIM_ENTRY(WritePhonebookRecord)(&session, &type, &id, &number_type, &number_length, digits.data(),
                                               &name_length, letters.data(), &coding);
    };
    const auto capabilities = [&] {
        SIM_ENTRY(GetPhonebookCapabilities)(&session, &type, &used, &capacity, &max_number, &max_name);
        return Join({used, capacity, max_number, max_name});
    };
    const auto read = [&](WORD first, WORD last) {
        WORD count = 0;
        const ULONG status = SIM_ENTRY(ReadPhonebookRecords)(&session, &type, &first, &last, &count);
        return Join({status, count});
    };
    EXPECT_EQ(capabilities(), "0:20:20:18");
    EXPECT_EQ(read(1, 20), "0:0");
    EXPECT_EQ(Told(), Lines{}) << "nothing to tell";
    ASSERT_EQ(write(3, "123", "Ann"), 0u);
    ASSERT_EQ(write(0, "+49", "Bo:b"), 0u);
    EXPECT_EQ(id, 1) << "the first free one";
    EXPECT_EQ(sim.Command("phonebook list 1"), "1 \"+49\" \"Bo:b\"\n3 \"123\" \"Ann\"");
    EXPECT_EQ(read(1, 20), "0:2");
    EXPECT_EQ(Told(), Lines{"1:2 1:0:+49:Bo:b 3:0:123:Ann"});
    EXPECT_EQ(read(2, 3), "0:1");
    EXPECT_EQ(Told(), Lines{"1:1 3:0:123:Ann"});
    for (WORD i = 0; i < 18; ++i)
        ASSERT_EQ(write(0, "55", ""), 0u);
    EXPECT_EQ(write(0, "55", ""), 10u) << "is full";
    EXPECT_EQ(write(20, "66", ""), 0u) << "is overwritten";
    EXPECT_EQ(read(1, 20), "0:20");
    const Lines batches = Told();
    ASSERT_EQ(batches.size(), 2u);
    EXPECT_EQ(batches[0].substr(0, 5), "1:10 ");
    EXPECT_EQ(batches[1].substr(batches[1].size() - 9), " 20:0:66:");

    EXPECT_EQ(read(0, 5), "4:0");
    EXPECT_EQ(read(5, 4), "4:0");
    EXPECT_EQ(read(1, 21), "4:0");
    EXPECT_EQ(write(21, "1", ""), 4u);
    EXPECT_EQ(write(1, std::string(21, '1'), ""), 4u);
    EXPECT_EQ(write(1, "1", std::string(19, 'x')), 4u);
    EXPECT_EQ(write(1, "1", std::string(255, 'x')), 4u);
    id = 3;
    EXPECT_EQ(SIM_ENTRY(DeletePhonebookRecord)(&session, &type, &id), 0u);
    EXPECT_EQ(SIM_ENTRY(DeletePhonebookRecord)(&session, &type, &id), 9u);
    id = 0;
    EXPECT_EQ(SIM_ENTRY(DeletePhonebookRecord)(&session, &type, &id), 4u);
    EXPECT_EQ(capabilities(), "19:20:20:18");
    session = 1;
    EXPECT_EQ(read(1, 1), "4:0") << "of another card application";
    session = 0;
    type = 3;
    EXPECT_EQ(read(1, 1), "4:0") << "no such phonebook";
}

// --- cells and waiting messages

TEST_F(SimulatorCells, CellsAreToldForTheRadioInUse)
{
    auto geran = std::make_unique<geranCellInfo>();
    auto umts = std::make_unique<umtsCellInfo>();
    auto cdma = std::make_unique<cdmaCellInfo>();
    ULONG present = 0;
    const auto get = [&] { return SIM_ENTRY(GetCellLocationInfo)(geran.get(), umts.get(), cdma.get(), &present); };
    sim.Command("set network.mcc 262");
    sim.Command("set network.mnc 7");
    ASSERT_EQ(get(), 0u);
    EXPECT_EQ(present, ULONG{GOBI_CELL_UMTS});
    EXPECT_EQ(Join({umts->cellId, umts->lac, umts->uarfcn, umts->umtsCount, umts->geranCount}), "107187:257:10700:1:1");
    EXPECT_EQ(umts->rscp, -75);
    EXPECT_EQ(umts->umts[0].ecio, -11);
    EXPECT_EQ(umts->geran[0].rssi, -81);
    const BYTE plmn[3] = {0x62, 0xF2, 0x70};
    EXPECT_EQ(memcmp(umts->plmn, plmn, 3), 0) << "two digits of the MNC";
    EXPECT_EQ(geran->lac, 0) << "not present";

    sim.Command("set network.mnc 410");
    sim.Command("set network.interfaces 4");
    std::string reason;
    EXPECT_FALSE(sim.TryCommand("set cell.gsm 1024:0:0:0:0", &reason));
    sim.Command("set cell.gsm 5:6:40:0:0 7:8:41:9:10");
    ASSERT_EQ(get(), 0u);
    EXPECT_EQ(present, ULONG{GOBI_CELL_GERAN});
    EXPECT_EQ(Join({geran->arfcn, geran->bsic, geran->rxLevel, geran->timingAdvance, geran->neighbourCount}),
              "5:6:40:2:1");
    EXPECT_EQ(Join({geran->neighbours[0].cellId, geran->neighbours[0].lac}), "9:10");
    const BYTE three[3] = {0x62, 0x02, 0x14};
    EXPECT_EQ(memcmp(geran->plmn, three, 3), 0) << "three";
    sim.Command("set network.registration 2");
    ASSERT_EQ(get(), 0u);
    EXPECT_EQ(present, 0u);

    sim.Command("model cdma");
    sim.Command("set cell.latitude -1296000");
    ASSERT_EQ(get(), 0u);
    EXPECT_EQ(present, ULONG{GOBI_CELL_CDMA});
    EXPECT_EQ(cdma->latitude, -1296000);
    EXPECT_EQ(Join({cdma->sid, cdma->baseId, cdma->refPn}), "1:100:12");
    sim.Command("hostile GetCellLocationInfo scribble");
    ASSERT_EQ(get(), 0u);
    EXPECT_EQ(Join({umts->geranCount, geran->neighbours[5].reserved[1]}), "255:255");
    EXPECT_EQ(SIM_ENTRY(GetCellLocationInfo)(geran.get(), umts.get(), nullptr, &present), 4u);
}

TEST_F(SimulatorCells, WaitingMessagesAreRead)
{
    auto info = std::make_unique<waitingMsgInfo>();
    ASSERT_EQ(SIM_ENTRY(GetWaitingMsgInfo)(info.get()), 0u);
    EXPECT_EQ(info->count, 0);
    sim.Command("set waiting.messages 0:1:3 2:1:255");
    ASSERT_EQ(SIM_ENTRY(GetWaitingMsgInfo)(info.get()), 0u);
    const auto& mail = info->entries[1];
    EXPECT_EQ(Join({info->count, info->entries[0].waiting, mail.type, mail.active, mail.waiting}), "2:3:2:1:255");
    sim.Command("hostile GetWaitingMsgInfo count 200");
    ASSERT_EQ(SIM_ENTRY(GetWaitingMsgInfo)(info.get()), 0u);
    EXPECT_EQ(info->count, 200);
}

// --- events

TEST_F(SimulatorRecords, EventsCarryWhatTheLineSays)
{
    const std::string digits(81, '9'), octets = "AB" + std::string(2 * 4094, '0') + "CD";
    const struct {
        std::string line, told;
    } rows[] = {
        {"call 1:2:0:5551234", "1:2:0 5551234"},
        {"call 1:3:0:55:33 2:9:6::300 3:6:0", "1:3:0 55 option 33, 2:9:6  reason 300, 3:6:0 "},
        {"call 255:255:255:" + digits, "255:255:255 " + digits},
        {"call 1:7:0:withheld", "1:7:0 withheld"},
        {"call", ""},
        {"call null", "no calls"},
        {"inforec 4 5551234", "4 from 5551234"},
        {"inforec 4 null 0 0 9", "4 signal 0:0:9"},
        {"ussd 2 15 \"1 yes\"", "2:15 1 yes"},
        {"ussd 1 0x44 hex 4100", std::string("1:68 A\0", 7)},
        {"ussd null", "no USSD"},
        {"phonebook 0 \"7:1:+49:A b:c\" 8:0::", "0:2 7:1:+49:A b:c 8:0::"},
        {"phonebook 0 stored 1 100", "0:1 1:1:+12025550199:Voice mail"},
        {"phonebook 9 stored 1 2", "9:0"},
        {"phonebook 0 null 65535", "0:65535 null"},
        {"emergency 112 1:0:0:0:5:911", "2 0:0:3:112 1:5:3:911"},
        {"emergency", "0"},
        {"emergency null 255", "255 null"},
        {"oma-fumo 3 " + octets, "firmware 3:171:205"},
        {"oma-fumo null", "nothing"},
        {"oma-event 3 4 FF", "oma 3:4:255:0"},
    };
    for (const auto& row : rows) {
        g_told.clear();
        EXPECT_EQ(sim.Command("emit " + row.line), "delivered") << row.line;
        EXPECT_EQ(g_told, Lines{row.told}) << row.line;
    }
    const struct {
        std::string line, reason;
    } refused[] = {
        {"call 1:2", "at most 8 calls such as 1:3:0:5551234"},
        {"call 1:2:256", "at most 8 calls such as 1:3:0:5551234"},
        {"call 1:2:0:" + digits + "9", "at most 8 calls such as 1:3:0:5551234"},
        {"call 1:3:0:5:256", "at most 8 calls such as 1:3:0:5551234"},
        {"call 1:9:0:5:65536", "at most 8 calls such as 1:3:0:5551234"},
        {"call 1:1:1 1:1:1 1:1:1 1:1:1 1:1:1 1:1:1 1:1:1 1:1:1 1:1:1", "at most 8 calls such as 1:3:0:5551234"},
        {"inforec 1 " + digits + "9", "a number has at most 81 digits"},
        {"inforec 1 5 0", "missing pitch"},
        {"ussd 1 15 " + std::string(256, 'x'), "a text has at most 255 octets"},
        {"phonebook 0 1:2:3", ""},
        {"phonebook 0 65536:0:1:x", "at most 10 records such as \"1:0:5551234:A name\""},
        {"phonebook 0 1:0:1:" + std::string(257, 'x'), "at most 10 records such as \"1:0:5551234:A name\""},
        {"emergency 1:112", "at most 50 entries such as 112 or 1:0:2:0:0:112"},
        {"emergency 1:0:0:0:256:112", "at most 50 entries such as 112 or 1:0:2:0:0:112"},
        {"emergency " + digits + "9", "at most 50 entries such as 112 or 1:0:2:0:0:112"},
        {"oma-fumo 3 " + octets + "00", "octets has more than 4096 octets"},
    };
    for (const auto& row : refused) {
        std::string reason;
        const bool taken = sim.TryCommand("emit " + row.line, &reason);
        EXPECT_EQ(taken, row.reason.empty()) << row.line;
        EXPECT_EQ(taken ? "" : reason, row.reason) << row.line;
    }
}

TEST_F(SimulatorRecords, JournalsWhatRecordsSay)
{
    sim.ClearJournal();
    Dial("555");
    Manage(3);
    SIM_ENTRY(ManageCalls)(nullptr, nullptr, nullptr);
    Set(1, 0x92, 1, "0000");
    USSInfo info = {15, 2, {'*', 0}};
    SIM_ENTRY(AnsUSSD)(&info);
    SIM_ENTRY(DialCall)(nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(sim.Journal(), (Lines{"DialCall(0, 0, 0, 0, \"555\")", "ManageCalls(3, 0)", "ManageCalls(null, null)",
                                    "SetSupsService(1, 146, 1, \"0000\", 0, 0, 0, \"\")", "AnsUSSD(15, \"*\\x00\")",
                                    "DialCall(null, null, null, null, null)"}));
}

TEST_F(SimulatorRecords, ReachAClientOfTheLibrary)
{
    ClientRecorder client;
    g_OrvNotify.RegisterClient(client.Callback(), &g_GobiDll);
    SimRegistration<GobiSetCallInfo>("SetCallInfoCallback")(CallInfoCallback);
    SimRegistration<GobiSetPhonebookRecordRead>("SetPhonebookRecordReadCallback")(ReadSIMPhoneBookCallback);
    SimRegistration<GobiSetEmergencyList>("SetEmergencyListCallback")(EmergencyListCallback);
    sim.Command("call incoming 5551234");
    Told();
    ASSERT_EQ(Answer(1), 0u);
    ASSERT_EQ(Dial("777"), 0u);
    Told(1000);
    sim.Command("call ends 2 34");
    BYTE session = 0;
    WORD type = 0, first = 1, last = 1, count = 0;
    ASSERT_EQ(SIM_ENTRY(ReadPhonebookRecords)(&session, &type, &first, &last, &count), 0u);
    Told();
    sim.Command("emit emergency 1 2 3 4 5 6 7 8 9 10 11");
    g_OrvNotify.DeregisterClient();
    // Rings, talks, is held; the other one talks and ends; a record; ten numbers and one more.
    ASSERT_EQ(client.Identifiers(), (std::vector<ORV_NOTIFY>{1009, 1008, 2280, 1008, 1012, 2014, 2015, 2015}));
    const auto records = client.Records();
    EXPECT_STREQ(records[0].payload.CallIncoming.szNumber, "5551234");
    EXPECT_EQ(records[4].payload.CallStatus.uCallId, 2u);
    EXPECT_EQ(records[4].payload.CallStatus.uDetail, 34u);
    EXPECT_EQ(records[5].payload.PhonebookRecords.entries[0].uNameLength, strlen("Voice mail"));
    EXPECT_EQ(records[7].payload.EmergencyNumbers.uCount, 1u);
}

} // namespace
