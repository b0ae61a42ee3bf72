// Text messages of a CDMA module, and the notification of how a sending ended.

#include <gtest/gtest.h>

#include <string.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/talvek.h"
#include "tests/support/guard_sweep.h"
#include "tests/support/log_capture.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;
using Words = std::vector<ULONG>;

const std::string kHello = "0000021002020702955686AA908006014408200003"
                           "1ABCD00106102C8CBB366F03060912312359580801800B01120E0301C888";
const std::string kNoDelivery =
    "0000021002020702955686AA908008050003200010"; // the originating address, then a submission

ORV_CDMA_SMS_STATUS g_status;
ORV_CDMA_SMS g_record;
ORV_CDMA_SMS_SEND g_send;

const GuardedFunction kGuards[] = {
    {"OrvGetCdmaSMSMessageStatus", 17, 1, 0, [] { return OrvGetCdmaSMSMessageStatus(&g_status); }},
    {"OrvRetrieveCdmaSMSMessage", 17, 1, 0, [] { return OrvRetrieveCdmaSMSMessage(&g_record); }},
    {"OrvStoreCdmaSMSMessage", 17, 1, 4, [] { return OrvStoreCdmaSMSMessage(&g_send); }},
    {"OrvSendCdmaSMS", 17, 1, 5, [] { return OrvSendCdmaSMS(); }},
    {"OrvGetCdmaSMSMessageStatus, null", 17, 1, 4, [] { return OrvGetCdmaSMSMessageStatus(nullptr); }},
    {"OrvRetrieveCdmaSMSMessage, null", 17, 1, 4, [] { return OrvRetrieveCdmaSMSMessage(nullptr); }},
    {"OrvStoreCdmaSMSMessage, null", 17, 1, 4, [] { return OrvStoreCdmaSMSMessage(nullptr); }},
};

TEST(CdmaSmsGuards, OfEveryFunction)
{
    SimHarness sim("cdma");
    SweepGuards(sim, kGuards, "cdma:5101", "umts:5120");
}

class CdmaSms : public ::testing::Test {
protected:
    void SetUp() override { SelectModule(sim, "cdma:5101"); }
    void TearDown() override
    {
        platform_hooks::DrainThreads(10000);
        OrvDeRegisterCallback(client.Callback());
        OrvApiShutdown();
        platform_hooks::Reset();
    }

    void Arrive(const std::string& hex, int format = 0)
    {
        sim.Command("sms arrives 1 " + std::to_string(format) + " " + hex);
    }
    // The result; the record's parts beside it. Frees the user data.
    ORV_RCODE Retrieve()
    {
        memset(&g_record, 0, sizeof g_record);
        const ORV_RCODE result = OrvRetrieveCdmaSMSMessage(&g_record);
        m_text =
            g_record.pUserData ? std::string(reinterpret_cast<char*>(g_record.pUserData), g_record.uUserDataLen) : "";
        OrvFreeBuffer(g_record.pUserData);
        return result;
    }
    static ORV_RCODE Store(WORD id = 0x1234, ULONG length = 2)
    {
        static BYTE body[200] = {'H', 'i'};
        ORV_CDMA_SMS_SEND message = {};
        memset(&message, 0xAA, sizeof message); // what is reserved is not read
        message.uMsgId = id;
        message.uMsgType = ORV_CDMA_SMS_SUBMIT;
        message.uAddrLen = 10;
        const std::u16string digits = u"5551234567";
        digits.copy(message.szAddress, 10);
        message.uCallbackLen = 0;
        message.uPriority = ORV_CDMA_SMS_PRIORITY_NORMAL;
        message.uEncoding = ORV_CDMA_SMS_ENCODING_ASCII;
        message.pUserData = body;
        message.uUserDataLen = length;
        return OrvStoreCdmaSMSMessage(&message);
    }

    SimHarness sim{"cdma"};
    LogCapture log;
    ClientRecorder client;
    std::string m_text;
};

// --- received --------------------------------------------------------------------------------------------------------

TEST_F(CdmaSms, StatusCountsWhatIsUnreadInTheModule)
{
    Arrive(kHello);
    Arrive("05", 8);
    sim.Command("sms add 1 0 0 00"); // read
    sim.Command("sms add 0 1 0 00"); // on the card
    sim.ClearJournal();
    g_status = {7, 7, 7, 7};
    EXPECT_EQ(OrvGetCdmaSMSMessageStatus(&g_status), ORV_RCODE_OK);
    EXPECT_EQ(Words({g_status.sizeStruct, g_status.uReserved1, g_status.uUnreadCount, g_status.uReserved2}),
              (Words{16, 0, 2, 0}));
    EXPECT_EQ(sim.Journal(), Lines{"GetSMSList(1, 1, 1000)"});
    sim.Command("hostile GetSMSList count 4294967295");
    EXPECT_EQ(OrvGetCdmaSMSMessageStatus(&g_status), ORV_RCODE_OK);
    EXPECT_EQ(g_status.uUnreadCount, 1000u);
    sim.Command("fail GetSMSList 5");
    EXPECT_EQ(OrvGetCdmaSMSMessageStatus(&g_status), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(Retrieve(), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Count("Gobi Api GetSMSList failed with error = 5"), 1) << "of the retrieval";
}

TEST_F(CdmaSms, TwoMessagesComeOneACallAndAreDeleted)
{
    Arrive(kHello);
    Arrive(kHello);
    sim.ClearJournal();
    for (const ULONG remaining : {1u, 0u}) {
        EXPECT_EQ(Retrieve(), ORV_RCODE_OK);
        EXPECT_EQ(g_record.uMsgsRemaining, remaining);
        EXPECT_EQ(g_record.uParamMask, 0x19341u);
        EXPECT_EQ(m_text, "Hello");
    }
    EXPECT_EQ(sim.Journal(), (Lines{"GetSMSList(1, 1, 1000)", "GetSMS(1, 0, 500)", "DeleteSMS(1, 0, null)",
                                    "GetSMSList(1, 1, 1000)", "GetSMS(1, 1, 500)", "DeleteSMS(1, 1, null)"}));
    EXPECT_EQ(Retrieve(), ORV_RCODE_OK) << "none left";
    EXPECT_EQ(g_record.uParamMask + g_record.uStructSize, 0u);
    EXPECT_EQ(log.Count("Gobi SMS List size for UNREAD msgs = 2"), 1);
    EXPECT_EQ(log.Count("Gobi GetSMS Loop Loop index i = 0, Msg Index = 1 Msg TAG = 1"), 1) << log.Dump();
}

TEST_F(CdmaSms, WhatCannotBeReadStaysAndTheNextOneIsTried)
{
    const struct {
        const char* name;
        std::string messages[3]; // FORMAT HEX
        ORV_RCODE result;
        ULONG mask, remaining;
        const char* log;
        std::string left;
    } rows[] = {
        {"first",
         {"0 " + kNoDelivery, "0 " + kHello},
         ORV_RCODE_OK,
         0x19341,
         0,
         "DecodeCompleteMTSms failed with error = 5",
         "0"},
        {"last", {"0 " + kNoDelivery}, ORV_RCODE_FAILED, 0x40, 0, "DecodeCompleteMTSms failed with error = 5", "0"},
        {"indication first",
         {"8 0102", "0 " + kHello, "0 " + kHello},
         ORV_RCODE_OK,
         0x19341,
         1,
         "Unexpected data lenght for MWI",
         "02"},
        {"indication last", {"8 0102"}, ORV_RCODE_UNSUPPORTED, 0, 0, "Unexpected data lenght for MWI", "0"},
        {"indication without a count", {"8 \"\""}, ORV_RCODE_UNSUPPORTED, 0, 0, "Unexpected data lenght for MWI", "0"},
        {"before an indication",
         {"0 " + kNoDelivery, "8 07"},
         ORV_RCODE_OK,
         0,
         0,
         "DecodeCompleteMTSms failed with error = 5",
         "0"},
        {"before a stranger",
         {"0 " + kNoDelivery, "6 00"},
         ORV_RCODE_OK,
         0,
         1,
         "Msg Format = 6, Msg Tag = 1. One of them is incorrect",
         "01"},
        {"stranger",
         {"6 00", "0 " + kHello},
         ORV_RCODE_OK,
         0x19341,
         0,
         "Msg Format = 6, Msg Tag = 1. One of them is incorrect",
         "0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SelectModule(sim, "cdma:5101");
        log.Clear();
        for (const std::string& message : row.messages)
            if (!message.empty()) {
                sim.Command("sms arrives 1 " + message);
            }
        EXPECT_EQ(Retrieve(), row.result);
        EXPECT_EQ(g_record.uParamMask, row.mask);
        EXPECT_EQ(g_record.uMsgsRemaining, row.remaining);
        EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        std::string left;
        for (const std::string& line : SplitLines(sim.Command("sms list 1")))
            left += line.substr(0, 1);
        EXPECT_EQ(left, row.left) << "in the store";
        OrvApiShutdown();
    }
}

TEST_F(CdmaSms, AnIndicationOfWaitingMessagesBecomesANotification)
{
    Arrive("00", 8);
    Arrive("FF", 8);
    EXPECT_EQ(Retrieve(), ORV_RCODE_OK) << "nobody listens: it is removed all the same";
    OrvRegisterCallback(client.Callback(), 0);
    EXPECT_EQ(Retrieve(), ORV_RCODE_OK);
    const std::vector<OrvNotifyRecord> records = client.Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(Words({records[0].uNotify, records[0].uPayloadSize}), (Words{2020, 16}));
    const BYTE expected[16] = {1, 0, 0, 0, 0xFF};
    EXPECT_EQ(memcmp(records[0].payload.aOctets, expected, 16), 0) << "the octet as it is, not -1";
    EXPECT_EQ(sim.Command("sms list 1"), "");
}

TEST_F(CdmaSms, FaultsOfTheVendorAreBounded)
{
    const struct {
        const char* fault;
        ORV_RCODE result;
        const char* log;
    } rows[] = {
        {"hostile GetSMSList scribble", ORV_RCODE_FAILED, "Gobi Api GetSMS failed with error = 9"},
        {"hostile GetSMS scribble", ORV_RCODE_OK, "Msg Format = -1, Msg Tag = -1. One of them is incorrect"},
        {"hostile GetSMS count 4294967295", ORV_RCODE_FAILED,
         "DecodeCompleteMTSms failed with error = 5"}, // 500 octets
        {"fail GetSMS 5", ORV_RCODE_VENDOR_5, "Gobi Api GetSMS failed with error = 5"},
        {"fail DeleteSMS 5", ORV_RCODE_OK, "Gobi Api DeleteSMS failed with error = 5"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fault);
        SelectModule(sim, "cdma:5101");
        log.Clear();
        Arrive(kHello);
        sim.Command(row.fault);
        EXPECT_EQ(Retrieve(), row.result) << log.Dump();
        EXPECT_GE(log.Count(row.log), 1) << log.Dump();
        OrvApiShutdown();
    }
}

// --- sent ------------------------------------------------------------------------------------------------------------

TEST_F(CdmaSms, StoreHoldsOneAndARefusedOneLeavesNone)
{
    const struct {
        const char* name;
        ULONG length;
        ORV_RCODE stored, sent;
        const char* log;
    } rows[] = {
        {"again", 2, ORV_RCODE_OK, ORV_RCODE_OK, "One Msg already stored in the modem, overwriting it"},
        {"160 octets", 160, ORV_RCODE_OK, ORV_RCODE_OK, nullptr},
        {"161 octets", 161, ORV_RCODE_BAD_PARAMETER, ORV_RCODE_FAILED, "SMS MSg body is longer than 160 characters"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Store(1), ORV_RCODE_OK);
        log.Clear();
        EXPECT_EQ(Store(0x1234, row.length), row.stored);
        if (row.log) {
            EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        }
        EXPECT_EQ(OrvSendCdmaSMS(), row.sent);
        if (row.length == 2) {
            EXPECT_EQ(sim.Command("get sms.sent"), "0000021002040702955448D159C0080E0003212340010410148D20080100");
        }
        EXPECT_EQ(OrvSendCdmaSMS(), ORV_RCODE_FAILED) << "a second sending";
    }
    EXPECT_EQ(log.Count("No SMS Msg is stored in the modem"), 2);
}

TEST_F(CdmaSms, WhatCannotBeEncodedIsNotHeld)
{
    const struct {
        const char* name;
        void (*spoil)(ORV_CDMA_SMS_SEND& message);
    } rows[] = {
        {"no destination", [](ORV_CDMA_SMS_SEND& m) { m.uAddrLen = 0; }},
        {"address longer than its field", [](ORV_CDMA_SMS_SEND& m) { m.uAddrLen = 67; }},
        {"call-back longer than its field", [](ORV_CDMA_SMS_SEND& m) { m.uCallbackLen = 255; }},
        {"no body", [](ORV_CDMA_SMS_SEND& m) { m.pUserData = nullptr; }},
        {"message type", [](ORV_CDMA_SMS_SEND& m) { m.uMsgType = 7; }},
        {"priority", [](ORV_CDMA_SMS_SEND& m) { m.uPriority = 4; }},
    };
    const BYTE body[] = "x";
    for (const auto& row : rows) {
        ORV_CDMA_SMS_SEND message = {};
        message.uMsgType = ORV_CDMA_SMS_SUBMIT;
        message.uAddrLen = ORV_CDMA_SMS_MAX_DIGITS;
        std::fill(message.szAddress, message.szAddress + 67, u'1'); // no terminator
        message.uEncoding = ORV_CDMA_SMS_ENCODING_ASCII;
        message.pUserData = body;
        message.uUserDataLen = 1;
        EXPECT_EQ(OrvStoreCdmaSMSMessage(&message), ORV_RCODE_OK);
        row.spoil(message);
        EXPECT_EQ(OrvStoreCdmaSMSMessage(&message), ORV_RCODE_BAD_PARAMETER) << row.name;
        EXPECT_EQ(OrvSendCdmaSMS(), ORV_RCODE_FAILED) << row.name;
    }
    EXPECT_EQ(log.Count("EncodeCompleteMoSms failed \n"), 4) << log.Dump();
    EXPECT_EQ(sim.Journal(), Lines());
}

TEST_F(CdmaSms, AMessageThatFailedStaysHeldForARetry)
{
    Store();
    sim.Command("set sms.send-status 5");
    sim.Command("set sms.failure-cause 97");
    EXPECT_EQ(OrvSendCdmaSMS(), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Count("Gobi SendSMS failed with error code = 5 and Failure code = 97"), 1) << log.Dump();
    sim.Command("set sms.send-status 0");
    EXPECT_EQ(OrvSendCdmaSMS(), ORV_RCODE_OK);
    EXPECT_EQ(sim.Journal(), (Lines{"SendSMS(0, 30, 0)", "SendSMS(0, 30, 0)"}));
}

std::atomic<DWORD> g_slept;
void NoSleep(DWORD milliseconds) { g_slept = milliseconds; }

class ThreadsSmsSending : public CdmaSms {
protected:
    void SetUp() override
    {
        CdmaSms::SetUp();
        OrvRegisterCallback(client.Callback(), 0);
        ASSERT_EQ(OrvNotify(ORV_NOTIFY_SMSSendStatus, 0), ORV_RCODE_OK);
    }
};

TEST_F(ThreadsSmsSending, OutcomeComesOnAThreadOfItsOwnAfterTheResult)
{
    platform_hooks::ReplaceCall("Sleep", reinterpret_cast<FARPROC>(&NoSleep));
    for (const bool fails : {false, true}) {
        Store(0xABCD);
        client.Clear();
        if (fails) sim.Command("set sms.send-status 5");
        EXPECT_EQ(OrvSendCdmaSMS(), fails ? ORV_RCODE_VENDOR_5 : ORV_RCODE_OK);
        ASSERT_TRUE(client.Wait(1));
        const OrvNotifyRecord record = client.Records()[0];
        EXPECT_EQ(Words({record.uNotify, record.uPayloadSize}), (Words{501, 16}));
        EXPECT_EQ(record.payload.SMSSendStatus.uMsgId, 0xABCDu);
        EXPECT_EQ(record.payload.SMSSendStatus.uStatus, fails ? 2u : 0u);
        EXPECT_NE(client.Threads()[0], std::this_thread::get_id());
        EXPECT_EQ(g_slept, 100u);
        ASSERT_TRUE(platform_hooks::DrainThreads(10000));
        EXPECT_EQ(log.Count(fails ? "Global flag says msg not sent" : "Global flag says msg sent successfully"), 1);
    }
    EXPECT_EQ(log.Count("Send SMS Notification Thread"), 2);
    EXPECT_EQ(log.Count("Previous SmsSendNotifyThread Handle Open.....closing now..."), 1) << "the second time";
}

TEST_F(ThreadsSmsSending, TwoSendingsReportTheLastOutcome)
{
    Store();
    EXPECT_EQ(OrvSendCdmaSMS(), ORV_RCODE_OK);
    Store();
    sim.Command("set sms.send-status 5");
    EXPECT_EQ(OrvSendCdmaSMS(), ORV_RCODE_VENDOR_5);
    ASSERT_TRUE(client.Wait(2));
    EXPECT_EQ(client.Records()[1].payload.SMSSendStatus.uStatus, 2u);
}

TEST_F(ThreadsSmsSending, WithoutAThreadOrAListenerTheResultStands)
{
    platform_hooks::FailCall("CreateThread", 1, 1, 8);
    Store();
    EXPECT_EQ(OrvSendCdmaSMS(), ORV_RCODE_OK);
    EXPECT_EQ(log.Count("Error Sending SMS notification, Thread Create failed"), 1);
    OrvStopNotify(ORV_NOTIFY_SMSSendStatus, 0);
    platform_hooks::Reset();
    platform_hooks::CountCall("CreateThread");
    Store();
    EXPECT_EQ(OrvSendCdmaSMS(), ORV_RCODE_OK);
    EXPECT_EQ(platform_hooks::CallCount("CreateThread"), 0u);
    EXPECT_EQ(client.Records().size(), 0u);
}

} // namespace
