#include <gtest/gtest.h>

#include "sms/gsm_deliver.h"
#include "sms/gsm_submit.h"
#include "tests/support/log_capture.h"
#include "tests/support/sms_text.h"

namespace {

// Each row of the table: what a message gives, and texts that are logged once.
TEST(SmsGsmDeliver, ReadsEveryFieldByItsRule)
{
    for (VectorRow& row : ReadVectors("gsm_decode.tsv")) {
        SCOPED_TRACE(row["name"]);
        LogCapture log;
        const Octets pdu = FromHex(row["message"]);
        ORV_GSM_SMS_IN record = Blank<ORV_GSM_SMS_IN>();
        EXPECT_EQ(DecodeCompletePDU(pdu.data(), static_cast<ULONG>(pdu.size()), &record), Number(row["code"]));
        EXPECT_EQ(ToText(record), row["record"]);
        EXPECT_EQ(record.uReserved1[0] & record.uReserved2 & record.uReserved3 & record.uMsgPresent, 0xEEEEEEEE);
        ExpectLogged(log, row["log"]);
    }
    ORV_GSM_SMS_IN record = {};
    const BYTE pdu[] = {0};
    EXPECT_EQ(DecodeCompletePDU(nullptr, 1, &record), 4);
    EXPECT_EQ(DecodeCompletePDU(pdu, 0, &record), 4);
    EXPECT_EQ(DecodeCompletePDU(pdu, 1, nullptr), 4);
}

ORV_GSM_SMS_OUT Outgoing(ULONG alphabet, ULONG length, const std::string& data, const std::string& header = "",
                         ULONG message_class = ORV_GSM_CLASS_NONE)
{
    ORV_GSM_SMS_OUT record = {};
    const Octets octets = FromHex(data), elements = FromHex(header);
    record.uUserDataLen = length;
    record.uDestTypeOfNumber = 1;
    record.uDestNumberingPlan = 1;
    record.uDestAddrLen = 5;
    memcpy(record.abDestAddr, "\x21\x43\xF5", 3);
    record.eEncoding = alphabet;
    record.eMessageClass = message_class;
    std::copy(octets.begin(), octets.end(), record.abUserData);
    record.uUserDataHeaderLen = static_cast<ULONG>(elements.size());
    std::copy(elements.begin(), elements.end(), record.abUserDataHeader);
    return record;
}

TEST(SmsGsmSubmit, WritesEveryOctetByItsRule)
{
    ORV_GSM_SMS_OUT centre = Outgoing(0, 5, "E8329BFD06", "0003AA0201", 1);
    centre.uSmscTypeOfNumber = centre.uSmscNumberingPlan = 1;
    centre.uSmscAddrLen = 5;
    memcpy(centre.abSmscAddr, "\x94\x71\xF1", 3);
    ORV_GSM_SMS_OUT plain = Outgoing(0, 5, "E8329BFD06");
    plain.uDestAddrLen = 11;
    memcpy(plain.abDestAddr, "\x51\x55\x21\x43\x65\xF7", 6);
    ORV_GSM_SMS_OUT other_plan = Outgoing(2, 2, "00E920AC", "050415811582", 0);
    other_plan.uDestTypeOfNumber = 0;
    other_plan.uDestNumberingPlan = 7;
    ORV_GSM_SMS_OUT compressed = Outgoing(1, 1, "55");
    compressed.bCompressed = 1;
    compressed.uDestNumberingPlan = 6;
    const std::string head = "00 41 00 05 91 2143F5 00 00 ";
    const struct {
        const char* name;
        ORV_GSM_SMS_OUT record;
        std::string pdu;
    } rows[] = {
        {"7-bit", plain, "00 01 00 0B 91 5155214365F7 00 00 05 E8329BFD06"},
        {"service centre, header, class", centre, "04 91 9471F1 41 00 05 91 2143F5 00 11 0C 05 0003AA0201 D06536FB0D"},
        {"an octet more for the fill bits", Outgoing(0, 8, "41E19058341E91", "0003AA0201"),
         head + "0F 05 0003AA0201 82C221B1683C2201"},
        {"five fill bits", Outgoing(0, 1, "7F", "00"), head + "04 01 00 E00F"},
        {"a header alone", Outgoing(0, 0, "", "0003AA0201"), head + "07 05 0003AA0201 00"},
        {"header on a septet boundary", Outgoing(0, 1, "7F", "010203040506"), head + "09 06 010203040506 7F"},
        {"8-bit with header", Outgoing(1, 2, "AABB", "010203040506"),
         "00 41 00 05 91 2143F5 00 04 09 06 010203040506 AABB"},
        {"UCS2, class 0, unknown plan", other_plan, "00 41 00 05 80 2143F5 00 18 0B 06 050415811582 00E920AC"},
        {"compressed, national plan", compressed, "00 01 00 05 98 2143F5 00 24 01 55"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Octets expected = FromHex(row.pdu);
        Octets pdu(expected.size());
        WORD length = static_cast<WORD>(pdu.size());
        EXPECT_EQ(EncodeMOPDU(&row.record, pdu.data(), &length), ORV_RCODE_OK);
        EXPECT_EQ(length, pdu.size());
        EXPECT_EQ(ToHex(pdu), ToHex(expected));
        length = static_cast<WORD>(pdu.size() - 1);
        EXPECT_EQ(EncodeMOPDU(&row.record, pdu.data(), &length), 2) << "one octet of room less";
        EXPECT_EQ(length, 0);
    }
}

TEST(SmsGsmSubmit, RefusesWhatARecordOrAMessageCannotHold)
{
    using Change = void (*)(ORV_GSM_SMS_OUT&);
    const struct {
        const char* name;
        Change change;
        ORV_RCODE code;
        const char* log;
    } rows[] = {
        {"1024 octets", [](ORV_GSM_SMS_OUT& r) { r.uUserDataLen = 1024; }, ORV_RCODE_OK,
         "Overall byte array size =1035"},
        {"1025 octets", [](ORV_GSM_SMS_OUT& r) { r.uUserDataLen = 1025; }, ORV_RCODE_VENDOR_5,
         "Very large message of len = 1025"},
        {"514 wide characters", [](ORV_GSM_SMS_OUT& r) { r.uUserDataLen = 514, r.eEncoding = 2; }, ORV_RCODE_OK, ""},
        {"515 wide characters", [](ORV_GSM_SMS_OUT& r) { r.uUserDataLen = 515, r.eEncoding = 2; }, ORV_RCODE_VENDOR_5,
         "Very large message of len = 515"},
        {"no destination", [](ORV_GSM_SMS_OUT& r) { r.uDestAddrLen = 0; }, ORV_RCODE_BAD_PARAMETER,
         "Destionation addr length is 0"},
        {"57 digits", [](ORV_GSM_SMS_OUT& r) { r.uDestAddrLen = 57; }, ORV_RCODE_BAD_PARAMETER, ""},
        {"service centre of 41 digits", [](ORV_GSM_SMS_OUT& r) { r.uSmscAddrLen = 41; }, ORV_RCODE_BAD_PARAMETER, ""},
        {"4294967295 digits", [](ORV_GSM_SMS_OUT& r) { r.uDestAddrLen = 0xFFFFFFFF; }, ORV_RCODE_BAD_PARAMETER, ""},
        {"alphabet 3", [](ORV_GSM_SMS_OUT& r) { r.eEncoding = 3; }, ORV_RCODE_BAD_PARAMETER, ""},
        {"class 5", [](ORV_GSM_SMS_OUT& r) { r.eMessageClass = 5; }, ORV_RCODE_BAD_PARAMETER, ""},
        {"header of 255", [](ORV_GSM_SMS_OUT& r) { r.uUserDataHeaderLen = 255; }, ORV_RCODE_OK, ""},
        {"header of 256", [](ORV_GSM_SMS_OUT& r) { r.uUserDataHeaderLen = 256; }, ORV_RCODE_VENDOR_5, ""},
    };
    BYTE pdu[1400];
    WORD length = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ORV_GSM_SMS_OUT record = Outgoing(1, 1, "00");
        row.change(record);
        LogCapture log;
        length = sizeof pdu;
        EXPECT_EQ(EncodeMOPDU(&record, pdu, &length), row.code);
        EXPECT_EQ(length != 0, row.code == ORV_RCODE_OK);
        if (*row.log) {
            EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        }
    }
    ORV_GSM_SMS_OUT record = Outgoing(1, 1, "00");
    EXPECT_EQ(EncodeMOPDU(nullptr, pdu, &length), 4);
    EXPECT_EQ(EncodeMOPDU(&record, nullptr, &length), 4);
    EXPECT_EQ(EncodeMOPDU(&record, pdu, nullptr), 4);
}

TEST(SmsGsmSubmit, LogsTheStepsByTheirTexts)
{
    LogCapture log;
    const ORV_GSM_SMS_OUT record = Outgoing(1, 2, "AABB", "0102", 3);
    BYTE pdu[100];
    WORD length = sizeof pdu;
    EncodeMOPDU(&record, pdu, &length);
    const std::vector<std::string> texts = {"Outgoing SMS: Message class bit:16   Message class: 3",
                                            "DEBUG: Length with data coding scheme = 10 ",
                                            "Length with user data length field = 11",
                                            "Length with user data header length field = 12",
                                            "Length with user HEADER field = 14",
                                            "Overall byte array size =16"};
    EXPECT_EQ(log.Texts(), texts);
    EXPECT_EQ(log.Records()[0].module, "sms");
}

} // namespace
