// Events that carry the vendor's records: calls, USSD, phonebook, emergency numbers, device management. What the arrays
// say of themselves is hostile.

#include <gtest/gtest.h>

#include <string.h>

#include <memory>
#include <string>
#include <vector>

#include "api/objects.h"
#include "notify/OrvNotify.h"
#include "notify/adapters.h"
#include "tests/support/log_capture.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;
using Words = std::vector<ULONG>;

class VendorRecords : public ::testing::Test {
protected:
    void SetUp() override { g_OrvNotify.RegisterClient(client.Callback(), &g_GobiDll); }
    void TearDown() override { g_OrvNotify.DeregisterClient(); }

    ClientRecorder client;
};

// One call in the first place of the arrays, with everything that belongs to it.
struct OneCall {
    arrCallInfo calls = {};
    arrRemotePartyNum numbers = {};
    arrSvcOption options = {};
    arrCallEndReason reasons = {};

    OneCall(BYTE state, BYTE type)
    {
        calls.count = 1;
        calls.calls[0] = {7, state, type, 2, 2, 0, 0};
        numbers.count = 1;
        numbers.numbers[0].callId = 99; // another call's: not looked at
        numbers.numbers[0].length = 5;
        memcpy(numbers.numbers[0].digits, "12345", 5);
        options.count = 2;
        options.options[0] = {8, 3};
        options.options[1] = {7, 68};
        reasons.count = 1;
        reasons.reasons[0] = {7, 0x34, 0x12};
    }

    void Send()
    {
        CallInfoCallback(&calls, &numbers, nullptr, nullptr, &options, &reasons, nullptr, nullptr, nullptr, nullptr);
    }
};

Words Status(const OrvNotifyRecord& record)
{
    const OrvCallStatusPayload& payload = record.payload.CallStatus;
    return {record.uNotify, record.uPayloadSize, payload.uStatus, payload.uCallId, payload.uDetail};
}

TEST_F(VendorRecords, ACallIsDeliveredByItsState)
{
    const std::string ring = "send ring : callid: 7,number:12345";
    const struct {
        const char* name;
        BYTE state, type;
        Words record; // identifier, size, status or kind, call
        Lines log;
    } rows[] = {
        {"incoming", 2, 0, {1009, 48, 0, 7}, {ring}},
        {"incoming, type 6", 2, 6, {1009, 48, 5, 7}, {ring}},
        {"waiting", 7, 0, {1009, 48, 256, 7}, {"waiting ring", ring}},
        {"waiting, type 6", 7, 6, {1009, 48, 5, 7}, {"waiting ring", ring}},
        {"conversation", 3, 0, {1008, 16, 2, 7, 68}, {"Connected"}},
        {"ended", 9, 0, {1012, 16, 0, 7, 0x1234}, {"Disconnected"}},
        {"held", 6, 0, {2280, 16, 0, 7, 0}, {"Call on Hold"}},
        {"alerting", 5, 0, {}, {}},
        {"beyond the states", 200, 0, {}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        client.Clear();
        LogCapture log;
        OneCall(row.state, row.type).Send();
        Lines expected = {"CallInfoCallback", "CallInfoCallback : i:0, callid 7, status " + std::to_string(row.state)};
        expected.insert(expected.end(), row.log.begin(), row.log.end());
        EXPECT_EQ(log.Texts(), expected);
        ASSERT_EQ(client.Records().size(), row.record.empty() ? 0u : 1u);
        if (row.record.empty()) continue;
        const OrvNotifyRecord record = client.Records()[0];
        if (row.record[0] == 1009) {
            const OrvCallIncomingPayload& payload = record.payload.CallIncoming;
            EXPECT_EQ((Words{record.uNotify, record.uPayloadSize, payload.uKind, payload.uCallId}), row.record);
            EXPECT_STREQ(payload.szNumber, "12345");
        } else {
            EXPECT_EQ(Status(record), row.record);
        }
    }
}

TEST_F(VendorRecords, ACallWithoutItsCompanionsHasTheirDefaults)
{
    OneCall ended(9, 0);
    ended.reasons.reasons[0].callId = 8; // of another call
    ended.Send();
    ended.reasons.count = 0;
    ended.Send();
    CallInfoCallback(&ended.calls, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    OneCall talking(3, 0);
    talking.options.count = 1;
    talking.Send();
    OneCall ringing(2, 0);
    CallInfoCallback(&ringing.calls, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    ASSERT_EQ(client.Records().size(), 5u);
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(Status(client.Records()[i]), (Words{1012, 16, 0, 7, 10})) << i;
    EXPECT_EQ(Status(client.Records()[3]), (Words{1008, 16, 2, 7, 0}));
    EXPECT_STREQ(client.Records()[4].payload.CallIncoming.szNumber, "");
    CallInfoCallback(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(client.Records().size(), 5u);
}

TEST_F(VendorRecords, CountsAndLengthsOfCallsAreBounded)
{
    OneCall call(2, 0);
    memset(&call.numbers, 0xFF, sizeof call.numbers);
    memset(&call.options, 0xFF, sizeof call.options);
    memset(&call.reasons, 0xFF, sizeof call.reasons);
    for (auto& entry : call.calls.calls)
        entry = {1, 2, 0, 0, 0, 0, 0};
    call.calls.count = 255;
    call.Send();
    EXPECT_EQ(client.Records().size(), 8u);
    EXPECT_EQ(strlen(client.Records()[7].payload.CallIncoming.szNumber), 35u);
    for (auto& entry : call.calls.calls)
        entry.state = 3;
    call.Send();
    for (auto& entry : call.calls.calls)
        entry.state = 9;
    call.Send();
    EXPECT_EQ(client.Records().size(), 24u);
}

TEST_F(VendorRecords, AnInformationRecordWithANumberRings)
{
    callerIDInfo caller = {};
    caller.length = 3;
    memcpy(caller.digits, "911", 3);
    signalInfo waiting = {0, 0, 9};
    signalInfo ringing = {1, 0, 9};
    BYTE call_id = 4;
    LogCapture log;
    InfoRecCallback(&call_id, &waiting, &caller, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr);
    InfoRecCallback(nullptr, &ringing, &caller, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    InfoRecCallback(&call_id, &waiting, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr);
    EXPECT_EQ(log.Texts(), (Lines{"InfoRecCallback", "waiting ring", "send ring : callid: 4,number:911",
                                  "InfoRecCallback", "send ring : callid: 0,number:911", "InfoRecCallback"}));
    ASSERT_EQ(client.Records().size(), 2u) << "without a number nothing is delivered";
    EXPECT_EQ(client.Records()[0].payload.CallIncoming.uKind, 256u);
    EXPECT_EQ(client.Records()[1].payload.CallIncoming.uKind, 0u);
}

TEST_F(VendorRecords, AUssdStringIsDumpedAndDelivered)
{
    USSInfo info = {};
    info.dcs = 0x0F;
    info.length = 255;
    memset(info.data, 0x5A, sizeof info.data);
    BYTE type = 2;
    LogCapture log;
    USSDCallback(&type, &info);
    ASSERT_EQ(client.Records().size(), 1u);
    const OrvNotifyRecord record = client.Records()[0];
    const OrvUSSDPayload& payload = record.payload.USSD;
    EXPECT_EQ((Words{record.uNotify, record.uPayloadSize, payload.uType, payload.uDataCodingScheme, payload.uLength}),
              (Words{2281, 276, 2, 15, 255}));
    EXPECT_EQ(payload.aData[254], 0x5A);
    EXPECT_EQ(payload.aData[255], 0);
    const Lines texts = log.Texts();
    ASSERT_GT(texts.size(), 20u);
    EXPECT_EQ(texts[0], "USSDCallback");
    EXPECT_EQ(texts[1], "b4 dump pUSSD");
    EXPECT_EQ(texts[3].substr(texts[3].rfind(' ', texts[3].size() - 7)), " 259 bytes");
    EXPECT_EQ(log.Count("b4 dump sNotifyVariant._USSD"), 1);
    log.Clear();
    USSDCallback(nullptr, &info);
    USSDCallback(&type, nullptr);
    EXPECT_EQ(log.Texts(), (Lines{"USSDCallback", "USSDCallback"}));
    EXPECT_EQ(client.Records().size(), 1u);
}

TEST_F(VendorRecords, PhonebookRecordsComeInBatches)
{
    std::vector<arrPBInfo> records(12);
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].recordId = static_cast<WORD>(i + 1);
        records[i].numberType = 1;
        records[i].numberLength = 0xFFFF; // beyond its field
        records[i].nameLength = 2;
        memset(records[i].number, '5', sizeof records[i].number);
        memcpy(records[i].name, "ab", 2);
    }
    LogCapture log;
    ReadSIMPhoneBookCallback(3, 12, records.data());
    ASSERT_EQ(client.Records().size(), 2u);
    const std::vector<OrvNotifyRecord> records_received = client.Records();
    const OrvPhonebookRecordsPayload& first = records_received[0].payload.PhonebookRecords;
    EXPECT_EQ(records_received[0].uPayloadSize, 5328u);
    EXPECT_EQ(first.uCount, 10u);
    EXPECT_EQ(first.entries[9].uRecordId, 10u);
    EXPECT_EQ(first.entries[9].uNumberLength, 256u);
    EXPECT_EQ(first.entries[9].aNumber[255], '5');
    EXPECT_EQ(first.entries[9].uNameLength, 2u);
    EXPECT_EQ(first.entries[9].uPhonebookType, 3u);
    EXPECT_EQ(records_received[1].payload.PhonebookRecords.uCount, 2u);
    EXPECT_EQ(log.Count("SIM record id = 12, type=1, NumLen=256, NameLen=2!!"), 1) << log.Dump();
    log.Clear();
    ReadSIMPhoneBookCallback(3, 12, nullptr);
    ReadSIMPhoneBookCallback(3, 0, records.data());
    EXPECT_EQ(log.Texts(), (Lines{"ReadSIMPhoneBookCallback", "NULL Pointer!!", "ReadSIMPhoneBookCallback"}));
    EXPECT_EQ(client.Records().size(), 2u);
}

TEST_F(VendorRecords, EmergencyNumbersComeInBatches)
{
    const struct {
        BYTE count;
        std::vector<ULONG> batches;
        Lines log;
    } rows[] = {
        {1, {1}, {}},
        {10, {10}, {}},
        {11, {10, 1}, {}},
        {50, {10, 10, 10, 10, 10}, {"EmergencyListCallback: noOfInstance = 50, some entries may be missing"}},
        {51, {10, 10, 10, 10, 10}, {"Emergency list of 51 entries cut to 50"}},
        {255, {10, 10, 10, 10, 10}, {"Emergency list of 255 entries cut to 50"}},
        {0, {}, {"EmergencyListCallback: noOfInstance = 0, noOfInstance is 0 or arrEmergencyNumberEntry is NULL!"}},
    };
    std::vector<emergencyNumberEntry> entries(50);
    for (size_t i = 0; i < entries.size(); ++i) {
        for (BYTE octet = 0; octet < 5; ++octet)
            entries[i].hdr[octet] = static_cast<BYTE>(10 * octet + i);
        entries[i].hdr[5] = i % 2 ? 3 : 255; // beyond the field
        memset(entries[i].digits, '1', sizeof entries[i].digits);
    }
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.count));
        client.Clear();
        LogCapture log;
        EmergencyListCallback(row.count, entries.data());
        EXPECT_EQ(log.Texts(), row.log);
        std::vector<ULONG> batches;
        for (const OrvNotifyRecord& record : client.Records()) {
            EXPECT_EQ(record.uPayloadSize, 880u);
            batches.push_back(record.payload.EmergencyNumbers.uCount);
        }
        EXPECT_EQ(batches, row.batches);
    }
    client.Clear();
    EmergencyListCallback(12, entries.data());
    const std::vector<OrvNotifyRecord> batches = client.Records();
    ASSERT_EQ(batches.size(), 2u);
    const OrvEmergencyNumbersPayload& last = batches[1].payload.EmergencyNumbers;
    EXPECT_EQ(last.aHeader[4][1], 51) << "the fifth octet of the twelfth entry";
    EXPECT_EQ(last.aHeader[5][1], 3);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(last.aDigits[1])), "111");
    EXPECT_EQ(last.aDigits[0][80], '1') << "cut to the field";
    EXPECT_EQ(last.bReserved[0], 0);
    LogCapture log;
    EmergencyListCallback(50, nullptr);
    EXPECT_EQ(log.Texts().size(), 2u);
}

TEST_F(VendorRecords, DeviceManagementEventsAreCopiedWhole)
{
    const auto update = std::make_unique<FUMOInfo>();
    const auto oma = std::make_unique<OMAInfo>();
    memset(update.get(), 0x11, sizeof *update);
    memset(oma.get(), 0x22, sizeof *oma);
    OMAEXEventCallback(update.get(), nullptr);
    OMAEXEventCallback(nullptr, oma.get());
    OMAEXEventCallback(nullptr, nullptr);
    ASSERT_EQ(client.Records().size(), 2u);
    const OrvNotifyRecord first = client.Records()[0], second = client.Records()[1];
    EXPECT_EQ((Words{first.uNotify, first.uPayloadSize, second.uNotify, second.uPayloadSize}),
              (Words{2283, 4104, 2284, 524}));
    EXPECT_EQ(memcmp(&first.payload, update.get(), sizeof *update), 0);
    EXPECT_EQ(memcmp(&second.payload, oma.get(), sizeof *oma), 0);
    EXPECT_EQ(first.payload.FUMOEvent.uReserved, 0u);
    EXPECT_EQ(second.payload.OMAEvent.uReserved, 0u);
}

TEST_F(VendorRecords, NothingIsDeliveredWithoutAClient)
{
    g_OrvNotify.DeregisterClient();
    OneCall(2, 0).Send();
    USSInfo info = {};
    BYTE type = 1;
    USSDCallback(&type, &info);
    arrPBInfo record = {};
    ReadSIMPhoneBookCallback(1, 1, &record);
    emergencyNumberEntry entry = {};
    EmergencyListCallback(1, &entry);
    OMAInfo oma = {};
    OMAEXEventCallback(nullptr, &oma);
    EXPECT_EQ(client.Records().size(), 0u);
}

} // namespace
