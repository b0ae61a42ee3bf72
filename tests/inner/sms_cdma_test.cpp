#include <gtest/gtest.h>

#include "platform/hooks.h"
#include "sms/cdma_decode.h"
#include "sms/cdma_encode.h"
#include "tests/support/log_capture.h"
#include "tests/support/sms_text.h"
#include "utility/heap_buffer.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kFrom12[] = "00 02 03 00 84 80 ";
constexpr char kIdentifier[] = "00 03 10 00 00 ";

// A message from "12" with these subparameters.
std::string WithBearer(const std::string& subparameters)
{
    const size_t length = FromHex(subparameters).size();
    const BYTE octet = static_cast<BYTE>(length);
    return kFrom12 + std::string("08") + ToHex(&octet, 1) + subparameters;
}

TEST(SmsCdmaDecode, ReadsEveryFieldByItsRule)
{
    const std::string from12 = "category 1 from 2 12";
    const struct {
        const char* name;
        std::string message;
        ORV_RCODE code;
        std::string record;
        Texts log; // some of it
    } rows[] = {
        {"everything",
         "00 00021002 0207 02955686AA9080 0601 44 0820 0003 1ABCD0 0106 102C8CBB366F 0306 091231235958 0801 80 0B01 12 "
         "0E03 01C888",
         ORV_RCODE_OK,
         "category 1 reply 17 from 10 5550100042 id 43981 at 9 1231235958 priority 2 data 2/5 48656C6C6F callback 3 "
         "911 "
         "waiting 12",
         {"Priority = 128, uOrvSMSPriority = 2"}},
        {"voice mail, type 15, Unicode, odd priority",
         "00 00021003 0203 008480 0810 0003 0F1230 0106 201007490560 0801 41",
         ORV_RCODE_OK,
         "category 2 from 2 12 id 61731 priority 0 data 4/4 E900AC20",
         {"ORIGADDR_HDR_LEN is not = 7", "Callback Number Not found", "Number of Message Not found",
          "Priority = 65, uOrvSMSPriority = 0"}},
        {"a submitted message",
         "00 00021002 0207 02955686AA9080 0805 0003 200010",
         ORV_RCODE_FAILED,
         "category 1 from 10 5550100042",
         {"MSG TYPE != DELIVER_MT", "DecodeBearerData failed"}},
        {"broadcast",
         "01 00021002",
         ORV_RCODE_UNSUPPORTED,
         "-",
         {"Msg TYPE is NOT POINT_TO_POINT_MSG", "SplitParamMTSms failed"}},
        {"digits above 10", "00 0204 012F2B40", ORV_RCODE_OK, "category 1 from 4 ;<0=", {"Bearer Data Not found"}},
        {"no address", "00 00021002", ORV_RCODE_UNKNOWN, "category 1", {"Originating Address not found"}},
        {"address of 8-bit characters",
         "00 0203 800000",
         ORV_RCODE_UNSUPPORTED,
         "category 1",
         {"Number mode or Digit mode is not zero, Such address encoding is not supported", "DecodeOriginAddr failed"}},
        {"data network address", "00 0203 400000", ORV_RCODE_UNSUPPORTED, "category 1", {"DecodeOriginAddr failed"}},
        {"the last of each repeated parameter",
         "00 0601FC 060104 0203 008480 0203 00C480",
         ORV_RCODE_OK,
         "category 1 reply 1 from 3 120",
         {"Bearer Data Not found"}},
        {"skipped parameters",
         "00 0102AABB 0300 0203 008480",
         ORV_RCODE_OK,
         from12,
         {"Unhandled Identifier = 1 of Len = 2 .... Skipping it",
          "Unhandled Identifier = 3 of Len = 0 .... Skipping it"}},
        {"unknown parameter", "00 0203 008480 0500", ORV_RCODE_FAILED, "-", {"Unknown IDENTIFIER in MT SMS data = 5"}},
        {"teleservice of 3", "00 0003100200", ORV_RCODE_FAILED, "-", {"TELESERVICE IDENTIFIER LEN is not = 2"}},
        {"reply option of 2", "00 06020000", ORV_RCODE_FAILED, "-", {"BEARER_REPLY_HDR_LEN is not = 1"}},
        {"address of 1 octet", "00 020100", ORV_RCODE_FAILED, "category 1", {"DecodeOriginAddr failed"}},
        {"more digits than there are",
         "00 0203 03C480",
         ORV_RCODE_OK,
         "category 1 from 3 120",
         {"Address of 15 digits is cut to 3"}},
        {"no message", "", ORV_RCODE_FAILED, "-", {"SplitParamMTSms failed"}},
        {"parameter without a length", "00 02", ORV_RCODE_FAILED, "-", {"SplitParamMTSms failed"}},
        {"parameter cut", "00 0204 008480", ORV_RCODE_FAILED, "-", {"SplitParamMTSms failed"}},
        // Bearer data.
        {"no user data", WithBearer(kIdentifier), ORV_RCODE_OK, from12 + " id 0", {"User Data Not found"}},
        {"skipped subparameters",
         WithBearer("0200 1401AA 0D0101"),
         ORV_RCODE_OK,
         from12 + " id 0",
         {"Unhandled Identifier = 2 of Len = 0 .... Skipping it",
          "Unhandled Identifier = 20 of Len = 1 .... Skipping it",
          "Language Indicator sub identifier found in bearer data...Ignoring it"}},
        {"unknown subparameter",
         WithBearer("1500"),
         ORV_RCODE_FAILED,
         from12,
         {"Unknown subidentifier in bearer data = 21"}},
        {"identifier of 2",
         WithBearer("00021000"),
         ORV_RCODE_FAILED,
         from12,
         {"MSG_SUB_IDENTIFIER_HDR_LEN is not = 3"}},
        {"identifier of type 2", WithBearer("0003200000"), ORV_RCODE_FAILED, from12, {"MSG TYPE != DELIVER_MT"}},
        {"identifier below 15", WithBearer("00030E0000"), ORV_RCODE_FAILED, from12, {"MSG TYPE != DELIVER_MT"}},
        {"time stamp of 5",
         WithBearer("0305 0912312359"),
         ORV_RCODE_FAILED,
         from12,
         {"MSG_TIMESTAMP_SUB_INDETIFIER_HDR_LEN is not = 6"}},
        {"priority of 2",
         WithBearer("0802 8000"),
         ORV_RCODE_FAILED,
         from12,
         {"PRIORIY_SUB_IDENTIFIER_HDR_LEN is not = 1"}},
        {"language of 0",
         WithBearer("0D00"),
         ORV_RCODE_FAILED,
         from12,
         {"LANGUAGE_INDICATOR_SUB_INDETIFIER_HDR_LEN is not = 1"}},
        {"year that is no BCD", WithBearer("0306 9A0000000000"), ORV_RCODE_OK, from12 + " id 0 at 9 0000000000", {}},
        {"year that begins with a letter",
         WithBearer("0306 C80000000000"),
         ORV_RCODE_OK,
         from12 + " id 0 at 0 0000000000",
         {}},
        {"month and priority 200 are none", WithBearer("0306 09C800000000 0801C8"), ORV_RCODE_OK, from12 + " id 0", {}},
        {"subparameter cut", WithBearer("0104 10"), ORV_RCODE_FAILED, from12, {"DecodeBearerData failed"}},
        {"subparameter without a length", WithBearer("0101"), ORV_RCODE_FAILED, from12, {"DecodeBearerData failed"}},
        {"octets", WithBearer("0104 00155E68"), ORV_RCODE_OK, from12 + " id 0 data 0/2 ABCD", {}},
        {"GSM alphabet", WithBearer("0104 480C8800"), ORV_RCODE_OK, from12 + " id 0 data 9/1 48", {}},
        {"user data cut",
         WithBearer("0104 102C8CBB"),
         ORV_RCODE_OK,
         from12 + " id 0 data 2/5 48656C0000",
         {"User data ends before its 5 characters"}},
        {"user data of 1 octet",
         WithBearer("010110"),
         ORV_RCODE_FAILED,
         from12 + " id 0 data -/0 none",
         {"DecodeUserData failed"}},
        {"encoding 3",
         WithBearer("01021808"),
         ORV_RCODE_UNSUPPORTED,
         from12 + " id 0 data -/0 none",
         {"User data encondig 3is not support !!", "DecodeUserData failed"}},
        {"call back, characters",
         WithBearer("0E05 8003393131"),
         ORV_RCODE_OK,
         from12 + " id 0 callback 3 911",
         {"Callback Number Len = 5", "DecodeCallbackAddr with DigitMode == 1!!!!"}},
        {"call back, characters cut",
         WithBearer("0E04 80033931"),
         ORV_RCODE_OK,
         from12 + " id 0 callback 2 91",
         {"Address of 3 digits is cut to 2"}},
        {"call back of 1 octet",
         WithBearer("0106 102C8CBB366F 0E0100"),
         ORV_RCODE_FAILED,
         from12 + " id 0 data 2/0 none",
         {"DecodeCallbackAddr failed for "}},
        {"count of messages, empty",
         WithBearer("0B00"),
         ORV_RCODE_OK,
         from12 + " id 0",
         {"Callback Number Len = 0", "Number of Message Not found"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LogCapture log;
        platform_hooks::CountCall("HeapAlloc");
        platform_hooks::CountCall("HeapFree");
        const Octets message = FromHex(row.message);
        ORV_CDMA_SMS record = Blank<ORV_CDMA_SMS>();
        EXPECT_EQ(DecodeCompleteMTSms(message.data(), static_cast<ULONG>(message.size()), &record), row.code);
        EXPECT_EQ(ToText(record), row.record);
        for (const std::string& text : row.log)
            EXPECT_EQ(log.Count(text), 1) << text << "\n" << log.Dump();
        if (record.uParamMask != 0xEEEEEEEE && record.uParamMask & ORV_CDMA_SMS_HAS_USER_DATA) {
            HeapBuffer::Free(record.pUserData);
            EXPECT_LE(platform_hooks::CallCount("HeapAlloc"), 1u);
        }
        EXPECT_EQ(platform_hooks::CallCount("HeapAlloc"), platform_hooks::CallCount("HeapFree"));
        platform_hooks::Reset();
    }
    const BYTE message[] = {0};
    EXPECT_EQ(DecodeCompleteMTSms(nullptr, 1, nullptr), 4);
    ORV_CDMA_SMS record = {};
    EXPECT_EQ(DecodeCompleteMTSms(message, 1, &record), 6);
    EXPECT_EQ(record.uStructSize, 348u);
    EXPECT_EQ(record.uMsgType, 1u);
    EXPECT_EQ(record.uReserved2, 1u);
}

TEST(SmsCdmaDecode, CutsNumbersAtTheRecordsCapacity)
{
    for (const bool callback : {false, true}) {
        BYTE body[200];
        BitWriter out(body, sizeof body);
        out.Put(0, callback ? 1 : 2);
        out.Put(255, 8);
        for (int i = 0; i < 255; ++i)
            out.Put(7, 4);
        out.Pad();
        OctetReader octets(body, out.Length());
        ORV_CDMA_SMS record = Blank<ORV_CDMA_SMS>();
        record.uParamMask = 0;
        EXPECT_EQ(callback ? DecodeCallbackAddr(octets, &record) : DecodeOriginAddr(octets, &record), ORV_RCODE_OK);
        EXPECT_EQ(callback ? record.uCallbackLen : record.uAddrLen, 66);
        EXPECT_EQ(Narrow(callback ? record.szCallback : record.szAddress), std::string(66, '7'));
    }
}

TEST(SmsCdmaDecode, FailsWithoutMemory)
{
    LogCapture log;
    const Octets message = FromHex(WithBearer("0106 102C8CBB366F"));
    ORV_CDMA_SMS record = {};
    platform_hooks::FailCall("HeapAlloc", 1, 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(DecodeCompleteMTSms(message.data(), static_cast<ULONG>(message.size()), &record), 5);
    EXPECT_EQ(record.pUserData, nullptr);
    EXPECT_EQ(log.Count("Failed to allocate memeory"), 1) << log.Dump();

    BYTE* block = nullptr;
    ULONG length = 0;
    platform_hooks::FailCall("HeapAlloc", 1, 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(EncodeCompleteMoSms(&block, &length, "1", 1, nullptr, 0, 2, message.data(), 0, 2, 1, 0), 5);
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(log.Count("Failed to allocate memory"), 1) << log.Dump();
    platform_hooks::Reset();
}

TEST(SmsCdmaEncode, WritesEveryBitByItsRule)
{
    const std::string head = "00 00021002 ", n160(160, '7');
    const struct {
        const char* name;
        std::string destination, callback;
        ULONG encoding;
        std::string data;
        ULONG type;
        WORD id;
        ULONG priority;
        ORV_RCODE code;
        std::string message;
        Texts log; // some of it
    } rows[] = {
        {"7-bit",
         "5551234567",
         "",
         2,
         "Hi",
         2,
         0x1234,
         0,
         ORV_RCODE_OK,
         head + "0407 02955448D159C0 080E 0003 212340 0104 10148D20 080100",
         {"Len of Destination Header is 9", "Length of callback number is zero"}},
        {"Unicode, call back, signs",
         "+100",
         "911",
         4,
         std::string("\x00\xE9\x20\xAC", 4),
         2,
         1,
         3,
         ORV_RCODE_OK,
         head + "0404 012C6A80 0815 0003 200010 0106 201007490560 0801C0 0E03 01C888",
         {}},
        {"star and hash",
         "*#",
         "",
         2,
         "",
         0,
         0,
         1,
         ORV_RCODE_OK,
         head + "0403 00A8C0 080C 0003 000000 0102 1000 080140",
         {}},
        {"an encoding that is not written",
         "1",
         "",
         3,
         "AB",
         1,
         0xABCD,
         1,
         ORV_RCODE_OK,
         head + "0402 0044 080E 0003 1ABCD0 0104 18100000 080140",
         {}},
        {"odd Unicode",
         "1",
         "",
         4,
         std::string("\0A\0", 3),
         2,
         0,
         2,
         ORV_RCODE_OK,
         head + "0402 0044 080F 0003 200000 0105 2008020800 080180",
         {}},
        {"161 octets", "1", "", 2, n160 + "7", 2, 0, 0, ORV_RCODE_BAD_PARAMETER, "", {}},
        {"no destination", "", "", 2, "", 2, 0, 0, ORV_RCODE_BAD_PARAMETER, "", {}},
        {"256 digits", n160 + n160.substr(64), "", 2, "", 2, 0, 0, ORV_RCODE_BAD_PARAMETER, "", {}},
        {"call back of 256 digits", "1", n160 + n160.substr(64), 2, "", 2, 0, 0, ORV_RCODE_BAD_PARAMETER, "", {}},
        {"type 7", "1", "", 2, "", 7, 0, 0, ORV_RCODE_BAD_PARAMETER, "", {"EncodeMsgIdenfier failed"}},
        {"priority 4", "1", "", 2, "", 2, 0, 4, ORV_RCODE_BAD_PARAMETER, "", {"EncodePrioriyHdr failed"}},
        {"priority 7", "1", "", 2, "", 2, 0, 7, ORV_RCODE_BAD_PARAMETER, "", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LogCapture log;
        BYTE* block = nullptr;
        ULONG length = 0;
        EXPECT_EQ(EncodeCompleteMoSms(&block, &length, row.destination.data(),
                                      static_cast<ULONG>(row.destination.size()), row.callback.data(),
                                      static_cast<ULONG>(row.callback.size()), row.encoding,
                                      reinterpret_cast<const BYTE*>(row.data.data()),
                                      static_cast<ULONG>(row.data.size()), row.type, row.id, row.priority),
                  row.code);
        EXPECT_EQ(ToHex(block, length), ToHex(FromHex(row.message)));
        for (const std::string& text : row.log)
            EXPECT_EQ(log.Count(text), 1) << text << "\n" << log.Dump();
        HeapBuffer::Free(block);
    }
}

TEST(SmsCdmaEncode, FillsTheLargestMessageAndKeepsToSmallBuffers)
{
    const std::string digits(255, '1'), data(160, 'A');
    const BYTE* const characters = reinterpret_cast<const BYTE*>(data.data());
    BYTE* block = nullptr;
    ULONG length = 0;
    EXPECT_EQ(EncodeCompleteMoSms(&block, &length, digits.data(), 255, digits.data(), 255, 4, characters, 160, 2, 1, 0),
              0);
    EXPECT_EQ(length, 5u + 131 + 2 + 5 + 164 + 3 + 131);
    EXPECT_EQ(block[137], (5 + 164 + 3 + 131) & 0xFF) << "the length of the bearer data, modulo 256";
    HeapBuffer::Free(block);

    BYTE user_data[144];
    for (ULONG room = 0; room <= sizeof user_data; ++room) {
        BitWriter out(user_data, room);
        EXPECT_EQ(EncodeUserDataHdr(out, 2, characters, 160), room < 144 ? 2 : 0) << room;
    }
    EXPECT_EQ(user_data[1], 142);
}

TEST(SmsCdmaEncode, TellsTheDebuggerOfAnUnknownEncoding)
{
    static std::string s_text;
    s_text.clear();
    platform_hooks::SetDebugSink([](const WCHAR* text, void*) { s_text += Narrow(text); }, nullptr);
    BYTE octets[10];
    BitWriter out(octets, sizeof octets);
    EXPECT_EQ(EncodeUserDataHdr(out, 3, octets, 2), 0);
    platform_hooks::Reset();
    EXPECT_EQ(s_text, "EncoderUserDataHdr:encoding type unknown 3\r\n");
}

TEST(SmsBits, ReadsZeroPastTheEndAndStaysFailed)
{
    const BYTE octets[] = {0xFF, 0xFF, 0xFF};
    OctetReader whole(octets, 3);
    OctetReader inner = whole.Nested(2);
    BitReader bits(inner);
    EXPECT_EQ(bits.Take(7), 0x7F);
    EXPECT_EQ(bits.Take(7), 0x7F);
    EXPECT_FALSE(bits.Failed());
    EXPECT_EQ(bits.Take(7), 0x60) << "the bits that are there";
    EXPECT_TRUE(bits.Failed());
    EXPECT_EQ(bits.Take(8), 0);
    EXPECT_TRUE(bits.Failed());
    EXPECT_EQ(whole.Left(), 1u);
    EXPECT_EQ(whole.Nested(2).Left(), 0u);
    EXPECT_TRUE(whole.Failed());
    EXPECT_EQ(whole.Take(), 0);
}

} // namespace
