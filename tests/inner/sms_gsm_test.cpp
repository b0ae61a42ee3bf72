#include <gtest/gtest.h>

#include "sms/gsm_common.h"
#include "sms/gsm_deliver.h"
#include "sms/gsm_submit.h"
#include "tests/support/log_capture.h"
#include "tests/support/sms_text.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kHead[] = "07 91 947101670000 04 0B 91 5155214365F7 00 ";
constexpr char kStamp[] = " 21304121358500 ";
const std::string kFrom = "smsc 1/1 491710760000 from 11 1/1 15551234567";

TEST(SmsGsmDeliver, ReadsEveryFieldByItsRule)
{
    const struct {
        const char* name;
        std::string pdu;
        ORV_RCODE code;
        std::string record;
    } rows[] = {
        {"7-bit", kHead + std::string("00") + kStamp + "05 E8329BFD06", ORV_RCODE_OK,
         kFrom + " pid 0/0 dcs 0/4/0 at 2342380 udl 5 h 0  ud E8329BFD06"},
        {"header, no service centre", "00 44 05 81 2143F5 00 F2" + std::string(kStamp) + "0C 05 0003AA0201 D065 36FB0D",
         ORV_RCODE_OK, "smsc -/-  from 5 0/1 12345 pid 0/0 dcs 0/2/0 at 2342380 udl 12 h 5 0003AA0201 ud E8329BFD06"},
        {"message waiting, UCS2 by the standard", "00 04 05 81 2143F5 00 E0" + std::string(kStamp) + "04 00410042 0043",
         ORV_RCODE_OK, "smsc -/-  from 5 0/1 12345 pid 0/0 dcs 0/0/0 at 2342380 udl 4 h 0  ud 00410042"},
        {"protocol identifier halves", "00 04 01 FF F1 7F F5" + std::string(kStamp) + "01 AA", ORV_RCODE_OK,
         "smsc -/-  from 1 7/0 1 pid 112/15 dcs 1/1/0 at 2342380 udl 1 h 0  ud AA"},
        {"group 0xC0", "00 04 00 A3 00 C8" + std::string(kStamp) + "00", ORV_RCODE_OK,
         "smsc -/-  from 0 2/2  pid 0/0 dcs 0/0/0 at 2342380 udl 0 h 0  ud "},
        {"compressed UCS2 without a class", "00 04 00 00 00 2B" + std::string(kStamp) + "02 00E9", ORV_RCODE_OK,
         "smsc -/-  from 0 0/0  pid 0/0 dcs 2/4/1 at 2342380 udl 2 h 0  ud 00E9"},
        {"reserved alphabet", "00 04 00 94 00 1F" + std::string(kStamp) + "03 010203", ORV_RCODE_OK,
         "smsc -/-  from 0 1/3  pid 0/0 dcs 3/3/0 at 2342380 udl 3 h 0  ud 010203"},
        {"filler in a low half and in the middle", "03 A8 1F F2 04 06 99 F1324F 00 04" + std::string(kStamp) + "00",
         ORV_RCODE_OK, "smsc 2/6 F12 from 6 1/4 123F4 pid 0/0 dcs 1/4/0 at 2342380 udl 0 h 0  ud "},
        {"header of length 0", "00 44 00 8A 00 00" + std::string(kStamp) + "04 00 8000 00", ORV_RCODE_OK,
         "smsc -/-  from 0 0/5  pid 0/0 dcs 0/4/0 at 2342380 udl 4 h 0  ud 020000"},
        {"status report", "00 06 5A", ORV_RCODE_FAILED, "smsc -/-  from - -/-  pid -/- dcs -/-/- at  udl - h -  ud "},
        // What is announced and not there, and what there is no room for.
        {"service centre of 22 digits", "0C 91 00", ORV_RCODE_VENDOR_5,
         "smsc 1/1  from - -/-  pid -/- dcs -/-/- at  udl - h -  ud "},
        {"service centre cut", "0B 91 00", ORV_RCODE_OK, "smsc 1/1  from - -/-  pid -/- dcs -/-/- at  udl - h -  ud "},
        {"sender of 255 digits", "00 04 FF 91 00", ORV_RCODE_VENDOR_5,
         "smsc -/-  from 255 1/1  pid -/- dcs -/-/- at  udl - h -  ud "},
        {"sender cut", "00 04 05 91 21", ORV_RCODE_OK, "smsc -/-  from 5 1/1  pid -/- dcs -/-/- at  udl - h -  ud "},
        {"time stamp cut", "00 04 00 91 00 00 213041213585", ORV_RCODE_OK,
         "smsc -/-  from 0 1/1  pid 0/0 dcs 0/4/0 at  udl - h -  ud "},
        {"user data cut", "00 04 00 91 00 04" + std::string(kStamp) + "05 AABB", ORV_RCODE_OK,
         "smsc -/-  from 0 1/1  pid 0/0 dcs 1/4/0 at 2342380 udl 5 h 0  ud AABB000000"},
        {"header cut", "00 44 00 91 00 00" + std::string(kStamp) + "0C 05 00 03", ORV_RCODE_OK,
         "smsc -/-  from 0 1/1  pid 0/0 dcs 0/4/0 at 2342380 udl 12 h 5 0003000000 ud 0000000000"},
        {"header longer than user data", "00 44 00 91 00 04" + std::string(kStamp) + "02 05 0003AA0201 77",
         ORV_RCODE_OK, "smsc -/-  from 0 1/1  pid 0/0 dcs 1/4/0 at 2342380 udl 2 h 5 0003AA0201 ud "},
        {"no header", "00 44 00 91 00 04" + std::string(kStamp) + "02", ORV_RCODE_OK,
         "smsc -/-  from 0 1/1  pid 0/0 dcs 1/4/0 at 2342380 udl 2 h -  ud "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Octets pdu = FromHex(row.pdu);
        ORV_GSM_SMS_IN record = Blank<ORV_GSM_SMS_IN>();
        EXPECT_EQ(DecodeCompletePDU(pdu.data(), static_cast<ULONG>(pdu.size()), &record), row.code);
        EXPECT_EQ(ToText(record), row.record);
        EXPECT_EQ(record.uReserved1[0] & record.uReserved2 & record.uReserved3 & record.uMsgPresent, 0xEEEEEEEE);
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

TEST(SmsGsm, LogsTheStepsByTheirTexts)
{
    const auto decoded = [](const std::string& hex) {
        LogCapture log;
        const Octets pdu = FromHex(hex);
        ORV_GSM_SMS_IN record = {};
        DecodeCompletePDU(pdu.data(), static_cast<ULONG>(pdu.size()), &record);
        return log.Texts();
    };
    const std::string stamp = kStamp;
    EXPECT_EQ(decoded("00 44 00 91 00 04" + stamp + "05 01 07 AABBCC"),
              (Texts{"SMSC information not present", "Incoming SMS: peDataCodingClass = 4", "User data chars = 5",
                     "DEBUG: Number of bytes needed to encode these chars, Bytes = 5, data coding scheme = 1",
                     "DEBUG: bMultipart = 1", "DEBUG: User data header length = 1", "DEBUG: IE: 7",
                     "DEBUG: FINAL Number of bytes needed to encode these chars, Bytes = 3, data coding scheme = 1"}));
    EXPECT_EQ(decoded("02 91 21 04 00 91 00 12" + stamp + "05"),
              (Texts{"Incoming SMS: peDataCodingClass = 2", "User data chars = 5", "DEBUG: bMultipart = 0",
                     "DEBUG: FINAL Number of bytes needed to encode these chars, Bytes = 5, data coding scheme = 0"}));
    EXPECT_EQ(decoded("02 91 21 06"), (Texts{"Message is not of type deliver"}));
    EXPECT_EQ(decoded("0C 91 21"), (Texts{"DecodeAddr failed"}));
    EXPECT_EQ(decoded("02 91 21 04 16 91 21"), (Texts{"DecodeAddr for sender number failed"}));

    LogCapture log;
    const ORV_GSM_SMS_OUT record = Outgoing(1, 2, "AABB", "0102", 3);
    BYTE pdu[100];
    WORD length = sizeof pdu;
    EncodeMOPDU(&record, pdu, &length);
    EXPECT_EQ(
        log.Texts(),
        (Texts{"Outgoing SMS: Message class bit:16   Message class: 3", "DEBUG: Length with data coding scheme = 10 ",
               "Length with user data length field = 11", "Length with user data header length field = 12",
               "Length with user HEADER field = 14", "Overall byte array size =16"}));
    EXPECT_EQ(log.Records()[0].module, "sms");
}

// Against a bit at a time, for every length that takes another path.
TEST(SmsGsm, ShiftsAsIfBitByBit)
{
    for (ULONG count = 0; count < 40; ++count) {
        Octets octets(count);
        for (ULONG i = 0; i < count; ++i)
            octets[i] = static_cast<BYTE>(i * 73 + 41);
        const auto bit = [&](int at) {
            return at >= 0 && at < static_cast<int>(8 * count) && octets[static_cast<size_t>(at / 8)] >> at % 8 & 1;
        };
        for (int bits = 1; bits < 8; ++bits) {
            Octets right(count + 1, kBlank), left(count + 1, kBlank);
            ShiftRightBits(right.data(), octets.data(), count, static_cast<ULONG>(bits));
            ShiftLeftBits(left.data(), count, octets.data(), count, static_cast<ULONG>(bits));
            ASSERT_EQ(right[count] & left[count], kBlank) << count << ": an octet too many";
            ShiftLeftBits(left.data(), count + 1, octets.data(), count, static_cast<ULONG>(bits));
            for (int at = 0; at < static_cast<int>(8 * count) + bits; ++at) {
                const size_t octet = static_cast<size_t>(at / 8);
                ASSERT_EQ((left[octet] >> at % 8 & 1) != 0, bit(at - bits)) << count << " << " << bits;
                if (octet < count) {
                    ASSERT_EQ((right[octet] >> at % 8 & 1) != 0, bit(at + bits)) << count << " >> " << bits;
                }
            }
        }
    }
}

} // namespace
