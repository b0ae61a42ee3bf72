// Text messages, the service centre and the phone book of a GSM/UMTS module.

#include <gtest/gtest.h>

#include <string.h>

#include <algorithm>
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

const std::string kHello = "0791947101670000040B915155214365F700002130412135850005E8329BFD06";
const std::string kSubmission = "0791947101670000010005802143F500000161"; // no SMS-DELIVER
const std::string kCutShort = "0004058121";                               // no SMSC, no whole address

ORV_GSM_SMS_STATUS g_status;
ORV_GSM_SMS_IN g_record;
ORV_GSM_SMS_OUT g_out;
ORV_PHONEBOOK_ENTRY g_entry;
char g_address[256];
BYTE g_international;

const GuardedFunction kGuards[] = {
    {"OrvGetSMSMessageStatus", 10, 17, 0, [] { return OrvGetSMSMessageStatus(&g_status); }},
    {"OrvRetrieveSMSMessageGobi", 10, 17, 0, [] { return OrvRetrieveSMSMessageGobi(&g_record); }},
    {"OrvRetrieveCBSMSMessageGobi", 10, 17, 0, [] { return OrvRetrieveCBSMSMessageGobi(&g_record); }},
    {"OrvStoreSMSMessageGobi", 10, 17, 4, [] { return OrvStoreSMSMessageGobi(&g_out); }},
    {"OrvSendSMS", 10, 17, 5, [] { return OrvSendSMS(); }},
    {"OrvGetGsmSMSCAddr", 10, 17, 0, [] { return OrvGetGsmSMSCAddr(50, g_address, &g_international); }},
    {"OrvSetGsmSMSCAddr", 10, 17, 0, [] { return OrvSetGsmSMSCAddr("1", 1); }},
    {"OrvGetPhonebookEntry", 10, 17, 0, [] { return OrvGetPhonebookEntry(0, 0, &g_entry); }},
    {"OrvGetSMSMessageStatus, null", 10, 17, 4, [] { return OrvGetSMSMessageStatus(nullptr); }},
    {"OrvRetrieveSMSMessageGobi, null", 10, 17, 4, [] { return OrvRetrieveSMSMessageGobi(nullptr); }},
    {"OrvRetrieveCBSMSMessageGobi, null", 10, 17, 4, [] { return OrvRetrieveCBSMSMessageGobi(nullptr); }},
    {"OrvStoreSMSMessageGobi, null", 10, 17, 4, [] { return OrvStoreSMSMessageGobi(nullptr); }},
    {"OrvGetGsmSMSCAddr, no size", 10, 17, 2, [] { return OrvGetGsmSMSCAddr(256, nullptr, nullptr); }},
    {"OrvGetGsmSMSCAddr, null", 10, 17, 4, [] { return OrvGetGsmSMSCAddr(50, nullptr, &g_international); }},
    {"OrvSetGsmSMSCAddr, null", 10, 17, 4, [] { return OrvSetGsmSMSCAddr(nullptr, 1); }},
    {"OrvGetPhonebookEntry, null", 10, 17, 4, [] { return OrvGetPhonebookEntry(0, 0, nullptr); }},
};

TEST(GsmSmsGuards, OfEveryFunction)
{
    SimHarness sim;
    SweepGuards(sim, kGuards, "umts:5120", "cdma:5101");
}

class GsmSms : public ::testing::Test {
protected:
    void SetUp() override { SelectModule(sim, "umts:5120"); }
    void TearDown() override
    {
        platform_hooks::DrainThreads(10000);
        OrvDeRegisterCallback(client.Callback());
        OrvApiShutdown();
        platform_hooks::Reset();
    }
    // Retrieves into a cleared record.
    static ORV_RCODE Retrieve()
    {
        g_record = {};
        return OrvRetrieveSMSMessageGobi(&g_record);
    }
    static ORV_RCODE Store(const char* text, ULONG part = 0)
    {
        ULONG count = 0;
        EXPECT_EQ(OrvGsmSmsPart("+15551234567", text, ORV_TEXT_TERMINATED, nullptr, part, &g_out, &count),
                  ORV_RCODE_OK);
        return OrvStoreSMSMessageGobi(&g_out);
    }
    // "STORE:INDEX" of all that is stored.
    std::string Stored()
    {
        std::string text;
        for (const char* store : {"0", "1"})
            for (const std::string& line : SplitLines(sim.Command(std::string("sms list ") + store)))
                text += (text.empty() ? "" : " ") + std::string(store) + ":" + line.substr(0, 1);
        return text;
    }

    SimHarness sim;
    LogCapture log;
    ClientRecorder client;
};

// --- received --------------------------------------------------------------------------------------------------------

TEST_F(GsmSms, StatusPreparesTheDeliveryAndAddsBothStores)
{
    for (const char* line : {"sms add 0 1 6 00", "sms add 0 0 6 00", "sms add 1 1 6 00", "sms add 1 1 6 00"})
        sim.Command(line);
    memset(&g_status, 0xAA, sizeof g_status);
    EXPECT_EQ(OrvGetSMSMessageStatus(&g_status), ORV_RCODE_OK);
    EXPECT_EQ(Words({g_status.sizeStruct, g_status.bFlag, g_status.uReserved1[0], g_status.uReserved1[1],
                     g_status.uReserved2, g_status.uUnreadCount, g_status.uHundred}),
              (Words{28, 0, 0xAAAAAAAA, 0xAAAAAAAA, 0, 3, 100}));
    EXPECT_EQ(sim.Journal(), (Lines{"SetRoutes(1)", "SetBroadcastActivation(1, 1)", "SetSMSProtocol(1)",
                                    "GetSMSList(0, 1, 1000)", "GetSMSList(1, 1, 1000)"}));
    EXPECT_EQ(sim.Command("get sms.routes"), "00FF0101");

    for (const char* entry : {"SetRoutes", "SetBroadcastActivation", "SetSMSProtocol"})
        sim.Command(std::string("fail ") + entry + " 16");
    sim.Command("hostile GetSMSList count 4294967295");
    EXPECT_EQ(OrvGetSMSMessageStatus(&g_status), ORV_RCODE_OK);
    EXPECT_EQ(g_status.uUnreadCount, 2000u);
    for (const char* text : {"SetSMSRoute failed, ret = 0x10", "SetSMSBroadcastActivation failed, ret = 0x10",
                             "Gobi SMS Set Protocol failed!"})
        EXPECT_EQ(log.Count(text), 1) << log.Dump();
}

TEST_F(GsmSms, AListThatFailsIsReturned)
{
    for (const ULONG from : {1u, 2u}) {
        for (const auto& call : {+[] { return OrvGetSMSMessageStatus(&g_status); }, +[] { return Retrieve(); }}) {
            sim.Command("fail GetSMSList 5 from " + std::to_string(from));
            sim.ClearJournal();
            g_status = {};
            EXPECT_EQ(call(), ORV_RCODE_VENDOR_5);
            EXPECT_EQ(g_status.sizeStruct, 0u);
            const Lines journal = sim.Journal();
            EXPECT_EQ(std::count_if(journal.begin(), journal.end(),
                                    [](const std::string& line) { return line.find("GetSMSList") == 0; }),
                      from);
        }
    }
}

TEST_F(GsmSms, TwoMessagesComeOneACallTheCardsFirst)
{
    sim.Command("sms add 1 1 6 " + kHello);
    sim.Command("sms add 0 1 6 " + kHello);
    EXPECT_EQ(Retrieve(), ORV_RCODE_OK);
    EXPECT_EQ(Words({g_record.uMsgPresent, g_record.uMsgIndex, g_record.bMoreMessages, g_record.uSenderAddrLen,
                     g_record.uUserDataLen}),
              (Words{1, 0, 1, 11, 5}));
    EXPECT_EQ(sim.Journal(), (Lines{"SetSMSProtocol(1)", "GetSMSList(0, 1, 1000)", "GetSMSList(1, 1, 999)",
                                    "GetSMS(0, 0, 500)", "DeleteSMS(0, 0, null)"}));
    EXPECT_EQ(OrvRetrieveCBSMSMessageGobi(&g_record), ORV_RCODE_OK);
    EXPECT_EQ(Words({g_record.uMsgPresent, g_record.bMoreMessages}), (Words{1, 0}));
    EXPECT_EQ(sim.Journal().back(), "DeleteSMS(1, 0, null)");
    EXPECT_EQ(OrvRetrieveSMSMessageGobi(&g_record), ORV_RCODE_OK);
    EXPECT_EQ(g_record.uMsgPresent, 0u) << "none left";
    for (const char* text : {"Total UNREAD msgs = 2, Sim Msgs = 1",
                             "Gobi GetSMS Loop index i = 0, Msg Index = 0 Msg TAG = 1, Storage type = 0",
                             "uMsgTag = 1, uMsgFormat = 6, uMsgIndex = 0, uMsgLen = 32"})
        EXPECT_GE(log.Count(text), 1) << log.Dump();
}

TEST_F(GsmSms, WhatCannotBeReadStaysAndTheNextOneIsTried)
{
    const struct {
        const char* name;
        std::string card, module;
        ORV_RCODE result;
        Words record; // present, more, SMSC's type, sender's length
        const char* left;
    } rows[] = {
        {"first", kSubmission, kHello, ORV_RCODE_OK, {1, 0, 1, 11}, "0:0"},
        {"last", "", kSubmission, ORV_RCODE_FAILED, {0, 0, 1, 0}, "1:0"},
        {"nothing of it in the next one", kSubmission, kCutShort, ORV_RCODE_OK, {1, 0, 0, 0}, "0:0"},
        {"not after a good one", kHello, kSubmission, ORV_RCODE_OK, {1, 1, 1, 11}, "1:0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SelectModule(sim, "umts:5120");
        log.Clear();
        if (!row.card.empty()) sim.Command("sms add 0 1 6 " + row.card);
        sim.Command("sms add 1 1 6 " + row.module);
        EXPECT_EQ(Retrieve(), row.result);
        EXPECT_EQ(Words({g_record.uMsgPresent, g_record.bMoreMessages, g_record.uSmscTypeOfNumber,
                         g_record.uSenderTypeOfNumber == 1 ? g_record.uSenderAddrLen : 0}),
                  row.record);
        EXPECT_EQ(Stored(), row.left);
        EXPECT_EQ(log.Count("DecodeCompletePDU failed with error = 5"), row.card == kHello ? 0 : 1) << log.Dump();
        OrvApiShutdown();
    }
}

TEST_F(GsmSms, FaultsOfTheVendorAreBounded)
{
    const struct {
        const char* fault;
        ORV_RCODE result;
        const char* log;
        const char* left;
    } rows[] = {
        {"hostile GetSMSList scribble", ORV_RCODE_FAILED, "Gobi Api GetSMS failed with error = 9", "0:0 1:0"},
        {"hostile GetSMS scribble", ORV_RCODE_OK, " Msg Tag = -1 is incorrect", "0:0 1:0"},
        {"hostile GetSMS count 4294967295", ORV_RCODE_OK, "uMsgTag = 1, uMsgFormat = 6, uMsgIndex = 0, uMsgLen = 500",
         "1:0"},
        {"fail GetSMS 5", ORV_RCODE_VENDOR_5, "Gobi Api GetSMS failed with error = 5", "0:0 1:0"},
        {"fail DeleteSMS 5", ORV_RCODE_OK, "Gobi Api DeleteSMS failed with error = 5", "0:0 1:0"},
        {"on GetSMS sms tag 0 0 0", ORV_RCODE_OK, " Msg Tag = 6 is incorrect", "0:0"}, // the format it is
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fault);
        SelectModule(sim, "umts:5120");
        log.Clear();
        for (const char* store : {"0", "1"})
            sim.Command(std::string("sms add ") + store + " 1 6 " + kHello);
        sim.Command(row.fault);
        EXPECT_EQ(Retrieve(), row.result);
        EXPECT_GE(log.Count(row.log), 1) << log.Dump();
        EXPECT_EQ(Stored(), row.left);
        OrvApiShutdown();
    }
}

// --- sent ------------------------------------------------------------------------------------------------------------

TEST_F(GsmSms, StoringTwiceKeepsTheSecondAndARefusedOneNone)
{
    EXPECT_EQ(Store("one"), ORV_RCODE_OK);
    EXPECT_EQ(Store("hello"), ORV_RCODE_OK);
    EXPECT_EQ(log.Count("One Msg already stored in the modem, overwriting it"), 1);
    EXPECT_EQ(OrvSendSMS(), ORV_RCODE_OK);
    EXPECT_EQ(sim.Command("get sms.sent"), "0001000B915155214365F7000005E8329BFD06");
    EXPECT_EQ(sim.Journal(), (Lines{"GetSMSCAddress(50, 50)", "SendSMS(6, 19, 0)"}));
    EXPECT_EQ(OrvSendSMS(), ORV_RCODE_FAILED) << "it is sent";
    EXPECT_EQ(Store("one"), ORV_RCODE_OK);
    g_out.uUserDataLen = ORV_GSM_SMS_MAX_USER_DATA + 1;
    EXPECT_EQ(OrvStoreSMSMessageGobi(&g_out), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Count("EncodeMOPDU function failed with rc = 2"), 1) << log.Dump();
    EXPECT_EQ(OrvSendSMS(), ORV_RCODE_FAILED) << "none is held";
    EXPECT_EQ(log.Count("No SMS Msg is stored in the modem"), 2);
}

TEST_F(GsmSms, LinkStaysUpForPartsOfAMessageAlone)
{
    const std::string text(200, 'x');
    const auto sent_with = [this] {
        EXPECT_EQ(OrvSendSMS(), ORV_RCODE_OK);
        return sim.Command("get sms.link-timer");
    };
    EXPECT_EQ(Store(text.c_str(), 0), ORV_RCODE_OK);
    EXPECT_EQ(sent_with(), "3");
    EXPECT_EQ(log.Count("For Multipart SMS, set link timer to be 3 seconds"), 1);
    EXPECT_EQ(Store("one"), ORV_RCODE_OK);
    EXPECT_EQ(sent_with(), "0");
    EXPECT_EQ(Store(text.c_str(), 1), ORV_RCODE_OK);
    EXPECT_EQ(Store("one"), ORV_RCODE_OK) << "instead";
    EXPECT_EQ(sent_with(), "0");
}

TEST_F(GsmSms, AMessageThatFailedStaysHeldForARetry)
{
    Store("one");
    for (const char* line : {"set sms.send-status 5", "set sms.failure-cause 38", "fail GetSMSCAddress 7 times 1"})
        sim.Command(line);
    EXPECT_EQ(OrvSendSMS(), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Count("Gobi GetSMSCAddress failed with error code = 7 "), 1) << "only logged";
    EXPECT_EQ(log.Count("Gobi SendSMS failed with error code = 5 and Failure code = 38"), 1) << log.Dump();
    sim.Command("set sms.send-status 0");
    EXPECT_EQ(OrvSendSMS(), ORV_RCODE_OK);
}

TEST_F(GsmSms, OutcomeOfASendingHasThePayloadOfThisTechnology)
{
    OrvRegisterCallback(client.Callback(), 0);
    ASSERT_EQ(OrvNotify(ORV_NOTIFY_SMSSendStatus, 0), ORV_RCODE_OK);
    for (const ULONG status : {0u, 1u}) {
        Store("one");
        sim.Command(status ? "set sms.send-status 5" : "set sms.send-status 0");
        client.Clear();
        EXPECT_EQ(OrvSendSMS(), status ? ORV_RCODE_VENDOR_5 : ORV_RCODE_OK);
        ASSERT_TRUE(client.Wait(1));
        const OrvNotifyRecord record = client.Records()[0];
        EXPECT_EQ(Words({record.uNotify, record.uPayloadSize}), (Words{501, 44}));
        BYTE expected[44] = {};
        expected[4] = static_cast<BYTE>(status);
        EXPECT_EQ(memcmp(record.payload.aOctets, expected, sizeof expected), 0) << status;
    }
    EXPECT_EQ(log.Count("Previous SmsSendNotifyThread Handle Open.....closing now..."), 1);
}

TEST_F(GsmSms, ALongTextComesBackWholeWhateverTheNetworkDoes)
{
    for (const char* line : {"set sms.loopback 2", "on SendSMS set sms.loopback-ms 50"})
        sim.Command(line); // the first part comes last, and each twice
    sim.Command("set sms.loopback-ms 100");
    const std::string text = std::string(300, 'x') + "end";
    ORV_SMS_JOINER joiner;
    std::vector<BYTE> memory(size_t{ORV_SMS_MAX_PARTS} * ORV_SMS_JOINER_PART);
    ASSERT_EQ(OrvSmsJoinStart(&joiner, memory.data(), static_cast<ULONG>(memory.size())), ORV_RCODE_OK);
    for (const ULONG part : {1u, 0u}) {
        EXPECT_EQ(Store(text.c_str(), part), ORV_RCODE_OK);
        EXPECT_EQ(OrvSendSMS(), ORV_RCODE_OK);
    }
    EXPECT_EQ(Stored(), "");
    sim.Command("advance 100");
    Words outcomes, parts;
    for (ULONG outcome = 0; Retrieve() == ORV_RCODE_OK && g_record.uMsgPresent;) {
        EXPECT_EQ(OrvSmsJoinAdd(&joiner, &g_record, &outcome), ORV_RCODE_OK);
        outcomes.push_back(outcome);
        parts.push_back(g_record.abUserDataHeader[4]);
    }
    EXPECT_EQ(parts, (Words{2, 2, 1, 1}));
    EXPECT_EQ(outcomes, (Words{0, 2, 1, 2}));
    char joined[400];
    ULONG length = 0;
    EXPECT_EQ(OrvSmsJoinText(&joiner, joined, sizeof joined, &length), ORV_RCODE_OK);
    EXPECT_EQ(joined, text);
}

// --- service centre and phone book -----------------------------------------------------------------------------------

TEST_F(GsmSms, ServiceCentreIsCutToTheCallersBuffer)
{
    const struct {
        const char* name;
        bool fails;
        ULONG size;
        std::string address; // that many octets, and what follows them unchanged
        BYTE international;
    } rows[] = {
        {"whole", false, 13, std::string("+12025550100\0", 13), 1},
        {"no room for the terminator", false, 12, std::string("+1202555010\0", 12), 1},
        {"low octet counts", false, 256 + 3, std::string("+12\0", 4), 1},
        {"substitute", true, 50, std::string("+7\0", 3), 9},
        {"substitute, two octets", true, 2, "+7", 9},
        {"substitute, one octet", true, 1, "+", 9},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        sim.Command(row.fails ? "fail GetSMSCAddress 5" : "clear GetSMSCAddress");
        std::fill(std::begin(g_address), std::end(g_address), 'x');
        g_international = 9;
        sim.ClearJournal();
        EXPECT_EQ(OrvGetGsmSMSCAddr(row.size, g_address, &g_international), ORV_RCODE_OK);
        EXPECT_EQ(std::string(g_address, row.address.size() + 1), row.address + "x");
        EXPECT_EQ(g_international, row.international);
        EXPECT_EQ(sim.Journal(), Lines{"GetSMSCAddress(" + std::to_string(row.size & 255) + ", 40)"});
    }
    EXPECT_EQ(log.Count("OrvGetGsmSMSCAddrfailed with error code = 5 "), 3) << log.Dump();
    EXPECT_EQ(log.Count("OrvGetGsmSMSCAddr faking OK"), 3);
}

TEST_F(GsmSms, ServiceCentreIsInternationalForTheFlag1Only)
{
    for (const BYTE flag : {BYTE{1}, BYTE{0}, BYTE{2}, BYTE{255}}) {
        sim.ClearJournal();
        EXPECT_EQ(OrvSetGsmSMSCAddr("4917", flag), ORV_RCODE_OK);
        EXPECT_EQ(sim.Journal(),
                  Lines{std::string("SetSMSCAddress(\"4917\", \"") + (flag == 1 ? "145" : "129") + "\")"});
        EXPECT_EQ(OrvGetGsmSMSCAddr(50, g_address, &g_international), ORV_RCODE_OK);
        EXPECT_EQ(g_international, flag == 1 ? 1 : 0);
    }
    sim.Command("fail SetSMSCAddress 5");
    EXPECT_EQ(OrvSetGsmSMSCAddr("4917", 1), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(log.Count("OrvSetGsmSMSCAddr failed with error code = 5 "), 1);
}

TEST_F(GsmSms, PhoneBookHasTheOwnNumberAlone)
{
    const struct {
        const char* fault;
        ULONG type;
        ORV_RCODE result;
        size_t digits;
        const char* log;
    } rows[] = {
        {"clear all", 0, ORV_RCODE_OK, 11, nullptr},
        {"clear all", 1, ORV_RCODE_UNSUPPORTED, 0, "PhoneBookType = 1 is not supported"},
        {"fail GetVoiceNumber 1016", 0, ORV_RCODE_OK, 0, "GetVoiceNumber returns acceptable error, uStatus = 1016"},
        {"fail GetVoiceNumber 5", 0, ORV_RCODE_VENDOR_5, 0, nullptr},
        {"hostile GetVoiceNumber scribble", 0, ORV_RCODE_OK, 32, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fault);
        sim.Command("clear all");
        sim.Command(row.fault);
        memset(&g_entry, 0xAA, sizeof g_entry);
        EXPECT_EQ(OrvGetPhonebookEntry(row.type, 7, &g_entry), row.result);
        if (row.log) {
            EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        }
        if (row.result != ORV_RCODE_OK) continue;
        EXPECT_EQ(Words({g_entry.sizeStruct, g_entry.eType, g_entry.uIndex, g_entry.szName[0]}), (Words{180, 0, 7, 0}));
        EXPECT_EQ(std::u16string(g_entry.szNumber).size(), row.digits);
    }
}

} // namespace
